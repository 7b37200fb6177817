// The stack protector of an image that is linked without a C runtime.
#pragma once

// Replaces the security cookie unless the system's loader has done so. The entry point of an image
// calls it before any function that the stack protector instruments, since such a function must not
// return over a changed cookie.
void InitializeSecurityCookie();
