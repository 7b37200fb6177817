#include "platform/desktop/libraries/htui_dialog.h"

#include <windows.h>
#include <commctrl.h>

#include <algorithm>

#include "platform/desktop/windows/window.h"

namespace platform::halftone {
namespace {

constexpr int kWidth = 420;
constexpr int kRow = 26;
constexpr int kMargin = 12;
constexpr int kLabelWidth = 130;
constexpr int kValueWidth = 60;
constexpr int kSliderWidth = kWidth - 2 * kMargin - kLabelWidth - kValueWidth - 8;

struct FormState : WindowState {
  Form* form = nullptr;
};

int CountOf(const auto& rows) { return static_cast<int>(rows.size()); }

// Rows of a form from top to bottom, then its buttons.
class Builder {
 public:
  Builder(HWND window, const Form& form) : window_(window), form_(form) {}

  bool Build() {
    for (int i = 0; i < CountOf(form_.lists); ++i) BuildList(i);
    for (int i = 0; i < CountOf(form_.sliders); ++i) BuildSlider(i);
    for (int i = 0; i < CountOf(form_.boxes); ++i) BuildBox(i);
    const DWORD enabled = form_.readOnly ? WS_DISABLED : 0;
    const int y = y_ + 8;
    Add(u"BUTTON", u"標準に戻す(&E)", BS_PUSHBUTTON | WS_TABSTOP | enabled, kResetButton, kMargin,
        y, 120, 22);
    Add(u"BUTTON", u"OK", BS_DEFPUSHBUTTON | WS_TABSTOP | enabled, IDOK, kWidth - 194, y, 88, 22);
    Add(u"BUTTON", u"ｷｬﾝｾﾙ", BS_PUSHBUTTON | WS_TABSTOP, IDCANCEL, kWidth - 100, y, 88, 22);
    return built_;
  }

  static int Height(const Form& form) {
    return (CountOf(form.lists) + CountOf(form.sliders) + CountOf(form.boxes)) * kRow + 54;
  }

 private:
  DWORD StyleFor(bool enabled) const {
    return WS_TABSTOP | (enabled && !form_.readOnly ? 0 : WS_DISABLED);
  }

  void BuildList(int index) {
    const List& list = form_.lists[static_cast<size_t>(index)];
    Label(list.label);
    const int id = kFirstList + index;
    Add(u"COMBOBOX", u"", CBS_DROPDOWNLIST | StyleFor(list.enabled), id, kMargin + kLabelWidth, y_,
        kSliderWidth, 200);
    for (const auto& item : list.items)
      SendDlgItemMessageW(window_, id, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(item.c_str()));
    y_ += kRow;
  }

  void BuildSlider(int index) {
    const Slider& slider = form_.sliders[static_cast<size_t>(index)];
    Label(slider.label);
    const int id = kFirstSlider + index;
    const DWORD style = StyleFor(slider.enabled);
    Add(TRACKBAR_CLASSW, u"", TBS_HORZ | TBS_NOTICKS | style, id, kMargin + kLabelWidth, y_,
        kSliderWidth, 20);
    SendDlgItemMessageW(window_, id, TBM_SETRANGEMIN, FALSE, slider.minimum);
    SendDlgItemMessageW(window_, id, TBM_SETRANGEMAX, FALSE, slider.maximum);
    Add(u"EDIT", u"", ES_RIGHT | WS_BORDER | style, kFirstValue + index,
        kWidth - kMargin - kValueWidth, y_, kValueWidth, 20);
    SendDlgItemMessageW(window_, kFirstValue + index, EM_LIMITTEXT, 6, 0);
    y_ += kRow;
  }

  void BuildBox(int index) {
    const Box& box = form_.boxes[static_cast<size_t>(index)];
    Add(u"BUTTON", box.label, BS_AUTOCHECKBOX | StyleFor(box.enabled), kFirstBox + index,
        kMargin + kLabelWidth, y_, kSliderWidth, 16);
    y_ += kRow;
  }

  void Label(const char16_t* text) {
    Add(u"STATIC", text, 0, -1, kMargin, y_ + 3, kLabelWidth, 14);
  }

  void Add(const char16_t* windowClass, const char16_t* text, DWORD style, int id, int x, int y,
           int width, int height) {
    built_ = built_ &&
             CreateWindowExW(0, windowClass, text, WS_CHILD | WS_VISIBLE | style, x, y, width,
                             height, window_, reinterpret_cast<HMENU>(static_cast<LONG_PTR>(id)),
                             nullptr, nullptr) != nullptr;
  }

