// Control Flow Guard as the system provides it: an indirect call in an instrumented image first
// passes its target to a function here, which ends the process when an image does not allow the
// target.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace platform {

// Allows indirect calls to reach only the listed addresses of an image. Addresses outside all such
// images stay allowed. Targets are offsets from the base of the image, in ascending order.
void AddCallTargets(const std::byte* image, size_t size, std::vector<uint32_t> targets);
void RemoveCallTargets(const std::byte* image);

// Return the functions for an image's GuardCFCheckFunctionPointer and
// GuardCFDispatchFunctionPointer; 0 on a processor that cannot run images, and for the dispatch
// function on every processor but x64.
uintptr_t CheckFunctionOfGuard();
uintptr_t DispatchFunctionOfGuard();

}  // namespace platform
