#include "files/backup_file.h"

#include <algorithm>
#include <cstring>

#include "driver/halftone_info.h"
#include "driver/text.h"
#include "files/backup_fonts.h"
#include "files/settings_keys.h"
#include "operation/device_settings.h"
#include "paper/paper_table.h"
#include "resources/resource.h"
#include "sheets/messages.h"

namespace kestrel {
namespace {

constexpr int BACKUP_FILE_FORMAT_VERSION = 3;
constexpr int kVersionLength = 8;       // FileVersion and DriverVersion, terminator included
constexpr int kPrinterNameBytes = 128;  // of DriverName in a save, terminator included
constexpr int kSyncLength = 80;         // of SYNC, terminator included

void FormatVersion(char (&text)[kVersionLength]) {
  *WriteNumber(text, BACKUP_FILE_FORMAT_VERSION, 16, 4) = 0;
}

void TransferFields(ProfileIo& io, void* record, SettingsKeys keys) {
  for (const SettingsKey& key : keys) io.Int16Field(key.name, FieldOf(record, key));
}

void TransferHalftone(ProfileIo& io, DriverSettingsBlock& block) {
  io.BeginSection(kHalftoneSection);
  io.ClearSection();
  DEVHTINFO info = HalftoneInfo(block);
  for (const SettingsKey& key : HalftoneKeys()) io.Int32Field(key.name, FieldOf(&info, key));
  for (const SettingsKey& key : ChromaticityKeys()) io.Int32List(key.name, FieldOf(&info, key), 3);
  for (const SettingsKey& key : HalftoneGammaKeys()) io.Int32Field(key.name, FieldOf(&info, key));
  SetHalftoneInfo(block, info);
  TransferFields(io, &block.Record.Private.ColorAdjust, ColorAdjustKeys());
}

// Transfers a field that a load sets to 0 when the file lacks its key. Returns false when the key
// is missing or cannot be written.
bool TransferFieldOrZero(ProfileIo& io, void* record, const SettingsKey& key) {
  void* field = FieldOf(record, key);
  if (io.Int16Field(key.name, field) != 0) return true;
  if (!io.Saving()) std::memset(field, 0, sizeof(int16_t));
  return false;
}

// Transfers the paper of the current section. A load sets a missing name to the empty text and a
// missing Yoshi to 0, and leaves other fields without a key.
void TransferPaper(ProfileIo& io, PaperInfo& paper) {
  io.ClearSection();
  io.NameField("PaperName", paper.PaperName, kPaperNameLength);
  for (const SettingsKey& key : PaperKeys()) {
    if (key.offset == offsetof(PaperInfo, Yoshi)) {
      TransferFieldOrZero(io, &paper, key);
    } else {
      io.Int16Field(key.name, FieldOf(&paper, key));
    }
  }
}

// Transfers the paper count and that many papers. A save writes count; a load replaces it. Clears
// the records after the last paper.
void TransferPapers(ProfileIo& io, PrinterSettingsPart& printer, int16_t count) {
  io.BeginSection(kPaperNumSection);
  io.ClearSection();
  io.Int16Field("PaperNum", &count);
  count = std::clamp(count, int16_t{0}, int16_t{kPaperCapacity});
  if (!io.Saving()) printer.PaperNum = count;
  for (int i = 0; i < count; ++i) {
    io.BeginSection(TEXT("PAPER"), i);
    TransferPaper(io, printer.Papers[i]);
  }
  std::fill(printer.Papers + count, printer.Papers + kPaperCapacity, PaperInfo{});
}

// Returns false when a save cannot write a key of the driver section, or when a load misses a
// required one. A save writes the device section for information only; a load never reads it.
bool TransferDriverInfo(ProfileIo& io, DriverSettingsBlock& block) {
  PrivateDevMode& settings = block.Record.Private;
  io.BeginSection(kDriverSection);
  io.ClearSection();
  for (const SettingsKey& key : RequiredDriverKeys()) {
    if (io.Int16Field(key.name, FieldOf(&settings, key)) == 0) return false;
  }
  for (const SettingsKey& key : {kCompulsoryKey, kPositionKey}) {
    if (!TransferFieldOrZero(io, &settings, key) && io.Saving()) return false;
  }
  io.BeginSection(kFreePaperSection);
  TransferPaper(io, settings.FreePaper);
  if (io.Saving()) {
    io.BeginSection(kDeviceSection);
    io.ClearSection();
    TransferFields(io, &block.Printer, DeviceKeys());
  }
  TransferHalftone(io, block);
  return true;
}

// Returns false, without transferring papers and fonts, when the driver section fails.
bool TransferSections(ProfileIo& io, const BackupSubject& subject, unsigned sections) {
  if ((sections & BACKUP_DRIVER_INFO) != 0 && !TransferDriverInfo(io, subject.block)) return false;
  if ((sections & BACKUP_PAPERS) != 0) {
    // The stored count may be out of range; a save writes a valid one.
    PrinterSettingsPart& printer = subject.block.Printer;
    TransferPapers(
        io, printer,
        io.Saving() ? static_cast<int16_t>(PaperCount(subject.block)) : printer.PaperNum);
  }
  if ((sections & BACKUP_FONTS) != 0) TransferFonts(io, subject.fonts);
  return true;
}

// ---- saving ----

void SaveVersion(ProfileIo& io, const WCHAR* printerName) {
  io.BeginSection(kVersionSection);
  char version[kVersionLength];
  FormatVersion(version);
  io.RawText("FileVersion", version, kVersionLength);
  char* minor = WriteNumber(version, HIBYTE(kDriverVersion), 16, 2);
  *WriteNumber(minor, LOBYTE(kDriverVersion), 10, 2) = 0;
  io.RawText("DriverVersion", version, kVersionLength);
  char name[kPrinterNameBytes];
  ToCodePage(printerName, -1, name, kPrinterNameBytes);
  io.RawText("DriverName", name, kPrinterNameBytes);
}

void SaveSync(ProfileIo& io, const DriverSettingsBlock& block) {
  io.BeginSection(kSyncSection);
  io.ClearSection();
  char value[kSyncLength];
  *WriteNumber(value, static_cast<uint16_t>(block.Record.Private.nTSMode), 16) = 0;
  io.RawText("SYNC", value, kSyncLength);
}

bool SaveBackup(ProfileIo& io, const BackupSubject& subject, unsigned sections) {
  SaveVersion(io, subject.printerName);
  if (!TransferSections(io, subject, sections)) return false;
  SaveSync(io, subject.block);
  return true;
}

// ---- loading ----

// Returns true when the file is a backup of this format; shows a message otherwise.
bool CheckVersion(ProfileIo& io, HWND owner) {
  io.BeginSection(kVersionSection);
  if (!io.SectionHasKeys()) {
    ShowMessage(owner, IDS_NOT_A_BACKUP, MB_ICONHAND);
    return false;
  }
  char expected[kVersionLength];
  FormatVersion(expected);
  char version[kVersionLength] = {};
  io.RawText("FileVersion", version, kVersionLength);
  if (std::strcmp(version, expected) == 0) return true;
  ShowMessage(owner, IDS_BACKUP_VERSION_WRONG, MB_ICONEXCLAMATION);
  return false;
}

// Parses lower-case hexadecimal digits up to the first other character. Returns the number modulo
// 256.
int ParseSync(const char* text) {
  unsigned value = 0;
  for (;; ++text) {
    if (*text >= '0' && *text <= '9') {
      value = value * 16 + static_cast<unsigned>(*text - '0');
    } else if (*text >= 'a' && *text <= 'f') {
      value = value * 16 + static_cast<unsigned>(*text - 'a' + 10);
    } else {
      return static_cast<int>(value % 256);
    }
  }
}

void LoadSync(ProfileIo& io, const BackupSubject& subject) {
  io.BeginSection(kSyncSection);
  char value[kSyncLength] = {};
  io.RawText("SYNC", value, kSyncLength);
  int16_t& mode = subject.block.Record.Private.nTSMode;
  mode = static_cast<int16_t>(ParseSync(value));
  DeviceSettings(subject.printerName).SetSyncPrint(mode != 0);
}

bool LoadBackup(ProfileIo& io, HWND owner, const BackupSubject& subject, unsigned sections) {
  if (!CheckVersion(io, owner) || !TransferSections(io, subject, sections)) return false;
  const bool fonts = subject.fonts.DecoFontNum > 0 || subject.fonts.BarFontNum > 0;
  if ((sections & BACKUP_FONTS) != 0 && fonts) {
    ShowMessage(owner, IDS_LOADED_FONTS_WARNING, MB_ICONEXCLAMATION);
  }
  LoadSync(io, subject);
  return true;
}

// Returns true when the process's ANSI code page leaves the Japanese section names unchanged.
bool SectionNamesSurvive() {
  constexpr const WCHAR* kNames[] = {kVersionSection, kDriverSection,   kFreePaperSection,
                                     kDeviceSection,  kHalftoneSection, kPaperNumSection,
                                     kDecoNumSection, kBarNumSection,   kSyncSection};
  for (const WCHAR* name : kNames) {
    char bytes[ProfileIo::kSectionBytes];
    if (ToCodePage(name, -1, bytes, sizeof bytes) == 0 || !SurvivesAnsiCodePage(bytes))
      return false;
  }
  return true;
}

}  // namespace

bool BackupFileTransfer(HWND owner, const WCHAR* fileName, const BackupSubject& subject,
                        TransferDirection direction, unsigned sections) {
  if (!SectionNamesSurvive()) return false;
  ProfileIo io;
  const TransferStart start = io.Open(fileName, direction);
  if (start == TransferStart::kBadPath && direction == TransferDirection::kLoad) {
    ShowMessage(owner, IDS_NOT_A_BACKUP, MB_ICONHAND);
  }
  if (start != TransferStart::kReady) return false;
  return io.Saving() ? SaveBackup(io, subject, sections) : LoadBackup(io, owner, subject, sections);
}

}  // namespace kestrel
