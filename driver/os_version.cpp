#include "driver/os_version.h"

#include <windows.h>

namespace kestrel {

namespace {

bool IsWorkstation() {
  OSVERSIONINFOEXW wanted{};
  wanted.dwOSVersionInfoSize = sizeof wanted;
  wanted.wProductType = VER_NT_WORKSTATION;
  return VerifyVersionInfoW(&wanted, VER_PRODUCT_TYPE,
                            VerSetConditionMask(0, VER_PRODUCT_TYPE, VER_EQUAL)) != FALSE;
}

bool IsVersionAtLeast(DWORD major, DWORD minor) {
  constexpr DWORD kTypes = VER_MAJORVERSION | VER_MINORVERSION | VER_SERVICEPACKMAJOR;
  OSVERSIONINFOEXW wanted{};
  wanted.dwOSVersionInfoSize = sizeof wanted;
  wanted.dwMajorVersion = major;
  wanted.dwMinorVersion = minor;
  ULONGLONG conditions = VerSetConditionMask(0, VER_MAJORVERSION, VER_GREATER_EQUAL);
  conditions = VerSetConditionMask(conditions, VER_MINORVERSION, VER_GREATER_EQUAL);
  conditions = VerSetConditionMask(conditions, VER_SERVICEPACKMAJOR, VER_GREATER_EQUAL);
  return VerifyVersionInfoW(&wanted, kTypes, conditions) != FALSE;
}

// Systems before Windows NT 4.0 SP6 know only the OSVERSIONINFOW structure, which has no product
// type.
bool ReadVersion(OSVERSIONINFOEXW& version) {
  version = {};
  version.dwOSVersionInfoSize = sizeof(OSVERSIONINFOEXW);
  auto* plain = reinterpret_cast<OSVERSIONINFOW*>(&version);
  if (GetVersionExW(plain)) return true;
  version = {};
  version.dwOSVersionInfoSize = sizeof(OSVERSIONINFOW);
  return GetVersionExW(plain) != FALSE;
}

int CodeOfVersion(const OSVERSIONINFOEXW& version) {
  const bool workstation = version.wProductType == VER_NT_WORKSTATION;
  const bool server =
      version.wProductType == VER_NT_SERVER || version.wProductType == VER_NT_DOMAIN_CONTROLLER;
  switch (version.dwMajorVersion) {
    case 3:
      return kOsNt3;
    case 4:
      if (version.dwPlatformId == VER_PLATFORM_WIN32_NT) return kOsNt4;
      if (version.dwPlatformId == VER_PLATFORM_WIN32_WINDOWS) return kOsWindows9x;
      return kOsUnknown;
    case 5:
      if (version.dwMinorVersion == 0) return kOsWindows2000;
      if (version.dwMinorVersion == 1) return kOsXp;
      if (version.dwMinorVersion == 2 && workstation) return kOsXp64Fallback;
      if (version.dwMinorVersion == 2 && server) return kOsServer2003;
      return kOsUnknown;
    case 6:
      if (version.dwMinorVersion == 0) return workstation ? kOsVista : kOsServer2008;
      if (version.dwMinorVersion == 1 && workstation) return kOsWindows7;
      if (version.dwMinorVersion == 2 && workstation) return kOsWindows8;
      return kOsUnknown;
    default:
      return kOsUnknown;
  }
}

}  // namespace

int GetOsVersionCode() {
  struct Row {
    DWORD major, minor;
    OsVersionCode workstation, server;
  };
  static constexpr Row kRows[] = {
      {6, 3, kOsWindows81, kOsServer2012R2}, {6, 2, kOsWindows8, kOsServer2012},
      {6, 1, kOsWindows7, kOsServer2008R2},  {6, 0, kOsVista, kOsServer2008},
      {5, 1, kOsXp, kOsServer2003},
  };
  const bool workstation = IsWorkstation();
  for (const Row& row : kRows)
    if (IsVersionAtLeast(row.major, row.minor)) return workstation ? row.workstation : row.server;

  OSVERSIONINFOEXW version;
  return ReadVersion(version) ? CodeOfVersion(version) : kOsUnknown;
}

}  // namespace kestrel
