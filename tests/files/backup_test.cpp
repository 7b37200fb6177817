// Backup files: their bytes after a save, the fields that a load sets, and failures of the disk.
#include <map>
#include <regex>

#include "operation/device_settings.h"
#include "tests/files/backup_fixture.h"

namespace kestrel::test {
namespace {

using support::At;
using support::BytesOf;
using support::Put;

// everything.bin contains the records of everything.ini: a block, 2 decorative and 20 barcode
// fonts. Names are 63 and 31 units long, half of them full-width; each number depends on its
// offset; one barcode has an unknown kind.
TEST_F(BackupTest, LoadedFileFillsEveryFieldAndIsSavedWithTheSameBytes) {
  constexpr char16_t kEverything[] = u"C:\\data\\all.ini";
  machine().WriteFile(kEverything, support::Golden("everything.ini"));
  ASSERT_TRUE(Load(kEverything));
  EXPECT_EQ(Shown(), kFontWarning);
  EXPECT_EQ(support::Words(fonts_.DecoFontNum, fonts_.BarFontNum), support::Words(2, 20));
  const auto chars = [](const auto& of) { return reinterpret_cast<const char*>(&of); };
  std::string loaded(chars(block_), sizeof block_);
  loaded.append(chars(deco_[0]), 2 * sizeof(FontRecord));
  loaded.append(chars(bar_[0]), 20 * sizeof(FontRecord));
  const std::string golden = support::Golden("everything.bin");
  EXPECT_EQ(std::ranges::mismatch(loaded, golden).in1 - loaded.begin(), std::ssize(golden));
  EXPECT_TRUE(Save());
  EXPECT_EQ(Shown(), u"");
  EXPECT_EQ(FromCp932(Bytes()), FromCp932(Bytes(kEverything)));
}

// The file already has other keys in the sections of a save, other sections, and more papers. A
// line break in a name does not start another line.
TEST_F(BackupTest, SaveClearsOnlyItsOwnSections) {
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
  EXPECT_EQ(printer.Papers[2].PaperName[0], 0) << "entries after the count are cleared";
}

TEST_F(BackupTest, MaskSelectsSections) {
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

TEST_F(BackupTest, PathOutsideCodePage932IsRejected) {
  std::filesystem::create_directories(machine().HostPath(u"C:\\data\\表"));
  EXPECT_TRUE(Save(u"C:\\data\\表\\能.ini"));
  EXPECT_EQ(Bytes(u"C:\\data\\表\\能.ini"), Golden());
  EXPECT_TRUE(Load(u"C:\\data\\表\\能.ini"));
  for (const std::u16string& none :
       {std::u16string(u"한.ini"), std::u16string(u"C:\\nowhere\\a.ini"),
        std::u16string(250, u'あ') + u".ini"})
    EXPECT_FALSE(Save(none.c_str()));
}

// The platform's A functions convert bytes by the process's ANSI code page.
TEST_F(BackupTest, AnsiCodePageThatChangesNamesFailsBeforeAnyAccess) {
  const auto fails = [this](const char16_t* file) {
    WriteDefaultsWith({});
    machine().faults.FailFrom(platform::Fault::kFile, 1);
    EXPECT_FALSE(Save(file) || Load(file));
    EXPECT_EQ(Shown(), u"") << "the file itself may be valid";
    EXPECT_EQ(machine().faults.Calls(platform::Fault::kFile), 0);
    machine().faults.Clear();
  };
  for (const UINT page : {936u, 949u, UINT{CP_UTF8}}) {
    SCOPED_TRACE(page);
    machine().SetAnsiPage(page);
    fails(kFile);
  }
  machine().SetAnsiPage(1252);
  fails(u"C:\\data\\能.ini");
  WriteDefaultsWith({{u"PaperName=S", u"PaperName=倉庫S"}});
  const std::string before = Bytes();
  ASSERT_TRUE(Load());
  EXPECT_TRUE(std::u16string_view(block_.Printer.Papers[0].PaperName).starts_with(u"倉庫S"));
  ASSERT_TRUE(Save());
  EXPECT_EQ(Bytes(), before) << "a single-byte code page preserves all bytes";
  machine().SetCodePage932(false);
  fails(kFile);
}

// After one failed access a save ends or omits that line, and a load reads the other lines.
// tests/faults covers a disk that stays full.
TEST_F(BackupTest, FailedFileAccessLeavesReadableFile) {
  const auto before = BytesOf(block_);
  const std::string golden = Golden();
  const size_t needed = golden.find(ToCp932(u"[ﾌﾘｰｻｲｽﾞ用紙]"));
  bool done = false;
  const auto save = [&] {
    machine().SetMemoryProfile(kFile, "");
    done = Save();
  };
  const auto saved = [&](platform::Fault, bool) {
    const std::string text = machine().MemoryProfile(kFile);
    const auto same = static_cast<size_t>(std::ranges::mismatch(text, golden).in1 - text.begin());
    EXPECT_TRUE(golden.ends_with(text.substr(same))) << text;
    EXPECT_EQ(done, text.size() >= needed);
    EXPECT_EQ(BytesOf(block_), before);
  };
  EXPECT_GE(ForEachFault({platform::Fault::kFile}, save, saved), 40);
  const auto loaded = [&](platform::Fault, bool failed) {
    EXPECT_TRUE(done || failed);
    EXPECT_EQ(machine().MemoryProfile(kFile), golden);
  };
  ForEachFault(
      {platform::Fault::kFile}, [&] { done = Load(); }, loaded);
}

TEST_F(BackupTest, FileOfAnotherFormatIsRejected) {
  const auto before = BytesOf(block_);
  for (const auto& [line, replacement, shown] : {std::tuple(u"[ﾊﾞｰｼﾞｮﾝ情報]", u"[x]", kNotABackup),
                                                 {u"FileVersion=0003", u"", kWrongVersion},
                                                 {u"=0003", u"=3", kWrongVersion},
                                                 {u"=0003", u"=0004", kWrongVersion},
                                                 {u"=0003", u"=00030", kWrongVersion}}) {
    SCOPED_TRACE(ToCp932(replacement));
    WriteDefaultsWith({{line, replacement}, {u"SYNC=0", u"SYNC=1"}});
    EXPECT_FALSE(Load());
    EXPECT_EQ(Shown(), shown);
    EXPECT_EQ(BytesOf(block_), before);
    EXPECT_EQ(DeviceSettings(kPrinter).SyncPrint(), 0u);
  }
}

TEST_F(BackupTest, EachLineSetsItsFields) {
  const std::map<char, void*> records = {
      {'S', &block_}, {'D', &deco_[0]}, {'E', &deco_[1]}, {'B', &bar_[0]}};
  for (const std::string& row : support::GoldenRows("lines.txt")) {
    SCOPED_TRACE(row);
    std::smatch parts;
    ASSERT_TRUE(std::regex_match(row, parts, std::regex("(.*) \\| ?(.*)\\| (.*)")));
    const std::string replacement = std::regex_replace(parts.str(2), std::regex("/"), "\r\n");
    WriteDefaultsWith({{platform::ToUtf16(parts.str(1) + "\r\n"), platform::ToUtf16(replacement)}});
    std::vector<std::tuple<void*, size_t, int>> fields;  // record, offset, value; 98: unchanged
    std::istringstream outcome(parts.str(3));
    const bool rejected = row.ends_with("refused");
    bool sync = false;
    for (std::string field; outcome >> field;) {
      const std::string outcomeText = field.substr(field.find(':') + 1);
      const bool kept = outcomeText == "kept" || rejected;
      fields.emplace_back(records.at(field[0]), std::stoul(field.substr(1)),
                          kept ? 98 : std::stoi(outcomeText));
      const auto& [record, offset, value] = fields.back();
      sync |= record == &block_ && offset == 434 && value != 0;
      Put<int16_t>(record, offset, 98);
    }
    DeviceSettings(kPrinter).SetSyncPrint(!sync);
    EXPECT_EQ(Load(), !rejected);
    EXPECT_EQ(Shown(), fonts_.DecoFontNum + fonts_.BarFontNum > 0 ? kFontWarning : u"");
    for (const auto& [record, offset, value] : fields) {
      EXPECT_EQ(At<uint16_t>(record, offset), static_cast<uint16_t>(value)) << offset;
    }
    EXPECT_EQ(DeviceSettings(kPrinter).SyncPrint(), rejected ? !sync : sync);
  }
  machine().SetRegistryAccess(true, false);
  WriteDefaultsWith({{u"SYNC=0", u"SYNC=1"}});
  EXPECT_TRUE(Load()) << "a failed registry write is ignored";
}

TEST_F(BackupTest, CountsLimitWhatALoadReads) {
  const std::tuple<std::u16string, int, int> kCases[] = {
      {u"0", 0, 0},  {u"20", 20, 20},    {u"25", 20, 25},  {u"80", 20, 70},
      {u"-1", 0, 0}, {u"70000", 20, 70}, {u"65537", 1, 1}, {u"", 5, 3}};  // the last: unchanged
  for (const auto& [value, papers, fonts] : kCases) {
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
    // A paper without a section loses its name but not its sizes. Papers after the count are
    // cleared.
    for (int i = 0; i < kPaperCapacity; ++i) {
      const PaperInfo& paper = block_.Printer.Papers[i];
      EXPECT_EQ(paper.PaperName[0], i == 0 && papers > 0 ? u'S' : 0) << i;
      EXPECT_EQ(paper.LabelWidth, i < papers ? 580 : 0) << i;
    }
  }
  // A save limits each kind of fonts, not both together.
  fonts_.DecoFontNum = fonts_.BarFontNum = 40;
  machine().SetMemoryProfile(kFile, "");
  EXPECT_TRUE(Save());
  EXPECT_NE(machine().MemoryProfile(kFile).find("BarFontNum=40"), std::string::npos);
}

TEST_F(BackupTest, NullFontListsTransferNoFonts) {
  fonts_ = {};
  EXPECT_TRUE(Save());
  EXPECT_EQ(Bytes(), Golden());
  WriteDefaultsWith({{u"DecoFontNum=0", u"DecoFontNum=3"}});
  EXPECT_TRUE(Load());
  EXPECT_EQ(fonts_.DecoFontNum, 0);
}

}  // namespace
}  // namespace kestrel::test
