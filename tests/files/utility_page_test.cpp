// The utility page of a property sheet.
#include <windows.h>
#include <commdlg.h>

#include "operation/device_settings.h"
#include "platform/machine/guard.h"
#include "resources/resource.h"
#include "tests/files/backup_fixture.h"

namespace kestrel::test {
namespace {

using support::Click;
using support::ExpectChanged;
using support::ExpectText;
using support::GoTo;
using support::Replace;
using support::SheetKind;
using support::Steps;

constexpr char16_t kSaved[] = u"データを保存しました64|";
constexpr char16_t kSaveFailed[] = u"データを保存できませんでした16|";
constexpr char16_t kLoaded[] = u"データを読込みました64|";
constexpr char16_t kLoadFailed[] = u"データを読み込む事ができませんでした16|";

class UtilityPageTest : public BackupTest {
 protected:
  UtilityPageTest() { StoreDefaults(block_); }
  // Does the steps on the page and cancels the sheet. Returns the messages.
  std::u16string Visit(Steps steps, SheetKind kind = SheetKind::kUserDefault) {
    desk().ClearShown();
    Show({.kind = kind}, {GoTo(support::kUtilityTab), std::move(steps), support::PressCancel()});
    for (const auto& shown : desk().History()) EXPECT_EQ(shown.caption, u"ユーティリティ");
    return Shown();
  }
  // Replaces the name of a direction, clicks its button and closes the given number of messages.
  static Steps Press(bool save, std::u16string name, int messages) {
    Steps steps = {Replace(save ? IDC_UTILITY_SAVE_NAME : IDC_UTILITY_LOAD_NAME, name),
                   Click(save ? IDC_UTILITY_SAVE : IDC_UTILITY_LOAD)};
    while (messages-- > 0) steps += Click(IDOK);
    return steps;
  }
  std::u16string NameInData(const char16_t* value) {
    const auto data = machine().Data(kPrinter, value);
    if (!data) return u"(none)";
    EXPECT_EQ(support::Words(data->type, data->bytes.size()), support::Words(REG_BINARY, 260));
    std::u16string name(130, 0);
    std::memcpy(name.data(), data->bytes.data(), 260);
    return name.c_str();
  }
};

TEST_F(UtilityPageTest, InvalidNameIsRejectedByTheFirstFailedCheck) {
  Steps steps;
  std::u16string expected;
  const auto expectRejected = [&](std::u16string name, std::u16string reason) {
    for (const bool save : {true, false}) {
      steps += Press(save, name, reason.empty() ? 1 : 2);
      steps += support::ExpectFocus(save ? IDC_UTILITY_SAVE_NAME : IDC_UTILITY_LOAD_NAME);
      expected += reason + (save ? kSaveFailed : kLoadFailed);
    }
  };
  for (const char16_t* name : {u"", u"   ", u"\u3000", u" \u3000"})
    expectRejected(name, u"ファイル名を入力してください48|");
  for (const char16_t* name : {u"a", u"a.Ini", u"a.inI", u"a.txt", u"ini", u"a.ini "})
    expectRejected(name, u"不正なファイル名です48|");
  // A name that the platform rejects has no message of its own.
  expectRejected(u"C:\\data\\", u"");
  expectRejected(std::u16string(64, u'n') + u".ini", u"");
  EXPECT_EQ(Visit(steps), expected);
  EXPECT_EQ(NameInData(u"BackupFile Write Name"), u"(none)");
  EXPECT_EQ(NameInData(u"BackupFile Read Name"), u"(none)");
}

TEST_F(UtilityPageTest, BareNameIsSavedInSystemDirectoryAndRemembered) {
  const std::u16string name = u"表 ソ.ini";
  EXPECT_EQ(Visit({Press(true, name, 1), ExpectChanged(false)}), kSaved);
  EXPECT_EQ(Bytes(u"C:\\WINDOWS\\system32\\" + name), Golden());
  EXPECT_EQ(NameInData(u"BackupFile Write Name"), name);
  // The advanced session loads neither names nor fonts.
  for (const SheetKind kind : {SheetKind::kDocument, SheetKind::kUserDefault, SheetKind::kAdvanced})
    Visit({ExpectText(IDC_UTILITY_SAVE_NAME, kind == SheetKind::kAdvanced ? u"" : name),
           ExpectText(IDC_UTILITY_LOAD_NAME, u"")},
          kind);
}

TEST_F(UtilityPageTest, LongNameIsStoredWithItsFirst130Units) {
  const std::u16string folder = u"C:\\" + std::u16string(140, u'd');
  std::filesystem::create_directories(machine().HostPath(folder));
  const std::u16string name = folder + u"\\a.INI";
  EXPECT_EQ(Visit(Press(true, name, 1)), kSaved);
  EXPECT_EQ(NameInData(u"BackupFile Write Name"), name.substr(0, 130));
  machine().SetData(kPrinter, u"BackupFile Read Name",
                    {REG_BINARY, support::BytesOf(name.data(), 262)});
  // The fields accept 259 units. A value of more than 260 bytes is not loaded.
  Visit({ExpectText(IDC_UTILITY_SAVE_NAME, name.substr(0, 130)),
         ExpectText(IDC_UTILITY_LOAD_NAME, u""),
         support::ExpectEach({IDC_UTILITY_SAVE_NAME, IDC_UTILITY_LOAD_NAME},
                             &platform::ControlView::textLimit, 259)});
}

TEST_F(UtilityPageTest, LoadedSettingsAreStoredOnlyOnOk) {
  WriteDefaultsWith({{u"PrintSpeed=1", u"PrintSpeed=3"}, {u"SYNC=0", u"SYNC=1"}});
  EXPECT_EQ(Visit(Press(false, kFile, 1)), kLoaded);
  EXPECT_EQ(NameInData(u"BackupFile Read Name"), kFile);
  Visit({ExpectText(IDC_UTILITY_LOAD_NAME, kFile), Press(false, kFile, 1), ExpectChanged(true)});
  EXPECT_EQ(DeviceSettings(kPrinter).SyncPrint(), 1u);
  const PrivateDevMode settings = Ok(support::kUtilityTab, Press(false, kFile, 1)).record.Private;
  EXPECT_EQ(support::Words(settings.nPrintSpeed, settings.nTSMode, settings.Signature),
            support::Words(3, 1, SETTINGS_SIGNATURE));
}

// The wait cursor ends with the transfer, also with a failed one.
TEST_F(UtilityPageTest, FailedLoadLeavesSettings) {
  const auto cursor = [](LPCWSTR name) {
    return [=](platform::Desk& desk) {
      EXPECT_EQ(desk.Cursor(), LoadCursorW(nullptr, name));
      EXPECT_TRUE(desk.Click(IDOK));
    };
  };
  // The load fails at a key after others that it has read.
  WriteDefaultsWith({{u"PrintSpeed=1", u"PrintSpeed=4"}, {u"ColorText=1", u"ColorText="}});
  desk().ClearShown();
  const auto answer = Ok(support::kUtilityTab, {Press(false, kFile, 0), cursor(IDC_ARROW),
                                                Press(false, u"C:\\data\\none.ini", 0),
                                                cursor(IDC_WAIT), cursor(IDC_ARROW)});
  EXPECT_EQ(Shown(), std::u16string(kLoadFailed) + kNotABackup + kLoadFailed);
  EXPECT_EQ(support::BytesOf(answer.record), support::BytesOf(block_.Record));
  EXPECT_EQ(machine().Data(kPrinter, u"Private DevMode")->bytes,
            support::BytesOf(&block_.Printer, kPrinterPartSize));
  EXPECT_EQ(NameInData(u"BackupFile Read Name"), u"(none)");
  for (const std::u16string count : {u"DecoFontNum=", u"BarFontNum="}) {
    WriteDefaultsWith({{count + u"0", count + u"1"}});
    EXPECT_EQ(Visit({Press(false, kFile, 0), cursor(IDC_WAIT), cursor(IDC_ARROW)}),
              std::u16string(kFontWarning) + kLoaded);
  }
}

// The arguments of the file dialog calls, and the file that the user chooses in the next one; null
// cancels it.
std::string dialogCalls;
const char16_t* chosenFile;

template <bool kSave>
BOOL WINAPI ChooseFile(OPENFILENAMEW* dialog) {
  using namespace std::string_literals;
  EXPECT_EQ(std::u16string(dialog->lpstrFilter, 21), u"初期化ﾌｧｲﾙ(*.ini)\0*.ini\0"s);
  dialogCalls += platform::ToUtf8(dialog->lpstrFile + u", "s + dialog->lpstrInitialDir + u", " +
                                  dialog->lpstrDefExt + (kSave ? u", save " : u", open ")) +
                 std::to_string(dialog->Flags);
  EXPECT_NE(dialog->hwndOwner, nullptr);
  EXPECT_EQ(support::Words(dialog->lStructSize, dialog->nFilterIndex, dialog->nMaxFile,
                           dialog->lpstrTitle, dialog->lpstrFileTitle),
            support::Words(sizeof *dialog, 1, 260, nullptr, nullptr));
  if (chosenFile != nullptr) std::u16string(chosenFile).copy(dialog->lpstrFile, dialog->nMaxFile);
  return chosenFile != nullptr;
}

TEST_F(UtilityPageTest, BrowseStartsWithNameInField) {
  machine().RegisterModule(u"comdlg32.dll",
                           {{"GetFileTitleW", platform::AsEntryPoint(GetFileTitleW)},
                            {"GetOpenFileNameW", platform::AsEntryPoint(ChooseFile<false>)},
                            {"GetSaveFileNameW", platform::AsEntryPoint(ChooseFile<true>)}});
  const std::u16string tooLong = u"C:\\data\\" + std::u16string(64, u't');
  const std::u16string cases[][2] = {{u"C:\\data\\a.ini", u"a.ini, C:\\data\\"},
                                     {u"\\b.ini", u"b.ini, \\"},
                                     {u"b.ini", u"b.ini, C:\\WINDOWS\\system32"},
                                     {u"C:/data/a.b.ini", u"a.b.ini, C:/data/"},
                                     {tooLong, u", C:\\data\\"},
                                     {u"", u", "},
                                     {u" \u3000", u", "}};
  for (const bool save : {true, false}) {
    const int field = save ? IDC_UTILITY_SAVE_NAME : IDC_UTILITY_LOAD_NAME;
    const int browse = save ? IDC_UTILITY_SAVE_BROWSE : IDC_UTILITY_LOAD_BROWSE;
    const DWORD flags = save ? OFN_LONGNAMES | OFN_OVERWRITEPROMPT | OFN_HIDEREADONLY
                             : OFN_LONGNAMES | OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST;
    for (const auto& [name, start] : cases) {
      dialogCalls.clear();
      chosenFile = nullptr;
      Visit({Replace(field, name), Click(browse), ExpectText(field, name),
             [&](platform::Desk&) {
               EXPECT_EQ(dialogCalls, platform::ToUtf8(start) +
                                          (save ? ", ini, save " : ", ini, open ") +
                                          std::to_string(flags));
               chosenFile = u"C:\\表\\chosen.ini";
             },
             Click(browse), ExpectText(field, u"C:\\表\\chosen.ini")});
    }
  }
}

// The start does not depend on the user's preference for extensions.
TEST_F(UtilityPageTest, BrowseShowsFolderOfNameAndRestoresCurrentDirectory) {
  constexpr int kFolder = 1137, kName = 1148;  // the file dialog's controls
  machine().WriteFile(u"C:\\data\\sub\\b.ini", "");
  ASSERT_TRUE(SetCurrentDirectoryW(u"C:\\WINDOWS"));
  for (const bool hidden : {true, false}) {
    machine().SetHidesExtensions(hidden);
    for (const auto& [name, browse] : {std::pair(IDC_UTILITY_SAVE_NAME, IDC_UTILITY_SAVE_BROWSE),
                                       {IDC_UTILITY_LOAD_NAME, IDC_UTILITY_LOAD_BROWSE}}) {
      const Steps start = {Replace(name, kFile), Click(browse), ExpectText(kFolder, u"C:\\data"),
                           ExpectText(kName, u"a.ini")};
      const std::u16string file = name == IDC_UTILITY_SAVE_NAME ? u"new.ini" : u"b.ini";
      const Steps choose = {Replace(kName, u"sub"), Click(IDOK), Replace(kName, file), Click(IDOK)};
      Visit({start, choose, ExpectText(name, u"C:\\data\\sub\\" + file), start, Click(IDCANCEL)});
      WCHAR directory[MAX_PATH];
      GetCurrentDirectoryW(MAX_PATH, directory);
      EXPECT_EQ(directory, std::u16string(u"C:\\WINDOWS"));
    }
  }
}

TEST_F(UtilityPageTest, AnsiCodePageThatChangesNamesFailsSaveAndLoad) {
  WriteDefaultsWith({});
  machine().SetAnsiPage(CP_UTF8);
  EXPECT_EQ(Visit({Press(true, kFile, 1), Press(false, kFile, 1)}),
            std::u16string(kSaveFailed) + kLoadFailed);
  EXPECT_EQ(Bytes(), Golden());
}

TEST_F(UtilityPageTest, MissingDialogLibraryFailsBrowseAndSave) {
  EXPECT_EQ(Visit({[this](platform::Desk&) { machine().RegisterModule(u"comdlg32.dll", {}); },
                   Replace(IDC_UTILITY_SAVE_NAME, kFile), Click(IDC_UTILITY_SAVE_BROWSE),
                   ExpectText(IDC_UTILITY_SAVE_NAME, kFile), Press(true, kFile, 1)}),
            kSaveFailed);
  EXPECT_EQ(Bytes(), "");
}

}  // namespace
}  // namespace kestrel::test
