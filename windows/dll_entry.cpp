// The entry point of the DLL.
#include <windows.h>

#include "windows/security_cookie.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID reserved);

extern "C" BOOL WINAPI DllEntry(HINSTANCE instance, DWORD reason, LPVOID reserved) {
  if (reason == DLL_PROCESS_ATTACH) InitializeSecurityCookie();
  return DllMain(instance, reason, reserved);
}
