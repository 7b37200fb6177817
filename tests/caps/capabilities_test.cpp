// Capability queries with output buffers that end at unwritable memory.
#include "tests/support/guarded_buffer.h"
#include "tests/support/test_machine.h"

namespace kestrel {
namespace {

constexpr DWORD kUnsupported = 0xFFFFFFFF;

class Capabilities : public support::MachineTest {
 protected:
  DWORD Query(WORD index, void* output = nullptr) {
    return exports_.DrvDeviceCapabilities(printer_, name_.data(), index, output,
                                          &block_.Record.Public);
  }
  template <typename T>
  std::vector<T> Elements(WORD index, DWORD count, size_t unitsPerElement = 1) {
    const support::GuardedBuffer output(count * unitsPerElement * sizeof(T));
    std::ranges::fill(output.bytes(), std::byte{0xCD});
    EXPECT_EQ(Query(index), count) << index;
    EXPECT_EQ(Query(index, output.data()), count) << index;
    return {output.As<T>(), output.As<T>() + count * unitsPerElement};
  }
  void ExpectNames(WORD index, size_t slot, const std::vector<std::u16string>& names) {
    std::u16string slots;
    for (const std::u16string& name : names) (slots += name).append(slot - name.size(), 0);
    const auto written = Elements<char16_t>(index, static_cast<DWORD>(names.size()), slot);
    EXPECT_EQ(std::u16string(written.begin(), written.end()), slots) << index;
  }

  const support::OpenedPrinter printer_;
  std::u16string name_ = support::kPrinter;
  DriverSettingsBlock block_ = support::DefaultBlock();
};

TEST_F(Capabilities, FixedValuesIgnoreTheBuffer) {
  const std::pair<WORD, DWORD> kValues[] = {
      {DC_FIELDS, 0x270F},   {DC_SIZE, 220},   {DC_EXTRA, 232},          {DC_VERSION, 0x0401},
      {DC_DRIVER, 0x0E01},   {DC_TRUETYPE, 1}, {DC_ORIENTATION, 90},     {DC_COPIES, 32767},
      {DC_EMF_COMPLIANT, 1}, {DC_DUPLEX, 0},   {DC_FILEDEPENDENCIES, 0}, {DC_COLORDEVICE, 0}};
  const support::GuardedBuffer unwritable(0);
  for (const auto& [index, value] : kValues) EXPECT_EQ(Query(index, unwritable.data()), value);
  for (const WORD index : std::initializer_list<WORD>{0, DC_BINADJUST, DC_NUP, 36, 65535})
    EXPECT_EQ(Query(index, unwritable.data()), kUnsupported) << index;
}

TEST_F(Capabilities, TablesAndExtentsAreWritten) {
  block_.Printer.HeadDensity = 305;
  support::StoreBlock(machine(), block_);
  EXPECT_EQ(Elements<WORD>(DC_BINS, 1), std::vector<WORD>{256});
  ExpectNames(DC_BINNAMES, 24, {u"標準"});
  EXPECT_EQ(Elements<LONG>(DC_ENUMRESOLUTIONS, 1, 2), (std::vector<LONG>{305, 305}));
  ExpectNames(DC_MEDIATYPENAMES, 64, {u"Plain paper", u"Transparency", u"Glossy paper"});
  EXPECT_EQ(Elements<DWORD>(DC_MEDIATYPES, 3), (std::vector<DWORD>{1, 2, 3}));
  const support::GuardedBuffer extent(sizeof(POINT));
  EXPECT_EQ(Query(DC_MINEXTENT), DWORD{MAKELONG(100, 100)});
  EXPECT_EQ(Query(DC_MAXEXTENT, extent.data()), DWORD{MAKELONG(580, 1630)});
  EXPECT_EQ(MAKELONG(extent.As<POINT>()->x, extent.As<POINT>()->y), MAKELONG(580, 1630));
}

// One name fills its field without a terminator. The free size is that of the caller's record.
TEST_F(Capabilities, PapersAreWrittenInTenthsOfAMillimetre) {
  block_.Printer.PaperNum = 2;
  PaperInfo& inches = block_.Printer.Papers[1];
  std::fill_n(inches.PaperName, kPaperNameLength, u'A');
  inches.Unit = kInch;
  inches.LabelWidth = inches.LabelHeight = 2283;
  support::StoreBlock(machine(), block_);
  block_.Record.Private.FreePaper.LabelWidth = 777;
  EXPECT_EQ(Elements<WORD>(DC_PAPERS, 3), (std::vector<WORD>{257, 258, 256}));
  EXPECT_EQ(Elements<LONG>(DC_PAPERSIZE, 3, 2), (std::vector<LONG>{580, 680, 580, 580, 777, 680}));
  const std::u16string full(kPaperNameLength - 1, u'A');
  ExpectNames(DC_PAPERNAMES, 64, {u"Standard Label 58 x 68 mm", full, u"フリーサイズ"});
  EXPECT_EQ(Query(DC_MEDIAREADY), 3u);
}

TEST_F(Capabilities, SpoolerQueryWritesAsManyNamesAsFit) {
  const auto query = [&](WORD index, void* output, DWORD units) {
    return exports_.DrvSplDeviceCaps(printer_, name_.data(), index, output, units, nullptr);
  };
  for (const auto& [stored, entries] : {std::pair{-1, 1u}, {20, 21}, {32767, 21}}) {
    block_.Printer.PaperNum = static_cast<int16_t>(stored);
    support::StoreBlock(machine(), block_);
    EXPECT_EQ(query(DC_MEDIAREADY, nullptr, 0), entries) << "the stored count is clamped";
  }
  for (const auto& [units, names] : {std::pair{63u, 0u}, {64, 1}, {127, 1}, {0xFFFFFFFF, 21}}) {
    const support::GuardedBuffer output(names * 128);
    EXPECT_EQ(query(DC_PAPERNAMES, output.data(), units), names > 0 ? names : kUnsupported);
  }
  EXPECT_EQ(query(DC_PAPERS, nullptr, 0), kUnsupported);
}

}  // namespace
}  // namespace kestrel
