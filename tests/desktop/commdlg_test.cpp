// File dialogs: walking through folders, what a typed name becomes, what is refused and asked.
#include <windows.h>
#include <commdlg.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/desktop/libraries/commdlg_paths.h"
#include "support/test_machine.h"

namespace {

using platform::Desk;
using platform::ScriptedUser;
using testing::ElementsAre;
using namespace std::string_literals;

constexpr int kName = 1148, kFiles = 1120, kFolders = 1137, kFilter = 1136;

class FileDialogTest : public support::MachineTest {
 protected:
  void SetUp() override {
    MachineTest::SetUp();
    machine().WriteFile(u"C:\\data\\a.ini", "x");
    machine().WriteFile(u"C:\\data\\plain", "x");
    machine().WriteFile(u"C:\\data\\note.txt", "x");
    machine().WriteFile(u"C:\\data\\ソ表\\b.ini", "x");
    library_ = LoadLibraryW(u"comdlg32.dll");
    request_.lStructSize = sizeof request_;
    request_.lpstrFilter = u"初期化ﾌｧｲﾙ(*.ini)\0*.ini\0All\0*.*\0";
    request_.nFilterIndex = 1;
    request_.lpstrFile = file_;
    request_.nMaxFile = MAX_PATH;
    request_.lpstrInitialDir = u"C:\\data\\";
    request_.lpstrDefExt = u"ini";
  }
  void TearDown() override {
    FreeLibrary(library_);
    MachineTest::TearDown();
  }

  bool Run(const char* function, std::vector<ScriptedUser::Step> steps) {
    ScriptedUser user(std::move(steps));
    desk().Attach(&user);
    const auto choose = reinterpret_cast<decltype(&GetOpenFileNameW)>(
        reinterpret_cast<void (*)()>(GetProcAddress(library_, function)));
    const BOOL chosen = choose(&request_);
    desk().Attach(nullptr);
    EXPECT_EQ(user.Problem(), "");
    EXPECT_TRUE(user.Finished());
    return chosen != FALSE;
  }
  bool Open(std::vector<ScriptedUser::Step> steps) {
    request_.Flags = OFN_LONGNAMES | OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST;
    return Run("GetOpenFileNameW", std::move(steps));
  }
  bool Save(std::vector<ScriptedUser::Step> steps) {
    request_.Flags = OFN_LONGNAMES | OFN_OVERWRITEPROMPT | OFN_HIDEREADONLY;
    return Run("GetSaveFileNameW", std::move(steps));
  }

  static ScriptedUser::Step Type(std::u16string name) {
    return [=](Desk& desk) {
      EXPECT_TRUE(desk.Replace(kName, name));
      EXPECT_TRUE(desk.Enter());
    };
  }
  static ScriptedUser::Step Pick(std::u16string line) {
    return [=](Desk& desk) {
      EXPECT_TRUE(desk.Select(kFiles, line));
      EXPECT_TRUE(desk.Click(IDOK));
    };
  }
  static ScriptedUser::Step Box(std::u16string part, int button) {
    return [=](Desk& desk) {
      EXPECT_TRUE(desk.IsMessageBox());
      EXPECT_NE(desk.MessageText().find(part), std::u16string::npos);
      EXPECT_TRUE(desk.Click(button));
    };
  }
  static ScriptedUser::Step Cancel() {
    return [](Desk& desk) { EXPECT_TRUE(desk.Click(IDCANCEL)); };
  }

