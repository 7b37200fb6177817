#include "companions/simulated_device.h"

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

#include "platform/machine/machine.h"

namespace companions {
namespace {

// Returns the printer's key. Replaces backslashes, so that no printer's key is a subkey of
// another's.
std::u16string DeviceKey(std::u16string_view printer) {
  std::u16string part(printer);
  std::replace(part.begin(), part.end(), u'\\', u',');
  return u"SOFTWARE\\Kestrel\\Devices\\" + part;
}

// Returns the bytes of a registry value; empty when it is missing or has another type.
std::vector<std::byte> Read(const std::u16string& key, std::u16string_view name, DWORD type) {
  const auto data = platform::Machine::Current().Registry(key, name);
  return data && data->type == type ? data->bytes : std::vector<std::byte>();
}

void ReadNumber(const std::u16string& key, std::u16string_view name, DWORD& number) {
  const auto bytes = Read(key, name, REG_DWORD);
  if (bytes.size() == sizeof number) std::memcpy(&number, bytes.data(), sizeof number);
}

void ReadText(const std::u16string& key, std::u16string_view name, std::u16string& text) {
  const auto bytes = Read(key, name, REG_SZ);
  if (bytes.empty()) return;
  text.assign(bytes.size() / sizeof(WCHAR), u'\0');
  std::memcpy(text.data(), bytes.data(), text.size() * sizeof(WCHAR));
  text.resize(std::min(text.find(u'\0'), text.size()));
}

void Write(const std::u16string& key, std::u16string_view name, DWORD type, const void* from,
           std::size_t size) {
  const auto* bytes = static_cast<const std::byte*>(from);
  platform::Machine::Current().SetRegistry(key, name, {type, {bytes, bytes + size}});
}

}  // namespace

SimulatedDevice LoadSimulatedDevice(std::u16string_view printer) {
  const std::u16string key = DeviceKey(printer);
  SimulatedDevice device;
  DWORD offline = 0, reply = 0;
  ReadNumber(key, u"Mode", device.mode);
  ReadNumber(key, u"Density", device.density);
  ReadNumber(key, u"Offline", offline);
  ReadNumber(key, u"Answer", reply);
  ReadText(key, u"Firmware", device.firmware);
  ReadText(key, u"Font", device.font);
  device.offline = offline != 0;
  if (reply <= static_cast<DWORD>(DeviceReply::kOverlong))
    device.reply = static_cast<DeviceReply>(reply);
  return device;
}

void RemoveSimulatedDevice(std::u16string_view printer) {
  platform::Machine::Current().RemoveRegistryKey(DeviceKey(printer));
}

void SaveSimulatedDevice(std::u16string_view printer, const SimulatedDevice& device) {
  const std::u16string key = DeviceKey(printer);
  const std::pair<const char16_t*, DWORD> numbers[] = {
      {u"Mode", device.mode},
      {u"Density", device.density},
      {u"Offline", device.offline},
      {u"Answer", static_cast<DWORD>(device.reply)}};
  for (const auto& [name, number] : numbers) Write(key, name, REG_DWORD, &number, sizeof number);
  for (const auto& [name, text] :
       {std::pair(u"Firmware", &device.firmware), std::pair(u"Font", &device.font)})
    Write(key, name, REG_SZ, text->c_str(), (text->size() + 1) * sizeof(WCHAR));
}

}  // namespace companions
