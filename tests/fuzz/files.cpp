// Arbitrary bytes as whole backup and set-up files, and as the printer data of papers and fonts.
// The first byte selects which.
#include <windows.h>
#include <winspool.h>

#include "files/backup_file.h"
#include "files/setup_file.h"
#include "fonts/font_store.h"
#include "paper/paper_table.h"
#include "tests/fuzz/harness.h"

namespace {

using namespace kestrel;
using support::kPrinter;

constexpr WCHAR kFile[] = u"C:\\data\\a.ini";
constexpr WCHAR kSetupFile[] = u"C:\\WINDOWS\\SetupKit_QM6_1R.INI";

platform::Machine& Computer() {
  static const auto machine = NewComputer();
  return *machine;
}

const DriverSettingsBlock& FactoryBlock() {
  static const auto block = support::DefaultBlock();
  return block;
}

void RequireSound(const PrinterSettingsPart& part) {
  Require(part.PaperNum >= 0 && part.PaperNum <= kPaperCapacity);
}

struct Properties {
  DriverSettingsBlock block = FactoryBlock();
  FontStore fonts = {};

  explicit Properties(HANDLE printer) { Require(LoadFontStore(fonts, printer, GetProcessHeap())); }
  ~Properties() { FreeFontStore(fonts, GetProcessHeap()); }
  Properties(const Properties&) = delete;

  // Reads back what was saved from the bytes of the file.
  bool Transfer(TransferDirection direction) {
    const bool saves = direction == TransferDirection::kSave;
    const bool done =
        BackupFileTransfer(nullptr, kFile, {block, fonts, kPrinter}, direction, BACKUP_ALL);
    if (saves) Computer().SetMemoryProfile(kFile, Computer().MemoryProfile(kFile));
    for (const int count : {fonts.DecoFontNum, fonts.BarFontNum})
      Require(count >= 0 && count <= kFontCapacity);
    return done;
  }
  std::string Saved() {
    Require(Transfer(TransferDirection::kSave));
    return Computer().MemoryProfile(kFile);
  }
};

// A file that loads is the same after a save, once values that it cannot hold are dropped.
void LoadBackup(std::string_view bytes, HANDLE printer, bool save) {
  Computer().SetMemoryProfile(kFile, bytes);
  Properties first(printer);
  if (!first.Transfer(TransferDirection::kLoad)) return;
  RequireSound(first.block.Printer);
  if (!save) return;
  Properties second(printer);
  Properties third(printer);
  first.Saved();
  Require(second.Transfer(TransferDirection::kLoad));
  const std::string saved = second.Saved();
  Require(third.Transfer(TransferDirection::kLoad) && third.Saved() == saved);
}

void ImportSetup(std::string_view bytes) {
  Computer().SetMemoryProfile(kSetupFile, bytes);
  auto block = FactoryBlock();
  if (!ImportSetupFile(block, nullptr, kPrinter))
    Require(std::memcmp(&block, &FactoryBlock(), sizeof block) == 0);
  RequireSound(block.Printer);
}

// The first six bytes are "CreateFont Number", the rest its data and the papers.
void UsePrinterData(std::string_view bytes, HANDLE printer, bool save) {
  const auto keep = [](const WCHAR* name, std::string_view part) {
    Computer().SetData(kPrinter, name, {REG_BINARY, support::BytesOf(part.data(), part.size())});
  };
  keep(u"CreateFont Number", bytes.substr(0, 6));
  keep(u"CreateFont Data", bytes.substr(std::min<size_t>(bytes.size(), 6)));
  Properties properties(printer);
  std::memcpy(static_cast<void*>(&properties.block.Printer), bytes.data(),
              std::min<size_t>(bytes.size(), kPrinterPartSize));
  Require(PaperCount(properties.block) <= kPaperCapacity);
  Require(SaveFontStore(printer, properties.fonts));
  Properties again(printer);
  Require(again.fonts.DecoFontNum <= properties.fonts.DecoFontNum &&
          again.fonts.BarFontNum == properties.fonts.BarFontNum);
  FillPublicFields(properties.block, printer, kPrinter);
  Computer().RemoveData(kPrinter, u"CreateFont Number");
  Computer().RemoveData(kPrinter, u"CreateFont Data");
  if (!save) return;
  // A file made of any records can be loaded.
  Computer().SetMemoryProfile(kFile, "");
  properties.Saved();
  Require(again.Transfer(TransferDirection::kLoad));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 1) return 0;
  Computer();
  const std::string_view bytes(reinterpret_cast<const char*>(data + 1), size - 1);
  const bool save = (data[0] & 0x38) == 0x38;  // rarely, because it is slow
  {
    const Printer printer = OpenedPrinter();
    if (data[0] % 8 < 3)
      ImportSetup(bytes);
    else if (data[0] % 8 == 3)
      UsePrinterData(bytes, printer.get(), save);
    else
      LoadBackup(bytes, printer.get(), save);
  }
  Require(Computer().LiveAllocations() == 0 && Computer().OpenPrinterHandles() == 0);
  return 0;
}
