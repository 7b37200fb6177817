// The utility page of a property sheet.
#include "operation/device_settings.h"
#include "tests/files/backup_fixture.h"

namespace kestrel::test {
namespace {

using support::BytesOf;
using support::Click;
using support::ExpectChanged;
using support::ExpectText;
using support::GoTo;
using support::kUtilityTab;
using support::Replace;
using support::SheetKind;
using support::Steps;

constexpr Message kSaved = {IDS_SAVED, MB_ICONASTERISK};
constexpr Message kSaveFailed = {IDS_SAVE_FAILED, MB_ICONHAND};
constexpr Message kLoaded = {IDS_LOADED, MB_ICONASTERISK};
constexpr Message kLoadFailed = {IDS_LOAD_FAILED, MB_ICONHAND};

class UtilityPageTest : public BackupTest {
 protected:
  UtilityPageTest() { StoreDefaults(block_); }
  // Performs the steps on the page and cancels the sheet. Returns the messages.
  Messages Visit(Steps steps, SheetKind kind = SheetKind::kUserDefault) {
    desk().ClearShown();
    Show({.kind = kind}, {GoTo(kUtilityTab), std::move(steps), support::PressCancel()});
    return ShownMessages();
  }
  // Replaces a name, clicks its button and closes the messages.
  static Steps SaveTo(std::u16string name, size_t messages = 1) {
    return {Replace(IDC_UTILITY_SAVE_NAME, name), Click(IDC_UTILITY_SAVE), CloseMessages(messages)};
  }
  static Steps LoadFrom(std::u16string name, size_t messages = 1) {
    return {Replace(IDC_UTILITY_LOAD_NAME, name), Click(IDC_UTILITY_LOAD), CloseMessages(messages)};
  }
  static Steps CloseMessages(size_t count) {
    Steps steps;
    while (count-- > 0) steps += Click(IDOK);
    return steps;
  }
  // Returns the name in a printer data value.
  std::u16string StoredName(const char16_t* value) {
    const auto data = machine().Data(kPrinter, value);
    if (!data) return u"(none)";
    EXPECT_EQ(data->type, DWORD{REG_BINARY});
    EXPECT_EQ(data->bytes.size(), 260u);
    std::u16string name(130, 0);
    std::memcpy(name.data(), data->bytes.data(), data->bytes.size());
    return name.c_str();
  }
};

TEST_F(UtilityPageTest, InvalidNameIsRejectedAndFocused) {
  const Message missing = {IDS_FILE_NAME_MISSING, MB_ICONEXCLAMATION};
  const Message wrong = {IDS_FILE_NAME_WRONG, MB_ICONEXCLAMATION};
  const auto expectRejected = [this](std::u16string name, Messages messages) {
    const Steps steps = SaveTo(name, messages.size());
    EXPECT_EQ(Visit({steps, support::ExpectFocus(IDC_UTILITY_SAVE_NAME)}), messages);
  };
  expectRejected(u"", {missing, kSaveFailed});
  expectRejected(u" \u3000", {missing, kSaveFailed});
  expectRejected(u"ini", {wrong, kSaveFailed});
  expectRejected(u"a.Ini", {wrong, kSaveFailed});
  expectRejected(u"a.ini ", {wrong, kSaveFailed});
  // The platform rejects the name; there is no message for that.
  expectRejected(u"C:\\data\\", {kSaveFailed});
  expectRejected(std::u16string(64, u'n') + u".ini", {kSaveFailed});
  EXPECT_EQ(StoredName(u"BackupFile Write Name"), u"(none)");
  EXPECT_EQ(Visit({LoadFrom(u"a.txt", 2), support::ExpectFocus(IDC_UTILITY_LOAD_NAME)}),
            (Messages{wrong, kLoadFailed}));
}

TEST_F(UtilityPageTest, BareNameIsSavedInSystemDirectoryAndRemembered) {
  const std::u16string name = u"表 ソ.ini";
  EXPECT_EQ(Visit({SaveTo(name), ExpectChanged(false)}), Messages{kSaved});
  EXPECT_EQ(FromCp932(Bytes(u"C:\\WINDOWS\\system32\\" + name)), defaults_);
  EXPECT_EQ(StoredName(u"BackupFile Write Name"), name);
  Visit(ExpectText(IDC_UTILITY_SAVE_NAME, name), SheetKind::kDocument);
  Visit(ExpectText(IDC_UTILITY_SAVE_NAME, u""), SheetKind::kAdvanced);  // does not load the names
}

TEST_F(UtilityPageTest, LongNameIsStoredWithItsFirst130Units) {
  const std::u16string folder = u"C:\\" + std::u16string(140, u'd');
  std::filesystem::create_directories(machine().HostPath(folder));
  const std::u16string name = folder + u"\\a.INI";
  EXPECT_EQ(Visit(SaveTo(name)), Messages{kSaved});
  EXPECT_EQ(StoredName(u"BackupFile Write Name"), name.substr(0, 130));
  machine().SetData(kPrinter, u"BackupFile Read Name", {REG_BINARY, BytesOf(name.data(), 262)});
  Visit({ExpectText(IDC_UTILITY_SAVE_NAME, name.substr(0, 130)),
         ExpectText(IDC_UTILITY_LOAD_NAME, u""),  // 262 bytes are not loaded
         support::ExpectEach({IDC_UTILITY_SAVE_NAME, IDC_UTILITY_LOAD_NAME},
                             &platform::ControlView::textLimit, 259)});
}

TEST_F(UtilityPageTest, LoadedSettingsAreStoredOnlyOnOk) {
  WriteDefaultsWith({{u"PrintSpeed=1", u"PrintSpeed=3"}, {u"SYNC=0", u"SYNC=1"}});
  EXPECT_EQ(Visit({LoadFrom(kFile), ExpectChanged(true)}), Messages{kLoaded});
  EXPECT_EQ(StoredName(u"BackupFile Read Name"), kFile);
  EXPECT_EQ(DeviceSettings(kPrinter).SyncPrint(), 1u);
  EXPECT_EQ(machine().DefaultRecord(kPrinter), BytesOf(block_.Record));
  Visit(ExpectText(IDC_UTILITY_LOAD_NAME, kFile));
  const PrivateDevMode settings = Ok(kUtilityTab, LoadFrom(kFile)).record.Private;
  EXPECT_EQ(settings.nPrintSpeed, 3);
  EXPECT_EQ(settings.nTSMode, 1);
  EXPECT_EQ(settings.Signature, SETTINGS_SIGNATURE);
}

TEST_F(UtilityPageTest, FailedLoadRestoresSettingsAndCursor) {
  const auto closeWithCursor = [](LPCWSTR cursor) {
    return [=](platform::Desk& desk) {
      EXPECT_EQ(desk.Cursor(), LoadCursorW(nullptr, cursor));
      EXPECT_TRUE(desk.Click(IDOK));
    };
  };
  // The load fails at a key after others that it has read.
  WriteDefaultsWith({{u"PrintSpeed=1", u"PrintSpeed=4"}, {u"ColorText=1", u"ColorText="}});
  desk().ClearShown();
  const auto result = Ok(kUtilityTab, {LoadFrom(kFile, 0), closeWithCursor(IDC_ARROW),
                                       LoadFrom(u"C:\\data\\none.ini", 0),
                                       closeWithCursor(IDC_WAIT), closeWithCursor(IDC_ARROW)});
  EXPECT_EQ(ShownMessages(), (Messages{kLoadFailed, kNotABackup, kLoadFailed}));
  EXPECT_EQ(BytesOf(result.record), BytesOf(block_.Record));
  EXPECT_EQ(BytesOf(support::StoredPrinterPart(machine())), BytesOf(block_.Printer));
  EXPECT_EQ(StoredName(u"BackupFile Read Name"), u"(none)");
}

// Controls of the platform's file dialog.
constexpr int kDialogFolder = 1137, kDialogFilter = 1136, kDialogFiles = 1120, kDialogName = 1148;

TEST_F(UtilityPageTest, FileDialogStartsWithFolderAndFileOfTheName) {
  const auto expectStart = [this](std::u16string name, std::u16string folder, std::u16string file) {
    Visit({Replace(IDC_UTILITY_LOAD_NAME, name), Click(IDC_UTILITY_LOAD_BROWSE),
           ExpectText(kDialogFolder, folder), ExpectText(kDialogName, file), Click(IDCANCEL),
           ExpectText(IDC_UTILITY_LOAD_NAME, name)});
  };
  expectStart(u"C:\\data\\a.ini", u"C:\\data", u"a.ini");
  expectStart(u"C:/data/a.b.ini", u"C:\\data", u"a.b.ini");
  expectStart(u"C:b.ini", u"C:\\", u"b.ini");
  expectStart(u"\\b.ini", u"C:\\", u"b.ini");
  expectStart(u"b.ini", u"C:\\WINDOWS\\system32", u"b.ini");
  expectStart(u"C:\\data\\" + std::u16string(64, u't'), u"C:\\data", u"");
  expectStart(u" \u3000", u"C:\\", u"");  // the platform's choice
}

TEST_F(UtilityPageTest, ChosenFileReplacesNameAndCurrentDirectoryIsRestored) {
  machine().WriteFile(u"C:\\data\\b.ini", "");
  machine().WriteFile(u"C:\\data\\b.txt", "");
  ASSERT_TRUE(SetCurrentDirectoryW(u"C:\\WINDOWS"));
  Visit({Replace(IDC_UTILITY_SAVE_NAME, kFile), Click(IDC_UTILITY_SAVE_BROWSE),
         ExpectText(kDialogFilter, u"初期化ﾌｧｲﾙ(*.ini)"),
         support::ExpectItems(kDialogFiles, {u"..\\", u"b.ini"}), Replace(kDialogName, u"b"),
         Click(IDOK),
         Click(IDNO),  // does not overwrite the file
         Replace(kDialogName, u"new"), Click(IDOK),
         ExpectText(IDC_UTILITY_SAVE_NAME, u"C:\\data\\new.ini")});
  Visit({Replace(IDC_UTILITY_LOAD_NAME, kFile), Click(IDC_UTILITY_LOAD_BROWSE),
         Replace(kDialogName, u"new"), Click(IDOK),
         Click(IDOK),  // the file does not exist
         Replace(kDialogName, u"b"), Click(IDOK),
         ExpectText(IDC_UTILITY_LOAD_NAME, u"C:\\data\\b.ini")});
  WCHAR directory[MAX_PATH];
  GetCurrentDirectoryW(MAX_PATH, directory);
  EXPECT_EQ(directory, std::u16string(u"C:\\WINDOWS"));
}

TEST_F(UtilityPageTest, MissingDialogLibraryFailsBrowseAndSave) {
  Write(u"");
  const Steps unregister = [this](platform::Desk&) {
    machine().RegisterModule(u"comdlg32.dll", {});
  };
  EXPECT_EQ(
      Visit({unregister, Replace(IDC_UTILITY_SAVE_NAME, kFile), Click(IDC_UTILITY_SAVE_BROWSE),
             ExpectText(IDC_UTILITY_SAVE_NAME, kFile), SaveTo(kFile)}),
      Messages{kSaveFailed});
  EXPECT_EQ(Text(), u"");
}

}  // namespace
}  // namespace kestrel::test
