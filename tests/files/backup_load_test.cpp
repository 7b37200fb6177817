#include "driver/halftone_info.h"
#include "operation/device_settings.h"
#include "tests/files/backup_fixture.h"

namespace kestrel::test {
namespace {

constexpr char16_t kNotABackup[] = u"このファイルは|";
constexpr char16_t kWrongVersion[] = u"ファイルのバー|";
constexpr char16_t kFontWarning[] = u"読み込んだクリ|";

TEST_F(BackupTest, ForeignFilesAreRefused) {
  struct Case {
    const char16_t* text;
    const char16_t* shown;
  };
  const Case cases[] = {
      {u"", kNotABackup},
      {u"[ﾊﾞｰｼﾞｮﾝ情報]\r\n; FileVersion=0003\r\n[x]\r\na=1\r\n", kNotABackup},
      {u"[ﾊﾞｰｼﾞｮﾝ情報]\r\nOther=1\r\n", kWrongVersion},
      {u"[ﾊﾞｰｼﾞｮﾝ情報]\r\nFileVersion=3\r\n", kWrongVersion},
      {u"[ﾊﾞｰｼﾞｮﾝ情報]\r\nFileVersion=0004\r\n", kWrongVersion},
      {u"[ﾊﾞｰｼﾞｮﾝ情報]\r\nFileVersion=00030\r\n", kWrongVersion},
      {u"[ﾊﾞｰｼﾞｮﾝ情報]\r\nFileVersion=0003\r\n", u""},  // no driver keys: no message either
  };
  const auto before = my_.block;
  for (const Case& c : cases) {
    Write(c.text);
    EXPECT_FALSE(Load());
    EXPECT_EQ(Shown(), c.shown) << Cp932(c.text);
    EXPECT_EQ(std::memcmp(&my_.block, &before, sizeof before), 0);
  }
  EXPECT_FALSE(Load(u"C:\\data\\none.ini"));
  EXPECT_EQ(Shown(), kNotABackup);
  EXPECT_FALSE(Load(u"C:\\data\\none\\a.ini"));
  std::filesystem::create_directories(machine().HostPath(u"C:\\data\\folder.ini"));
  EXPECT_FALSE(Load(u"C:\\data\\folder.ini"));
  EXPECT_EQ(Shown(), kNotABackup);
  EXPECT_EQ(ReadSyncPrint(kPrinter), 0u);
}

// A line of a backup is another, or missing: what that makes of the field at an offset of the
// block.
TEST_F(BackupTest, LinesAreReadByTheirRules) {
  constexpr int kRefused = 99;  // the field keeps its number and the load fails
  constexpr int kKept = 98;     // the field keeps its number
  const std::u16string longName = u"PaperName=" + std::u16string(40, u'表');
  struct Case {
    const char16_t* line;
    std::u16string instead;
    size_t offset;
    int value;
  };
  const Case cases[] = {
      // The driver's keys up to ColorText are needed; the two behind are 0 without one.
      {u"PaperID=257", u"", 220, kRefused},
      {u"PaperID=257", u"PaperID=", 220, kRefused},
      {u"Orient=1", u"", 388, kRefused},
      {u"ColorText=1", u"", 408, kRefused},
      {u"ColorText=1", u"ColorText=", 408, kRefused},
      {u"CompulsorySet=0", u"", 438, 0},
      {u"CompulsorySet=0", u"CompulsorySet=", 438, 0},
      {u"Position=1", u"", 436, 0},
      {u"PitchOffset=0", u"PitchOffset=-5", 396, -5},
      {u"PitchOffset=0", u"PitchOffset=70000", 396, 4464},
      {u"PitchOffset=0", u"PitchOffset= +12abc", 396, 12},
      {u"PitchOffset=0", u"PitchOffset=\"17\"", 396, 17},
      {u"PitchOffset=0", u"PitchOffset=x", 396, 0},
      {u"PitchOffset=0", u"PitchOffset=3,9", 396, 3},
      {u"PitchOffset=0", u"PitchOffset=00000000000000123", 396, 1},  // 15 characters
      {u"PaperID=257", u"PaperID=,", 220, kKept},
      {u"PaperID=257", u"PaperID=12\r\nPaperID=13", 220, 12},
      {u"PaperID=257", u"paperid=12\r\nPaperID=13", 220, 13},
      {u"HeadDensity=203", u"HeadDensity=305", 3654, kKept},
      {u"Mecha=0", u"Mecha=2", 3656, kKept},
      {u"UserDef=0", u"UserDef=1", 380, 1},
      {u"Yoshi=0", u"", 372, 0},
      {u"Yoshi=0", u"Yoshi=", 372, 0},
      {u"Thickness=3", u"", 352, kKept},
      {u"PaperName=Standard Label 58 x 68 mm", longName, 454 + 2 * 30, u'表'},
      {u"PaperName=Standard Label 58 x 68 mm", longName, 454 + 2 * 31, 0},
      // Hexadecimal, and set in the registry too.
      {u"SYNC=0", u"SYNC=1f", 434, 31},
      {u"SYNC=0", u"SYNC=A", 434, 0},
      {u"SYNC=0", u"SYNC=123", 434, 0x23},
      {u"SYNC=0", u"SYNC=100", 434, 0},
      {u"SYNC=0", u"SYNC=1", 434, 1},
      {u"SYNC=0", u"", 434, 0},
      {u"SYNC=0", u"SYNC=aBc", 434, 10},
      {u"SYNC=0", u"SYNC=", 434, 0},
      {u"SYNC=0", u"SYNC=ffg", 434, 255},
      {u"SYNC=0", u"SYNC=-1", 434, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(Cp932(c.instead.empty() ? c.line : c.instead));
    WriteDefaultsWith(c.line, c.instead.empty() ? u"" : c.instead + u"\r\n");
    const int before = c.value == kKept ? kKept : kRefused;
    support::Put(&my_.block, c.offset, static_cast<int16_t>(before));
    WriteSyncPrint(kPrinter, c.value == 0);
    EXPECT_EQ(Load(), c.value != kRefused);
    EXPECT_EQ(Shown(), u"");
    EXPECT_EQ(At<uint16_t>(&my_.block, c.offset), static_cast<uint16_t>(c.value));
    if (c.offset == 434) {
      EXPECT_EQ(ReadSyncPrint(kPrinter), c.value != 0 ? 1u : 0u);
    }
  }
  machine().SetRegistryAccess(true, false);
  WriteDefaultsWith(u"SYNC=0", u"SYNC=1");
  EXPECT_TRUE(Load()) << "the registry does not decide";
}

TEST_F(BackupTest, EachNumberOfATripleIsOptional) {
  DEVHTINFO info = {};
  info.ColorInfo.Red = {7, 8, 9};
  SetHalftoneInfo(my_.block, info);
  WriteDefaultsWith(u"HTInfo.ColorInfo.Red=6810,3050,0", u"HTInfo.ColorInfo.Red=100,,300\r\n");
  EXPECT_TRUE(Load());
  const CIECHROMA red = HalftoneInfo(my_.block).ColorInfo.Red;
  EXPECT_EQ(red.x, 100);
  EXPECT_EQ(red.y, 8);
  EXPECT_EQ(red.Y, 300);
  EXPECT_EQ(HalftoneInfo(my_.block).ColorInfo.Green.x, 2260);
}

TEST_F(BackupTest, CountsDecideWhatIsRead) {
  struct Case {
    const char16_t* value;
    int papers, fonts;  // -1: as they were
  };
  for (const Case& c : {Case{u"0", 0, 0},
                        {u"20", 20, 20},
                        {u"25", 20, 25},
                        {u"80", 20, 70},
                        {u"-1", 0, 0},
                        {u"70000", 20, 70},
                        {u"65537", 1, 1},
                        {u"", -1, -1}}) {
    std::u16string text = platform::FromCp932(Golden());
    const auto put = [&](std::u16string_view key, std::u16string_view old) {
      text.replace(text.find(std::u16string(key) + std::u16string(old)), key.size() + old.size(),
                   std::u16string(key) + c.value);
    };
    put(u"PaperNum=", u"1");
    put(u"DecoFontNum=", u"0");
    put(u"BarFontNum=", u"0");
    Write(text);
    Properties fresh;
    std::swap(my_.block, fresh.block);
    my_.block.Printer.PaperNum = 5;
    for (PaperInfo& paper : my_.block.Printer.Papers) paper = my_.block.Printer.Papers[0];
    my_.fonts.DecoFontNum = my_.fonts.BarFontNum = 3;
    for (int i = 0; i < kFontCapacity; ++i) my_.deco[i].Deco.Size = my_.bar[i].Bar.Mode = 5;
    ASSERT_TRUE(Load());
    const int papers = c.papers < 0 ? 5 : c.papers;
    const int fonts = c.fonts < 0 ? 3 : c.fonts;
    EXPECT_EQ(my_.block.Printer.PaperNum, papers) << Cp932(c.value);
    EXPECT_EQ(my_.fonts.DecoFontNum, fonts) << Cp932(c.value);
    EXPECT_EQ(my_.fonts.BarFontNum, fonts) << Cp932(c.value);
    EXPECT_EQ(Shown(), fonts > 0 ? kFontWarning : u"") << Cp932(c.value);
    for (int i = 0; i < kFontCapacity; ++i) {
      EXPECT_EQ(my_.deco[i].Deco.Size, i < fonts ? 5 : 0);
      EXPECT_EQ(my_.bar[i].Bar.Mode, i < fonts ? 5 : 0);
      EXPECT_EQ(my_.bar[i].FontKind, i < fonts ? kBarcodeFont : 0);
    }
    // A paper without its section loses its name and keeps its sizes; those behind are cleared.
    for (int i = 0; i < kPaperCapacity; ++i) {
      EXPECT_EQ(my_.block.Printer.Papers[i].PaperName[0], i == 0 && papers > 0 ? u'S' : 0) << i;
      EXPECT_EQ(my_.block.Printer.Papers[i].LabelWidth, i < papers ? 580 : 0) << i;
    }
    EXPECT_EQ(my_.block.Printer.HeadDensity, 203);
  }
}

TEST_F(BackupTest, DecorativeFontsEndAtAMissingKeyAndBarcodeFontsDoNot) {
  std::u16string text = platform::FromCp932(Golden());
  text.replace(
      text.find(u"DecoFontNum=0"), 13,
      u"DecoFontNum=2\r\n[DECOFONT00]\r\nDecoFontName=甲\r\nResiFontName=X20\r\nDecorate=9\r\n"
      u"SizeX=8\r\n[DECOFONT01]\r\nResiFontName=X21\r\nDecorate=9");
  text.replace(
      text.find(u"BarFontNum=0"), 12,
      u"BarFontNum=1\r\n[BARFONT00]\r\nBarFontName=乙\r\nBarcodeKind=1900\r\nActiveData=4\r\n"
      u"BarcodeID=6\r\nZipSize=2\r\nZipCode=12345678901234567890\r\nHeight=5");
  Write(text);
  for (FontRecord& font : my_.deco) {
    std::fill_n(font.FontName, 3, u'q');
    std::fill_n(font.Deco.DecoFontName, 3, u'q');
    std::fill_n(font.Deco.ResiFontName, 3, u'r');
    font.Deco.Decorate = font.Deco.Size = 1;
    font.Deco.SizeX = 2;
  }
  my_.bar[0].Bar.PrintNum = 3;
  ASSERT_TRUE(Load());
  EXPECT_EQ(Shown(), kFontWarning);
  EXPECT_EQ(std::u16string(my_.deco[0].FontName, 3), std::u16string(u"甲\0\0", 3));
  EXPECT_EQ(my_.deco[0].Deco.ResiFontName, std::u16string(u"X20"));
  EXPECT_EQ(my_.deco[0].Deco.Decorate, 9);
  EXPECT_EQ(my_.deco[0].Deco.Size, 1);
  EXPECT_EQ(my_.deco[0].Deco.SizeX, 2) << "behind the missing Size";
  EXPECT_EQ(my_.deco[1].Deco.DecoFontName[0], 0);
  EXPECT_EQ(my_.deco[1].FontName[0], 0);
  EXPECT_EQ(my_.deco[1].Deco.ResiFontName[0], u'r');
  EXPECT_EQ(my_.bar[0].FontName, std::u16string(u"乙"));
  EXPECT_EQ(my_.bar[0].FontKind, kBarcodeFont);
  EXPECT_EQ(my_.bar[0].Bar.ActiveData, 4);
  EXPECT_EQ(my_.bar[0].Bar.PrintNum, 3);
  EXPECT_EQ(At(my_.bar[0].Bar.BarcodeParam, 0), 6);
  for (const BarcodeField& field : BarcodeFields(1900)) {
    if (field.type != BarcodeFieldType::kTerminatedText) continue;
    const auto* zip = reinterpret_cast<const char*>(my_.bar[0].Bar.BarcodeParam + field.offset);
    EXPECT_EQ(std::string(zip), std::string("12345678901234567890").substr(0, field.width - 1u));
  }
}

TEST_F(BackupTest, EverythingComesBackInAnotherPrinter) {
  auto& block = my_.block;
  block.Printer.PaperNum = kPaperCapacity;
  for (int i = 0; i < kPaperCapacity; ++i) {
    PaperInfo& paper = block.Printer.Papers[i];
    for (size_t offset = 128; offset < 152; offset += 2)
      support::Put<int16_t>(&paper, offset,
                            static_cast<int16_t>((i % 2 != 0 ? -32768 : 32767) + i));
    paper.UserDef = 1;
    // 63 bytes in code page 932, in half-width and in full-width characters.
    const std::u16string name = i == 0       ? u"ﾗﾍﾞﾙ 髙 ソ=;[x]"
                                : i % 2 != 0 ? std::u16string(63, u'ｿ')
                                             : std::u16string(31, u'表') + u'x';
    SetName(paper.PaperName, name);
  }
  for (size_t offset = 382; offset < 440; offset += 2)
    if (offset != 404) support::Put<int16_t>(&block, offset, static_cast<int16_t>(offset * 161));
  block.Record.Private.nTSMode = 255;
  for (size_t offset = 3658; offset < 3790; offset += 4)
    support::Put<int32_t>(&block, offset, static_cast<int32_t>(offset * 1234567u));
  my_.fonts.DecoFontNum = 50;
  my_.fonts.BarFontNum = 40;
  for (int i = 0; i < 50; ++i) {
    FontRecord& font = my_.deco[i];
    std::fill_n(font.FontName, 31, i % 2 != 0 ? u'亜' : u'哀');
    std::copy_n(font.FontName, 32, font.Deco.DecoFontName);
    SetName(font.Deco.ResiFontName, u"ＭＳ ゴシック 24");
    for (size_t offset = 194; offset < 232; offset += 2)
      support::Put<int16_t>(&font, offset,
                            static_cast<int16_t>(i * 1000 - 20000 + static_cast<int>(offset)));
  }
  for (int i = 0; i < 40; ++i) {
    FontRecord& font = my_.bar[i];
    font.FontKind = kBarcodeFont;
    std::fill_n(font.FontName, 31, u'ﾊ');
    std::copy_n(font.FontName, 32, font.Bar.BarFontName);
    for (size_t offset = 130; offset < 146; offset += 2)
      support::Put<int16_t>(&font, offset, static_cast<int16_t>(-32768 + i));
    font.Bar.BarcodeKind = BarcodeKinds()[static_cast<size_t>(i) % 19].id;
    for (const BarcodeField& field : BarcodeFields(font.Bar.BarcodeKind)) {
      const size_t bytes =
          field.width - (field.type == BarcodeFieldType::kTerminatedText ? 1u : 0u);
      std::memset(font.Bar.BarcodeParam + field.offset, '0' + i % 10, bytes);
    }
  }
  ASSERT_TRUE(Save());
  EXPECT_EQ(Shown(), u"");
  const std::string elsewhere = ReadElsewhere();
  const auto repeated = [](const char* letter, int count) {
    std::string text;
    while (count-- > 0) text += letter;
    return text;
  };
  for (const std::string& line :
       {"PAPER18|PaperName|" + repeated("表", 31) + "x", "PAPER19|PaperName|" + repeated("ｿ", 63),
        std::string("PAPER00|PaperName|ﾗﾍﾞﾙ 髙 ソ=;[x]"), std::string("PAPER19|LabelWidth|-32749"),
        "DECOFONT49|DecoFontName|" + repeated("亜", 31),
        std::string("DECOFONT49|NegativeData|29230"), std::string("BARFONT39|PrintNum|-32729"),
        std::string("BARFONT10|ZipCode|0000000"), std::string("同期印刷|SYNC|ff")})
    EXPECT_TRUE(Contains(elsewhere, line + "\n")) << line;

  Properties source;
  std::swap(source.block, my_.block);
  source.deco = my_.deco;
  source.bar = my_.bar;
  std::fill(my_.deco.begin(), my_.deco.end(), FontRecord{});
  std::fill(my_.bar.begin(), my_.bar.end(), FontRecord{});
  my_.fonts.DecoFontNum = my_.fonts.BarFontNum = 0;
  my_.block.Printer.HeadDensity = 305;
  ASSERT_TRUE(Load());
  EXPECT_EQ(Shown(), kFontWarning);
  EXPECT_EQ(my_.block.Printer.HeadDensity, 305);
  my_.block.Printer.HeadDensity = 203;
  EXPECT_EQ(support::BytesOf(&my_.block, sizeof my_.block),
            support::BytesOf(&source.block, sizeof source.block));
  EXPECT_EQ(my_.fonts.DecoFontNum, 50) << "a session may hold more than 70 of both kinds";
  EXPECT_EQ(my_.fonts.BarFontNum, 40);
  for (int i = 0; i < kFontCapacity; ++i) {
    EXPECT_EQ(support::BytesOf(my_.deco[i]), support::BytesOf(source.deco[i])) << i;
    EXPECT_EQ(support::BytesOf(my_.bar[i]), support::BytesOf(source.bar[i])) << i;
  }
}

TEST_F(BackupTest, ASessionWithoutFontListsHasNoFonts) {
  my_.fonts.DecoFonts = my_.fonts.BarFonts = nullptr;
  my_.fonts.Loaded = false;
  EXPECT_TRUE(Save());
  EXPECT_EQ(Bytes(), Golden());
  WriteDefaultsWith(u"DecoFontNum=0", u"DecoFontNum=3\r\n");
  EXPECT_TRUE(Load());
  EXPECT_EQ(my_.fonts.DecoFontNum, 0);
}

}  // namespace
}  // namespace kestrel::test
