// Queries to the printer through the device communication library of the driver package
// (QM610rLIB.DLL). Each query loads the library and frees it before it returns.
#pragma once

#include <windows.h>

#include <cstdint>

namespace kestrel {

enum class DeviceQuery { kSucceeded, kNoLibrary, kNoEntryPoint, kFailed };

constexpr int kModeReplySize = 30;
constexpr int kVersionReplySize = 50;
constexpr int kFirmwareLength =
    16;  // characters of code page 932, from the start of the version reply
constexpr int kFontVersionLength = 8;  // behind them

// The printer's state; a code missing in the reply is 0xFF.
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
