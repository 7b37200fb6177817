// Every allocation, spooler, file and module call in turn fails once, in every entry point.
#include <gtest/gtest.h>

#include <functional>

#include "tests/support/settings.h"
#include "tests/support/test_machine.h"

namespace kestrel {
namespace {

using platform::Fault;
using support::kPrinter;

// What an entry point answered and wrote; the machine's state is read apart.
struct Outcome {
  LONG answer = 0;
  LONG size = 452;
  DWORD error = 0;
  std::vector<std::byte> output = std::vector<std::byte>(3000, std::byte{0xCD});
};

class FaultWalk : public support::MachineTest {
 protected:
  void SetUp() override {
    MachineTest::SetUp();
    stored_ = support::DefaultBlock();
    stored_.Record.Private.nPrintSpeed = 5;
    stored_.Printer.PaperNum = 3;
    Restore();
  }
  void Restore() {
    support::StoreBlock(machine(), stored_);
    machine().RemoveData(kPrinter, u"SPLUserModePrinterDriver");
  }

  // Runs a call with its n-th call of each kind failing, until no call is left to fail.
  void Walk(const std::function<void(Outcome&)>& call,
            const std::function<void(const Outcome&, Fault)>& check) {
    for (const Fault kind :
         {Fault::kAllocation, Fault::kSpooler, Fault::kFile, Fault::kModule, Fault::kRegistry}) {
      for (int n = 1;; ++n) {
        ASSERT_LT(n, 2000);
        Restore();
        const int handles = machine().OpenPrinterHandles();
        const int blocks = machine().LiveAllocations();
        Outcome outcome;
        SetLastError(0);
        machine().faults.FailNth(kind, n);
        call(outcome);
        outcome.error = GetLastError();
        const bool struck = machine().faults.Struck(kind);
        machine().faults.Clear();
        EXPECT_EQ(machine().OpenPrinterHandles(), handles);
        EXPECT_EQ(machine().LiveAllocations(), blocks);
        EXPECT_EQ(machine().OpenModules(), 1);
        check(outcome, kind);
        if (!struck) break;
        ++struck_;
      }
    }
  }
  DEVMODEW* Record(Outcome& outcome) { return reinterpret_cast<DEVMODEW*>(outcome.output.data()); }
  // A record that came back is the stored one or the defaults, never a mixture.
  static void ExpectWhole(const Outcome& outcome) {
    const auto* record = outcome.output.data();
    EXPECT_EQ(support::At<uint32_t>(record, 448), SETTINGS_SIGNATURE);
    EXPECT_EQ(support::At<WORD>(record, 72), 0x270F);
    const int16_t speed = support::At(record, 398);
    EXPECT_TRUE(speed == 5 || speed == 1) << speed;
    EXPECT_EQ(outcome.output[452], std::byte{0xCD});
  }
  static void ExpectUntouched(const Outcome& outcome) {
    EXPECT_EQ(std::count(outcome.output.begin(), outcome.output.end(), std::byte{0xCD}), 3000);
  }

