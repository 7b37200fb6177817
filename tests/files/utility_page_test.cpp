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
  expectRejected(u" \u3000", {missing, kSaveFailed});
  expectRejected(u"a.Ini", {wrong, kSaveFailed});
  // The platform rejects the name; there is no message for that.
  expectRejected(u"C:\\data\\", {kSaveFailed});
}

TEST_F(UtilityPageTest, BareNameIsSavedInSystemDirectoryAndRemembered) {
  const std::u16string name = u"表 ソ.ini";
  EXPECT_EQ(Visit({SaveTo(name), ExpectChanged(false)}), Messages{kSaved});
  EXPECT_EQ(FromCp932(machine().ReadFile(u"C:\\WINDOWS\\system32\\" + name).value()), defaults_);
  EXPECT_EQ(StoredName(u"BackupFile Write Name"), name);
  Visit(ExpectText(IDC_UTILITY_SAVE_NAME, name), SheetKind::kDocument);
}

TEST_F(UtilityPageTest, LongNameIsStoredWithItsFirst130Units) {
  const std::u16string folder = u"C:\\" + std::u16string(140, u'd');
  std::filesystem::create_directories(machine().HostPath(folder));
  const std::u16string name = folder + u"\\a.INI";
  EXPECT_EQ(Visit(SaveTo(name)), Messages{kSaved});
  EXPECT_EQ(StoredName(u"BackupFile Write Name"), name.substr(0, 130));
  Visit({ExpectText(IDC_UTILITY_SAVE_NAME, name.substr(0, 130)),
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
}

TEST_F(UtilityPageTest, LoadThatFailsAnywhereChangesNothing) {
  WriteDefaultsWith({{u"PrintSpeed=1", u"PrintSpeed=4"},
                     {u"PaperNum=1", u"PaperNum=2"},
                     {u"BarFontNum=0", u"BarFontNum=1"},
                     {u"SYNC=0", u"SYNC=1"}});
  Steps steps = Replace(IDC_UTILITY_LOAD_NAME, kFile);
  const auto loadWithFault = [&](platform::Fault kind, int n, size_t messages) {
    steps += [=, this](platform::Desk& desk) {
      machine().faults.FailNth(kind, n);
      EXPECT_TRUE(desk.Click(IDC_UTILITY_LOAD));
    };
    steps += CloseMessages(messages);
  };
  loadWithFault(platform::Fault::kAllocation, 1, 1);
  loadWithFault(platform::Fault::kModule, 1, 1);  // the library of the file dialogs
  // Reads of the version section, which have a message of their own, and of the required keys.
  for (int read = 1; read <= 16; ++read) {
    loadWithFault(platform::Fault::kFile, read, read <= 2 ? 2 : 1);
  }
  desk().ClearShown();
  const auto result = Ok(kUtilityTab, steps);
  EXPECT_EQ(std::ranges::count(ShownMessages(), kLoadFailed), 18);
  EXPECT_EQ(BytesOf(result.record), BytesOf(block_.Record));
  EXPECT_EQ(BytesOf(support::StoredPrinterPart(machine())), BytesOf(block_.Printer));
  EXPECT_TRUE(machine().Data(kPrinter, u"CreateFont Data")->bytes.empty());
  EXPECT_EQ(StoredName(u"BackupFile Read Name"), u"(none)");
  EXPECT_EQ(DeviceSettings(kPrinter).SyncPrint(), 0u);
}

// Controls of the platform's file dialog.
constexpr int kDialogFolder = 1137, kDialogFiles = 1120, kDialogName = 1148;

TEST_F(UtilityPageTest, FileDialogStartsWithFolderAndFileOfTheName) {
  const auto expectStart = [this](std::u16string name, std::u16string folder, std::u16string file) {
    Visit({Replace(IDC_UTILITY_LOAD_NAME, name), Click(IDC_UTILITY_LOAD_BROWSE),
           ExpectText(kDialogFolder, folder), ExpectText(kDialogName, file), Click(IDCANCEL),
           ExpectText(IDC_UTILITY_LOAD_NAME, name)});
  };
  expectStart(u"C:/data/a.b.ini", u"C:\\data", u"a.b.ini");
  expectStart(u"C:b.ini", u"C:\\", u"b.ini");
  expectStart(u"b.ini", u"C:\\WINDOWS\\system32", u"b.ini");
  expectStart(u"C:\\data\\" + std::u16string(64, u't'), u"C:\\data", u"");
}

TEST_F(UtilityPageTest, ChosenFileReplacesNameAndCurrentDirectoryIsRestored) {
  machine().WriteFile(u"C:\\data\\b.ini", "");
  ASSERT_TRUE(SetCurrentDirectoryW(u"C:\\WINDOWS"));
  Visit({Replace(IDC_UTILITY_SAVE_NAME, kFile), Click(IDC_UTILITY_SAVE_BROWSE),
         Replace(kDialogName, u"b"), Click(IDOK),
         Click(IDNO),  // does not overwrite the file
         Replace(kDialogName, u"new"), Click(IDOK),
         ExpectText(IDC_UTILITY_SAVE_NAME, u"C:\\data\\new.ini")});
  Visit({Replace(IDC_UTILITY_LOAD_NAME, kFile), Click(IDC_UTILITY_LOAD_BROWSE),
         support::ExpectItems(kDialogFiles, {u"..\\", u"b.ini"}), Replace(kDialogName, u"b"),
         Click(IDOK), ExpectText(IDC_UTILITY_LOAD_NAME, u"C:\\data\\b.ini")});
  WCHAR directory[MAX_PATH];
  GetCurrentDirectoryW(MAX_PATH, directory);
  EXPECT_EQ(directory, std::u16string(u"C:\\WINDOWS"));
}

}  // namespace
}  // namespace kestrel::test
