// Saving and loading of a backup file: 20 papers and a number of fonts. The counter tells the bytes
// that a save writes when each key replaces the file whole; it is the floor of a save.
#include <benchmark/benchmark.h>
#include <windows.h>

#include <vector>

#include "files/backup_file.h"
#include "fonts/barcode_kinds.h"
#include "platform/machine.h"
#include "tests/support/settings.h"

namespace {

using namespace kestrel;

constexpr WCHAR kFile[] = u"C:\\data\\a.ini";

// Half of the fonts of each kind, barcode kinds in turn.
struct FullPrinter {
  std::unique_ptr<platform::Machine> machine = platform::Machine::Create();
  DriverSettingsBlock block = support::DefaultBlock();
  std::vector<FontRecord> deco = std::vector<FontRecord>(kFontCapacity);
  std::vector<FontRecord> bar = std::vector<FontRecord>(kFontCapacity);
  FontStore fonts = {};

  explicit FullPrinter(int64_t count) {
    block.Printer.PaperNum = kPaperCapacity;
    for (PaperInfo& paper : block.Printer.Papers) paper = block.Printer.Papers[0];
    for (FontRecord& font : deco) {
      std::fill_n(font.Deco.DecoFontName, 31, u'字');
      std::fill_n(font.Deco.ResiFontName, 31, u'X');
    }
    for (size_t i = 0; i < bar.size(); ++i) {
      std::fill_n(bar[i].Bar.BarFontName, 31, u'線');
      bar[i].Bar.BarcodeKind = BarcodeKinds()[i % kBarcodeKindCount].id;
    }
    fonts.DecoFonts = deco.data();
    fonts.BarFonts = bar.data();
    fonts.DecoFontNum = static_cast<int16_t>(count / 2);
    fonts.BarFontNum = static_cast<int16_t>(count - count / 2);
    machine->WriteFile(kFile, "");
  }
  bool Transfer(TransferDirection direction) {
    return BackupFileTransfer(nullptr, kFile, {block, fonts, support::kPrinter}, direction,
                              BACKUP_ALL);
  }
};

void SaveBackup(benchmark::State& state) {
  FullPrinter printer(state.range(0));
  for (auto _ : state) {
    state.PauseTiming();
    printer.machine->WriteFile(kFile, "");
    printer.machine->faults.Clear();
    state.ResumeTiming();
    if (!printer.Transfer(TransferDirection::kSave)) state.SkipWithError("not saved");
  }
  state.counters["file_calls"] = printer.machine->faults.Calls(platform::Fault::kFile);
  state.counters["bytes"] = static_cast<double>(printer.machine->ReadFile(kFile)->size());
}
BENCHMARK(SaveBackup)->Arg(7)->Arg(35)->Arg(70)->Unit(benchmark::kMillisecond);

void LoadBackup(benchmark::State& state) {
  FullPrinter printer(state.range(0));
  printer.Transfer(TransferDirection::kSave);
  for (auto _ : state)
    if (!printer.Transfer(TransferDirection::kLoad)) state.SkipWithError("not loaded");
}
BENCHMARK(LoadBackup)->Arg(7)->Arg(35)->Arg(70)->Unit(benchmark::kMillisecond);

}  // namespace
