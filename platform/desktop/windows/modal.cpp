// Modal windows: the loop that handles messages, paints, and asks the user, and its end.
#include <algorithm>

#include "platform/desktop/windows/desktop.h"
#include "platform/machine.h"
#include "platform/system/guard.h"

namespace platform {

namespace {

// Bounds for windows that post to themselves or become invalid while they paint, for ever: then the
// user gets a turn all the same.
constexpr int kMessagesAtOnce = 10000;
constexpr int kPaintsAtOnce = 4;

}  // namespace

void DispatchPosted() {
  DesktopState& desktop = TheDesktop();
  for (int i = 0; i < kMessagesAtOnce && !desktop.posted.empty(); ++i) {
    const PostedMessage next = desktop.posted.front();
    desktop.posted.pop_front();
    SendMessageW(next.window, next.message, next.wParam, next.lParam);
  }
}

namespace {

bool PaintAll() {
  bool painted = false;
  const std::vector<HWND> tops = TheDesktop().tops;
  for (HWND top : tops) painted = PaintTree(top) || painted;
  return painted;
}

bool AskUser() {
  DesktopState& desktop = TheDesktop();
  if (desktop.user == nullptr || desktop.gone) return false;
  try {
    return desktop.user->Act(Machine::Current().desk());
  } catch (...) {
    KeepThrown();
    return false;
  }
}

// Ends a modal window as a person who closes it would; by force when it will not close.
void Abandon(HWND top) {
  TheDesktop().gone = true;
  const WindowPtr window = FindWindowOf(top);
  if (!window) return;
  if (auto* sheet = StateOf<SheetState>(*window)) {
    sheet->Press(SheetButton::kCancel);
  } else {
    SendMessageW(top, WM_CLOSE, 0, 0);
  }
  DispatchPosted();
  if (!window->ended) EndModal(top, window->cancelResult);
}

}  // namespace

void Settle() {
  for (int i = 0; i < kPaintsAtOnce; ++i) {
    DispatchPosted();
    if (!PaintAll()) return;
  }
}

HWND ActiveTop() {
  const DesktopState& desktop = TheDesktop();
  return desktop.modal.empty() ? nullptr : desktop.modal.back();
}

void DisableOwner(Window& window) {
  const HWND owner = TopLevelOf(window.owner);
  if (owner == nullptr || window.ownerDisabled) return;
  window.ownerDisabled = EnableWindow(owner, FALSE) == FALSE;
}

INT_PTR RunModal(HWND top) {
  DesktopState& desktop = TheDesktop();
  const WindowPtr window = FindWindowOf(top);
  if (!window || window->parent != nullptr) return -1;
  if (!window->ended) {
    DisableOwner(*window);
    desktop.modal.push_back(top);
    ShowWindow(top, SW_SHOW);
    ActivateTop(top);
    while (!window->ended && !window->destroying) {
      Settle();
      if (window->ended || window->destroying) break;
      if (!AskUser()) Abandon(top);
    }
    std::erase(desktop.modal, top);
    if (desktop.modal.empty()) desktop.gone = false;
  }
  if (window->destroying) EndModal(top, window->result);
  DestroyWindow(top);
  return window->result;
}

bool EndModal(HWND top, INT_PTR result) {
  const WindowPtr window = FindWindowOf(top);
  if (!window || window->parent != nullptr) return false;
  window->result = result;
  window->ended = true;
  if (window->ownerDisabled) {
    window->ownerDisabled = false;
    EnableWindow(TopLevelOf(window->owner), TRUE);
  }
  if (IsDescendant(top, TheDesktop().focus)) SetFocus(top);
  ShowWindow(top, SW_HIDE);
  return true;
}

}  // namespace platform
