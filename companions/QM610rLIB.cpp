// The device communication library of the driver package. It queries the mode and the versions of
// the simulated printer of the current machine.
#include <windows.h>

#include <functional>
#include <string>

#include "companions/simulated_device.h"
#include "platform/machine/guard.h"
#include "platform/machine/text.h"

namespace companions {
namespace {

std::string ModeReply(const SimulatedDevice& device) {
  return {'\0', device.density == 305 ? '\1' : '\0', '\0', static_cast<char>(device.mode)};
}

// Pads each text with zeros to its fixed length. An overlong reply fills replySize bytes and has no
// terminator.
std::string VersionReply(const SimulatedDevice& device, DWORD replySize) {
  std::string firmware = platform::ToCp932(device.firmware);
  std::string font = platform::ToCp932(device.font);
  std::string overlong;
  while (overlong.size() < replySize) overlong += firmware + font + '*';
  if (device.reply == DeviceReply::kOverlong) return overlong;
  firmware.resize(16, '\0');
  font.resize(8, '\0');
  return firmware + font;
}

// Copies as much of the device's reply as the caller's buffer holds and sets *size to the number of
// bytes copied. Returns FALSE when the device is offline.
DWORD Query(LPCWSTR printer, BYTE* reply, DWORD replySize, DWORD* size, DWORD* status,
            const std::function<std::string(const SimulatedDevice&)>& buildReply) {
  const SimulatedDevice device = LoadSimulatedDevice(printer);
  *status = device.offline ? 1 : 0;
  if (device.offline) return FALSE;
  if (device.reply == DeviceReply::kSilent) return TRUE;
  std::string bytes = buildReply(device);
  if (device.reply == DeviceReply::kShort) bytes.resize(1);
  const auto count = bytes.copy(reinterpret_cast<char*>(reply), replySize);
  *size = static_cast<DWORD>(count);
  return TRUE;
}

}  // namespace
}  // namespace companions

extern "C" {

// Queries the printer's mode. Byte 1 of the reply is the density code (0: 203 dpi, 1: 305 dpi),
// byte 3 the mode (0 tear-off, 1 continuous, 2 peel). Returns a non-zero value on success.
DWORD WINAPI RtlGetModeComW(LPCWSTR printer, BYTE* reply, DWORD replySize, DWORD* size,
                            DWORD* status) {
  return platform::RunGuarded([&] {
    return companions::Query(printer, reply, replySize, size, status, companions::ModeReply);
  });
}

// Queries the printer's versions. The reply has 16 bytes for the firmware and 8 bytes for the font,
// texts in code page 932 without a terminator when they fill their bytes. Returns a non-zero value
// on success.
DWORD WINAPI RtlGetVersionComW(LPCWSTR printer, BYTE* reply, DWORD replySize, DWORD* size,
                               DWORD* status) {
  return platform::RunGuarded([&] {
    return companions::Query(printer, reply, replySize, size, status,
                             [&](const companions::SimulatedDevice& device) {
                               return companions::VersionReply(device, replySize);
                             });
  });
}
}
