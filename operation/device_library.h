// Questions to the printer, answered by the device communication library of the driver package. The
// library is loaded for each question and freed before the answer is given.
#pragma once

#include <windows.h>

#include <cstdint>

namespace kestrel {

enum class DeviceQuery { kAnswered, kNoLibrary, kNoEntryPoint, kFailed };

constexpr int kModeReplySize = 30;
constexpr int kVersionReplySize = 50;
constexpr int kFirmwareLength =
    16;  // characters of code page 932, from the start of the version reply
constexpr int kFontVersionLength = 8;  // behind them

// What the printer told of itself; codes that it left out are 0xFF.
struct DeviceMode {
  uint8_t densityCode;  // 0: 203 dpi
  uint8_t modeCode;     // 0 tear-off, 1 continuous, 2 peel
};

struct DeviceVersions {
  WCHAR firmware[kFirmwareLength + 1];
  WCHAR font[kFontVersionLength + 1];
};

DeviceQuery QueryDeviceMode(HANDLE printer, const WCHAR* printerName, DeviceMode& mode);
DeviceQuery QueryDeviceVersions(HANDLE printer, const WCHAR* printerName, DeviceVersions& versions);

}  // namespace kestrel
