// Windows as the stand-in implements them: the part that window classes, dialogs, property sheets
// and drawing share. Handles are never reused, so that a stale handle finds nothing.
#pragma once

#include <winuser.h>

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

// Extra state of a window that the stand-in creates itself: sheets, file dialogs, forms.
class WindowState {
 public:
  virtual ~WindowState() = default;
};

// The interface of a property-sheet window for the desk (its Window::state).
class SheetState : public WindowState {
 public:
  virtual HWND ActivePage() const = 0;  // null: no page is shown
  // Fills tabs, activeTab, changed, pageWidth and pageHeight.
  virtual void Describe(WindowView& view) const = 0;
  // User actions; each returns whether the user could perform it.
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
  size_t limit = 32767;  // characters that a user can enter
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
  int lower = 100;  // inverted until a range is set, as documented
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
  bool invalid = true;         // needs painting
  // Operations drawn on a device context of the window. The list is cleared before an owner-drawn
  // control is painted.
  DisplayList drawing;
  // The background that the dialog returned for a static control; 0xFFFFFFFF: none.
  COLORREF background = 0xFFFFFFFF;
  COLORREF textColour = 0;
  HWND lastFocus = nullptr;  // top-level windows: the focus when another was activated
  WindowView::Kind viewKind = WindowView::Kind::kDialog;  // top-level windows
  UINT messageStyle = 0;                                  // message boxes
  // Modal windows:
  bool ended = false;
  bool ownerDisabled = false;  // by this window, which enables it again at its end
  INT_PTR result = 0;
  INT_PTR cancelResult = IDCANCEL;  // the result when there is no user

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

// Returns the window of a handle; null for a stale or invalid one. While a caller holds the
// pointer, the object outlives the destruction of the window.
WindowPtr FindWindowOf(HWND handle);

// Returns the state of a window as the given class; null when it has no such state.
template <typename State>
State* StateOf(const Window& window) {
  return dynamic_cast<State*>(window.state.get());
}

// ---- creation ----

// A control that a dialog template or a window of the stand-in describes.
struct ControlRequest {
  std::u16string className;  // or
  WORD classAtom = 0;        // ordinal of a predefined class in dialog templates
  int id = 0;
  std::u16string text;
  DWORD style = 0;
  RECT rect = {};  // pixels in the parent
};
// Describes a visible control.
ControlRequest MakeControl(std::u16string className, int id, std::u16string text, DWORD style,
                           int x, int y, int width, int height);

// A dialog made from a compiled template.
struct DialogRequest {
  HINSTANCE instance = nullptr;
  const void* data = nullptr;  // the template
  size_t size = 0;             // in bytes; the parser reads no further
  HWND parent = nullptr;       // owner of a top-level dialog
  DLGPROC proc = nullptr;
  LPARAM param = 0;
  bool page = false;   // creates a hidden child of parent, whatever its style; sets no focus
  bool modal = false;  // the owner is disabled before WM_INITDIALOG; RunModal enables it again
};
// Creates the dialog with its controls and sends WM_INITDIALOG. Returns null when the template is
// damaged or a window cannot be created; then nothing is left behind.
HWND CreateDialogWindow(const DialogRequest& request);

// A top-level window without a template: a message box, file dialog or property sheet. Messages go
// to its dialog procedure first, as for a dialog. WM_INITDIALOG is not sent. CreateTopWindow
// returns null when no window can be created.
struct TopWindowRequest {
  std::u16string title;
  int width = 0;  // client area, pixels
  int height = 0;
  HWND owner = nullptr;  // for a child, its top-level window
  DLGPROC proc = nullptr;
  WindowView::Kind kind = WindowView::Kind::kDialog;
  std::unique_ptr<WindowState> state;
  std::vector<ControlRequest> controls;
};
HWND CreateTopWindow(TopWindowRequest request);

// ---- modal windows ----

// Runs a modal loop: disables the owner, shows and activates the window, and handles messages,
// painting and user actions until EndModal or EndDialog; then destroys the window and returns the
// result. A window has at most one loop. Without a user the window is cancelled: by the cancel
// button of a sheet, otherwise by WM_CLOSE; when that does not end it, the result is cancelResult.
INT_PTR RunModal(HWND top);
// Ends a modal window with a result: enables and activates its owner, and hides the window.
bool EndModal(HWND top, INT_PTR result);

// ---- helpers ----

void Destroy(HWND window);  // with its children; does nothing for a stale handle
void SetVisible(HWND window, bool visible);
HWND ActiveTop();  // the topmost modal window; null when none is open
void PlaceWindow(Window& window, const RECT& rect);
void FocusFirst(HWND dialog);  // the first stop of the Tab key

}  // namespace platform
