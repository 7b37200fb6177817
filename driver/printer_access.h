// The driver's access to the spooler. The functions report failure by their result only; they do
// not set the last error themselves.
#pragma once

#include <windows.h>
#include <winspool.h>

namespace kestrel {

enum PrinterInfoSelector : int {
  kInfoDriverName = 0,        // PRINTER_INFO_2 pDriverName
  kInfoVersionDirectory = 1,  // printer-driver directory with "\3"; 3 and 100 are synonyms
  kInfoDriverDirectory = 2,   // printer-driver directory
  kInfoVersionDirectory3 = 3,
  kInfoPrintProcessor = 4,  // PRINTER_INFO_2 pPrintProcessor
  kInfoDevMode = 10,        // PRINTER_INFO_2 pDevMode
  kInfoDriverName2 = 11,    // synonym of kInfoDriverName
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

// Opens a printer by name. Modes 1 and 4 request PRINTER_ALL_ACCESS, 2 and 3 the default access.
// Any other mode and a null or empty name fail without a call. *printer is null on failure.
bool OpenPrinterForDriver(const WCHAR* name, int mode, HANDLE* printer);

// Writes the value that selector names to a buffer of size bytes; the buffer is cleared first.
// Texts are truncated and terminated. Returns false for an unknown selector, a null value, a buffer
// too small for a 32-bit value, or a failed query. A reply that grows between the query of its size
// and the query of its content is queried again.
bool GetPrinterInfoValue(HANDLE printer, const WCHAR* name, void* buffer, DWORD size, int selector);

// Copies PRINTER_INFO_1 pName of an open printer, truncated to n - 1 units and terminated. On
// failure returns false and leaves name empty.
bool GetPrinterNameOfHandle(HANDLE printer, WCHAR* name, size_t n);

// Calls GetPrinterDataW. *needed receives the size that the spooler reports, on failure too.
bool ReadPrinterData(HANDLE printer, const WCHAR* value, void* buffer, DWORD size, DWORD* needed);
// Calls SetPrinterDataW with a REG_ type and size bytes.
bool WritePrinterData(HANDLE printer, const WCHAR* value, DWORD type, const void* data, DWORD size);

}  // namespace kestrel
