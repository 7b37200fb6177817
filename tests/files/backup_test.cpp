// Backup files: what is written, byte for byte, what is read from which lines, and what remains
// when the disk fails.
#include "driver/halftone_info.h"
#include "fonts/barcode_kinds.h"
#include "fonts/barcode_param.h"
#include "operation/device_settings.h"
#include "tests/files/backup_fixture.h"

namespace kestrel::test {
namespace {

using support::At;
using support::BytesOf;
using support::Put;

void Fill(void* record, size_t from, size_t end, size_t seed) {
  for (size_t at = from; at < end; at += 2) Put(record, at, static_cast<int16_t>(seed + at * 161));
}

TEST_F(BackupTest, EverythingIsSavedByteForByteAndComesBackInAnotherPrinter) {
  block_.Printer.PaperNum = 12;
  for (size_t i = 0; i < 12; ++i) {
    PaperInfo& paper = block_.Printer.Papers[i];
    Fill(&paper, 128, 152, i * 4000);
    paper.UserDef = 1;
    // 63 bytes in code page 932, in half-width and in full-width characters.
    const std::u16string name = i == 0       ? u"ﾗﾍﾞﾙ 髙 ソ=;[x]"
                                : i % 2 != 0 ? std::u16string(63, u'ｿ')
                                             : std::u16string(31, u'表') + u'x';
    std::fill_n(paper.PaperName, 64, u'\0');
    name.copy(paper.PaperName, 63);
  }
  Fill(&block_, 382, 404, 0);
  Fill(&block_, 406, 440, 0);
  Fill(&block_, 3658, 3790, 0);
  block_.Record.Private.nTSMode = 255;
  fonts_.DecoFontNum = 2;
  fonts_.BarFontNum = 20;
  for (size_t i = 0; i < 2; ++i) {
    std::fill_n(deco_[i].FontName, 31, i == 0 ? u'亜' : u'哀');
    std::copy_n(deco_[i].FontName, 32, deco_[i].Deco.DecoFontName);
    std::u16string(u"ＭＳ ゴシック 24").copy(deco_[i].Deco.ResiFontName, 31);
    Fill(&deco_[i], 194, 232, i * 1000);
  }
  for (size_t i = 0; i < 20; ++i) {
    FontRecord& font = bar_[i];
    font.FontKind = kBarcodeFont;
    std::fill_n(font.FontName, 31, u'ﾊ');
    std::copy_n(font.FontName, 32, font.Bar.BarFontName);
    Fill(&font, 130, 146, i * 3000);
    // The last has a kind that nobody knows.
    font.Bar.BarcodeKind = i < kBarcodeKindCount ? BarcodeKinds()[i].id : uint16_t{7};
    for (const BarcodeField& field : BarcodeFields(font.Bar.BarcodeKind)) {
      const bool word = field.type == BarcodeFieldType::kWord;
      const int end = field.width - (field.type == BarcodeFieldType::kTerminatedText ? 1 : 0);
      for (int at = field.offset; at < field.offset + end; ++at) {
        font.Bar.BarcodeParam[at] = static_cast<uint8_t>(word ? at : '0' + at % 10);
      }
    }
  }
  EXPECT_TRUE(Save());
  EXPECT_EQ(Shown(), u"");
  EXPECT_EQ(FromCp932(Bytes()), FromCp932(support::Golden("everything.ini")));

  DriverSettingsBlock block = support::DefaultBlock();
  block.Printer.HeadDensity = 305;
  block.Printer.Mecha = 2;
  std::swap(block, block_);
  const std::vector<FontRecord> deco = std::exchange(deco_, {}), bar = std::exchange(bar_, {});
  fonts_.DecoFonts = (deco_ = std::vector<FontRecord>(kFontCapacity)).data();
  fonts_.BarFonts = (bar_ = std::vector<FontRecord>(kFontCapacity)).data();
  fonts_.DecoFontNum = fonts_.BarFontNum = 0;
  ASSERT_TRUE(Load());
  EXPECT_EQ(Shown(), kFontWarning);
  block.Printer.HeadDensity = 305;
  block.Printer.Mecha = 2;
  EXPECT_EQ(BytesOf(block_), BytesOf(block));
  EXPECT_EQ(support::Words(fonts_.DecoFontNum, fonts_.BarFontNum), support::Words(2, 20));
  for (size_t i = 0; i < kFontCapacity; ++i) {
    EXPECT_EQ(BytesOf(deco_[i]), BytesOf(deco[i])) << i;
    EXPECT_EQ(BytesOf(bar_[i]), BytesOf(bar[i])) << i;
  }
}

// What a save finds: sections of its own with other keys, sections of others, papers behind the
// count. A name with a line's end does not break out of its line.
TEST_F(BackupTest, ASaveClearsItsOwnSectionsAndNoOther) {
  Write(
      u"; 注釈\r\n[other]\r\nkey=1\r\n[ﾊﾞｰｼﾞｮﾝ情報]\r\nForeign=x\r\nFileVersion=0001\r\n"
      u"[ﾄﾞﾗｲﾊﾞ情報]\r\nForeign=x\r\nPaperID=9\r\n[用紙登録数]\r\nPaperNum=8\r\nForeign=x\r\n"
      u"[PAPER00]\r\nForeign=x\r\n[PAPER05]\r\nPaperName=five\r\n[同期印刷]\r\nForeign=x\r\n");
  auto& printer = block_.Printer;
  printer.PaperNum = 2;
  printer.Papers[1] = printer.Papers[2] = printer.Papers[0];
  std::u16string(u"a\r\n[用紙登録数]\r\nPaperNum=20").copy(printer.Papers[1].PaperName, 63);
  EXPECT_TRUE(Save());
  EXPECT_EQ(FromCp932(Bytes()), FromCp932(support::Golden("kept.ini")));
  EXPECT_EQ(printer.Papers[2].PaperName[0], 0) << "entries behind the count are cleared";
  EXPECT_NE(printer.Papers[1].PaperName[0], 0);
}

TEST_F(BackupTest, SectionsFollowTheMask) {
  for (const unsigned mask : {0u, BACKUP_PAPERS, BACKUP_FONTS, BACKUP_DRIVER_INFO}) {
    std::filesystem::remove(machine().HostPath(kFile));
    EXPECT_TRUE(Transfer(TransferDirection::kSave, kFile, mask));
    const std::u16string text = FromCp932(Bytes());
    const auto has = [&](const char16_t* section) { return text.find(section) != text.npos; };
    EXPECT_EQ((has(u"[用紙登録数]") ? BACKUP_PAPERS : 0) |
                  (has(u"[装飾ﾌｫﾝﾄ登録数]") ? BACKUP_FONTS : 0) |
                  (has(u"[ﾊｰﾌﾄｰﾝ情報]") ? BACKUP_DRIVER_INFO : 0),
              mask);
    EXPECT_TRUE(text.ends_with(u"[同期印刷]\r\nSYNC=0\r\n"));
  }
}

TEST_F(BackupTest, PathsHaveAFormInCodePage932) {
  std::filesystem::create_directories(machine().HostPath(u"C:\\data\\表"));
  EXPECT_TRUE(Save(u"C:\\data\\表\\能.ini"));
  EXPECT_EQ(Bytes(u"C:\\data\\表\\能.ini"), Golden());
  EXPECT_TRUE(Load(u"C:\\data\\表\\能.ini"));
  for (const std::u16string& none :
       {std::u16string(u"한.ini"), std::u16string(u"C:\\nowhere\\a.ini"),
        std::u16string(250, u'あ') + u".ini"})
    EXPECT_FALSE(Save(none.c_str()));
}

// The disk is full from the n-th write on, or one write fails alone: the file holds what was
// written by then, or all but that. Behind the driver's own keys, whose failure alone ends a save,
// a few writes will do.
TEST_F(BackupTest, AFullDiskLeavesAFileThatCanBeRead) {
  const auto before = BytesOf(block_);
  const std::string golden = Golden();
  const size_t needed = golden.find(ToCp932(u"[ﾌﾘｰｻｲｽﾞ用紙]"));
  int failed = 0;
  for (const bool once : {false, true}) {
    bool struck = true;
    for (int n = 1; struck; n += n > 60 ? 100 : once || n > 24 ? 7 : 1) {
      SCOPED_TRACE(n);
      machine().WriteFile(kFile, "");
      once ? machine().faults.FailNth(platform::Fault::kFile, n)
           : machine().faults.FailFrom(platform::Fault::kFile, n);
      const bool saved = Save();
      struck = machine().faults.Struck(platform::Fault::kFile);
      machine().faults.Clear();
      const std::string text = Bytes();
      const auto same = static_cast<size_t>(std::ranges::mismatch(text, golden).in1 - text.begin());
      EXPECT_TRUE(golden.ends_with(text.substr(same))) << text;
      EXPECT_TRUE(same == text.size() || once);
      EXPECT_TRUE(text.empty() || text.ends_with("\r\n"));
      EXPECT_EQ(saved, text.size() >= needed);
      EXPECT_EQ(BytesOf(block_), before);
      for (const auto& entry : std::filesystem::directory_iterator(machine().HostPath(u"C:\\data")))
        EXPECT_EQ(entry.path().filename(), "a.ini") << "something was left beside the file";
      failed += !saved;
    }
  }
  EXPECT_GE(failed, 20);
}

// A disk that fails while a file is read: the load fails, or reads what it can.
TEST_F(BackupTest, ALoadFromAFailingDiskWritesNothing) {
  machine().WriteFile(kFile, Golden());
  bool struck = true;
  for (int n = 1; struck; n += n < 20 ? 1 : 17) {
    machine().faults.FailNth(platform::Fault::kFile, n);
    const bool loaded = Load();
    struck = machine().faults.Struck(platform::Fault::kFile);
    machine().faults.Clear();
    EXPECT_TRUE(loaded || struck);
    EXPECT_LE(block_.Printer.PaperNum, 1);
    EXPECT_EQ(Bytes(), Golden());
  }
}

TEST_F(BackupTest, ForeignFilesAreRefused) {
  const std::pair<const char16_t*, const char16_t*> cases[] = {
      {u"", kNotABackup},
      {u"[ﾊﾞｰｼﾞｮﾝ情報]\r\n; FileVersion=0003\r\n[x]\r\na=1\r\n", kNotABackup},
      {u"[ﾊﾞｰｼﾞｮﾝ情報]\r\nOther=1\r\n", kWrongVersion},
      {u"[ﾊﾞｰｼﾞｮﾝ情報]\r\nFileVersion=3\r\n", kWrongVersion},
      {u"[ﾊﾞｰｼﾞｮﾝ情報]\r\nFileVersion=00030\r\n", kWrongVersion},
      {u"[ﾊﾞｰｼﾞｮﾝ情報]\r\nFileVersion=0003\r\n", u""},  // no driver keys: no message either
  };
  const auto before = BytesOf(block_);
  for (const auto& [text, shown] : cases) {
    Write(text);
    EXPECT_FALSE(Load());
    EXPECT_EQ(Shown(), shown) << ToCp932(text);
  }
  WriteDefaultsWith({{u"FileVersion=0003", u"FileVersion=0004"}});
  EXPECT_FALSE(Load());
  EXPECT_EQ(Shown(), kWrongVersion);
  std::filesystem::create_directories(machine().HostPath(u"C:\\data\\folder.ini"));
  for (const char16_t* none :
       {u"C:\\data\\none.ini", u"C:\\none\\a.ini", u"C:\\data\\folder.ini"}) {
    EXPECT_FALSE(Load(none));
    EXPECT_EQ(Shown(), kNotABackup);
  }
  EXPECT_EQ(BytesOf(block_), before);
  EXPECT_EQ(ReadSyncPrint(kPrinter), 0u);
}

TEST_F(BackupTest, LinesAreReadByTheirRules) {
  for (const std::string& row : support::GoldenRows("lines.txt")) {
    SCOPED_TRACE(row);
    const size_t first = row.find(" |"), second = row.find("| ", first + 2);
    std::string line = row.substr(0, first), instead = row.substr(first + 2, second - first - 2);
    for (size_t at; (at = instead.find('/')) != std::string::npos;) instead.replace(at, 1, "\r\n");
    if (instead == " ") instead.clear();
    WriteDefaultsWith({{platform::ToUtf16(line + "\r\n"), platform::ToUtf16(instead)}});
    std::vector<std::tuple<void*, size_t, int>> fields;  // record, offset, number; 98 when kept
    std::istringstream outcome(row.substr(second + 2));
    bool refused = false, sync = false;
    for (std::string field; outcome >> field;) {
      const char letter = field[0];
      const bool font = letter >= 'A';
      void* record = letter == 'D'   ? &deco_[0]
                     : letter == 'E' ? &deco_[1]
                     : letter == 'B' ? &bar_[0]
                                     : static_cast<void*>(&block_);
      const size_t offset = std::stoul(field.substr(font)), colon = field.find(':') + 1;
      refused |= field.ends_with("refused");
      const int value = field[colon] == 'k' || refused ? 98 : std::stoi(field.substr(colon));
      sync |= !font && offset == 434 && value != 0;
      Put<int16_t>(record, offset, 98);
      fields.emplace_back(record, offset, value);
    }
    WriteSyncPrint(kPrinter, !sync);
    EXPECT_EQ(Load(), !refused);
    EXPECT_EQ(Shown(), fonts_.DecoFontNum + fonts_.BarFontNum > 0 ? kFontWarning : u"");
    for (const auto& [record, offset, value] : fields) {
      EXPECT_EQ(At<uint16_t>(record, offset), static_cast<uint16_t>(value)) << offset;
    }
    EXPECT_EQ(ReadSyncPrint(kPrinter), refused ? !sync : sync);
  }
  machine().SetRegistryAccess(true, false);
  WriteDefaultsWith({{u"SYNC=0", u"SYNC=1"}});
  EXPECT_TRUE(Load()) << "the registry does not decide";
}

TEST_F(BackupTest, CountsDecideWhatIsRead) {
  using Case = std::tuple<std::u16string, int, int>;
  for (const auto& [value, papers, fonts] :
       {Case(u"0", 0, 0), Case(u"20", 20, 20), Case(u"25", 20, 25), Case(u"80", 20, 70),
        Case(u"-1", 0, 0), Case(u"70000", 20, 70), Case(u"65537", 1, 1),
        Case(u"", 5, 3)}) {  // as they were
    SCOPED_TRACE(ToCp932(value));
    WriteDefaultsWith({{u"PaperNum=1", u"PaperNum=" + value},
                       {u"DecoFontNum=0", u"DecoFontNum=" + value},
                       {u"BarFontNum=0", u"BarFontNum=" + value}});
    block_ = support::DefaultBlock();
    block_.Printer.PaperNum = 5;
    for (PaperInfo& paper : block_.Printer.Papers) paper = block_.Printer.Papers[0];
    fonts_.DecoFontNum = fonts_.BarFontNum = 3;
    for (int i = 0; i < kFontCapacity; ++i) deco_[i].Deco.Size = bar_[i].Bar.Mode = 5;
    ASSERT_TRUE(Load());
    EXPECT_EQ(support::Words(block_.Printer.PaperNum, fonts_.DecoFontNum, fonts_.BarFontNum),
              support::Words(papers, fonts, fonts));
    EXPECT_EQ(Shown(), fonts > 0 ? kFontWarning : u"");
    for (int i = 0; i < kFontCapacity; ++i) {
      EXPECT_EQ(support::Words(deco_[i].Deco.Size, bar_[i].Bar.Mode, bar_[i].FontKind),
                i < fonts ? support::Words(5, 5, kBarcodeFont) : support::Words(0, 0, 0));
    }
    // A paper without its section loses its name and keeps its sizes; those behind are cleared.
    for (int i = 0; i < kPaperCapacity; ++i) {
      const PaperInfo& paper = block_.Printer.Papers[i];
      EXPECT_EQ(paper.PaperName[0], i == 0 && papers > 0 ? u'S' : 0) << i;
      EXPECT_EQ(paper.LabelWidth, i < papers ? 580 : 0) << i;
    }
  }
}

TEST_F(BackupTest, ASessionWithoutFontListsHasNoFonts) {
  fonts_ = {};
  EXPECT_TRUE(Save());
  EXPECT_EQ(Bytes(), Golden());
  WriteDefaultsWith({{u"DecoFontNum=0", u"DecoFontNum=3"}});
  EXPECT_TRUE(Load());
  EXPECT_EQ(fonts_.DecoFontNum, 0);
}

}  // namespace
}  // namespace kestrel::test
