// Membership of the caller in the Administrators group.
#pragma once

namespace kestrel {

// Returns true when the calling thread's token is a member of the built-in Administrators group;
// false when it is not or when the check fails.
bool IsAdministrator();

}  // namespace kestrel
