// GDI objects, device contexts and the operations they record. Internal to the stand-in; tests
// check the counts.
#pragma once

#include <wingdi.h>

#include <optional>
#include <string_view>
#include <unordered_map>
#include <variant>
#include <vector>

#include "platform/machine/display_list.h"

namespace platform {

// Returns the number of pens, fonts and bitmaps that this thread has created and not deleted,
// without stock objects.
int LiveGdiObjects();
// Returns the number of contexts from GetDC or CreateCompatibleDC that are not released.
int LiveDcs();

// Returns the colour of a brush; nullopt for a stale handle.
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
  int selected = 0;  // contexts and saved states that use it
  ObjectData data;
};

// The state that SaveDC saves. Selected objects are in the order of ObjectData.
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

// The live objects and contexts of a thread. Handles are never reused, so that a stale handle is
// always detected.
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
  // Returns the selected object of a kind; there always is one.
  template <typename T>
  const T& Selected(const Dc& dc) {
    return *FindAs<T>(dc.state.selected[ObjectData(T()).index()]);
  }
  void AddUse(const DcState& state, int by);  // adds to the use counts of the state's objects

 private:
  ObjectStore();
};

// Runs `work` on a live context; returns `none` for a stale one.
template <typename Result, typename Work>
Result WithDc(HDC handle, Result none, Work work) {
  ObjectStore& store = ObjectStore::Get();
  Dc* dc = store.FindDc(handle);
  return dc != nullptr ? work(store, *dc) : none;
}

// Creates a context of a window (null: the screen), or in memory, with the stock objects selected.
HDC AddContext(HWND window, bool memory);
// Removes a context. Returns false when it is stale, or not of that window or kind.
bool RemoveContext(HDC dc, HWND window, bool memory);

// Records an operation. Earlier operations that it hides completely are removed, and so are
// identical ones, so that redrawing does not make a list longer. Drawing on the screen, in memory
// or on a destroyed window is lost.
void Record(const Dc& dc, DrawOp op);

// Adds an object; returns null when Fault::kWindow applies.
HGDIOBJ AddObject(ObjectData data);

// Font metrics, the same on every host.
struct FontShape {
  int height, ascent, average;
  bool proportional;
};
FontShape ShapeOf(const LOGFONTW& font);
int TextWidth(const FontShape& shape, std::u16string_view text);

}  // namespace gdi
}  // namespace platform
