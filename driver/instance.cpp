#include "driver/instance.h"

namespace kestrel {
namespace {

HINSTANCE moduleInstance = nullptr;

}  // namespace

HINSTANCE ModuleInstance() { return moduleInstance; }
void SetModuleInstance(HINSTANCE instance) { moduleInstance = instance; }

}  // namespace kestrel
