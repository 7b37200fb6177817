// Windows as the platform itself sees them: what window classes, dialogs, property sheets and
// drawing share. Handles are never used twice, so that a stale one finds nothing.
#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/machine/desk.h"
#include "platform/machine/display_list.h"

namespace platform {

enum class WindowClass {
  kDialog,  // dialogs, pages, message boxes, file dialogs, property sheets
  kButton,
  kStatic,
  kEdit,
  kComboBox,
  kListBox,
  kUpDown
};

// What a window of the platform's own keeps beyond Window itself: sheets, file dialogs, forms.
class WindowState {
 public:
  virtual ~WindowState() = default;
};

// What the desk asks of the window of a property sheet (its Window::state).
class SheetState : public WindowState {
 public:
  virtual HWND ActivePage() const = 0;  // null: none shown
  // Fills tabs, activeTab, changed, pageWidth and pageHeight.
  virtual void Describe(WindowView& view) const = 0;
  // What a person does; each answers whether it could be done.
  virtual bool Turn(int index) = 0;
  virtual bool Press(SheetButton button) = 0;
  virtual bool Close() = 0;  // the close box
};

// The dialog side of a window of class kDialog.
struct DialogData {
  DLGPROC proc = nullptr;
  LONG_PTR messageResult = 0;  // DWLP_MSGRESULT
  LONG_PTR user = 0;           // DWLP_USER
  int defaultId = 0;           // the default button's id; 0: none
};

struct EditData {
  size_t limit = 32767;  // characters a person may enter
  size_t from = 0;       // the selection, from <= to
  size_t to = 0;
};

struct ListData {  // of list boxes and combo boxes
  std::vector<std::u16string> texts;
  int selected = -1;
  bool open = false;    // combo boxes: the drop-down list is shown
  int openedWith = -1;  // the selection when it was opened; Esc restores it
};

struct UpDownData {
  int lower = 100;  // as created; upside down until a range is set
  int upper = 0;
  int position = 0;
  HWND buddy = nullptr;
};

struct Window;
using WindowPtr = std::shared_ptr<Window>;
using WindowProc = LRESULT (*)(const WindowPtr& window, UINT message, WPARAM wParam, LPARAM lParam);

struct Window {
  HWND handle = nullptr;
  WindowClass windowClass = WindowClass::kDialog;
  WindowProc proc = nullptr;
  int id = 0;
  DWORD style = 0;  // WS_VISIBLE and WS_DISABLED are kept up to date in it
  RECT rect = {};   // pixels, in the parent's client area; of a top-level window on the screen
  std::u16string text;
  HWND parent = nullptr;       // child windows
  HWND owner = nullptr;        // top-level windows
  std::vector<HWND> children;  // in tab order
  bool invalid = true;         // waits for painting
  bool destroying = false;
  // Drawing on a device context of the window appends here; the list is emptied before an
  // owner-drawn control is asked for.
  DisplayList drawing;
  // Of a static control whose dialog returned a brush for it; 0xFFFFFFFF: it returned none.
  COLORREF background = 0xFFFFFFFF;
  COLORREF textColour = 0;
  HWND lastFocus = nullptr;  // top-level windows: what had the focus when it was left
  WindowView::Kind viewKind = WindowView::Kind::kDialog;  // top-level windows
  UINT messageStyle = 0;                                  // message boxes
  // Modal windows:
  bool ended = false;
  bool ownerDisabled = false;  // by this window, to be undone at its end
  INT_PTR result = 0;
  INT_PTR cancelResult = IDCANCEL;  // what it ends with when nobody is there

  LONG_PTR userData = 0;               // GWLP_USERDATA
  std::unique_ptr<DialogData> dialog;  // kDialog
  bool checked = false;                // check boxes and radio buttons
  EditData edit;
  ListData list;
  UpDownData upDown;
  std::unique_ptr<WindowState> state;

  bool visible() const { return (style & WS_VISIBLE) != 0; }
  bool enabled() const { return (style & WS_DISABLED) == 0; }
  int width() const { return rect.right - rect.left; }
  int height() const { return rect.bottom - rect.top; }
};

// The window of a handle; null for a handle that is stale or was never one. Held on to while a
// procedure runs, it outlives its own destruction.
WindowPtr FindWindowOf(HWND handle);

// A window's state as the class it is known to be of; null when it has none.
template <typename State>
State* StateOf(const Window& window) {
  return dynamic_cast<State*>(window.state.get());
}

// ---- creation ----

// A control as a dialog template or a window of the platform's own asks for it.
struct ControlRequest {
  std::u16string className;  // or
  WORD classAtom = 0;        // the predefined classes' ordinals of dialog templates
  int id = 0;
  std::u16string text;
  DWORD style = 0;
  RECT rect = {};  // pixels in the parent
};
// A visible control.
ControlRequest Part(std::u16string className, int id, std::u16string text, DWORD style, int x,
                    int y, int width, int height);

// A dialog made from a compiled template.
struct DialogRequest {
  HINSTANCE instance = nullptr;
  const void* data = nullptr;  // the template
  size_t size = 0;             // its bytes; nothing behind them is read
  HWND parent = nullptr;       // owner of a top-level dialog
  DLGPROC proc = nullptr;
  LPARAM param = 0;
  bool page = false;   // becomes a hidden child of parent whatever its style says; no focus is set
  bool modal = false;  // the owner is disabled before WM_INITDIALOG; RunModal enables it again
};
// Creates the dialog with its controls and sends WM_INITDIALOG. Null when the template is damaged
// or a window cannot be created (nothing is left behind then).
HWND CreateDialogWindow(const DialogRequest& request);

// A top-level window without a template: message boxes, file dialogs, property sheets. It is a
// dialog: messages go to its dialog procedure, then to DefDlgProcW. No WM_INITDIALOG is sent. Null
// when no window can be created.
struct TopWindowRequest {
  std::u16string title;
  int width = 0;  // client area, pixels
  int height = 0;
  HWND owner = nullptr;  // a child stands for its top-level window
  DLGPROC proc = nullptr;
  WindowView::Kind kind = WindowView::Kind::kDialog;
  std::unique_ptr<WindowState> state;
  std::vector<ControlRequest> parts;
};
HWND CreateTopWindow(TopWindowRequest request);

// ---- modal windows ----

// Disables the owner, shows and activates the window and handles messages, painting and the user's
// actions until EndModal or EndDialog is called on it; then destroys it and answers the result. At
// most one loop a window. With no user it ends as cancelled: a sheet's cancel button, otherwise
// WM_CLOSE, and cancelResult when that does not end it.
INT_PTR RunModal(HWND top);
// Ends a modal window with a result: its owner is enabled, it is hidden, the owner becomes active.
bool EndModal(HWND top, INT_PTR result);

// ---- helpers ----

void Destroy(HWND window);  // with its children; nothing for a stale handle
void SetVisible(HWND window, bool visible);
HWND ActiveTop();  // the window on top of the modal windows; null when none is open
void PlaceWindow(Window& window, const RECT& rect);
void FocusFirst(HWND dialog);  // the first stop of the Tab key

}  // namespace platform
