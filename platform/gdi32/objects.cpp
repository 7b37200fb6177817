// Pens, brushes, fonts, bitmaps and stock objects, and the contexts that use them.
#include <algorithm>
#include <cstring>
#include <utility>

#include "platform/gdi32/gdi.h"
#include "platform/machine/machine.h"

namespace platform {
namespace gdi {

ObjectStore& ObjectStore::Get() {
  static thread_local ObjectStore store;
  return store;
}

ObjectStore::ObjectStore() {
  stock[WHITE_BRUSH] = Add(Brush{0xFFFFFF}, true);
  stock[BLACK_BRUSH] = Add(Brush{0x000000}, true);
  stock[BLACK_PEN] = Add(Pen{PS_SOLID, 0, 0}, true);
  LOGFONTW font = {};
  font.lfHeight = 12;
  font.lfWeight = FW_NORMAL;
  font.lfPitchAndFamily = FIXED_PITCH;
  std::u16string_view(u"MS Shell Dlg").copy(font.lfFaceName, LF_FACESIZE - 1);
  stock[SYSTEM_FONT] = Add(font, true);
  defaultBitmap = Add(Bitmap{1, 1, 0}, true);
}

HGDIOBJ ObjectStore::Add(ObjectData data, bool isStock) {
  const auto handle = reinterpret_cast<HGDIOBJ>(nextHandle);
  nextHandle += 2;
  objects.emplace(handle, Object{isStock, 0, std::move(data)});
  return handle;
}

Object* ObjectStore::Find(HGDIOBJ handle) {
  const auto found = objects.find(handle);
  return found == objects.end() ? nullptr : &found->second;
}

Dc* ObjectStore::FindDc(HDC dc) {
  const auto found = contexts.find(dc);
  return found == contexts.end() ? nullptr : &found->second;
}

void ObjectStore::AddUse(const DcState& state, int by) {
  for (HGDIOBJ handle : state.selected)
    if (Object* object = Find(handle)) object->selected += by;
}

HGDIOBJ AddObject(ObjectData data) {
  if (Machine::Current().faults.ShouldFail(Fault::kWindow)) return nullptr;
  return ObjectStore::Get().Add(std::move(data));
}

HDC AddContext(HWND window, bool memory) {
  ObjectStore& store = ObjectStore::Get();
  const auto handle = reinterpret_cast<HDC>(store.nextHandle);
  store.nextHandle += 2;
  Dc dc;
  dc.window = window;
  dc.memory = memory;
  const HGDIOBJ defaults[] = {store.stock[BLACK_PEN], store.stock[WHITE_BRUSH],
                              store.stock[SYSTEM_FONT], store.defaultBitmap};
  std::copy(std::begin(defaults), std::end(defaults), dc.state.selected);
  store.AddUse(dc.state, 1);
  store.contexts.emplace(handle, std::move(dc));
  return handle;
}

bool RemoveContext(HDC handle, HWND window, bool memory) {
  return WithDc(handle, false, [=](ObjectStore& store, Dc& dc) {
    if (dc.memory != memory || dc.window != window) return false;
    store.AddUse(dc.state, -1);
    for (const DcState& state : dc.saved) store.AddUse(state, -1);
    store.contexts.erase(handle);
    return true;
  });
}

namespace {

// Sets a member of the state and returns the old value.
template <typename T>
T Exchange(HDC handle, T none, T DcState::*member, T value) {
  return WithDc(handle, none, [&](ObjectStore&, Dc& dc) {
    return static_cast<T>(std::exchange(dc.state.*member, value));
  });
}

}  // namespace
}  // namespace gdi

int LiveGdiObjects() {
  const auto& objects = gdi::ObjectStore::Get().objects;
  return static_cast<int>(std::count_if(objects.begin(), objects.end(),
                                        [](const auto& entry) { return !entry.second.stock; }));
}

int LiveDcs() { return static_cast<int>(gdi::ObjectStore::Get().contexts.size()); }

std::optional<COLORREF> BrushColour(HBRUSH brush) {
  const auto* found = gdi::ObjectStore::Get().FindAs<gdi::Brush>(brush);
  return found != nullptr ? std::optional(found->colour) : std::nullopt;
}

}  // namespace platform

using namespace platform;
using namespace platform::gdi;

HGDIOBJ WINAPI GetStockObject(int index) {
  return index >= 0 && index < 20 ? ObjectStore::Get().stock[index] : nullptr;
}

HPEN WINAPI CreatePen(int style, int width, COLORREF colour) {
  return static_cast<HPEN>(AddObject(Pen{style, width, colour & 0xFFFFFF}));
}

