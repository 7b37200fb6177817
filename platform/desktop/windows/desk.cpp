// The desk: a person's actions on the window on top, and what can be seen of it.
#include "platform/desk.h"

#include <algorithm>
#include <stdexcept>

#include "platform/desktop/windows/manager.h"
#include "platform/machine.h"

namespace platform {

namespace {

// As long as a person holds an arrow at most.
constexpr int kMostSteps = 10000;

class ManagedDesk final : public Desk {
 public:
  WindowManager state;

  void Attach(User* user) override {
    state.user = user;
    state.gone = false;
  }

  int ModalDepth() const override { return static_cast<int>(state.modal.size()); }
  std::vector<WindowView> Windows() override;
  HWND Top() const override { return ActiveTop(); }
  std::u16string Title() const override;
  bool IsMessageBox() const override;
  std::u16string MessageText() const override;
  UINT MessageStyle() const override;
  ControlView Control(int id) const override;
  bool Has(int id) const override { return ControlOf(Top(), id) != nullptr; }
  std::u16string Text(int id) const override { return Control(id).text; }
  int FocusedId() const override { return GetDlgCtrlID(state.focus); }
  HCURSOR Cursor() const override { return state.cursor; }
  const std::vector<Shown>& History() const override { return state.history; }
  void ClearShown() override { state.history.clear(); }

  bool Focus(int id) override;
  bool Click(int id) override { return Usable(id) && ClickControl(ControlOf(Top(), id)); }
  bool Type(int id, std::u16string_view text) override;
  bool Replace(int id, std::u16string_view text) override;
  bool Paste(int id, std::u16string_view text) override;
  bool EditTo(int id, std::u16string_view text) override { return Paste(id, text); }
  bool Select(int id, int index) override {
    return Usable(id) && PickItem(ControlOf(Top(), id), index);
  }
  bool Select(int id, std::u16string_view item) override;
  bool Spin(int id, int steps) override;
  bool Key(int key) override { return PressKey(Top(), key); }
  bool Tab(bool back) override { return PressTab(Top(), back); }
  bool Enter() override { return PressEnter(Top()); }
  bool Escape() override { return PressEscape(Top()); }
  bool AccessKey(char16_t letter) override { return PressAccessKey(Top(), letter); }
  bool Close() override;
  bool Page(int index) override { return SheetOnTop() != nullptr && SheetOnTop()->Turn(index); }
  bool Press(SheetButton button) override {
    return SheetOnTop() != nullptr && SheetOnTop()->Press(button);
  }

 private:
  // Whether the control is there, can be seen and acted on, in a window that is on top.
  bool Usable(int id) const {
    const HWND control = ControlOf(Top(), id);
    return control != nullptr && IsShown(control) && IsReachable(control) &&
           ViewOf(*FindWindowOf(control)).visible;
  }
  SheetState* SheetOnTop() const;
  HWND EditAt(int id);
  bool TypeAll(HWND edit, std::u16string_view text);
};

std::vector<WindowView> ManagedDesk::Windows() {
  std::vector<WindowView> views;
  for (HWND top : state.tops) {
    const WindowPtr window = FindWindowOf(top);
    if (window && window->visible()) views.push_back(ViewOfWindow(*window));
  }
  return views;
}

std::u16string ManagedDesk::Title() const {
  const WindowPtr window = FindWindowOf(Top());
  if (!window) return {};
  const auto* sheet = StateOf<SheetState>(*window);
  const WindowPtr page = sheet != nullptr ? FindWindowOf(sheet->ActivePage()) : nullptr;
  return page ? page->text : window->text;
}

bool ManagedDesk::IsMessageBox() const {
  const WindowPtr window = FindWindowOf(Top());
  return window && window->viewKind == WindowView::Kind::kMessageBox;
}

std::u16string ManagedDesk::MessageText() const {
  constexpr int kTextId = 0xFFFF;
  return IsMessageBox() ? Text(kTextId) : std::u16string();
}

UINT ManagedDesk::MessageStyle() const {
  return IsMessageBox() ? FindWindowOf(Top())->messageStyle : 0;
}

ControlView ManagedDesk::Control(int id) const {
  const WindowPtr control = FindWindowOf(ControlOf(Top(), id));
  if (!control)
    throw std::out_of_range("no control " + std::to_string(id) + " in the window on top");
  return ViewOf(*control);
}

bool ManagedDesk::Focus(int id) {
  if (!Usable(id)) return false;
  const HWND control = ControlOf(Top(), id);
  SetFocus(control);
  if (state.focus == control) MoveDefault(control);
  return state.focus == control;
}

HWND ManagedDesk::EditAt(int id) {
  if (!Usable(id)) return nullptr;
  const HWND edit = ControlOf(Top(), id);
  const WindowPtr window = FindWindowOf(edit);
  if (window->windowClass != WindowClass::kEdit || (window->style & ES_READONLY) != 0)
    return nullptr;
  return Focus(id) ? edit : nullptr;
}

// Painting waits for the fingers to rest. What takes the focus or opens a window above keeps the
// rest of the text.
bool ManagedDesk::TypeAll(HWND edit, std::u16string_view text) {
  const HWND top = Top();
  for (char16_t character : text) {
    if (Top() != top || state.focus != edit || !TypeCharacter(edit, character)) return false;
    DispatchPosted();
  }
  return true;
}

bool ManagedDesk::Type(int id, std::u16string_view text) {
  const HWND edit = EditAt(id);
  if (edit == nullptr) return false;
  const auto end = FindWindowOf(edit)->text.size();
  SendMessageW(edit, EM_SETSEL, end, static_cast<LPARAM>(end));
  return TypeAll(edit, text);
}

bool ManagedDesk::Replace(int id, std::u16string_view text) {
  const HWND edit = EditAt(id);
  if (edit == nullptr) return false;
  SendMessageW(edit, EM_SETSEL, 0, -1);
  if (text.empty()) return PressKey(Top(), VK_DELETE);
  return TypeAll(edit, text);
}

bool ManagedDesk::Paste(int id, std::u16string_view text) {
  const HWND edit = EditAt(id);
  if (edit == nullptr) return false;
  SendMessageW(edit, EM_SETSEL, 0, -1);
  return PasteText(edit, text);
}

bool ManagedDesk::Select(int id, std::u16string_view item) {
  if (!Has(id)) return false;
  const std::vector<std::u16string> items = Control(id).items;
  const auto found = std::find(items.begin(), items.end(), item);
  return found != items.end() && Select(id, static_cast<int>(found - items.begin()));
}

bool ManagedDesk::Spin(int id, int steps) {
  const int count = std::abs(std::clamp(steps, -kMostSteps, kMostSteps));
  for (int i = 0; i < count; ++i) {
    if (!Usable(id) || !SpinBy(ControlOf(Top(), id), steps > 0)) return false;
    DispatchPosted();
  }
  return true;
}

bool ManagedDesk::Close() {
  const WindowPtr window = FindWindowOf(Top());
  if (!window || !window->enabled()) return false;
  if (auto* sheet = StateOf<SheetState>(*window)) return sheet->Close();
  SendMessageW(window->handle, WM_CLOSE, 0, 0);
  return true;
}

SheetState* ManagedDesk::SheetOnTop() const {
  const WindowPtr window = FindWindowOf(Top());
  return window && window->enabled() ? StateOf<SheetState>(*window) : nullptr;
}

}  // namespace

WindowManager& Manager() { return static_cast<ManagedDesk&>(Machine::Current().desk()).state; }

std::unique_ptr<Desk> MakeDesk() { return std::make_unique<ManagedDesk>(); }

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
