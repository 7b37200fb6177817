#include "driver/merge_record.h"

#include <algorithm>

#include "driver/default_settings.h"
#include "paper/paper_table.h"

namespace kestrel {

namespace {

// Merges the public fields that dmFields names and the record contains. Invalid values are ignored.
void MergePublicFields(DriverSettingsBlock& block, const RecordView& input) {
  PrivateDevMode& settings = block.Record.Private;
  DWORD fields = 0;
  input.ReadPublic(offsetof(DEVMODEW, dmFields), &fields);

  SHORT value = 0;
  if ((fields & DM_ORIENTATION) != 0 &&
      input.ReadPublic(offsetof(DEVMODEW, dmOrientation), &value) &&
      (value == DMORIENT_PORTRAIT || value == DMORIENT_LANDSCAPE))
    settings.Orient = value;
  if ((fields & DM_PAPERSIZE) != 0 && input.ReadPublic(offsetof(DEVMODEW, dmPaperSize), &value) &&
      PaperEntryOfId(block, value) >= 0)
    settings.PaperID = value;
  if ((fields & DM_COPIES) != 0 && input.ReadPublic(offsetof(DEVMODEW, dmCopies), &value))
    settings.Copies = std::max(value, SHORT{1});
}

// Copies the members from PaperKind to Yoshi. The name, the reserved words and UserDef stay
// unchanged.
void MergeFreePaper(PaperInfo& paper, const PaperInfo& input) {
  constexpr size_t kStart = offsetof(PaperInfo, PaperKind);
  constexpr size_t kEnd = offsetof(PaperInfo, Reserved);
  std::memcpy(reinterpret_cast<BYTE*>(&paper) + kStart,
              reinterpret_cast<const BYTE*>(&input) + kStart, kEnd - kStart);
}

// Dither, ColorAdjust, Position and nCompulsory always remain those of the printer.
void MergePrivateFields(PrivateDevMode& settings, const PrivateDevMode& input) {
  MergeFreePaper(settings.FreePaper, input.FreePaper);
  settings.nVertBase = input.nVertBase;
  settings.nHorzBase = input.nHorzBase;
  settings.nFlip = input.nFlip;
  settings.nPeelOffset = input.nPeelOffset;
  settings.nTearOffset = input.nTearOffset;
  settings.nPitchOffset = input.nPitchOffset;
  settings.nPrintSpeed = input.nPrintSpeed;
  settings.nSensor = input.nSensor;
  settings.nMoveMode = input.nMoveMode;
  settings.nTSMode = input.nTSMode;
  settings.nColorText = input.nColorText;
}

}  // namespace

void _UdcMergeSelfDMode(DriverSettingsBlock& block, const RecordView& input, unsigned mismatch,
                        HANDLE printer, const WCHAR* name) {
  if (input.hasFields()) {
    MergePublicFields(block, input);
    PrivateDevMode fields;
    if (block.Record.Private.nCompulsory == 0 && mismatch == 0 &&
        input.Read(kPrivateOffset, &fields))
      MergePrivateFields(block.Record.Private, fields);
  }
  FillPublicFields(block, printer, name);
}

}  // namespace kestrel
