// Dialogs: creation from templates, modal execution and default message handling.
#include <winbase.h>

#include <limits>

#include "platform/loader/resource_table.h"
#include "platform/user32/dialog_template.h"
#include "platform/user32/manager.h"

namespace platform {

namespace {

// For these messages the procedure returns the result itself; for all others it returns TRUE and
// stores the result in DWLP_MSGRESULT (DialogProc).
bool ReturnsResultDirectly(UINT message) {
  return message == WM_INITDIALOG || message == WM_CTLCOLORSTATIC;
}

// Presses the cancel button, as the close box does, unless it is disabled.
void PressCancel(const Window& window) {
  const HWND button = ChildWithId(window, IDCANCEL);
  if (button != nullptr && !IsWindowEnabled(button)) return;
  SendMessageW(window.handle, WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED),
               reinterpret_cast<LPARAM>(button));
}

LRESULT DialogWindowProc(const WindowPtr& window, UINT message, WPARAM wParam, LPARAM lParam) {
  const HWND handle = window->handle;
  window->dialog->messageResult = 0;
  if (window->dialog->proc != nullptr) {
    const INT_PTR result = window->dialog->proc(handle, message, wParam, lParam);
    if (ReturnsResultDirectly(message) && (result != 0 || message == WM_INITDIALOG)) return result;
    if (result != 0) return window->dialog->messageResult;
  }
  switch (message) {
    case WM_CLOSE:
      PressCancel(*window);
      return 0;
    case WM_SETFOCUS:
      if (!window->ended && window->parent == nullptr) FocusFirst(handle);
      return 0;
    case WM_NEXTDLGCTL:
      FocusInDialog(LOWORD(lParam) != 0 ? reinterpret_cast<HWND>(wParam)
                                        : NextStop(handle, GetFocus(), wParam != 0));
      return 0;
    default:
      return DefaultProc(window, message, wParam, lParam);
  }
}

WindowPtr AddDialog(DLGPROC proc, DWORD style, std::u16string text, const RECT& rect) {
  const WindowPtr window = AddWindow(WindowClass::kDialog, DialogWindowProc);
  if (!window) return nullptr;
  window->style = style;
  window->text = std::move(text);
  window->rect = rect;
  window->dialog = std::make_unique<DialogData>();
  window->dialog->proc = proc;
  return window;
}

// Makes the window top-level. It stays hidden until it is complete.
void MakeTopLevel(Window& window, HWND owner) {
  window.style = (window.style | WS_POPUP) & ~WS_VISIBLE;
  window.owner = TopLevelOf(owner);
  Manager().tops.push_back(window.handle);
}

// Makes the window a page of a sheet, whatever its template says.
void MakePage(Window& window, Window& parent) {
  window.style = (window.style | WS_CHILD) & ~(WS_VISIBLE | WS_POPUP | WS_DISABLED);
  window.parent = parent.handle;
  parent.children.push_back(window.handle);
}

// Returns 0 when the owner is no window, -1 for any other failure.
INT_PTR RunDialog(DialogRequest request) {
  if (request.parent != nullptr && !FindWindowOf(request.parent)) {
    SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return 0;
  }
  request.modal = true;
  const HWND dialog = CreateDialogWindow(request);
  return dialog != nullptr ? RunModal(dialog) : -1;
}

}  // namespace

HWND CreateDialogWindow(const DialogRequest& request) {
  DialogTemplate form;
  if (!ParseDialogTemplate(request.data, request.size, form)) {
    SetLastError(ERROR_RESOURCE_DATA_NOT_FOUND);
    return nullptr;
  }
  const WindowPtr window = AddDialog(request.proc, form.style, form.caption, form.rect);
  if (!window) return nullptr;
  const HWND dialog = window->handle;
  if (request.page)
    MakePage(*window, *FindWindowOf(request.parent));
  else
    MakeTopLevel(*window, request.parent);
  if (!CreateControls(*window, form.items)) {
    window->dialog->proc = nullptr;  // it gets no message
    Destroy(dialog);
    return nullptr;
  }
  if (request.modal) DisableOwner(*window);
  const HWND first = NextStop(dialog, nullptr, false);
  const LRESULT wantsFocus =
      SendMessageW(dialog, WM_INITDIALOG, reinterpret_cast<WPARAM>(first), request.param);
  if (wantsFocus != 0 && !request.page && !window->ended) FocusFirst(dialog);
  return dialog;
}

HWND CreateTopWindow(TopWindowRequest request) {
  const WindowPtr window =
      AddDialog(request.proc, WS_CAPTION | WS_SYSMENU, std::move(request.title),
                {0, 0, request.width, request.height});
  if (!window) return nullptr;
  MakeTopLevel(*window, request.owner);
  window->viewKind = request.kind;
  if (!CreateControls(*window, request.controls)) {
    Destroy(window->handle);
    return nullptr;
  }
  window->state = std::move(request.state);
  return window->handle;
}

}  // namespace platform

extern "C" {

INT_PTR WINAPI DialogBoxParamW(HINSTANCE instance, LPCWSTR name, HWND owner, DLGPROC proc,
                               LPARAM param) {
  const platform::Bytes dialog = platform::FindResourceBytes(
      instance, MAKEINTRESOURCEW(DWORD_PTR{platform::kResourceDialog}), name);
  return platform::RunDialog({instance, dialog.data(), dialog.size(), owner, proc, param});
}

// A template in memory has no size, so that the caller must pass a valid one.
INT_PTR WINAPI DialogBoxIndirectParamW(HINSTANCE instance, LPCDLGTEMPLATEW dialog, HWND owner,
                                       DLGPROC proc, LPARAM param) {
  return platform::RunDialog(
      {instance, dialog, std::numeric_limits<int>::max(), owner, proc, param});
}

BOOL WINAPI EndDialog(HWND dialog, INT_PTR result) {
  return platform::EndModal(dialog, result) ? TRUE : FALSE;
}

}  // extern "C"
