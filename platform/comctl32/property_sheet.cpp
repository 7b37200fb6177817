// Property sheets: changing pages, OK, Cancel, and the notifications that pages get in the
// documented order. There is no Apply button: the callers here do not request one.
#include "platform/comctl32/property_sheet.h"

#include <winuser.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <unordered_map>

#include "platform/loader/resource_table.h"
#include "platform/machine/machine.h"
#include "platform/user32/dialog_template.h"

namespace platform {
namespace {

constexpr int kMargin = 11;  // pixels around the pages
constexpr int kTabHeight = 24;
constexpr int kButtonsHeight = 46;

// The pages of the calling thread; a sheet runs on the thread that made its pages.
std::unordered_map<HPROPSHEETPAGE, std::unique_ptr<_PSP>>& Pages() {
  static thread_local std::unordered_map<HPROPSHEETPAGE, std::unique_ptr<_PSP>> pages;
  return pages;
}

auto TemplateOf(const PROPSHEETPAGEW& page) {
  return FindResourceBytes(page.hInstance, kResourceDialog,
                           LOWORD(reinterpret_cast<ULONG_PTR>(page.pszTemplate)));
}

class Sheet : public SheetState {
 public:
  Sheet(const std::vector<HPROPSHEETPAGE>& pages) : pages_(pages) {}

  bool Open(HWND window);  // shows the first page that can be created
  SIZE LargestPage() const;

  HWND ActivePage() const override { return active_ < 0 ? nullptr : At(active_).window; }
  void Describe(WindowView& view) const override;
  bool Turn(int index) override;
  bool Press(SheetButton button) override {
    return button == SheetButton::kOk ? Apply() : Cancel(false);
  }
  bool Close() override { return Cancel(true); }
  void MarkChanged(HWND page);

 private:
  int Count() const { return static_cast<int>(pages_.size()); }
  _PSP& At(int index) const { return *pages_[static_cast<size_t>(index)]; }
  LRESULT Notify(int index, UINT code, LPARAM param) const;
  LRESULT NotifyAll(UINT code, LPARAM param) const;  // pages that were shown, in page order
  bool Create(int index);
  bool Activate(int index);
  // Returns false when the active page refuses to lose the activation.
  bool Leave() const { return active_ < 0 || Notify(active_, PSN_KILLACTIVE, 0) == FALSE; }
  bool Apply();
  bool Cancel(bool closeBox);

