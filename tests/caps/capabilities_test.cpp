#include <gtest/gtest.h>

#include "tests/support/guarded_buffer.h"
#include "tests/support/settings.h"
#include "tests/support/test_machine.h"

namespace kestrel {
namespace {

using support::At;
using support::kPrinter;

class Capabilities : public support::MachineTest {
 protected:
  DWORD Ask(WORD index, void* output = nullptr) {
    return exports_.DrvDeviceCapabilities(printer_.value(), name_.data(), index, output, record_);
  }
  // The answer's output in a buffer that holds exactly that many bytes.
  std::vector<std::byte> Output(WORD index, size_t size) {
    const support::GuardedBuffer buffer(size);
    std::fill_n(buffer.data(), size, std::byte{0xCD});
    Ask(index, buffer.data());
    return support::BytesOf(buffer.data(), size);
  }
  std::u16string NameAt(const std::vector<std::byte>& output, size_t slot, size_t units = 64) {
    const size_t start = slot * units * 2;
    bool ended = false;
    std::u16string name;
    for (size_t i = 0; i < units; ++i) {
      const char16_t unit = At<char16_t>(output.data(), start + 2 * i);
      EXPECT_TRUE(!ended || unit == 0) << "behind the name";
      ended = ended || unit == 0;
      if (!ended) name += unit;
    }
    EXPECT_TRUE(ended);
    return name;
  }
  void SetUp() override {
    MachineTest::SetUp();
    printer_.emplace();
  }
  void TearDown() override {
    printer_.reset();
    MachineTest::TearDown();
  }
  DriverSettingsBlock FullBlock() {
    auto block = support::DefaultBlock();
    for (int i = 0; i < 20; ++i) {
      block.Printer.Papers[i] = block.Printer.Papers[0];
      std::fill_n(block.Printer.Papers[i].PaperName, 64, static_cast<char16_t>(u'A' + i));
      block.Printer.Papers[i].LabelWidth = static_cast<int16_t>(100 + i);
    }
    block.Printer.PaperNum = 20;
    return block;
  }

