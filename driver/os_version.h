// The version of the running system as a code that can be compared numerically.
#pragma once

namespace kestrel {

enum OsVersionCode : int {
  kOsUnknown = -1,
  kOsWindows9x = 2,
  kOsNt3 = 101,
  kOsNt4 = 102,
  kOsWindows2000 = 103,
  kOsXp = 104,
  kOsServer2003 = 105,
  kOsVista = 106,
  kOsServer2008 = 107,
  kOsWindows7 = 108,
  kOsWindows8 = 109,
  kOsWindows81 = 110,
  kOsXp64Fallback = 201,
  kOsServer2008R2 = 206,
  kOsServer2012 = 208,
  kOsServer2012R2 = 210,
};

// Returns the OsVersionCode of the running system: from VerifyVersionInfoW, or from GetVersionExW
// when that finds no match; kOsUnknown for any other system.
int GetOsVersionCode();

}  // namespace kestrel
