// Settings records: defaults, public fields, and merging of applications' records.
#include <string>
#include <tuple>

#include "driver/record_checks.h"
#include "driver/resolve_settings.h"
#include "driver/text.h"
#include "tests/support/guarded_buffer.h"
#include "tests/support/test_machine.h"

namespace kestrel {
namespace {

using support::At;
using support::BytesOf;
using support::DefaultBlock;
using support::kPrinter;
using support::Put;
using Bytes = std::vector<std::byte>;

class Records : public support::MachineTest {
 protected:
  Records() {
    block_.Printer.PaperNum = 2;
    block_.Printer.Papers[1] = block_.Printer.Papers[0];
    Store();
  }
  void Store() { support::StoreBlock(machine(), block_); }

  void Convert(void* input, void* output) {
    LONG size = 452;
    EXPECT_TRUE(exports_.DrvConvertDevMode(printerName_.data(), static_cast<DEVMODEW*>(input),
                                           static_cast<DEVMODEW*>(output), &size, CDM_CONVERT));
  }
  // Converts an input record that ends at unreadable memory.
  Bytes Convert(const Bytes& input) {
    const support::GuardedBuffer in(input.data(), input.size()), out(452);
    std::ranges::fill(out.bytes(), std::byte{0xCD});
    Convert(in.data(), out.data());
    return BytesOf(out.data(), out.size());
  }
  // nPrintSpeed of the printer's settings, without an input.
  int Speed() { return At(Convert(Bytes(72)).data(), 398); }
  // Returns the offsets at which an input changes the stored record, as "first-last" ranges.
  std::string Changes(const Bytes& input) {
    const Bytes stored = BytesOf(block_.Record);
    const Bytes result = Convert(input);
    std::string ranges;
    for (size_t i = 0; i < 452; ++i) {
      if (result[i] == stored[i]) continue;
      const size_t first = i;
      while (i + 1 < 452 && result[i + 1] != stored[i + 1]) ++i;
      ranges += std::to_string(first) + '-' + std::to_string(i) + ' ';
    }
    return ranges;
  }

