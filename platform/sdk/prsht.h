// Property sheet pages and the messages of a sheet.
#pragma once

#ifndef _WINDOWS_
#error "<windows.h> comes before this header, as on Windows"
#endif

#include <windows.h>

struct PROPSHEETPAGEW;
struct _PSP;
using HPROPSHEETPAGE = _PSP*;
using LPFNPSPCALLBACKW = UINT(CALLBACK*)(HWND, UINT, PROPSHEETPAGEW*);

// The layout up to the activation context; the later header bitmap is not part of it.
struct PROPSHEETPAGEW {
  DWORD dwSize;
  DWORD dwFlags;
  HINSTANCE hInstance;
  union {
    LPCWSTR pszTemplate;
    const DLGTEMPLATE* pResource;
  };
  union {
    HICON hIcon;
    LPCWSTR pszIcon;
  };
  LPCWSTR pszTitle;
  DLGPROC pfnDlgProc;
  LPARAM lParam;
  LPFNPSPCALLBACKW pfnCallback;
  UINT* pcRefParent;
  LPCWSTR pszHeaderTitle;
  LPCWSTR pszHeaderSubTitle;
  HANDLE hActCtx;
};
using LPPROPSHEETPAGEW = PROPSHEETPAGEW*;
using LPCPROPSHEETPAGEW = const PROPSHEETPAGEW*;
using PROPSHEETPAGE = PROPSHEETPAGEW;
using LPPROPSHEETPAGE = PROPSHEETPAGEW*;
using LPCPROPSHEETPAGE = const PROPSHEETPAGEW*;
static_assert(sizeof(void*) != 4 || sizeof(PROPSHEETPAGEW) == 52);

constexpr DWORD PSP_DEFAULT = 0x00000000;
constexpr DWORD PSP_DLGINDIRECT = 0x00000001;
constexpr DWORD PSP_USEHICON = 0x00000002;
constexpr DWORD PSP_USEICONID = 0x00000004;
constexpr DWORD PSP_USETITLE = 0x00000008;
constexpr DWORD PSP_RTLREADING = 0x00000010;
constexpr DWORD PSP_HASHELP = 0x00000020;
constexpr DWORD PSP_USEREFPARENT = 0x00000040;
constexpr DWORD PSP_USECALLBACK = 0x00000080;
constexpr DWORD PSP_PREMATURE = 0x00000400;
constexpr DWORD PSP_USEFUSIONCONTEXT = 0x00004000;

constexpr UINT PSPCB_ADDREF = 0;
constexpr UINT PSPCB_RELEASE = 1;
constexpr UINT PSPCB_CREATE = 2;

struct PSHNOTIFY {
  NMHDR hdr;
  LPARAM lParam;
};
using LPPSHNOTIFY = PSHNOTIFY*;

constexpr UINT PSN_FIRST = 0U - 200U;
constexpr UINT PSN_LAST = static_cast<UINT>(-299);
constexpr UINT PSN_SETACTIVE = PSN_FIRST - 0;
constexpr UINT PSN_KILLACTIVE = PSN_FIRST - 1;
constexpr UINT PSN_APPLY = PSN_FIRST - 2;
constexpr UINT PSN_RESET = PSN_FIRST - 3;
constexpr UINT PSN_HELP = PSN_FIRST - 5;
constexpr UINT PSN_QUERYCANCEL = PSN_FIRST - 9;
constexpr UINT PSN_QUERYINITIALFOCUS = PSN_FIRST - 13;

constexpr LONG_PTR PSNRET_NOERROR = 0;
constexpr LONG_PTR PSNRET_INVALID = 1;
constexpr LONG_PTR PSNRET_INVALID_NOCHANGEPAGE = 2;

// Relative to WM_USER (0x0400).
constexpr UINT PSM_SETCURSEL = 0x0400 + 101;
constexpr UINT PSM_CHANGED = 0x0400 + 104;
constexpr UINT PSM_CANCELTOCLOSE = 0x0400 + 107;
constexpr UINT PSM_QUERYSIBLINGS = 0x0400 + 108;
constexpr UINT PSM_UNCHANGED = 0x0400 + 109;
constexpr UINT PSM_APPLY = 0x0400 + 110;
constexpr UINT PSM_PRESSBUTTON = 0x0400 + 113;
constexpr UINT PSM_GETCURRENTPAGEHWND = 0x0400 + 118;
constexpr UINT PSM_SETTITLEW = 0x0400 + 120;
constexpr UINT PSM_SETTITLE = PSM_SETTITLEW;

constexpr WPARAM PSBTN_OK = 3;
constexpr WPARAM PSBTN_APPLYNOW = 4;
constexpr WPARAM PSBTN_CANCEL = 5;
constexpr WPARAM PSBTN_HELP = 6;

extern "C" {
HPROPSHEETPAGE WINAPI CreatePropertySheetPageW(LPCPROPSHEETPAGEW page);
BOOL WINAPI DestroyPropertySheetPage(HPROPSHEETPAGE page);
}
#define CreatePropertySheetPage CreatePropertySheetPageW
