// Concurrent calls on several threads; also run under the thread sanitizer.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
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
  // Calls each query once. Expects that no result mixes two versions.
  void Query(HANDLE printer, std::u16string name, DEVMODEW* input) {
    LONG sizes[42] = {};
    EXPECT_EQ(exports_.DrvDeviceCapabilities(printer, name.data(), DC_PAPERSIZE, sizes, input), 21);
    EXPECT_TRUE(sizes[0] == 111 || sizes[0] == 222) << sizes[0];
    EXPECT_EQ(std::count(sizes, sizes + 40, sizes[0]), 40);
    SettingsRecord record{};
    LONG size = sizeof record;
    EXPECT_TRUE(exports_.DrvConvertDevMode(name.data(), input, &record.Public, &size, CDM_CONVERT));
    EXPECT_EQ(record.Public.dmPaperWidth, record.Public.dmPaperLength);
    EXPECT_EQ(exports_.DrvDocumentProperties(nullptr, printer, name.data(), &record.Public, input,
                                             DM_COPY | DM_MODIFY),
              1);
    EXPECT_EQ(record.Private.Signature, SETTINGS_SIGNATURE);
  }
};

TEST_F(Threads, EachResultIsOldOrNewAsAWhole) {
  const std::u16string names[] = {support::kPrinter, u"倉庫 1F,LPT1:"};
  machine().AddPrinter({.name = names[1]});
  for (const auto& name : names) support::StoreBlock(machine(), Version(111), name.c_str());
  constexpr int kReaders = 8;
  std::atomic<int> running = kReaders;
  std::vector<std::thread> threads;
  for (int i = 0; i < kReaders; ++i) {
    threads.emplace_back([&, name = names[i % 2]] {
      const support::OpenedPrinter printer(name);
      auto input = Version(333);
      input.Record.Public.dmFields = DM_ORIENTATION;
      for (int round = 0; round < 200; ++round) Query(printer, name, &input.Record.Public);
      --running;
    });
  }
  const support::OpenedPrinter first(names[0]), second(names[1]);
  DriverSettingsBlock versions[] = {Version(111), Version(222)};
  for (int n = 1; running > 0; ++n)
    for (HANDLE printer : {HANDLE{first}, HANDLE{second}})
      SetPrinterDataW(printer, const_cast<LPWSTR>(u"Private DevMode"), REG_BINARY,
                      reinterpret_cast<BYTE*>(&versions[n % 2].Printer), kPrinterPartSize);
  for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace kestrel