  std::vector<HPROPSHEETPAGE> pages_;
  HWND window_ = nullptr;
  int active_ = -1;
};

INT_PTR CALLBACK SheetProc(HWND window, UINT message, WPARAM wParam, LPARAM) {
  const auto found = FindWindowOf(window);
  auto* sheet = found ? StateOf<Sheet>(*found) : nullptr;
  if (sheet == nullptr) return FALSE;
  if (message == WM_CLOSE) sheet->Close();
  if (message == PSM_CHANGED) sheet->MarkChanged(reinterpret_cast<HWND>(wParam));
  return message == WM_CLOSE || message == PSM_CHANGED;
}

bool Sheet::Open(HWND window) {
  window_ = window;
  for (int index = 0; index < Count(); ++index)
    if (Activate(index)) return true;
  return false;
}

SIZE Sheet::LargestPage() const {
  SIZE largest = {};
  for (const HPROPSHEETPAGE page : pages_)
    largest = {std::max(largest.cx, page->size.cx), std::max(largest.cy, page->size.cy)};
  return largest;
}

void Sheet::Describe(WindowView& view) const {
  for (const HPROPSHEETPAGE page : pages_) {
    view.tabs.push_back(page->title);
    view.changed = view.changed || page->changed;
  }
  view.activeTab = active_;
  const SIZE size = LargestPage();
  view.pageWidth = size.cx;
  view.pageHeight = size.cy;
}

void Sheet::MarkChanged(HWND window) {
  for (const HPROPSHEETPAGE page : pages_)
    if (page->window == window) page->changed = true;
}

LRESULT Sheet::Notify(int index, UINT code, LPARAM param) const {
  PSHNOTIFY notification = {{window_, 0, code}, param};
  return SendMessageW(At(index).window, WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&notification));
}

// A page that refuses PSN_APPLY stops the notification.
LRESULT Sheet::NotifyAll(UINT code, LPARAM param) const {
  LRESULT result = PSNRET_NOERROR;
  for (int index = 0; index < Count(); ++index) {
    if (At(index).window != nullptr) result = Notify(index, code, param);
    if (code == PSN_APPLY && result != PSNRET_NOERROR) break;
  }
  return result;
}

bool Sheet::Create(int index) {
  _PSP& made = At(index);
  if (made.window != nullptr) return true;
  PROPSHEETPAGEW& page = made.page();
  const auto data = TemplateOf(page);
  DialogRequest request;
  request.instance = page.hInstance;
  request.data = data.data();
  request.size = data.size();
  request.parent = window_;
  request.proc = page.pfnDlgProc;
  request.param = reinterpret_cast<LPARAM>(&page);
  request.page = true;
  made.window = CreateDialogWindow(request);
  if (const auto window = FindWindowOf(made.window))
    PlaceWindow(*window, {kMargin, kMargin + kTabHeight, kMargin + made.size.cx,
                          kMargin + kTabHeight + made.size.cy});
  return made.window != nullptr;
}

bool Sheet::Activate(int index) {
  if (!Create(index)) return false;
  Notify(index, PSN_SETACTIVE, 0);
  const HWND old = ActivePage();
  active_ = index;
  SetVisible(ActivePage(), true);
  if (old != nullptr && old != ActivePage()) SetVisible(old, false);
  FocusFirst(ActivePage());
  return true;
}

// When the page cannot be created, the previous page stays active.
bool Sheet::Turn(int index) {
  if (index < 0 || index >= Count()) return false;
  if (index == active_) return true;
  if (!Leave()) return false;
  if (Activate(index)) return true;
  Notify(active_, PSN_SETACTIVE, 0);
  return false;
}

// Every page that was shown applies, in page order. A refusal leaves the sheet open.
bool Sheet::Apply() {
  return Leave() && NotifyAll(PSN_APPLY, TRUE) == PSNRET_NOERROR && EndModal(window_, IDOK);
}

bool Sheet::Cancel(bool closeBox) {
  if (active_ >= 0 && Notify(active_, PSN_QUERYCANCEL, 0) != FALSE) return false;
  NotifyAll(PSN_RESET, closeBox);
  return EndModal(window_, IDCANCEL);
}

}  // namespace

int LivePropertySheetPages() { return static_cast<int>(Pages().size()); }

bool IsPropertySheetPage(HPROPSHEETPAGE page) { return Pages().count(page) != 0; }

std::optional<bool> ShowSheet(HWND owner, std::u16string title,
                              const std::vector<HPROPSHEETPAGE>& pages) {
  auto state = std::make_unique<Sheet>(pages);
  Sheet& sheet = *state;
  const SIZE page = sheet.LargestPage();
  TopWindowRequest top;
  top.title = std::move(title);
  top.width = page.cx + 2 * kMargin;
  top.height = page.cy + kTabHeight + 2 * kMargin + kButtonsHeight;
  top.owner = owner;
  top.proc = SheetProc;
  top.kind = WindowView::Kind::kSheet;
  top.state = std::move(state);
  const HWND window = CreateTopWindow(std::move(top));
  if (window == nullptr) return std::nullopt;
  std::optional<bool> confirmed;
  if (sheet.Open(window))
    confirmed = RunModal(window) == IDOK;
  else
    Destroy(window);
  for (const HPROPSHEETPAGE one : pages) one->window = nullptr;
  return confirmed;
}

}  // namespace platform

using namespace platform;

// A page without a template is created; showing it fails.
HPROPSHEETPAGE WINAPI CreatePropertySheetPageW(LPCPROPSHEETPAGEW page) {
  if (page == nullptr || page->dwSize < sizeof(PROPSHEETPAGEW)) return nullptr;
  if (Machine::Current().faults.ShouldFail(Fault::kWindow)) return nullptr;
  auto made = std::make_unique<_PSP>();
  made->block.resize(page->dwSize);
  std::memcpy(made->block.data(), page, page->dwSize);
  DialogTemplate form;
  const auto data = TemplateOf(*page);
  if (ParseDialogTemplate(data.data(), data.size(), form)) {
    made->title = form.caption;
    made->size = {form.rect.right - form.rect.left, form.rect.bottom - form.rect.top};
  }
  const HPROPSHEETPAGE handle = made.get();
  Pages().emplace(handle, std::move(made));
  return handle;
}

BOOL WINAPI DestroyPropertySheetPage(HPROPSHEETPAGE page) {
  const auto found = Pages().find(page);
  if (found == Pages().end()) return FALSE;
  Destroy(found->second->window);
  Pages().erase(page);
  return TRUE;
}
