// Pens, brushes, fonts, regions and stock objects: making, selecting, asking, deleting.
#include <algorithm>
#include <cstring>

#include "platform/desktop/drawing/gdi.h"
#include "platform/machine.h"

namespace platform {
namespace gdi {
namespace {

LOGFONTW FontNamed(int height, int weight, BYTE pitch, std::u16string_view face) {
  LOGFONTW font = {};
  font.lfHeight = height;
  font.lfWeight = weight;
  font.lfCharSet = SHIFTJIS_CHARSET;
  font.lfPitchAndFamily = pitch;
  face.copy(font.lfFaceName, LF_FACESIZE - 1);
  return font;
}

HGDIOBJ AddMade(UINT type, decltype(Object::data) data) {
  if (CreationFails()) return nullptr;
  ObjectStore& store = ObjectStore::Get();
  const std::lock_guard guard(store.lock);
  return store.Add(type, std::move(data));
}

}  // namespace

ObjectStore& ObjectStore::Get() {
  static ObjectStore store;
  return store;
}

ObjectStore::ObjectStore() {
  const struct {
    int index;
    COLORREF colour;
  } brushes[] = {{WHITE_BRUSH, 0xFFFFFF},
                 {LTGRAY_BRUSH, 0xC0C0C0},
                 {GRAY_BRUSH, 0x808080},
                 {DKGRAY_BRUSH, 0x404040},
                 {BLACK_BRUSH, 0x000000}};
  for (const auto& brush : brushes)
    stock[brush.index] = Add(OBJ_BRUSH, LOGBRUSH{BS_SOLID, brush.colour, 0}, true);
  stock[NULL_BRUSH] = Add(OBJ_BRUSH, LOGBRUSH{BS_NULL, 0, 0}, true);
  stock[WHITE_PEN] = Add(OBJ_PEN, LOGPEN{PS_SOLID, {0, 0}, 0xFFFFFF}, true);
  stock[BLACK_PEN] = Add(OBJ_PEN, LOGPEN{PS_SOLID, {0, 0}, 0}, true);
  stock[NULL_PEN] = Add(OBJ_PEN, LOGPEN{PS_NULL, {0, 0}, 0}, true);
  const LOGFONTW fixed = FontNamed(12, FW_NORMAL, FIXED_PITCH, u"ＭＳ ゴシック");
  const LOGFONTW dialog = FontNamed(12, FW_NORMAL, FIXED_PITCH, u"MS Shell Dlg");
  stock[ANSI_FIXED_FONT] = Add(OBJ_FONT, fixed, true);
  for (const int index : {ANSI_VAR_FONT, SYSTEM_FONT, DEFAULT_GUI_FONT})
    stock[index] = Add(OBJ_FONT, dialog, true);
  defaultBitmap = Add(OBJ_BITMAP, Bitmap{1, 1, 1, 0, {}}, true);
}

HGDIOBJ ObjectStore::Add(UINT type, decltype(Object::data) data, bool isStock) {
  const auto handle = reinterpret_cast<HGDIOBJ>(nextHandle);
  nextHandle += 2;
  objects.emplace(handle, Object{type, isStock, 0, std::move(data)});
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

void ObjectStore::Hold(const DcState& state, int by) {
  for (HGDIOBJ handle : {state.pen, state.brush, state.font, state.bitmap})
    if (Object* object = Find(handle)) object->selected += by;
}

bool CreationFails() { return Machine::Current().faults.Strike(Fault::kWindow); }

}  // namespace gdi

int LiveGdiObjects() {
  gdi::ObjectStore& store = gdi::ObjectStore::Get();
  const std::lock_guard guard(store.lock);
  return static_cast<int>(std::count_if(store.objects.begin(), store.objects.end(),
                                        [](const auto& entry) { return !entry.second.stock; }));
}

int LiveDcs() {
  gdi::ObjectStore& store = gdi::ObjectStore::Get();
  const std::lock_guard guard(store.lock);
  return static_cast<int>(store.contexts.size());
}

std::optional<COLORREF> BrushColour(HBRUSH brush) {
  gdi::ObjectStore& store = gdi::ObjectStore::Get();
  const std::lock_guard guard(store.lock);
  const auto* found = store.FindAs<LOGBRUSH>(brush);
  if (!found || found->lbStyle == BS_NULL) return std::nullopt;
  return found->lbColor;
}

}  // namespace platform

using namespace platform::gdi;

HGDIOBJ WINAPI GetStockObject(int index) {
  if (index < 0 || index >= 20) return nullptr;
  return ObjectStore::Get().stock[index];
}

HPEN WINAPI CreatePen(int style, int width, COLORREF colour) {
  // An unknown style counts as solid, as the documentation of CreatePen has it; broken lines exist
  // one pixel wide only.
  if (style < PS_SOLID || style > PS_INSIDEFRAME) style = PS_SOLID;
  if (width > 1 && style >= PS_DASH && style <= PS_DASHDOTDOT) style = PS_SOLID;
  return static_cast<HPEN>(
      AddMade(OBJ_PEN, LOGPEN{static_cast<UINT>(style), {width, 0}, colour & 0xFFFFFF}));
}

HPEN WINAPI CreatePenIndirect(const LOGPEN* pen) {
  return pen ? CreatePen(static_cast<int>(pen->lopnStyle), pen->lopnWidth.x, pen->lopnColor)
             : nullptr;
}

HBRUSH WINAPI CreateSolidBrush(COLORREF colour) {
  return static_cast<HBRUSH>(AddMade(OBJ_BRUSH, LOGBRUSH{BS_SOLID, colour & 0xFFFFFF, 0}));
}

HBRUSH WINAPI CreateBrushIndirect(const LOGBRUSH* brush) {
  return brush ? static_cast<HBRUSH>(AddMade(OBJ_BRUSH, *brush)) : nullptr;
}

HFONT WINAPI CreateFontIndirectW(const LOGFONTW* font) {
  if (!font) return nullptr;
  LOGFONTW copy = *font;
  copy.lfFaceName[LF_FACESIZE - 1] = 0;
  return static_cast<HFONT>(AddMade(OBJ_FONT, copy));
}

HFONT WINAPI CreateFontW(int height, int width, int escapement, int orientation, int weight,
                         DWORD italic, DWORD underline, DWORD strikeOut, DWORD charSet,
                         DWORD outPrecision, DWORD clipPrecision, DWORD quality,
                         DWORD pitchAndFamily, LPCWSTR faceName) {
  LOGFONTW font = {};
  font.lfHeight = height;
  font.lfWidth = width;
  font.lfEscapement = escapement;
  font.lfOrientation = orientation;
  font.lfWeight = weight;
  font.lfItalic = static_cast<BYTE>(italic);
  font.lfUnderline = static_cast<BYTE>(underline);
  font.lfStrikeOut = static_cast<BYTE>(strikeOut);
  font.lfCharSet = static_cast<BYTE>(charSet);
  font.lfOutPrecision = static_cast<BYTE>(outPrecision);
  font.lfClipPrecision = static_cast<BYTE>(clipPrecision);
  font.lfQuality = static_cast<BYTE>(quality);
  font.lfPitchAndFamily = static_cast<BYTE>(pitchAndFamily);
  if (faceName) std::u16string_view(faceName).copy(font.lfFaceName, LF_FACESIZE - 1);
  return CreateFontIndirectW(&font);
}

HRGN WINAPI CreateRectRgn(int left, int top, int right, int bottom) {
  const RECT rect = {std::min(left, right), std::min(top, bottom), std::max(left, right),
                     std::max(top, bottom)};
  return static_cast<HRGN>(AddMade(OBJ_REGION, rect));
}

HRGN WINAPI CreateRectRgnIndirect(const RECT* rect) {
  return rect ? CreateRectRgn(rect->left, rect->top, rect->right, rect->bottom) : nullptr;
}

// A selected object is not deleted: the mistake shows in the count of live objects. A stock object
// may be given back any time and stays.
BOOL WINAPI DeleteObject(HGDIOBJ object) {
  ObjectStore& store = ObjectStore::Get();
  const std::lock_guard guard(store.lock);
  const Object* found = store.Find(object);
  if (!found) return FALSE;
  if (found->stock) return TRUE;
  if (found->selected > 0) return FALSE;
  store.objects.erase(object);
  return TRUE;
}

UINT WINAPI GetObjectType(HGDIOBJ object) {
  ObjectStore& store = ObjectStore::Get();
  const std::lock_guard guard(store.lock);
  if (const Object* found = store.Find(object)) return found->type;
  if (const Dc* dc = store.FindDc(static_cast<HDC>(object))) return dc->memory ? OBJ_MEMDC : OBJ_DC;
  return 0;
}

int WINAPI GetObjectW(HGDIOBJ object, int size, LPVOID buffer) {
  ObjectStore& store = ObjectStore::Get();
  const std::lock_guard guard(store.lock);
  const Object* found = store.Find(object);
  if (!found || found->type == OBJ_REGION) return 0;
  const auto answer = [&](const auto& value) {
    const int whole = static_cast<int>(sizeof value);
    if (!buffer) return whole;
    const int copied = std::clamp(size, 0, whole);
    std::memcpy(buffer, &value, static_cast<size_t>(copied));
    return copied;
  };
  if (const auto* bitmap = std::get_if<Bitmap>(&found->data)) {
    BITMAP form = {};
    form.bmWidth = bitmap->width;
    form.bmHeight = bitmap->height;
    form.bmWidthBytes = (bitmap->width * bitmap->bitsPerPixel + 15) / 16 * 2;
    form.bmPlanes = 1;
    form.bmBitsPixel = bitmap->bitsPerPixel;
    return size < static_cast<int>(sizeof form) && buffer ? 0 : answer(form);
  }
  if (const auto* pen = std::get_if<LOGPEN>(&found->data)) return answer(*pen);
  if (const auto* brush = std::get_if<LOGBRUSH>(&found->data)) return answer(*brush);
  return answer(std::get<LOGFONTW>(found->data));
}
