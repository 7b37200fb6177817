// Who is asking.
#pragma once

namespace kestrel {

// Whether the calling thread's token is a member of the built-in Administrators group; false when
// that cannot be told.
bool IsAdministrator();

}  // namespace kestrel
