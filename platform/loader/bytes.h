// Bounds-checked reading from bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>

namespace platform {

using Bytes = std::span<const std::byte>;

// Reads a structure at an offset; nullopt when it is not entirely inside the bytes.
template <typename T>
std::optional<T> At(Bytes bytes, uint64_t offset) {
  if (offset > bytes.size() || bytes.size() - offset < sizeof(T)) return std::nullopt;
  T value;
  std::memcpy(&value, bytes.data() + offset, sizeof(T));
  return value;
}

// Returns a part of the bytes; empty when it is not entirely inside.
inline Bytes Slice(Bytes bytes, uint64_t offset, uint64_t size) {
  if (offset > bytes.size() || bytes.size() - offset < size) return {};
  return bytes.subspan(static_cast<size_t>(offset), static_cast<size_t>(size));
}

}  // namespace platform
