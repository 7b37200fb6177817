// Every allocation, spooler, file, module and registry call in turn fails once, in every entry
// point. The sheets themselves are walked with the sessions.
#include "tests/support/fault_walk.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/settings.h"
#include "tests/support/test_machine.h"

namespace kestrel {
namespace {

using platform::Fault;
using support::At;
using support::kPrinter;

class FaultWalk : public support::MachineTest {
 protected:
  static constexpr size_t kOutput = 3000;

  void SetUp() override {
    MachineTest::SetUp();
    stored_.Record.Private.nPrintSpeed = 5;
    stored_.Printer.PaperNum = 3;
  }
  // call() gives the answer; check(kind) looks at it, at output_, size_ and error_.
  template <typename Call, typename Check>
  void Walk(Call call, Check check) {
    using enum Fault;
    const auto fresh = [&] {
      support::StoreBlock(machine(), stored_);
      machine().RemoveData(kPrinter, u"SPLUserModePrinterDriver");
      std::fill_n(output_, kOutput, BYTE{0xCD});
      size_ = 452;
      SetLastError(0);
      answer_ = static_cast<LONG>(call());
      error_ = GetLastError();
    };
    EXPECT_GT(support::WalkFaults(machine(), {kAllocation, kSpooler, kFile, kModule, kRegistry},
                                  fresh, [&](Fault kind, bool) { check(kind); }),
              2);
  }
  DEVMODEW* Output() { return reinterpret_cast<DEVMODEW*>(output_); }
  DEVMODEW* Input() { return &stored_.Record.Public; }
  // A record that came back is the stored one or the defaults, never a mixture.
  bool IsWhole() {
    const int16_t speed = At(output_, 398);
    return At<uint32_t>(output_, 448) == SETTINGS_SIGNATURE && At<WORD>(output_, 72) == 0x270F &&
           (speed == 5 || speed == 1) && output_[452] == 0xCD;
  }
  bool IsUntouched() { return std::count(output_, output_ + kOutput, BYTE{0xCD}) == kOutput; }

  std::u16string name_ = kPrinter;
  DriverSettingsBlock stored_ = support::DefaultBlock();
  alignas(8) BYTE output_[kOutput];
  LONG answer_ = 0;
  LONG size_ = 0;
  DWORD error_ = 0;
};

TEST_F(FaultWalk, RecordsComeWholeOrNotAtAll) {
  for (const DWORD mode : {CDM_CONVERT, CDM_DRIVER_DEFAULT}) {
    Walk([&] { return exports_.DrvConvertDevMode(name_.data(), Input(), Output(), &size_, mode); },
         [&](Fault) {
           EXPECT_TRUE(answer_ ? IsWhole() : IsUntouched());
           EXPECT_TRUE(size_ == (answer_ || error_ == 87 ? 452 : 0)) << size_ << ' ' << error_;
         });
  }
  const support::OpenedPrinter printer;
  Walk(
      [&] {
        return exports_.DrvDocumentProperties(nullptr, printer, name_.data(), Output(), Input(),
                                              DM_COPY | DM_MODIFY);
      },
      [&](Fault kind) {
        EXPECT_TRUE(answer_ == 1 || (answer_ == 0 && kind == Fault::kAllocation));
        EXPECT_TRUE(answer_ == 1 ? IsWhole() : IsUntouched());
      });
}

TEST_F(FaultWalk, CapabilitiesAndAttributes) {
  const support::OpenedPrinter printer;
  const auto check = [&](Fault kind) {
    EXPECT_TRUE(answer_ == 4 || answer_ == 2 || (answer_ == -1 && kind == Fault::kAllocation));
    EXPECT_EQ(IsUntouched(), answer_ == -1);
  };
  for (const WORD index : {DC_PAPERS, DC_PAPERNAMES}) {
    Walk(
        [&] {
          return exports_.DrvDeviceCapabilities(printer, name_.data(), index, output_, Input());
        },
        check);
  }
  Walk(
      [&] {
        return exports_.DrvSplDeviceCaps(printer, name_.data(), DC_MEDIAREADY, output_, 1500,
                                         nullptr);
      },
      check);
  int withoutMemory = 0;
  Walk([&] { return exports_.DrvQueryJobAttributes(printer, Input(), 3, output_); },
       [&](Fault kind) {
         EXPECT_EQ(answer_, FALSE);
         withoutMemory += error_ == ERROR_NOT_ENOUGH_MEMORY && kind == Fault::kAllocation;
         const auto color = At<DWORD>(output_, 28);
         EXPECT_TRUE(color == 0 || color == 0xCDCDCDCD);
         EXPECT_EQ(At<WORD>(output_, 32), color == 0 ? 203 : 0xCDCD);
       });
  EXPECT_GT(withoutMemory, 0);
}

TEST_F(FaultWalk, PrinterInitialisation) {
  const auto defaults = support::DefaultBlock();
  Walk([&] { return exports_.DrvPrinterEvent(name_.data(), PRINTER_EVENT_INITIALIZE, 0, 0); },
       [&](Fault) {
         EXPECT_EQ(answer_, TRUE);
         const auto part = machine().Data(kPrinter, u"Private DevMode")->bytes;
         EXPECT_TRUE(part == support::BytesOf(defaults.Printer) ||
                     part == support::BytesOf(stored_.Printer));
         const auto module = machine().Data(kPrinter, u"SPLUserModePrinterDriver");
         EXPECT_TRUE(!module || module->bytes.size() == 20);
       });
}

}  // namespace
}  // namespace kestrel
