// Sheets as a person sees them: through the exports, the sheet library and a scripted user.
#include <gtest/gtest.h>

#include <algorithm>
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
using support::kPrinter;
using support::PressCancel;
using support::SheetAnswer;
using support::SheetKind;

class OpenSheets : public support::SheetTest {};

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
        desk().ClearShown();
        Visitor visitor;
        const support::Seat seat(visitor);
        answer = AskForSheet(exports_, {});
      },
      [&](Fault, bool) {
        for (const auto& shown : desk().History()) {
          EXPECT_NE(shown.caption, u"TreeViewMakeError") << "a sheet without its tables";
        }
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
       {[](platform::Desk& desk) { EXPECT_EQ(desk.Windows().back().tabs.size(), 1u); },
        ExpectText(IDC_VERSION_PRODUCT,
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
  const auto look = [](platform::Desk& desk) {
    const platform::ControlView picture = desk.Control(IDC_VERSION_PICTURE);
    const auto drawn = std::ranges::find(picture.drawing, IDB_PRODUCT, &platform::DrawOp::bitmap);
    ASSERT_NE(drawn, picture.drawing.end());
    const int width = picture.rect.right - picture.rect.left;
    const int height = picture.rect.bottom - picture.rect.top;
    EXPECT_EQ(drawn->rect.left, (width - 420) / 2);
    EXPECT_EQ(drawn->rect.top, (height - 200) / 2);
    EXPECT_EQ(drawn->rect.right - drawn->rect.left, 420);
    EXPECT_EQ(drawn->rect.bottom - drawn->rect.top, 200);
  };
  Show({.kind = SheetKind::kPrinter}, {look, PressCancel()});
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
