// Snapshots of windows and controls for the desk.
#include "platform/user32/manager.h"

namespace platform {

namespace {

ControlKind KindOf(const Window& window) {
  if (IsOwnerDrawn(window)) return ControlKind::kOwnerDraw;
  switch (window.windowClass) {
    case WindowClass::kButton:
      switch (window.style & BS_TYPEMASK) {
        case BS_AUTOCHECKBOX:
          return ControlKind::kCheckBox;
        case BS_AUTORADIOBUTTON:
          return ControlKind::kRadio;
        case BS_GROUPBOX:
          return ControlKind::kGroupBox;
        default:
          return ControlKind::kButton;
      }
    case WindowClass::kEdit:
      return ControlKind::kEdit;
    case WindowClass::kComboBox:
      return ControlKind::kComboBox;
    case WindowClass::kListBox:
      return ControlKind::kListBox;
    case WindowClass::kUpDown:
      return ControlKind::kUpDown;
    default:
      return ControlKind::kStatic;
  }
}

void AddControls(const Window& window, std::vector<ControlView>& out) {
  for (HWND child : window.children) {
    const WindowPtr one = FindWindowOf(child);
    if (one && one->windowClass != WindowClass::kDialog) out.push_back(ViewOf(*one));
  }
}

}  // namespace

ControlView ViewOf(const Window& window) {
  ControlView view;
  view.handle = window.handle;
  view.id = window.id;
  view.kind = KindOf(window);
  view.rect = window.rect;
  view.text = window.text;
  view.visible = window.visible() && window.width() > 0 && window.height() > 0;
  view.enabled = window.enabled();
  view.focused = Manager().focus == window.handle;
  view.checked = window.checked;
  view.defaultButton = IsDefaultButton(window);
  view.tabStop = IsTabStop(window);
  view.group = (window.style & WS_GROUP) != 0;
  view.prefix = view.kind != ControlKind::kStatic || (window.style & SS_NOPREFIX) == 0;
  view.centred = view.kind == ControlKind::kStatic && (window.style & SS_TYPEMASK) == SS_CENTER;
  view.background = window.background;
  view.textColour = window.textColour;
  view.drawing = window.drawing;
  view.readOnly = view.kind == ControlKind::kEdit && (window.style & ES_READONLY) != 0;
  view.textLimit = static_cast<int>(window.edit.limit);
  view.items = window.list.texts;
  view.selection = window.list.selected;
  view.open = window.list.open;
  if (view.kind == ControlKind::kComboBox) view.text = SelectedText(window.list);
  view.minimum = window.upDown.lower;
  view.maximum = window.upDown.upper;
  view.position = window.upDown.position;
  view.buddy = GetDlgCtrlID(window.upDown.buddy);
  return view;
}

WindowView ViewOfWindow(const Window& window) {
  WindowView view;
  view.handle = window.handle;
  view.title = window.text;
  view.width = window.width();
  view.height = window.height();
  view.kind = window.viewKind;
  view.enabled = window.enabled();
  view.messageStyle = window.messageStyle;
  AddControls(window, view.controls);
  const auto* sheet = StateOf<SheetState>(window);
  if (sheet == nullptr) return view;
  sheet->Describe(view);
  if (const WindowPtr page = FindWindowOf(sheet->ActivePage())) {
    view.page = std::make_shared<WindowView>(ViewOfWindow(*page));
  }
  return view;
}

HWND ControlOf(HWND top, int id) {
  const WindowPtr window = FindWindowOf(top);
  if (!window) return nullptr;
  if (const auto* sheet = StateOf<SheetState>(*window)) {
    const WindowPtr page = FindWindowOf(sheet->ActivePage());
    const HWND found = page ? ChildWithId(*page, id) : nullptr;
    if (found != nullptr) return found;
  }
  return ChildWithId(*window, id);
}

}  // namespace platform
