// The set-up file in the Windows directory, through the import and through the spooler's event.
#include "files/setup_file.h"

#include <gtest/gtest.h>

#include "driver/halftone_info.h"
#include "platform/system/text.h"
#include "tests/support/settings.h"
#include "tests/support/test_machine.h"

namespace kestrel {
namespace {

using support::At;

constexpr char16_t kFile[] = u"C:\\WINDOWS\\SetupKit_QM6_1R.INI";
constexpr char16_t kHead[] = u"[ﾊﾞｰｼﾞｮﾝ情報]\r\nDriverName=VELA QM610r\r\n";

class SetupFile : public support::MachineTest {
 protected:
  enum Encoding { kCodePage, kUtf16 };

  void Write(const std::u16string& text, Encoding encoding = kCodePage) {
    std::string bytes;
    if (encoding == kCodePage) bytes = platform::ToCp932(text);
    if (encoding == kUtf16) {
      const std::u16string marked = u"\xFEFF" + text;
      bytes.assign(reinterpret_cast<const char*>(marked.data()), marked.size() * 2);
    }
    machine().WriteFile(kFile, bytes);
  }
  // The import on a block of the byte 0x11 everywhere, but for a small stored count.
  bool Import(const std::u16string& text) {
    Write(text);
    std::memset(static_cast<void*>(&block_), 0x11, sizeof block_);
    return ImportSetupFile(block_, nullptr, nullptr);
  }
  bool Untouched() {
    const auto* bytes = reinterpret_cast<const BYTE*>(&block_);
    return std::all_of(bytes, bytes + sizeof block_, [](BYTE b) { return b == 0x11; });
  }
  std::u16string With(std::u16string_view section, std::u16string_view lines) {
    return std::u16string(kHead) + u"[用紙登録数]\r\nPaperNum=0\r\n[" + std::u16string(section) +
           u"]\r\n" + std::u16string(lines) + u"\r\n";
  }

