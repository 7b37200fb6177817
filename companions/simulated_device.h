// The label printer that stands behind the device library: what it is and how it answers. Its state
// is kept with the machine, one record a printer name; a printer without a record is a fresh
// device.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace companions {

// How the device answers a query.
enum class DeviceAnswer : DWORD {
  kNormal = 0,    // full replies
  kSilent = 1,    // the call succeeds, the reply is left as it was
  kShort = 2,     // the reply breaks off after its first byte
  kOverlong = 3,  // texts longer than their places, without any terminator
};

struct SimulatedDevice {
  DWORD mode = 0;        // 0 tear-off, 1 continuous, 2 peel; other codes are answered as they are
  DWORD density = 203;   // dots per inch: 203 (code 0) or 305 (code 1)
  bool offline = false;  // every call fails
  DeviceAnswer answer = DeviceAnswer::kNormal;
  std::u16string firmware = u"V01.20";  // up to 16 bytes in code page 932 are answered
  std::u16string font = u"F01.03";      // up to 8 bytes in code page 932 are answered
};

// The device of a printer as it was last saved; values that are missing, of a wrong type or of a
// wrong size have their defaults.
SimulatedDevice LoadSimulatedDevice(std::u16string_view printer);

// Keeps the device of a printer in the current machine's registry, below
// SOFTWARE\Kestrel\Devices\<printer>.
void SaveSimulatedDevice(std::u16string_view printer, const SimulatedDevice& device);

// Forgets the device of a printer.
void RemoveSimulatedDevice(std::u16string_view printer);

}  // namespace companions
