// Owners of GDI objects, and bitmaps of the module's resources ready for drawing.
#pragma once

#include <windows.h>

#include "driver/handles.h"
#include "driver/instance.h"

namespace kestrel {

struct DeleteGdiObject {
  void operator()(HGDIOBJ object) const { DeleteObject(object); }
};
struct DeleteMemoryDc {
  void operator()(HDC dc) const { DeleteDC(dc); }
};

// Owns a pen, brush, font or bitmap.
using GdiObject = UniqueHandle<HGDIOBJ, DeleteGdiObject>;
using MemoryDc = UniqueHandle<HDC, DeleteMemoryDc>;

// Selects an object into a device context; the destructor selects the previous one again.
class SelectedObject {
 public:
  SelectedObject(HDC dc, HGDIOBJ object) : dc_(dc), previous_(SelectObject(dc, object)) {}
  ~SelectedObject() {
    if (previous_ != nullptr) SelectObject(dc_, previous_);
  }
  SelectedObject(const SelectedObject&) = delete;
  SelectedObject& operator=(const SelectedObject&) = delete;

 private:
  HDC dc_;
  HGDIOBJ previous_;
};

// A bitmap of the module's resources, selected into a memory device context of its own for BitBlt
// and StretchBlt. Empty and of size 0 when the bitmap or the context cannot be created.
class Picture {
 public:
  Picture(HDC target, WORD id)
      : bitmap_(LoadBitmapW(ModuleInstance(), MAKEINTRESOURCEW(id))),
        dc_(bitmap_ ? CreateCompatibleDC(target) : nullptr) {
    if (!dc_) return;
    BITMAP bitmap = {};
    if (GetObjectW(bitmap_.get(), sizeof(bitmap), &bitmap) == 0) return;
    width_ = bitmap.bmWidth;
    height_ = bitmap.bmHeight;
    previous_ = SelectObject(dc_.get(), bitmap_.get());
  }
  ~Picture() {
    if (previous_ != nullptr) SelectObject(dc_.get(), previous_);
  }
  Picture(const Picture&) = delete;
  Picture& operator=(const Picture&) = delete;

  explicit operator bool() const { return previous_ != nullptr; }
  HDC dc() const { return dc_.get(); }
  int width() const { return width_; }
  int height() const { return height_; }

 private:
  GdiObject bitmap_;
  MemoryDc dc_;  // destroyed before the bitmap that is selected into it
  HGDIOBJ previous_ = nullptr;
  int width_ = 0;
  int height_ = 0;
};

}  // namespace kestrel
