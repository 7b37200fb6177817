// The barcode detail library of the driver package. It has three entry points for each kind, which
// return the display name, write the default parameters and show the detail dialog.
#include <windows.h>

#include "companions/barcode_parameters.h"
#include "platform/machine/guard.h"
#include "platform/machine/text.h"

namespace companions {
namespace {

// Writes the display name to a buffer of kNameCapacity bytes.
void WriteName(int index, LPSTR name) {
  name[platform::ToCp932(KindAt(index).name).copy(name, kNameCapacity - 1)] = '\0';
}

// Returns 0; 1 would mean that the user confirmed the parameters.
int16_t WriteBlock(int index, BYTE* block, const BarcodeLibInfo* info) {
  WriteDefaults(KindAt(index), *info, {block, kBlockSize});
  return 0;
}

// Returns 1 (IDOK) when the user confirmed, 2 (IDCANCEL) otherwise.
int16_t EditBlock(int index, BYTE* block, const BarcodeLibInfo* info, HWND owner) {
  const bool confirmed = EditBarcodeDetail(KindAt(index), *info, {block, kBlockSize}, owner);
  return static_cast<int16_t>(confirmed ? IDOK : IDCANCEL);
}

}  // namespace
}  // namespace companions

// The table row of each kind, named by the suffix of its entry points.
enum KindRow : int {
#define KIND(id, suffix, serial, layout) k##suffix,
  BARCODE_KINDS(KIND)
#undef KIND
};

#define BARCODE_ENTRIES(id, suffix, serial, layout)                                              \
  extern "C" {                                                                                   \
  void WINAPI GetBarName##suffix(LPSTR name) {                                                   \
    platform::RunGuarded([&] { companions::WriteName(k##suffix, name); });                       \
  }                                                                                              \
  int16_t WINAPI Init##suffix(BYTE* block, const kestrel::BarcodeLibInfo* info, HWND) {          \
    return platform::RunGuarded([&] { return companions::WriteBlock(k##suffix, block, info); }); \
  }                                                                                              \
  int16_t WINAPI ShowDlg##suffix(BYTE* block, const kestrel::BarcodeLibInfo* info, HWND owner) { \
    return platform::RunGuarded(                                                                 \
        [&] { return companions::EditBlock(k##suffix, block, info, owner); });                   \
  }                                                                                              \
  }
BARCODE_KINDS(BARCODE_ENTRIES)
