// Sheets as a person sees them: through the exports, the sheet library and a scripted user.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "platform/desktop/drawing/gdi.h"
#include "resources/resource.h"
#include "sheets/driver_ui_data.h"
#include "sheets/messages.h"
#include "tests/support/fault_walk.h"
#include "tests/support/open_sheet.h"

namespace kestrel {
namespace {

using platform::Fault;
using support::ExpectText;
using support::GoTo;
using support::kPrinter;
using support::PressCancel;
using support::PressOk;
using support::SheetAnswer;
using support::SheetAsk;
using support::SheetKind;
using support::Steps;

class OpenSheets : public support::SheetTest {
 protected:
  bool Stored() { return machine().Data(kPrinter, u"Private DevMode").has_value(); }
};

// Every page opens, on both hosting roads, in every kind of sheet, and leaves nothing behind.
TEST_F(OpenSheets, VisitEveryPage) {
  const std::vector<std::u16string> all = {u"バージョン情報",     u"用紙",
                                           u"動作モード",         u"デバイスの設定",
                                           u"クリエイトフォント", u"ユーティリティ"};
  const auto tabs = [](std::vector<std::u16string> expected) {
    return [=](platform::Desk& desk) {
      const platform::WindowView sheet = desk.Windows().back();
      EXPECT_EQ(sheet.tabs, expected);
      EXPECT_EQ(sheet.activeTab, 0);
    };
  };
  for (DWORD major : {5u, 10u}) {
    machine().SetOs({.major = major});
    for (SheetKind kind : {SheetKind::kDocument, SheetKind::kAdvanced, SheetKind::kUserDefault}) {
      const int objects = platform::LiveGdiObjects();
      const SheetAnswer answer = Show(
          {.kind = kind}, {tabs(all), GoTo(1), GoTo(2), support::Select(IDC_OPERATION_SPEED, 1),
                           GoTo(3), GoTo(4), GoTo(5), GoTo(0), PressOk()});
      EXPECT_EQ(answer.result, CPSUI_OK);
      EXPECT_EQ(answer.record.Private.Signature, SETTINGS_SIGNATURE);
      EXPECT_EQ(answer.record.Private.nPrintSpeed, 2);  // the pages found their session
      EXPECT_EQ(platform::LiveGdiObjects(), objects);
    }
    Show({.kind = SheetKind::kPrinter}, {tabs({all[0]}), PressCancel()});
  }
}

TEST_F(OpenSheets, HandOutOnOkAlone) {
  const struct {
    SheetKind kind;
    bool permission, stored;
  } kCases[] = {
      {SheetKind::kDocument, true, false},   {SheetKind::kAdvanced, true, false},
      {SheetKind::kUserDefault, true, true}, {SheetKind::kUserDefault, false, false},
      {SheetKind::kPrinter, true, true},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(testing::Message() << static_cast<int>(c.kind) << ", permission " << c.permission);
    machine().RemoveData(kPrinter, u"Private DevMode");
    const size_t broadcasts = machine().Broadcasts().size();
    const SheetAsk ask = {.kind = c.kind, .permission = c.permission};
    for (const support::Step& end : {PressCancel(), support::Close()}) {
      const SheetAnswer answer = Show(ask, end);
      EXPECT_EQ(answer.result, CPSUI_CANCEL);
      EXPECT_FALSE(answer.written || Stored());
    }
    EXPECT_EQ(machine().Broadcasts().size(), broadcasts);
    const SheetAnswer answer = Show(ask, PressOk());
    EXPECT_EQ(answer.result, CPSUI_OK);  // which is TRUE as well
    EXPECT_EQ(answer.written, c.kind != SheetKind::kPrinter);
    EXPECT_EQ(Stored(), c.stored);
    EXPECT_EQ(machine().Broadcasts().size(), broadcasts + (c.stored ? 1 : 0));
  }
}

// Without the right to write printer data nothing can be stored; the sheet says so to its pages.
TEST_F(OpenSheets, PrinterPropertiesWithoutTheRightToWrite) {
  machine().SetPermission(kPrinter, false, false);
  EXPECT_EQ(Show({.kind = SheetKind::kPrinter}, PressOk()).result, TRUE);
  EXPECT_FALSE(machine().Data(kPrinter, u"Permission"));
  EXPECT_FALSE(Stored());
}

// The library tells of a sheet that did not open as of one that was cancelled; the driver does not.
TEST_F(OpenSheets, ASheetThatCannotOpenIsNoCancelledOne) {
  for (int n = 1; n <= 2; ++n) {  // the session's heap, the session
    for (const SheetKind kind : {SheetKind::kDocument, SheetKind::kAdvanced, SheetKind::kPrinter}) {
      machine().faults.FailNth(Fault::kAllocation, n);
      const SheetAnswer answer = Show({.kind = kind}, {});
      EXPECT_EQ(answer.result, kind == SheetKind::kPrinter ? FALSE : -1) << n;
      EXPECT_FALSE(answer.written);
      EXPECT_TRUE(machine().faults.Struck(Fault::kAllocation));
    }
  }
}

// The Printers folder of Windows 2000 hands in one record for both directions and means the user's
// defaults.
TEST_F(OpenSheets, PrintersFolderOf2000StoresTheUsersDefaults) {
  for (DWORD major : {10u, 5u}) {
    machine().SetOs({.major = major});
    machine().SetExecutablePath(u"c:\\windows\\Explorer.exe");
    const support::OpenedPrinter printer;
    std::u16string name = kPrinter;
    SettingsRecord record = {};
    ASSERT_EQ(exports_.DrvDocumentProperties(nullptr, printer, name.data(), &record.Public, nullptr,
                                             DM_COPY),
              IDOK);
    const support::Follower person(PressOk());
    EXPECT_EQ(exports_.DrvDocumentProperties(nullptr, printer, name.data(), &record.Public,
                                             &record.Public, DM_COPY | DM_IN_BUFFER | DM_PROMPT),
              CPSUI_OK);
    EXPECT_EQ(Stored(), major == 5);
  }
}

TEST_F(OpenSheets, NobodyThereCountsAsCancel) {
  const SheetAnswer answer = AskForSheet(exports_, {});
  EXPECT_EQ(answer.result, CPSUI_CANCEL);
  EXPECT_FALSE(answer.written);
}

// Goes through all pages as far as they open, presses OK and closes whatever is left open.
class Visitor : public platform::User {
 public:
  bool Act(platform::Desk& desk) override {
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
TEST_F(OpenSheets, SurviveEachFailure) {
  using enum Fault;
  SheetAnswer answer;
  support::WalkFaults(
      machine(), {kAllocation, kSpooler, kRegistry, kModule, kFile, kWindow},
      [&] {
        Visitor visitor;
        const support::Seat seat(visitor);
        answer = AskForSheet(exports_, {});
      },
      [&](Fault, bool) {
        EXPECT_EQ(answer.written, answer.result == CPSUI_OK);
        if (!answer.written) return;
        EXPECT_EQ(answer.record.Private.Signature, SETTINGS_SIGNATURE);
        EXPECT_EQ(answer.record.Public.dmSize, kPublicSize);
      });
}

TEST_F(OpenSheets, VersionPageShowsTheModulesThatAreThere) {
  const std::u16string system = machine().systemDirectory() + u"\\";
  machine().WriteVersionedFile(system + u"QM6_1rLMNT.DLL", 0x00030001, 0x000000FF);
  machine().WriteVersionedFile(system + u"qm6_1rpmlan.dll", 0xFFFF0000, 0x00010000);
  machine().WriteFile(system + u"QM6_1rPMCOM.DLL", "no version resource");
  Show({.kind = SheetKind::kPrinter},
       {ExpectText(IDC_VERSION_PRODUCT,
                   u"Kestrel(QM610r) Printer Driver for Windows (x86)\nVersion 14.0.1.20"),
        ExpectText(IDC_VERSION_LANGUAGE_MONITOR, u"3.1.0.255"),
        ExpectText(IDC_VERSION_LAN_PORT_MONITOR, u"65535.0.1.0"),
        ExpectText(IDC_VERSION_COM_PORT_MONITOR, u""), ExpectText(IDC_VERSION_USER_INTERFACE, u""),
        [](platform::Desk& desk) { EXPECT_NE(desk.Text(IDC_VERSION_NOTICE), u""); },
        support::Click(IDC_VERSION_WEBSITE), PressCancel()});
  ASSERT_EQ(machine().ShellCalls().size(), 1u);
  const platform::ShellCall call = machine().ShellCalls()[0];
  EXPECT_EQ(call.verb, u"open");
  EXPECT_EQ(call.file.rfind(u"https://", 0), 0u);
  EXPECT_EQ(call.show, SW_SHOW);
}

TEST_F(OpenSheets, VersionPageCentresItsPicture) {
  const int objects = platform::LiveGdiObjects();
  Show({.kind = SheetKind::kPrinter}, {[](platform::Desk& desk) {
                                         const platform::ControlView picture =
                                             desk.Control(IDC_VERSION_PICTURE);
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

TEST_F(OpenSheets, MessageTexts) {
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
