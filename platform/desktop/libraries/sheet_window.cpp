// The window of a property sheet: turning pages, OK, cancel, apply, help, and the notifications
// that pages get on the way, as the property sheet reference documents them.
#include <algorithm>

#include "platform/desktop/libraries/sheet.h"
#include "platform/system/resources.h"

namespace platform {
namespace {

constexpr int kMargin = 11;  // pixels around the pages
constexpr int kTabHeight = 24;
constexpr int kButtonsHeight = 46;
constexpr INT_PTR kSheetOk = 1;
constexpr INT_PTR kSheetCancelled = 0;

// The sheet of a window; null when it is none.
Sheet* SheetOf(HWND window) {
  const auto found = FindWindowOf(window);
  return found ? StateOf<Sheet>(*found) : nullptr;
}

INT_PTR CALLBACK SheetProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  Sheet* sheet = SheetOf(window);
  if (!sheet) return FALSE;
  if (message == WM_CLOSE) return sheet->Close(), TRUE;
  if (message == WM_COMMAND && LOWORD(wParam) == IDCANCEL) {
    sheet->Press(SheetButton::kCancel);
    return TRUE;
  }
  if (message == WM_COMMAND && LOWORD(wParam) == IDOK) {
    sheet->Press(SheetButton::kOk);
    return TRUE;
  }
  LRESULT result = 0;
  if (!sheet->Handle(message, wParam, lParam, result)) return FALSE;
  SetWindowLongPtrW(window, DWLP_MSGRESULT, result);
  return TRUE;
}

int LargestWidth(const std::vector<HPROPSHEETPAGE>& pages) {
  int width = 0;
  for (const HPROPSHEETPAGE page : pages) width = std::max(width, page->width);
  return width;
}

int LargestHeight(const std::vector<HPROPSHEETPAGE>& pages) {
  int height = 0;
  for (const HPROPSHEETPAGE page : pages) height = std::max(height, page->height);
  return height;
}

}  // namespace

bool Sheet::Open(HWND window) {
  window_ = window;
  for (int index = std::max(0, request_.start); index < Count(); ++index)
    if (Activate(index)) return true;
  return false;
}

HWND Sheet::ActivePage() const { return active_ < 0 ? nullptr : At(active_).window; }

void Sheet::Describe(WindowView& view) const {
  view.tabs.clear();
  for (const HPROPSHEETPAGE page : request_.pages) view.tabs.push_back(page->title);
  view.activeTab = active_;
  view.applyVisible = request_.applyButton;
  view.applyEnabled = HasChanges();
  view.pageWidth = LargestWidth(request_.pages);
  view.pageHeight = LargestHeight(request_.pages);
}

int Sheet::IndexOf(HWND page) const {
  for (int index = 0; index < Count(); ++index)
    if (page && At(index).window == page) return index;
  return -1;
}

bool Sheet::HasChanges() const {
  return std::any_of(request_.pages.begin(), request_.pages.end(),
                     [](const _PSP* page) { return page->changed; });
}

LRESULT Sheet::Notify(int index, UINT code, LPARAM param) const {
  PSHNOTIFY notification = {{window_, 0, code}, param};
  return SendMessageW(At(index).window, WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&notification));
}

