// Constants and structures of the system's base: heaps' flags, access rights, registry types,
// versions, security identifiers, languages.
#pragma once

#include <windef.h>

union LARGE_INTEGER {
  int64_t QuadPart;
};

constexpr DWORD HEAP_ZERO_MEMORY = 0x00000008;

constexpr DWORD DLL_PROCESS_DETACH = 0;
constexpr DWORD DLL_PROCESS_ATTACH = 1;

using ACCESS_MASK = DWORD;
constexpr DWORD GENERIC_READ = 0x80000000;
constexpr DWORD GENERIC_WRITE = 0x40000000;
constexpr DWORD SYNCHRONIZE = 0x00100000;
constexpr DWORD READ_CONTROL = 0x00020000;
constexpr DWORD STANDARD_RIGHTS_READ = READ_CONTROL;
constexpr DWORD STANDARD_RIGHTS_WRITE = READ_CONTROL;
constexpr DWORD STANDARD_RIGHTS_REQUIRED = 0x000F0000;

constexpr DWORD KEY_QUERY_VALUE = 0x0001;
constexpr DWORD KEY_SET_VALUE = 0x0002;
constexpr DWORD KEY_CREATE_SUB_KEY = 0x0004;
constexpr DWORD KEY_ENUMERATE_SUB_KEYS = 0x0008;
constexpr DWORD KEY_NOTIFY = 0x0010;
constexpr DWORD KEY_CREATE_LINK = 0x0020;
constexpr DWORD KEY_READ =
    (STANDARD_RIGHTS_READ | KEY_QUERY_VALUE | KEY_ENUMERATE_SUB_KEYS | KEY_NOTIFY) & ~SYNCHRONIZE;
constexpr DWORD KEY_WRITE =
    (STANDARD_RIGHTS_WRITE | KEY_SET_VALUE | KEY_CREATE_SUB_KEY) & ~SYNCHRONIZE;

constexpr DWORD REG_NONE = 0;
constexpr DWORD REG_SZ = 1;
constexpr DWORD REG_EXPAND_SZ = 2;
constexpr DWORD REG_BINARY = 3;
constexpr DWORD REG_DWORD = 4;
constexpr DWORD REG_MULTI_SZ = 7;
constexpr DWORD REG_QWORD = 11;

constexpr DWORD REG_OPTION_NON_VOLATILE = 0;

constexpr DWORD VER_PLATFORM_WIN32_WINDOWS = 1;
constexpr DWORD VER_PLATFORM_WIN32_NT = 2;

constexpr BYTE VER_NT_WORKSTATION = 1;
constexpr BYTE VER_NT_DOMAIN_CONTROLLER = 2;
constexpr BYTE VER_NT_SERVER = 3;

constexpr BYTE VER_EQUAL = 1;
constexpr BYTE VER_GREATER_EQUAL = 3;

constexpr DWORD VER_MINORVERSION = 0x0001;
constexpr DWORD VER_MAJORVERSION = 0x0002;
constexpr DWORD VER_SERVICEPACKMAJOR = 0x0020;
constexpr DWORD VER_PRODUCT_TYPE = 0x0080;

struct OSVERSIONINFOW {
  DWORD dwOSVersionInfoSize;
  DWORD dwMajorVersion;
  DWORD dwMinorVersion;
  DWORD dwBuildNumber;
  DWORD dwPlatformId;
  WCHAR szCSDVersion[128];
};
using LPOSVERSIONINFOW = OSVERSIONINFOW*;
static_assert(sizeof(OSVERSIONINFOW) == 276);

struct OSVERSIONINFOEXW {
  DWORD dwOSVersionInfoSize;
  DWORD dwMajorVersion;
  DWORD dwMinorVersion;
  DWORD dwBuildNumber;
  DWORD dwPlatformId;
  WCHAR szCSDVersion[128];
  WORD wServicePackMajor;
  WORD wServicePackMinor;
  WORD wSuiteMask;
  BYTE wProductType;
  BYTE wReserved;
};
using LPOSVERSIONINFOEXW = OSVERSIONINFOEXW*;
static_assert(sizeof(OSVERSIONINFOEXW) == 284);

using PSID = PVOID;
struct SID_IDENTIFIER_AUTHORITY {
  BYTE Value[6];
};
using PSID_IDENTIFIER_AUTHORITY = SID_IDENTIFIER_AUTHORITY*;
#define SECURITY_NT_AUTHORITY \
  { 0, 0, 0, 0, 0, 5 }
constexpr DWORD SECURITY_BUILTIN_DOMAIN_RID = 0x00000020;
constexpr DWORD DOMAIN_ALIAS_RID_ADMINS = 0x00000220;
constexpr DWORD DOMAIN_ALIAS_RID_USERS = 0x00000221;

extern "C" ULONGLONG WINAPI VerSetConditionMask(ULONGLONG mask, DWORD typeMask, BYTE condition);