HFONT WINAPI CreateFontW(int height, int width, int escapement, int orientation, int weight,
                         DWORD italic, DWORD underline, DWORD strikeOut, DWORD charSet,
                         DWORD outPrecision, DWORD clipPrecision, DWORD quality,
                         DWORD pitchAndFamily, LPCWSTR faceName) {
  LOGFONTW font = {height,
                   width,
                   escapement,
                   orientation,
                   weight,
                   static_cast<BYTE>(italic),
                   static_cast<BYTE>(underline),
                   static_cast<BYTE>(strikeOut),
                   static_cast<BYTE>(charSet),
                   static_cast<BYTE>(outPrecision),
                   static_cast<BYTE>(clipPrecision),
                   static_cast<BYTE>(quality),
                   static_cast<BYTE>(pitchAndFamily),
                   {}};
  if (faceName != nullptr) std::u16string_view(faceName).copy(font.lfFaceName, LF_FACESIZE - 1);
  return static_cast<HFONT>(AddObject(font));
}

// Fails for an object that is selected, so that the mistake shows in the count of live objects.
// Deleting a stock object succeeds and does nothing.
BOOL WINAPI DeleteObject(HGDIOBJ object) {
  ObjectStore& store = ObjectStore::Get();
  const Object* found = store.Find(object);
  if (found == nullptr || (!found->stock && found->selected > 0)) return FALSE;
  if (!found->stock) store.objects.erase(object);
  return TRUE;
}

// Supports bitmaps only, and fills only their size.
int WINAPI GetObjectW(HGDIOBJ object, int size, LPVOID buffer) {
  const auto* bitmap = ObjectStore::Get().FindAs<Bitmap>(object);
  BITMAP form = {};
  if (bitmap == nullptr || buffer == nullptr || size < static_cast<int>(sizeof form)) return 0;
  form.bmWidth = bitmap->width;
  form.bmHeight = bitmap->height;
  std::memcpy(buffer, &form, sizeof form);
  return sizeof form;
}

HDC WINAPI CreateCompatibleDC(HDC) {
  return Machine::Current().faults.ShouldFail(Fault::kWindow) ? nullptr : AddContext(nullptr, true);
}

BOOL WINAPI DeleteDC(HDC dc) { return RemoveContext(dc, nullptr, true); }

int WINAPI SaveDC(HDC dc) {
  return WithDc(dc, 0, [](ObjectStore& store, Dc& it) {
    store.AddUse(it.state, 1);
    it.saved.push_back(it.state);
    return static_cast<int>(it.saved.size());
  });
}

// `state` is a result of SaveDC.
BOOL WINAPI RestoreDC(HDC dc, int state) {
  return WithDc(dc, FALSE, [=](ObjectStore& store, Dc& it) -> BOOL {
    const size_t index = static_cast<size_t>(state) - 1;
    if (state <= 0 || index >= it.saved.size()) return FALSE;
    store.AddUse(it.state, -1);
    it.state = it.saved[index];
    for (size_t i = index + 1; i < it.saved.size(); ++i) store.AddUse(it.saved[i], -1);
    it.saved.resize(index);
    return TRUE;
  });
}

// A bitmap can be selected into memory contexts only, and into one at a time.
HGDIOBJ WINAPI SelectObject(HDC dc, HGDIOBJ object) {
  return WithDc(dc, HGDIOBJ{}, [=](ObjectStore& store, Dc& it) -> HGDIOBJ {
    Object* found = store.Find(object);
    if (found == nullptr) return nullptr;
    HGDIOBJ& slot = it.state.selected[found->data.index()];
    if (std::holds_alternative<Bitmap>(found->data) &&
        (!it.memory || (slot != object && found->selected > 0 && !found->stock)))
      return nullptr;
    ++found->selected;
    if (Object* old = store.Find(slot)) --old->selected;
    return std::exchange(slot, object);
  });
}

COLORREF WINAPI SetTextColor(HDC dc, COLORREF colour) {
  return Exchange(dc, CLR_INVALID, &DcState::textColour, colour & 0xFFFFFF);
}
COLORREF WINAPI SetBkColor(HDC dc, COLORREF colour) {
  return Exchange(dc, CLR_INVALID, &DcState::background, colour & 0xFFFFFF);
}
int WINAPI SetBkMode(HDC dc, int mode) { return Exchange(dc, 0, &DcState::backgroundMode, mode); }
int WINAPI SetStretchBltMode(HDC dc, int mode) {
  return Exchange(dc, 0, &DcState::stretchMode, mode);
}
