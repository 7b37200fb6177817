#include "driver/default_settings.h"
#include "driver/device_tables.h"
#include "driver/text.h"
#include "paper/paper_table.h"

namespace kestrel {

namespace {

constexpr DWORD kPublicFields = DM_ORIENTATION | DM_PAPERSIZE | DM_PAPERLENGTH | DM_PAPERWIDTH |
                                DM_COPIES | DM_DEFAULTSOURCE | DM_PRINTQUALITY | DM_YRESOLUTION;
static_assert(kPublicFields == 0x270F);

}  // namespace

void FillPublicFields(DriverSettingsBlock& block, HANDLE, const WCHAR* name) {
  DEVMODEW& record = block.Record.Public;
  const PrivateDevMode& settings = block.Record.Private;
  record = DEVMODEW{};
  CutPrinterName(record.dmDeviceName, CCHDEVICENAME, name, kStripPort);

  const int entry = PaperEntryOrFree(block, settings.PaperID);
  const POINT size = PaperSizeTenths(PaperOfEntry(block, entry));
  const Resolution& resolution = ResolutionOf(block.Printer.HeadDensity);
  record.dmSpecVersion = kSpecVersion;
  record.dmDriverVersion = kDriverVersion;
  record.dmSize = kPublicSize;
  record.dmDriverExtra = kPrivateSize;
  record.dmFields = kPublicFields;
  record.dmOrientation = settings.Orient;
  record.dmPaperSize = settings.PaperID;
  record.dmPaperLength = static_cast<SHORT>(size.y);
  record.dmPaperWidth = static_cast<SHORT>(size.x);
  record.dmScale = 100;
  record.dmCopies = settings.Copies;
  record.dmDefaultSource = BinTable[0].id;
  record.dmPrintQuality = resolution.x;
  record.dmColor = DMCOLOR_MONOCHROME;
  record.dmDuplex = DMDUP_SIMPLEX;
  record.dmYResolution = resolution.y;
  record.dmTTOption = DMTT_BITMAP;
  record.dmCollate = DMCOLLATE_FALSE;
  PaperEntryName(block, entry, record.dmFormName, CCHFORMNAME);
}

}  // namespace kestrel
