// The registry.
#pragma once

#include <winnt.h>

using LSTATUS = LONG;
using REGSAM = ACCESS_MASK;
using PHKEY = HKEY*;

using LPSECURITY_ATTRIBUTES = struct SECURITY_ATTRIBUTES*;

#define HKEY_CURRENT_USER \
  reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(static_cast<LONG>(0x80000001)))
#define HKEY_LOCAL_MACHINE \
  reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(static_cast<LONG>(0x80000002)))

extern "C" {
LSTATUS WINAPI RegOpenKeyExW(HKEY key, LPCWSTR subKey, DWORD options, REGSAM access, PHKEY result);
LSTATUS WINAPI RegCreateKeyExW(HKEY key, LPCWSTR subKey, DWORD reserved, LPWSTR className,
                               DWORD options, REGSAM access, const LPSECURITY_ATTRIBUTES security,
                               PHKEY result, LPDWORD disposition);
LSTATUS WINAPI RegQueryValueExW(HKEY key, LPCWSTR value, LPDWORD reserved, LPDWORD type,
                                LPBYTE data, LPDWORD size);
LSTATUS WINAPI RegSetValueExW(HKEY key, LPCWSTR value, DWORD reserved, DWORD type, const BYTE* data,
                              DWORD size);
LSTATUS WINAPI RegDeleteValueW(HKEY key, LPCWSTR value);
LSTATUS WINAPI RegCloseKey(HKEY key);
}
