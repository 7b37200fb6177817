// Control Flow Guard as the system provides it: an indirect call of an instrumented image passes
// its target to a function here first, which ends the process when no image allows it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace platform {

// Makes the listed addresses the only ones within an image that an indirect call may reach; those
// outside all such images stay allowed. Targets count from the image's base, in ascending order.
void AddCallTargets(const std::byte* image, size_t size, std::vector<uint32_t> targets);
void RemoveCallTargets(const std::byte* image);

// The functions that an image's pointers are set to (GuardCFCheckFunctionPointer and
// GuardCFDispatchFunctionPointer); null on a processor that runs no image. The dispatch function
// is x64's own.
uintptr_t CheckFunctionOfGuard();
uintptr_t DispatchFunctionOfGuard();

}  // namespace platform
