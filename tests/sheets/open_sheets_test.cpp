// Sheets as a user sees them: through the exports, the sheet library and a scripted user.
#include <algorithm>

#include "resources/resource.h"
#include "sheets/messages.h"
#include "tests/support/open_sheet.h"

namespace kestrel {
namespace {

using namespace support;

class OpenSheets : public SheetTest {
 protected:
  void StoreTwoPapers() {
    DriverSettingsBlock stored = DefaultBlock();
    stored.Printer.PaperNum = 2;
    stored.Printer.Papers[1] = stored.Printer.Papers[0];
    stored.Record.Private.PaperID = 258;
    StoreDefaults(stored);
  }
};

// When any platform call fails, a visit of all pages ends without a leak, and the output record is
// complete or untouched. A sheet that did not open is not reported as cancelled.
TEST_F(OpenSheets, FailedCallLeavesTheRecordCompleteOrUntouched) {
  using enum platform::Fault;
  StoreTwoPapers();
  SheetResult sheet;
  const auto visit = [&] {
    Steps steps;
    for (int tab = 0; tab < 6; ++tab) {
      steps += [=](Desk& desk) {
        desk.Page(tab);
        if (tab == kPaperTab) desk.Click(IDC_PAPER_WHOLE_LABEL);  // draws the markers
      };
    }
    steps.insert(steps.end(), 40, [](Desk& desk) {
      desk.Press(platform::SheetButton::kOk) || desk.Escape() || desk.Close();
    });
    platform::ScriptedUser visitor(std::move(steps));
    const AttachedUser attached(visitor);
    sheet = RunSheet({});
  };
  const auto expectCompleteOrUntouched = [&](platform::Fault fault, bool) {
    const std::vector<std::byte> untouched(sizeof sheet.record, std::byte{0xAA});
    const bool written = BytesOf(sheet.record) != untouched;
    EXPECT_EQ(sheet.result, written ? CPSUI_OK : -1);
    EXPECT_TRUE(fault != kSpoolerChange || sheet.record.Private.PaperID == 258);
    if (!written) return;
    EXPECT_EQ(sheet.record.Private.Signature, SETTINGS_SIGNATURE);
  };
  ForEachFault({kAllocation, kSpooler, kSpoolerChange, kRegistry, kModule, kFile, kWindow}, visit,
               expectCompleteOrUntouched);
}

// While the printer's properties are open, the user can open a document sheet of the same printer.
TEST_F(OpenSheets, PrinterPropertiesPreserveThePapersStoredByASecondSheet) {
  const auto registerPaper = [&](Desk&) { RunSheet({.kind = SheetKind::kUserDefault}); };
  Show({.kind = SheetKind::kPrinter},
       {registerPaper, GoTo(kPaperTab), Click(IDC_PAPER_REGISTER),
        Replace(IDC_PAPER_REGISTER_NAME, u"Shelf"), Click(IDOK), PressOk(), PressOk()});
  EXPECT_EQ(StoredPrinterPart(machine()).PaperNum, 2);
}

TEST_F(OpenSheets, PrinterPropertiesKeepPapersWhenACallFails) {
  using enum platform::Fault;
  StoreTwoPapers();
  const auto confirm = [&] { Show({.kind = SheetKind::kPrinter}, PressOk()); };
  ForEachFault({kSpooler, kSpoolerChange}, confirm,
               [&](platform::Fault, bool) { EXPECT_EQ(StoredPrinterPart(machine()).PaperNum, 2); });
}

// Any process of the desktop can send WM_INITDIALOG, with a pointer of its choice.
TEST_F(OpenSheets, LaterInitDialogMessageChangesNothing) {
  const auto sendToPage = [](Desk& desk) {
    SendMessageW(desk.Windows().back().page->handle, WM_INITDIALOG, 0, 0);
  };
  const auto sendToDialog = [](Desk& desk) { SendMessageW(desk.Top(), WM_INITDIALOG, 0, 0); };
  Ok(kPaperTab, {sendToPage, Click(IDC_PAPER_REGISTER), sendToDialog,
                 Replace(IDC_PAPER_REGISTER_NAME, u"N"), Click(IDOK)});
  EXPECT_EQ(StoredPrinterPart(machine()).PaperNum, 2);
}

TEST_F(OpenSheets, VersionPageShowsInstalledModules) {
  const std::u16string system = machine().systemDirectory() + u"\\";
  machine().WriteVersionedFile(system + u"QM6_1rLMNT.DLL", 0x00030001, 0x000000FF);
  machine().WriteVersionedFile(system + u"qm6_1rpmlan.dll", 0xFFFF0000, 0x00010000);
  machine().WriteFile(system + u"QM6_1rPMCOM.DLL", "no version resource");
  const std::u16string product =
      u"Kestrel(QM610r) Printer Driver for Windows (x86)\nVersion 14.0.1.20";
  const Steps expectVersions = {ExpectText(IDC_VERSION_PRODUCT, product),
                                ExpectText(IDC_VERSION_LANGUAGE_MONITOR, u"3.1.0.255"),
                                ExpectText(IDC_VERSION_LAN_PORT_MONITOR, u"65535.0.1.0"),
                                ExpectText(IDC_VERSION_COM_PORT_MONITOR, u""),
                                ExpectText(IDC_VERSION_USER_INTERFACE, u"")};
  Show({.kind = SheetKind::kPrinter}, {expectVersions, Click(IDC_VERSION_WEBSITE), PressCancel()});
  ASSERT_EQ(machine().ShellCalls().size(), 1u);
  EXPECT_TRUE(machine().ShellCalls()[0].file.starts_with(u"https://"));
}

// MessageOverrideTable equals the string table except for two texts with other line breaks.
TEST_F(OpenSheets, MessageTextsMatchTheStringTableAndAreTruncatedToTheBuffer) {
  for (UINT id = 1990; id < 2530; ++id) {
    WCHAR text[kMessageLength], stored[kMessageLength] = {}, cut[4] = {u'x', u'x', u'x', u'x'};
    LoadStringW(module_, id, stored, kMessageLength);
    const int length = LoadMessageText(id, text, kMessageLength);
    EXPECT_EQ(length, static_cast<int>(std::u16string_view(text).size()));
    EXPECT_EQ(LoadMessageText(id, cut, 4), std::min(length, 3));
    EXPECT_EQ(cut, std::u16string(text).substr(0, 3));
    EXPECT_EQ(std::u16string(text) != stored, id == IDS_DENSITY_CHANGED || id == IDS_MODE_CHANGED);
  }
  WCHAR untouched = u'x';
  EXPECT_EQ(LoadMessageText(IDS_SAVED, &untouched, 0), 0);
  EXPECT_EQ(untouched, u'x');
}

}  // namespace
}  // namespace kestrel
