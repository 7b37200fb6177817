// Helpers that set the last error.
#pragma once

#include <winbase.h>

namespace platform {

// Sets the last error and returns FALSE.
inline BOOL Fail(DWORD error) {
  SetLastError(error);
  return FALSE;
}
// Returns TRUE for ERROR_SUCCESS; otherwise sets the last error and returns FALSE.
inline BOOL Succeeds(DWORD error) { return error == ERROR_SUCCESS ? TRUE : Fail(error); }

}  // namespace platform
