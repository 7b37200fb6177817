// Drawing: objects, device contexts and what they record. Internal to the stand-in; tests look at
// the counts.
#pragma once

#include <windows.h>

#include <optional>
#include <string_view>
#include <unordered_map>
#include <variant>
#include <vector>

#include "platform/machine/display_list.h"

namespace platform {

// Objects that the calling thread has made (pens, fonts, bitmaps) and not deleted; stock objects do
// not count.
int LiveGdiObjects();
// Contexts got from GetDC or CreateCompatibleDC and not given back.
int LiveDcs();

// The colour of a brush; nothing for a stale handle.
std::optional<COLORREF> BrushColour(HBRUSH brush);

namespace gdi {

struct Pen {
  int style, width;
  COLORREF colour;
};
struct Brush {
  COLORREF colour;
};
struct Bitmap {
  int width = 0, height = 0;
  int resourceId = 0;
};
using ObjectData = std::variant<Pen, Brush, LOGFONTW, Bitmap>;

struct Object {
  bool stock = false;
  int selected = 0;  // contexts (and saved states) that hold it
  ObjectData data;
};

// What SaveDC keeps. The objects selected stand in the order of ObjectData.
struct DcState {
  HGDIOBJ selected[std::variant_size_v<ObjectData>] = {};
  COLORREF textColour = 0;
  COLORREF background = 0xFFFFFF;
  int backgroundMode = OPAQUE;
  int stretchMode = BLACKONWHITE;
  POINT position = {};
};

struct Dc {
  HWND window = nullptr;  // null for the screen and for memory contexts
  bool memory = false;
  DcState state;
  std::vector<DcState> saved;
};

// The live objects and contexts of one thread: each draws in its own windows. Handles are numbers
// that are never used again, so that a stale handle is always recognised.
struct ObjectStore {
  std::unordered_map<HGDIOBJ, Object> objects;
  std::unordered_map<HDC, Dc> contexts;
  uintptr_t nextHandle = 0x01000001;
  HGDIOBJ stock[20] = {};
  HGDIOBJ defaultBitmap = nullptr;  // the one-pixel bitmap of a fresh memory context

  static ObjectStore& Get();
  HGDIOBJ Add(ObjectData data, bool isStock = false);
  Object* Find(HGDIOBJ handle);
  Dc* FindDc(HDC dc);
  template <typename T>
  T* FindAs(HGDIOBJ handle) {
    Object* object = Find(handle);
    return object != nullptr ? std::get_if<T>(&object->data) : nullptr;
  }
  // The object of a kind that a context has selected: there always is one.
  template <typename T>
  const T& Selected(const Dc& dc) {
    return *FindAs<T>(dc.state.selected[ObjectData(T()).index()]);
  }
  void Hold(const DcState& state, int by);  // counts the state's objects as selected or no more

 private:
  ObjectStore();
};

// Runs `work` on a live context; answers `none` for a stale one.
template <typename Answer, typename Work>
Answer WithDc(HDC handle, Answer none, Work work) {
  ObjectStore& store = ObjectStore::Get();
  Dc* dc = store.FindDc(handle);
  return dc != nullptr ? work(store, *dc) : none;
}

// Adds a context of a window (null: the screen), or in memory, with the stock objects selected.
HDC AddContext(HWND window, bool memory);
// Removes a context; false when it is stale or not of that window or kind.
bool RemoveContext(HDC dc, HWND window, bool memory);

// What a later operation hides completely is dropped, and so is an earlier drawing of the very same
// thing: the later one paints the same pixels over it. So a list cannot grow by redrawing. Drawing
// on the screen, in memory or on a window that is gone is lost.
void Record(const Dc& dc, DrawOp op);

// An object as the module makes it; null where a computer out of handles has none.
HGDIOBJ AddMade(ObjectData data);

// Font metrics, fixed for all machines.
struct FontShape {
  int height, ascent, average;
  bool proportional;
};
FontShape ShapeOf(const LOGFONTW& font);
int TextWidth(const FontShape& shape, std::u16string_view text);

}  // namespace gdi
}  // namespace platform
