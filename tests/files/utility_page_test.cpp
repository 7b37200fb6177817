// The utility page in sheets that a person uses.
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
  support::SheetAnswer Visit(Steps steps, SheetKind kind = SheetKind::kUserDefault,
                             bool permission = true) {
    steps.insert(steps.begin(), GoTo(support::kUtilityTab));
    return support::ShowSheet(exports_, {.kind = kind, .permission = permission}, std::move(steps));
  }
  static support::Steps::value_type Message(const char16_t* text, UINT icon) {
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
      steps.push_back(Replace(save ? IDC_UTILITY_SAVE_NAME : IDC_UTILITY_LOAD_NAME, c.name));
      steps.push_back(Click(save ? IDC_UTILITY_SAVE : IDC_UTILITY_LOAD));
      if (c.reason != nullptr) steps.push_back(Message(c.reason, MB_ICONEXCLAMATION));
      steps.push_back(Message(save ? kSaveFailed : kLoadFailed, MB_ICONHAND));
    }
  }
  steps.push_back(support::PressCancel());
  Visit(std::move(steps));
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
  Visit({ExpectText(IDC_UTILITY_SAVE_NAME, name.substr(0, 130)), support::PressCancel()});
}

TEST_F(UtilityPage, LoadsForGoodOnlyOnOk) {
  WriteDefaultsWith(u"PrintSpeed=1", u"PrintSpeed=3\r\n");
  std::string text = Bytes();
  text.replace(text.find("SYNC=0"), 6, "SYNC=1");
  machine().WriteFile(kFile, text);
  const Steps load = {Replace(IDC_UTILITY_LOAD_NAME, kFile), Click(IDC_UTILITY_LOAD),
                      Message(kLoaded, MB_ICONASTERISK)};
  Steps steps = load;
  steps.push_back(support::PressCancel());
  EXPECT_FALSE(Visit(steps).written);
  EXPECT_EQ(NameInData(u"BackupFile Read Name"), kFile);
  EXPECT_EQ(ReadSyncPrint(kPrinter), 1u);
  steps.back() = support::PressOk();
  const auto answer = Visit(steps);
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

constexpr int kDialogName = 1148;    // the file dialog's edit
constexpr int kDialogFolder = 1137;  // and its folder

TEST_F(UtilityPage, BrowsesFromTheNameInTheField) {
  struct Case {
    const char16_t* name;
    const char16_t* startName;
    const char16_t* folder;  // its last part; null: the platform's choice
  };
  Steps steps;
  for (const Case& c : {Case{u"C:\\data\\a.ini", u"a.ini", u"data"},
                        {u"b.ini", u"b.ini", u"system32"},
                        {u"", u"", nullptr},
                        {u"  ", u"", nullptr}}) {
    for (const int browse : {IDC_UTILITY_SAVE_BROWSE, IDC_UTILITY_LOAD_BROWSE}) {
      const int field =
          browse == IDC_UTILITY_SAVE_BROWSE ? IDC_UTILITY_SAVE_NAME : IDC_UTILITY_LOAD_NAME;
      steps.push_back(Replace(field, c.name));
      steps.push_back(Click(browse));
      steps.push_back(ExpectText(kDialogName, c.startName));
      steps.push_back([c](platform::Desk& desk) {
        const std::u16string folder = desk.Text(kDialogFolder);
        if (c.folder == nullptr) return;
        EXPECT_NE(folder.find(c.folder), std::u16string::npos) << Cp932(folder);
      });
      steps.push_back(Click(IDCANCEL));
      steps.push_back(ExpectText(field, c.name));
    }
  }
  steps.push_back(support::PressCancel());
  Visit(std::move(steps));
}

TEST_F(UtilityPage, TakesTheChosenFile) {
  Visit({Replace(IDC_UTILITY_SAVE_NAME, u"C:\\data\\x.ini"), Click(IDC_UTILITY_SAVE_BROWSE),
         Replace(kDialogName, u"new"), Click(IDOK),
         ExpectText(IDC_UTILITY_SAVE_NAME, u"C:\\data\\new.ini"), Click(IDC_UTILITY_SAVE),
         Message(kSaved, MB_ICONASTERISK), Replace(IDC_UTILITY_LOAD_NAME, u"C:\\data\\x.ini"),
         Click(IDC_UTILITY_LOAD_BROWSE), Replace(kDialogName, u"NEW.ini"), Click(IDOK),
         Click(IDC_UTILITY_LOAD), Message(kLoaded, MB_ICONASTERISK), support::PressCancel()});
  EXPECT_EQ(Bytes(u"C:\\data\\new.ini"), Golden());
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
