// The state of one desktop, for the files of this folder that make up the window manager.
#pragma once

#include <windows.h>

#include <deque>
#include <memory>
#include <unordered_map>
#include <vector>

#include "platform/desk.h"
#include "platform/desktop/windows/window.h"

namespace platform {

struct PostedMessage {
  HWND window;
  UINT message;
  WPARAM wParam;
  LPARAM lParam;
};

struct DesktopState {
  std::unordered_map<HWND, std::shared_ptr<Window>> windows;
  std::vector<HWND> tops;   // top-level windows, the one on top last
  std::vector<HWND> modal;  // windows with a running modal loop, the innermost last
  std::deque<PostedMessage> posted;
  HWND focus = nullptr;
  HWND active = nullptr;
  HCURSOR cursor = nullptr;
  User* user = nullptr;
  bool gone = false;  // the user has left; until no modal window is open
  std::vector<Desk::Shown> history;
};

// The current machine's.
DesktopState& TheDesktop();

using WindowPtr = std::shared_ptr<Window>;

// A closed combo box is as high as its font asks; the height given is that of its open list.
constexpr LONG kClosedComboHeight = 20;

// ---- window classes ----
LRESULT CALLBACK ButtonProc(HWND handle, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK StaticProc(HWND handle, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK EditProc(HWND handle, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK ComboBoxProc(HWND handle, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK ListBoxProc(HWND handle, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK UpDownProc(HWND handle, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK TrackbarProc(HWND handle, UINT message, WPARAM wParam, LPARAM lParam);

// ---- creation ----
struct ControlRequest {
  std::u16string className;  // or
  WORD classAtom = 0;        // the predefined classes' ordinals of dialog templates
  std::u16string text;
  WORD titleResource = 0;
  int id = 0;
  DWORD style = 0;
  DWORD exStyle = 0;
  RECT rect = {};
  HWND parent = nullptr;
  HINSTANCE instance = nullptr;
};
// Null for a class that is not there, a parent that is none, or when no window can be had.
HWND CreateControl(const ControlRequest& request);
// A window in the table, not yet told of its creation; null when no window can be had.
WindowPtr AddWindow(WindowClass windowClass, WNDPROC proc);

// Answers WM_GETTEXT: as much of a text as fits into size units with its terminator.
LRESULT CopyOut(std::u16string_view text, WPARAM size, LPARAM out);

// ---- tree ----
// The first child with an id. Pages of a sheet are not searched.
HWND ChildWithId(const Window& parent, int id);
bool IsDescendant(HWND ancestor, HWND window);
RECT ScreenRect(const Window& window);

// ---- modal windows ----
// Handles the messages that wait. Painting is what is left to do when none does.
void DispatchPosted();
// Disables the owner of a modal window until its end.
void DisableOwner(Window& window);

// ---- dialogs ----
bool IsTabStop(const Window& window);
// Makes a push button that has the focus the default one (its style says so); with the focus
// elsewhere the dialog's own is it again. Moving the focus with SetFocus alone leaves it where it
// was.
void MoveDefault(HWND control);
// Puts the focus on a dialog's control as WM_NEXTDLGCTL and the keyboard do: the text of an edit
// gets selected, and the default button follows.
void FocusInDialog(HWND control);
void FocusFirst(HWND dialog);
// The controls of a dialog in tab order, those of pages and other nested dialogs in their place.
std::vector<HWND> ControlsInOrder(HWND dialog);

// ---- buttons ----
bool IsPushButton(const Window& window);
bool IsDefaultButton(const Window& window);
bool IsRadio(const Window& window);
bool IsChecked(const Window& window);
// The radio buttons of the group that a control stands in, by WS_GROUP.
std::vector<HWND> GroupOf(const Window& control);

// ---- painting ----
// Paints a window and those in it that are invalid; whether anything was.
bool PaintTree(HWND window);

// ---- what a person's hand does to controls; each answers whether it could ----
bool ClickControl(HWND control);
bool TypeCharacter(HWND edit, WCHAR character);
bool PasteText(HWND edit, std::u16string_view text);
bool PickItem(HWND list, int index);
bool SpinBy(HWND upDown, bool up);  // one press of an arrow
bool SlideTo(HWND trackbar, int position);
// The up-down that takes the arrow keys of an edit; null when none does.
HWND ArrowUpDownOf(HWND edit);

// ---- what controls show ----
void DescribeEdit(const Window& window, ControlView& view);
void DescribeList(const Window& window, ControlView& view);
void DescribeUpDown(const Window& window, ControlView& view);
void DescribeTrackbar(const Window& window, ControlView& view);

}  // namespace platform
