#include <windows.h>

// The module's manifest names the newest common controls; the stand-in has no others.
HANDLE WINAPI CreateActCtxW(PCACTCTXW) { return reinterpret_cast<HANDLE>(1); }
BOOL WINAPI ActivateActCtx(HANDLE, ULONG_PTR* cookie) {
  *cookie = 1;
  return TRUE;
}
BOOL WINAPI DeactivateActCtx(DWORD, ULONG_PTR) { return TRUE; }
void WINAPI ReleaseActCtx(HANDLE) {}
