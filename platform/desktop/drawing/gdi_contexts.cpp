// Device contexts: getting and giving back, what is selected, colours, modes, clipping, saved
// states.
#include <algorithm>
#include <utility>

#include "platform/desktop/drawing/gdi.h"
#include "platform/machine.h"

using namespace platform::gdi;

namespace {

HDC AddContext(HWND window, bool memory) {
  ObjectStore& store = ObjectStore::Get();
  const std::lock_guard guard(store.lock);
  const auto handle = reinterpret_cast<HDC>(store.nextHandle);
  store.nextHandle += 2;
  Dc dc;
  dc.window = window;
  dc.memory = memory;
  dc.state.pen = store.stock[BLACK_PEN];
  dc.state.brush = store.stock[WHITE_BRUSH];
  dc.state.font = store.stock[SYSTEM_FONT];
  dc.state.bitmap = memory ? store.defaultBitmap : nullptr;
  store.Hold(dc.state, 1);
  store.contexts.emplace(handle, std::move(dc));
  return handle;
}

bool RemoveContext(HDC handle, bool memory) {
  ObjectStore& store = ObjectStore::Get();
  const std::lock_guard guard(store.lock);
  Dc* dc = store.FindDc(handle);
  if (!dc || dc->memory != memory) return false;
  store.Hold(dc->state, -1);
  for (const DcState& state : dc->saved) store.Hold(state, -1);
  store.contexts.erase(handle);
  return true;
}

// Runs `work` on a live context under the lock; `none` for a stale one.
template <typename Answer, typename Work>
Answer WithDc(HDC handle, Answer none, Work work) {
  ObjectStore& store = ObjectStore::Get();
  const std::lock_guard guard(store.lock);
  Dc* dc = store.FindDc(handle);
  return dc ? work(store, *dc) : none;
}

// Sets a member of the state and answers the old value.
template <typename T>
T Exchange(HDC handle, T none, T DcState::*member, T value) {
  return WithDc(handle, none, [&](ObjectStore&, Dc& dc) {
    return static_cast<T>(std::exchange(dc.state.*member, value));
  });
}

template <typename T>
T Read(HDC handle, T none, T DcState::*member) {
  return WithDc(handle, none,
                [&](ObjectStore&, Dc& dc) { return static_cast<T>(dc.state.*member); });
}

HGDIOBJ* Slot(DcState& state, UINT type) {
  switch (type) {
    case OBJ_PEN:
      return &state.pen;
    case OBJ_BRUSH:
      return &state.brush;
    case OBJ_FONT:
      return &state.font;
    case OBJ_BITMAP:
      return &state.bitmap;
    default:
      return nullptr;
  }
}

int ClipKind(const std::optional<RECT>& clip) {
  return clip && IsRectEmpty(&*clip) ? NULLREGION : SIMPLEREGION;
}

}  // namespace

Target ObjectStore::TargetOf(const Dc& dc) {
  if (!dc.memory) return WindowTarget(dc.window);
  auto* bitmap = FindAs<Bitmap>(dc.state.bitmap);
  if (!bitmap || dc.state.bitmap == defaultBitmap) return {};
  return {&bitmap->drawing, {0, 0, bitmap->width, bitmap->height}};
}

HDC WINAPI GetDC(HWND window) {
  if (window && !IsWindow(window)) return nullptr;
  return AddContext(window, false);
}

int WINAPI ReleaseDC(HWND window, HDC dc) {
  const bool own = WithDc(dc, false, [&](ObjectStore&, Dc& it) { return it.window == window; });
  return own && RemoveContext(dc, false);
}

HDC WINAPI CreateCompatibleDC(HDC dc) {
  if (dc && !WithDc(dc, false, [](ObjectStore&, Dc&) { return true; })) return nullptr;
  return CreationFails() ? nullptr : AddContext(nullptr, true);
}

BOOL WINAPI DeleteDC(HDC dc) { return RemoveContext(dc, true); }

int WINAPI SaveDC(HDC dc) {
  return WithDc(dc, 0, [](ObjectStore& store, Dc& it) {
    store.Hold(it.state, 1);
    it.saved.push_back(it.state);
    return static_cast<int>(it.saved.size());
  });
}

// A positive state is one that SaveDC answered, a negative one counts back from the current one.
BOOL WINAPI RestoreDC(HDC dc, int state) {
  return WithDc(dc, FALSE, [&](ObjectStore& store, Dc& it) -> BOOL {
    const int depth = static_cast<int>(it.saved.size());
    const int index = state < 0 ? depth + state : state - 1;
    if (state == 0 || index < 0 || index >= depth) return FALSE;
    while (static_cast<int>(it.saved.size()) > index) {
      store.Hold(it.state, -1);
      it.state = std::move(it.saved.back());
      it.saved.pop_back();
    }
    return TRUE;
  });
}

