// Drawing: objects, device contexts and what they record. Internal to the stand-in; tests look at
// the counts.
#pragma once

#include <windows.h>

#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <variant>
#include <vector>

#include "platform/desktop/drawing/display_list.h"

namespace platform {

// Objects made (pens, brushes, fonts, bitmaps, regions) and not deleted; stock objects do not
// count.
int LiveGdiObjects();
// Contexts got from GetDC, BeginPaint or CreateCompatibleDC and not given back.
int LiveDcs();

// The colour of a brush; nothing for a hollow brush or a stale handle.
std::optional<COLORREF> BrushColour(HBRUSH brush);
// Width of a text in pixels in a font; a null or stale font counts as the dialogs' own font.
int TextWidth(HFONT font, std::u16string_view text);

namespace gdi {

struct Bitmap {
  int width = 0, height = 0;
  WORD bitsPerPixel = 32;
  int resourceId = 0;   // 0: made at run time
  DisplayList drawing;  // what was drawn on it since
};

struct Object {
  UINT type = 0;  // OBJ_PEN, OBJ_BRUSH, OBJ_FONT, OBJ_BITMAP or OBJ_REGION
  bool stock = false;
  int selected = 0;  // contexts (and saved states) that hold it
  std::variant<LOGPEN, LOGBRUSH, LOGFONTW, Bitmap, RECT> data;
};

// What SaveDC keeps.
struct DcState {
  HGDIOBJ pen, brush, font, bitmap;
  COLORREF textColour = 0;
  COLORREF background = 0xFFFFFF;
  int backgroundMode = OPAQUE;
  int stretchMode = BLACKONWHITE;
  int mapMode = MM_TEXT;
  UINT align = TA_LEFT;
  POINT position = {};
  std::optional<RECT> clip;
};

struct Dc {
  HWND window = nullptr;  // null for the screen and for memory contexts
  bool memory = false;
  DcState state;
  std::vector<DcState> saved;
};

// Where a context draws: the list, and the area that covers all of it. No list: drawing is lost (a
// window that is gone, the screen).
struct Target {
  DisplayList* list = nullptr;
  RECT area = {};
};

// All live objects and contexts. Handles are numbers that are never used again, so a stale handle
// is always recognised. Access is under the lock.
struct ObjectStore {
  std::recursive_mutex lock;
  std::unordered_map<HGDIOBJ, Object> objects;
  std::unordered_map<HDC, Dc> contexts;
  uintptr_t nextHandle = 0x01000001;
  HGDIOBJ stock[20] = {};
  HGDIOBJ defaultBitmap = nullptr;  // the one-pixel bitmap of a fresh memory context

  static ObjectStore& Get();
  HGDIOBJ Add(UINT type, decltype(Object::data) data, bool isStock = false);
  Object* Find(HGDIOBJ handle);
  Dc* FindDc(HDC dc);
  template <typename T>
  T* FindAs(HGDIOBJ handle) {
    Object* object = Find(handle);
    return object ? std::get_if<T>(&object->data) : nullptr;
  }
  Target TargetOf(const Dc& dc);
  void Hold(const DcState& state, int by);  // counts the state's objects as selected or no more

 private:
  ObjectStore();
};

// The window's list and client area; none for a window that is gone.
Target WindowTarget(HWND window);

// Whether a creation shall fail now, as a computer out of handles lets it fail.
bool CreationFails();

// Adds an operation, clipped to the context, and drops what it hides.
void Record(ObjectStore& store, const Dc& dc, DrawOp op);
void Record(const Target& target, DrawOp op);

// An operation with the context's pen, brush, colours and font filled in.
DrawOp Prepared(ObjectStore& store, const Dc& dc, DrawOp::Kind kind);

// Font metrics, fixed for all machines.
struct FontShape {
  int height, ascent, descent, average;
  bool proportional;
};
FontShape ShapeOf(const LOGFONTW& font);
int CharWidth(const FontShape& shape, char16_t unit);
int TextWidth(const FontShape& shape, std::u16string_view text);
const LOGFONTW& SelectedFont(ObjectStore& store, const Dc& dc);

}  // namespace gdi
}  // namespace platform
