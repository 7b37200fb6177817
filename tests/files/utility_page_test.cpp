// The utility page in sheets that a person uses.
#include <windows.h>
#include <commdlg.h>

#include "operation/device_settings.h"
#include "resources/resource.h"
#include "tests/files/backup_fixture.h"
#include "tests/support/open_sheet.h"

namespace kestrel::test {
namespace {

using support::Click;
using support::ExpectText;
using support::GoTo;
using support::Replace;
using support::SheetKind;
using support::Steps;

constexpr char16_t kSaved[] = u"データを保存しました。";
constexpr char16_t kSaveFailed[] = u"データを保存できませんでした。";
constexpr char16_t kLoaded[] = u"データを読込みました。";
constexpr char16_t kLoadFailed[] = u"データを読み込む事ができませんでした。";
constexpr char16_t kNameMissing[] = u"ファイル名を入力してください。";
constexpr char16_t kNameWrong[] =
    u"不正なファイル名です。\n以下のことを確認してください。\n"
    u"\t・ファイル名にピリオド( . )が使われていないか\n\t・拡張子が\"ini\"になっているか";
constexpr char16_t kNotABackup[] =
    u"このファイルはこのプリンタのデータファイルではありません。                  \n"
    u"もう一度ファイルを確かめてください。";

class UtilityPage : public BackupTest {
 protected:
  void SetUp() override {
    BackupTest::SetUp();
    support::StoreBlock(machine(), my_.block);
  }
  support::SheetAnswer Visit(Steps steps, SheetKind kind = SheetKind::kUserDefault) {
    return support::ShowSheet(exports_, {.kind = kind},
                              {GoTo(support::kUtilityTab), std::move(steps)});
  }
  static support::Step Message(const char16_t* text, UINT icon) {
    return support::CloseMessage(text, icon, u"ユーティリティ");
  }
  std::u16string NameInData(const char16_t* value) {
    const auto data = machine().Data(kPrinter, value);
    if (!data) return u"(none)";
    EXPECT_EQ(data->type, REG_BINARY);
    EXPECT_EQ(data->bytes.size(), 260u);
    std::u16string name(130, 0);
    std::memcpy(name.data(), data->bytes.data(), 260);
    return name.substr(0, name.find(u'\0'));
  }
};

TEST_F(UtilityPage, RefusesNamesInTheOrderOfItsChecks) {
  struct Case {
    std::u16string name;
    const char16_t* reason;  // null: the platform refuses the name, and no message tells why
  };
  const Case cases[] = {
      {u"", kNameMissing},       {u"   ", kNameMissing},
      {u"\u3000", kNameMissing}, {u" \u3000", kNameMissing},
      {u"a", kNameWrong},        {u"a.Ini", kNameWrong},
      {u"a.inI", kNameWrong},    {u"a.txt", kNameWrong},
      {u"ini", kNameWrong},      {u"a.ini ", kNameWrong},
      {u"C:\\data\\", nullptr},  {std::u16string(60, u'n') + u".ini", nullptr},
  };
  Steps steps;
  for (const Case& c : cases) {
    for (const bool save : {true, false}) {
      steps += {Replace(save ? IDC_UTILITY_SAVE_NAME : IDC_UTILITY_LOAD_NAME, c.name),
                Click(save ? IDC_UTILITY_SAVE : IDC_UTILITY_LOAD),
                c.reason != nullptr ? Steps(Message(c.reason, MB_ICONEXCLAMATION)) : Steps(),
                Message(save ? kSaveFailed : kLoadFailed, MB_ICONHAND)};
    }
  }
  Visit({steps, support::PressCancel()});
  EXPECT_EQ(NameInData(u"BackupFile Write Name"), u"(none)");
  EXPECT_EQ(NameInData(u"BackupFile Read Name"), u"(none)");
}

TEST_F(UtilityPage, SavesUnderABareNameAndRemembersIt) {
  Visit({Replace(IDC_UTILITY_SAVE_NAME, u"表 ソ.ini"), Click(IDC_UTILITY_SAVE),
         Message(kSaved, MB_ICONASTERISK), ExpectText(IDC_UTILITY_SAVE_NAME, u"表 ソ.ini"),
         support::PressCancel()});
  EXPECT_EQ(Bytes(u"C:\\WINDOWS\\system32\\表 ソ.ini"), Golden());
  EXPECT_EQ(NameInData(u"BackupFile Write Name"), u"表 ソ.ini");
  Visit({ExpectText(IDC_UTILITY_SAVE_NAME, u"表 ソ.ini"), ExpectText(IDC_UTILITY_LOAD_NAME, u""),
         support::PressCancel()});
  // The advanced session has neither names nor fonts.
  Visit({ExpectText(IDC_UTILITY_SAVE_NAME, u""), support::PressCancel()}, SheetKind::kAdvanced);
}

TEST_F(UtilityPage, KeepsTheFirst130UnitsOfALongName) {
  const std::u16string folder = u"C:\\" + std::u16string(140, u'd');
  std::filesystem::create_directories(machine().HostPath(folder));
  const std::u16string name = folder + u"\\a.INI";
  Visit({Replace(IDC_UTILITY_SAVE_NAME, name), Click(IDC_UTILITY_SAVE),
         Message(kSaved, MB_ICONASTERISK), support::PressCancel()});
  EXPECT_EQ(NameInData(u"BackupFile Write Name"), name.substr(0, 130));
  // The field itself takes 259 units.
  Visit({ExpectText(IDC_UTILITY_SAVE_NAME, name.substr(0, 130)),
         [](platform::Desk& desk) {
           EXPECT_EQ(desk.Control(IDC_UTILITY_SAVE_NAME).textLimit, 259);
           EXPECT_EQ(desk.Control(IDC_UTILITY_LOAD_NAME).textLimit, 259);
         },
         support::PressCancel()});
}

TEST_F(UtilityPage, LoadsForGoodOnlyOnOk) {
  WriteDefaultsWith(u"PrintSpeed=1", u"PrintSpeed=3\r\n");
  std::string text = Bytes();
  text.replace(text.find("SYNC=0"), 6, "SYNC=1");
  machine().WriteFile(kFile, text);
  const Steps load = {Replace(IDC_UTILITY_LOAD_NAME, kFile), Click(IDC_UTILITY_LOAD),
                      Message(kLoaded, MB_ICONASTERISK)};
  EXPECT_FALSE(Visit({load, support::PressCancel()}).written);
  EXPECT_EQ(NameInData(u"BackupFile Read Name"), kFile);
  EXPECT_EQ(ReadSyncPrint(kPrinter), 1u);
  const auto answer = Visit({load, support::PressOk()});
  EXPECT_EQ(answer.record.Private.nPrintSpeed, 3);
  EXPECT_EQ(answer.record.Private.nTSMode, 1);
  EXPECT_EQ(answer.record.Private.Signature, SETTINGS_SIGNATURE);
}

TEST_F(UtilityPage, AFailedLoadChangesNothing) {
  // Fails at a key in the middle of what it reads.
  WriteDefaultsWith(u"ColorText=1", u"ColorText=\r\n");
  std::string text = Bytes();
  text.replace(text.find("PrintSpeed=1"), 12, "PrintSpeed=4");
  machine().WriteFile(kFile, text);
  const auto answer = Visit({Replace(IDC_UTILITY_LOAD_NAME, kFile), Click(IDC_UTILITY_LOAD),
                             Message(kLoadFailed, MB_ICONHAND),
                             Replace(IDC_UTILITY_LOAD_NAME, u"C:\\data\\none.ini"),
                             Click(IDC_UTILITY_LOAD), Message(kNotABackup, MB_ICONHAND),
                             Message(kLoadFailed, MB_ICONHAND), support::PressOk()});
  EXPECT_EQ(support::BytesOf(&answer.record, 452), support::BytesOf(&my_.block.Record, 452));
  EXPECT_EQ(machine().Data(kPrinter, u"Private DevMode")->bytes,
            support::BytesOf(&my_.block.Printer, kPrinterPartSize));
  EXPECT_EQ(NameInData(u"BackupFile Read Name"), u"(none)");
}

// What a file dialog was asked for, and the file that the person picks in it; none: cancel.
struct FileAsk {
  OPENFILENAMEW dialog;
  std::u16string function, filter, file, folder, extension;
};
std::vector<FileAsk> asked;
const char16_t* picked;

BOOL Ask(OPENFILENAMEW* dialog, const char16_t* function) {
  const WCHAR* end = dialog->lpstrFilter;
  while (end[0] != 0 || end[1] != 0) ++end;
  asked.push_back({*dialog, function, std::u16string(dialog->lpstrFilter, end), dialog->lpstrFile,
                   dialog->lpstrInitialDir, dialog->lpstrDefExt});
  if (picked != nullptr) std::u16string(picked).copy(dialog->lpstrFile, dialog->nMaxFile);
  return picked != nullptr;
}
BOOL WINAPI AskOpen(OPENFILENAMEW* dialog) { return Ask(dialog, u"open"); }
BOOL WINAPI AskSave(OPENFILENAMEW* dialog) { return Ask(dialog, u"save"); }

TEST_F(UtilityPage, BrowsesFromTheNameInTheField) {
  struct Case {
    const char16_t *name, *file, *folder;
  };
  const HMODULE library = LoadLibraryW(u"comdlg32.dll");
  const auto entry = [](auto* function) {
    return reinterpret_cast<FARPROC>(reinterpret_cast<void (*)()>(function));
  };
  const FARPROC title = GetProcAddress(library, "GetFileTitleW");
  FreeLibrary(library);
  machine().RegisterModule(u"comdlg32.dll", {{"GetFileTitleW", title},
                                             {"GetOpenFileNameW", entry(AskOpen)},
                                             {"GetSaveFileNameW", entry(AskSave)}});
  for (const bool save : {true, false}) {
    const int field = save ? IDC_UTILITY_SAVE_NAME : IDC_UTILITY_LOAD_NAME;
    const int browse = save ? IDC_UTILITY_SAVE_BROWSE : IDC_UTILITY_LOAD_BROWSE;
    const std::u16string tooLong = u"C:\\data\\" + std::u16string(64, u't');
    for (const Case& c : {Case{u"C:\\data\\a.ini", u"a.ini", u"C:\\data\\"},
                          {u"\\b.ini", u"b.ini", u"\\"},
                          {u"b.ini", u"b.ini", u"C:\\WINDOWS\\system32"},
                          {tooLong.c_str(), u"", tooLong.c_str()},
                          {u"", u"", u""},
                          {u" \u3000", u"", u""}}) {
      asked.clear();
      picked = nullptr;
      Visit({Replace(field, c.name), Click(browse), ExpectText(field, c.name),
             [](platform::Desk&) { picked = u"C:\\表\\chosen.ini"; }, Click(browse),
             ExpectText(field, u"C:\\表\\chosen.ini"), support::PressCancel()});
      ASSERT_EQ(asked.size(), 2u);
      const FileAsk& ask = asked[0];
      EXPECT_EQ(ask.function, save ? u"save" : u"open");
      EXPECT_EQ(ask.file, c.file) << Cp932(c.name);
      EXPECT_EQ(ask.folder, c.folder) << Cp932(c.name);
      EXPECT_EQ(ask.filter, std::u16string(u"初期化ﾌｧｲﾙ(*.ini)\0*.ini", 20));
      EXPECT_EQ(ask.extension, u"ini");
      EXPECT_EQ(ask.dialog.lStructSize, sizeof(OPENFILENAMEW));
      EXPECT_EQ(ask.dialog.nFilterIndex, 1u);
      EXPECT_EQ(ask.dialog.nMaxFile, 260u);
      EXPECT_EQ(ask.dialog.lpstrTitle, nullptr);
      EXPECT_EQ(ask.dialog.lpstrFileTitle, nullptr);
      EXPECT_NE(ask.dialog.hwndOwner, nullptr);
      EXPECT_EQ(ask.dialog.Flags,
                DWORD(save ? OFN_LONGNAMES | OFN_OVERWRITEPROMPT | OFN_HIDEREADONLY
                           : OFN_LONGNAMES | OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST));
    }
  }
}

// The wait cursor lasts as long as the transfer, whatever becomes of it.
TEST_F(UtilityPage, ShowsTheWaitCursorWhileItTransfers) {
  const auto cursor = [](LPCWSTR name) {
    return [=](platform::Desk& desk) { EXPECT_EQ(desk.Cursor(), LoadCursorW(nullptr, name)); };
  };
  WriteDefaultsWith(u"BarFontNum=0", u"BarFontNum=1\r\n");
  const Steps fonts = {cursor(IDC_WAIT), Click(IDOK)};  // the warning of loaded fonts
  Visit({Replace(IDC_UTILITY_LOAD_NAME, kFile), Click(IDC_UTILITY_LOAD), fonts, cursor(IDC_ARROW),
         Message(kLoaded, MB_ICONASTERISK), cursor(IDC_ARROW),
         Replace(IDC_UTILITY_LOAD_NAME, u"C:\\data\\none.ini"), Click(IDC_UTILITY_LOAD),
         cursor(IDC_WAIT), Message(kNotABackup, MB_ICONHAND), cursor(IDC_ARROW),
         Message(kLoadFailed, MB_ICONHAND), support::PressCancel()});
}

TEST_F(UtilityPage, WithoutTheDialogLibraryNothingIsTouched) {
  Visit({[this](platform::Desk&) { machine().RegisterModule(u"comdlg32.dll", {}); },
         Replace(IDC_UTILITY_SAVE_NAME, kFile), Click(IDC_UTILITY_SAVE_BROWSE),
         ExpectText(IDC_UTILITY_SAVE_NAME, kFile), Click(IDC_UTILITY_SAVE),
         Message(kSaveFailed, MB_ICONHAND), support::PressCancel()});
  EXPECT_EQ(Bytes(), "");
}

}  // namespace
}  // namespace kestrel::test
