// What property-sheet functions add to a common property sheet, and results on their way up.
#include <algorithm>
#include <map>

#include "platform/desktop/libraries/compstui.h"
#include "platform/machine.h"
#include "platform/system/guard.h"

namespace platform {
namespace {

// All nodes of all sheets by handle. Handles are never used twice.
std::map<HANDLE, CommonSheet*>& Sheets() {
  static std::map<HANDLE, CommonSheet*> sheets;
  return sheets;
}

HANDLE NextHandle() {
  static uintptr_t next = 0x00640001;
  return reinterpret_cast<HANDLE>(next += 2);
}

// A dialog page of the caller; the library's own tree views have no place here. The page's
// WM_INITDIALOG gets the UserData, which is all the caller's dialog has of its own.
HPROPSHEETPAGE MakeDialogPage(const COMPROPSHEETUI& ui, const DLGPAGE& dialog) {
  if (dialog.cbSize < sizeof(DLGPAGE) || !dialog.DlgProc) return nullptr;
  if ((dialog.Flags & DPF_USE_HDLGTEMPLATE) || dialog.DlgTemplateID >= DP_STD_RESERVED_START)
    return nullptr;
  PROPSHEETPAGEW page = {};
  page.dwSize = sizeof page;
  page.hInstance = ui.hInstCaller;
  page.pszTemplate = MAKEINTRESOURCEW(dialog.DlgTemplateID);
  page.pfnDlgProc = dialog.DlgProc;
  page.lParam = static_cast<LPARAM>(ui.UserData);
  if (dialog.pTabName && (IS_INTRESOURCE(dialog.pTabName) || *dialog.pTabName)) {
    page.dwFlags = PSP_USETITLE;
    page.pszTitle = dialog.pTabName;
  }
  const HPROPSHEETPAGE made = CreatePropertySheetPageW(&page);
  if (made) made->initParam = page.lParam;
  return made;
}

}  // namespace

CommonSheet::CommonSheet(HWND owner, PFNPROPSHEETUI function, LPARAM param) : owner_(owner) {
  Node& root = Add(nullptr);
  root.function = function;
  root.info.lParamInit = param;
}

CommonSheet::~CommonSheet() { Drop(0); }

// Children go before their parents, so that a function is told of its end after its pages are
// gone.
void CommonSheet::Drop(size_t keep) {
  while (nodes_.size() > keep) {
    Node& node = *nodes_.back();
    if (node.page) DestroyPropertySheetPage(node.page);
    if (node.function) CallFunction(node, PROPSHEETUI_REASON_DESTROY, 0);
    Sheets().erase(node.handle);
    nodes_.pop_back();
  }
}

CommonSheet::Node& CommonSheet::Add(Node* parent) {
  auto& node = *nodes_.emplace_back(std::make_unique<Node>());
  node.parent = parent;
  node.handle = NextHandle();
  node.info.cbSize = sizeof node.info;
  node.info.Version = PROPSHEETUI_INFO_VERSION;
  node.info.Flags = PSUIINFO_UNICODE;
  node.info.hComPropSheet = node.handle;
  node.info.pfnComPropSheet = Guarded<Call>::Call;
  Sheets().emplace(node.handle, this);
  return node;
}

CommonSheet::Node* CommonSheet::NodeOf(LONG_PTR handle) const {
  for (const auto& node : nodes_)
    if (reinterpret_cast<LONG_PTR>(node->handle) == handle) return node.get();
  return nullptr;
}

CommonSheet* CommonSheet::Find(HANDLE handle, Node*& node) {
  const auto found = Sheets().find(handle);
  if (found == Sheets().end()) return nullptr;
  node = found->second->NodeOf(reinterpret_cast<LONG_PTR>(handle));
  return found->second;
}

// The function sees a copy that holds what it may change; UserData and Result are taken back.
LONG CommonSheet::CallFunction(Node& node, WORD reason, LPARAM param) {
  PROPSHEETUI_INFO info = node.info;
  info.Reason = reason;
  const LONG answer = node.function(&info, param);
  node.info.UserData = info.UserData;
  node.info.Result = info.Result;
  return answer;
}

LONG_PTR CALLBACK CommonSheet::Call(HANDLE handle, UINT function, LPARAM lParam1, LPARAM lParam2) {
  Node* node = nullptr;
  CommonSheet* sheet = Find(handle, node);
  return sheet ? sheet->Dispatch(*node, function, lParam1, lParam2) : 0;
}

LONG_PTR CommonSheet::Dispatch(Node& node, UINT function, LPARAM lParam1, LPARAM lParam2) {
  switch (function) {
    case CPSFUNC_ADD_HPROPSHEETPAGE:
      return AddPage(node, reinterpret_cast<HPROPSHEETPAGE>(lParam1));
    case CPSFUNC_ADD_PROPSHEETPAGEW: {
      const HPROPSHEETPAGE page =
          CreatePropertySheetPageW(reinterpret_cast<LPCPROPSHEETPAGEW>(lParam1));
      return page ? AddPage(node, page) : 0;
    }
    case CPSFUNC_ADD_PCOMPROPSHEETUIW:
      return AddDialogPages(node, reinterpret_cast<const COMPROPSHEETUI*>(lParam1),
                            reinterpret_cast<LPDWORD>(lParam2));
    case CPSFUNC_ADD_PFNPROPSHEETUIW:
      return AddFunction(node, reinterpret_cast<PFNPROPSHEETUI>(lParam1), lParam2);
    case CPSFUNC_SET_HSTARTPAGE:
      if (!NodeOf(lParam1)) return 0;
      start_ = lParam1;
      return 1;
    case CPSFUNC_GET_PAGECOUNT:
      return PageCount(&node);
    case CPSFUNC_SET_RESULT:
      return SetResult(node, lParam1, lParam2);
    default:
      return 0;
  }
}

// A page whose template is missing, or one that is in a sheet already, is refused.
LONG_PTR CommonSheet::AddPage(Node& node, HPROPSHEETPAGE page) {
  if (!IsPropertySheetPage(page) || page->width <= 0) return 0;
  if (Machine::Current().faults.Strike(Fault::kWindow)) return 0;
  for (const auto& other : nodes_)
    if (other->page == page) return 0;
  Node& added = Add(&node);
  added.page = page;
  return reinterpret_cast<LONG_PTR>(added.handle);
}

LONG_PTR CommonSheet::AddFunction(Node& node, PFNPROPSHEETUI function, LPARAM param) {
  if (!function) return 0;
  const size_t before = nodes_.size();
  Node& added = Add(&node);
  added.info.lParamInit = param;
  added.function = function;
  if (CallFunction(added, PROPSHEETUI_REASON_INIT, param) > 0)
    return reinterpret_cast<LONG_PTR>(added.handle);
  added.function = nullptr;  // it took itself down
  Drop(before);
  return 0;
}

LONG_PTR CommonSheet::AddDialogPages(Node& node, const COMPROPSHEETUI* ui, LPDWORD pageCount) {
  if (pageCount) *pageCount = 0;
  if (!ui || ui->cbSize < sizeof(COMPROPSHEETUI) || !ui->hInstCaller || !ui->pCallerName) return 0;
  if (!ui->pOptItem || ui->cOptItem == 0 || !ui->pDlgPage || ui->cDlgPage == 0) return 0;
  const size_t before = nodes_.size();
  Node& group = Add(&node);
  for (WORD i = 0; i < ui->cDlgPage; ++i) {
    const HPROPSHEETPAGE page = MakeDialogPage(*ui, ui->pDlgPage[i]);
    if (page && AddPage(group, page)) continue;
    if (page) DestroyPropertySheetPage(page);
    Drop(before);
    return 0;
  }
  if (pageCount) *pageCount = ui->cDlgPage;
  return reinterpret_cast<LONG_PTR>(group.handle);
}

// The result of a page goes to the function that added it and, with what that one made of it, to
// each function above. The answer is how many were told; a function that answers 0 or less stops
// it.
LONG_PTR CommonSheet::SetResult(Node& node, LPARAM handle, LPARAM result) {
  Node* at = handle ? NodeOf(handle) : &node;
  if (!at) return 0;
  SETRESULT_INFO set = {sizeof set, 0, at->handle, result};
  LONG_PTR told = 0;
  for (; at; at = at->parent) {
    if (!at->function) continue;
    if (CallFunction(*at, PROPSHEETUI_REASON_SET_RESULT, reinterpret_cast<LPARAM>(&set)) <= 0)
      break;
    ++told;
    set.hSetResult = at->handle;
    set.Result = static_cast<LRESULT>(at->info.Result);
  }
  return told;
}

int CommonSheet::PageCount(const Node* below) const {
  return static_cast<int>(std::count_if(nodes_.begin(), nodes_.end(), [&](const auto& node) {
    const Node* at = node.get();
    while (at && at != below) at = at->parent;
    return at && node->page;
  }));
}

}  // namespace platform
