// How functions of the platform tell that they have failed.
#pragma once

#include <windows.h>

namespace platform {

// Sets the last error; answers what such functions answer then.
inline BOOL Fail(DWORD error) {
  SetLastError(error);
  return FALSE;
}
inline BOOL Succeeds(DWORD error) { return error == ERROR_SUCCESS ? TRUE : Fail(error); }

}  // namespace platform
