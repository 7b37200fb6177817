// The set-up file in the Windows directory, imported directly and by the spooler's event.
#include "files/setup_file.h"

#include "driver/halftone_info.h"
#include "platform/machine/text.h"
#include "tests/support/test_machine.h"

namespace kestrel {
namespace {

using support::BytesOf;

constexpr char16_t kFile[] = u"C:\\WINDOWS\\SetupKit_QM6_1R.INI";
// The sections that a file must have.
const std::u16string kHead = u"[ﾊﾞｰｼﾞｮﾝ情報]\r\nDriverName=x\r\n[用紙登録数]\r\nPaperNum=0\r\n";
constexpr int kOld = 0x5555;  // each 16-bit field before an import

class SetupFileTest : public support::MachineTest {
 protected:
  bool Import(const std::u16string& text) {
    machine().WriteFile(kFile, platform::ToCp932(text));
    std::memset(static_cast<void*>(&block_), 0x55, sizeof block_);
    return ImportSetupFile(block_, nullptr, nullptr);
  }
  DriverSettingsBlock block_;
  PrivateDevMode& settings_ = block_.Record.Private;
};

TEST_F(SetupFileTest, FileWithoutNameOrValidPaperCountIsRejected) {
  const auto expectRejected = [this](std::u16string nameLine, std::u16string countLine) {
    EXPECT_FALSE(Import(u"[ﾊﾞｰｼﾞｮﾝ情報]\r\n" + nameLine + u"\r\n[用紙登録数]\r\n" + countLine));
    EXPECT_EQ(BytesOf(block_), std::vector(sizeof block_, std::byte{0x55}));
  };
  expectRejected(u"", u"PaperNum=1");
  expectRejected(u"DriverName=x", u"");
  expectRejected(u"DriverName=x", u"PaperNum=21");
  expectRejected(u"DriverName=x", u"PaperNum=65537");  // 1 in 16 bits
  EXPECT_TRUE(Import(u"[ﾊﾞｰｼﾞｮﾝ情報]\r\nDriverName=x\r\n[用紙登録数]\r\nPaperNum=20"));
}

// golden/make_everything.py writes a backup file and its records.
TEST_F(SetupFileTest, KeysAreThoseOfABackup) {
  std::u16string text = platform::FromCp932(support::Golden("everything.ini"));
  text.insert(text.find(u"ColorAdjust.IlluminantIndex"), u"ColorAdjust.");
  text.replace(text.find(u"HeadDensity=21845"), 17, u"HeadDensity=305");
  text.replace(text.find(u"Mecha=21845"), 11, u"Mecha=1");
  ASSERT_TRUE(Import(text));
  DriverSettingsBlock expected;
  std::memcpy(static_cast<void*>(&expected), support::Golden("everything.bin").data(),
              sizeof expected);
  expected.Record.Public = block_.Record.Public;
  expected.Record.Private.nTSMode = 0;  // no decimal number
  std::ranges::fill(expected.Record.Private.Reserved1, 0);
  std::memset(static_cast<void*>(expected.Printer.Papers + 12), 0x55, 8 * sizeof(PaperInfo));
  expected.Printer.HeadDensity = 305;
  expected.Printer.Mecha = kContinuousMode;
  EXPECT_EQ(BytesOf(block_), BytesOf(expected));
}

TEST_F(SetupFileTest, MissingKeySetsItsDefaultAndEmptyValueLeavesItsField) {
  ASSERT_TRUE(Import(kHead));
  EXPECT_EQ(settings_.Dither, 2);
  EXPECT_EQ(settings_.Position, 0);
  EXPECT_EQ(settings_.Orient, kOld) << "has no default";
  ASSERT_TRUE(Import(kHead + u"[ﾄﾞﾗｲﾊﾞ情報]\r\nDither=\r\nPosition=\r\n[同期印刷]\r\nSYNC=10\r\n"));
  EXPECT_EQ(settings_.Dither, kOld);
  EXPECT_EQ(settings_.Position, 1);
  EXPECT_EQ(settings_.nTSMode, 10) << "decimal";
}

TEST_F(SetupFileTest, LastNumberOfTripleIsLuminance) {
  ASSERT_TRUE(Import(kHead + u"[ﾊｰﾌﾄｰﾝ情報]\r\nHTInfo.ColorInfo.Red=6400\r\n"
                             u"HTInfo.ColorInfo.Green=1,2\r\n"));
  const COLORINFO colours = HalftoneInfo(block_).ColorInfo;
  EXPECT_EQ(colours.Red.Y, 6400);
  EXPECT_EQ(colours.Green.x, 1);
  EXPECT_EQ(colours.Green.Y, 2);
}

TEST_F(SetupFileTest, ValueIsTruncatedToItsField) {
  const std::u16string name(64, u'長'), zeros(98, u'0');
  ASSERT_TRUE(Import(kHead + u"[ﾊｰﾌﾄｰﾝ情報]\r\nHTInfo.DevPelsDPI=" + zeros + u"71\r\n" +
                     u"ColorAdjust.IlluminantIndex=5\r\n" + u"[ﾌﾘｰｻｲｽﾞ用紙]\r\nPaperName=" + name +
                     u"\r\n"));
  EXPECT_EQ(HalftoneInfo(block_).DevPelsDPI, 7u) << "a value has 99 characters";
  EXPECT_EQ(settings_.ColorAdjust.caIlluminantIndex, kOld) << "the key of a backup is ignored";
  EXPECT_EQ(settings_.FreePaper.PaperName, name.substr(1));
}

TEST_F(SetupFileTest, InitialiseEventStoresItsSettings) {
  std::u16string name = support::kPrinter;
  Import(kHead + u"[ﾄﾞﾗｲﾊﾞ情報]\r\nPrintSpeed=4\r\n[ﾃﾞﾊﾞｲｽ情報]\r\nMecha=2\r\n");
  EXPECT_TRUE(exports_.DrvPrinterEvent(name.data(), PRINTER_EVENT_INITIALIZE, 0, 0));
  const PrinterSettingsPart part = support::StoredPrinterPart(machine());
  EXPECT_EQ(part.Mecha, kPeelMode);
  // A printer without a default record uses the file's settings.
  SettingsRecord record{};
  LONG size = kRecordSize;
  EXPECT_TRUE(
      exports_.DrvConvertDevMode(name.data(), nullptr, &record.Public, &size, CDM_DRIVER_DEFAULT));
  EXPECT_EQ(record.Private.nPrintSpeed, 4);
  EXPECT_EQ(record.Public.dmPaperSize, 0) << "the public fields follow the private ones";
}

}  // namespace
}  // namespace kestrel
