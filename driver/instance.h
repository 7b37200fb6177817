// The module's instance handle, written once at process attach.
#pragma once

#include <windows.h>

namespace kestrel {

HINSTANCE ModuleInstance();
void SetModuleInstance(HINSTANCE instance);

}  // namespace kestrel
