// Painting of invalid windows by messages to their dialog.
#include "platform/gdi32/gdi.h"
#include "platform/machine/machine.h"
#include "platform/user32/manager.h"

namespace platform {

namespace {

void DrawItem(Window& window, HDC dc) {
  window.drawing.clear();
  DRAWITEMSTRUCT item = {};
  item.CtlID = static_cast<UINT>(window.id);
  item.itemAction = ODA_DRAWENTIRE;
  item.hwndItem = window.handle;
  item.hDC = dc;
  item.rcItem = {0, 0, window.width(), window.height()};
  SendMessageW(window.parent, WM_DRAWITEM, item.CtlID, reinterpret_cast<LPARAM>(&item));
}

// Gets the background brush of a control from the dialog, and stores its colour and the text
// colour.
void QueryColours(Window& window, HDC dc) {
  const LRESULT brush = SendMessageW(window.parent, WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(dc),
                                     reinterpret_cast<LPARAM>(window.handle));
  window.background = BrushColour(reinterpret_cast<HBRUSH>(brush)).value_or(0xFFFFFFFF);
  window.textColour = SetTextColor(dc, 0);
}

// Sets the default colours of the user before the dialog paints.
void SetUserColours(HDC dc) {
  if (!Machine::Current().highContrast()) return;
  SetTextColor(dc, 0xFFFFFF);
  SetBkColor(dc, 0);
}

// Returns true when the window was painted.
bool PaintOne(Window& window) {
  if (!window.invalid || window.width() <= 0 || window.height() <= 0) return false;
  window.invalid = false;
  const bool drawn = IsOwnerDrawn(window);
  if (!drawn && window.windowClass != WindowClass::kStatic) return false;
  const HWND handle = window.handle;
  const HDC dc = GetDC(handle);
  SetUserColours(dc);
  drawn ? DrawItem(window, dc) : QueryColours(window, dc);
  ReleaseDC(handle, dc);
  return true;
}

}  // namespace

bool PaintTree(HWND handle) {
  const WindowPtr window = FindWindowOf(handle);
  if (!window || !window->visible()) return false;
  bool painted = PaintOne(*window);
  const std::vector<HWND> children = window->children;
  for (HWND child : children) painted = PaintTree(child) || painted;
  return painted;
}

void InvalidateWindow(Window& window) {
  window.invalid = true;
  for (HWND child : window.children) {
    if (const WindowPtr one = FindWindowOf(child)) InvalidateWindow(*one);
  }
}

}  // namespace platform

extern "C" {

BOOL WINAPI InvalidateRect(HWND handle, const RECT*, BOOL) {
  const auto window = platform::FindWindowOf(handle);
  if (!window) return FALSE;
  platform::InvalidateWindow(*window);
  return TRUE;
}

}  // extern "C"
