// Concurrent calls on several threads; also run under the thread sanitizer.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <thread>

#include "tests/support/settings.h"
#include "tests/support/test_machine.h"

namespace kestrel {
namespace {

// Returns a block all of whose paper sizes are the same number, which identifies the version.
DriverSettingsBlock Version(int16_t number) {
  auto block = support::DefaultBlock();
  block.Printer.PaperNum = 20;
  block.Printer.Papers[0].LabelWidth = block.Printer.Papers[0].LabelHeight = number;
  std::fill_n(block.Printer.Papers, 20, PaperInfo(block.Printer.Papers[0]));
  return block;
}

class Threads : public support::MachineTest {
 protected:
  // Calls each query once. Returns the number of results that mix two versions.
  int CountMixedResults(HANDLE printer, std::u16string name, DEVMODEW* input) {
    LONG sizes[42] = {};
    int mixed =
        exports_.DrvDeviceCapabilities(printer, name.data(), DC_PAPERSIZE, sizes, input) != 21;
    for (int i = 0; i < 40; ++i) mixed += sizes[i] != sizes[0];
    mixed += sizes[0] != 111 && sizes[0] != 222;
    SettingsRecord record{};
    LONG size = 452;
    mixed += !exports_.DrvConvertDevMode(name.data(), input, &record.Public, &size, CDM_CONVERT);
    mixed += record.Public.dmPaperWidth != record.Public.dmPaperLength;
    mixed += exports_.DrvDocumentProperties(nullptr, printer, name.data(), &record.Public, input,
                                            DM_COPY | DM_MODIFY) != 1;
    mixed += record.Private.Signature != SETTINGS_SIGNATURE;
    ATTRIBUTE_INFO_4 info{};
    exports_.DrvQueryJobAttributes(printer, input, 4, reinterpret_cast<BYTE*>(&info));
    return mixed;
  }
};

TEST_F(Threads, EachResultIsOldOrNewAsAWhole) {
  const std::u16string names[] = {support::kPrinter, u"倉庫 1F,LPT1:"};
  machine().AddPrinter({.name = names[1]});
  for (const auto& name : names) support::StoreBlock(machine(), Version(111), name.c_str());
  std::atomic<bool> stop = false;
  std::atomic<int> mixed = 0, rounds = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < 8; ++i) {
    threads.emplace_back([&, name = names[i % 2]] {
      const support::OpenedPrinter printer(name);
      auto input = Version(333);
      input.Record.Public.dmFields = DM_ORIENTATION;
      for (; !stop; ++rounds) mixed += CountMixedResults(printer, name, &input.Record.Public);
    });
  }
  threads.emplace_back([&] {
    const support::OpenedPrinter first(names[0]), second(names[1]);
    DriverSettingsBlock versions[] = {Version(111), Version(222)};
    for (int n = 1; !stop; ++n)
      for (HANDLE printer : {HANDLE{first}, HANDLE{second}})
        SetPrinterDataW(printer, const_cast<LPWSTR>(u"Private DevMode"), REG_BINARY,
                        reinterpret_cast<BYTE*>(&versions[n % 2].Printer), kPrinterPartSize);
  });
  const char* seconds = std::getenv("KESTREL_THREAD_SECONDS");
  std::this_thread::sleep_for(
      std::chrono::milliseconds(seconds != nullptr ? 1000 * std::atoi(seconds) : 1500));
  stop = true;
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(mixed, 0);
  EXPECT_GT(rounds, 8);
}

}  // namespace
}  // namespace kestrel