  DriverSettingsBlock block_;
};

TEST_F(SetupFile, IsRefusedWholeOrNotAtAll) {
  const std::u16string named = u"[ﾊﾞｰｼﾞｮﾝ情報]\r\nDriverName=x\r\n";
  struct Case {
    std::u16string text;
    bool taken;
  };
  const Case cases[] = {
      {u"", false},
      {u"[用紙登録数]\r\nPaperNum=1\r\n", false},
      {u"[ﾊﾞｰｼﾞｮﾝ情報]\r\nDriverName=\r\n[用紙登録数]\r\nPaperNum=1\r\n", false},
      {named, false},
      {named + u"[用紙登録数]\r\nPaperNum=\r\n", false},
      {named + u"[用紙登録数]\r\nPaperNum=21\r\n", false},
      {named + u"[用紙登録数]\r\nPaperNum=65537\r\n", false},
      {named + u"[用紙登録数]\r\nPaperNum=4294967297\r\n", false},
      {named + u"[用紙登録数]\r\nPaperNum=-1\r\n", false},
      {named + u"[用紙登録数]\r\nPaperNum=20\r\n", true},
      {named + u"[用紙登録数]\r\nPaperNum=none\r\n", true},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(Import(c.text), c.taken);
    EXPECT_EQ(Untouched(), !c.taken);
  }
}

TEST_F(SetupFile, MissingKeysHaveTheirDefaults) {
  ASSERT_TRUE(Import(With(u"ﾄﾞﾗｲﾊﾞ情報", u"")));
  struct Word {
    size_t offset;
    int value;
  };
  for (const Word& word : {Word{382, 1},
                           {398, 1},
                           {406, 2},
                           {408, 1},
                           {438, 0},
                           {434, 0},
                           {436, 0},
                           {452, 0},
                           {220, 0x1111},
                           {400, 0x1111},
                           {3654, 0x1111},
                           {3656, 0x1111},
                           {404, 0x1111},
                           {454, 0x1111},
                           {440, 0},
                           {446, 0},
                           {448, 0x1111},
                           {68, 220}})
    EXPECT_EQ(At(&block_, word.offset), word.value) << word.offset;
  // A key with an empty value leaves its field, whatever its default; but Position becomes 1.
  ASSERT_TRUE(
      Import(With(u"ﾄﾞﾗｲﾊﾞ情報", u"Copies=\r\nDither=\r\nPosition=\r\n[同期印刷]\r\nSYNC=10")));
  EXPECT_EQ(At(&block_, 382), 0x1111);
  EXPECT_EQ(At(&block_, 406), 0x1111);
  EXPECT_EQ(At(&block_, 436), 1);
  EXPECT_EQ(At(&block_, 434), 10) << "decimal here";
}

TEST_F(SetupFile, NumbersAndTriplesAreReadByTheirRules) {
  ASSERT_TRUE(Import(With(
      u"ﾊｰﾌﾄｰﾝ情報",
      u"HTInfo.HalfToneFlags=70000\r\nHTInfo.ColorInfo.Red=6400\r\nHTInfo.ColorInfo.Green=1,2\r\n"
      u"HTInfo.ColorInfo.Blue=1,2,3\r\nHTInfo.ColorInfo.Cyan=,,9\r\nHTInfo.ColorInfo.Magenta=1,2,3,"
      u"4\r\n"
      u"ColorAdjust.IlluminantIndex=5\r\nColorAdjust.RedGamma=70000\r\nColorAdjust.Contrast= "
      u"-3x")));
  const DEVHTINFO info = HalftoneInfo(block_);
  constexpr LONG kLeft = 0x11111111;
  const auto expect = [](const CIECHROMA& triple, LONG x, LONG y, LONG big) {
    EXPECT_EQ(triple.x, x);
    EXPECT_EQ(triple.y, y);
    EXPECT_EQ(triple.Y, big);
  };
  EXPECT_EQ(info.HTFlags, 70000u);
  EXPECT_EQ(info.HTPatternSize, DWORD{kLeft});
  expect(info.ColorInfo.Red, kLeft, kLeft, 6400);
  expect(info.ColorInfo.Green, 1, kLeft, 2);
  expect(info.ColorInfo.Blue, 1, 2, 3);
  expect(info.ColorInfo.Cyan, 0, 0, 9);
  expect(info.ColorInfo.Magenta, 1, 2, 3);
  const COLORADJUSTMENT adjustment = block_.Record.Private.ColorAdjust;
  EXPECT_EQ(adjustment.caIlluminantIndex, 0x1111) << "the backup file's spelling";
  EXPECT_EQ(adjustment.caRedGamma, 4464);
  EXPECT_EQ(adjustment.caContrast, -3);
  // A value ends behind its 99th character.
  const std::u16string zeros(98, u'0');
  ASSERT_TRUE(Import(With(u"ﾊｰﾌﾄｰﾝ情報", u"HTInfo.DevPelsDPI=" + zeros +
                                             u"71\r\nColorAdjust.ColorAdjust.IlluminantIndex=5")));
  EXPECT_EQ(HalftoneInfo(block_).DevPelsDPI, 7u);
  EXPECT_EQ(block_.Record.Private.ColorAdjust.caIlluminantIndex, 5);
}

TEST_F(SetupFile, PapersAreReadBelowTheCount) {
  const std::u16string longName(150, u'長');
  std::u16string text = std::u16string(kHead) + u"[用紙登録数]\r\nPaperNum=2\r\n";
  text += u"[PAPER00]\r\nPaperName=" + longName + u"\r\nLabelWidth=400\r\nUserDef=1\r\n";
  text += u"[PAPER01]\r\nPaperName=\r\n[PAPER02]\r\nPaperName=three\r\n";
  text += u"[ﾌﾘｰｻｲｽﾞ用紙]\r\nPaperName=自由\r\nYoshi=1\r\n";
  ASSERT_TRUE(Import(text));
  EXPECT_EQ(block_.Printer.PaperNum, 2);
  EXPECT_EQ(std::u16string(block_.Printer.Papers[0].PaperName, 64), longName.substr(0, 63) + u'\0');
  EXPECT_EQ(block_.Printer.Papers[0].LabelWidth, 400);
  EXPECT_EQ(block_.Printer.Papers[0].LabelHeight, 0x1111);
  EXPECT_EQ(block_.Printer.Papers[0].UserDef, 1);
  EXPECT_EQ(block_.Printer.Papers[1].PaperName[0], 0x1111);
  EXPECT_EQ(block_.Printer.Papers[2].PaperName[0], 0x1111);
  EXPECT_EQ(block_.Record.Private.FreePaper.PaperName, std::u16string(u"自由"));
  EXPECT_EQ(block_.Record.Private.FreePaper.Yoshi, 1);
}

TEST_F(SetupFile, InitialisesAPrinterInEachEncoding) {
  std::u16string name = support::kPrinter;
  for (const Encoding encoding : {kCodePage, kUtf16}) {
    Write(With(u"PAPER00",
               u"PaperName=x\r\n[ﾄﾞﾗｲﾊﾞ情報]\r\nPrintSpeed=4\r\n[ﾃﾞﾊﾞｲｽ情報]\r\nMecha=2\r\n"
               u"[ﾌﾘｰｻｲｽﾞ用紙]\r\nPaperName=髙表示"),
          encoding);
    machine().RemoveData(support::kPrinter, u"Private DevMode");
    EXPECT_TRUE(exports_.DrvPrinterEvent(name.data(), PRINTER_EVENT_INITIALIZE, 0, 0));
    const auto part = machine().Data(support::kPrinter, u"Private DevMode");
    ASSERT_TRUE(part) << encoding;
    EXPECT_EQ(At(part->bytes.data(), 3654 - 452), 0) << "no density in the file, and no default";
    EXPECT_EQ(At(part->bytes.data(), 3656 - 452), 2) << encoding;
    // Without a default record every caller gets the file's settings, signed.
    DriverSettingsBlock block{};
    LONG size = 452;
    EXPECT_TRUE(exports_.DrvConvertDevMode(name.data(), nullptr, &block.Record.Public, &size,
                                           CDM_DRIVER_DEFAULT));
    EXPECT_EQ(block.Record.Private.nPrintSpeed, 4) << encoding;
    EXPECT_EQ(block.Record.Private.FreePaper.PaperName, std::u16string(u"髙表示")) << encoding;
    EXPECT_EQ(block.Record.Private.Signature, SETTINGS_SIGNATURE);
    EXPECT_EQ(block.Record.Public.dmPaperSize, 0);
  }
}

}  // namespace
}  // namespace kestrel
