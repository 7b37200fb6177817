// The device communication library of the driver package: asks the printer for its mode and its
// versions. The printer is the simulated one of the current machine.
#include <windows.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

#include "companions/simulated_device.h"
#include "platform/system/guard.h"

namespace companions {
namespace {

constexpr UINT kCodePage = 932;

// Places of the replies.
constexpr std::size_t kDensityAt = 1;
constexpr std::size_t kModeAt = 3;
constexpr std::size_t kModeReplySize = 4;
constexpr std::size_t kFirmwareSize = 16;
constexpr std::size_t kFontAt = kFirmwareSize;
constexpr std::size_t kFontSize = 8;

// Values of the status word.
constexpr DWORD kStatusReady = 0;
constexpr DWORD kStatusOffline = 1;

std::string Bytes(const std::u16string& text) {
  std::string bytes(text.size() * 2, '\0');
  const int size =
      text.empty()
          ? 0
          : WideCharToMultiByte(kCodePage, 0, text.c_str(), static_cast<int>(text.size()),
                                bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr);
  bytes.resize(static_cast<std::size_t>(size));
  return bytes;
}

// Copies as much of the answer as the caller's buffer takes and tells its size.
void Reply(std::string_view answer, BYTE* reply, DWORD replySize, DWORD* size) {
  const std::size_t count = std::min<std::size_t>(answer.size(), replySize);
  std::memcpy(reply, answer.data(), count);
  if (size) *size = static_cast<DWORD>(count);
}

std::string ModeAnswer(const SimulatedDevice& device) {
  std::string answer(kModeReplySize, '\0');
  answer[kDensityAt] = device.density == 305 ? 1 : 0;
  answer[kModeAt] = static_cast<char>(device.mode);
  return answer;
}

// Texts fill their places with zeros behind; the overlong device writes on without any.
std::string VersionAnswer(const SimulatedDevice& device, DWORD replySize) {
  std::string firmware = Bytes(device.firmware), font = Bytes(device.font);
  if (device.answer == DeviceAnswer::kOverlong) {
    std::string answer;
    while (answer.size() < replySize) answer += firmware + font + '*';
    return answer.substr(0, replySize);
  }
  firmware.resize(kFirmwareSize, '\0');
  font.resize(kFontSize, '\0');
  return firmware + font;
}

// Asks the device; false when it is not there.
template <typename Answer>
DWORD Query(LPCWSTR printer, BYTE* reply, DWORD replySize, DWORD* size, DWORD* status,
            Answer answerOf) {
  if (!printer || !reply) return FALSE;
  const SimulatedDevice device = LoadSimulatedDevice(printer);
  if (status) *status = device.offline ? kStatusOffline : kStatusReady;
  if (device.offline) return FALSE;
  if (device.answer == DeviceAnswer::kSilent) return TRUE;
  std::string answer = answerOf(device);
  if (device.answer == DeviceAnswer::kShort) answer.resize(1);
  Reply(answer, reply, replySize, size);
  return TRUE;
}

}  // namespace
}  // namespace companions

extern "C" {

// Mode of the printer: byte 1 of the reply is the density code (0: 203 dpi, 1: 305 dpi), byte 3 the
// mode (0 tear-off, 1 continuous, 2 peel). Non-zero on success.
DWORD WINAPI RtlGetModeComW(LPCWSTR printer, BYTE* reply, DWORD replySize, DWORD* size,
                            DWORD* status) {
  return platform::Keeping([&] {
    return companions::Query(printer, reply, replySize, size, status, companions::ModeAnswer);
  });
}

// Versions of the printer as texts in code page 932: 16 bytes firmware, 8 bytes font. Non-zero on
// success.
DWORD WINAPI RtlGetVersionComW(LPCWSTR printer, BYTE* reply, DWORD replySize, DWORD* size,
                               DWORD* status) {
  return platform::Keeping([&] {
    return companions::Query(printer, reply, replySize, size, status,
                             [replySize](const companions::SimulatedDevice& device) {
                               return companions::VersionAnswer(device, replySize);
                             });
  });
}
}
