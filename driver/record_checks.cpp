#include "driver/record_checks.h"

#include <algorithm>

#include "driver/os_version.h"
#include "driver/text.h"

namespace kestrel {

namespace {

// A record without a name matches every printer. dmDeviceName holds only 31 units, so a long
// printer name is truncated there, possibly within its server part.
bool SameDevice(const WCHAR* printerName, const WCHAR* deviceName) {
  const TextSpan printer = PrinterNamePart(printerName, kStripServer);
  const TextSpan device = PrinterNamePart(deviceName, kStripServer);
  if (std::equal(printer.start, printer.start + std::min(printer.length, device.length),
                 device.start))
    return true;
  const TextSpan whole = PrinterNamePart(printerName, kStripPort);
  constexpr size_t kFull = CCHDEVICENAME - 1;
  return whole.length >= kFull && std::equal(whole.start, whole.start + kFull, deviceName);
}

}  // namespace

unsigned CheckSettingsRecord(const RecordView& record, const WCHAR* name) {
  unsigned mismatch = 0;
  WORD specVersion = 0;
  WORD driverVersion = 0;
  record.Read(offsetof(DEVMODEW, dmSpecVersion), &specVersion);
  record.Read(offsetof(DEVMODEW, dmDriverVersion), &driverVersion);
  if (specVersion != kSpecVersion) mismatch |= kOtherSpecVersion;
  if (driverVersion != kDriverVersion) mismatch |= kOtherDriverVersion;
  if (record.publicSize() != kPublicSize) mismatch |= kOtherSize;
  if (record.privateSize() != kPrivateSize) mismatch |= kOtherExtra;

  // With other sizes the caller could choose the offset from which the signature is read.
  constexpr size_t kSignature = kPrivateOffset + offsetof(PrivateDevMode, Signature);
  uint32_t signature = 0;
  if ((mismatch & (kOtherSize | kOtherExtra)) == 0) record.Read(kSignature, &signature);
  if (signature != SETTINGS_SIGNATURE) mismatch |= kNoSignature;

  WCHAR deviceName[CCHDEVICENAME + 1];
  record.DeviceName(deviceName);
  if (!SameDevice(name, deviceName)) mismatch |= kOtherDevice;
  return mismatch;
}

unsigned MismatchOnThisSystem(const RecordView& record, const WCHAR* name) {
  const unsigned mismatch = CheckSettingsRecord(record, name);
  if ((mismatch & kOtherDevice) == 0 || GetOsVersionCode() < kOsVista) return mismatch;
  return mismatch & ~unsigned{kOtherDevice};
}

bool IsOwnSettingsRecord(const SettingsRecord& record, const WCHAR* name) {
  const RecordView view(&record);
  // A record that states another size is not completely contained in a SettingsRecord.
  return view.publicSize() == kPublicSize && view.privateSize() == kPrivateSize &&
         MismatchOnThisSystem(view, name) == 0;
}

}  // namespace kestrel
