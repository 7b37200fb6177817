// The common property-sheet library: one property-sheet function adds pages to a sheet and receives
// their results.
#include <windows.h>
#include <compstui.h>
#include <pthread.h>

#include <algorithm>
#include <atomic>

#include "platform/comctl32/property_sheet.h"
#include "platform/machine/guard.h"
#include "platform/machine/machine.h"

namespace platform {
namespace {

constexpr ULONG_PTR kPrinterText = 64717;  // the id of a string of the library

// A sheet that is being built or shown.
class CommonSheet {
 public:
  CommonSheet(HWND owner, PFNPROPSHEETUI function, LPARAM param);
  ~CommonSheet();
  CommonSheet(const CommonSheet&) = delete;
  CommonSheet& operator=(const CommonSheet&) = delete;

  // Builds, shows and destroys the sheet. Returns 0 or above, or one of ERR_CPSUI_….
  LONG Run();
  DWORD result() const { return static_cast<DWORD>(info_.Result); }

 private:
  // A page and the handle that the caller got for it; the pages of one COMPROPSHEETUI share a
  // handle.
  struct Entry {
    LONG_PTR handle;
    HPROPSHEETPAGE page;
  };

  static LONG_PTR CALLBACK Call(HANDLE sheet, UINT function, LPARAM lParam1, LPARAM lParam2);
  static LONG_PTR NextHandle();
  LONG CallFunction(WORD reason, LPARAM param);
  LONG_PTR AddPage(LONG_PTR handle, HPROPSHEETPAGE page);
  LONG_PTR AddDialogPages(const COMPROPSHEETUI* description, LPDWORD pageCount);
  LONG_PTR SetResult(LPARAM handle, LPARAM result);
  void DestroyPages(size_t first);  // and all after it

