// The barcode detail library of the driver package: for every kind its display name, its default
// parameters and its detail dialog.
#include <windows.h>

#include "companions/barcode_parameters.h"
#include "platform/system/guard.h"
#include "platform/system/text.h"

namespace companions {
namespace {

// Writes the display name into a buffer of kNameCapacity bytes.
void WriteName(int index, LPSTR name) {
  if (name) name[platform::ToCp932(KindAt(index).name).copy(name, kNameCapacity - 1)] = '\0';
}

// 0: nothing has been confirmed by anyone.
int16_t WriteBlock(int index, BYTE* block, const BarcodeLibInfo* info) {
  if (block && info) WriteDefaults(KindAt(index), *info, {block, kBlockSize});
  return 0;
}

// 1 when the user confirmed, otherwise 2.
int16_t EditBlock(int index, BYTE* block, const BarcodeLibInfo* info, HWND owner) {
  const bool confirmed =
      block && info && EditBarcodeDetail(KindAt(index), *info, {block, kBlockSize}, owner);
  return static_cast<int16_t>(confirmed ? IDOK : IDCANCEL);
}

}  // namespace
}  // namespace companions

// The three entry points of a kind, by its index in the table of kinds.
#define BARCODE_ENTRIES(suffix, index)                                                           \
  extern "C" {                                                                                   \
  void WINAPI GetBarName##suffix(LPSTR name) {                                                   \
    platform::Keeping([&] { companions::WriteName(index, name); });                              \
  }                                                                                              \
  int16_t WINAPI Init##suffix(BYTE* block, const kestrel::BarcodeLibInfo* info, HWND) {          \
    return platform::Keeping([&] { return companions::WriteBlock(index, block, info); });        \
  }                                                                                              \
  int16_t WINAPI ShowDlg##suffix(BYTE* block, const kestrel::BarcodeLibInfo* info, HWND owner) { \
    return platform::Keeping([&] { return companions::EditBlock(index, block, info, owner); });  \
  }                                                                                              \
  }

BARCODE_ENTRIES(UPCA, 0)
BARCODE_ENTRIES(UPCE, 1)
BARCODE_ENTRIES(JAN8, 2)
BARCODE_ENTRIES(JAN13, 3)
BARCODE_ENTRIES(CODE39, 4)
BARCODE_ENTRIES(CODE93, 5)
BARCODE_ENTRIES(CODE128, 6)
BARCODE_ENTRIES(UCC128, 7)
BARCODE_ENTRIES(INT25, 8)
BARCODE_ENTRIES(NW7, 9)
BARCODE_ENTRIES(CUSTOM, 10)
BARCODE_ENTRIES(RSS, 11)
BARCODE_ENTRIES(QR1, 12)
BARCODE_ENTRIES(QR2, 13)
BARCODE_ENTRIES(QRM, 14)
BARCODE_ENTRIES(PDF417, 15)
BARCODE_ENTRIES(MAXI, 16)
BARCODE_ENTRIES(ECC, 17)
BARCODE_ENTRIES(MPDF417, 18)
