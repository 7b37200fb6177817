// Whole backup and set-up files, and printer data of papers and fonts, as any bytes at all. The
// first byte tells what the rest is.
#include <windows.h>
#include <winspool.h>

#include <vector>

#include "files/backup_file.h"
#include "files/setup_file.h"
#include "fonts/font_store.h"
#include "paper/paper_table.h"
#include "tests/fuzz/harness.h"
#include "tests/support/settings.h"

namespace {

using namespace kestrel;
using support::kPrinter;

constexpr WCHAR kFile[] = u"C:\\data\\a.ini";
constexpr WCHAR kSetupFile[] = u"C:\\WINDOWS\\SetupKit_QM6_1R.INI";

struct Properties {
  DriverSettingsBlock block = support::DefaultBlock();
  FontStore fonts = {};

  explicit Properties(HANDLE printer) { Require(LoadFontStore(fonts, printer, GetProcessHeap())); }
  ~Properties() { FreeFontStore(fonts, GetProcessHeap()); }
  Properties(const Properties&) = delete;

  // What was saved is read back from the file's bytes.
  bool Transfer(TransferDirection direction) {
    const bool done =
        BackupFileTransfer(nullptr, kFile, {block, fonts, kPrinter}, direction, BACKUP_ALL);
    platform::Machine& machine = platform::Machine::Current();
    if (direction == TransferDirection::kSave) machine.HoldProfile(kFile, machine.HeldProfile());
    return done;
  }
  bool operator==(const Properties& other) const {
    constexpr size_t kList = kFontCapacity * sizeof(FontRecord);
    return std::memcmp(&block, &other.block, sizeof block) == 0 &&
           fonts.DecoFontNum == other.fonts.DecoFontNum &&
           fonts.BarFontNum == other.fonts.BarFontNum &&
           std::memcmp(fonts.DecoFonts, other.fonts.DecoFonts, kList) == 0 &&
           std::memcmp(fonts.BarFonts, other.fonts.BarFonts, kList) == 0;
  }
};

void RequireSound(const Properties& properties) {
  const FontStore& fonts = properties.fonts;
  Require(fonts.DecoFontNum >= 0 && fonts.DecoFontNum <= kFontCapacity);
  Require(fonts.BarFontNum >= 0 && fonts.BarFontNum <= kFontCapacity);
  Require(PaperCount(properties.block) <= kPaperCapacity);
}

// A file that loads comes back the same from a save, once what it could not hold has gone.
void LoadBackup(platform::Machine& machine, std::string_view bytes, HANDLE printer, bool save) {
  machine.HoldProfile(kFile, bytes);
  Properties first(printer);
  if (!first.Transfer(TransferDirection::kLoad)) return;
  RequireSound(first);
  Require(first.block.Printer.PaperNum >= 0 && first.block.Printer.PaperNum <= kPaperCapacity);
  if (!save) return;
  Properties second(printer);
  Properties third(printer);
  Require(first.Transfer(TransferDirection::kSave) && second.Transfer(TransferDirection::kLoad));
  Require(second.Transfer(TransferDirection::kSave) && third.Transfer(TransferDirection::kLoad));
  Require(second == third);
}

void ImportSetup(platform::Machine& machine, std::string_view bytes) {
  machine.HoldProfile(kSetupFile, bytes);
  auto block = support::DefaultBlock();
  const auto before = block;
  if (!ImportSetupFile(block, nullptr, kPrinter))
    Require(std::memcmp(&block, &before, sizeof block) == 0);
  else
    Require(block.Printer.PaperNum >= 0 && block.Printer.PaperNum <= kPaperCapacity);
}

// The first six bytes are "CreateFont Number", the rest its data and the papers.
void UsePrinterData(platform::Machine& machine, std::string_view bytes, HANDLE printer, bool save) {
  const auto value = [](std::string_view part) {
    return platform::DataValue{REG_BINARY, support::BytesOf(part.data(), part.size())};
  };
  machine.SetData(kPrinter, u"CreateFont Number", value(bytes.substr(0, 6)));
  machine.SetData(kPrinter, u"CreateFont Data",
                  value(bytes.substr(std::min<size_t>(bytes.size(), 6))));
  Properties properties(printer);
  std::memcpy(static_cast<void*>(&properties.block.Printer), bytes.data(),
              std::min<size_t>(bytes.size(), kPrinterPartSize));
  RequireSound(properties);
  Require(SaveFontStore(printer, properties.fonts));
  Properties again(printer);
  Require(again.fonts.DecoFontNum <= properties.fonts.DecoFontNum &&
          again.fonts.BarFontNum == properties.fonts.BarFontNum);
  FillPublicFields(properties.block, printer, kPrinter);
  machine.RemoveData(kPrinter, u"CreateFont Number");
  machine.RemoveData(kPrinter, u"CreateFont Data");
  if (!save) return;
  // Whatever lies in the records, the file made of them can be loaded.
  machine.HoldProfile(kFile, "");
  Require(properties.Transfer(TransferDirection::kSave));
  Require(again.Transfer(TransferDirection::kLoad));
  RequireSound(again);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const DrivesInMemory inMemory;
  static const auto machine = platform::Machine::Create();
  static const bool added = (machine->AddPrinter({.name = kPrinter}), true);
  static_cast<void>(added);
  if (size < 1) return 0;
  const std::string_view bytes(reinterpret_cast<const char*>(data + 1), size - 1);
  HANDLE printer = nullptr;
  PRINTER_DEFAULTSW all = {nullptr, nullptr, PRINTER_ALL_ACCESS};
  OpenPrinterW(const_cast<LPWSTR>(kPrinter), &printer, &all);
  const bool save = (data[0] & 0x38) == 0x38;  // seldom, for it is slow
  switch (data[0] % 8) {
    case 0:
    case 1:
    case 2:
      ImportSetup(*machine, bytes);
      break;
    case 3:
      UsePrinterData(*machine, bytes, printer, save);
      break;
    default:
      LoadBackup(*machine, bytes, printer, save);
      break;
  }
  ClosePrinter(printer);
  Require(machine->LiveAllocations() == 0 && machine->OpenPrinterHandles() == 0);
  return 0;
}
