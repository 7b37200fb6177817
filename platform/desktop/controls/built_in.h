// What the system's own modules need to offer their functions to GetProcAddress.
#pragma once

#include <windows.h>

#include "platform/system/modules.h"

namespace platform {

template <typename Function>
FARPROC EntryPoint(Function* function) {
  return reinterpret_cast<FARPROC>(reinterpret_cast<void (*)()>(function));
}

}  // namespace platform
