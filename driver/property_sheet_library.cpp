#include "driver/property_sheet_library.h"

#include "driver/libraries.h"

namespace kestrel {

bool ShowCommonPropertySheet(HWND owner, PFNPROPSHEETUI sheets, LPARAM parameter, DWORD* result) {
  const Module library = LoadSystemLibrary(TEXT("compstui.dll"));
  if (!library) return false;
  const auto show =
      EntryPoint<decltype(&CommonPropertySheetUIW)>(library.get(), "CommonPropertySheetUIW");
  return show != nullptr && show(owner, sheets, parameter, result) >= 0;
}

}  // namespace kestrel
