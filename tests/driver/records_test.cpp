// Records of applications, checked and merged, through the exports of the loaded module.
#include <gtest/gtest.h>

#include <string>

#include "driver/record_checks.h"
#include "driver/resolve_settings.h"
#include "tests/support/guarded_buffer.h"
#include "tests/support/settings.h"
#include "tests/support/test_machine.h"

namespace kestrel {
namespace {

using support::At;
using support::BytesOf;
using support::DefaultBlock;
using support::kPrinter;
using support::Put;
using Bytes = std::vector<std::byte>;

TEST(RecordChecks, CompareDeviceNames) {
  const auto machine = platform::Machine::Create();
  struct Case {
    const char16_t* printer;
    const char16_t* device;
    bool same;
  };
  const Case cases[] = {
      {u"Label Printer", u"Label", true},
      {u"Label", u"Label Printer", true},
      {u"Label Printer", u"label", false},
      {u"Label", u"Laser", false},
      {u"\\\\srv\\Label,LPT1:", u"Label", true},
      {u"Label", u"\\\\other\\Label,x", true},
      {nullptr, u"Label", true},
      {u"Label", u"", true},
      {u",x", u"Label", true},
      {u"a\\", u"Label", true},
      {u"Label 2", u"Label 1", false},
      // dmDeviceName ends inside the server's name.
      {u"\\\\warehouse-print-server-01.example\\Label,x", u"\\\\warehouse-print-server-01.exam",
       true},
      {u"\\\\warehouse-print-server-02.example\\Label", u"\\\\warehouse-print-server-01.exam",
       false},
      {u"\\\\server\\Label", u"\\\\serve", false},
  };
  for (const Case& c : cases) {
    auto block = DefaultBlock(c.device);
    std::fill(std::begin(block.Record.Public.dmDeviceName),
              std::end(block.Record.Public.dmDeviceName), u'\0');
    std::u16string(c.device).copy(block.Record.Public.dmDeviceName, 32);
    EXPECT_EQ(CheckSettingsRecord(RecordView(&block.Record), c.printer), c.same ? 0u : 32u);
    for (const auto& [minor, old] : {std::pair<DWORD, bool>{2, true}, {0, false}}) {
      machine->SetOs({.major = old ? 5u : 6u, .minor = minor});
      EXPECT_EQ(IsOwnSettingsRecord(block.Record, c.printer), c.same || !old);
    }
  }
  auto block = DefaultBlock();
  std::fill_n(block.Record.Public.dmDeviceName, 32, u'x');
  EXPECT_EQ(CheckSettingsRecord(RecordView(&block.Record), std::u16string(40, u'x').c_str()), 0u)
      << "a name that fills its field";
}

class Records : public support::MachineTest {
 protected:
  void SetUp() override {
    MachineTest::SetUp();
    block_ = DefaultBlock();
    block_.Printer.PaperNum = 2;
    block_.Printer.Papers[1] = block_.Printer.Papers[0];
    Store();
  }
  void Store() { support::StoreBlock(machine(), block_); }

  // What the module makes of an input record that ends where nobody may read.
  Bytes Convert(const Bytes& input, LONG size = 452) {
    const support::GuardedBuffer in(input.data(), input.size());
    const support::GuardedBuffer out(452);
    in.Protect();
    EXPECT_TRUE(exports_.DrvConvertDevMode(printerName_.data(), in.As<DEVMODEW>(),
                                           out.As<DEVMODEW>(), &size, CDM_CONVERT));
    EXPECT_EQ(size, 452);
    return BytesOf(out.data(), out.size());
  }
  Bytes Stored() { return BytesOf(&block_.Record, 452); }
  // nPrintSpeed of the printer's settings, without an input.
  int Speed() { return At(Convert(Bytes(72)).data(), 398); }

