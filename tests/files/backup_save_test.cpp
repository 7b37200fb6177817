#include "tests/files/backup_fixture.h"

namespace kestrel::test {
namespace {

TEST_F(BackupTest, TheDefaultsAreSavedByteForByte) {
  EXPECT_TRUE(Save());
  EXPECT_EQ(Bytes(), Golden());
  EXPECT_EQ(Shown(), u"");
}

TEST_F(BackupTest, ASaveClearsItsOwnSectionsAndNoOther) {
  Write(
      u"; 注釈\r\n[other]\r\nkey=1\r\n[ﾊﾞｰｼﾞｮﾝ情報]\r\nForeign=x\r\nFileVersion=0001\r\n"
      u"[ﾄﾞﾗｲﾊﾞ情報]\r\nForeign=x\r\nPaperID=9\r\n[用紙登録数]\r\nPaperNum=8\r\nForeign=x\r\n"
      u"[PAPER00]\r\nForeign=x\r\n[PAPER05]\r\nPaperName=five\r\n[同期印刷]\r\nForeign=x\r\n");
  my_.block.Printer.PaperNum = 2;
  my_.block.Printer.Papers[1] = my_.block.Printer.Papers[0];
  my_.block.Printer.Papers[2] = my_.block.Printer.Papers[0];
  EXPECT_TRUE(Save());
  const std::string text = Bytes();
  const auto holds = [&](std::u16string_view line) { return Contains(text, Cp932(line)); };
  for (const char16_t* kept :
       {u"; 注釈\r\n", u"[other]\r\nkey=1\r\n",
        u"[ﾊﾞｰｼﾞｮﾝ情報]\r\nForeign=x\r\nFileVersion=0003\r\n", u"[PAPER05]\r\nPaperName=five\r\n",
        u"[PAPER01]\r\nPaperName=Standard", u"PaperNum=2\r\n"})
    EXPECT_TRUE(holds(kept)) << Cp932(kept);
  size_t foreign = 0;
  for (size_t at = 0; (at = text.find("Foreign", at)) != std::string::npos; ++at) ++foreign;
  EXPECT_EQ(foreign, 1u);
  EXPECT_FALSE(holds(u"[PAPER02]"));
  EXPECT_EQ(my_.block.Printer.Papers[2].PaperName[0], 0) << "entries behind the count are cleared";
  EXPECT_NE(my_.block.Printer.Papers[1].PaperName[0], 0);
}

TEST_F(BackupTest, SectionsFollowTheMask) {
  struct Case {
    unsigned mask;
    const char16_t* section;
  };
  const Case cases[] = {{BACKUP_PAPERS, u"[用紙登録数]"},
                        {BACKUP_FONTS, u"[装飾ﾌｫﾝﾄ登録数]"},
                        {BACKUP_DRIVER_INFO, u"[ﾊｰﾌﾄｰﾝ情報]"}};
  for (unsigned mask = 0; mask < 8; ++mask) {
    std::filesystem::remove(machine().HostPath(kFile));
    EXPECT_TRUE(Transfer(TransferDirection::kSave, kFile, mask));
    for (const Case& c : cases)
      EXPECT_EQ(Contains(Bytes(), Cp932(c.section)), (mask & c.mask) != 0) << mask;
    EXPECT_TRUE(Bytes().ends_with(Cp932(u"[同期印刷]\r\nSYNC=0\r\n")));
  }
}

TEST_F(BackupTest, ANameCannotBreakOutOfItsLine) {
  SetName(my_.block.Printer.Papers[0].PaperName, u"a\r\n[用紙登録数]\r\nPaperNum=20");
  EXPECT_TRUE(Save());
  EXPECT_TRUE(Load());
  EXPECT_EQ(my_.block.Printer.PaperNum, 1);
}

TEST_F(BackupTest, BareNamesLieInTheSystemDirectory) {
  struct Case {
    const char16_t* name;
    const char16_t* place;
  };
  const Case cases[] = {
      {u"a.ini", u"C:\\WINDOWS\\system32\\a.ini"},
      {u"ソ.ini", u"C:\\WINDOWS\\system32\\ソ.ini"},  // its second byte is that of a backslash
      {u"表 示.INI", u"C:\\WINDOWS\\system32\\表 示.INI"},
      {u"C:\\data\\表\\能.ini", u"C:\\data\\表\\能.ini"},
      {u"C:\\data\\a b.ini", u"C:\\data\\a b.ini"},
  };
  std::filesystem::create_directories(machine().HostPath(u"C:\\data\\表"));
  for (const Case& c : cases) {
    EXPECT_TRUE(Save(c.name)) << Cp932(c.name);
    EXPECT_EQ(Bytes(c.place), Golden()) << Cp932(c.name);
    EXPECT_TRUE(Load(c.name)) << Cp932(c.name);
  }
  for (const char16_t* none : {u"한.ini", u"C:\\nowhere\\a.ini"}) EXPECT_FALSE(Save(none));
  EXPECT_FALSE(Save((std::u16string(250, u'あ') + u".ini").c_str()));
}

// The disk is full from the n-th write on, or one write fails alone. Behind the driver's own keys,
// whose failure alone ends a save, a few writes will do.
TEST_F(BackupTest, AFullDiskLeavesAFileThatCanBeRead) {
  const auto before = my_.block;
  const std::string golden = Golden();
  const std::string needed = golden.substr(
      golden.find("PaperID="), golden.find(Cp932(u"[ﾌﾘｰｻｲｽﾞ用紙]")) - golden.find("PaperID="));
  int failed = 0;
  for (const bool once : {false, true}) {
    bool struck = true;
    for (int n = 1; struck; n += n > 40 ? 25 : once ? 3 : 1) {
      SCOPED_TRACE(n);
      machine().WriteFile(kFile, "");
      once ? machine().faults.FailNth(platform::Fault::kFile, n)
           : machine().faults.FailFrom(platform::Fault::kFile, n);
      const bool saved = Save();
      struck = machine().faults.Struck(platform::Fault::kFile);
      machine().faults.Clear();
      const std::string text = Bytes();
      EXPECT_EQ(saved, Contains(text, needed));
      EXPECT_TRUE(text.empty() || text.ends_with("\r\n"));
      if (n % 16 == 9) {
        EXPECT_NE(ReadElsewhere(), "");
      }
      EXPECT_EQ(std::memcmp(&my_.block, &before, sizeof before), 0);
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
    EXPECT_LE(my_.block.Printer.PaperNum, 1);
    EXPECT_EQ(Bytes(), Golden());
  }
}

}  // namespace
}  // namespace kestrel::test
