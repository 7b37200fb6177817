// A hash (FNV-1a) of the values added to it. It is the same on every processor.
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
  void Add(const std::string& text) { AddBytes(std::as_bytes(std::span(text))); }
  void Add(const RECT& rect) { AddAll(rect.left, rect.top, rect.right, rect.bottom); }
  // The following add the members that the module sets.
  void Add(const platform::DrawOp& op) {
    AddAll(op.kind, op.rect, op.pen, op.penStyle, op.brush, op.bitmap, op.source, op.text, op.at.x,
           op.at.y, op.textColour, op.background, op.fontHeight, op.fontWidth, op.face);
  }
  void Add(const platform::ControlView& control) {
    AddAll(control.id, control.rect, control.text, control.visible, control.enabled,
           control.focused, control.checked, control.textLimit, control.selection, control.minimum,
           control.maximum, control.position, control.items, control.drawing);
  }
  void Add(const platform::WindowView& window) {
    AddAll(window.title, window.enabled, window.messageStyle, window.controls, window.activeTab,
           window.changed);
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
  void AddByte(uint8_t byte) { hash_ = (hash_ ^ byte) * 0x100000001B3; }

  uint64_t hash_ = 0xCBF29CE484222325;
};

}  // namespace support
