// Backup files: their bytes after a save, the fields that a load sets, and failures of the disk.
#include "driver/halftone_info.h"
#include "driver/text.h"
#include "operation/device_settings.h"
#include "tests/files/backup_fixture.h"

namespace kestrel::test {
namespace {

using support::BytesOf;

// golden/make_everything.py writes the file and the records.
TEST_F(BackupTest, FileWithEveryKeySetsEveryFieldAndIsSavedAgain) {
  const std::string file = support::Golden("everything.ini");
  const std::string records = support::Golden("everything.bin");
  std::memset(static_cast<void*>(&block_), 0x55, sizeof block_);
  std::memset(static_cast<void*>(&deco_), 0x55, sizeof deco_);
  std::memset(static_cast<void*>(&bar_), 0x55, sizeof bar_);
  machine().SetMemoryProfile(kFile, file);
  ASSERT_TRUE(Load());
  EXPECT_EQ(ShownMessages(), Messages{kFontWarning});
  std::string loaded(reinterpret_cast<const char*>(&block_), sizeof block_);
  loaded.append(reinterpret_cast<const char*>(&deco_), 2 * sizeof(FontRecord));
  loaded.append(reinterpret_cast<const char*>(&bar_), 22 * sizeof(FontRecord));
  EXPECT_EQ(std::ranges::mismatch(loaded, records).in1 - loaded.begin(), std::ssize(records))
      << "offset of the first byte that differs";
  Write(u"");
  EXPECT_TRUE(Save());
  EXPECT_EQ(Text(), FromCp932(file));
}

TEST_F(BackupTest, SaveReplacesItsSectionsAndPreservesOthers) {
  fonts_.DecoFontNum = fonts_.BarFontNum = 1;
  Write(u"");
  ASSERT_TRUE(Save());
  std::u16string expected = Text();
  const std::u16string comment = u"; 注釈\r\n", paper = u"[PAPER05]\r\nPaperName=five\r\n";
  std::u16string file = comment;
  for (size_t at = 0; at != expected.npos; at = expected.find(u'[', at + 1)) {
    file += expected.substr(at, expected.find(u'\n', at) + 1 - at) + u"Foreign=x\r\n";
  }
  Write(file + paper);
  block_.Printer.Papers[1] = block_.Printer.Papers[0];
  EXPECT_TRUE(Save());
  // The version section precedes the paper that is no longer registered, and retains its other key.
  expected.insert(expected.find(u"[ﾄﾞﾗｲﾊﾞ情報]"), paper);
  expected.insert(expected.find(u"FileVersion"), u"Foreign=x\r\n");
  EXPECT_EQ(Text(), comment + expected);
  EXPECT_EQ(block_.Printer.Papers[1].PaperName[0], 0) << "clears the records after the last paper";
}

TEST_F(BackupTest, PathIsLimitedToCodePage932And259Bytes) {
  const std::u16string folder = u"C:\\" + std::u16string(200, u'd') + u"\\";
  std::filesystem::create_directories(machine().HostPath(folder));
  const std::u16string longest = folder + std::u16string(55, u'f');
  EXPECT_TRUE(Save(longest.c_str()));
  EXPECT_EQ(FromCp932(machine().ReadFile(longest).value()), defaults_);
  for (const std::u16string& path : {longest + u"f", std::u16string(u"한.ini")}) {
    EXPECT_FALSE(Save(path.c_str()));
    EXPECT_EQ(ShownMessages(), Messages{});
    EXPECT_FALSE(Load(path.c_str()));
    EXPECT_EQ(ShownMessages(), Messages{kNotABackup});
  }
}

// The platform's A functions convert bytes by the process's ANSI code page.
TEST_F(BackupTest, AnsiCodePageThatChangesNamesFailsBeforeAnyAccess) {
  const auto expectFailure = [this](const char16_t* file) {
    machine().faults.Clear();
    EXPECT_FALSE(Save(file));
    EXPECT_FALSE(Load(file));
    EXPECT_EQ(ShownMessages(), Messages{}) << "the file itself may be valid";
    EXPECT_EQ(machine().faults.Calls(platform::Fault::kFile), 0);
  };
  machine().SetAnsiPage(CP_UTF8);
  expectFailure(kFile);  // the names of the sections change
  machine().SetAnsiPage(1252);
  EXPECT_TRUE(Load()) << "a single-byte code page preserves all bytes";
  expectFailure(u"C:\\data\\能.ini");  // the path changes
  machine().SetCodePage932(false);
  expectFailure(kFile);
}

TEST_F(BackupTest, FailedFileAccessEndsSaveOrOmitsOneLine) {
  bool done = false;
  const auto save = [&] {
    Write(u"");
    done = Save();
  };
  const auto checkSave = [&](platform::Fault, bool) {
    const std::u16string text = Text();
    const auto same = std::ranges::mismatch(text, defaults_).in1 - text.begin();
    EXPECT_TRUE(defaults_.ends_with(text.substr(static_cast<size_t>(same)))) << ToCp932(text);
    EXPECT_EQ(done, text.find(u"[ﾊｰﾌﾄｰﾝ情報]") != text.npos) << "only a driver key ends the save";
  };
  EXPECT_GE(ForEachFault({platform::Fault::kFile}, save, checkSave), 40);
}

TEST_F(BackupTest, FileOfAnotherFormatIsRejectedWithMessage) {
  const auto before = BytesOf(block_);
  const auto expectMessage = [&](Message message, const char16_t* text,
                                 const char16_t* replacement) {
    EXPECT_FALSE(LoadDefaultsWith({{text, replacement}, {u"PaperID=257", u"PaperID=258"}}));
    EXPECT_EQ(ShownMessages(), Messages{message}) << ToCp932(replacement);
    EXPECT_EQ(BytesOf(block_), before);
  };
  expectMessage(kNotABackup, u"[ﾊﾞｰｼﾞｮﾝ情報]", u"[x]");
  expectMessage(kWrongVersion, u"FileVersion=0003", u"");
  expectMessage(kWrongVersion, u"FileVersion=0003", u"FileVersion=00030");
}

TEST_F(BackupTest, MissingOptionalKeyClearsOrKeepsItsField) {
  PrivateDevMode& settings = block_.Record.Private;
  settings.nCompulsory = 98;
  settings.FreePaper.Yoshi = settings.FreePaper.Thickness = 98;
  ASSERT_TRUE(LoadDefaultsWith({{u"CompulsorySet=0\r\n", u""},
                                {u"PaperName=フリーサイズ\r\n", u""},
                                {u"Thickness=3\r\n", u""},
                                {u"Yoshi=0", u"Yoshi="},
                                {u"HeadDensity=203", u"HeadDensity=305"}}));
  EXPECT_EQ(settings.nCompulsory, 0);
  EXPECT_EQ(settings.FreePaper.PaperName[0], 0);
  EXPECT_EQ(settings.FreePaper.Yoshi, 0);
  EXPECT_EQ(settings.FreePaper.Thickness, 98);
  EXPECT_EQ(block_.Printer.HeadDensity, 203) << "the device section is not read";
}

TEST_F(BackupTest, NumberIsDecimalAndTruncatedTo16Bits) {
  const auto expectPosition = [this](int expected, std::u16string value) {
    block_.Record.Private.Position = 98;
    ASSERT_TRUE(LoadDefaultsWith({{u"Position=1", u"Position=" + value}}));
    EXPECT_EQ(block_.Record.Private.Position, expected) << ToCp932(value);
    EXPECT_EQ(block_.Record.Private.nCompulsory, 0) << "the next field of the record";
  };
  expectPosition(12, u" +12abc");
  expectPosition(70000 - 65536, u"70000");
  expectPosition(98, u",");                 // an empty element leaves the field
  expectPosition(1, u"00000000000000123");  // an element has 15 characters
}

TEST_F(BackupTest, ElementsOfTripleAreOptional) {
  ASSERT_TRUE(LoadDefaultsWith({{u".Red=6810,3050,0", u".Red=100,,300,4"}}));
  const COLORINFO colours = HalftoneInfo(block_).ColorInfo;
  EXPECT_EQ(colours.Red.x, 100);
  EXPECT_EQ(colours.Red.y, 3050);
  EXPECT_EQ(colours.Red.Y, 300);
}

TEST_F(BackupTest, SyncIsHexadecimalAndSetsSyncPrint) {
  const auto expectMode = [this](int mode, const char16_t* line) {
    DeviceSettings(kPrinter).SetSyncPrint(mode == 0);
    ASSERT_TRUE(LoadDefaultsWith({{u"SYNC=0\r\n", line}}));
    EXPECT_EQ(block_.Record.Private.nTSMode, mode) << ToCp932(line);
    EXPECT_EQ(DeviceSettings(kPrinter).SyncPrint(), mode != 0 ? 1u : 0u);
  };
  expectMode(0x9F, u"SYNC=9fg\r\n");
  expectMode(0x01, u"SYNC=1A\r\n");
  expectMode(0x23, u"SYNC=123\r\n");  // modulo 256
  expectMode(0, u"");
}

TEST_F(BackupTest, NameIsTruncatedAndHasNoControlCharacters) {
  const std::u16string name(32, u'表');  // 64 bytes
  ASSERT_TRUE(LoadDefaultsWith({{u"Standard Label 58 x 68 mm", name}}));
  EXPECT_EQ(block_.Printer.Papers[0].PaperName, name.substr(1));
  CopyText(block_.Printer.Papers[0].PaperName, u"a\r\n[PAPER01]\tb");
  ASSERT_TRUE(Save());
  EXPECT_NE(Text().find(u"PaperName=a  [PAPER01] b\r\n"), std::u16string::npos);
}

TEST_F(BackupTest, DecorativeFontEndsAtFirstMissingKey) {
  deco_[0].Deco.SizeX = deco_[1].Deco.Decorate = 98;
  CopyText(deco_[1].Deco.DecoFontName, u"old");
  ASSERT_TRUE(LoadDefaultsWith({{u"DecoFontNum=0\r\n",
                                 u"DecoFontNum=2\r\n[DECOFONT00]\r\nDecoFontName=A\r\n"
                                 u"ResiFontName=X20\r\nDecorate=9\r\nSizeX=8\r\n"
                                 u"[DECOFONT01]\r\nResiFontName=X21\r\nDecorate=9\r\n"}}));
  EXPECT_EQ(ShownMessages(), Messages{kFontWarning});
  EXPECT_EQ(deco_[0].Deco.Decorate, 9);
  EXPECT_EQ(deco_[0].Deco.SizeX, 98);
  EXPECT_EQ(deco_[1].Deco.DecoFontName[0], 0);
  EXPECT_EQ(deco_[1].Deco.Decorate, 98);
}

TEST_F(BackupTest, BarcodeTextIsTruncatedToItsField) {
  ASSERT_TRUE(LoadDefaultsWith({{u"BarFontNum=0\r\n",
                                 u"BarFontNum=1\r\n[BARFONT00]\r\nBarcodeKind=1900\r\n"
                                 u"ZipCode=12345678901234567890\r\n"}}));
  EXPECT_EQ(ShownMessages(), Messages{kFontWarning});
  EXPECT_STREQ(reinterpret_cast<const char*>(bar_[0].Bar.BarcodeParam + 20), "1234567890123456789");
}

TEST_F(BackupTest, LoadedCountIsClampedToTheTable) {
  const auto expectCounts = [this](int papers, int fonts, std::u16string value) {
    SCOPED_TRACE(ToCp932(value));
    block_.Printer.PaperNum = 5;
    fonts_.DecoFontNum = 3;
    for (PaperInfo& paper : block_.Printer.Papers) paper.LabelWidth = 5;
    for (FontRecord& font : deco_) font.Deco.Size = 5;
    EXPECT_TRUE(LoadDefaultsWith({{u"PaperNum=1", u"PaperNum=" + value},
                                  {u"LabelWidth=580\r\n", u""},
                                  {u"[PAPER00]", u"[OTHER]"},
                                  {u"DecoFontNum=0", u"DecoFontNum=" + value}}));
    EXPECT_EQ(block_.Printer.PaperNum, papers);
    EXPECT_EQ(fonts_.DecoFontNum, fonts);
    // Records without a section retain their numbers; those after the count are cleared.
    EXPECT_EQ(std::ranges::count(block_.Printer.Papers, 5, &PaperInfo::LabelWidth), papers);
    const auto size = [](const FontRecord& font) { return font.Deco.Size; };
    EXPECT_EQ(std::ranges::count(deco_, 5, size), fonts);
  };
  expectCounts(20, 25, u"25");
  expectCounts(20, 70, u"80");
  expectCounts(0, 0, u"-1");
  expectCounts(5, 3, u"");  // the counts remain
}

TEST_F(BackupTest, SavedCountIsClampedToTheTable) {
  block_.Printer.PaperNum = 25;
  fonts_.DecoFontNum = 80;
  fonts_.BarFontNum = 40;  // the limit of 70 fonts of both kinds does not apply
  ASSERT_TRUE(Save());
  EXPECT_NE(Text().find(u"PaperNum=20\r\n"), std::u16string::npos);
  EXPECT_NE(Text().find(u"DecoFontNum=70\r\n"), std::u16string::npos);
  EXPECT_NE(Text().find(u"BarFontNum=40\r\n"), std::u16string::npos);
}

TEST_F(BackupTest, NullFontListsTransferNoFonts) {
  fonts_.DecoFonts = fonts_.BarFonts = nullptr;
  fonts_.DecoFontNum = 3;
  EXPECT_TRUE(Save());
  EXPECT_EQ(Text(), defaults_);
  EXPECT_TRUE(LoadDefaultsWith({{u"BarFontNum=0", u"BarFontNum=3"}}));
  EXPECT_EQ(ShownMessages(), Messages{});
}

}  // namespace
}  // namespace kestrel::test
