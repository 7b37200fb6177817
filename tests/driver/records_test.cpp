// Settings records: defaults, public fields, and merging of applications' records, also of those
// that declare wrong sizes or change while the module reads them.
#include "driver/record_checks.h"
#include "driver/resolve_settings.h"
#include "driver/text.h"
#include "tests/support/guarded_buffer.h"
#include "tests/support/test_machine.h"

namespace kestrel {
namespace {

using std::u16string;
using support::BytesOf;
using support::DefaultBlock;
using support::kPrinter;
using Bytes = std::vector<std::byte>;

class Records : public support::MachineTest {
 protected:
  Records() {
    block_.Printer.PaperNum = 2;
    block_.Printer.Papers[1] = block_.Printer.Papers[0];
    Store();
  }
  void Store() { support::StoreBlock(machine(), block_); }
  // Converts a record; input and output may be the same.
  void Convert(void* input, void* output) {
    LONG size = 452;
    EXPECT_TRUE(exports_.DrvConvertDevMode(name_.data(), static_cast<DEVMODEW*>(input),
                                           static_cast<DEVMODEW*>(output), &size, CDM_CONVERT));
  }
  // Converts an input that ends at unreadable memory, into a buffer that ends at unwritable memory.
  SettingsRecord Convert(const Bytes& input) {
    const support::GuardedBuffer in(input.data(), input.size()), out(452);
    std::ranges::fill(out.bytes(), std::byte{0xCD});
    Convert(in.data(), out.data());
    return *out.As<SettingsRecord>();
  }
  // Returns the printer's settings as they are without an input.
  SettingsRecord StoredSettings() { return Convert(Bytes(72)); }

