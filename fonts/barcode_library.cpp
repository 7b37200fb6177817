#include "fonts/barcode_library.h"

#include "driver/libraries.h"
#include "driver/text.h"
#include "fonts/barcode_kinds.h"

namespace kestrel {
namespace {

// The three entry points of each kind. GetBarName declares no result because the result is unused.
using GetBarNameProc = void(WINAPI*)(char* name);
using InitProc = int16_t(WINAPI*)(uint8_t* block, const BarcodeLibInfo* info, HWND dialog);
using ShowDlgProc = int16_t(WINAPI*)(uint8_t* block, const BarcodeLibInfo* info, HWND dialog);

static_assert(kBarcodeKindCount <= 32, "the list holds at most 32 kinds");
constexpr int kNameBytes = 32;  // of a display name, terminator included
constexpr int16_t kCancelled = 2;

void ShowError(HWND dialog, const WCHAR* text) {
  MessageBoxW(dialog, text, TEXT("VELA Kestrel Graphics Mode Driver"), MB_OK);
}

Module LoadBarcodeLibrary(const BarcodeLibrary& library) {
  Module module = LoadCompanionLibrary(library.printer, library.printerName, TEXT("QM610rBAR.DLL"));
  if (!module) ShowError(library.dialog, TEXT("LoadLibrary Error!!"));
  return module;
}

// Returns an entry point; null after a message when the library lacks it.
template <typename Proc>
Proc FindEntry(const BarcodeLibrary& library, const Module& module, const char* name) {
  const auto entry = EntryPoint<Proc>(module.get(), name);
  if (entry == nullptr) ShowError(library.dialog, TEXT("GetProcAddress Error!!"));
  return entry;
}

BarcodeLibInfo MakeLibInfo(const BarcodeLibrary& library) {
  return {library.headDensity, library.headDensity, {0, 0}};
}

}  // namespace

void FillKindList(const BarcodeLibrary& library, int list) {
  const Module module = LoadBarcodeLibrary(library);
  if (!module) return;
  for (const BarcodeKindRow& kind : kBarcodeKinds) {
    const auto getName = FindEntry<GetBarNameProc>(library, module, kind.getName);
    if (getName == nullptr) return;
    char bytes[kNameBytes] = {};
    getName(bytes);
    bytes[kNameBytes - 1] = 0;
    WCHAR name[kNameBytes];
    FromCodePage(bytes, -1, name, sizeof(name));
    // -1 appends the entry.
    SendDlgItemMessageW(library.dialog, list, CB_INSERTSTRING, static_cast<WPARAM>(-1),
                        reinterpret_cast<LPARAM>(name));
  }
}

void InitParam(const BarcodeLibrary& library, uint8_t* block, int kind) {
  const Module module = LoadBarcodeLibrary(library);
  if (!module) return;
  const int row = FindBarcodeKindRow(kind);
  if (row < 0) return;
  const auto init = FindEntry<InitProc>(library, module, kBarcodeKinds[row].init);
  if (init == nullptr) return;
  const BarcodeLibInfo info = MakeLibInfo(library);
  init(block, &info, library.dialog);
}

int16_t ShowDetail(const BarcodeLibrary& library, uint8_t* block, int kind, bool initialise) {
  const Module module = LoadBarcodeLibrary(library);
  const int row = FindBarcodeKindRow(kind);
  if (!module || row < 0) return kCancelled;
  const BarcodeKindRow& entries = kBarcodeKinds[row];
  const BarcodeLibInfo info = MakeLibInfo(library);
  int16_t result = kCancelled;
  if (initialise) {
    const auto init = FindEntry<InitProc>(library, module, entries.init);
    if (init == nullptr) return result;
    result = init(block, &info, library.dialog);
  }
  const auto show = FindEntry<ShowDlgProc>(library, module, entries.showDialog);
  if (show != nullptr) result = show(block, &info, library.dialog);
  return result;
}

}  // namespace kestrel
