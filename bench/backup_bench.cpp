// Saves and loads a backup file and opens a sheet, with 20 papers and a number of fonts. A save
// replaces the whole file for each key. Its minimum time is therefore that of writing file_calls
// times bytes.
#include <windows.h>
#include <benchmark/benchmark.h>
#include <winddiui.h>
#include <winspool.h>

#include <memory>
#include <vector>

#include "driver/handles.h"
#include "driver/instance.h"
#include "files/backup_file.h"
#include "fonts/barcode_kinds.h"
#include "fonts/font_store.h"
#include "platform/machine/machine.h"
#include "tests/support/bin_dir.h"
#include "tests/support/settings.h"

namespace {

using namespace kestrel;

constexpr WCHAR kFile[] = u"C:\\data\\a.ini";

// A printer with 20 papers and a number of fonts, half of them decorative. The barcode fonts use
// all kinds in turn.
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
      bar[i].FontKind = kBarcodeFont;
      std::fill_n(bar[i].Bar.BarFontName, 31, u'線');
      bar[i].Bar.BarcodeKind = kBarcodeKinds[i % kBarcodeKindCount].id;
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

// Opens a user-default sheet for the stored papers and fonts. No user is attached, so that the
// sheet closes at once.
void OpenUserDefaultSheet(benchmark::State& state) {
  FullPrinter full(state.range(0));
  platform::Machine& machine = *full.machine;
  std::u16string name = support::kPrinter;
  machine.AddPrinter({.name = name});
  support::StoreBlock(machine, full.block);
  const std::u16string path = machine.driverDirectory() + u"\\3\\QM610rDRV1.DLL";
  machine.InstallModule(path, support::Built("QM610rDRV1.so"));
  const Module module(LoadLibraryW(path.c_str()));
  SetModuleInstance(module.get());
  {
    HANDLE handle = nullptr;
    PRINTER_DEFAULTSW all = {nullptr, nullptr, PRINTER_ALL_ACCESS};
    OpenPrinterW(name.data(), &handle, &all);
    const Printer printer(handle);
    full.fonts.Loaded = true;
    SaveFontStore(printer.get(), full.fonts);
    // On the heap, as the sheet library requires.
    const auto header = std::make_unique<DOCUMENTPROPERTYHEADER>();
    header->cbSize = sizeof *header;
    header->hPrinter = printer.get();
    header->pszPrinterName = name.data();
    header->fMode = DM_PROMPT | DM_USER_DEFAULT;
    machine.faults.Clear();
    for (auto _ : state) {
      DWORD result = CPSUI_OK;
      const LONG shown = CommonPropertySheetUIW(nullptr, DrvDocumentPropertySheets,
                                                reinterpret_cast<LPARAM>(header.get()), &result);
      if (shown < 0 || result != DWORD{CPSUI_CANCEL}) state.SkipWithError("not shown");
    }
    const auto calls = static_cast<double>(machine.faults.Calls(platform::Fault::kSpooler));
    state.counters["spooler"] = calls / static_cast<double>(state.iterations());
  }
  SetModuleInstance(nullptr);
}
BENCHMARK(OpenUserDefaultSheet)->Arg(0)->Arg(70)->Unit(benchmark::kMicrosecond);

}  // namespace
