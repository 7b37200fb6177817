// Calls on several threads at once; run under the thread sanitizer as well.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <thread>
#include <vector>

#include "tests/support/settings.h"
#include "tests/support/test_machine.h"

namespace kestrel {
namespace {

using support::At;
using support::kPrinter;

constexpr int kThreads = 8;

class Threads : public support::MachineTest {
 protected:
  // A block whose paper part tells by each of its numbers which of two versions it is.
  static DriverSettingsBlock Version(int16_t number) {
    auto block = support::DefaultBlock();
    block.Printer.PaperNum = 20;
    for (PaperInfo& paper : block.Printer.Papers) {
      paper = block.Printer.Papers[0];
      paper.LabelWidth = number;
      paper.LabelHeight = number;
    }
    return block;
  }
  static std::chrono::milliseconds Duration() {
    const char* seconds = std::getenv("KESTREL_THREAD_SECONDS");
    return std::chrono::milliseconds(seconds != nullptr ? 1000 * std::atoi(seconds) : 1500);
  }

  // Asks everything once; answers the number of answers that were a mixture.
  int AskEverything(HANDLE printer, const std::u16string& printerName, DEVMODEW* input) {
    std::u16string name = printerName;
    int mixed = 0;
    LONG sizes[42] = {};
    const DWORD papers =
        exports_.DrvDeviceCapabilities(printer, name.data(), DC_PAPERSIZE, sizes, input);
    for (DWORD i = 0; papers == 21 && i < 40; ++i) mixed += sizes[i] != sizes[0];
    mixed += papers != 21 || (sizes[0] != 111 && sizes[0] != 222);

    SettingsRecord record{};
    LONG size = 452;
    mixed += !exports_.DrvConvertDevMode(name.data(), input, &record.Public, &size, CDM_CONVERT);
    mixed += record.Public.dmPaperWidth != record.Public.dmPaperLength;
    mixed += !exports_.DrvConvertDevMode(name.data(), nullptr, &record.Public, &size,
                                         CDM_DRIVER_DEFAULT);
    mixed += record.Private.Signature != SETTINGS_SIGNATURE;
    mixed += exports_.DrvDocumentProperties(nullptr, printer, name.data(), &record.Public, input,
                                            DM_COPY | DM_MODIFY) != 1;
    mixed +=
        exports_.DrvSplDeviceCaps(printer, name.data(), DC_PAPERNAMES, nullptr, 0, input) != 21;
    ATTRIBUTE_INFO_4 info{};
    exports_.DrvQueryJobAttributes(printer, input, 4, reinterpret_cast<BYTE*>(&info));
    return mixed;
  }
};

TEST_F(Threads, EachAnswerIsWhollyOldOrNew) {
  const DriverSettingsBlock versions[] = {Version(111), Version(222)};
  const std::u16string names[] = {kPrinter, u"倉庫 1F,LPT1:"};
  machine().AddPrinter({.name = names[1]});
  for (const auto& name : names) support::StoreBlock(machine(), versions[0], name.c_str());

  std::atomic<bool> stop = false;
  std::atomic<int> mixed = 0;
  std::atomic<int> rounds = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&, i] {
      const std::u16string& name = names[i % 2];
      const support::OpenedPrinter printer(name);
      auto input = Version(333);
      input.Record.Public.dmFields = DM_ORIENTATION;
      while (!stop) {
        mixed += AskEverything(printer, name, &input.Record.Public);
        ++rounds;
      }
    });
  }
  std::thread writer([&] {
    const support::OpenedPrinter first(names[0], PRINTER_ALL_ACCESS);
    const support::OpenedPrinter second(names[1], PRINTER_ALL_ACCESS);
    for (int n = 1; !stop; ++n) {
      auto part = versions[n % 2].Printer;
      for (HANDLE printer : {HANDLE{first}, HANDLE{second}})
        SetPrinterDataW(printer, const_cast<LPWSTR>(u"Private DevMode"), REG_BINARY,
                        reinterpret_cast<BYTE*>(&part), kPrinterPartSize);
    }
  });
  std::this_thread::sleep_for(Duration());
  stop = true;
  for (std::thread& thread : threads) thread.join();
  writer.join();
  EXPECT_EQ(mixed, 0);
  EXPECT_GT(rounds, kThreads);
}

}  // namespace
}  // namespace kestrel
