// Halftone descriptions of a device and the halftone library's entry points.
#pragma once

#ifndef _WINDOWS_
#error "<windows.h> comes before this header, as on Windows"
#endif

using LDECI4 = LONG;  // a decimal number with four digits after the point: 10000 is 1.0

struct CIECHROMA {
  LDECI4 x;
  LDECI4 y;
  LDECI4 Y;
};

struct COLORINFO {
  CIECHROMA Red;
  CIECHROMA Green;
  CIECHROMA Blue;
  CIECHROMA Cyan;
  CIECHROMA Magenta;
  CIECHROMA Yellow;
  CIECHROMA AlignmentWhite;
  LDECI4 RedGamma;
  LDECI4 GreenGamma;
  LDECI4 BlueGamma;
  LDECI4 MagentaInCyanDye;
  LDECI4 YellowInCyanDye;
  LDECI4 CyanInMagentaDye;
  LDECI4 YellowInMagentaDye;
  LDECI4 CyanInYellowDye;
  LDECI4 MagentaInYellowDye;
};

struct DEVHTINFO {
  DWORD HTFlags;
  DWORD HTPatternSize;
  DWORD DevPelsDPI;
  COLORINFO ColorInfo;
};
static_assert(sizeof(DEVHTINFO) == 132);

struct DEVHTADJDATA {
  DWORD DeviceFlags;
  DWORD DeviceXDPI;
  DWORD DeviceYDPI;
  DEVHTINFO* pDefHTInfo;
  DEVHTINFO* pAdjHTInfo;
};
using PDEVHTADJDATA = DEVHTADJDATA*;

constexpr DWORD HT_FLAG_HAS_BLACK_DYE = 0x00000002;

constexpr DWORD HT_PATSIZE_8x8_M = 7;
constexpr DWORD HT_PATSIZE_MAX_INDEX = 18;

extern "C" {
// Both: above 0 the user confirmed a change, 0 cancelled or nothing changed, below 0 an error. They
// are found at run time in the library "htui".
LONG APIENTRY HTUI_ColorAdjustmentW(LPWSTR pCallerTitle, HANDLE hDefDIB, LPWSTR pDefDIBTitle,
                                    COLORADJUSTMENT* pColorAdjustment, BOOL ShowMonochromeOnly,
                                    BOOL UpdatePermission);
LONG APIENTRY HTUI_DeviceColorAdjustmentW(LPWSTR pDeviceName, PDEVHTADJDATA pDevHTAdjData);
}