  std::u16string printerName_ = kPrinter;
  DriverSettingsBlock block_ = DefaultBlock();
};

TEST_F(Records, DefaultsAreTheGoldenBytes) {
  std::memset(static_cast<void*>(&block_), 0xFF, sizeof block_);
  FillDefaultSettings(block_, nullptr, u"倉庫 1F,LPT1:");
  const std::string golden = support::Golden("defaults.bin");
  ASSERT_EQ(golden.size(), sizeof block_);
  EXPECT_EQ(BytesOf(block_), BytesOf(golden.data(), golden.size()));
}

TEST_F(Records, FillPublicFieldsComputesThemFromThePrivateOnes) {
  const DEVMODEW& record = block_.Record.Public;
  PrivateDevMode& settings = block_.Record.Private;
  PaperInfo& paper = block_.Printer.Papers[0];
  std::fill_n(paper.PaperName, kPaperNameLength, u'p');
  paper.LabelWidth = 2283;
  paper.LabelHeight = 1000;
  settings.FreePaper.LabelWidth = 333;
  CopyText(settings.FreePaper.PaperName, u"other");
  const std::array<SHORT, 6> kCases[] = {
      {257, kInch, 305, 580, 254, 305}, {257, kDot, 203, 2283, 1000, 203},
      {256, kDot, 300, 333, 680, 203},  {259, kDot, 0, 333, 680, 203},
      {0, kDot, 203, 333, 680, 203},    {-1, kDot, 203, 333, 680, 203}};
  for (const auto& [id, unit, density, width, length, resolution] : kCases) {
    settings.PaperID = id;
    paper.Unit = unit;
    block_.Printer.HeadDensity = static_cast<uint16_t>(density);
    FillPublicFields(block_, nullptr, std::u16string(40, u'n').c_str());
    EXPECT_EQ(record.dmDeviceName, std::u16string(31, u'n'));
    EXPECT_EQ(record.dmFormName, id == 257 ? std::u16string(31, u'p') : u"フリーサイズ");
    EXPECT_EQ((std::array{record.dmPaperSize, record.dmPaperWidth, record.dmPaperLength,
                          record.dmPrintQuality, record.dmYResolution}),
              (std::array{id, width, length, resolution, resolution}));
  }
  for (const WCHAR* name : {u"\\\\server\\Label,LPT1:", static_cast<const WCHAR*>(nullptr)}) {
    FillPublicFields(block_, nullptr, name);
    EXPECT_EQ(record.dmDeviceName, std::u16string(name != nullptr ? u"\\\\server\\Label" : u""))
        << "only the port is removed";
  }
}

TEST_F(Records, MatchThePrinterByItsName) {
  for (const std::string& row : support::GoldenRows("printer_names.txt")) {
    SCOPED_TRACE(row);
    const std::u16string names(row.begin(), row.end() - 2),
        printer = names.substr(0, names.find(u'|'));
    auto block = DefaultBlock(u"");
    names.copy(block.Record.Public.dmDeviceName, 32, printer.size() + 1);
    const unsigned mask = row.ends_with('0') * kOtherDevice;
    EXPECT_EQ(CheckSettingsRecord(RecordView(&block.Record), printer.c_str()), mask);
    machine().SetOs({.major = 6});
    EXPECT_TRUE(IsOwnSettingsRecord(block.Record, printer.c_str()));
    machine().SetOs({.major = 5, .minor = 2});
    EXPECT_EQ(IsOwnSettingsRecord(block.Record, printer.c_str()), mask == 0);
  }
  EXPECT_EQ(CheckSettingsRecord(RecordView(&block_.Record), nullptr), 0u);
}

TEST_F(Records, PublicFieldsMergeByFieldAndValue) {
  block_.Record.Private.PaperID = 258;
  Store();
  // dmFields, offset and value of the input field, offset and value of the resulting field.
  const std::tuple<DWORD, size_t, int16_t, size_t, int16_t> kCases[] = {
      {DM_ORIENTATION, 76, 2, 388, 2},   {DM_ORIENTATION, 76, 3, 388, 1},
      {DM_PAPERSIZE, 78, 257, 220, 257}, {DM_COPIES, 76, 2, 388, 1},
      {DM_PAPERSIZE, 78, 256, 220, 256}, {DM_PAPERSIZE, 78, 9, 220, 258},
      {DM_PAPERSIZE, 78, 259, 220, 258}, {DM_PAPERSIZE, 78, -1, 220, 258},
      {DM_COPIES, 86, 0, 382, 1},        {DM_COPIES, 86, -5, 382, 1},
      {DM_COPIES, 86, 500, 382, 500},    {0, 86, 500, 382, 1}};
  for (const auto& [fields, offset, value, resultOffset, result] : kCases) {
    for (Bytes input : {Bytes(220), BytesOf(block_.Record)}) {
      Put<WORD>(input.data(), 68, 220);
      Put(input.data(), 72, fields);
      Put(input.data(), offset, value);
      const Bytes output = Convert(input);
      EXPECT_EQ(At(output.data(), resultOffset), result) << offset << ' ' << value;
      EXPECT_EQ(result == value, At(output.data(), offset) == value)
          << "the public fields match the private ones";
    }
  }
}

// Every private byte of the input differs from the stored one, so each merged field shows as a
// range.
TEST_F(Records, PrivateFieldsMergeFromRecordsOfThisDriver) {
  Bytes own(131072);
  std::memcpy(own.data(), &block_.Record, 452);
  std::fill(own.begin() + 220, own.begin() + 448, std::byte{0x5A});
  Put<DWORD>(own.data(), 72, DM_COPIES);
  Put<int16_t>(own.data(), 86, 7);
  // Twelve numbers of the free-size paper, offsets and speed to move mode, colour text and SYNC.
  const std::string merged = "86-86 350-373 382-382 384-387 390-403 408-409 434-435 ";
  const std::string publicOnly = "86-86 382-382 ";
  EXPECT_EQ(CheckSettingsRecord(RecordView(own.data()), kPrinter), 0u);
  EXPECT_EQ(Changes(own), merged);
  // A size of 3564 would place the signature right after a block, and an extra of 4 would contain
  // only the signature. The signature of a record with other sizes is not read.
  const std::tuple<size_t, WORD, unsigned> kCases[] = {
      {64, 0x0400, 1}, {66, 0x0E00, 2}, {68, 221, 20}, {68, 3564, 20}, {68, 65535, 20}, {68, 0, 20},
      {70, 231, 24},   {70, 3, 24},     {70, 4, 24},   {70, 0, 24},    {448, 0, 16}};
  for (const auto& [offset, value, mask] : kCases) {
    SCOPED_TRACE(offset);
    Bytes foreign = own;
    Put(foreign.data(), offset, value);
    if (value == 4) Put(foreign.data(), 220, SETTINGS_SIGNATURE);
    EXPECT_EQ(CheckSettingsRecord(RecordView(foreign.data()), kPrinter), mask);
    // As an input it merges its public fields only; as the stored record it is ignored.
    EXPECT_EQ(Changes(foreign), value == 0 && offset == 68 ? "" : publicOnly);
    machine().SetDefaultRecord(kPrinter, foreign);
    EXPECT_EQ(Speed(), 1);
    Store();
  }
  // A record of another printer is foreign before Windows Vista and accepted from then on.
  Put<char16_t>(own.data(), 0, u'X');
  EXPECT_EQ(Changes(own), merged);
  block_.Record.Private.nCompulsory = 1;
  Store();
  EXPECT_EQ(Changes(own), publicOnly) << "the stored settings take precedence";
  block_.Record.Private.nCompulsory = 0;
  Store();
  machine().SetOs({.major = 5, .minor = 1});
  EXPECT_EQ(Changes(own), publicOnly);
}

TEST_F(Records, RecordsOfEveryLengthAreReadWithinTheirLength) {
  // Bytes that would change the result if they were read as fields.
  Bytes pattern(1024, std::byte{1});
  Put<DWORD>(pattern.data(), 68, 220);
  Put<DWORD>(pattern.data(), 72, 0xFFFFFFFF);
  Put<int16_t>(pattern.data(), 76, 2);
  Put<int16_t>(pattern.data(), 78, 256);
  Put<int16_t>(pattern.data(), 86, 9);
  const Bytes merged = Convert(BytesOf(pattern.data(), 220));
  const support::OpenedPrinter printer;
  for (int size = 0; size <= 260; ++size) {
    for (const int extra : {0, 1, 2, 3, 4, 5, 20, 231, 232, 233, 300}) {
      SCOPED_TRACE(std::to_string(size) + '+' + std::to_string(extra));
      Put(pattern.data(), 68, extra << 16 | size);
      const auto length = static_cast<size_t>(size + extra);
      const support::GuardedBuffer in(pattern.data(), std::max<size_t>(72, length));
      Bytes expected = size < 76 ? BytesOf(block_.Record) : merged;
      if (size >= 76 && size < 220) {
        expected = BytesOf(in.data(), std::min<size_t>(length, size + 232));
        Put(expected.data(), 70, static_cast<WORD>(expected.size() - size));
      }
      // Input and output may be the same record.
      const support::GuardedBuffer both(std::max(in.size(), size_t{452}));
      std::ranges::copy(in.bytes(), both.data());
      Convert(both.data(), both.data());
      expected.resize(452);  // the bytes after a short record are cleared
      ASSERT_EQ(BytesOf(both.data(), 452), expected);
      ASSERT_EQ(Convert(BytesOf(in.data(), in.size())), expected);
      ATTRIBUTE_INFO_3 info{};
      exports_.DrvQueryJobAttributes(printer, in.As<DEVMODEW>(), 3, reinterpret_cast<BYTE*>(&info));
      ASSERT_EQ(info.dmYResolution, size >= 98 ? 0x0101 : 0);
    }
  }
}

TEST_F(Records, ResolveSettingsMergesAndCopiesByMode) {
  const support::OpenedPrinter printer;
  SettingsRecord input = block_.Record;
  input.Public.dmFields = DM_COPIES;
  input.Public.dmCopies = 7;
  const RecordView view(&input);
  const std::pair<DWORD, int> kCases[] = {{0, 1}, {DM_IN_BUFFER, 7}, {kMergeInput, 7}};
  for (const auto& [merge, copies] : kCases) {
    DriverSettingsBlock expected = {}, whole = {};
    ResolveBlock(expected, merge != 0 ? view : RecordView(), printer, kPrinter);
    EXPECT_EQ(expected.Record.Private.Copies, copies);
    EXPECT_TRUE(ResolveSettings(&whole, view, printer, kPrinter, merge | kCopyWholeBlock));
    EXPECT_EQ(BytesOf(whole), BytesOf(expected));
    SettingsRecord record = {};
    EXPECT_TRUE(ResolveSettings(&record, view, printer, kPrinter, merge | DM_COPY));
    EXPECT_EQ(BytesOf(record), BytesOf(expected.Record));
    EXPECT_TRUE(ResolveSettings(nullptr, view, printer, kPrinter, merge | DM_COPY));
  }
}

TEST_F(Records, IncompleteStoredSettingsFallBackToDefaults) {
  block_.Record.Private.nPrintSpeed = 5;
  Store();
  EXPECT_EQ(Speed(), 5);
  Bytes shorter = BytesOf(block_.Record);
  shorter.resize(200);
  machine().SetDefaultRecord(kPrinter, shorter);
  EXPECT_EQ(Speed(), 1);
  for (const size_t size : {size_t{0}, size_t{3337}, size_t{3339}}) {
    Store();
    auto part = *machine().Data(kPrinter, u"Private DevMode");
    part.bytes.resize(size);
    machine().SetData(kPrinter, u"Private DevMode", part);
    EXPECT_EQ(Speed(), 1) << size;
    EXPECT_EQ(At<uint32_t>(Convert(Bytes(72)).data(), 448), SETTINGS_SIGNATURE);
  }
  machine().RemoveData(kPrinter, u"Private DevMode");
  EXPECT_EQ(Speed(), 1);
  // A record of another printer is accepted from Windows Vista on.
  block_.Record.Public.dmDeviceName[0] = u'X';
  Store();
  EXPECT_EQ(Speed(), 5);
  machine().SetOs({.major = 5, .minor = 2});
  EXPECT_EQ(Speed(), 1);
}

}  // namespace
}  // namespace kestrel
