// Sheets as a person sees them: through the exports, the sheet library and a scripted user.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "platform/desktop/drawing/gdi.h"
#include "resources/resource.h"
#include "sheets/driver_ui_data.h"
#include "sheets/messages.h"
#include "tests/support/open_sheet.h"

namespace kestrel {
namespace {

using platform::Desk;
using platform::Fault;
using platform::ScriptedUser;
using support::GoTo;
using support::kPrinter;
using support::PressCancel;
using support::PressOk;
using support::SheetAnswer;
using support::SheetAsk;
using support::SheetKind;
using support::ShowSheet;
using support::Steps;

class OpenSheetsTest : public support::MachineTest {
 protected:
  // The sheet's window as the first step sees it.
  platform::WindowView View(const SheetAsk& ask) {
    platform::WindowView view;
    ShowSheet(exports_, ask, {[&](Desk& desk) {
                view = desk.Windows().back();
                desk.Press(platform::SheetButton::kCancel);
              }});
    return view;
  }
  bool Stored() { return machine().Data(kPrinter, u"Private DevMode").has_value(); }
};

TEST_F(OpenSheetsTest, ShowTheirTabs) {
  const std::vector<std::u16string> all = {u"バージョン情報",     u"用紙",
                                           u"動作モード",         u"デバイスの設定",
                                           u"クリエイトフォント", u"ユーティリティ"};
  for (SheetKind kind : {SheetKind::kDocument, SheetKind::kAdvanced, SheetKind::kUserDefault}) {
    const auto view = View({.kind = kind});
    EXPECT_EQ(view.tabs, all);
    EXPECT_EQ(view.activeTab, 0);
    EXPECT_FALSE(view.applyVisible);
  }
  EXPECT_EQ(View({.kind = SheetKind::kPrinter}).tabs, std::vector<std::u16string>{all[0]});
}

// Every page opens, on both hosting roads, in every kind of sheet, and leaves nothing behind.
TEST_F(OpenSheetsTest, VisitEveryPage) {
  for (DWORD major : {5u, 10u}) {
    machine().SetOs({.major = major});
    for (SheetKind kind : {SheetKind::kDocument, SheetKind::kAdvanced, SheetKind::kUserDefault}) {
      const int objects = platform::LiveGdiObjects();
      const SheetAnswer answer =
          ShowSheet(exports_, {.kind = kind},
                    {GoTo(1), GoTo(2), support::Select(IDC_OPERATION_SPEED, 1), GoTo(3), GoTo(4),
                     GoTo(5), GoTo(0), PressOk()});
      EXPECT_EQ(answer.result, CPSUI_OK);
      EXPECT_TRUE(answer.written);
      EXPECT_EQ(answer.record.Private.Signature, SETTINGS_SIGNATURE);
      EXPECT_EQ(answer.record.Private.nPrintSpeed, 2);  // the pages found their session
      EXPECT_EQ(platform::LiveGdiObjects(), objects);
    }
  }
}

TEST_F(OpenSheetsTest, HandOutOnOkAlone) {
  const struct {
    const char* what;
    SheetKind kind;
    bool permission;
    LONG result;
    bool written, stored;
  } kOkCases[] = {
      {"document", SheetKind::kDocument, true, CPSUI_OK, true, false},
      {"advanced", SheetKind::kAdvanced, true, CPSUI_OK, true, false},
      {"user default", SheetKind::kUserDefault, true, CPSUI_OK, true, true},
      {"user default without permission", SheetKind::kUserDefault, false, CPSUI_OK, true, false},
      {"printer", SheetKind::kPrinter, true, TRUE, false, true},
  };
  for (const auto& c : kOkCases) {
    SCOPED_TRACE(c.what);
    machine().RemoveData(kPrinter, u"Private DevMode");
    const size_t broadcasts = machine().Broadcasts().size();
    const SheetAsk ask = {.kind = c.kind, .permission = c.permission};
    SheetAnswer answer = ShowSheet(exports_, ask, {PressCancel()});
    EXPECT_EQ(answer.result, CPSUI_CANCEL);
    EXPECT_FALSE(answer.written);
    EXPECT_FALSE(Stored());
    answer = ShowSheet(exports_, ask, {[](Desk& desk) { EXPECT_TRUE(desk.Close()); }});
    EXPECT_EQ(answer.result, CPSUI_CANCEL);
    EXPECT_FALSE(answer.written);
    EXPECT_EQ(machine().Broadcasts().size(), broadcasts);
    answer = ShowSheet(exports_, ask, {PressOk()});
    EXPECT_EQ(answer.result, c.result);
    EXPECT_EQ(answer.written, c.written);
    EXPECT_EQ(Stored(), c.stored);
    EXPECT_EQ(machine().Broadcasts().size(), broadcasts + (c.stored ? 1 : 0));
  }
}

// Without the right to write printer data nothing can be stored; the sheet says so to its pages.
TEST_F(OpenSheetsTest, PrinterPropertiesWithoutTheRightToWrite) {
  machine().SetPermission(kPrinter, false, false);
  EXPECT_EQ(ShowSheet(exports_, {.kind = SheetKind::kPrinter}, {PressOk()}).result, TRUE);
  EXPECT_FALSE(machine().Data(kPrinter, u"Permission"));
  EXPECT_FALSE(Stored());
}

// The library tells of a sheet that did not open as of one that was cancelled; the driver does not.
TEST_F(OpenSheetsTest, ASheetThatCannotOpenIsNoCancelledOne) {
  for (int n = 1; n <= 2; ++n) {  // the session's heap, the session
    for (const SheetKind kind : {SheetKind::kDocument, SheetKind::kAdvanced, SheetKind::kPrinter}) {
      machine().faults.FailNth(Fault::kAllocation, n);
      const SheetAnswer answer = ShowSheet(exports_, {.kind = kind}, {});
      EXPECT_EQ(answer.result, kind == SheetKind::kPrinter ? FALSE : -1) << n;
      EXPECT_FALSE(answer.written);
      EXPECT_TRUE(machine().faults.Struck(Fault::kAllocation));
    }
  }
}

// The Printers folder of Windows 2000 hands in one record for both directions and means the user's
// defaults.
TEST_F(OpenSheetsTest, PrintersFolderOf2000StoresTheUsersDefaults) {
  for (DWORD major : {10u, 5u}) {
    machine().SetOs({.major = major});
    machine().SetExecutablePath(u"c:\\windows\\Explorer.exe");
    const support::OpenedPrinter printer;
    std::u16string name = kPrinter;
    SettingsRecord record = {};
    ASSERT_EQ(exports_.DrvDocumentProperties(nullptr, printer, name.data(), &record.Public, nullptr,
                                             DM_COPY),
              IDOK);
    ScriptedUser user({PressOk()});
    desk().Attach(&user);
    EXPECT_EQ(exports_.DrvDocumentProperties(nullptr, printer, name.data(), &record.Public,
                                             &record.Public, DM_COPY | DM_IN_BUFFER | DM_PROMPT),
              CPSUI_OK);
    desk().Attach(nullptr);
    EXPECT_EQ(user.Problem(), "");
    EXPECT_EQ(Stored(), major == 5);
  }
}

TEST_F(OpenSheetsTest, NobodyThereCountsAsCancel) {
  const support::OpenedPrinter printer;
  SettingsRecord output;
  std::memset(&output, 0xAA, sizeof(output));
  const SettingsRecord before = output;
  std::u16string name = kPrinter;
  EXPECT_EQ(exports_.DrvDocumentProperties(nullptr, printer, name.data(), &output.Public, nullptr,
                                           DM_COPY | DM_PROMPT),
            CPSUI_CANCEL);
  EXPECT_EQ(std::memcmp(&output, &before, sizeof(output)), 0);
}

// Goes through all pages as far as they open, presses OK and closes whatever is left open.
class Visitor : public platform::User {
 public:
  bool Act(Desk& desk) override {
    if (step_ < 6) {
      desk.Page(step_++);
    } else if (step_++ > 40 || !desk.Press(platform::SheetButton::kOk)) {
      if (!desk.Escape() && !desk.Close()) return false;
    }
    return step_ < 60;
  }

