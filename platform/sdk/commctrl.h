// The common controls that dialogs here use: up-downs and trackbars, as the platform
// documentation's reference of the common controls gives them.
#pragma once

#ifndef _WINDOWS_
#error "<windows.h> comes before this header, as on Windows"
#endif

#include <windows.h>

constexpr DWORD ICC_BAR_CLASSES = 0x00000004;
constexpr DWORD ICC_TAB_CLASSES = 0x00000008;
constexpr DWORD ICC_UPDOWN_CLASS = 0x00000010;
constexpr DWORD ICC_WIN95_CLASSES = 0x000000FF;
constexpr DWORD ICC_STANDARD_CLASSES = 0x00004000;

struct INITCOMMONCONTROLSEX {
  DWORD dwSize;
  DWORD dwICC;
};
using LPINITCOMMONCONTROLSEX = INITCOMMONCONTROLSEX*;

// WM_NOTIFY codes common to all controls.
constexpr UINT NM_FIRST = 0;
constexpr UINT NM_CLICK = NM_FIRST - 2;
constexpr UINT NM_RETURN = NM_FIRST - 4;
constexpr UINT NM_SETFOCUS = NM_FIRST - 7;
constexpr UINT NM_KILLFOCUS = NM_FIRST - 8;

// ---- up-downs ----
#define UPDOWN_CLASSW TEXT("msctls_updown32")
constexpr DWORD UDS_WRAP = 0x0001;
constexpr DWORD UDS_SETBUDDYINT = 0x0002;
constexpr DWORD UDS_ALIGNRIGHT = 0x0004;
constexpr DWORD UDS_ALIGNLEFT = 0x0008;
constexpr DWORD UDS_AUTOBUDDY = 0x0010;
constexpr DWORD UDS_ARROWKEYS = 0x0020;
constexpr DWORD UDS_HORZ = 0x0040;
constexpr DWORD UDS_NOTHOUSANDS = 0x0080;
constexpr DWORD UDS_HOTTRACK = 0x0100;
constexpr UINT UDM_SETRANGE = WM_USER + 101;
constexpr UINT UDM_GETRANGE = WM_USER + 102;
constexpr UINT UDM_SETPOS = WM_USER + 103;
constexpr UINT UDM_GETPOS = WM_USER + 104;
constexpr UINT UDM_SETBUDDY = WM_USER + 105;
constexpr UINT UDM_GETBUDDY = WM_USER + 106;
constexpr UINT UDM_SETACCEL = WM_USER + 107;
constexpr UINT UDM_GETACCEL = WM_USER + 108;
constexpr UINT UDM_SETBASE = WM_USER + 109;
constexpr UINT UDM_GETBASE = WM_USER + 110;
constexpr UINT UDM_SETRANGE32 = WM_USER + 111;
constexpr UINT UDM_GETRANGE32 = WM_USER + 112;
constexpr UINT UDM_SETPOS32 = WM_USER + 113;
constexpr UINT UDM_GETPOS32 = WM_USER + 114;
constexpr int UD_MAXVAL = 0x7FFF;
constexpr int UD_MINVAL = -UD_MAXVAL;
constexpr UINT UDN_FIRST = 0U - 721U;
constexpr UINT UDN_DELTAPOS = UDN_FIRST - 1;

struct NMUPDOWN {
  NMHDR hdr;
  int iPos;
  int iDelta;
};
using LPNMUPDOWN = NMUPDOWN*;
using NM_UPDOWN = NMUPDOWN;
using LPNM_UPDOWN = LPNMUPDOWN;

// ---- trackbars ----
#define TRACKBAR_CLASSW TEXT("msctls_trackbar32")
constexpr DWORD TBS_AUTOTICKS = 0x0001;
constexpr DWORD TBS_VERT = 0x0002;
constexpr DWORD TBS_HORZ = 0x0000;
constexpr DWORD TBS_BOTH = 0x0008;
constexpr DWORD TBS_NOTICKS = 0x0010;
constexpr UINT TBM_GETPOS = WM_USER;
constexpr UINT TBM_GETRANGEMIN = WM_USER + 1;
constexpr UINT TBM_GETRANGEMAX = WM_USER + 2;
constexpr UINT TBM_SETTIC = WM_USER + 4;
constexpr UINT TBM_SETPOS = WM_USER + 5;
constexpr UINT TBM_SETRANGE = WM_USER + 6;
constexpr UINT TBM_SETRANGEMIN = WM_USER + 7;
constexpr UINT TBM_SETRANGEMAX = WM_USER + 8;
constexpr UINT TBM_SETTICFREQ = WM_USER + 20;
constexpr UINT TBM_SETPAGESIZE = WM_USER + 21;
constexpr UINT TBM_GETPAGESIZE = WM_USER + 22;
constexpr UINT TBM_SETLINESIZE = WM_USER + 23;
constexpr UINT TBM_GETLINESIZE = WM_USER + 24;
constexpr int TB_LINEUP = 0;
constexpr int TB_LINEDOWN = 1;
constexpr int TB_THUMBPOSITION = 4;
constexpr int TB_THUMBTRACK = 5;
constexpr int TB_ENDTRACK = 8;

extern "C" {

void WINAPI InitCommonControls();
BOOL WINAPI InitCommonControlsEx(const INITCOMMONCONTROLSEX* request);

}  // extern "C"