  HWND window_;
  const Form& form_;
  int y_ = kMargin;
  bool built_ = true;
};

void ShowSlider(HWND window, const Slider& slider, int index) {
  SendDlgItemMessageW(window, kFirstSlider + index, TBM_SETPOS, TRUE, slider.value);
}

void ShowValue(HWND window, const Slider& slider, int index) {
  WCHAR text[16];
  wsprintfW(text, u"%d", slider.value);
  SetDlgItemTextW(window, kFirstValue + index, text);
}

void Fill(HWND window, FormState& state) {
  const Form& form = *state.form;
  for (int i = 0; i < CountOf(form.sliders); ++i) {
    ShowSlider(window, form.sliders[static_cast<size_t>(i)], i);
    ShowValue(window, form.sliders[static_cast<size_t>(i)], i);
  }
  for (int i = 0; i < CountOf(form.lists); ++i)
    SendDlgItemMessageW(window, kFirstList + i, CB_SETCURSEL,
                        static_cast<WPARAM>(form.lists[static_cast<size_t>(i)].selection), 0);
  for (int i = 0; i < CountOf(form.boxes); ++i)
    CheckDlgButton(window, kFirstBox + i, form.boxes[static_cast<size_t>(i)].checked);
}

// Rows that cannot be used are left as they are.
void Reset(HWND window, FormState& state) {
  for (Slider& slider : state.form->sliders) {
    if (!slider.enabled) continue;
    slider.value = slider.standard;
    slider.touched = true;
  }
  for (List& list : state.form->lists) {
    if (!list.enabled) continue;
    list.selection = list.standard;
    list.touched = true;
  }
  for (Box& box : state.form->boxes) {
    if (!box.enabled) continue;
    box.checked = box.standard;
    box.touched = true;
  }
  Fill(window, state);
}

void SlideMoved(HWND window, FormState& state, HWND bar) {
  const int index = GetDlgCtrlID(bar) - kFirstSlider;
  if (index < 0 || index >= CountOf(state.form->sliders)) return;
  Slider& slider = state.form->sliders[static_cast<size_t>(index)];
  const int position = static_cast<int>(SendMessageW(bar, TBM_GETPOS, 0, 0));
  if (position == slider.value) return;
  slider.value = position;
  slider.touched = true;
  ShowValue(window, slider, index);
}

// A typed number counts once its field is left or the form confirmed, brought inside the bounds;
// what is no number is forgotten.
void TakeTyped(HWND window, FormState& state, int index) {
  Slider& slider = state.form->sliders[static_cast<size_t>(index)];
  BOOL isNumber = FALSE;
  const int typed = static_cast<int>(GetDlgItemInt(window, kFirstValue + index, &isNumber, TRUE));
  if (isNumber && typed != slider.value) {
    slider.value = std::clamp(typed, slider.minimum, slider.maximum);
    slider.touched = true;
    ShowSlider(window, slider, index);
  }
  ShowValue(window, slider, index);
}

bool Close(HWND window, FormState& state, int id) {
  for (int i = 0; id == IDOK && i < CountOf(state.form->sliders); ++i) TakeTyped(window, state, i);
  return EndModal(window, id);
}

bool Command(HWND window, FormState& state, int id, UINT code) {
  Form& form = *state.form;
  if (id == IDOK || id == IDCANCEL) return Close(window, state, id);
  if (id == kResetButton) {
    Reset(window, state);
  } else if (id >= kFirstBox && id < kFirstBox + CountOf(form.boxes) && code == BN_CLICKED) {
    Box& box = form.boxes[static_cast<size_t>(id - kFirstBox)];
    box.checked = IsDlgButtonChecked(window, id) == BST_CHECKED;
    box.touched = true;
  } else if (id >= kFirstList && id < kFirstList + CountOf(form.lists) && code == CBN_SELCHANGE) {
    List& list = form.lists[static_cast<size_t>(id - kFirstList)];
    list.selection = static_cast<int>(SendDlgItemMessageW(window, id, CB_GETCURSEL, 0, 0));
    list.touched = true;
  } else if (id >= kFirstValue && id < kFirstValue + CountOf(form.sliders)) {
    if (code == EN_KILLFOCUS) TakeTyped(window, state, id - kFirstValue);
  } else {
    return false;
  }
  return true;
}

INT_PTR CALLBACK FormProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const auto found = FindWindowOf(window);
  auto* state = found ? StateOf<FormState>(*found) : nullptr;
  if (!state) return FALSE;
  switch (message) {
    case WM_CLOSE:
      return EndModal(window, IDCANCEL);
    case WM_HSCROLL:
      SlideMoved(window, *state, reinterpret_cast<HWND>(lParam));
      return TRUE;
    case WM_COMMAND:
      return Command(window, *state, LOWORD(wParam), HIWORD(wParam));
    default:
      return FALSE;
  }
}

}  // namespace

Outcome ShowForm(Form& form) {
  TopWindowRequest top;
  top.title = form.title;
  top.width = kWidth;
  top.height = Builder::Height(form);
  top.owner = GetActiveWindow();
  top.proc = FormProc;
  auto state = std::make_unique<FormState>();
  state->form = &form;
  FormState& filled = *state;
  top.state = std::move(state);
  const HWND window = CreateTopWindow(std::move(top));
  if (!window) return Outcome::kFailed;
  if (!Builder(window, form).Build()) {
    DestroyWindow(window);
    return Outcome::kFailed;
  }
  Fill(window, filled);
  SendMessageW(window, DM_SETDEFID, IDOK, 0);
  const HWND first = GetNextDlgTabItem(window, nullptr, FALSE);
  if (first) SetFocus(first);
  return RunModal(window) == IDOK ? Outcome::kConfirmed : Outcome::kCancelled;
}

}  // namespace platform::halftone
