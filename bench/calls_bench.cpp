// The time of one call of an export, for a printer with 1 and with 20 papers: a capability query, a
// resolution without and with an input record, a conversion. The counters are the numbers of
// allocations and of spooler calls. "Spooler" measures the stand-in's spooler calls of a resolution
// alone; the difference is the module's time.
#include <windows.h>
#include <benchmark/benchmark.h>
#include <winddiui.h>
#include <winspool.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "driver/default_settings.h"
#include "driver/settings_block.h"
#include "platform/machine/machine.h"
#include "tests/support/bin_dir.h"

namespace kestrel {
namespace {

using platform::Fault;

std::vector<std::byte> Bytes(const void* data, size_t size) {
  const auto* bytes = static_cast<const std::byte*>(data);
  return {bytes, bytes + size};
}

// A computer with one printer that has the given number of registered papers.
class Printer {
 public:
  explicit Printer(int64_t papers) {
    platform::PrinterSetup setup;
    setup.name = name_;
    machine_->AddPrinter(setup);
    FillDefaultSettings(block_, nullptr, name_.c_str());
    block_.Record.Private.Signature = SETTINGS_SIGNATURE;
    std::fill_n(block_.Printer.Papers, papers, PaperInfo(block_.Printer.Papers[0]));
    block_.Printer.PaperNum = static_cast<int16_t>(papers);
    machine_->SetDefaultRecord(name_, Bytes(&block_.Record, kRecordSize));
    machine_->SetData(name_, u"Private DevMode",
                      {REG_BINARY, Bytes(&block_.Printer, kPrinterPartSize)});
    PRINTER_DEFAULTSW all = {nullptr, nullptr, PRINTER_ALL_ACCESS};
    if (!OpenPrinterW(name_.data(), &handle_, &all)) std::abort();
  }
  ~Printer() { ClosePrinter(handle_); }
  Printer(const Printer&) = delete;
  Printer& operator=(const Printer&) = delete;

  HANDLE handle() const { return handle_; }
  LPWSTR name() { return name_.data(); }
  DEVMODEW* record() { return &block_.Record.Public; }
  platform::Machine& machine() { return *machine_; }

 private:
  std::unique_ptr<platform::Machine> machine_ = platform::Machine::Create();
  std::u16string name_ = u"Label Printer";
  DriverSettingsBlock block_ = {};
  HANDLE handle_ = nullptr;
};

template <typename Call>
void Measure(benchmark::State& state, Call call) {
  Printer printer(state.range(0));
  platform::Faults& faults = printer.machine().faults;
  faults.Clear();
  if (!call(printer)) state.SkipWithError("the call failed");
  const int allocations = faults.Calls(Fault::kAllocation);
  const int spoolerCalls = faults.Calls(Fault::kSpooler);
  for (auto _ : state) benchmark::DoNotOptimize(call(printer));
  state.counters["allocations"] = allocations;
  state.counters["spooler"] = spoolerCalls;
}

// Calls the export of a loaded file: the Windows DLL or the native module.
void Capability(benchmark::State& state, const char* file) {
  std::vector<WCHAR> names((kPaperCapacity + 1) * 64);
  HMODULE module = nullptr;
  decltype(&DrvDeviceCapabilities) query = nullptr;
  Measure(state, [&](Printer& printer) {
    if (module == nullptr) {
      printer.machine().InstallModule(u"C:\\driver.dll", support::Built(file));
      module = LoadLibraryW(u"C:\\driver.dll");
      query = reinterpret_cast<decltype(query)>(
          reinterpret_cast<void (*)()>(GetProcAddress(module, "DrvDeviceCapabilities")));
      if (query == nullptr) return false;
    }
    const auto count = static_cast<LONG>(
        query(printer.handle(), printer.name(), 16, names.data(), nullptr));  // DC_PAPERNAMES
    return count == state.range(0) + 1;
  });
}

void Resolution(benchmark::State& state) {
  SettingsRecord output;
  Measure(state, [&](Printer& printer) {
    return DrvDocumentProperties(nullptr, printer.handle(), printer.name(), &output.Public, nullptr,
                                 DM_COPY) == 1;
  });
}

void ResolutionWithInput(benchmark::State& state) {
  SettingsRecord output;
  Measure(state, [&](Printer& printer) {
    return DrvDocumentProperties(nullptr, printer.handle(), printer.name(), &output.Public,
                                 printer.record(), DM_COPY | DM_IN_BUFFER) == 1;
  });
}

void Conversion(benchmark::State& state) {
  SettingsRecord output;
  Measure(state, [&](Printer& printer) {
    LONG size = kRecordSize;
    return DrvConvertDevMode(printer.name(), printer.record(), &output.Public, &size,
                             CDM_CONVERT) == TRUE;
  });
}

// The spooler calls of a resolution: the default record and the printer's part.
void Spooler(benchmark::State& state) {
  std::vector<BYTE> out(8192);
  Measure(state, [&](Printer& printer) {
    const auto size = static_cast<DWORD>(out.size());
    DWORD needed = 0;
    GetPrinterW(printer.handle(), 2, nullptr, 0, &needed);
    const bool record = GetPrinterW(printer.handle(), 2, out.data(), size, &needed) != FALSE;
    std::u16string value = u"Private DevMode";
    return record &&
           GetPrinterDataW(printer.handle(), value.data(), nullptr, out.data(), size, &needed) == 0;
  });
}

// Opening and closing a printer, which a conversion does in addition to a resolution.
void OpenAndClose(benchmark::State& state) {
  Measure(state, [&](Printer& printer) {
    HANDLE handle = nullptr;
    return OpenPrinterW(printer.name(), &handle, nullptr) && ClosePrinter(handle);
  });
}

BENCHMARK_CAPTURE(Capability, dll, "../../windows/x64/QM610rDRV1.dll")->Arg(1)->Arg(20);
BENCHMARK_CAPTURE(Capability, native, "QM610rDRV1.so")->Arg(1)->Arg(20);
BENCHMARK(Resolution)->Arg(1)->Arg(20);
BENCHMARK(ResolutionWithInput)->Arg(1)->Arg(20);
BENCHMARK(Conversion)->Arg(1)->Arg(20);
BENCHMARK(Spooler)->Arg(1)->Arg(20);
BENCHMARK(OpenAndClose)->Arg(1);

}  // namespace
}  // namespace kestrel

BENCHMARK_MAIN();
