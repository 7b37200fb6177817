// Heaps, modules, resources, the process, directories, profile files, versions, security and
// activation contexts.
#pragma once

#include <winnt.h>

#include <winerror.h>

extern "C" {

DWORD WINAPI GetLastError();
void WINAPI SetLastError(DWORD error);

// ---- memory ----
HANDLE WINAPI GetProcessHeap();
HANDLE WINAPI HeapCreate(DWORD options, SIZE_T initialSize, SIZE_T maximumSize);
BOOL WINAPI HeapDestroy(HANDLE heap);
LPVOID WINAPI HeapAlloc(HANDLE heap, DWORD flags, SIZE_T bytes);
BOOL WINAPI HeapFree(HANDLE heap, DWORD flags, LPVOID block);

// ---- modules and their resources ----
HMODULE WINAPI LoadLibraryW(LPCWSTR fileName);
constexpr DWORD LOAD_WITH_ALTERED_SEARCH_PATH = 0x00000008;
HMODULE WINAPI LoadLibraryExW(LPCWSTR fileName, HANDLE reserved, DWORD flags);
BOOL WINAPI FreeLibrary(HMODULE module);
FARPROC WINAPI GetProcAddress(HMODULE module, LPCSTR name);
DWORD WINAPI GetModuleFileNameW(HMODULE module, LPWSTR fileName, DWORD size);

// ---- process and time ----
HANDLE WINAPI GetCurrentProcess();
DWORD WINAPI GetCurrentProcessId();
DWORD WINAPI GetCurrentThreadId();
BOOL WINAPI TerminateProcess(HANDLE process, UINT exitCode);
constexpr DWORD PF_FASTFAIL_AVAILABLE = 23;
BOOL WINAPI IsProcessorFeaturePresent(DWORD feature);
void WINAPI GetSystemTimeAsFileTime(LPFILETIME time);
DWORD WINAPI GetTickCount();
BOOL WINAPI QueryPerformanceCounter(LARGE_INTEGER* count);

// ---- console programs ----
constexpr DWORD STD_OUTPUT_HANDLE = static_cast<DWORD>(-11);
constexpr DWORD STD_ERROR_HANDLE = static_cast<DWORD>(-12);
LPWSTR WINAPI GetCommandLineW();
HANDLE WINAPI GetStdHandle(DWORD which);
BOOL WINAPI WriteFile(HANDLE file, LPCVOID bytes, DWORD size, LPDWORD written,
                      struct OVERLAPPED* overlapped);
[[noreturn]] void WINAPI ExitProcess(UINT exitCode);

// ---- directories ----
UINT WINAPI GetSystemDirectoryW(LPWSTR directory, UINT size);
UINT WINAPI GetWindowsDirectoryW(LPWSTR directory, UINT size);
DWORD WINAPI GetCurrentDirectoryW(DWORD size, LPWSTR directory);
BOOL WINAPI SetCurrentDirectoryW(LPCWSTR directory);

// ---- profile files ----
DWORD WINAPI GetPrivateProfileStringW(LPCWSTR section, LPCWSTR key, LPCWSTR fallback,
                                      LPWSTR returned, DWORD size, LPCWSTR fileName);
DWORD WINAPI GetPrivateProfileStringA(LPCSTR section, LPCSTR key, LPCSTR fallback, LPSTR returned,
                                      DWORD size, LPCSTR fileName);
BOOL WINAPI WritePrivateProfileStringA(LPCSTR section, LPCSTR key, LPCSTR value, LPCSTR fileName);

// ---- versions and security ----
BOOL WINAPI GetVersionExW(LPOSVERSIONINFOW version);
BOOL WINAPI VerifyVersionInfoW(LPOSVERSIONINFOEXW version, DWORD typeMask, DWORDLONG conditions);
BOOL WINAPI AllocateAndInitializeSid(PSID_IDENTIFIER_AUTHORITY authority, BYTE subAuthorityCount,
                                     DWORD subAuthority0, DWORD subAuthority1, DWORD subAuthority2,
                                     DWORD subAuthority3, DWORD subAuthority4, DWORD subAuthority5,
                                     DWORD subAuthority6, DWORD subAuthority7, PSID* sid);
BOOL WINAPI CheckTokenMembership(HANDLE token, PSID sid, PBOOL isMember);
PVOID WINAPI FreeSid(PSID sid);

// ---- texts and numbers ----
int WINAPI lstrcmpiW(LPCWSTR a, LPCWSTR b);

}  // extern "C"

#define INVALID_HANDLE_VALUE reinterpret_cast<HANDLE>(static_cast<LONG_PTR>(-1))

// ---- activation contexts ----
struct ACTCTXW {
  ULONG cbSize;
  DWORD dwFlags;
  LPCWSTR lpSource;
  WORD wProcessorArchitecture;
  LANGID wLangId;
  LPCWSTR lpAssemblyDirectory;
  LPCWSTR lpResourceName;
  LPCWSTR lpApplicationName;
  HMODULE hModule;
};
using PCACTCTXW = const ACTCTXW*;
static_assert(HasDocumentedSize<ACTCTXW>(32, 56));
constexpr DWORD ACTCTX_FLAG_RESOURCE_NAME_VALID = 0x00000008;
constexpr DWORD ACTCTX_FLAG_HMODULE_VALID = 0x00000080;
#define ISOLATIONAWARE_MANIFEST_RESOURCE_ID MAKEINTRESOURCEW(2)

extern "C" {
HANDLE WINAPI CreateActCtxW(PCACTCTXW context);
BOOL WINAPI ActivateActCtx(HANDLE context, ULONG_PTR* cookie);
BOOL WINAPI DeactivateActCtx(DWORD flags, ULONG_PTR cookie);
void WINAPI ReleaseActCtx(HANDLE context);
}