  HMODULE library_ = nullptr;
  OPENFILENAMEW request_ = {};
  WCHAR file_[MAX_PATH] = {};
};

TEST_F(FileDialogTest, FoldersAndFilesAreWalkedAndPicked) {
  const auto look = [](Desk& desk) {
    EXPECT_EQ(desk.Title(), u"ファイルを開く");
    EXPECT_EQ(desk.Control(kFiles).items,
              (std::vector<std::u16string>{u"..\\", u"ソ表\\", u"a.ini"}));
    EXPECT_THAT(desk.Control(kFolders).items, ElementsAre(u"C:\\", u"C:\\data", u"Z:\\"));
    EXPECT_TRUE(desk.Select(kFilter, 1));
    EXPECT_EQ(desk.Control(kFiles).items.size(), 5u);
    EXPECT_TRUE(desk.Select(kFilter, 0));
  };
  EXPECT_TRUE(Open({look, Pick(u"..\\"), Pick(u"data\\"), Pick(u"ソ表\\"), Pick(u"b.ini")}));
  EXPECT_EQ(std::u16string(file_), u"C:\\data\\ソ表\\b.ini");
  EXPECT_EQ(request_.nFileOffset, 11);
  EXPECT_EQ(request_.nFileExtension, 13);
  EXPECT_EQ(request_.nFilterIndex, 1u);
  EXPECT_EQ(request_.Flags & OFN_EXTENSIONDIFFERENT, 0u);
}

TEST_F(FileDialogTest, WhatIsOpenedMustExist) {
  EXPECT_TRUE(
      Open({Type(u"missing"), Box(u"C:\\data\\missing.ini\nファイルが見つかりません。", IDOK),
            Type(u"nowhere\\a.ini"), Box(u"パスが存在しません。", IDOK), Type(u"a<.ini"),
            Box(u"ファイル名が無効です。", IDOK), Type(u""), Type(u"ソ表"),
            [](Desk& desk) { EXPECT_EQ(desk.Text(kName), u""); }, Type(u"..\\PLAIN")}));
  EXPECT_EQ(std::u16string(file_), u"C:\\data\\PLAIN") << "an existing name needs no extension";
}

TEST_F(FileDialogTest, SavingAsksBeforeItOverwrites) {
  std::u16string(u"a.ini").copy(file_, MAX_PATH);
  const auto start = [](Desk& desk) {
    EXPECT_EQ(desk.Title(), u"名前を付けて保存");
    EXPECT_EQ(desk.Text(kName), u"a.ini");
    EXPECT_EQ(desk.FocusedId(), kName);
    EXPECT_TRUE(desk.Click(IDOK));
  };
  EXPECT_FALSE(Save({start, Box(u"既に存在します。上書きしますか", IDNO), Cancel()}));
  EXPECT_EQ(std::u16string(file_), u"a.ini") << "cancelled: untouched";
  EXPECT_TRUE(Save({start, Box(u"上書きしますか", IDYES)}));
  EXPECT_EQ(std::u16string(file_), u"C:\\data\\a.ini");
  EXPECT_TRUE(Save({Type(u"Z:new")}));
  EXPECT_EQ(std::u16string(file_), u"Z:\\new.ini");
  request_.lpstrInitialDir = u"C:\\gone";
  EXPECT_TRUE(Save({Type(u"sub\\..\\x.dat")}));
  EXPECT_EQ(std::u16string(file_), u"Z:\\x.dat") << "the start name's own folder comes first";
  EXPECT_NE(request_.Flags & OFN_EXTENSIONDIFFERENT, 0u);
}

TEST_F(FileDialogTest, WildcardsFilterAndShortBuffersAreTold) {
  EXPECT_FALSE(Open(
      {Type(u"*.txt"),
       [](Desk& desk) { EXPECT_THAT(desk.Control(kFiles).items, testing::Contains(u"note.txt")); },
       [](Desk& desk) { EXPECT_TRUE(desk.Escape()); }}));
  request_.nMaxFile = 13;  // "C:\data\a.ini" needs one more
  file_[0] = 0;
  EXPECT_FALSE(Open({Pick(u"a.ini")}));
  EXPECT_EQ(file_[0], 14);
  EXPECT_EQ(CommDlgExtendedError(), FNERR_BUFFERTOOSMALL);
  EXPECT_FALSE(Run("GetOpenFileNameW", {[](Desk& desk) { EXPECT_TRUE(desk.Close()); }}));
  EXPECT_EQ(CommDlgExtendedError(), 0u) << "cancelled is no error";
  request_.lStructSize = 12;
  EXPECT_FALSE(Run("GetOpenFileNameW", {}));
  EXPECT_EQ(CommDlgExtendedError(), CDERR_STRUCTSIZE);
}

TEST_F(FileDialogTest, WindowFailuresMeanNoFile) {
  for (int n = 1; n <= 10; ++n) {
    machine().faults.FailNth(platform::Fault::kWindow, n);
    EXPECT_FALSE(Run("GetSaveFileNameW", {})) << n;
    EXPECT_TRUE(machine().faults.Struck(platform::Fault::kWindow)) << n;
    machine().faults.Clear();
  }
}

TEST(FileTitle, NamesAndTheirLimits) {
  const std::u16string sixtyThree(63, u'x'), sixtyFour(64, u'x');
  const struct {
    std::u16string path;
    int answer;
    std::u16string title;
  } cases[] = {{u"C:\\data\\a.ini", 0, u"a.ini"},
               {u"a.ini", 0, u"a.ini"},
               {u"C:a.ini", 0, u"a.ini"},
               {u"C:/x/表.ini", 0, u"表.ini"},
               {u"C:\\d\\" + sixtyThree, 0, sixtyThree},
               {u"C:\\d\\" + sixtyFour, 65, u""},
               {u"", -1, u""},
               {u"C:\\data\\", -1, u""},
               {u"C:", -1, u""},
               {u"a*.ini", -1, u""},
               {u"a[1].ini", -1, u""},
               {std::u16string(260, u'x'), -1, u""}};
  for (const auto& it : cases) {
    WCHAR title[64] = {};
    EXPECT_EQ(GetFileTitleW(it.path.c_str(), title, 64), it.answer) << it.path.size();
    EXPECT_EQ(std::u16string(title), it.title);
  }
}

TEST(FileDialogPaths, FullPathsAndPatterns) {
  namespace fd = platform::filedialog;
  EXPECT_EQ(fd::FullPath(u"C:\\data", u"..\\..\\..\\x"), u"C:\\x");
  EXPECT_EQ(fd::FullPath(u"C:\\data", u"\\x\\.\\y\\"), u"C:\\x\\y");
  EXPECT_EQ(fd::FullPath(u"C:\\", u"D:"), u"D:\\");
  EXPECT_EQ(fd::FolderAbove(u"C:\\"), u"C:\\");
  EXPECT_EQ(fd::FolderAbove(u"C:\\a"), u"C:\\");
  EXPECT_TRUE(fd::Matches(u"A.INI", u"*.txt;*.ini"));
  EXPECT_TRUE(fd::Matches(u"a.b.ini", u"a*b*.i?i"));
  EXPECT_TRUE(fd::Matches(u"plain", u"*.*"));
  EXPECT_FALSE(fd::Matches(u"a.inix", u"*.ini"));
  EXPECT_EQ(fd::ReadFilters(u"only text\0").size(), 0u);
  EXPECT_EQ(fd::ReadFilters(nullptr).size(), 0u);
}

}  // namespace
