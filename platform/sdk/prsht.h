// Property sheet pages and the messages of a sheet.
#pragma once

#ifndef _WINDOWS_
#error "<windows.h> comes before this header, as on Windows"
#endif

using HPROPSHEETPAGE = struct _PSP*;

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
  UINT(CALLBACK* pfnCallback)(HWND, UINT, PROPSHEETPAGEW*);
  UINT* pcRefParent;
  LPCWSTR pszHeaderTitle;
  LPCWSTR pszHeaderSubTitle;
  HANDLE hActCtx;
};
using LPCPROPSHEETPAGEW = const PROPSHEETPAGEW*;
static_assert(HasDocumentedSize<PROPSHEETPAGEW>(52, 96));

constexpr DWORD PSP_USEICONID = 0x00000004;
constexpr DWORD PSP_HASHELP = 0x00000020;

struct PSHNOTIFY {
  NMHDR hdr;
  LPARAM lParam;
};

constexpr UINT PSN_FIRST = 0U - 200U;
constexpr UINT PSN_LAST = static_cast<UINT>(-299);
constexpr UINT PSN_SETACTIVE = PSN_FIRST - 0;
constexpr UINT PSN_KILLACTIVE = PSN_FIRST - 1;
constexpr UINT PSN_APPLY = PSN_FIRST - 2;
constexpr UINT PSN_RESET = PSN_FIRST - 3;
constexpr UINT PSN_QUERYCANCEL = PSN_FIRST - 9;

constexpr LONG_PTR PSNRET_NOERROR = 0;

// Relative to WM_USER (0x0400).
constexpr UINT PSM_CHANGED = 0x0400 + 104;

extern "C" {
HPROPSHEETPAGE WINAPI CreatePropertySheetPageW(LPCPROPSHEETPAGEW page);
BOOL WINAPI DestroyPropertySheetPage(HPROPSHEETPAGE page);
}
