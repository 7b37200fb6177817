// Owners of drawing objects, and the drawing of pictures from the module's resources.
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

// A pen, brush, font or bitmap of one's own.
using GdiObject = UniqueHandle<HGDIOBJ, DeleteGdiObject>;
using MemoryDc = UniqueHandle<HDC, DeleteMemoryDc>;

// Selects an object into a device context for as long as it lives, then the previous one again.
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

// A picture of the module's resources in a memory device context of its own, for BitBlt and
// StretchBlt. Empty, with no size, when there is no such picture.
class Picture {
 public:
  Picture(HDC target, WORD id)
      : bitmap_(LoadBitmapW(ModuleInstance(), MAKEINTRESOURCEW(id))),
        dc_(bitmap_ ? CreateCompatibleDC(target) : nullptr) {
    if (!dc_) return;
    BITMAP facts = {};
    if (GetObjectW(bitmap_.get(), sizeof(facts), &facts) == 0) return;
    width_ = facts.bmWidth;
    height_ = facts.bmHeight;
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
  MemoryDc dc_;  // released before the bitmap
  HGDIOBJ previous_ = nullptr;
  int width_ = 0;
  int height_ = 0;
};

}  // namespace kestrel
