// The utility page in sheets that a person uses.
#include <windows.h>
#include <commdlg.h>

#include "operation/device_settings.h"
#include "platform/system/guard.h"
#include "resources/resource.h"
#include "tests/files/backup_fixture.h"

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
  UtilityPage() { Keep(block_); }
  // What a person does on the page before the sheet is cancelled.
  void Visit(Steps steps, SheetKind kind = SheetKind::kUserDefault) {
    Show({.kind = kind}, {GoTo(support::kUtilityTab), std::move(steps), support::PressCancel()});
  }
  // Types a name over that of one side and presses its button.
  static Steps Press(bool save, std::u16string name) {
    return {Replace(save ? IDC_UTILITY_SAVE_NAME : IDC_UTILITY_LOAD_NAME, name),
            Click(save ? IDC_UTILITY_SAVE : IDC_UTILITY_LOAD)};
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
  Steps steps;
  const auto refuse = [&](std::u16string name, Steps reason) {
    for (const bool save : {true, false}) {
      steps += {Press(save, name), reason, Message(save ? kSaveFailed : kLoadFailed, MB_ICONHAND)};
    }
  };
  for (const char16_t* name : {u"", u"   ", u"\u3000", u" \u3000"})
    refuse(name, Message(kNameMissing, MB_ICONEXCLAMATION));
  for (const char16_t* name : {u"a", u"a.Ini", u"a.inI", u"a.txt", u"ini", u"a.ini "})
    refuse(name, Message(kNameWrong, MB_ICONEXCLAMATION));
  // What the platform refuses has no message that tells why.
  for (const auto& name : {std::u16string(u"C:\\data\\"), std::u16string(60, u'n') + u".ini"})
    refuse(name, {});
  Visit(steps);
  EXPECT_EQ(NameInData(u"BackupFile Write Name"), u"(none)");
  EXPECT_EQ(NameInData(u"BackupFile Read Name"), u"(none)");
}

TEST_F(UtilityPage, SavesUnderABareNameAndRemembersIt) {
  Visit({Press(true, u"表 ソ.ini"), Message(kSaved, MB_ICONASTERISK),
         ExpectText(IDC_UTILITY_SAVE_NAME, u"表 ソ.ini")});
  EXPECT_EQ(Bytes(u"C:\\WINDOWS\\system32\\表 ソ.ini"), Golden());
  EXPECT_EQ(NameInData(u"BackupFile Write Name"), u"表 ソ.ini");
  // The advanced session has neither names nor fonts.
  for (const SheetKind kind : {SheetKind::kDocument, SheetKind::kUserDefault, SheetKind::kAdvanced})
    Visit({ExpectText(IDC_UTILITY_SAVE_NAME, kind == SheetKind::kAdvanced ? u"" : u"表 ソ.ini"),
           ExpectText(IDC_UTILITY_LOAD_NAME, u"")},
          kind);
}

TEST_F(UtilityPage, KeepsTheFirst130UnitsOfALongName) {
  const std::u16string folder = u"C:\\" + std::u16string(140, u'd');
  std::filesystem::create_directories(machine().HostPath(folder));
  const std::u16string name = folder + u"\\a.INI";
  Visit({Press(true, name), Message(kSaved, MB_ICONASTERISK)});
  EXPECT_EQ(NameInData(u"BackupFile Write Name"), name.substr(0, 130));
  machine().SetData(kPrinter, u"BackupFile Read Name",
                    {REG_BINARY, support::BytesOf(name.data(), 262)});
  // The fields themselves take 259 units; data of more than 260 bytes are no name.
  Visit({ExpectText(IDC_UTILITY_SAVE_NAME, name.substr(0, 130)),
         ExpectText(IDC_UTILITY_LOAD_NAME, u""),
         support::ExpectEach({IDC_UTILITY_SAVE_NAME, IDC_UTILITY_LOAD_NAME},
                             &platform::ControlView::textLimit, 259)});
}

TEST_F(UtilityPage, LoadsForGoodOnlyOnOk) {
  WriteDefaultsWith({{u"PrintSpeed=1", u"PrintSpeed=3"}, {u"SYNC=0", u"SYNC=1"}});
  const Steps load = {Press(false, kFile), Message(kLoaded, MB_ICONASTERISK)};
  EXPECT_FALSE(Cancel(support::kUtilityTab, load).written);
  EXPECT_EQ(NameInData(u"BackupFile Read Name"), kFile);
  EXPECT_EQ(ReadSyncPrint(kPrinter), 1u);
  const auto answer = Ok(support::kUtilityTab, {ExpectText(IDC_UTILITY_LOAD_NAME, kFile), load});
  EXPECT_EQ(answer.record.Private.nPrintSpeed, 3);
  EXPECT_EQ(answer.record.Private.nTSMode, 1);
  EXPECT_EQ(answer.record.Private.Signature, SETTINGS_SIGNATURE);
}

