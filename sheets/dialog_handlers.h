// The handlers of a modal dialog, and the dialog procedure that all dialogs share.
#pragma once

#include <windows.h>

#include "driver/instance.h"

namespace kestrel {

// The handlers of one dialog over its data. A null handler does nothing.
template <typename Data>
struct DialogHandlers {
  int templateId;
  void (*open)(HWND dialog, Data& data);  // WM_INITDIALOG; commands are suppressed meanwhile
  // OK: validates and stores the input. Returns false to keep the dialog open.
  bool (*accept)(HWND dialog, Data& data);
  // Any command other than OK and Cancel.
  void (*command)(HWND dialog, Data& data, int control, int notification) = nullptr;
  // WM_NOTIFY. The control receives the returned value; true rejects the step of an up-down
  // control.
  bool (*notify)(HWND dialog, Data& data, const NMHDR& header) = nullptr;
  // WM_DRAWITEM. Returns false when the dialog does not draw this control.
  bool (*draw)(HWND dialog, Data& data, const DRAWITEMSTRUCT& item) = nullptr;
  // Any other message. Returns the result of the dialog procedure.
  INT_PTR (*other)(HWND dialog, Data& data, UINT message, WPARAM wParam, LPARAM lParam) = nullptr;
  INT_PTR close = IDCANCEL;  // the dialog's result when the user closes its window
};

// The window stores a pointer to its state in DWLP_USER.
struct DialogState {
  bool commandsSuppressed;
};

// Suppresses a dialog's command handler for its lifetime, so that notifications which the dialog
// causes by writing to its own controls do not call it.
class SuppressCommands {
 public:
  explicit SuppressCommands(HWND dialog);
  ~SuppressCommands() { state_.commandsSuppressed = previous_; }
  SuppressCommands(const SuppressCommands&) = delete;
  SuppressCommands& operator=(const SuppressCommands&) = delete;

 private:
  DialogState& state_;
  bool previous_;
};

template <typename Data>
struct DialogInstance : DialogState {
  const DialogHandlers<Data>& handlers;
  Data& data;
};

template <typename Data>
INT_PTR CALLBACK DialogInstanceProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    // Only the first one comes from the dialog manager (see HandlePageMessage).
    if (GetWindowLongPtrW(window, DWLP_USER) != 0) return FALSE;
    SetWindowLongPtrW(window, DWLP_USER, lParam);
  }
  auto* instance = reinterpret_cast<DialogInstance<Data>*>(GetWindowLongPtrW(window, DWLP_USER));
  if (instance == nullptr) return FALSE;
  const DialogHandlers<Data>& handlers = instance->handlers;
  Data& data = instance->data;
  switch (message) {
    case WM_INITDIALOG: {
      const SuppressCommands suppress(window);
      handlers.open(window, data);
      return TRUE;
    }
    case WM_COMMAND: {
      const int control = LOWORD(wParam);
      if (control == IDOK) {
        if (handlers.accept(window, data)) EndDialog(window, IDOK);
      } else if (control == IDCANCEL) {
        EndDialog(window, IDCANCEL);
      } else if (handlers.command != nullptr && !instance->commandsSuppressed) {
        handlers.command(window, data, control, HIWORD(wParam));
      }
      return TRUE;
    }
    case WM_NOTIFY:
      if (handlers.notify == nullptr) return FALSE;
      SetWindowLongPtrW(window, DWLP_MSGRESULT,
                        handlers.notify(window, data, *reinterpret_cast<const NMHDR*>(lParam)));
      return TRUE;
    case WM_DRAWITEM:
      if (handlers.draw == nullptr) return FALSE;
      return handlers.draw(window, data, *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
    case WM_CLOSE:
      EndDialog(window, handlers.close);
      return TRUE;
    default:
      return handlers.other != nullptr ? handlers.other(window, data, message, wParam, lParam)
                                       : FALSE;
  }
}

// Shows a modal dialog over owner. Returns IDOK, IDCANCEL or DialogHandlers::close; -1 when the
// dialog cannot be created.
template <typename Data>
INT_PTR ShowModalDialog(const DialogHandlers<Data>& handlers, HWND owner, Data& data) {
  DialogInstance<Data> instance = {{false}, handlers, data};
  return DialogBoxParamW(ModuleInstance(), MAKEINTRESOURCEW(handlers.templateId), owner,
                         DialogInstanceProc<Data>, reinterpret_cast<LPARAM>(&instance));
}

}  // namespace kestrel
