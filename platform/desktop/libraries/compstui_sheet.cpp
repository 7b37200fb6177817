// The entry point of the common property-sheet library.
#include "platform/desktop/libraries/compstui.h"
#include "platform/system/guard.h"
#include "platform/system/modules.h"

namespace platform {
namespace {

bool IsLibraryId(ULONG_PTR id) { return id >= 64700 && id < 65000; }

std::u16string TitleText(const PROPSHEETUI_INFO_HEADER& header) {
  std::u16string title;
  if (header.pTitle && !IS_INTRESOURCE(header.pTitle)) {
    title = header.pTitle;
  } else if (header.pTitle) {
    const auto id = reinterpret_cast<ULONG_PTR>(header.pTitle);
    WCHAR text[260] = {};
    if (IsLibraryId(id))
      title = CompstuiText(id);
    else if (LoadStringW(header.hInst, static_cast<UINT>(id), text, 260) > 0)
      title = text;
  }
  const bool properties = (header.Flags & PSUIHDRF_PROPTITLE) != 0;
  if (!properties || (header.Flags & PSUIHDRF_EXACT_PTITLE)) return title;
  return title.empty() ? u"プロパティ" : title + u"のプロパティ";
}

}  // namespace

LONG CommonSheet::Run() {
  Node& root = *nodes_[0];
  if (CallFunction(root, PROPSHEETUI_REASON_INIT, root.info.lParamInit) <= 0) {
    root.function = nullptr;  // it took itself down
    return CPSUI_CANCEL;
  }
  return Show();
}

LONG CommonSheet::Show() {
  Node& root = *nodes_[0];
  PROPSHEETUI_INFO_HEADER header = {};
  header.cbSize = sizeof header;
  header.hWndParent = owner_;
  if (CallFunction(root, PROPSHEETUI_REASON_GET_INFO_HEADER, reinterpret_cast<LPARAM>(&header)) <=
      0)
    return ERR_CPSUI_GETLASTERROR;
  SheetRequest request;
  request.owner = header.hWndParent;
  request.title = TitleText(header);
  request.applyButton = !(header.Flags & PSUIHDRF_NOAPPLYNOW);
  for (const auto& node : nodes_) {
    if (!node->page) continue;
    if (start_ == reinterpret_cast<LONG_PTR>(node->handle))
      request.start = static_cast<int>(request.pages.size());
    request.pages.push_back(node->page);
  }
  if (request.pages.empty()) return ERR_CPSUI_INVALID_PDATA;
  return ShowSheet(request) ? 1 : ERR_CPSUI_GETLASTERROR;
}

const bool registered = RegisterBuiltIn(
    u"compstui.dll", {{"CommonPropertySheetUIW", EntryPoint<CommonPropertySheetUIW>()}});

}  // namespace platform

// The result word is CPSUI_CANCEL unless a page confirmed another result. A sheet whose function
// refused at INIT counts as cancelled (CommonPropertySheetUI).
LONG WINAPI CommonPropertySheetUIW(HWND owner, PFNPROPSHEETUI function, LPARAM param,
                                   LPDWORD result) {
  if (!function) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return ERR_CPSUI_GETLASTERROR;
  }
  platform::CommonSheet sheet(owner, function, param);
  const LONG answer = sheet.Run();
  if (answer >= 0 && result) *result = sheet.result();
  return answer;
}
