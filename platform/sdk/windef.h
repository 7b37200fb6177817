// Base types of the Windows API at their Windows widths: LONG and DWORD are 32 bits, LPARAM and its
// like as wide as a pointer.
#pragma once

#include <cstddef>
#include <cstdint>

#ifdef _WIN32
using WCHAR = wchar_t;
#else
using WCHAR = char16_t;
#endif
using BOOL = int32_t;
using BYTE = uint8_t;
using WORD = uint16_t;
using SHORT = int16_t;
using DWORD = uint32_t;
using ULONG = uint32_t;
using LONG = int32_t;
using INT = int32_t;
using UINT = uint32_t;
using DWORDLONG = uint64_t;
using ULONGLONG = uint64_t;
using INT_PTR = intptr_t;
using UINT_PTR = uintptr_t;
using LONG_PTR = intptr_t;
using ULONG_PTR = uintptr_t;
using DWORD_PTR = uintptr_t;
using SIZE_T = size_t;
using WPARAM = UINT_PTR;
using LPARAM = LONG_PTR;
using LRESULT = LONG_PTR;
using COLORREF = DWORD;
using LANGID = WORD;

using LPVOID = void*;
using PVOID = void*;
using LPCVOID = const void*;
using LPWSTR = WCHAR*;
using LPCWSTR = const WCHAR*;
using LPSTR = char*;
using LPCSTR = const char*;
using LPBYTE = BYTE*;
using LPDWORD = DWORD*;
using PLONG = LONG*;
using LPBOOL = BOOL*;
using PBOOL = BOOL*;

using HANDLE = void*;
#define DECLARE_HANDLE(name) \
  struct name##__ {          \
    int unused;              \
  };                         \
  using name = name##__*
DECLARE_HANDLE(HINSTANCE);
using HMODULE = HINSTANCE;
DECLARE_HANDLE(HWND);
DECLARE_HANDLE(HDC);
DECLARE_HANDLE(HKEY);
DECLARE_HANDLE(HICON);
using HCURSOR = HICON;
using HGDIOBJ = void*;
DECLARE_HANDLE(HBITMAP);
DECLARE_HANDLE(HBRUSH);
DECLARE_HANDLE(HPEN);
DECLARE_HANDLE(HFONT);

// The calling convention of API functions: __stdcall on Windows (x64 has only one convention). The
// stand-in uses the convention of the image that it loads: that of x64, or on x86 __stdcall. An x86
// image aligns the stack to 4 bytes only, so that each function it may call aligns the stack
// itself. Other processors run native modules only.
#if defined(_WIN32)
#define WINAPI __stdcall
#define WINAPIV __cdecl
#elif defined(__x86_64__)
#define WINAPI __attribute__((ms_abi))
#define WINAPIV WINAPI
#elif defined(__i386__)
#define WINAPI __attribute__((stdcall, force_align_arg_pointer))
#define WINAPIV __attribute__((cdecl, force_align_arg_pointer))
#else
#define WINAPI
#define WINAPIV
#endif
#define APIENTRY WINAPI
#define CALLBACK WINAPI

#ifdef _WIN32
#define TEXT(text) L##text
#else
#define TEXT(text) u##text
#endif

constexpr BOOL FALSE = 0;
constexpr BOOL TRUE = 1;
constexpr int MAX_PATH = 260;

using FARPROC = INT_PTR(WINAPI*)();
using DLGPROC = INT_PTR(CALLBACK*)(HWND, UINT, WPARAM, LPARAM);

// Returns true when a structure with pointers has its documented size in this build: x86 where a
// pointer has four bytes, x64 and ARM64 where it has eight.
template <typename T>
constexpr bool HasDocumentedSize(size_t x86, size_t x64) {
  return sizeof(T) == (sizeof(void*) == 4 ? x86 : x64);
}

struct FILETIME {  // units of 100 ns since 1601
  DWORD dwLowDateTime;
  DWORD dwHighDateTime;
};
using LPFILETIME = FILETIME*;

struct POINT {
  LONG x;
  LONG y;
};
using LPPOINT = POINT*;
struct SIZE {
  LONG cx;
  LONG cy;
};
using LPSIZE = SIZE*;
struct RECT {
  LONG left;
  LONG top;
  LONG right;
  LONG bottom;
};
using LPRECT = RECT*;

constexpr WORD LOWORD(DWORD_PTR value) { return static_cast<WORD>(value & 0xFFFF); }
constexpr WORD HIWORD(DWORD_PTR value) { return static_cast<WORD>((value >> 16) & 0xFFFF); }
constexpr BYTE LOBYTE(DWORD_PTR value) { return static_cast<BYTE>(value & 0xFF); }
constexpr BYTE HIBYTE(DWORD_PTR value) { return static_cast<BYTE>((value >> 8) & 0xFF); }
constexpr WORD MAKEWORD(DWORD_PTR low, DWORD_PTR high) {
  return static_cast<WORD>((low & 0xFF) | ((high & 0xFF) << 8));
}
constexpr LONG MAKELONG(DWORD_PTR low, DWORD_PTR high) {
  return static_cast<LONG>(static_cast<DWORD>(low & 0xFFFF) |
                           (static_cast<DWORD>(high & 0xFFFF) << 16));
}
constexpr WPARAM MAKEWPARAM(DWORD_PTR low, DWORD_PTR high) {
  return static_cast<WPARAM>(static_cast<DWORD>(MAKELONG(low, high)));
}
inline LPWSTR MAKEINTRESOURCEW(DWORD_PTR id) {
  return reinterpret_cast<LPWSTR>(static_cast<ULONG_PTR>(LOWORD(id)));
}
#define MAKEINTRESOURCE MAKEINTRESOURCEW
inline bool IS_INTRESOURCE(LPCVOID name) { return (reinterpret_cast<ULONG_PTR>(name) >> 16) == 0; }
