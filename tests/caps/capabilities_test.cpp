// Capabilities as callers ask for them, with buffers that end where nobody may write.
#include <gtest/gtest.h>

#include <map>

#include "tests/support/guarded_buffer.h"
#include "tests/support/settings.h"
#include "tests/support/test_machine.h"

namespace kestrel {
namespace {

using support::BytesOf;
using support::kPrinter;

constexpr DWORD kNo = 0xFFFFFFFF;

class Capabilities : public support::MachineTest {
 protected:
  DWORD Ask(WORD index, void* output = nullptr, DEVMODEW* record = nullptr) {
    const support::OpenedPrinter printer;
    return exports_.DrvDeviceCapabilities(printer, name_.data(), index, output, record);
  }
  DWORD AskWithSize(WORD index, void* output, DWORD size) {
    const support::OpenedPrinter printer;
    return exports_.DrvSplDeviceCaps(printer, name_.data(), index, output, size, nullptr);
  }

  std::u16string name_ = kPrinter;
  DriverSettingsBlock block_ = support::DefaultBlock();
};

TEST_F(Capabilities, AnswerByIndex) {
  block_.Printer.PaperNum = 2;
  block_.Printer.HeadDensity = 305;
  PaperInfo& inches = block_.Printer.Papers[1];
  std::fill_n(inches.PaperName, kPaperNameLength, u'A');
  inches.Unit = kInch;
  inches.LabelWidth = 2283;
  inches.LabelHeight = 4000;
  support::StoreBlock(machine(), block_);
  block_.Record.Private.FreePaper.LabelWidth = 777;  // the caller's own
  constexpr DWORD kAnswers[] = {kNo,    0x270F, 3, 3,   6553700, 106824260, 1,   0,   220,   232,
                                0x0401, 0x0E01, 1, 1,   0,       1,         3,   90,  32767, kNo,
                                1,      kNo,    0, kNo, kNo,     kNo,       kNo, kNo, kNo,   3,
                                0,      kNo,    0, kNo, 3,       3,         kNo};
  const WCHAR kPapers[3][64] = {u"Standard Label 58 x 68 mm",
                                u"AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA",
                                u"フリーサイズ"};
  const WCHAR kMedia[3][64] = {u"Plain paper", u"Transparency", u"Glossy paper"};
  const WCHAR kBin[24] = u"標準";
  const std::map<WORD, std::vector<std::byte>> kOutputs = {
      {DC_PAPERS, BytesOf(std::array<WORD, 3>{257, 258, 256})},
      {DC_PAPERSIZE, BytesOf(std::array{580, 680, 580, 1016, 777, 680})},
      {DC_MINEXTENT, BytesOf(std::array{100, 100})},
      {DC_MAXEXTENT, BytesOf(std::array{580, 1630})},
      {DC_BINS, BytesOf(WORD{256})},
      {DC_BINNAMES, BytesOf(kBin)},
      {DC_ENUMRESOLUTIONS, BytesOf(std::array{305, 305})},
      {DC_PAPERNAMES, BytesOf(kPapers)},
      {DC_MEDIAREADY, BytesOf(kPapers)},
      {DC_MEDIATYPENAMES, BytesOf(kMedia)},
      {DC_MEDIATYPES, BytesOf(std::array{1, 2, 3})}};
  for (WORD index = 0; index < 37; ++index) {
    const auto expected = kOutputs.contains(index) ? kOutputs.at(index) : std::vector<std::byte>();
    const support::GuardedBuffer output(expected.size());
    std::ranges::fill(output.bytes(), std::byte{0xCD});
    EXPECT_EQ(Ask(index), kAnswers[index]) << index;
    EXPECT_EQ(Ask(index, output.data(), &block_.Record.Public), kAnswers[index]) << index;
    EXPECT_EQ(BytesOf(output.data(), output.size()), expected) << index;
  }
  EXPECT_EQ(Ask(0xFFFF), kNo);
}

TEST_F(Capabilities, CountPapersWhateverIsStoredAndHasRoom) {
  for (const auto& [stored, count] : {std::pair{20, 21u}, {21, 21}, {32767, 21}, {-1, 1}, {2, 3}}) {
    block_.Printer.PaperNum = static_cast<int16_t>(stored);
    support::StoreBlock(machine(), block_);
    const support::GuardedBuffer ids(2 * count);
    EXPECT_EQ(Ask(DC_PAPERS, ids.data()), count) << stored;
    EXPECT_EQ(Ask(DC_PAPERNAMES), count) << stored;
    EXPECT_EQ(support::At<WORD>(ids.data(), ids.size() - 2), 256);
    for (WORD index = 0; index < 37; ++index) {
      const bool names = index == DC_PAPERNAMES || index == DC_MEDIAREADY;
      EXPECT_EQ(AskWithSize(index, nullptr, 0), names ? count : kNo) << index;
      for (const DWORD size : {0u, 63u, 64u, 127u, 128u, 1344u, 0xFFFFFFFFu}) {
        const DWORD fitting = std::min(size / 64, count);
        const support::GuardedBuffer buffer(names ? fitting * 128 : 0);
        EXPECT_EQ(AskWithSize(index, buffer.data(), size), names && fitting > 0 ? fitting : kNo);
      }
    }
  }
}

}  // namespace
}  // namespace kestrel