 private:
  int step_ = 0;
};

// Nothing that fails, whichever it is, makes a visit of all pages hang, crash or leave something
// behind; what came out is whole or was not touched.
TEST_F(OpenSheetsTest, SurviveEachFailure) {
  SettingsRecord untouched;
  std::memset(&untouched, 0xAA, sizeof(untouched));
  for (Fault fault : {Fault::kAllocation, Fault::kSpooler, Fault::kRegistry, Fault::kModule,
                      Fault::kFile, Fault::kWindow}) {
    bool struck = true;
    for (int n = 1; struck && n < 5000; ++n) {
      machine().faults.FailNth(fault, n);
      Visitor visitor;
      desk().Attach(&visitor);
      SettingsRecord output = untouched;
      std::u16string name = kPrinter;
      LONG answer;
      {
        const support::OpenedPrinter printer;
        answer = exports_.DrvDocumentProperties(nullptr, printer, name.data(), &output.Public,
                                                nullptr, DM_COPY | DM_PROMPT);
      }
      desk().Attach(nullptr);
      struck = machine().faults.Struck(fault);
      machine().faults.Clear();
      ASSERT_EQ(machine().LiveHeaps(), 0) << n;
      ASSERT_EQ(machine().LiveAllocations(), 0) << n;
      ASSERT_EQ(machine().OpenPrinterHandles(), 0) << n;
      ASSERT_EQ(machine().OpenRegistryKeys(), 0) << n;
      ASSERT_EQ(machine().OpenModules(), 1) << n;
      ASSERT_EQ(platform::LiveGdiObjects(), 0) << n;
      if (answer == CPSUI_OK) {
        ASSERT_EQ(output.Private.Signature, SETTINGS_SIGNATURE) << n;
        ASSERT_EQ(output.Public.dmSize, kPublicSize) << n;
      } else {
        ASSERT_EQ(std::memcmp(&output, &untouched, sizeof(output)), 0) << n;
      }
    }
    EXPECT_FALSE(struck) << static_cast<int>(fault);
  }
}

TEST_F(OpenSheetsTest, VersionPageShowsTheModulesThatAreThere) {
  const std::u16string system = machine().systemDirectory() + u"\\";
  machine().WriteVersionedFile(system + u"QM6_1rLMNT.DLL", 0x00030001, 0x000000FF);
  machine().WriteVersionedFile(system + u"qm6_1rpmlan.dll", 0xFFFF0000, 0x00010000);
  machine().WriteFile(system + u"QM6_1rPMCOM.DLL", "no version resource");
  ShowSheet(exports_, {.kind = SheetKind::kPrinter},
            {[](Desk& desk) {
               EXPECT_EQ(desk.Text(IDC_VERSION_PRODUCT),
                         u"Kestrel(QM610r) Printer Driver for Windows (x86)\nVersion 14.0.1.20");
               EXPECT_NE(desk.Text(IDC_VERSION_NOTICE), u"");
               EXPECT_EQ(desk.Text(IDC_VERSION_LANGUAGE_MONITOR), u"3.1.0.255");
               EXPECT_EQ(desk.Text(IDC_VERSION_LAN_PORT_MONITOR), u"65535.0.1.0");
               EXPECT_EQ(desk.Text(IDC_VERSION_COM_PORT_MONITOR), u"");
               EXPECT_EQ(desk.Text(IDC_VERSION_USER_INTERFACE), u"");
               EXPECT_TRUE(desk.Click(IDC_VERSION_WEBSITE));
             },
             PressCancel()});
  ASSERT_EQ(machine().ShellCalls().size(), 1u);
  const platform::ShellCall call = machine().ShellCalls()[0];
  EXPECT_EQ(call.verb, u"open");
  EXPECT_EQ(call.file.rfind(u"https://", 0), 0u);
  EXPECT_EQ(call.show, SW_SHOW);
}

TEST_F(OpenSheetsTest, VersionPageCentresItsPicture) {
  const int objects = platform::LiveGdiObjects();
  ShowSheet(exports_, {.kind = SheetKind::kPrinter},
            {[](Desk& desk) {
               const platform::ControlView picture = desk.Control(IDC_VERSION_PICTURE);
               const int width = picture.rect.right - picture.rect.left;
               const int height = picture.rect.bottom - picture.rect.top;
               bool found = false;
               for (const platform::DrawOp& op : picture.drawing) {
                 if (op.bitmap != IDB_PRODUCT) continue;
                 EXPECT_EQ(op.rect.left, (width - 420) / 2);
                 EXPECT_EQ(op.rect.top, (height - 200) / 2);
                 EXPECT_EQ(op.rect.right - op.rect.left, 420);
                 EXPECT_EQ(op.rect.bottom - op.rect.top, 200);
                 found = true;
               }
               EXPECT_TRUE(found);
             },
             PressCancel()});
  EXPECT_EQ(platform::LiveGdiObjects(), objects);
}

TEST_F(OpenSheetsTest, MessageTexts) {
  const struct {
    UINT id;
    std::u16string text;
  } kCases[] = {
      {IDS_DENSITY_CHANGED,
       u"解像度が変更されました。設定されたデータが現在の\n"
       u"解像度で不正な値になる可能性があります。\n"},
      {IDS_MODE_CHANGED,
       u"機種が変更されました。設定されたデータが現在の\n"
       u"機種では不正な値になる可能性があります。\n"},
      {IDS_SAVED, u"データを保存しました。"},
      {2473, u""},
      {60000, u""},
  };
  for (const auto& c : kCases) {
    WCHAR text[kMessageLength];
    EXPECT_EQ(LoadMessageText(c.id, text, kMessageLength), static_cast<int>(c.text.size()));
    EXPECT_EQ(text, c.text);
    WCHAR cut[4] = {u'x', u'x', u'x', u'x'};
    LoadMessageText(c.id, cut, 4);
    EXPECT_EQ(cut, c.text.substr(0, 3));
  }
  // Where both tables hold a text they agree, but for the two that break their lines elsewhere.
  for (UINT id : {IDS_PRINTABLE_WIDTH_WRONG, IDS_PRINTABLE_HEIGHT_WRONG, IDS_DENSITY_CHANGED_CHECK,
                  IDS_MODE_CHANGED_CHECK, IDS_LOADED_FONTS_WARNING}) {
    WCHAR text[kMessageLength], stored[kMessageLength];
    LoadMessageText(id, text, kMessageLength);
    LoadStringW(module_, id, stored, kMessageLength);
    EXPECT_EQ(std::u16string(text), stored) << id;
  }
  WCHAR nothing = u'x';
  EXPECT_EQ(LoadMessageText(IDS_SAVED, &nothing, 0), 0);
  EXPECT_EQ(nothing, u'x');
}

TEST(Messages, BlankTexts) {
  for (const WCHAR* text : {u"", u"   ", u"\u3000", u" \u3000 "}) EXPECT_TRUE(IsBlankText(text));
  for (const WCHAR* text : {u" a ", u"\u3000あ", u"\t", u"\u00A0"}) EXPECT_FALSE(IsBlankText(text));
}

}  // namespace
}  // namespace kestrel
