#include "driver/default_settings.h"

#include "driver/device_tables.h"
#include "driver/halftone_info.h"
#include "driver/printer_access.h"
#include "driver/text.h"
#include "files/setup_file.h"
#include "paper/paper_table.h"

namespace kestrel {

namespace {

constexpr DEVHTINFO kHalftoneDefault = {
    .HTFlags = HT_FLAG_HAS_BLACK_DYE,
    .HTPatternSize = HT_PATSIZE_8x8_M,
    .DevPelsDPI = 0,
    .ColorInfo = {.Red = {6810, 3050, 0},
                  .Green = {2260, 6550, 0},
                  .Blue = {1810, 500, 0},
                  .Cyan = {2000, 2450, 65534},
                  .Magenta = {5210, 2100, 0},
                  .Yellow = {4750, 5100, 0},
                  .AlignmentWhite = {3324, 3474, 10000},
                  .RedGamma = 10000,
                  .GreenGamma = 10000,
                  .BlueGamma = 10000,
                  .MagentaInCyanDye = 1422,
                  .YellowInCyanDye = 952,
                  .CyanInMagentaDye = 787,
                  .YellowInMagentaDye = 495,
                  .CyanInYellowDye = 324,
                  .MagentaInYellowDye = 248},
};

constexpr COLORADJUSTMENT kColorAdjustDefault = {
    .caSize = sizeof(COLORADJUSTMENT),
    .caFlags = 0,
    .caIlluminantIndex = 0,
    .caRedGamma = 10000,
    .caGreenGamma = 10000,
    .caBlueGamma = 10000,
    .caReferenceBlack = 0,
    .caReferenceWhite = 10000,
    .caContrast = 0,
    .caBrightness = 0,
    .caColorfulness = 0,
    .caRedGreenTint = 0,
};

const Model& ModelOfPrinter(HANDLE printer, const WCHAR* name) {
  WCHAR driverName[MAX_PATH];
  if (GetPrinterInfoValue(printer, name, driverName, sizeof driverName, kInfoDriverName))
    for (const Model& model : ModelTable)
      if (SameText(model.driverName, driverName)) return model;
  return ModelTable[0];
}

// The remaining fields of the private part are 0 by default.
void FillPrivateDefaults(PrivateDevMode& settings) {
  settings.Copies = 1;
  settings.Orient = DMORIENT_PORTRAIT;
  settings.nPrintSpeed = 1;
  settings.nMoveMode = 1;
  settings.Dither = 2;
  settings.nColorText = 1;
  settings.ColorAdjust = kColorAdjustDefault;
  settings.Position = 1;
}

}  // namespace

const DEVHTINFO& DefaultHalftoneInfo() { return kHalftoneDefault; }

void FillDefaultSettings(DriverSettingsBlock& block, HANDLE printer, const WCHAR* name) {
  if (ImportSetupFile(block, printer, name)) return;
  block = DriverSettingsBlock{};
  block.Printer.PaperNum = 1;
  block.Printer.Papers[0] = StandardPaper();
  block.Printer.HeadDensity = ModelOfPrinter(printer, name).headDensity;
  SetHalftoneInfo(block, kHalftoneDefault);

  PrivateDevMode& settings = block.Record.Private;
  settings.PaperID = kFirstPaperId;
  settings.FreePaper = PaperOfEntry(block, PaperEntryOrFree(block, settings.PaperID));
  CopyText(settings.FreePaper.PaperName, kFreePaperName);
  FillPrivateDefaults(settings);
  FillPublicFields(block, printer, name);
}

}  // namespace kestrel