  u16string name_ = kPrinter;
  DriverSettingsBlock block_ = DefaultBlock();
};

TEST_F(Records, DefaultsAreTheGoldenBytes) {
  std::memset(static_cast<void*>(&block_), 0xFF, sizeof block_);
  FillDefaultSettings(block_, nullptr, u"倉庫 1F,LPT1:");
  const std::string golden = support::Golden("defaults.bin");
  EXPECT_EQ(BytesOf(block_), BytesOf(golden.data(), golden.size()));
}

TEST_F(Records, PublicFieldsAreComputedFromThePrivateOnes) {
  const DEVMODEW& record = block_.Record.Public;
  PaperInfo& paper = block_.Printer.Papers[0];
  std::fill_n(paper.PaperName, kPaperNameLength, u'p');
  paper.Unit = kInch;
  paper.LabelWidth = 2283;
  block_.Printer.HeadDensity = 305;
  FillPublicFields(block_, nullptr, u16string(40, u'n').c_str());
  EXPECT_EQ(record.dmDeviceName, u16string(31, u'n'));
  EXPECT_EQ(record.dmFormName, u16string(31, u'p'));
  EXPECT_EQ(record.dmPaperWidth, 580);
  EXPECT_EQ(record.dmPrintQuality, 305);
  // A paper that does not exist has the name and size of the free-size paper.
  CopyText(block_.Record.Private.FreePaper.PaperName, u"other");
  block_.Record.Private.FreePaper.LabelWidth = 333;
  block_.Record.Private.PaperID = kFirstPaperId + 2;
  block_.Printer.HeadDensity = 300;
  FillPublicFields(block_, nullptr, u"\\\\server\\Label,LPT1:");
  EXPECT_EQ(record.dmDeviceName, u16string(u"\\\\server\\Label"));
  EXPECT_EQ(record.dmFormName, u16string(u"フリーサイズ"));
  EXPECT_EQ(record.dmPaperWidth, 333);
  EXPECT_EQ(record.dmPrintQuality, 203);
}

TEST_F(Records, RecordBelongsToAPrinterWhoseNameItBegins) {
  const struct {
    u16string printer, deviceName;
    bool matches;
  } kCases[] = {
      {u"Label Printer", u"Label", true},
      {u"Label", u"Label Printer", true},
      {u"Label", u"label", false},
      // The server and the port are not compared.
      {u"\\\\server\\Label,LPT1:", u"Label", true},
      {u"Label", u"\\\\other\\Label,LPT1:", true},
      // A device name of 31 units may end within the server's name.
      {u"\\\\warehouse-host-01.example.org\\Label", u"\\\\warehouse-host-01.example.org", true},
      {u"\\\\warehouse-host-02.example.org\\Label", u"\\\\warehouse-host-01.example.org", false},
      {u16string(40, u'x'), u16string(32, u'x'), true},  // without a terminator
  };
  for (const auto& [printer, deviceName, matches] : kCases) {
    SCOPED_TRACE(testing::PrintToString(printer + u" | " + deviceName));
    SettingsRecord record = DefaultBlock(u"").Record;
    deviceName.copy(record.Public.dmDeviceName, CCHDEVICENAME);
    EXPECT_EQ(CheckSettingsRecord(RecordView(&record), printer.c_str()),
              matches ? 0u : kOtherDevice);
    machine().SetOs({.major = 6});
    EXPECT_TRUE(IsOwnSettingsRecord(record, printer.c_str())) << "any device from Vista on";
    machine().SetOs({.major = 5, .minor = 2});
    EXPECT_EQ(IsOwnSettingsRecord(record, printer.c_str()), matches);
  }
  EXPECT_EQ(CheckSettingsRecord(RecordView(&block_.Record), nullptr), 0u);
}

TEST_F(Records, PublicFieldsMergeWhenNamedAndValid) {
  block_.Record.Private.PaperID = kFirstPaperId + 1;
  Store();
  const struct {
    DWORD fields;  // dmFields
    SHORT orientation, paperSize, copies;
    int16_t newOrient, newPaperId, newCopies;
  } kCases[] = {
      {DM_ORIENTATION, DMORIENT_LANDSCAPE, kFreePaperId, 500, DMORIENT_LANDSCAPE, 258, 1},
      {DM_PAPERSIZE, DMORIENT_LANDSCAPE, kFreePaperId, 500, DMORIENT_PORTRAIT, kFreePaperId, 1},
      {DM_COPIES, DMORIENT_LANDSCAPE, kFreePaperId, 500, DMORIENT_PORTRAIT, 258, 500},
      {0x103, 3, 259, -5, DMORIENT_PORTRAIT, 258, 1},  // all three
  };
  for (const auto& row : kCases) {
    DEVMODEW input = {};
    input.dmSize = sizeof input;
    input.dmFields = row.fields;
    input.dmOrientation = row.orientation;
    input.dmPaperSize = row.paperSize;
    input.dmCopies = row.copies;
    const SettingsRecord output = Convert(BytesOf(input));
    EXPECT_EQ(output.Private.Orient, row.newOrient);
    EXPECT_EQ(output.Private.PaperID, row.newPaperId);
    EXPECT_EQ(output.Private.Copies, row.newCopies);
    EXPECT_EQ(output.Public.dmPaperSize, row.newPaperId) << "public fields are refreshed";
  }
}

class PrivateFields : public Records {
 protected:
  // An application's record with other values in all private bytes but the signature.
  PrivateFields() {
    std::memset(static_cast<void*>(&given_.Private), 0x5A, offsetof(PrivateDevMode, Signature));
    given_.Public.dmFields = DM_COPIES;
    given_.Public.dmCopies = 7;
  }
  // Expects that a record merges the number of copies and, if `merged`, all private fields that an
  // application may set.
  void ExpectMerge(const Bytes& input, bool merged) {
    SettingsRecord expected = block_.Record;
    PrivateDevMode& settings = expected.Private;
    expected.Public.dmCopies = settings.Copies = 7;
    if (merged) {
      using Mode = PrivateDevMode;
      for (int16_t Mode::*field :
           {&Mode::nVertBase, &Mode::nHorzBase, &Mode::nFlip, &Mode::nPeelOffset,
            &Mode::nTearOffset, &Mode::nPitchOffset, &Mode::nPrintSpeed, &Mode::nSensor,
            &Mode::nMoveMode, &Mode::nTSMode, &Mode::nColorText})
        settings.*field = 0x5A5A;
      // Twelve numbers of the free-size paper, from PaperKind to Yoshi.
      auto* paper = reinterpret_cast<BYTE*>(&settings.FreePaper);
      std::fill_n(paper + offsetof(PaperInfo, PaperKind), 24, BYTE{0x5A});
    }
    EXPECT_EQ(BytesOf(Convert(input)), BytesOf(expected));
  }

