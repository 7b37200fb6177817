// The window manager: every window there is, who has the keyboard, and what the files of this
// folder and the controls share of it.
#pragma once

#include <windows.h>

#include <memory>
#include <unordered_map>
#include <vector>

#include "platform/machine/desk.h"
#include "platform/user32/window.h"

namespace platform {

struct WindowManager {
  std::unordered_map<HWND, WindowPtr> windows;
  std::vector<HWND> tops;   // top-level windows, the one on top last
  std::vector<HWND> modal;  // windows with a running modal loop, the innermost last
  HWND focus = nullptr;
  HWND active = nullptr;
  HCURSOR cursor = nullptr;
  User* user = nullptr;
  BuddyReading buddyReading = BuddyReading::kWholeText;
  bool gone = false;  // the user has left; until no modal window is open
  std::vector<Desk::Shown> history;
};

// The current machine's.
WindowManager& Manager();

// ---- window classes ----
LRESULT EditProc(const WindowPtr& window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT ComboBoxProc(const WindowPtr& window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT ListBoxProc(const WindowPtr& window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT UpDownProc(const WindowPtr& window, UINT message, WPARAM wParam, LPARAM lParam);
// What every window does with a message that it does not know.
LRESULT DefaultProc(const WindowPtr& window, UINT message, WPARAM wParam, LPARAM lParam);

// ---- creation ----
// A window in the table; null when none can be had.
WindowPtr AddWindow(WindowClass windowClass, WindowProc proc);
// Creates a dialog's controls; false for a class that is not there, or when no window can be had.
bool CreateControls(Window& dialog, const std::vector<ControlRequest>& controls);

// ---- tree ----
// The first child with an id. Pages of a sheet are not searched.
HWND ChildWithId(const Window& parent, int id);
HWND TopLevelOf(HWND window);
bool IsDescendant(HWND ancestor, HWND window);
// Whether a window and all above it are visible (enabled).
bool IsShown(HWND window);
bool IsReachable(HWND window);

// ---- messages ----
// Answers WM_GETTEXT: as much of a text as fits into size units with its terminator.
LRESULT CopyOut(std::u16string_view text, WPARAM size, LPARAM out);
// Sends WM_COMMAND with a notification code of a control to its parent.
void NotifyCommand(const Window& control, UINT code);

// ---- modal windows ----
// Disables the owner of a modal window until its end.
void DisableOwner(Window& window);
// Makes a top-level window the active one and moves the focus into it.
void ActivateTop(HWND top);

// ---- dialogs ----
bool IsTabStop(const Window& window);
// The next stop of the Tab key behind (before) a control, around the end; null when there is none.
HWND NextStop(HWND dialog, HWND control, bool back);
// Makes a push button that has the focus the default one (its style says so); with the focus
// elsewhere the dialog's own is it again. Moving the focus with SetFocus alone leaves it where it
// was.
void MoveDefault(HWND control);
// Puts the focus on a dialog's control as WM_NEXTDLGCTL and the keyboard do: the text of an edit
// gets selected, and the default button follows.
void FocusInDialog(HWND control);
// The controls of a dialog in tab order, those of pages in their place.
std::vector<HWND> ControlsInOrder(HWND dialog);

// ---- buttons ----
bool IsPushButton(const Window& window);
bool IsDefaultButton(const Window& window);
bool IsRadio(const Window& window);
void SetCheck(Window& window, bool check);  // does nothing to other buttons
// Checks a radio button that the keyboard or the dialog moved the focus to, and notifies BN_CLICKED
// when it was not checked.
void CheckFocusedRadio(HWND control);
bool IsOwnerDrawn(const Window& window);
// The radio buttons of the group that a control stands in, by WS_GROUP.
std::vector<HWND> GroupOf(const Window& control);

// ---- painting ----
// Paints a window and those in it that are invalid; whether anything was.
bool PaintTree(HWND window);
void InvalidateWindow(Window& window);  // takes its children along

// ---- the keys that a dialog itself acts on (IsDialogMessage), in a top-level window ----
bool PressTab(HWND top, bool back);
bool PressEnter(HWND top);
bool PressEscape(HWND top);
bool PressAccessKey(HWND top, char16_t letter);
// Up, down, F4, Delete and Backspace for the control in focus.
bool PressKey(HWND top, int key);

// ---- what a person's hand does to controls; each answers whether it could ----
bool ClickControl(HWND control);
bool TypeCharacter(HWND edit, WCHAR character);
bool PressDelete(HWND edit);
bool PasteText(HWND edit, std::u16string_view text);
bool PickItem(HWND list, int index, bool byKey = false);  // a key neither opens nor closes a list
bool DropList(HWND combo);                                // F4: opens or closes its list
// Closes the open list of the combo box in focus: with the selection shown, or as Esc does with the
// one it was opened with. Returns false when there is none.
bool CloseFocusedList(bool accept);
std::u16string Chosen(const ListData& list);  // empty: none is
bool SpinBy(HWND upDown, bool up);            // one press of an arrow
// The up-down that takes the arrow keys of an edit; null when none does.
HWND ArrowUpDownOf(HWND edit);

// ---- what can be seen ----
ControlView ViewOf(const Window& control);
WindowView ViewOfWindow(const Window& window);
// The control of a window that a person sees under an id: of the shown page first when the window
// is a sheet. Null when there is none.
HWND ControlOf(HWND top, int id);

}  // namespace platform
