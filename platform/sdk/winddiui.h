// The contract between the spooler and a printer driver's user-interface module.
#pragma once

#ifndef _WINDOWS_
#error "<windows.h> comes before this header, as on Windows"
#endif

#include <compstui.h>

constexpr DWORD DM_ADVANCED = 0x00000010;
constexpr DWORD DM_NOPERMISSION = 0x00000020;
constexpr DWORD DM_USER_DEFAULT = 0x00000040;

struct DOCUMENTPROPERTYHEADER {
  WORD cbSize;
  WORD Reserved;
  HANDLE hPrinter;
  LPWSTR pszPrinterName;
  DEVMODEW* pdmIn;
  DEVMODEW* pdmOut;
  DWORD cbOut;
  DWORD fMode;
};
static_assert(HasDocumentedSize<DOCUMENTPROPERTYHEADER>(28, 48));

struct DEVICEPROPERTYHEADER {
  WORD cbSize;
  WORD Flags;
  HANDLE hPrinter;
  LPWSTR pszPrinterName;
};
static_assert(HasDocumentedSize<DEVICEPROPERTYHEADER>(12, 24));

constexpr WORD DPS_NOPERMISSION = 0x0001;

struct DEVQUERYPRINT_INFO {
  WORD cbSize;
  WORD Level;
  HANDLE hPrinter;
  DEVMODEW* pDevMode;
  LPWSTR pszErrorStr;
  DWORD cchErrorStr;
  DWORD cchNeeded;
};
using PDEVQUERYPRINT_INFO = DEVQUERYPRINT_INFO*;

struct ATTRIBUTE_INFO_2 {
  DWORD dwJobNumberOfPagesPerSide;
  DWORD dwDrvNumberOfPagesPerSide;
  DWORD dwNupBorderFlags;
  DWORD dwJobPageOrderFlags;
  DWORD dwDrvPageOrderFlags;
  DWORD dwJobNumberOfCopies;
  DWORD dwDrvNumberOfCopies;
  DWORD dwColorOptimization;
};

struct ATTRIBUTE_INFO_3 : ATTRIBUTE_INFO_2 {
  SHORT dmPrintQuality;
  SHORT dmYResolution;
};

struct ATTRIBUTE_INFO_4 : ATTRIBUTE_INFO_3 {
  DWORD dwDuplexFlags;
  DWORD dwNupDirection;
  DWORD dwBookletFlags;
  DWORD dwScalingPercentX;
  DWORD dwScalingPercentY;
};
static_assert(sizeof(ATTRIBUTE_INFO_2) == 32 && sizeof(ATTRIBUTE_INFO_3) == 36 &&
              sizeof(ATTRIBUTE_INFO_4) == 56);

constexpr INT PRINTER_EVENT_ADD_CONNECTION = 1;
constexpr INT PRINTER_EVENT_DELETE_CONNECTION = 2;
constexpr INT PRINTER_EVENT_INITIALIZE = 3;
constexpr INT PRINTER_EVENT_DELETE = 4;
constexpr INT PRINTER_EVENT_CACHE_REFRESH = 5;
constexpr INT PRINTER_EVENT_CACHE_DELETE = 6;
constexpr INT PRINTER_EVENT_ATTRIBUTES_CHANGED = 7;
constexpr INT PRINTER_EVENT_CONFIGURATION_UPDATE = 8;

constexpr INT DOCUMENTEVENT_UNSUPPORTED = 0;

constexpr DWORD CDM_CONVERT = 0x00000001;
constexpr DWORD CDM_CONVERT351 = 0x00000002;
constexpr DWORD CDM_DRIVER_DEFAULT = 0x00000004;

// What a driver's user-interface module exports stays visible in its shared object; its other
// symbols need not.
#pragma GCC visibility push(default)
extern "C" {
BOOL WINAPI DllMain(HINSTANCE hinstDLL, DWORD fdwReason, LPVOID lpvReserved);
BOOL WINAPI DrvPrinterEvent(LPWSTR pPrinterName, INT DriverEvent, DWORD Flags, LPARAM lParam);
BOOL WINAPI DrvUpgradePrinter(DWORD Level, LPBYTE pDriverUpgradeInfo);
BOOL WINAPI DevQueryPrint(HANDLE hPrinter, DEVMODEW* pDevMode, DWORD* pResID);
BOOL WINAPI DevQueryPrintEx(PDEVQUERYPRINT_INFO pDQPInfo);
INT WINAPI DrvDocumentEvent(HANDLE hPrinter, HDC hdc, INT iEsc, ULONG cbIn, PVOID pbIn, ULONG cbOut,
                            PVOID pbOut);
BOOL WINAPI DrvQueryJobAttributes(HANDLE hPrinter, DEVMODEW* pDevMode, DWORD dwLevel,
                                  LPBYTE lpAttributeInfo);
BOOL WINAPI DrvQueryColorProfile(HANDLE hPrinter, DEVMODEW* pdevmode, ULONG ulQueryMode,
                                 PVOID pvProfileData, ULONG* pcbProfileData, ULONG* pflProfileData);
LONG WINAPI DrvDocumentProperties(HWND hwnd, HANDLE hPrinter, LPWSTR pDeviceName, DEVMODEW* pdmOut,
                                  DEVMODEW* pdmIn, DWORD fMode);
LONG WINAPI DrvAdvancedDocumentProperties(HWND hwnd, HANDLE hPrinter, LPWSTR pDeviceName,
                                          DEVMODEW* pdmOut, DEVMODEW* pdmIn);
BOOL WINAPI PrinterProperties(HWND hwnd, HANDLE hPrinter);
LONG WINAPI DrvDocumentPropertySheets(PPROPSHEETUI_INFO pPSUIInfo, LPARAM lParam);
LONG WINAPI DrvDevicePropertySheets(PPROPSHEETUI_INFO pPSUIInfo, LPARAM lParam);
BOOL WINAPI DrvConvertDevMode(LPWSTR pPrinterName, DEVMODEW* pdmIn, DEVMODEW* pdmOut,
                              PLONG pcbNeeded, DWORD fMode);
DWORD WINAPI DrvDeviceCapabilities(HANDLE hPrinter, LPWSTR pDeviceName, WORD wCapability,
                                   PVOID pOutput, DEVMODEW* pdm);
DWORD WINAPI DrvSplDeviceCaps(HANDLE hPrinter, LPWSTR pDeviceName, WORD wCapability, PVOID pOutput,
                              DWORD cchBuf, DEVMODEW* pdm);
}
#pragma GCC visibility pop
