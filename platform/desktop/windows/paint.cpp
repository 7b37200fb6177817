// Painting: what is invalid, and asking for it to be drawn. A window without WS_CLIPCHILDREN takes
// its children along when it becomes invalid.
#include <utility>

#include "platform/desktop/windows/desktop.h"

namespace platform {

namespace {

bool IsOwnerDrawn(const Window& window) {
  if (window.windowClass == WindowClass::kButton) {
    return (window.style & BS_TYPEMASK) == BS_OWNERDRAW;
  }
  return window.windowClass == WindowClass::kStatic && (window.style & SS_TYPEMASK) == SS_OWNERDRAW;
}

// The dialog is asked for the background of what it treats as static: texts, and edits that cannot
// be changed.
bool AsksStaticColour(const Window& window) {
  if (window.windowClass == WindowClass::kStatic) return !IsOwnerDrawn(window);
  return window.windowClass == WindowClass::kEdit &&
         (!window.enabled() || (window.style & ES_READONLY) != 0);
}

void DrawItem(Window& window) {
  const HWND handle = window.handle;
  const HDC dc = GetDC(handle);
  if (dc == nullptr) return;
  window.drawing.clear();
  DRAWITEMSTRUCT item = {};
  item.CtlType = window.windowClass == WindowClass::kButton ? ODT_BUTTON : ODT_STATIC;
  item.CtlID = static_cast<UINT>(window.id);
  item.itemAction = ODA_DRAWENTIRE;
  if (!window.enabled()) item.itemState |= ODS_DISABLED;
  if (TheDesktop().focus == handle) item.itemState |= ODS_FOCUS;
  item.hwndItem = handle;
  item.hDC = dc;
  item.rcItem = {0, 0, window.width(), window.height()};
  SendMessageW(window.parent, WM_DRAWITEM, item.CtlID, reinterpret_cast<LPARAM>(&item));
  ReleaseDC(handle, dc);
}

// Asks the dialog for the brush of a control's background and keeps its colour.
void AskColour(Window& window) {
  const HWND handle = window.handle;
  const HDC dc = GetDC(handle);
  if (dc == nullptr) return;
  const LRESULT brush = SendMessageW(window.parent, WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(dc),
                                     reinterpret_cast<LPARAM>(handle));
  ReleaseDC(handle, dc);
  LOGBRUSH description = {};
  const bool solid = brush != 0 && GetObjectW(reinterpret_cast<HGDIOBJ>(brush), sizeof description,
                                              &description) == sizeof description;
  window.background = solid && description.lbStyle == BS_SOLID ? description.lbColor : 0xFFFFFFFF;
}

void DrawPicture(Window& window) {
  window.drawing.clear();
  if (window.titleResource == 0) return;
  DrawOp image;
  image.kind = DrawOp::Kind::kImage;
  image.rect = {0, 0, window.width(), window.height()};
  image.bitmap = window.titleResource;
  window.drawing.push_back(image);
}

void PaintOne(Window& window) {
  window.invalid = false;
  if (std::exchange(window.erase, false) && window.dialog) window.drawing.clear();
  if (window.windowClass == WindowClass::kDialog) {
    SendMessageW(window.handle, WM_PAINT, 0, 0);
  } else if (IsOwnerDrawn(window)) {
    DrawItem(window);
  } else if (AsksStaticColour(window)) {
    if (window.windowClass == WindowClass::kStatic && (window.style & SS_TYPEMASK) == SS_BITMAP) {
      DrawPicture(window);
    }
    AskColour(window);
  }
}

}  // namespace

bool PaintTree(HWND handle) {
  const WindowPtr window = FindWindowOf(handle);
  if (!window || !window->visible() || !window->redraw) return false;
  bool painted = false;
  const bool empty = window->width() <= 0 || window->height() <= 0;
  if (window->invalid && !empty) {
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
  if ((window.style & WS_CLIPCHILDREN) != 0) return;
  for (HWND child : window.children) {
    if (const WindowPtr one = FindWindowOf(child)) InvalidateWindow(*one, erase);
  }
}

}  // namespace platform

using platform::FindWindowOf;

extern "C" {

BOOL WINAPI InvalidateRect(HWND handle, const RECT*, BOOL erase) {
  const auto window = FindWindowOf(handle);
  if (!window) return FALSE;
  platform::InvalidateWindow(*window, erase != FALSE);
  return TRUE;
}

BOOL WINAPI UpdateWindow(HWND handle) {
  if (!FindWindowOf(handle)) return FALSE;
  if (platform::IsShown(handle)) platform::PaintTree(handle);
  return TRUE;
}

HDC WINAPI BeginPaint(HWND handle, LPPAINTSTRUCT paint) {
  const auto window = FindWindowOf(handle);
  if (!window || paint == nullptr) return nullptr;
  *paint = {};
  paint->rcPaint = {0, 0, window->width(), window->height()};
  paint->hdc = GetDC(handle);
  return paint->hdc;
}

BOOL WINAPI EndPaint(HWND handle, const PAINTSTRUCT* paint) {
  if (paint == nullptr || !FindWindowOf(handle)) return FALSE;
  ReleaseDC(handle, paint->hdc);
  return TRUE;
}

}  // extern "C"