// The wait cursor lasts as long as the transfer, whatever becomes of it.
TEST_F(UtilityPage, AFailedLoadChangesNothing) {
  const auto cursor = [](LPCWSTR name) {
    return [=](platform::Desk& desk) { EXPECT_EQ(desk.Cursor(), LoadCursorW(nullptr, name)); };
  };
  // Fails at a key in the middle of what it reads.
  WriteDefaultsWith({{u"PrintSpeed=1", u"PrintSpeed=4"}, {u"ColorText=1", u"ColorText="}});
  const auto answer =
      Ok(support::kUtilityTab,
         {Press(false, kFile), cursor(IDC_ARROW), Message(kLoadFailed, MB_ICONHAND),
          Press(false, u"C:\\data\\none.ini"), cursor(IDC_WAIT), Message(kNotABackup, MB_ICONHAND),
          cursor(IDC_ARROW), Message(kLoadFailed, MB_ICONHAND)});
  EXPECT_EQ(support::BytesOf(answer.record), support::BytesOf(block_.Record));
  EXPECT_EQ(machine().Data(kPrinter, u"Private DevMode")->bytes,
            support::BytesOf(&block_.Printer, kPrinterPartSize));
  EXPECT_EQ(NameInData(u"BackupFile Read Name"), u"(none)");
  WriteDefaultsWith({{u"BarFontNum=0", u"BarFontNum=1"}});
  Visit({Press(false, kFile), cursor(IDC_WAIT), Click(IDOK),  // the warning of loaded fonts
         cursor(IDC_ARROW), Message(kLoaded, MB_ICONASTERISK), cursor(IDC_ARROW)});
}

// What the file dialogs were asked for, and the file that the person picks in the next; none:
// cancel.
std::string asked;
const char16_t* picked;

BOOL Ask(OPENFILENAMEW* dialog, const char* function) {
  const WCHAR* end = dialog->lpstrFilter;
  while (end[0] != 0 || end[1] != 0) ++end;
  std::u16string filter(dialog->lpstrFilter, end);
  std::ranges::replace(filter, u'\0', u'|');
  for (const auto& text :
       {filter, std::u16string(dialog->lpstrFile), std::u16string(dialog->lpstrInitialDir),
        std::u16string(dialog->lpstrDefExt)})
    asked += platform::ToUtf8(text) + ", ";
  asked += function;
  EXPECT_NE(dialog->hwndOwner, nullptr);
  EXPECT_EQ(support::Words(dialog->lStructSize, dialog->nFilterIndex, dialog->nMaxFile,
                           dialog->lpstrTitle, dialog->lpstrFileTitle),
            support::Words(sizeof *dialog, 1, 260, nullptr, nullptr));
  asked += " " + std::to_string(dialog->Flags);
  if (picked != nullptr) std::u16string(picked).copy(dialog->lpstrFile, dialog->nMaxFile);
  return picked != nullptr;
}
BOOL WINAPI AskOpen(OPENFILENAMEW* dialog) { return Ask(dialog, "open"); }
BOOL WINAPI AskSave(OPENFILENAMEW* dialog) { return Ask(dialog, "save"); }

TEST_F(UtilityPage, BrowsesFromTheNameInTheField) {
  const HMODULE library = LoadLibraryW(u"comdlg32.dll");
  const FARPROC title = GetProcAddress(library, "GetFileTitleW");
  FreeLibrary(library);
  machine().RegisterModule(u"comdlg32.dll",
                           {{"GetFileTitleW", title},
                            {"GetOpenFileNameW", platform::AsEntryPoint(AskOpen)},
                            {"GetSaveFileNameW", platform::AsEntryPoint(AskSave)}});
  const std::u16string tooLong = u"C:\\data\\" + std::u16string(64, u't');
  const std::u16string cases[][2] = {{u"C:\\data\\a.ini", u"a.ini, C:\\data\\"},
                                     {u"\\b.ini", u"b.ini, \\"},
                                     {u"b.ini", u"b.ini, C:\\WINDOWS\\system32"},
                                     {tooLong, u", " + tooLong},
                                     {u"", u", "},
                                     {u" \u3000", u", "}};
  for (const bool save : {true, false}) {
    const int field = save ? IDC_UTILITY_SAVE_NAME : IDC_UTILITY_LOAD_NAME;
    const int browse = save ? IDC_UTILITY_SAVE_BROWSE : IDC_UTILITY_LOAD_BROWSE;
    const DWORD flags = save ? OFN_LONGNAMES | OFN_OVERWRITEPROMPT | OFN_HIDEREADONLY
                             : OFN_LONGNAMES | OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST;
    for (const auto& [name, start] : cases) {
      asked.clear();
      picked = nullptr;
      Visit({Replace(field, name), Click(browse), ExpectText(field, name),
             [&](platform::Desk&) {
               EXPECT_EQ(asked, "初期化ﾌｧｲﾙ(*.ini)|*.ini, " + platform::ToUtf8(start) + ", ini, " +
                                    (save ? "save " : "open ") + std::to_string(flags));
               picked = u"C:\\表\\chosen.ini";
             },
             Click(browse), ExpectText(field, u"C:\\表\\chosen.ini")});
    }
  }
}

TEST_F(UtilityPage, WithoutTheDialogLibraryNothingIsTouched) {
  Visit({[this](platform::Desk&) { machine().RegisterModule(u"comdlg32.dll", {}); },
         Replace(IDC_UTILITY_SAVE_NAME, kFile), Click(IDC_UTILITY_SAVE_BROWSE),
         ExpectText(IDC_UTILITY_SAVE_NAME, kFile), Click(IDC_UTILITY_SAVE),
         Message(kSaveFailed, MB_ICONHAND)});
  EXPECT_EQ(Bytes(), "");
}

}  // namespace
}  // namespace kestrel::test