  HWND owner_;
  PFNPROPSHEETUI function_;
  PROPSHEETUI_INFO info_ = {};
  std::vector<Entry> entries_;
};

// The sheets that this thread has open, nested as modal windows.
std::vector<std::pair<HANDLE, CommonSheet*>>& Sheets() {
  static thread_local std::vector<std::pair<HANDLE, CommonSheet*>> sheets;
  return sheets;
}

// Handles are never reused.
LONG_PTR CommonSheet::NextHandle() {
  static std::atomic<LONG_PTR> next = 0x00640001;
  return next += 2;
}

// Creates a dialog page of the caller; the tree views of the library are not supported.
// WM_INITDIALOG of the page gets a PROPSHEETPAGE whose lParam is UserData (DLGPAGE).
HPROPSHEETPAGE CreateDialogPage(const COMPROPSHEETUI& ui, const DLGPAGE& dialog) {
  if (dialog.cbSize < sizeof(DLGPAGE) || dialog.DlgProc == nullptr) return nullptr;
  PROPSHEETPAGEW page = {};
  page.dwSize = sizeof page;
  page.hInstance = ui.hInstCaller;
  page.pszTemplate = MAKEINTRESOURCEW(dialog.DlgTemplateID);
  page.pfnDlgProc = dialog.DlgProc;
  page.lParam = static_cast<LPARAM>(ui.UserData);
  return CreatePropertySheetPageW(&page);
}

std::u16string TitleText(const PROPSHEETUI_INFO_HEADER& header) {
  std::u16string title;
  if (reinterpret_cast<ULONG_PTR>(header.pTitle) == kPrinterText)
    title = u"プリンタ";
  else if (header.pTitle != nullptr && !IS_INTRESOURCE(header.pTitle))
    title = header.pTitle;
  if ((header.Flags & PSUIHDRF_PROPTITLE) == 0) return title;
  return title.empty() ? u"プロパティ" : title + u"のプロパティ";
}

CommonSheet::CommonSheet(HWND owner, PFNPROPSHEETUI function, LPARAM param)
    : owner_(owner), function_(function) {
  info_.cbSize = sizeof info_;
  info_.Version = PROPSHEETUI_INFO_VERSION;
  info_.Flags = PSUIINFO_UNICODE;
  info_.hComPropSheet = reinterpret_cast<HANDLE>(NextHandle());
  info_.pfnComPropSheet = Guarded<Call>::Call;
  info_.lParamInit = param;
  Sheets().emplace_back(info_.hComPropSheet, this);
}

// The function gets PROPSHEETUI_REASON_DESTROY after its pages are destroyed, unless it failed at
// INIT.
CommonSheet::~CommonSheet() {
  DestroyPages(0);
  if (function_ != nullptr) CallFunction(PROPSHEETUI_REASON_DESTROY, 0);
  std::erase_if(Sheets(), [this](const auto& sheet) { return sheet.second == this; });
}

void CommonSheet::DestroyPages(size_t first) {
  for (; entries_.size() > first; entries_.pop_back())
    DestroyPropertySheetPage(entries_.back().page);
}

// The function gets a copy; only its changes to UserData and Result are kept.
LONG CommonSheet::CallFunction(WORD reason, LPARAM param) {
  PROPSHEETUI_INFO info = info_;
  info.Reason = reason;
  const LONG result = function_(&info, param);
  info_.UserData = info.UserData;
  info_.Result = info.Result;
  return result;
}

LONG_PTR CALLBACK CommonSheet::Call(HANDLE handle, UINT function, LPARAM lParam1, LPARAM lParam2) {
  const auto found = std::find_if(Sheets().begin(), Sheets().end(),
                                  [=](const auto& sheet) { return sheet.first == handle; });
  if (found == Sheets().end()) return 0;
  CommonSheet& sheet = *found->second;
  switch (function) {
    case CPSFUNC_ADD_HPROPSHEETPAGE:
      return sheet.AddPage(NextHandle(), reinterpret_cast<HPROPSHEETPAGE>(lParam1));
    case CPSFUNC_ADD_PCOMPROPSHEETUIW:
      return sheet.AddDialogPages(reinterpret_cast<const COMPROPSHEETUI*>(lParam1),
                                  reinterpret_cast<LPDWORD>(lParam2));
    case CPSFUNC_SET_RESULT:
      return sheet.SetResult(lParam1, lParam2);
    default:
      return 0;
  }
}

// Rejects a page without a template and a page that is already in the sheet.
LONG_PTR CommonSheet::AddPage(LONG_PTR handle, HPROPSHEETPAGE page) {
  if (!IsPropertySheetPage(page) || page->size.cx <= 0) return 0;
  if (Machine::Current().faults.ShouldFail(Fault::kWindow)) return 0;
  if (std::any_of(entries_.begin(), entries_.end(),
                  [=](const Entry& entry) { return entry.page == page; }))
    return 0;
  entries_.push_back({handle, page});
  return handle;
}

LONG_PTR CommonSheet::AddDialogPages(const COMPROPSHEETUI* ui, LPDWORD pageCount) {
  if (pageCount != nullptr) *pageCount = 0;
  if (ui == nullptr || ui->cbSize < sizeof(COMPROPSHEETUI) || ui->hInstCaller == nullptr ||
      ui->pCallerName == nullptr || ui->pOptItem == nullptr || ui->cOptItem == 0 ||
      ui->pDlgPage == nullptr || ui->cDlgPage == 0)
    return 0;
  const size_t before = entries_.size();
  const LONG_PTR handle = NextHandle();
  for (WORD i = 0; i < ui->cDlgPage; ++i) {
    const HPROPSHEETPAGE page = CreateDialogPage(*ui, ui->pDlgPage[i]);
    if (page != nullptr && AddPage(handle, page) != 0) continue;
    if (page != nullptr) DestroyPropertySheetPage(page);
    DestroyPages(before);
    return 0;
  }
  if (pageCount != nullptr) *pageCount = ui->cDlgPage;
  return handle;
}

// Passes the result of a page to the function that added it. Returns how many functions received
// it.
LONG_PTR CommonSheet::SetResult(LPARAM handle, LPARAM result) {
  if (std::none_of(entries_.begin(), entries_.end(),
                   [=](const Entry& entry) { return entry.handle == handle; }))
    return 0;
  SETRESULT_INFO set = {sizeof set, 0, reinterpret_cast<HANDLE>(handle), result};
  return CallFunction(PROPSHEETUI_REASON_SET_RESULT, reinterpret_cast<LPARAM>(&set)) > 0 ? 1 : 0;
}

// Returns true for an address in the calling thread's stack.
bool IsOnStack(LPARAM address) {
  pthread_attr_t attributes;
  if (pthread_getattr_np(pthread_self(), &attributes) != 0) return false;
  void* lowest = nullptr;
  size_t size = 0;
  pthread_attr_getstack(&attributes, &lowest, &size);
  pthread_attr_destroy(&attributes);
  const auto start = reinterpret_cast<ULONG_PTR>(lowest);
  const auto at = static_cast<ULONG_PTR>(address);
  return at >= start && at < start + size;
}

LONG CommonSheet::Run() {
  if (CallFunction(PROPSHEETUI_REASON_INIT, info_.lParamInit) <= 0) {
    function_ = nullptr;  // it has cleaned up itself
    return CPSUI_CANCEL;
  }
  PROPSHEETUI_INFO_HEADER header = {};
  header.cbSize = sizeof header;
  header.hWndParent = owner_;
  if (CallFunction(PROPSHEETUI_REASON_GET_INFO_HEADER, reinterpret_cast<LPARAM>(&header)) <= 0)
    return ERR_CPSUI_GETLASTERROR;
  std::vector<HPROPSHEETPAGE> pages;
  for (const Entry& entry : entries_) pages.push_back(entry.page);
  if (pages.empty()) return ERR_CPSUI_INVALID_PDATA;
  return ShowSheet(header.hWndParent, TitleText(header), pages) ? 1 : ERR_CPSUI_GETLASTERROR;
}

}  // namespace
}  // namespace platform

// The result is CPSUI_CANCEL unless a page set another. A function that refuses INIT cancels the
// sheet (CommonPropertySheetUI).
LONG WINAPI CommonPropertySheetUIW(HWND owner, PFNPROPSHEETUI function, LPARAM param,
                                   LPDWORD result) {
  // The parameter must not be an address on the stack (PFNPROPSHEETUI).
  if (platform::IsOnStack(param)) return ERR_CPSUI_INVALID_LPARAM;
  platform::CommonSheet sheet(owner, function, param);
  const LONG status = sheet.Run();
  if (status >= 0 && result != nullptr) *result = sheet.result();
  return status;
}
