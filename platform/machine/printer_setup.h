// A printer as it is installed.
#pragma once

#include <windef.h>

#include <string>

namespace platform {

// A printer as the spooler stores it.
struct PrinterSetup {
  std::u16string name;
  std::u16string driverName = u"VELA QM610r";
  std::u16string portName = u"LPT1:";
  std::u16string printProcessor = u"winprint";
  std::u16string helpFile = u"QM610rDRV1.HLP";  // in the driver directory; empty: no help file
  std::u16string dataFile = u"QM610rDRV1.DLL";
  DWORD attributes = 0;
  bool administer = true;  // PRINTER_ALL_ACCESS may be opened
  bool writable = true;    // SetPrinterDataW is allowed
};

}  // namespace platform
