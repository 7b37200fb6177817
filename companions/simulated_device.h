// The simulated label printer of the device library. The current machine's registry stores the
// state of each printer below SOFTWARE\Kestrel\Devices\<printer>; a printer without a record has
// the defaults.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace companions {

// The kind of reply to a query.
enum class DeviceReply : DWORD {
  kNormal = 0,    // the complete reply
  kSilent = 1,    // the call succeeds without writing a reply
  kShort = 2,     // the first byte only
  kOverlong = 3,  // versions that fill the caller's buffer without a terminator
};

struct SimulatedDevice {
  DWORD mode = 0;        // 0 tear-off, 1 continuous, 2 peel; the reply has other codes unchanged
  DWORD density = 203;   // dots per inch: 203 (code 0) or 305 (code 1)
  bool offline = false;  // every call fails
  DeviceReply reply = DeviceReply::kNormal;
  std::u16string firmware = u"V01.20";  // the reply has up to 16 bytes in code page 932
  std::u16string font = u"F01.03";      // the reply has up to 8 bytes in code page 932
};

// Returns the device of a printer. A value that is missing or has a wrong type or size gets its
// default.
SimulatedDevice LoadSimulatedDevice(std::u16string_view printer);

// Stores the device of a printer.
void SaveSimulatedDevice(std::u16string_view printer, const SimulatedDevice& device);

// Deletes the record of a printer's device.
void RemoveSimulatedDevice(std::u16string_view printer);

}  // namespace companions
