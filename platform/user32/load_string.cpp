#include <windows.h>

#include <algorithm>
#include <cstring>

#include "platform/loader/resource_table.h"

using namespace platform;

// Strings are stored in blocks of 16: for each a count of units and the units.
int WINAPI LoadStringW(HINSTANCE instance, UINT id, LPWSTR buffer, int size) {
  if (buffer == nullptr || size <= 0) return 0;
  const Bytes block = FindResourceBytes(instance, kResourceString, static_cast<WORD>(id / 16 + 1));
  uint64_t offset = 0;
  for (UINT skipped = 0; skipped < id % 16; ++skipped) {
    offset += 2 + uint64_t{At<WORD>(block, offset).value_or(0)} * 2;
  }
  const WORD length = At<WORD>(block, offset).value_or(0);
  const Bytes units = Slice(block, offset + 2, uint64_t{length} * 2);
  const size_t count = std::min(units.size() / 2, static_cast<size_t>(size) - 1);
  if (count > 0) std::memcpy(buffer, units.data(), count * sizeof(WCHAR));
  buffer[count] = 0;
  return static_cast<int>(count);
}
