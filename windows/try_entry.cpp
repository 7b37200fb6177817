// The entry point of kestrel-try.exe.
#include "try/program.h"
#include "windows/security_cookie.h"

extern "C" void WINAPI KestrelTryEntry() {
  InitializeSecurityCookie();
  KestrelTryMain();
}
