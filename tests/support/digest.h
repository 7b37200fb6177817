// A hash of the values added to it. It is the same on every processor.
#pragma once

#include <windows.h>

#include <cstdint>
#include <cstdio>
#include <span>
#include <string>

#include "platform/machine/desk.h"

namespace support {

class Digest {
 public:
  void AddBytes(std::span<const std::byte> bytes) {
    Add(bytes.size());
    for (const std::byte byte : bytes) AddByte(static_cast<uint8_t>(byte));
  }
  // Extends the number with its sign to 64 bits.
  template <typename Number>
  requires std::is_integral_v<Number> || std::is_enum_v<Number>
  void Add(Number number) {
    auto value = static_cast<uint64_t>(number);
    for (int i = 0; i < 8; ++i, value >>= 8) AddByte(static_cast<uint8_t>(value));
  }
  void Add(std::u16string_view text) { AddBytes(std::as_bytes(std::span(text))); }
  void Add(const std::u16string& text) { Add(std::u16string_view(text)); }
  void Add(const std::string& text) { AddBytes(std::as_bytes(std::span(text))); }
  void Add(const RECT& rect) { AddAll(rect.left, rect.top, rect.right, rect.bottom); }
  void Add(const POINT& point) { AddAll(point.x, point.y); }
  void Add(const platform::DrawOp& op) {
    AddAll(op.kind, op.rect, op.pen, op.penStyle, op.penWidth, op.brush, op.bitmap, op.source,
           op.text, op.at, op.textColour, op.background, op.opaque, op.fontHeight, op.fontAscent,
           op.fontWidth, op.face, op.clip);
  }
  // Adds every member except the handle.
  void Add(const platform::ControlView& control) {
    AddAll(control.id, control.kind, control.rect, control.text, control.visible, control.enabled,
           control.focused, control.checked, control.defaultButton, control.tabStop, control.group,
           control.centred, control.readOnly, control.prefix, control.textLimit, control.selection,
           control.minimum, control.maximum, control.position, control.buddy, control.items,
           control.background, control.drawing);
  }
  // Adds every member except the handle.
  void Add(const platform::WindowView& window) {
    AddAll(window.title, window.width, window.height, window.kind, window.enabled,
           window.messageStyle, window.controls, window.tabs, window.activeTab, window.changed,
           window.page != nullptr, window.pageWidth, window.pageHeight);
    if (window.page != nullptr) Add(*window.page);
  }
  template <typename T>
  void Add(const std::vector<T>& values) {
    Add(values.size());
    for (const T& value : values) Add(value);
  }
  template <typename... T>
  void AddAll(const T&... values) {
    (Add(values), ...);
  }

  std::string Text() const {
    char text[17];
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(hash_));
    return text;
  }

 private:
  // FNV-1a.
  void AddByte(uint8_t byte) { hash_ = (hash_ ^ byte) * 0x100000001B3; }

  uint64_t hash_ = 0xCBF29CE484222325;
};

}  // namespace support
