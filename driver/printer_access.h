// The driver's seam to the spooler. Failures are told by the result alone; the platform's last
// error stays as it is.
#pragma once

#include <windows.h>
#include <winspool.h>

namespace kestrel {

enum PrinterInfoSelector : int {
  kInfoDriverName = 0,        // PRINTER_INFO_2 pDriverName
  kInfoVersionDirectory = 1,  // printer-driver directory with "\3"; 3 and 100 mean the same
  kInfoDriverDirectory = 2,   // printer-driver directory
  kInfoVersionDirectory3 = 3,
  kInfoPrintProcessor = 4,  // PRINTER_INFO_2 pPrintProcessor
  kInfoDevMode = 10,        // PRINTER_INFO_2 pDevMode
  kInfoDriverName2 = 11,    // as kInfoDriverName
  kInfoPortName = 12,       // PRINTER_INFO_2 pPortName
  kInfoAttributes2 = 13,    // PRINTER_INFO_2 Attributes
  kInfoPrinterName = 14,    // PRINTER_INFO_2 pPrinterName
  kInfoAttributes4 = 20,    // PRINTER_INFO_4 Attributes
  kInfoAttributes5 = 30,    // PRINTER_INFO_5 Attributes
  kInfoVersionDirectory100 = 100,
  kInfoHelpFile = 110,  // DRIVER_INFO_3 pHelpFile
  kInfoDataFile = 111,  // DRIVER_INFO_3 pDataFile
};

// Access modes of OpenPrinterForDriver.
constexpr int kAdminister = 1;
constexpr int kDefaultAccess = 2;

// Opens a printer by name. Modes 1 and 4 request PRINTER_ALL_ACCESS, 2 and 3 the default access;
// any other mode, and a missing or empty name, fails without a call. *printer is cleared first.
bool OpenPrinterForDriver(const WCHAR* name, int mode, HANDLE* printer);

// Answers one value about a printer or its driver into a buffer of size bytes, which is cleared
// first. False for an unknown selector, a missing value, a buffer too small for a 32-bit answer, or
// a platform failure. Texts are cut and terminated. An answer that grows while it is queried is
// queried again.
bool GetPrinterInfoValue(HANDLE printer, const WCHAR* name, void* buffer, DWORD size, int selector);

// PRINTER_INFO_1 pName of an open printer, cut to n - 1 units and terminated; empty when it cannot
// be had.
bool GetPrinterNameOfHandle(HANDLE printer, WCHAR* name, size_t n);

// GetPrinterDataW. *needed is the size that the spooler reports, in every case.
bool ReadPrinterData(HANDLE printer, const WCHAR* value, void* buffer, DWORD size, DWORD* needed);
// SetPrinterDataW with a REG_ type and size bytes.
bool WritePrinterData(HANDLE printer, const WCHAR* value, DWORD type, const void* data, DWORD size);

}  // namespace kestrel