int WINAPI GetDeviceCaps(HDC dc, int index) {
  const struct {
    int index, value;
  } caps[] = {{HORZRES, 1024}, {VERTRES, 768},   {BITSPIXEL, 32},
              {PLANES, 1},     {LOGPIXELSX, 96}, {LOGPIXELSY, 96}};
  return WithDc(dc, 0, [&](ObjectStore&, Dc&) {
    for (const auto& cap : caps)
      if (cap.index == index) return cap.value;
    return 0;
  });
}

HGDIOBJ WINAPI SelectObject(HDC dc, HGDIOBJ object) {
  return WithDc(dc, HGDIOBJ{}, [&](ObjectStore& store, Dc& it) -> HGDIOBJ {
    Object* found = store.Find(object);
    if (!found) return nullptr;
    if (found->type == OBJ_REGION) {
      it.state.clip = std::get<RECT>(found->data);
      return reinterpret_cast<HGDIOBJ>(static_cast<LONG_PTR>(ClipKind(it.state.clip)));
    }
    HGDIOBJ* slot = Slot(it.state, found->type);
    // A bitmap goes into memory contexts only, and into one at a time.
    if (found->type == OBJ_BITMAP &&
        (!it.memory || (*slot != object && found->selected > 0 && object != store.defaultBitmap)))
      return nullptr;
    ++found->selected;
    if (Object* old = store.Find(*slot)) --old->selected;
    return std::exchange(*slot, object);
  });
}

HGDIOBJ WINAPI GetCurrentObject(HDC dc, UINT type) {
  return WithDc(dc, HGDIOBJ{}, [&](ObjectStore&, Dc& it) {
    const HGDIOBJ* slot = Slot(it.state, type);
    return slot ? *slot : nullptr;
  });
}

COLORREF WINAPI SetTextColor(HDC dc, COLORREF colour) {
  return Exchange(dc, CLR_INVALID, &DcState::textColour, colour & 0xFFFFFF);
}
COLORREF WINAPI GetTextColor(HDC dc) { return Read(dc, CLR_INVALID, &DcState::textColour); }
COLORREF WINAPI SetBkColor(HDC dc, COLORREF colour) {
  return Exchange(dc, CLR_INVALID, &DcState::background, colour & 0xFFFFFF);
}
COLORREF WINAPI GetBkColor(HDC dc) { return Read(dc, CLR_INVALID, &DcState::background); }
int WINAPI SetBkMode(HDC dc, int mode) {
  if (mode != TRANSPARENT && mode != OPAQUE) return 0;
  return Exchange(dc, 0, &DcState::backgroundMode, mode);
}
int WINAPI GetBkMode(HDC dc) { return Read(dc, 0, &DcState::backgroundMode); }
UINT WINAPI SetTextAlign(HDC dc, UINT align) {
  return Exchange(dc, GDI_ERROR, &DcState::align, align);
}
int WINAPI SetStretchBltMode(HDC dc, int mode) {
  if (mode < BLACKONWHITE || mode > HALFTONE) return 0;
  return Exchange(dc, 0, &DcState::stretchMode, mode);
}
int WINAPI GetStretchBltMode(HDC dc) { return Read(dc, 0, &DcState::stretchMode); }
int WINAPI SetMapMode(HDC dc, int mode) {
  // Pixels are the only mapping here.
  if (mode != MM_TEXT) return 0;
  return Exchange(dc, 0, &DcState::mapMode, mode);
}
int WINAPI GetMapMode(HDC dc) { return Read(dc, 0, &DcState::mapMode); }

int WINAPI SelectClipRgn(HDC dc, HRGN region) {
  return WithDc(dc, 0, [&](ObjectStore& store, Dc& it) {
    if (!region) {
      it.state.clip.reset();
      return SIMPLEREGION;
    }
    const auto* rect = store.FindAs<RECT>(region);
    if (!rect) return 0;
    it.state.clip = *rect;
    return ClipKind(it.state.clip);
  });
}

int WINAPI IntersectClipRect(HDC dc, int left, int top, int right, int bottom) {
  return WithDc(dc, 0, [&](ObjectStore& store, Dc& it) {
    const RECT current = it.state.clip ? *it.state.clip : store.TargetOf(it).area;
    const RECT given = {left, top, right, bottom};
    RECT both = {};
    IntersectRect(&both, &current, &given);
    it.state.clip = both;
    return ClipKind(it.state.clip);
  });
}

int WINAPI GetClipBox(HDC dc, LPRECT rect) {
  return WithDc(dc, 0, [&](ObjectStore& store, Dc& it) {
    *rect = store.TargetOf(it).area;
    if (it.state.clip) IntersectRect(rect, rect, &*it.state.clip);
    return IsRectEmpty(rect) ? NULLREGION : SIMPLEREGION;
  });
}
