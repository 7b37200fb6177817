#include "companions/simulated_device.h"

#include <cstring>

#include "platform/machine.h"

namespace companions {
namespace {

constexpr DWORD kRegString = 1;  // REG_SZ
constexpr DWORD kRegDword = 4;   // REG_DWORD

std::u16string DeviceKey(std::u16string_view printer) {
  return std::u16string(u"SOFTWARE\\Kestrel\\Devices\\").append(printer);
}

DWORD ReadNumber(const std::u16string& key, std::u16string_view value, DWORD fallback) {
  const auto data = platform::Machine::Current().Registry(key, value);
  DWORD number = fallback;
  if (data && data->type == kRegDword && data->bytes.size() == sizeof number)
    std::memcpy(&number, data->bytes.data(), sizeof number);
  return number;
}

std::u16string ReadText(const std::u16string& key, std::u16string_view value,
                        std::u16string fallback) {
  const auto data = platform::Machine::Current().Registry(key, value);
  if (!data || data->type != kRegString) return fallback;
  std::u16string text(data->bytes.size() / sizeof(WCHAR), u'\0');
  std::memcpy(text.data(), data->bytes.data(), text.size() * sizeof(WCHAR));
  return text.substr(0, text.find(u'\0'));
}

void WriteNumber(const std::u16string& key, std::u16string_view value, DWORD number) {
  platform::DataValue data{kRegDword, std::vector<std::byte>(sizeof number)};
  std::memcpy(data.bytes.data(), &number, sizeof number);
  platform::Machine::Current().SetRegistry(key, value, std::move(data));
}

void WriteText(const std::u16string& key, std::u16string_view value, const std::u16string& text) {
  const std::size_t size = (text.size() + 1) * sizeof(WCHAR);
  platform::DataValue data{kRegString, std::vector<std::byte>(size)};
  std::memcpy(data.bytes.data(), text.c_str(), size);
  platform::Machine::Current().SetRegistry(key, value, std::move(data));
}

}  // namespace

SimulatedDevice LoadSimulatedDevice(std::u16string_view printer) {
  const std::u16string key = DeviceKey(printer);
  SimulatedDevice device;
  device.mode = ReadNumber(key, u"Mode", device.mode);
  device.density = ReadNumber(key, u"Density", device.density);
  device.offline = ReadNumber(key, u"Offline", 0) != 0;
  const DWORD answer = ReadNumber(key, u"Answer", 0);
  if (answer <= static_cast<DWORD>(DeviceAnswer::kOverlong))
    device.answer = static_cast<DeviceAnswer>(answer);
  device.firmware = ReadText(key, u"Firmware", device.firmware);
  device.font = ReadText(key, u"Font", device.font);
  return device;
}

void SaveSimulatedDevice(std::u16string_view printer, const SimulatedDevice& device) {
  const std::u16string key = DeviceKey(printer);
  WriteNumber(key, u"Mode", device.mode);
  WriteNumber(key, u"Density", device.density);
  WriteNumber(key, u"Offline", device.offline ? 1 : 0);
  WriteNumber(key, u"Answer", static_cast<DWORD>(device.answer));
  WriteText(key, u"Firmware", device.firmware);
  WriteText(key, u"Font", device.font);
}

}  // namespace companions
