// Which system runs: an OsVersionCode, compared numerically.
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

// The code of the running system (VerifyVersionInfoW, then GetVersionExW).
int GetOsVersionCode();

}  // namespace kestrel
