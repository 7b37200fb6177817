#include <windows.h>

// The manifest of the module selects the newest common controls; the stand-in has no others, so
// that activation changes nothing.
HANDLE WINAPI CreateActCtxW(PCACTCTXW) { return reinterpret_cast<HANDLE>(1); }
BOOL WINAPI ActivateActCtx(HANDLE, ULONG_PTR* cookie) {
  *cookie = 1;
  return TRUE;
}
BOOL WINAPI DeactivateActCtx(DWORD, ULONG_PTR) { return TRUE; }
void WINAPI ReleaseActCtx(HANDLE) {}