  std::u16string name_ = kPrinter;
  DriverSettingsBlock stored_;
  int struck_ = 0;
};

TEST_F(FaultWalk, Conversion) {
  for (const DWORD mode : {CDM_CONVERT, CDM_DRIVER_DEFAULT}) {
    Walk(
        [&](Outcome& o) {
          o.answer = exports_.DrvConvertDevMode(name_.data(), &stored_.Record.Public, Record(o),
                                                &o.size, mode);
        },
        [](const Outcome& o, Fault) {
          if (o.answer == TRUE) {
            EXPECT_EQ(o.size, 452);
            ExpectWhole(o);
          } else {
            EXPECT_TRUE(o.size == 0 || (o.size == 452 && o.error == 87)) << o.size << o.error;
            ExpectUntouched(o);
          }
        });
  }
  EXPECT_GT(struck_, 8);
}

TEST_F(FaultWalk, DocumentProperties) {
  const support::OpenedPrinter printer;
  Walk(
      [&](Outcome& o) {
        o.answer = exports_.DrvDocumentProperties(nullptr, printer, name_.data(), Record(o),
                                                  &stored_.Record.Public, DM_COPY | DM_MODIFY);
      },
      [](const Outcome& o, Fault kind) {
        EXPECT_TRUE(o.answer == 1 || (o.answer == 0 && kind == Fault::kAllocation));
        o.answer == 1 ? ExpectWhole(o) : ExpectUntouched(o);
      });
  EXPECT_GT(struck_, 4);
}

TEST_F(FaultWalk, Capabilities) {
  const support::OpenedPrinter printer;
  for (const WORD index : {DC_PAPERS, DC_PAPERNAMES}) {
    Walk(
        [&](Outcome& o) {
          o.answer = static_cast<LONG>(exports_.DrvDeviceCapabilities(
              printer, name_.data(), index, o.output.data(), &stored_.Record.Public));
        },
        [](const Outcome& o, Fault kind) {
          EXPECT_TRUE(o.answer == 4 || o.answer == 2 ||
                      (o.answer == -1 && kind == Fault::kAllocation))
              << o.answer;
          if (o.answer == -1) ExpectUntouched(o);
        });
  }
  Walk(
      [&](Outcome& o) {
        o.answer = static_cast<LONG>(exports_.DrvSplDeviceCaps(printer, name_.data(), DC_MEDIAREADY,
                                                               o.output.data(), 1500, nullptr));
      },
      [](const Outcome& o, Fault kind) {
        EXPECT_TRUE(o.answer == 4 || o.answer == 2 ||
                    (o.answer == -1 && kind == Fault::kAllocation));
      });
}

TEST_F(FaultWalk, JobAttributes) {
  const support::OpenedPrinter printer;
  int memory = 0;
  Walk(
      [&](Outcome& o) {
        o.answer = exports_.DrvQueryJobAttributes(printer, &stored_.Record.Public, 3,
                                                  reinterpret_cast<BYTE*>(o.output.data()));
      },
      [&](const Outcome& o, Fault kind) {
        EXPECT_EQ(o.answer, FALSE);
        if (o.error == ERROR_NOT_ENOUGH_MEMORY && kind == Fault::kAllocation) ++memory;
        const auto color = support::At<DWORD>(o.output.data(), 28);
        EXPECT_TRUE(color == 0 || color == 0xCDCDCDCD);
        EXPECT_EQ(support::At<WORD>(o.output.data(), 32), color == 0 ? 203 : 0xCDCD);
      });
  EXPECT_GT(memory, 0);
}

TEST_F(FaultWalk, PrinterInitialisation) {
  const auto defaults = support::DefaultBlock();
  const auto fresh = support::BytesOf(&defaults.Printer, 3338);
  const auto before = support::BytesOf(&stored_.Printer, 3338);
  Walk(
      [&](Outcome& o) {
        o.answer = exports_.DrvPrinterEvent(name_.data(), PRINTER_EVENT_INITIALIZE, 0, 0);
      },
      [&](const Outcome& o, Fault) {
        EXPECT_EQ(o.answer, TRUE);
        const auto part = machine().Data(kPrinter, u"Private DevMode")->bytes;
        EXPECT_TRUE(part == fresh || part == before);
        const auto module = machine().Data(kPrinter, u"SPLUserModePrinterDriver");
        EXPECT_TRUE(!module || module->bytes.size() == 20);
      });
  EXPECT_GT(struck_, 4);
}

// The sheets themselves are walked with the sessions; here only what lies in front of them.
TEST_F(FaultWalk, SheetsThatAreCancelledAtOnce) {
  const support::OpenedPrinter printer;
  const auto untouched = [](const Outcome& o, Fault) { ExpectUntouched(o); };
  Walk(
      [&](Outcome& o) {
        o.answer = exports_.DrvDocumentProperties(nullptr, printer, name_.data(), Record(o),
                                                  nullptr, DM_COPY | DM_PROMPT);
        EXPECT_TRUE(o.answer == -1 || o.answer == CPSUI_CANCEL) << o.answer;
      },
      untouched);
  Walk(
      [&](Outcome& o) {
        o.answer = exports_.PrinterProperties(nullptr, printer);
        EXPECT_FALSE(o.answer);
      },
      untouched);
}

}  // namespace
}  // namespace kestrel
