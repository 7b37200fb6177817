// Access to the halftone description of a block. HTInfo is misaligned for its type (offset 3658),
// so it is copied and never accessed through a reference.
#pragma once

#include <windows.h>
#include <winddi.h>

#include <cstddef>
#include <cstring>

#include "driver/settings_block.h"

namespace kestrel {

constexpr size_t kHalftoneOffset =
    offsetof(DriverSettingsBlock, Printer) + offsetof(PrinterSettingsPart, HTInfo);

inline DEVHTINFO HalftoneInfo(const DriverSettingsBlock& block) {
  DEVHTINFO info;
  std::memcpy(&info, reinterpret_cast<const BYTE*>(&block) + kHalftoneOffset, sizeof info);
  return info;
}

inline void SetHalftoneInfo(DriverSettingsBlock& block, const DEVHTINFO& info) {
  std::memcpy(reinterpret_cast<BYTE*>(&block) + kHalftoneOffset, &info, sizeof info);
}

}  // namespace kestrel
