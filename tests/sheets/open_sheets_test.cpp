// Sheets as a user sees them: through the exports, the sheet library and a scripted user.
#include <algorithm>
#include <memory>

#include "resources/resource.h"
#include "sheets/driver_ui_data.h"
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
  SheetKind kind;
  SheetResult sheet;
  const auto visit = [&] {
    Steps steps;
    for (int tab = 0; tab < 6; ++tab) steps += [=](Desk& desk) { desk.Page(tab); };
    steps.insert(steps.end(), 40, [](Desk& desk) {
      desk.Press(platform::SheetButton::kOk) || desk.Escape() || desk.Close();
    });
    platform::ScriptedUser visitor(std::move(steps));
    const AttachedUser attached(visitor);
    sheet = RunSheet({.kind = kind});
  };
  const auto expectCompleteOrUntouched = [&](platform::Fault fault, bool) {
    for (const auto& shown : desk().History()) {
      EXPECT_NE(shown.caption, u"TreeViewMakeError") << "a sheet without its tables";
    }
    const std::vector<std::byte> untouched(sizeof sheet.record, std::byte{0xAA});
    const bool written = BytesOf(sheet.record) != untouched;
    EXPECT_EQ(sheet.result, written ? CPSUI_OK : -1);
    EXPECT_TRUE(fault != kSpoolerChange || sheet.record.Private.PaperID == 258);
    if (!written) return;
    EXPECT_EQ(sheet.record.Private.Signature, SETTINGS_SIGNATURE);
  };
  kind = SheetKind::kDocument;
  ForEachFault({kAllocation, kSpooler, kSpoolerChange, kRegistry, kModule, kFile, kWindow}, visit,
               expectCompleteOrUntouched);
  kind = SheetKind::kAdvanced;
  ForEachFault({kAllocation}, visit, expectCompleteOrUntouched);
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

// Any process of the desktop can send WM_INITDIALOG, with a pointer of its choice. OK would store
// nothing through a session without the sheet library.
TEST_F(OpenSheets, LaterInitDialogMessageChangesNothing) {
  const auto forged = std::make_unique<DriverUiData>();
  forged->self = forged->selfEnd = forged.get();
  forged->size = sizeof *forged;
  forged->settings = &forged->block;
  PROPSHEETPAGEW page = {};
  page.lParam = reinterpret_cast<LPARAM>(forged.get());
  const auto sendToPage = [&](Desk& desk) {
    const HWND window = desk.Windows().back().page->handle;
    SendMessageW(window, WM_INITDIALOG, 0, reinterpret_cast<LPARAM>(&page));
  };
  const auto sendToDialog = [](Desk& desk) { SendMessageW(desk.Top(), WM_INITDIALOG, 0, 0); };
  const SheetResult sheet = Ok(kPaperTab, {sendToPage, Click(IDC_PAPER_REGISTER), sendToDialog,
                                           Replace(IDC_PAPER_REGISTER_NAME, u"N"), Click(IDOK)});
  EXPECT_EQ(sheet.result, CPSUI_OK);
  EXPECT_EQ(BytesOf(sheet.record.Private), BytesOf(DefaultBlock().Record.Private));
  EXPECT_EQ(StoredPrinterPart(machine()).PaperNum, 2);
}

TEST_F(OpenSheets, VersionPageShowsInstalledModulesUnderACentredPicture) {
  const std::u16string system = machine().systemDirectory() + u"\\";
  machine().WriteVersionedFile(system + u"QM6_1rLMNT.DLL", 0x00030001, 0x000000FF);
  machine().WriteVersionedFile(system + u"qm6_1rpmlan.dll", 0xFFFF0000, 0x00010000);
  machine().WriteFile(system + u"QM6_1rPMCOM.DLL", "no version resource");
  const std::u16string product =
      u"Kestrel(QM610r) Printer Driver for Windows (x86)\nVersion 14.0.1.20";
  const auto expectCentredPicture = [](Desk& desk) {
    const platform::ControlView view = desk.Control(IDC_VERSION_PICTURE);
    const auto drawn = std::ranges::find(view.drawing, IDB_PRODUCT, &platform::DrawOp::bitmap);
    ASSERT_NE(drawn, view.drawing.end());
    const LONG x = (view.rect.right - view.rect.left - 420) / 2;
    const LONG y = (view.rect.bottom - view.rect.top - 200) / 2;
    EXPECT_EQ(drawn->rect, (RECT{x, y, x + 420, y + 200}));
    EXPECT_EQ(drawn->source.left, 0);
    EXPECT_EQ(drawn->source.top, 0);
  };
  const Steps expectVersions = {ExpectText(IDC_VERSION_PRODUCT, product),
                                ExpectText(IDC_VERSION_LANGUAGE_MONITOR, u"3.1.0.255"),
                                ExpectText(IDC_VERSION_LAN_PORT_MONITOR, u"65535.0.1.0"),
                                ExpectText(IDC_VERSION_COM_PORT_MONITOR, u""),
                                ExpectText(IDC_VERSION_USER_INTERFACE, u"")};
  Show({.kind = SheetKind::kPrinter},
       {expectCentredPicture, expectVersions, Click(IDC_VERSION_WEBSITE), PressCancel()});
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
  for (const WCHAR* text : {u" a ", u"\u3000あ", u"\t", u"\u00A0"}) EXPECT_FALSE(IsBlankText(text));
}

}  // namespace
}  // namespace kestrel
