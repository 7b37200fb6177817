// File dialogs: walking through folders, what a typed name becomes, what is refused and asked.
#include <windows.h>
#include <commdlg.h>
#include <gmock/gmock.h>

#include "tests/support/steps.h"
#include "tests/support/test_machine.h"

namespace support {
namespace {

constexpr int kName = 1148, kFiles = 1120, kFolder = 1137, kFilter = 1136;

class FileDialogTest : public MachineTest {
 protected:
  void SetUp() override {
    MachineTest::SetUp();
    for (const auto* name : {u"a.ini", u"plain", u"note.txt", u"ソ表\\b.ini"})
      machine().WriteFile(std::u16string(u"C:\\data\\") + name, "x");
    request_.lStructSize = sizeof request_;
    request_.lpstrFilter = u"初期化ﾌｧｲﾙ(*.ini)\0*.ini\0";
    request_.lpstrFile = file_;
    request_.nMaxFile = MAX_PATH;
    request_.lpstrInitialDir = u"C:\\data\\";
    request_.lpstrDefExt = u"ini";
  }
  bool Open(Steps steps) {
    request_.Flags = OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST;
    return Follow(std::move(steps), [&] { return GetOpenFileNameW(&request_) != FALSE; });
  }
  bool Save(Steps steps) {
    request_.Flags = OFN_OVERWRITEPROMPT;
    return Follow(std::move(steps), [&] { return GetSaveFileNameW(&request_) != FALSE; });
  }
  static Steps Enter(std::u16string name) { return {Replace(kName, name), support::Enter()}; }
  static Steps Pick(std::u16string line) { return {Select(kFiles, line), Click(IDOK)}; }
  static Step Box(std::u16string text, int button = IDOK) {
    return [=](Desk& desk) {
      EXPECT_TRUE(desk.IsMessageBox());
      EXPECT_EQ(desk.MessageText(), text);
      EXPECT_TRUE(desk.Click(button));
    };
  }

  OPENFILENAMEW request_ = {};
  WCHAR file_[MAX_PATH] = {};
};

TEST_F(FileDialogTest, FoldersAndFilesAreWalkedAndPicked) {
  EXPECT_TRUE(
      Open({ExpectTitle(u"ファイルを開く"), ExpectText(kFilter, u"初期化ﾌｧｲﾙ(*.ini)"),
            ExpectItems(kFiles, {u"..\\", u"ソ表\\", u"a.ini"}), Pick(u"..\\"),
            ExpectText(kFolder, u"C:\\"), Pick(u"data\\"), Pick(u"ソ表\\"), Pick(u"b.ini")}));
  EXPECT_EQ(std::u16string(file_), u"C:\\data\\ソ表\\b.ini");
  file_[0] = 0;
  request_.nMaxFile = 13;  // "C:\data\a.ini" needs one more
  EXPECT_FALSE(Open({Pick(u"a.ini")}));
  EXPECT_EQ(file_[0], 14);
}

TEST_F(FileDialogTest, WhatIsOpenedMustExist) {
  EXPECT_TRUE(Open(
      {Enter(u"missing"),
       Box(u"C:\\data\\missing.ini\nファイルが見つかりません。\nファイル名を確認してください。"),
       Enter(u"nowhere\\a.ini"),
       Box(u"C:\\data\\nowhere\\a.ini\nパスが存在しません。\nパスを確認してください。"),
       Enter(u"a<.ini"), Box(u"a<.ini\nファイル名が無効です。"), Enter(u""), Enter(u"ソ表"),
       ExpectText(kName, u""), Enter(u"..\\PLAIN")}));
  EXPECT_EQ(std::u16string(file_), u"C:\\data\\PLAIN") << "an existing name needs no extension";
}

TEST_F(FileDialogTest, SavingAsksBeforeItOverwrites) {
  std::u16string(u"a.ini").copy(file_, MAX_PATH);
  const Steps start = {ExpectTitle(u"名前を付けて保存"), ExpectText(kName, u"a.ini"),
                       ExpectFocus(kName), Click(IDOK)};
  const std::u16string asks = u"C:\\data\\a.ini\nこのファイルは既に存在します。上書きしますか?";
  EXPECT_FALSE(Save({start, Box(asks, IDNO), Close()}));
  EXPECT_EQ(std::u16string(file_), u"a.ini") << "cancelled: untouched";
  EXPECT_TRUE(Save({start, Box(asks, IDYES)}));
}

}  // namespace
}  // namespace support
