// What the driver's own dialogs have in common: a dialog names its data and what it does, and one
// procedure does the rest. While a dialog opens or fills itself (QuietDialog) it gets no commands.
#pragma once

#include <windows.h>

#include "driver/instance.h"

namespace kestrel {

// The work of one dialog over its data; members that it does not need are null.
template <typename Data>
struct OwnDialog {
  int templateId;
  void (*open)(HWND dialog, Data& data);
  // OK: checks what was entered and keeps it. False leaves the dialog open.
  bool (*accept)(HWND dialog, Data& data);
  // Any other command but cancel.
  void (*command)(HWND dialog, Data& data, int control, int notification) = nullptr;
  // A notification of a control; the answer is what the control gets (true refuses an up-down's
  // step).
  bool (*notify)(HWND dialog, Data& data, const NMHDR& header) = nullptr;
  // An owner-drawn control; false when it is not the dialog's to draw.
  bool (*draw)(HWND dialog, Data& data, const DRAWITEMSTRUCT& item) = nullptr;
  // Other messages, as a dialog procedure answers them.
  INT_PTR (*other)(HWND dialog, Data& data, UINT message, WPARAM wParam, LPARAM lParam) = nullptr;
  INT_PTR close = IDCANCEL;  // what closing the window ends the dialog with
};

// A dialog that is shown; its window keeps a pointer to this in DWLP_USER.
struct ShownDialog {
  bool quiet;
};

// Keeps the commands that a dialog's own writing causes from coming back into it.
class QuietDialog {
 public:
  explicit QuietDialog(HWND dialog);
  ~QuietDialog() { shown_.quiet = before_; }
  QuietDialog(const QuietDialog&) = delete;
  QuietDialog& operator=(const QuietDialog&) = delete;

 private:
  ShownDialog& shown_;
  bool before_;
};

template <typename Data>
struct ShownOwnDialog : ShownDialog {
  const OwnDialog<Data>& work;
  Data& data;
};

template <typename Data>
INT_PTR CALLBACK OwnDialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    // Only the dialog manager's own, the first, is taken (see RunOwnPage).
    if (GetWindowLongPtrW(window, DWLP_USER) != 0) return FALSE;
    SetWindowLongPtrW(window, DWLP_USER, lParam);
  }
  auto* shown = reinterpret_cast<ShownOwnDialog<Data>*>(GetWindowLongPtrW(window, DWLP_USER));
  if (shown == nullptr) return FALSE;
  const OwnDialog<Data>& work = shown->work;
  Data& data = shown->data;
  switch (message) {
    case WM_INITDIALOG: {
      const QuietDialog quiet(window);
      work.open(window, data);
      return TRUE;
    }
    case WM_COMMAND: {
      const int control = LOWORD(wParam);
      if (control == IDOK) {
        if (work.accept(window, data)) EndDialog(window, IDOK);
      } else if (control == IDCANCEL) {
        EndDialog(window, IDCANCEL);
      } else if (work.command != nullptr && !shown->quiet) {
        work.command(window, data, control, HIWORD(wParam));
      }
      return TRUE;
    }
    case WM_NOTIFY:
      if (work.notify == nullptr) return FALSE;
      SetWindowLongPtrW(window, DWLP_MSGRESULT,
                        work.notify(window, data, *reinterpret_cast<const NMHDR*>(lParam)));
      return TRUE;
    case WM_DRAWITEM:
      if (work.draw == nullptr) return FALSE;
      return work.draw(window, data, *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
    case WM_CLOSE:
      EndDialog(window, work.close);
      return TRUE;
    default:
      return work.other != nullptr ? work.other(window, data, message, wParam, lParam) : FALSE;
  }
}

// Shows a dialog over owner until it ends: IDOK, IDCANCEL or what closing it means; -1 when it
// could not be shown.
template <typename Data>
INT_PTR RunOwnDialog(const OwnDialog<Data>& work, HWND owner, Data& data) {
  ShownOwnDialog<Data> shown = {{false}, work, data};
  return DialogBoxParamW(ModuleInstance(), MAKEINTRESOURCEW(work.templateId), owner,
                         OwnDialogProc<Data>, reinterpret_cast<LPARAM>(&shown));
}

}  // namespace kestrel
