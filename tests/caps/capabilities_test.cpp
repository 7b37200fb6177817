// Capability queries with output buffers that end at unwritable memory.
#include <sstream>

#include "platform/machine/text.h"
#include "tests/support/guarded_buffer.h"
#include "tests/support/test_machine.h"

namespace kestrel {
namespace {

using support::kPrinter;

constexpr DWORD kUnsupported = 0xFFFFFFFF;

class Capabilities : public support::MachineTest {
 protected:
  DWORD Query(WORD index, void* output = nullptr, DEVMODEW* record = nullptr) {
    return exports_.DrvDeviceCapabilities(printer_, name_.data(), index, output, record);
  }
  DWORD QueryWithSize(WORD index, void* output, DWORD size) {
    return exports_.DrvSplDeviceCaps(printer_, name_.data(), index, output, size, nullptr);
  }

  const support::OpenedPrinter printer_;
  std::u16string name_ = kPrinter;
  DriverSettingsBlock block_ = support::DefaultBlock();
};

TEST_F(Capabilities, AreReturnedByIndex) {
  block_.Printer.PaperNum = 2;
  block_.Printer.HeadDensity = 305;
  PaperInfo& inches = block_.Printer.Papers[1];
  std::fill_n(inches.PaperName, kPaperNameLength, u'A');
  inches.Unit = kInch;
  inches.LabelWidth = 2283;
  inches.LabelHeight = 4000;
  support::StoreBlock(machine(), block_);
  block_.Record.Private.FreePaper.LabelWidth = 777;  // in the caller's record only
  for (const std::string& row : support::GoldenRows("capabilities.txt")) {
    std::istringstream words(row);
    WORD index;
    DWORD result;
    size_t units;
    std::string expected;
    std::getline(words >> index >> result >> units, expected);
    const support::GuardedBuffer output(2 * units);
    std::ranges::fill(output.bytes(), std::byte{0xCD});
    EXPECT_EQ(Query(index), result) << row;
    EXPECT_EQ(Query(index, output.data(), &block_.Record.Public), result) << row;
    std::u16string text(output.As<char16_t>(), units);
    std::string actual;
    for (char16_t& unit : text) {
      actual += ' ' + std::to_string(unit);
      if (unit == 0) unit = u'.';
    }
    if (units >= 24) actual = ' ' + platform::ToUtf8(text);
    EXPECT_EQ(actual, expected);
  }
}

TEST_F(Capabilities, PaperCountIsClampedAndOutputStaysWithinTheBuffer) {
  for (const auto& [stored, count] : {std::pair{20, 21u}, {21, 21}, {32767, 21}, {-1, 1}, {2, 3}}) {
    block_.Printer.PaperNum = static_cast<int16_t>(stored);
    support::StoreBlock(machine(), block_);
    const support::GuardedBuffer ids(2 * count);
    EXPECT_EQ(Query(DC_PAPERS, ids.data()), count) << stored;
    EXPECT_EQ(Query(DC_PAPERNAMES), count) << stored;
    EXPECT_EQ(support::At<WORD>(ids.data(), ids.size() - 2), 256);
    for (WORD index = 0; index < 37; ++index) {
      const bool names = index == DC_PAPERNAMES || index == DC_MEDIAREADY;
      EXPECT_EQ(QueryWithSize(index, nullptr, 0), names ? count : kUnsupported) << index;
      for (const DWORD size : {0u, 63u, 64u, 127u, 128u, 1344u, 0xFFFFFFFFu}) {
        const DWORD fitting = std::min(size / 64, count);
        const support::GuardedBuffer buffer(names ? fitting * 128 : 0);
        EXPECT_EQ(QueryWithSize(index, buffer.data(), size),
                  names && fitting > 0 ? fitting : kUnsupported);
      }
    }
  }
}

}  // namespace
}  // namespace kestrel
