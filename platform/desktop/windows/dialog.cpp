// Dialogs: made from templates, run modally, and what they do with messages their procedure leaves.
#include <algorithm>
#include <limits>

#include "platform/desktop/windows/desktop.h"
#include "platform/desktop/windows/dialog_template.h"

namespace platform {

namespace {

// These messages are answered by the dialog procedure's own value; for every other one a procedure
// that handled it leaves its answer in DWLP_MSGRESULT (DialogProc).
bool AnswersDirectly(UINT message) {
  switch (message) {
    case WM_INITDIALOG:
    case WM_CTLCOLORMSGBOX:
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLORDLG:
    case WM_CTLCOLORSTATIC:
      return true;
    default:
      return false;
  }
}

void PressCancel(HWND dialog, const Window& window) {
  const HWND button = ChildWithId(window, IDCANCEL);
  if (button != nullptr && !IsWindowEnabled(button)) {
    MessageBeep(0);
    return;
  }
  PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED),
               reinterpret_cast<LPARAM>(button));
}

HWND MakeFrame(const DialogRequest& request, const DialogTemplate& dialog) {
  const WindowPtr window = AddWindow(WindowClass::kDialog, DefDlgProcW);
  if (!window) return nullptr;
  window->style = dialog.style;
  window->exStyle = dialog.exStyle;
  window->text = dialog.caption;
  window->instance = request.instance;
  window->dialog = std::make_unique<DialogData>();
  window->dialog->proc = request.proc;
  window->rect = {PixelsAcross(dialog.x), PixelsDown(dialog.y),
                  PixelsAcross(dialog.x) + PixelsAcross(dialog.cx),
                  PixelsDown(dialog.y) + PixelsDown(dialog.cy)};
  // A sheet takes its pages into use whatever their templates say.
  if (request.page) {
    window->style = (window->style | WS_CHILD) & ~(WS_VISIBLE | WS_POPUP | WS_DISABLED);
  }
  if ((window->style & WS_CHILD) != 0) {
    window->parent = request.parent;
    if (const WindowPtr parent = FindWindowOf(request.parent)) {
      parent->children.push_back(window->handle);
    }
  } else {
    window->style &= ~WS_VISIBLE;  // shown once it is complete
    window->owner = TopLevelOf(request.parent);
    TheDesktop().tops.push_back(window->handle);
  }
  return window->handle;
}

bool AddControls(HWND dialog, HINSTANCE instance, const DialogTemplate& description) {
  for (const TemplateItem& item : description.items) {
    ControlRequest control;
    control.className = item.windowClass.text;
    control.classAtom = item.windowClass.ordinal;
    control.text = item.title.text;
    control.titleResource = item.title.ordinal;
    control.id = item.id;
    control.style = item.style;
    control.exStyle = item.exStyle;
    const int left = PixelsAcross(item.x);
    const int top = PixelsDown(item.y);
    control.rect = {left, top, left + PixelsAcross(item.cx), top + PixelsDown(item.cy)};
    control.parent = dialog;
    control.instance = instance;
    const HWND made = CreateControl(control);
    if (made == nullptr) return false;
    const WindowPtr frame = FindWindowOf(dialog);
    if (item.windowClass.ordinal == 0x0080 && (item.style & BS_TYPEMASK) == BS_DEFPUSHBUTTON) {
      frame->dialog->defaultId = item.id;
    }
  }
  return true;
}

// The compiled template of a module; a null data pointer when there is none.
DialogRequest FromResource(HINSTANCE instance, LPCWSTR name, HWND parent, DLGPROC proc,
                           LPARAM param) {
  constexpr DWORD_PTR kDialogType = 5;  // RT_DIALOG
  DialogRequest request;
  request.instance = instance;
  request.parent = parent;
  request.proc = proc;
  request.param = param;
  const HRSRC resource = FindResourceW(instance, name, MAKEINTRESOURCEW(kDialogType));
  if (resource == nullptr) return request;
  request.data = LockResource(LoadResource(instance, resource));
  request.size = SizeofResource(instance, resource);
  return request;
}

DialogRequest FromMemory(HINSTANCE instance, LPCDLGTEMPLATEW dialog, HWND parent, DLGPROC proc,
                         LPARAM param) {
  DialogRequest request;
  request.instance = instance;
  request.data = dialog;
  // The caller vouches for a template in memory: the structure carries no size of its own.
  request.size = std::numeric_limits<int>::max();
  request.parent = parent;
  request.proc = proc;
  request.param = param;
  return request;
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

HWND ShowDialog(const DialogRequest& request) {
  const HWND dialog = CreateDialogWindow(request);
  const WindowPtr window = FindWindowOf(dialog);
  if (window && window->parent == nullptr) {
    DialogTemplate description;
    ParseDialogTemplate(request.data, request.size, description);
    if ((description.style & WS_VISIBLE) != 0) ShowWindow(dialog, SW_SHOW);
  }
  return dialog;
}

}  // namespace