  SettingsRecord given_ = block_.Record;
};

TEST_F(PrivateFields, MergeUnlessTheStoredSettingsTakePrecedence) {
  ExpectMerge(BytesOf(given_), true);
  block_.Record.Private.nCompulsory = 1;
  Store();
  ExpectMerge(BytesOf(given_), false);
}

// The signature of a record with other sizes is not read: its place depends on these sizes.
TEST_F(PrivateFields, ForeignRecordMergesItsPublicFieldsOnly) {
  const struct {
    size_t offset;
    WORD value;
    unsigned mismatch;
  } kCases[] = {
      {offsetof(DEVMODEW, dmSpecVersion), 0x0400, kOtherSpecVersion},
      {offsetof(DEVMODEW, dmDriverVersion), 0x0E00, kOtherDriverVersion},
      {offsetof(DEVMODEW, dmSize), 65535, kOtherSize | kNoSignature},
      {offsetof(DEVMODEW, dmDriverExtra), 3, kOtherExtra | kNoSignature},
      {offsetof(SettingsRecord, Private.Signature), 0, kNoSignature},
  };
  for (const auto& [offset, value, mismatch] : kCases) {
    SCOPED_TRACE(testing::Message() << value << " at " << offset);
    Bytes foreign = BytesOf(given_);
    foreign.resize(131072, std::byte{0x5A});  // as many bytes as the sizes can declare
    support::Put(foreign.data(), offset, value);
    EXPECT_EQ(CheckSettingsRecord(RecordView(foreign.data()), kPrinter), mismatch);
    ExpectMerge(foreign, false);
    machine().SetDefaultRecord(kPrinter, foreign);
    EXPECT_EQ(BytesOf(StoredSettings()), BytesOf(DefaultBlock().Record)) << "as a stored record";
    Store();
  }
  given_.Public.dmDeviceName[0] = u'X';
  ExpectMerge(BytesOf(given_), true);  // another device's record since Windows Vista
  machine().SetOs({.major = 5, .minor = 1});
  ExpectMerge(BytesOf(given_), false);
}

TEST_F(Records, RecordsOfEveryLengthAreReadWithinTheirLength) {
  // Bytes that would change the result if they were read as fields.
  Bytes pattern(1024, std::byte{1});
  auto& input = *reinterpret_cast<DEVMODEW*>(pattern.data());
  input.dmFields = 0xFFFFFFFF;
  input.dmCopies = 9;
  input.dmSize = 220;
  input.dmDriverExtra = 0;
  const Bytes merged = BytesOf(Convert(BytesOf(input)));
  const support::OpenedPrinter printer;
  constexpr WORD kExtras[] = {0, 1, 20, 231, 232, 233};
  for (WORD size = 0; size <= 260; ++size) {
    for (const WORD extra : kExtras) {
      SCOPED_TRACE(testing::Message() << size << '+' << extra);
      input.dmSize = size;
      input.dmDriverExtra = extra;
      const auto length = static_cast<size_t>(size + extra);
      const Bytes given = BytesOf(pattern.data(), std::max<size_t>(72, length));
      Bytes expected = size < 76 ? BytesOf(block_.Record) : merged;
      if (size >= 76 && size < 220) {  // an older record is returned unchanged, then zeros
        input.dmDriverExtra = std::min<WORD>(extra, 232);
        expected = BytesOf(pattern.data(), size_t{size} + input.dmDriverExtra);
        expected.resize(452);
      }
      ASSERT_EQ(BytesOf(Convert(given)), expected);
      Bytes both = given;  // input and output may be the same record
      both.resize(std::max(given.size(), size_t{452}));
      Convert(both.data(), both.data());
      ASSERT_EQ(BytesOf(both.data(), 452), expected);
      const support::GuardedBuffer in(given.data(), given.size());
      ATTRIBUTE_INFO_3 info{};
      exports_.DrvQueryJobAttributes(printer, in.As<DEVMODEW>(), 3, reinterpret_cast<BYTE*>(&info));
      ASSERT_EQ(info.dmYResolution, size >= 98 ? 0x0101 : 0);
    }
  }
}

TEST_F(Records, IncompleteOrChangingStoredSettingsFallBackToDefaults) {
  const Bytes defaults = BytesOf(DefaultBlock().Record);
  block_.Record.Private.nPrintSpeed = 5;
  Store();
  EXPECT_EQ(StoredSettings().Private.nPrintSpeed, 5);
  machine().SetDefaultRecord(kPrinter, BytesOf(&block_.Record, 451));
  EXPECT_EQ(BytesOf(StoredSettings()), defaults);
  Bytes part = BytesOf(block_.Printer);
  for (const size_t size : {0, 3337, 3339}) {
    Store();
    part.resize(size);
    machine().SetData(kPrinter, u"Private DevMode", {REG_BINARY, part});
    EXPECT_EQ(BytesOf(StoredSettings()), defaults) << size;
  }
  Store();
  machine().faults.FailFrom(platform::Fault::kSpoolerChange, 1);
  EXPECT_EQ(BytesOf(StoredSettings()), defaults) << "the printer changes before every call";
}

// Another thread of the caller changes the record's sizes before one of the spooler calls.
TEST_F(Records, SizesThatChangeDuringAConversionAreNotReadAgain) {
  Bytes input(452, std::byte{0x5A}), expected = BytesOf(input.data(), 176);
  expected.resize(452);
  support::Put(expected.data(), offsetof(DEVMODEW, dmSize), WORD{156});
  support::Put(expected.data(), offsetof(DEVMODEW, dmDriverExtra), WORD{20});
  const support::GuardedBuffer output(452);
  const auto convert = [&] {
    std::ranges::copy(expected, input.begin());
    std::ranges::fill(output.bytes(), std::byte{0xCD});
    machine().faults.OnSpoolerChange(
        [&] { support::Put(input.data(), offsetof(DEVMODEW, dmSize), 0xFFFFFFFF); });
    Convert(input.data(), output.data());
  };
  ForEachFault({platform::Fault::kSpoolerChange}, convert,
               [&](platform::Fault, bool) { EXPECT_EQ(BytesOf(output.data(), 452), expected); });
}

}  // namespace
}  // namespace kestrel
