// Capabilities as callers ask for them, with buffers that end where nobody may write.
#include <gtest/gtest.h>

#include <optional>

#include "tests/support/bin_dir.h"
#include "tests/support/guarded_buffer.h"
#include "tests/support/settings.h"
#include "tests/support/test_machine.h"

namespace kestrel {
namespace {

using support::At;
using support::kPrinter;

constexpr DWORD kNo = 0xFFFFFFFF;

class Capabilities : public support::MachineTest {
 protected:
  void SetUp() override {
    MachineTest::SetUp();
    printer_.emplace();
  }
  void TearDown() override {
    printer_.reset();
    MachineTest::TearDown();
  }
  DWORD Ask(int index, void* output = nullptr, DEVMODEW* record = nullptr) {
    return exports_.DrvDeviceCapabilities(*printer_, name_.data(), static_cast<WORD>(index), output,
                                          record);
  }

  std::u16string name_ = kPrinter;
  std::optional<support::OpenedPrinter> printer_;
  DriverSettingsBlock block_ = support::DefaultBlock();
};

TEST_F(Capabilities, AnswerByIndex) {
  constexpr DWORD kAnswers[37] = {
      kNo, 0x270F, 2,   2, 6553700, 106824260, 1,   0,   220, 232, 0x0401, 0x0E01, 1,
      1,   0,      1,   2, 90,      32767,     kNo, 1,   kNo, 0,   kNo,    kNo,    kNo,
      kNo, kNo,    kNo, 2, 0,       kNo,       0,   kNo, 3,   3,   kNo,
  };
  for (int index = 0; index < 37; ++index) {
    EXPECT_EQ(Ask(index), kAnswers[index]) << index;
    const bool writes = (index >= 2 && index <= 6) || index == 12 || index == 13 || index == 16 ||
                        index == 29 || index == 34 || index == 35;
    if (!writes) {
      EXPECT_EQ(Ask(index, support::GuardedBuffer(0).data()), kAnswers[index]) << index;
    }
  }
  EXPECT_EQ(Ask(0xFFFF), kNo);
}

TEST_F(Capabilities, OutputsAreTheGoldenBytes) {
  block_.Printer.PaperNum = 2;
  block_.Printer.HeadDensity = 305;
  block_.Record.Private.FreePaper.LabelWidth = 777;
  PaperInfo& inches = block_.Printer.Papers[1];
  std::fill_n(inches.PaperName, kPaperNameLength, u'A');
  inches.Unit = kInch;
  inches.LabelWidth = 2283;
  inches.LabelHeight = 4000;
  support::StoreBlock(machine(), block_);
  const std::string golden = support::Golden("capabilities.bin");
  for (size_t at = 0; at < golden.size();) {
    const auto index = At<WORD>(golden.data(), at);
    const auto size = At<WORD>(golden.data(), at + 2);
    const support::GuardedBuffer output(size);
    std::fill_n(output.data(), size, std::byte{0xCD});
    Ask(index, output.data());
    EXPECT_EQ(support::BytesOf(output.data(), size), support::BytesOf(golden.data() + at + 4, size))
        << index;
    at += 4 + size_t{size};
  }
}

TEST_F(Capabilities, CountPapersWhateverIsStored) {
  for (const auto& [stored, papers] : {std::pair{20, 20}, {21, 20}, {32767, 20}, {-1, 0}, {2, 2}}) {
    block_.Printer.PaperNum = static_cast<int16_t>(stored);
    support::StoreBlock(machine(), block_);
    const support::GuardedBuffer ids(2 * (static_cast<size_t>(papers) + 1));
    EXPECT_EQ(Ask(DC_PAPERS, ids.data()), DWORD(papers + 1)) << stored;
    EXPECT_EQ(At<WORD>(ids.data(), ids.size() - 2), 256);
  }
}

TEST_F(Capabilities, MergeTheCallersRecord) {
  block_.Record.Private.FreePaper.LabelHeight = 1234;
  const support::GuardedBuffer sizes(16);
  Ask(DC_PAPERSIZE, sizes.data(), &block_.Record.Public);
  EXPECT_EQ(At<LONG>(sizes.data(), 12), 1234);
}

TEST_F(Capabilities, SpoolerAsksWithASize) {
  block_.Printer.PaperNum = 20;
  support::StoreBlock(machine(), block_);
  const auto ask = [&](int index, void* output, DWORD size) {
    return exports_.DrvSplDeviceCaps(*printer_, name_.data(), static_cast<WORD>(index), output,
                                     size, nullptr);
  };
  for (const WORD index : {DC_PAPERNAMES, DC_MEDIAREADY}) {
    EXPECT_EQ(ask(index, nullptr, 0), 21u);
    using Case = std::pair<DWORD, DWORD>;
    for (const auto& [size, names] :
         {Case{0, kNo}, {63, kNo}, {64, 1}, {100, 1}, {128, 2}, {1344, 21}, {0xFFFFFFFF, 21}}) {
      const support::GuardedBuffer buffer(names == kNo ? 0 : names * 128);
      EXPECT_EQ(ask(index, buffer.data(), size), names) << size;
    }
  }
  BYTE output[64];
  for (const int index : {0, 1, 2, 3, 12, 34, 36}) {
    EXPECT_EQ(ask(index, nullptr, 0), kNo) << index;
    EXPECT_EQ(ask(index, output, 64), kNo) << index;
  }
}

}  // namespace
}  // namespace kestrel
