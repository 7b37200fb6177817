// The desk: user actions on the topmost window, and what is visible of it.
#include "platform/machine/desk.h"

#include <algorithm>
#include <stdexcept>

#include "platform/machine/machine.h"
#include "platform/user32/manager.h"

namespace platform {

namespace {

// The longest that a user holds an arrow.
constexpr int kMaxSpinSteps = 10000;

// Returns the control of the topmost window with an id; null when the user cannot see or use it.
HWND Usable(int id) {
  const HWND control = ControlOf(ActiveTop(), id);
  const WindowPtr window = FindWindowOf(control);
  const bool can = window && window->width() > 0 && window->height() > 0 && IsShown(control) &&
                   IsReachable(control);
  return can ? control : nullptr;
}

SheetState* SheetOnTop() {
  const WindowPtr window = FindWindowOf(ActiveTop());
  return window && window->enabled() ? StateOf<SheetState>(*window) : nullptr;
}

// Focuses the edit with an id and returns it; null when it cannot be edited.
HWND EditAt(Desk& desk, int id) {
  const HWND edit = Usable(id);
  const WindowPtr window = FindWindowOf(edit);
  if (!window || window->windowClass != WindowClass::kEdit || (window->style & ES_READONLY) != 0)
    return nullptr;
  return desk.Focus(id) ? edit : nullptr;
}

// Types a text without painting between characters. Stops when the focus moves or another window
// opens.
bool TypeAll(HWND edit, std::u16string_view text) {
  const HWND top = ActiveTop();
  return std::all_of(text.begin(), text.end(), [&](char16_t character) {
    return ActiveTop() == top && GetFocus() == edit && TypeCharacter(edit, character);
  });
}

}  // namespace

Desk::Desk() : manager_(std::make_unique<WindowManager>()) {}
Desk::~Desk() = default;

void Desk::Attach(User* user) {
  manager_->user = user;
  manager_->userLeft = false;
}

void Desk::SetBuddyReading(BuddyReading reading) { manager_->buddyReading = reading; }

int Desk::ModalDepth() const { return static_cast<int>(manager_->modal.size()); }
HWND Desk::Top() const { return ActiveTop(); }
bool Desk::Has(int id) const { return ControlOf(Top(), id) != nullptr; }
int Desk::FocusedId() const { return GetDlgCtrlID(manager_->focus); }
HCURSOR Desk::Cursor() const { return manager_->cursor; }
const std::vector<Desk::Shown>& Desk::History() const { return manager_->history; }
void Desk::ClearShown() { manager_->history.clear(); }

bool Desk::Click(int id) { return ClickControl(Usable(id)); }
bool Desk::Select(int id, int index) { return PickItem(Usable(id), index); }
bool Desk::Key(int key) { return PressKey(Top(), key); }
bool Desk::Tab(bool back) { return PressTab(Top(), back); }
bool Desk::Enter() { return PressEnter(Top()); }
bool Desk::Escape() { return PressEscape(Top()); }
bool Desk::AccessKey(char16_t letter) { return PressAccessKey(Top(), letter); }

// A click outside an open list closes it first.
bool Desk::Page(int index) {
  CloseFocusedList(false);
  return SheetOnTop() != nullptr && SheetOnTop()->Turn(index);
}

std::vector<WindowView> Desk::Windows() const {
  std::vector<WindowView> views;
  for (HWND top : manager_->tops) {
    const WindowPtr window = FindWindowOf(top);
    if (window && window->visible()) views.push_back(ViewOfWindow(*window));
  }
  return views;
}

std::u16string Desk::Title() const {
  const WindowPtr window = FindWindowOf(Top());
  if (!window) return {};
  const auto* sheet = StateOf<SheetState>(*window);
  const WindowPtr page = sheet != nullptr ? FindWindowOf(sheet->ActivePage()) : nullptr;
  return page ? page->text : window->text;
}

bool Desk::IsMessageBox() const {
  const WindowPtr window = FindWindowOf(Top());
  return window && window->viewKind == WindowView::Kind::kMessageBox;
}

std::u16string Desk::MessageText() const {
  return IsMessageBox() ? Text(IDC_STATIC) : std::u16string();
}

UINT Desk::MessageStyle() const { return IsMessageBox() ? FindWindowOf(Top())->messageStyle : 0; }

ControlView Desk::Control(int id) const {
  const WindowPtr control = FindWindowOf(ControlOf(Top(), id));
  if (!control)
    throw std::out_of_range("no control " + std::to_string(id) + " in the window on top");
  return ViewOf(*control);
}

bool Desk::Focus(int id) {
  const HWND control = Usable(id);
  if (control == nullptr) return false;
  SetFocus(control);
  if (GetFocus() == control) MoveDefault(control);
  return GetFocus() == control;
}

bool Desk::Type(int id, std::u16string_view text) {
  const HWND edit = EditAt(*this, id);
  if (edit == nullptr) return false;
  const auto end = FindWindowOf(edit)->text.size();
  SendMessageW(edit, EM_SETSEL, end, static_cast<LPARAM>(end));
  return TypeAll(edit, text);
}

bool Desk::Replace(int id, std::u16string_view text) {
  const HWND edit = EditAt(*this, id);
  if (edit == nullptr) return false;
  SendMessageW(edit, EM_SETSEL, 0, -1);
  if (text.empty()) return PressKey(Top(), VK_DELETE);
  return TypeAll(edit, text);
}

bool Desk::Paste(int id, std::u16string_view text) {
  const HWND edit = EditAt(*this, id);
  if (edit == nullptr) return false;
  SendMessageW(edit, EM_SETSEL, 0, -1);
  return PasteText(edit, text);
}

bool Desk::Select(int id, std::u16string_view item) {
  if (!Has(id)) return false;
  const std::vector<std::u16string> items = Control(id).items;
  const auto found = std::find(items.begin(), items.end(), item);
  return found != items.end() && Select(id, static_cast<int>(found - items.begin()));
}

bool Desk::Spin(int id, int steps) {
  const int count = std::abs(std::clamp(steps, -kMaxSpinSteps, kMaxSpinSteps));
  for (int i = 0; i < count; ++i)
    if (!SpinBy(Usable(id), steps > 0)) return false;
  return true;
}

bool Desk::Close() {
  const WindowPtr window = FindWindowOf(Top());
  if (!window || !window->enabled()) return false;
  CloseFocusedList(false);
  if (auto* sheet = StateOf<SheetState>(*window)) return sheet->Close();
  SendMessageW(window->handle, WM_CLOSE, 0, 0);
  return true;
}

// The button gets the focus before it is pressed.
bool Desk::Press(SheetButton button) {
  if (SheetOnTop() != nullptr) SetFocus(nullptr);
  return SheetOnTop() != nullptr && SheetOnTop()->Press(button);
}

WindowManager& Manager() { return Machine::Current().desk().manager(); }

bool ScriptedUser::Act(Desk& desk) {
  if (!problem_.empty()) return false;
  if (next_ >= steps_.size()) {
    problem_ = "the script ended while a window was open";
    return false;
  }
  const Step& step = steps_[next_++];
  try {
    step(desk);
  } catch (const std::exception& error) {
    if (problem_.empty()) problem_ = "step " + std::to_string(next_) + ": " + error.what();
    return false;
  } catch (...) {
    if (problem_.empty()) problem_ = "step " + std::to_string(next_) + " threw";
    return false;
  }
  return true;
}

}  // namespace platform
