// Painting: what is invalid, and asking for it to be drawn.
#include <utility>

#include "platform/desktop/drawing/gdi.h"
#include "platform/desktop/windows/manager.h"

namespace platform {

namespace {

// The dialog is asked for the background of what it treats as static: texts, and edits that cannot
// be changed.
bool AsksStaticColour(const Window& window) {
  return window.windowClass == WindowClass::kStatic ||
         (window.windowClass == WindowClass::kEdit &&
          (!window.enabled() || (window.style & ES_READONLY) != 0));
}

void DrawItem(Window& window, HDC dc) {
  window.drawing.clear();
  DRAWITEMSTRUCT item = {};
  item.CtlType = window.windowClass == WindowClass::kButton ? ODT_BUTTON : ODT_STATIC;
  item.CtlID = static_cast<UINT>(window.id);
  item.itemAction = ODA_DRAWENTIRE;
  item.hwndItem = window.handle;
  item.hDC = dc;
  item.rcItem = {0, 0, window.width(), window.height()};
  SendMessageW(window.parent, WM_DRAWITEM, item.CtlID, reinterpret_cast<LPARAM>(&item));
}

// Asks the dialog for the brush of a control's background and keeps its colour.
void AskColour(Window& window, HDC dc) {
  const LRESULT brush = SendMessageW(window.parent, WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(dc),
                                     reinterpret_cast<LPARAM>(window.handle));
  window.background = BrushColour(reinterpret_cast<HBRUSH>(brush)).value_or(0xFFFFFFFF);
}

void PaintOne(Window& window) {
  window.invalid = false;
  if (std::exchange(window.erase, false) && window.dialog) window.drawing.clear();
  if (window.windowClass == WindowClass::kDialog) {
    SendMessageW(window.handle, WM_PAINT, 0, 0);
    return;
  }
  const bool drawn = IsOwnerDrawn(window);
  if (!drawn && !AsksStaticColour(window)) return;
  const HWND handle = window.handle;
  const HDC dc = GetDC(handle);
  drawn ? DrawItem(window, dc) : AskColour(window, dc);
  ReleaseDC(handle, dc);
}

}  // namespace

bool PaintTree(HWND handle) {
  const WindowPtr window = FindWindowOf(handle);
  if (!window || !window->visible()) return false;
  bool painted = false;
  if (window->invalid && window->width() > 0 && window->height() > 0) {
    DispatchPosted();
    PaintOne(*window);
    painted = true;
  }
  const std::vector<HWND> children = window->children;
  for (HWND child : children) painted = PaintTree(child) || painted;
  return painted;
}

void InvalidateWindow(Window& window, bool erase) {
  window.invalid = true;
  window.erase = window.erase || erase;
  for (HWND child : window.children) {
    if (const WindowPtr one = FindWindowOf(child)) InvalidateWindow(*one, erase);
  }
}

}  // namespace platform

extern "C" {

BOOL WINAPI InvalidateRect(HWND handle, const RECT*, BOOL erase) {
  const auto window = platform::FindWindowOf(handle);
  if (!window) return FALSE;
  platform::InvalidateWindow(*window, erase != FALSE);
  return TRUE;
}

BOOL WINAPI UpdateWindow(HWND handle) {
  if (platform::IsShown(handle)) platform::PaintTree(handle);
  return platform::FindWindowOf(handle) != nullptr;
}

}  // extern "C"
