#include "operation/device_settings.h"

#include <algorithm>

#include "driver/handles.h"
#include "driver/text.h"

namespace kestrel {
namespace {

constexpr WCHAR kSyncPrint[] = TEXT("SyncPrint");
constexpr int kKeyLength = 512;

bool IsConnection(const WCHAR* printerName) {
  return printerName != nullptr && printerName[0] == '\\' && printerName[1] == '\\';
}

// Writes the name of the PrinterDriverData key of a printer. A backslash separates keys, so the
// name of a printer connection, \\server\printer, is written with commas, as the system itself does
// (",,server,printer").
void PrinterKey(WCHAR (&key)[kKeyLength], const WCHAR* printerName) {
  WCHAR* name = key + CopyText(key, TEXT("SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\"));
  AppendText(key, printerName);
  std::replace(name, name + TextLength(name), TEXT('\\'), TEXT(','));
  AppendText(key, TEXT("\\PrinterDriverData"));
}

}  // namespace

DWORD DeviceSettings::SyncPrint() const {
  WCHAR name[kKeyLength];
  PrinterKey(name, printerName_);
  HKEY opened = nullptr;
  if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, name, 0, KEY_READ, &opened) != ERROR_SUCCESS) return 0;
  const RegistryKey key(opened);
  DWORD value = 0;
  DWORD type = 0;
  DWORD size = sizeof(value);
  const LONG result = RegQueryValueExW(key.get(), kSyncPrint, nullptr, &type,
                                       reinterpret_cast<LPBYTE>(&value), &size);
  return result == ERROR_SUCCESS && type == REG_DWORD && size == sizeof(value) ? value : 0;
}

// The spooler treats each key below "Printers" as a local printer, so the key of a connection is
// never created.
void DeviceSettings::SetSyncPrint(bool on) const {
  constexpr REGSAM kAccess = KEY_READ | KEY_WRITE;
  WCHAR name[kKeyLength];
  PrinterKey(name, printerName_);
  HKEY opened = nullptr;
  const LONG result =
      IsConnection(printerName_)
          ? RegOpenKeyExW(HKEY_LOCAL_MACHINE, name, 0, kAccess, &opened)
          : RegCreateKeyExW(HKEY_LOCAL_MACHINE, name, 0, nullptr, REG_OPTION_NON_VOLATILE, kAccess,
                            nullptr, &opened, nullptr);
  if (result != ERROR_SUCCESS) return;
  const RegistryKey key(opened);
  const DWORD value = on ? 1 : 0;
  RegSetValueExW(key.get(), kSyncPrint, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value),
                 sizeof(value));
}

}  // namespace kestrel
