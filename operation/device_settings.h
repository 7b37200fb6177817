// DeviceSettings: values of a printer in the registry, in the PrinterDriverData key of the printer.
#pragma once

#include <windows.h>

namespace kestrel {

class DeviceSettings {
 public:
  // printerName must outlive the object.
  explicit DeviceSettings(const WCHAR* printerName) : printerName_(printerName) {}

  // Returns the REG_DWORD "SyncPrint": 1 when the user confirms each page before the next one is
  // issued. Returns 0 when the value is missing, unreadable or of another type.
  DWORD SyncPrint() const;
  // Stores 1 or 0 and creates the key when needed, except for a connection to another computer's
  // printer. Failures are not reported.
  void SetSyncPrint(bool on) const;

 private:
  const WCHAR* printerName_;
};

}  // namespace kestrel
