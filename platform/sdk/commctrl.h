// Up-down controls, as the platform documentation of the common controls declares them.
#pragma once

#ifndef _WINDOWS_
#error "<windows.h> comes before this header, as on Windows"
#endif

constexpr DWORD ICC_STANDARD_CLASSES = 0x00004000;

struct INITCOMMONCONTROLSEX {
  DWORD dwSize;
  DWORD dwICC;
};

#define UPDOWN_CLASSW TEXT("msctls_updown32")
constexpr DWORD UDS_SETBUDDYINT = 0x0002;
constexpr DWORD UDS_ALIGNRIGHT = 0x0004;
constexpr DWORD UDS_ARROWKEYS = 0x0020;
constexpr DWORD UDS_NOTHOUSANDS = 0x0080;
constexpr UINT UDM_SETBUDDY = WM_USER + 105;
constexpr UINT UDM_SETBASE = WM_USER + 109;
constexpr UINT UDM_SETRANGE32 = WM_USER + 111;
constexpr UINT UDM_GETRANGE32 = WM_USER + 112;
constexpr UINT UDM_SETPOS32 = WM_USER + 113;
constexpr UINT UDM_GETPOS32 = WM_USER + 114;
constexpr UINT UDN_DELTAPOS = 0U - 722U;

struct NMUPDOWN {
  NMHDR hdr;
  int iPos;
  int iDelta;
};
static_assert(HasDocumentedSize<NMUPDOWN>(20, 32));

extern "C" {

void WINAPI InitCommonControls();
BOOL WINAPI InitCommonControlsEx(const INITCOMMONCONTROLSEX* request);

}  // extern "C"
