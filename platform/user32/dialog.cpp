// Dialogs: made from templates, run modally, and what they do with messages their procedure leaves.
#include <limits>

#include "platform/loader/resource_table.h"
#include "platform/user32/dialog_template.h"
#include "platform/user32/manager.h"

namespace platform {

namespace {

// These messages are answered by the dialog procedure's own value; for every other one a procedure
// that handled it leaves its answer in DWLP_MSGRESULT (DialogProc).
bool AnswersDirectly(UINT message) {
  return message == WM_INITDIALOG || message == WM_CTLCOLORSTATIC;
}

// The cancel button as the close box presses it, unless it is disabled.
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
    const INT_PTR answer = window->dialog->proc(handle, message, wParam, lParam);
    if (AnswersDirectly(message) && (answer != 0 || message == WM_INITDIALOG)) return answer;
    if (answer != 0) return window->dialog->messageResult;
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

// A top-level window is shown once it is complete.
void Own(Window& window, HWND owner) {
  window.style = (window.style | WS_POPUP) & ~WS_VISIBLE;
  window.owner = TopLevelOf(owner);
  Manager().tops.push_back(window.handle);
}

// A sheet takes its pages into use whatever their templates say.
void Adopt(Window& window, Window& parent) {
  window.style = (window.style | WS_CHILD) & ~(WS_VISIBLE | WS_POPUP | WS_DISABLED);
  window.parent = parent.handle;
  parent.children.push_back(window.handle);
}

// 0 for an owner that is no window, -1 for any other failure.
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
    Adopt(*window, *FindWindowOf(request.parent));
  else
    Own(*window, request.parent);
  if (!CreateControls(*window, form.items)) {
    window->dialog->proc = nullptr;  // it hears of nothing
    Destroy(dialog);
    return nullptr;
  }
  if (request.modal) DisableOwner(*window);
  const HWND first = NextStop(dialog, nullptr, false);
  const LRESULT wantsFocus =
      SendMessageW(dialog, WM_INITDIALOG, reinterpret_cast<WPARAM>(first), request.param);
  if (window->destroying) return nullptr;
  if (wantsFocus != 0 && !request.page && !window->ended) FocusFirst(dialog);
  return dialog;
}

HWND CreateTopWindow(TopWindowRequest request) {
  const WindowPtr window =
      AddDialog(request.proc, WS_CAPTION | WS_SYSMENU, std::move(request.title),
                {0, 0, request.width, request.height});
  if (!window) return nullptr;
  Own(*window, request.owner);
  window->viewKind = request.kind;
  if (!CreateControls(*window, request.parts)) {
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

// The caller vouches for a template in memory: the structure carries no size of its own.
INT_PTR WINAPI DialogBoxIndirectParamW(HINSTANCE instance, LPCDLGTEMPLATEW dialog, HWND owner,
                                       DLGPROC proc, LPARAM param) {
  return platform::RunDialog(
      {instance, dialog, std::numeric_limits<int>::max(), owner, proc, param});
}

BOOL WINAPI EndDialog(HWND dialog, INT_PTR result) {
  return platform::EndModal(dialog, result) ? TRUE : FALSE;
}

}  // extern "C"
