// Modal windows: the loop that handles messages, paints and calls the user.
#include <algorithm>

#include "platform/machine/guard.h"
#include "platform/machine/machine.h"
#include "platform/user32/manager.h"

namespace platform {

namespace {

// The limit for windows that become invalid while they paint: after it the user gets a turn.
constexpr int kMaxPaintPasses = 4;

bool PaintAll() {
  bool painted = false;
  const std::vector<HWND> tops = Manager().tops;
  for (HWND top : tops) painted = PaintTree(top) || painted;
  return painted;
}

bool CallUser() {
  WindowManager& manager = Manager();
  if (manager.user == nullptr || manager.userLeft) return false;
  try {
    return manager.user->Act(Machine::Current().desk());
  } catch (...) {
    CaptureException();
    return false;
  }
}

// Ends a modal window as a user who closes it; forces the end when it does not close.
void CancelModal(HWND top) {
  Manager().userLeft = true;
  const WindowPtr window = FindWindowOf(top);
  if (!window) return;
  if (auto* sheet = StateOf<SheetState>(*window)) {
    sheet->Press(SheetButton::kCancel);
  } else {
    SendMessageW(top, WM_CLOSE, 0, 0);
  }
  if (!window->ended) EndModal(top, window->cancelResult);
}

}  // namespace

HWND ActiveTop() {
  const WindowManager& manager = Manager();
  return manager.modal.empty() ? nullptr : manager.modal.back();
}

void DisableOwner(Window& window) {
  const HWND owner = TopLevelOf(window.owner);
  if (owner == nullptr || window.ownerDisabled) return;
  window.ownerDisabled = EnableWindow(owner, FALSE) == FALSE;
}

INT_PTR RunModal(HWND top) {
  WindowManager& manager = Manager();
  const WindowPtr window = FindWindowOf(top);
  if (!window || window->parent != nullptr) return -1;
  if (!window->ended) {
    DisableOwner(*window);
    manager.modal.push_back(top);
    SetVisible(top, true);
    ActivateTop(top);
    while (!window->ended) {
      for (int i = 0; i < kMaxPaintPasses && PaintAll(); ++i) {
      }
      if (window->ended) break;
      if (!CallUser()) CancelModal(top);
    }
    std::erase(manager.modal, top);
    if (manager.modal.empty()) manager.userLeft = false;
  }
  Destroy(top);
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
  if (IsDescendant(top, Manager().focus)) SetFocus(top);
  SetVisible(top, false);
  return true;
}

}  // namespace platform