  // The offsets at which a result differs from the stored record, as "first-last" ranges.
  std::string Changed(const Bytes& result) {
    const Bytes stored = Stored();
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
  DriverSettingsBlock block_;
};

TEST_F(Records, PublicFieldsMergeByTheirRules) {
  struct Case {
    const char* what;
    DWORD fields;
    size_t offset;
    int16_t value;
    size_t resultOffset;
    int16_t result;
  };
  const Case cases[] = {
      {"landscape", DM_ORIENTATION, 76, 2, 388, 2},
      {"no orientation", DM_ORIENTATION, 76, 3, 388, 1},
      {"orientation not marked", DM_COPIES, 76, 2, 388, 1},
      {"registered paper", DM_PAPERSIZE, 78, 258, 220, 258},
      {"free-size paper", DM_PAPERSIZE, 78, 256, 220, 256},
      {"standard form", DM_PAPERSIZE, 78, 9, 220, 257},
      {"paper not registered", DM_PAPERSIZE, 78, 259, 220, 257},
      {"negative paper", DM_PAPERSIZE, 78, -1, 220, 257},
      {"no copies", DM_COPIES, 86, 0, 382, 1},
      {"negative copies", DM_COPIES, 86, -5, 382, 1},
      {"many copies", DM_COPIES, 86, 500, 382, 500},
      {"copies not marked", 0, 86, 500, 382, 1},
  };
  for (const Case& c : cases) {
    Bytes input(220);
    Put<WORD>(input.data(), 68, 220);
    Put<DWORD>(input.data(), 72, c.fields);
    Put(input.data(), c.offset, c.value);
    EXPECT_EQ(At(Convert(input).data(), c.resultOffset), c.result) << c.what;
    // The driver's own record contributes its public fields alike.
    Bytes own = Stored();
    Put<DWORD>(own.data(), 72, c.fields);
    Put(own.data(), c.offset, c.value);
    EXPECT_EQ(At(Convert(own).data(), c.resultOffset), c.result) << c.what;
  }
}

constexpr char kPublicOnly[] = "86-86 382-382 ";

// Every private byte of the input is another: what a record adds to the settings shows as a range.
TEST_F(Records, PrivateFieldsAreTakenFromOwnRecordsOnly) {
  Bytes input = Stored();
  std::fill(input.begin() + 220, input.begin() + 448, std::byte{0x5A});
  Put<DWORD>(input.data(), 72, DM_COPIES);
  Put<int16_t>(input.data(), 86, 7);
  // Twelve numbers of the free-size paper, offsets and speed to move mode, colour text and SYNC.
  const std::string taken = "86-86 350-373 382-382 384-387 390-403 408-409 434-435 ";
  EXPECT_EQ(Changed(Convert(input)), taken);
  // Settings that insist.
  block_.Record.Private.nCompulsory = 1;
  Store();
  EXPECT_EQ(Changed(Convert(input)), kPublicOnly);
  block_.Record.Private.nCompulsory = 0;
  Store();
  // A record named for another printer: foreign before Windows Vista, the driver's own from then.
  Put<char16_t>(input.data(), 0, u'X');
  EXPECT_EQ(Changed(Convert(input)), taken);
  machine().SetOs({.major = 5, .minor = 1});
  EXPECT_EQ(Changed(Convert(input)), kPublicOnly);
}

TEST_F(Records, ForeignOnesAreToldFromOwn) {
  EXPECT_EQ(CheckSettingsRecord(RecordView(&block_.Record), kPrinter), 0u);
  struct Case {
    size_t offset;
    WORD value;
    unsigned mask;
  };
  for (const Case& c : {Case{64, 0x0400, 1},
                        {66, 0x0E00, 2},
                        {68, 221, 4 | 16},
                        {68, 3564, 4 | 16},  // its signature would lie just behind a block
                        {68, 65535, 4 | 16},
                        {68, 0, 4 | 16},
                        {70, 231, 8 | 16},
                        {70, 3, 8 | 16},
                        {70, 4, 8},  // nothing but a signature
                        {70, 0, 8 | 16},
                        {448, 0, 16},
                        {0, 'X', 32}}) {
    SCOPED_TRACE(c.offset);
    Bytes foreign(131072);
    std::memcpy(foreign.data(), &block_.Record, 452);
    Put(foreign.data(), c.offset, c.value);
    if (c.mask == kOtherExtra) Put(foreign.data(), 220, SETTINGS_SIGNATURE);
    EXPECT_EQ(CheckSettingsRecord(RecordView(foreign.data()), kPrinter), c.mask);
    if (c.mask == kOtherDevice) continue;
    // Given, it adds its public fields alone; stored, it counts as none.
    Put<DWORD>(foreign.data(), 72, DM_COPIES);
    Put<int16_t>(foreign.data(), 86, 7);
    Put<int16_t>(foreign.data(), 398, 4);
    EXPECT_EQ(Changed(Convert(foreign)), c.value == 0 && c.offset == 68 ? "" : kPublicOnly);
    machine().SetDefaultRecord(kPrinter, foreign);
    EXPECT_EQ(Speed(), 1);
    Store();
  }
}

TEST_F(Records, EveryLengthIsReadWithinItself) {
  // Bytes that would be taken for fields if they were read.
  Bytes pattern(1024, std::byte{1});
  Put<DWORD>(pattern.data(), 72, 0xFFFFFFFF);
  Put<int16_t>(pattern.data(), 76, 2);
  Put<int16_t>(pattern.data(), 78, 256);
  Put<int16_t>(pattern.data(), 86, 9);
  // Every size with the extras that matter, and every extra with the sizes that do.
  const auto matters = [](WORD size, WORD extra) {
    return extra <= 5 || extra == 20 || (extra >= 231 && extra <= 233) || extra == 300 ||
           size == 0 || (size >= 71 && size <= 77) || (size >= 218 && size <= 221) || size == 260;
  };
  const support::OpenedPrinter printer;
  for (WORD size = 0; size <= 260; ++size) {
    for (WORD extra = 0; extra <= 300; ++extra) {
      if (!matters(size, extra)) continue;
      const size_t length = std::max(size_t{72}, size_t{size} + extra);
      const support::GuardedBuffer in(pattern.data(), length);
      Put(in.data(), 68, size);
      Put(in.data(), 70, extra);
      in.Protect();
      const support::GuardedBuffer out(452);
      auto* record = in.As<DEVMODEW>();
      ASSERT_EQ(1, exports_.DrvDocumentProperties(nullptr, printer, printerName_.data(),
                                                  out.As<DEVMODEW>(), record, DM_COPY | DM_MODIFY));
      if (size >= 76 && size < 220) {
        const size_t kept = std::min<size_t>(extra, 232);
        Bytes echo = BytesOf(in.data(), size + kept);
        Put(echo.data(), 70, static_cast<WORD>(kept));
        echo.resize(452);
        ASSERT_EQ(BytesOf(out.data(), 452), echo) << size << '+' << extra;
      } else {
        ASSERT_EQ(At<WORD>(out.data(), 68), 220) << size << '+' << extra;
        const bool read = size >= 220;
        ASSERT_EQ(At(out.data(), 388), read ? 2 : 1) << size << '+' << extra;
        ASSERT_EQ(At(out.data(), 220), read ? 256 : 257) << size << '+' << extra;
        ASSERT_EQ(At(out.data(), 382), read ? 9 : 1) << size << '+' << extra;
        ASSERT_EQ(At(out.data(), 398), 1) << "private fields of a foreign record";
      }
      const DWORD fields =
          exports_.DrvDeviceCapabilities(printer, printerName_.data(), DC_FIELDS, nullptr, record);
      ASSERT_EQ(fields, 0x270Fu);
      ATTRIBUTE_INFO_3 info{};
      info.dmYResolution = 77;
      EXPECT_FALSE(
          exports_.DrvQueryJobAttributes(printer, record, 3, reinterpret_cast<BYTE*>(&info)));
      ASSERT_EQ(info.dmYResolution, size >= 98 ? 0x0101 : 77) << size;
    }
  }
}

TEST_F(Records, MayLieAtAnyAddressAndBeTheirOwnOutput) {
  Bytes memory(1 + 452);
  auto* record = reinterpret_cast<DEVMODEW*>(memory.data() + 1);
  std::memcpy(memory.data() + 1, &block_.Record, 452);
  Put<int16_t>(memory.data() + 1, 398, 4);
  LONG size = 452;
  EXPECT_TRUE(exports_.DrvConvertDevMode(printerName_.data(), record, record, &size, CDM_CONVERT));
  EXPECT_EQ(At(memory.data() + 1, 398), 4);
  Put<WORD>(memory.data() + 1, 68, 100);
  Put<WORD>(memory.data() + 1, 70, 300);
  EXPECT_TRUE(exports_.DrvConvertDevMode(printerName_.data(), record, record, &size, CDM_CONVERT));
  EXPECT_EQ(At<WORD>(memory.data() + 1, 70), 232);
}

TEST_F(Records, WhatIsStoredIsUsedOnlyWhole) {
  block_.Record.Private.nPrintSpeed = 5;
  Store();
  EXPECT_EQ(Speed(), 5);
  EXPECT_TRUE(ResolveSettings(nullptr, nullptr, nullptr, kPrinter, DM_COPY | kCopyWholeBlock));
  Bytes shorter = Stored();
  shorter.resize(200);
  machine().SetDefaultRecord(kPrinter, shorter);
  EXPECT_EQ(Speed(), 1);
  const auto part = *machine().Data(kPrinter, u"Private DevMode");
  for (const size_t size : {size_t{0}, size_t{3337}, size_t{3339}}) {
    Store();
    auto other = part;
    other.bytes.resize(size);
    machine().SetData(kPrinter, u"Private DevMode", other);
    EXPECT_EQ(Speed(), 1) << size;
    EXPECT_EQ(At<uint32_t>(Convert(Bytes(72)).data(), 448), SETTINGS_SIGNATURE);
  }
  machine().RemoveData(kPrinter, u"Private DevMode");
  EXPECT_EQ(Speed(), 1);
  // A record of another printer's name: the driver's own from Windows Vista on.
  block_.Record.Public.dmDeviceName[0] = u'X';
  Store();
  EXPECT_EQ(Speed(), 5);
  machine().SetOs({.major = 5, .minor = 2});
  EXPECT_EQ(Speed(), 1);
}

}  // namespace
}  // namespace kestrel
