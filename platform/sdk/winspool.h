// The print spooler.
#pragma once

#ifndef _WINDOWS_
#error "<windows.h> comes before this header, as on Windows"
#endif

struct PRINTER_DEFAULTSW {
  LPWSTR pDatatype;
  LPDEVMODEW pDevMode;
  ACCESS_MASK DesiredAccess;
};
using LPPRINTER_DEFAULTSW = PRINTER_DEFAULTSW*;

constexpr DWORD PRINTER_ACCESS_ADMINISTER = 0x00000004;
constexpr DWORD PRINTER_ACCESS_USE = 0x00000008;
constexpr DWORD PRINTER_ALL_ACCESS =
    STANDARD_RIGHTS_REQUIRED | PRINTER_ACCESS_ADMINISTER | PRINTER_ACCESS_USE;

constexpr DWORD PRINTER_ATTRIBUTE_SHARED = 0x00000008;
constexpr DWORD PRINTER_ATTRIBUTE_LOCAL = 0x00000040;

struct PRINTER_INFO_1W {
  DWORD Flags;
  LPWSTR pDescription;
  LPWSTR pName;
  LPWSTR pComment;
};
static_assert(HasDocumentedSize<PRINTER_INFO_1W>(16, 32));

struct PRINTER_INFO_2W {
  LPWSTR pServerName;
  LPWSTR pPrinterName;
  LPWSTR pShareName;
  LPWSTR pPortName;
  LPWSTR pDriverName;
  LPWSTR pComment;
  LPWSTR pLocation;
  LPDEVMODEW pDevMode;
  LPWSTR pSepFile;
  LPWSTR pPrintProcessor;
  LPWSTR pDatatype;
  LPWSTR pParameters;
  PVOID pSecurityDescriptor;
  DWORD Attributes;
  DWORD Priority;
  DWORD DefaultPriority;
  DWORD StartTime;
  DWORD UntilTime;
  DWORD Status;
  DWORD cJobs;
  DWORD AveragePPM;
};
static_assert(HasDocumentedSize<PRINTER_INFO_2W>(84, 136));

struct PRINTER_INFO_4W {
  LPWSTR pPrinterName;
  LPWSTR pServerName;
  DWORD Attributes;
};
static_assert(HasDocumentedSize<PRINTER_INFO_4W>(12, 24));

struct PRINTER_INFO_5W {
  LPWSTR pPrinterName;
  LPWSTR pPortName;
  DWORD Attributes;
  DWORD DeviceNotSelectedTimeout;
  DWORD TransmissionRetryTimeout;
};
static_assert(HasDocumentedSize<PRINTER_INFO_5W>(20, 32));

struct DRIVER_INFO_3W {
  DWORD cVersion;
  LPWSTR pName;
  LPWSTR pEnvironment;
  LPWSTR pDriverPath;
  LPWSTR pDataFile;
  LPWSTR pConfigFile;
  LPWSTR pHelpFile;
  LPWSTR pDependentFiles;
  LPWSTR pMonitorName;
  LPWSTR pDefaultDataType;
};
static_assert(HasDocumentedSize<DRIVER_INFO_3W>(40, 80));

extern "C" {
BOOL WINAPI OpenPrinterW(LPWSTR name, HANDLE* printer, LPPRINTER_DEFAULTSW defaults);
BOOL WINAPI ClosePrinter(HANDLE printer);
BOOL WINAPI GetPrinterW(HANDLE printer, DWORD level, LPBYTE out, DWORD size, LPDWORD needed);
BOOL WINAPI GetPrinterDriverW(HANDLE printer, LPWSTR environment, DWORD level, LPBYTE out,
                              DWORD size, LPDWORD needed);
BOOL WINAPI GetPrinterDriverDirectoryW(LPWSTR server, LPWSTR environment, DWORD level, LPBYTE out,
                                       DWORD size, LPDWORD needed);
DWORD WINAPI GetPrinterDataW(HANDLE printer, LPWSTR value, LPDWORD type, LPBYTE out, DWORD size,
                             LPDWORD needed);
DWORD WINAPI SetPrinterDataW(HANDLE printer, LPWSTR value, DWORD type, LPBYTE data, DWORD size);
}
