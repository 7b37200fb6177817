// The window manager: all windows, the keyboard focus, and the functions that the files of this
// folder share.
#pragma once

#include <winuser.h>

#include <memory>
#include <unordered_map>
#include <vector>

#include "platform/machine/desk.h"
#include "platform/user32/window.h"

namespace platform {

struct WindowManager {
  std::unordered_map<HWND, WindowPtr> windows;
  std::vector<HWND> tops;   // top-level windows, the topmost last
  std::vector<HWND> modal;  // windows with a running modal loop, the innermost last
  HWND focus = nullptr;
  HWND active = nullptr;
  HCURSOR cursor = nullptr;
  User* user = nullptr;
  BuddyReading buddyReading = BuddyReading::kWholeText;
  bool userLeft = false;  // until no modal window is open
  std::vector<Desk::Shown> history;
};

// Returns the window manager of the calling thread on the current computer.
WindowManager& Manager();

// ---- window classes ----
LRESULT EditProc(const WindowPtr& window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT ComboBoxProc(const WindowPtr& window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT ListBoxProc(const WindowPtr& window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT UpDownProc(const WindowPtr& window, UINT message, WPARAM wParam, LPARAM lParam);
// Handles the messages that a window class does not handle itself.
LRESULT DefaultProc(const WindowPtr& window, UINT message, WPARAM wParam, LPARAM lParam);

// ---- creation ----
// Adds a window; returns null when Fault::kWindow applies.
WindowPtr AddWindow(WindowClass windowClass, WindowProc proc);
// Creates the controls of a dialog. Returns false for an unknown class, and when a window cannot be
// created.
bool CreateControls(Window& dialog, const std::vector<ControlRequest>& controls);

// ---- tree ----
// Returns the first child with an id; null when there is none. Does not search the pages of a
// sheet.
HWND ChildWithId(const Window& parent, int id);
HWND TopLevelOf(HWND window);
bool IsDescendant(HWND ancestor, HWND window);
// Return true when a window and all its parents are visible, or enabled.
bool IsShown(HWND window);
bool IsReachable(HWND window);

// ---- messages ----
// Implements WM_GETTEXT: copies as much of a text as fits into `size` units with a terminator, and
// returns the number of units.
LRESULT CopyText(std::u16string_view text, WPARAM size, LPARAM out);
// Sends WM_COMMAND with a notification code to the parent of a control.
void NotifyCommand(const Window& control, UINT code);

// ---- modal windows ----
// Disables the owner of a modal window until the window ends.
void DisableOwner(Window& window);
// Activates a top-level window and moves the focus into it.
void ActivateTop(HWND top);

// ---- dialogs ----
bool IsTabStop(const Window& window);
// Returns the next (previous) control in tab order after a control, wrapping around; null when
// there is none.
HWND NextStop(HWND dialog, HWND control, bool back);
// Makes a focused push button the default button (in its style); for any other focused control,
// restores the default button of the dialog. SetFocus alone does not do this.
void MoveDefault(HWND control);
// Moves the focus in a dialog as WM_NEXTDLGCTL and the keyboard do: selects the text of an edit and
// updates the default button.
void FocusInDialog(HWND control);
// Returns the controls of a dialog in tab order, including those of its pages.
std::vector<HWND> ControlsInOrder(HWND dialog);

// ---- buttons ----
bool IsPushButton(const Window& window);
bool IsDefaultButton(const Window& window);
bool IsRadio(const Window& window);
void SetCheck(Window& window, bool check);  // does nothing to other buttons
// Checks a focused radio button, and notifies BN_CLICKED when it was not checked.
void CheckFocusedRadio(HWND control);
bool IsOwnerDrawn(const Window& window);
// Returns the controls of the group (WS_GROUP) that contains a control.
std::vector<HWND> GroupOf(const Window& control);

// ---- painting ----
// Paints the invalid windows of a tree; returns whether there were any.
bool PaintTree(HWND window);
void InvalidateWindow(Window& window);  // with its children

// ---- keys that a dialog handles itself (IsDialogMessage), in a top-level window ----
bool PressTab(HWND top, bool back);
bool PressEnter(HWND top);
bool PressEscape(HWND top);
bool PressAccessKey(HWND top, char16_t letter);
// Up, Down, F4, Delete and Backspace for the focused control.
bool PressKey(HWND top, int key);

// ---- user actions on controls; each returns whether the user could perform it ----
bool ClickControl(HWND control);
bool TypeCharacter(HWND edit, WCHAR character);
bool PressDelete(HWND edit);
bool PasteText(HWND edit, std::u16string_view text);
bool PickItem(HWND list, int index, bool byKey = false);  // a key does not open or close the list
bool DropList(HWND combo);                                // F4: opens or closes its list
// Closes the open list of the focused combo box, accepting the shown selection or restoring the
// previous one. Returns false when no list is open.
bool CloseFocusedList(bool accept);
std::u16string SelectedText(const ListData& list);  // empty: no selection
bool SpinBy(HWND upDown, bool up);                  // one press of an arrow
// Returns the up-down that handles the arrow keys of an edit; null when there is none.
HWND ArrowUpDownOf(HWND edit);

// ---- views ----
ControlView ViewOf(const Window& control);
WindowView ViewOfWindow(const Window& window);
// Returns the control that a user sees under an id: that of the shown page first when the window is
// a sheet. Null when there is none.
HWND ControlOf(HWND top, int id);

}  // namespace platform
