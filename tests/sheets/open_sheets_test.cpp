// Sheets as a user sees them: through the exports, the sheet library and a scripted user.
#include <algorithm>
#include <memory>

#include "resources/resource.h"
#include "sheets/driver_ui_data.h"
#include "sheets/messages.h"
#include "tests/support/open_sheet.h"

namespace kestrel {
namespace {

using support::SheetKind;

class OpenSheets : public support::SheetTest {};

// When any platform call fails, a visit of all pages ends without a leak, and the output record is
// complete or untouched. A sheet that did not open is not reported as cancelled.
TEST_F(OpenSheets, WriteACompleteRecordOrNoneOnEachFailure) {
  using enum platform::Fault;
  const auto walk = [&](SheetKind kind, std::initializer_list<platform::Fault> faults) {
    // The defaults do not contain this paper.
    auto stored = support::DefaultBlock();
    stored.Printer.PaperNum = 2;
    stored.Printer.Papers[1] = stored.Printer.Papers[0];
    stored.Record.Private.PaperID = 258;
    StoreDefaults(stored);
    support::SheetResult sheet;
    const auto visit = [&] {
      desk().ClearShown();
      std::vector<support::Step> steps;
      for (int tab = 0; tab < 6; ++tab)
        steps.push_back([=](support::Desk& desk) { desk.Page(tab); });
      steps.insert(steps.end(), 40, [](support::Desk& desk) {
        desk.Press(platform::SheetButton::kOk) || desk.Escape() || desk.Close();
      });
      platform::ScriptedUser visitor(std::move(steps));
      const support::AttachedUser seat(visitor);
      sheet = RunSheet({.kind = kind});
    };
    ForEachFault(faults, visit, [&](platform::Fault kind, bool) {
      for (const auto& shown : desk().History()) {
        EXPECT_NE(shown.caption, u"TreeViewMakeError") << "a sheet without its tables";
      }
      const std::vector<std::byte> untouched(sizeof sheet.record, std::byte{0xAA});
      const bool written = support::BytesOf(sheet.record) != untouched;
      EXPECT_TRUE(sheet.result == (written ? CPSUI_OK : -1)) << sheet.result;
      EXPECT_TRUE(kind != kSpoolerChange || sheet.record.Private.PaperID == 258);
      if (!written) return;
      EXPECT_EQ(sheet.record.Private.Signature, SETTINGS_SIGNATURE);
      EXPECT_EQ(sheet.record.Public.dmSize, kPublicSize);
    });
  };
  walk(SheetKind::kDocument,
       {kAllocation, kSpooler, kSpoolerChange, kRegistry, kModule, kFile, kWindow});
  walk(SheetKind::kAdvanced, {kAllocation});
}

// While the printer's properties are open, the user can open a document sheet of the same printer.
TEST_F(OpenSheets, PrinterPropertiesPreserveThePapersStoredByASecondSheet) {
  support::SheetResult second;
  const auto openSecond = [&](support::Desk&) {
    second = RunSheet({.kind = SheetKind::kUserDefault});
  };
  using namespace support;
  const SheetResult first =
      Show({.kind = SheetKind::kPrinter},
           {openSecond, GoTo(kPaperTab), Click(IDC_PAPER_REGISTER),
            Replace(IDC_PAPER_REGISTER_NAME, u"Shelf"), Click(IDOK), PressOk(), PressOk()});
  EXPECT_EQ(second.result, CPSUI_OK);
  EXPECT_EQ(first.result, TRUE);
  EXPECT_EQ(StoredPrinterPart(machine()).PaperNum, 2);
}

TEST_F(OpenSheets, PrinterPropertiesKeepPapersWhenACallFails) {
  using enum platform::Fault;
  auto stored = support::DefaultBlock();
  stored.Printer.PaperNum = 2;
  StoreDefaults(stored);
  const auto confirm = [&] { Show({.kind = SheetKind::kPrinter}, {support::PressOk()}); };
  ForEachFault({kSpooler, kSpoolerChange}, confirm, [&](platform::Fault, bool) {
    EXPECT_EQ(support::StoredPrinterPart(machine()).PaperNum, 2);
  });
}

// Windows 2000 adds the pages as COMPROPSHEETUI.
TEST_F(OpenSheets, PagesOfWindows2000FindTheirSession) {
  using namespace support;
  machine().SetOs({.major = 5, .minor = 0});
  EXPECT_EQ(Ok(kPaperTab, Select(IDC_PAPER_LIST, u"フリーサイズ")).record.Private.PaperID, 256);
}

int forgedCalls;
LONG_PTR CALLBACK CountForgedCall(HANDLE, UINT, LPARAM, LPARAM) { return ++forgedCalls; }

// Any process of the desktop can send WM_INITDIALOG, with a pointer of its choice.
TEST_F(OpenSheets, LaterInitDialogMessageChangesNothing) {
  const auto forged = std::make_unique<DriverUiData>();
  forged->self = forged->selfEnd = forged.get();
  forged->size = sizeof *forged;
  forged->settings = &forged->block;
  forged->pageCount = 1;
  forged->pages[0].kind = kPageDialog;
  forged->comPropSheet = CountForgedCall;
  PROPSHEETPAGEW page = {};
  page.lParam = reinterpret_cast<LPARAM>(forged.get());
  const auto visit = [&](bool sends) {
    const auto toPage = [&, sends](support::Desk& desk) {
      const HWND window = desk.Windows().back().page->handle;
      if (sends) SendMessageW(window, WM_INITDIALOG, 0, reinterpret_cast<LPARAM>(&page));
    };
    const auto toDialog = [sends](support::Desk& desk) {
      if (sends) SendMessageW(desk.Top(), WM_INITDIALOG, 0, 0);
    };
    support::Steps steps;
    for (int tab = 0; tab < 6; ++tab) steps += {support::GoTo(tab), toPage};
    steps += {support::GoTo(support::kPaperTab),
              support::Click(IDC_PAPER_REGISTER),
              toDialog,
              support::Replace(IDC_PAPER_REGISTER_NAME, u"N"),
              support::Click(IDOK),
              support::PressOk()};
    StoreDefaults(support::DefaultBlock());
    return Show({.kind = SheetKind::kUserDefault}, steps);
  };
  const auto expected = visit(false), sheet = visit(true);
  EXPECT_EQ(sheet.result, CPSUI_OK);
  EXPECT_EQ(support::BytesOf(sheet.record), support::BytesOf(expected.record));
  EXPECT_EQ(support::StoredPrinterPart(machine()).PaperNum, 2);
  EXPECT_EQ(forgedCalls, 0);
}

TEST_F(OpenSheets, VersionPageShowsInstalledModulesUnderACentredPicture) {
  const std::u16string system = machine().systemDirectory() + u"\\";
  machine().WriteVersionedFile(system + u"QM6_1rLMNT.DLL", 0x00030001, 0x000000FF);
  machine().WriteVersionedFile(system + u"qm6_1rpmlan.dll", 0xFFFF0000, 0x00010000);
  machine().WriteFile(system + u"QM6_1rPMCOM.DLL", "no version resource");
  const auto look = [](support::Desk& desk) {
    EXPECT_EQ(desk.Windows().back().tabs.size(), 1u);
    EXPECT_NE(desk.Text(IDC_VERSION_NOTICE), u"");
    std::u16string versions;
    for (const int id :
         {IDC_VERSION_PRODUCT, IDC_VERSION_LANGUAGE_MONITOR, IDC_VERSION_LAN_PORT_MONITOR,
          IDC_VERSION_COM_PORT_MONITOR, IDC_VERSION_USER_INTERFACE})
      versions += desk.Text(id) + u"|";
    EXPECT_EQ(versions,
              u"Kestrel(QM610r) Printer Driver for Windows (x86)\nVersion "
              u"14.0.1.20|3.1.0.255|65535.0.1.0|||");
    const platform::ControlView view = desk.Control(IDC_VERSION_PICTURE);
    const auto drawn = std::ranges::find(view.drawing, IDB_PRODUCT, &platform::DrawOp::bitmap);
    ASSERT_NE(drawn, view.drawing.end());
    const RECT &box = view.rect, &picture = drawn->rect, &from = drawn->source;
    const LONG x = (box.right - box.left - 420) / 2, y = (box.bottom - box.top - 200) / 2;
    EXPECT_EQ(support::Words(picture.left, picture.top, picture.right, picture.bottom, from.left,
                             from.top),
              support::Words(x, y, x + 420, y + 200, 0, 0));
  };
  Show({.kind = SheetKind::kPrinter},
       {look, support::Click(IDC_VERSION_WEBSITE), support::PressCancel()});
  ASSERT_EQ(machine().ShellCalls().size(), 1u);
  const platform::ShellCall call = machine().ShellCalls()[0];
  EXPECT_TRUE(call.verb == u"open" && call.file.starts_with(u"https://") && call.show == SW_SHOW);
}

// MessageOverrideTable equals the string table except for two texts with other line breaks.
TEST_F(OpenSheets, MessageTextsMatchTheStringTableAndAreTruncatedToTheBuffer) {
  std::vector<UINT> others;
  for (UINT id = 1990; id < 2530; ++id) {
    WCHAR text[kMessageLength], stored[kMessageLength] = {}, cut[4] = {u'x', u'x', u'x', u'x'};
    LoadStringW(module_, id, stored, kMessageLength);
    const int length = LoadMessageText(id, text, kMessageLength);
    EXPECT_EQ(length, static_cast<int>(std::u16string_view(text).size()));
    EXPECT_EQ(LoadMessageText(id, cut, 4), std::min(length, 3));
    EXPECT_EQ(cut, std::u16string(text).substr(0, 3));
    if (std::u16string(text) != stored) others.push_back(id);
  }
  EXPECT_EQ(others, (std::vector<UINT>{IDS_DENSITY_CHANGED, IDS_MODE_CHANGED}));
  WCHAR untouched = u'x';
  EXPECT_EQ(LoadMessageText(IDS_SAVED, &untouched, 0), 0);
  EXPECT_EQ(untouched, u'x');
  for (const WCHAR* text : {u" a ", u"\u3000あ", u"\t", u"\u00A0"}) EXPECT_FALSE(IsBlankText(text));
}

}  // namespace
}  // namespace kestrel