  std::u16string name_ = kPrinter;
  std::optional<support::OpenedPrinter> printer_;
  DEVMODEW* record_ = nullptr;
};

TEST_F(Capabilities, AnswerByIndex) {
  constexpr DWORD kNo = 0xFFFFFFFF;
  constexpr DWORD kAnswers[37] = {
      kNo, 0x270F, 2,   2, 6553700, 106824260, 1,   0,   220, 232, 0x0401, 0x0E01, 1,
      1,   0,      1,   2, 90,      32767,     kNo, 1,   kNo, 0,   kNo,    kNo,    kNo,
      kNo, kNo,    kNo, 2, 0,       kNo,       0,   kNo, 3,   3,   kNo,
  };
  for (WORD index = 0; index < 37; ++index) EXPECT_EQ(Ask(index), kAnswers[index]) << index;
  EXPECT_EQ(Ask(0xFFFF), kNo);
  const support::GuardedBuffer nothing(0);
  for (const int index : {0,  1,  7,  8,  9,  10, 11, 14, 15, 17, 18, 19, 20,
                          21, 22, 23, 24, 25, 26, 27, 28, 30, 31, 32, 33, 36})
    EXPECT_EQ(Ask(static_cast<WORD>(index), nothing.data()), kAnswers[index])
        << "writes nothing: " << index;
}

TEST_F(Capabilities, WriteTheirOutputExactly) {
  auto ids = Output(DC_PAPERS, 4);
  EXPECT_EQ(At<WORD>(ids.data(), 0), 257);
  EXPECT_EQ(At<WORD>(ids.data(), 2), 256);
  const auto sizes = Output(DC_PAPERSIZE, 16);
  for (const size_t entry : {size_t{0}, size_t{1}}) {
    EXPECT_EQ(At<LONG>(sizes.data(), entry * 8), 580);
    EXPECT_EQ(At<LONG>(sizes.data(), entry * 8 + 4), 680);
  }
  EXPECT_EQ(At<LONG>(Output(DC_MINEXTENT, 8).data(), 4), 100);
  EXPECT_EQ(At<LONG>(Output(DC_MAXEXTENT, 8).data(), 4), 1630);
  EXPECT_EQ(At<WORD>(Output(DC_BINS, 2).data(), 0), 256);
  EXPECT_EQ(NameAt(Output(DC_BINNAMES, 48), 0, 24), u"標準");
  for (const WORD index : {DC_PAPERNAMES, DC_MEDIAREADY}) {
    const auto names = Output(index, 256);
    EXPECT_EQ(NameAt(names, 0), u"Standard Label 58 x 68 mm");
    EXPECT_EQ(NameAt(names, 1), u"フリーサイズ");
  }
  EXPECT_EQ(NameAt(Output(DC_MEDIATYPENAMES, 384), 2), u"Glossy paper");
  EXPECT_EQ(At<DWORD>(Output(DC_MEDIATYPES, 12).data(), 8), 3u);
  EXPECT_EQ(At<LONG>(Output(DC_ENUMRESOLUTIONS, 8).data(), 0), 203);
}

TEST_F(Capabilities, FollowTheStoredPapers) {
  auto block = FullBlock();
  block.Printer.Papers[1].Unit = kInch;
  block.Printer.Papers[1].LabelWidth = 2283;
  block.Printer.Papers[1].LabelHeight = 4000;
  block.Printer.HeadDensity = 305;
  block.Record.Private.FreePaper.LabelWidth = 777;
  for (const auto& [stored, papers] : {std::pair{20, 20}, {21, 20}, {32767, 20}, {-1, 0}, {2, 2}}) {
    block.Printer.PaperNum = static_cast<int16_t>(stored);
    support::StoreBlock(machine(), block);
    const auto entries = static_cast<size_t>(papers) + 1;
    EXPECT_EQ(Ask(DC_PAPERS), entries) << stored;
    const auto sizes = Output(DC_PAPERSIZE, 8 * entries);
    EXPECT_EQ(At<LONG>(sizes.data(), 8 * (entries - 1)), 777);
    const auto ids = Output(DC_PAPERS, 2 * entries);
    EXPECT_EQ(At<WORD>(ids.data(), 2 * (entries - 1)), 256);
    const auto names = Output(DC_PAPERNAMES, 128 * entries);
    EXPECT_EQ(NameAt(names, entries - 1), u"フリーサイズ");
    if (papers < 2) continue;
    EXPECT_EQ(At<LONG>(sizes.data(), 8), 580);
    EXPECT_EQ(At<LONG>(sizes.data(), 12), 1016);
    EXPECT_EQ(NameAt(names, 0), std::u16string(63, u'A'));
  }
  EXPECT_EQ(At<LONG>(Output(DC_ENUMRESOLUTIONS, 8).data(), 4), 305);
}

TEST_F(Capabilities, MergeTheCallersRecord) {
  auto own = support::DefaultBlock();
  own.Record.Private.FreePaper.LabelHeight = 1234;
  record_ = &own.Record.Public;
  EXPECT_EQ(At<LONG>(Output(DC_PAPERSIZE, 16).data(), 12), 1234);
}

TEST_F(Capabilities, SpoolerAsksWithASize) {
  support::StoreBlock(machine(), FullBlock());
  const auto ask = [&](WORD index, void* output, DWORD size) {
    return exports_.DrvSplDeviceCaps(*printer_, name_.data(), index, output, size, nullptr);
  };
  constexpr DWORD kNo = 0xFFFFFFFF;
  for (const WORD index : {DC_PAPERNAMES, DC_MEDIAREADY}) {
    EXPECT_EQ(ask(index, nullptr, 0), 21u);
    for (const auto& [size, names] : {std::pair<DWORD, DWORD>{0, kNo},
                                      {63, kNo},
                                      {64, 1},
                                      {100, 1},
                                      {128, 2},
                                      {1344, 21},
                                      {0xFFFFFFFF, 21}}) {
      const support::GuardedBuffer buffer(names == kNo ? 0 : names * 128);
      EXPECT_EQ(ask(index, buffer.data(), size), names) << size;
    }
  }
  BYTE output[64];
  for (const int other : {0, 1, 2, 3, 12, 34, 36}) {
    const auto index = static_cast<WORD>(other);
    EXPECT_EQ(ask(index, nullptr, 0), kNo) << index;
    EXPECT_EQ(ask(index, output, 64), kNo) << index;
  }
}

}  // namespace
}  // namespace kestrel
