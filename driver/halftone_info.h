// The halftone description of a block lies at an odd place for its alignment: it is copied out and
// back, never referred to.
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