bool Sheet::Create(int index) {
  _PSP& made = At(index);
  if (made.window) return true;
  PROPSHEETPAGEW& page = made.page();
  const WORD id = LOWORD(reinterpret_cast<ULONG_PTR>(page.pszTemplate));
  const auto data = FindResourceBytes(page.hInstance, kResourceDialog, id);
  DialogRequest request;
  request.instance = page.hInstance;
  request.data = data.data();
  request.size = data.size();
  request.parent = window_;
  request.proc = page.pfnDlgProc;
  request.param = made.initParam ? made.initParam : reinterpret_cast<LPARAM>(&page);
  request.page = true;
  if (data.empty()) return false;
  made.window = CreateDialogWindow(request);
  if (!made.window) return false;
  EnableWindow(made.window, TRUE);  // templates of pages are often disabled; a sheet drops that
  SetWindowPos(made.window, nullptr, kMargin, kMargin + kTabHeight, 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  return true;
}

// The active page may refuse to be left.
bool Sheet::Leave() const { return active_ < 0 || Notify(active_, PSN_KILLACTIVE, 0) == FALSE; }

// A page answers PSN_SETACTIVE with 0 to be shown, with -1 to hand on to the next one.
bool Sheet::Activate(int index) {
  for (; index < Count(); ++index) {
    if (!Create(index)) return false;
    if (Notify(index, PSN_SETACTIVE, 0) != -1) break;
  }
  if (index >= Count()) return false;
  const HWND old = ActivePage();
  active_ = index;
  ShowWindow(ActivePage(), SW_SHOW);
  if (old && old != ActivePage()) ShowWindow(old, SW_HIDE);
  if (const HWND first = GetNextDlgTabItem(ActivePage(), nullptr, FALSE)) SetFocus(first);
  return true;
}

// A page that cannot be created leaves the page shown before it where it was.
bool Sheet::Turn(int index) {
  if (index < 0 || index >= Count()) return false;
  if (index == active_) return true;
  if (!Leave()) return false;
  if (Activate(index)) return active_ == index;
  Notify(active_, PSN_SETACTIVE, 0);
  return false;
}

// Every page that was ever shown applies, in page order. A page that refuses keeps the sheet open;
// PSNRET_INVALID brings it to the front as well.
bool Sheet::Apply(bool closing) {
  if (!Leave()) return false;
  for (int index = 0; index < Count(); ++index) {
    if (!At(index).window) continue;
    const LRESULT answer = Notify(index, PSN_APPLY, closing);
    if (answer == PSNRET_INVALID_NOCHANGEPAGE || answer == PSNRET_INVALID) {
      Activate(answer == PSNRET_INVALID ? index : active_);
      return false;
    }
  }
  for (const HPROPSHEETPAGE page : request_.pages) page->changed = false;
  if (closing) return EndModal(window_, kSheetOk);
  Notify(active_, PSN_SETACTIVE, 0);
  return true;
}

bool Sheet::Cancel(bool closeBox) {
  if (active_ >= 0 && Notify(active_, PSN_QUERYCANCEL, 0) != FALSE) return false;
  for (int index = 0; index < Count(); ++index)
    if (At(index).window) Notify(index, PSN_RESET, closeBox);
  return EndModal(window_, kSheetCancelled);
}

bool Sheet::Press(SheetButton button) {
  switch (button) {
    case SheetButton::kOk:
      return Apply(true);
    case SheetButton::kCancel:
      return Cancel(false);
    case SheetButton::kApply:
      return request_.applyButton && HasChanges() && Apply(false);
    case SheetButton::kHelp:
      if (active_ < 0 || !At(active_).hasHelp()) return false;
      Notify(active_, PSN_HELP, 0);
      return true;
  }
  return false;
}

bool Sheet::Handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
  const int index = IndexOf(reinterpret_cast<HWND>(wParam));
  switch (message) {
    case PSM_CHANGED:
    case PSM_UNCHANGED:
      if (index >= 0) At(index).changed = message == PSM_CHANGED;
      return true;
    case PSM_SETCURSEL:
      // By handle when one is given, else by index.
      result =
          Turn(lParam ? static_cast<int>(std::find(request_.pages.begin(), request_.pages.end(),
                                                   reinterpret_cast<HPROPSHEETPAGE>(lParam)) -
                                         request_.pages.begin())
                      : static_cast<int>(wParam));
      return true;
    case PSM_APPLY:
      result = Apply(false);
      return true;
    case PSM_GETCURRENTPAGEHWND:
      result = reinterpret_cast<LRESULT>(ActivePage());
      return true;
    default:
      return false;
  }
}

std::optional<bool> ShowSheet(const SheetRequest& request) {
  TopWindowRequest top;
  top.title = request.title;
  top.width = LargestWidth(request.pages) + 2 * kMargin;
  top.height = LargestHeight(request.pages) + kTabHeight + 2 * kMargin + kButtonsHeight;
  top.owner = request.owner;
  top.proc = SheetProc;
  top.kind = WindowView::Kind::kSheet;
  top.state = std::make_unique<Sheet>(request);
  const HWND window = CreateTopWindow(std::move(top));
  Sheet* sheet = SheetOf(window);
  if (!sheet) return std::nullopt;
  std::optional<bool> answer;
  if (sheet->Open(window))
    answer = RunModal(window) == kSheetOk;
  else
    DestroyWindow(window);
  for (const HPROPSHEETPAGE page : request.pages) page->window = nullptr;
  return answer;
}

}  // namespace platform
