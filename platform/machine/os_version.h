// The simulated computer's operating system.
#pragma once

#include <winnt.h>

namespace platform {

struct OsVersion {
  DWORD major = 10;
  DWORD minor = 0;
  DWORD servicePack = 0;
  DWORD platformId = 2;  // VER_PLATFORM_WIN32_NT; 1 is VER_PLATFORM_WIN32_WINDOWS
  BYTE productType = 1;  // VER_NT_WORKSTATION; 2 domain controller, 3 server
  bool verifies = true;  // false: VerifyVersionInfoW always fails

  // Returns true for this version of the NT family and newer ones.
  bool IsAtLeast(DWORD wantedMajor, DWORD wantedMinor) const {
    return platformId == VER_PLATFORM_WIN32_NT &&
           (major != wantedMajor ? major > wantedMajor : minor >= wantedMinor);
  }
};

}  // namespace platform
