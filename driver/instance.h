// The module's instance handle. DllMain sets it once, at DLL_PROCESS_ATTACH.
#pragma once

#include <windows.h>

namespace kestrel {

HINSTANCE ModuleInstance();
void SetModuleInstance(HINSTANCE instance);

}  // namespace kestrel