HWND CreateDialogWindow(const DialogRequest& request) {
  DialogTemplate description;
  if (!ParseDialogTemplate(request.data, request.size, description)) {
    SetLastError(ERROR_RESOURCE_DATA_NOT_FOUND);
    return nullptr;
  }
  const bool child = request.page || (description.style & WS_CHILD) != 0;
  if ((child || request.parent != nullptr) && !FindWindowOf(request.parent)) {
    SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return nullptr;
  }
  const HWND dialog = MakeFrame(request, description);
  const WindowPtr window = FindWindowOf(dialog);
  if (!window) return nullptr;
  if (!AddControls(dialog, request.instance, description)) {
    window->dialog->proc = nullptr;
    DestroyWindow(dialog);
    return nullptr;
  }
  if (request.modal) DisableOwner(*window);
  const HWND first = GetNextDlgTabItem(dialog, nullptr, FALSE);
  const LRESULT wantsFocus =
      SendMessageW(dialog, WM_INITDIALOG, reinterpret_cast<WPARAM>(first), request.param);
  if (window->destroying) return nullptr;
  if (wantsFocus != 0 && !child && !window->ended) FocusFirst(dialog);
  return dialog;
}

HWND CreateTopWindow(TopWindowRequest request) {
  const WindowPtr window = AddWindow(WindowClass::kDialog, DefDlgProcW);
  if (!window) return nullptr;
  window->style = WS_POPUP | WS_CAPTION | WS_SYSMENU;
  window->text = std::move(request.title);
  window->rect = {0, 0, request.width, request.height};
  window->owner = TopLevelOf(request.owner);
  window->viewKind = request.kind;
  window->state = std::move(request.state);
  window->dialog = std::make_unique<DialogData>();
  window->dialog->proc = request.proc;
  TheDesktop().tops.push_back(window->handle);
  return window->handle;
}

// What a dialog does by itself with a message; its procedure has left it.
static LRESULT DefaultDialog(const WindowPtr& window, UINT message, WPARAM wParam, LPARAM lParam) {
  const HWND handle = window->handle;
  switch (message) {
    case WM_CLOSE:
      PressCancel(handle, *window);
      return 0;
    case WM_SETFOCUS:
      if (!window->ended && window->parent == nullptr) FocusFirst(handle);
      return 0;
    case WM_PAINT:
      return 0;
    case DM_GETDEFID:
      return window->dialog->defaultId != 0 ? MAKELONG(window->dialog->defaultId, DC_HASDEFID) : 0;
    case DM_SETDEFID:
      window->dialog->defaultId = LOWORD(wParam);
      MoveDefault(IsDescendant(handle, GetFocus()) ? GetFocus() : handle);
      return TRUE;
    case WM_NEXTDLGCTL: {
      const HWND next = LOWORD(lParam) != 0 ? reinterpret_cast<HWND>(wParam)
                                            : GetNextDlgTabItem(handle, GetFocus(), wParam != 0);
      FocusInDialog(next);
      return 0;
    }
    default:
      return DefWindowProcW(handle, message, wParam, lParam);
  }
}

}  // namespace platform

extern "C" {

LRESULT WINAPI DefDlgProcW(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
  const auto window = platform::FindWindowOf(handle);
  if (!window || !window->dialog) return 0;
  window->dialog->messageResult = 0;
  if (window->dialog->proc != nullptr) {
    const INT_PTR answer = window->dialog->proc(handle, message, wParam, lParam);
    if (platform::AnswersDirectly(message) && (answer != 0 || message == WM_INITDIALOG)) {
      return answer;
    }
    if (answer != 0) return window->dialog->messageResult;
  }
  return platform::DefaultDialog(window, message, wParam, lParam);
}

INT_PTR WINAPI DialogBoxParamW(HINSTANCE instance, LPCWSTR name, HWND owner, DLGPROC proc,
                               LPARAM param) {
  return platform::RunDialog(platform::FromResource(instance, name, owner, proc, param));
}

INT_PTR WINAPI DialogBoxIndirectParamW(HINSTANCE instance, LPCDLGTEMPLATEW dialog, HWND owner,
                                       DLGPROC proc, LPARAM param) {
  return platform::RunDialog(platform::FromMemory(instance, dialog, owner, proc, param));
}

HWND WINAPI CreateDialogParamW(HINSTANCE instance, LPCWSTR name, HWND parent, DLGPROC proc,
                               LPARAM param) {
  return platform::ShowDialog(platform::FromResource(instance, name, parent, proc, param));
}

HWND WINAPI CreateDialogIndirectParamW(HINSTANCE instance, LPCDLGTEMPLATEW dialog, HWND parent,
                                       DLGPROC proc, LPARAM param) {
  return platform::ShowDialog(platform::FromMemory(instance, dialog, parent, proc, param));
}

BOOL WINAPI EndDialog(HWND dialog, INT_PTR result) {
  return platform::EndModal(dialog, result) ? TRUE : FALSE;
}

}  // extern "C"
