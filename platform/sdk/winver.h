// Version resources of files.
#pragma once

#include <winnt.h>

struct VS_FIXEDFILEINFO {
  DWORD dwSignature;
  DWORD dwStrucVersion;
  DWORD dwFileVersionMS;
  DWORD dwFileVersionLS;
  DWORD dwProductVersionMS;
  DWORD dwProductVersionLS;
  DWORD dwFileFlagsMask;
  DWORD dwFileFlags;
  DWORD dwFileOS;
  DWORD dwFileType;
  DWORD dwFileSubtype;
  DWORD dwFileDateMS;
  DWORD dwFileDateLS;
};
static_assert(sizeof(VS_FIXEDFILEINFO) == 52);
constexpr DWORD VS_FFI_SIGNATURE = 0xFEEF04BD;
constexpr DWORD VS_FFI_STRUCVERSION = 0x00010000;

extern "C" {
DWORD WINAPI GetFileVersionInfoSizeW(LPCWSTR fileName, LPDWORD handle);
BOOL WINAPI GetFileVersionInfoW(LPCWSTR fileName, DWORD handle, DWORD size, LPVOID data);
BOOL WINAPI VerQueryValueW(LPCVOID block, LPCWSTR subBlock, LPVOID* value, UINT* size);
}
