// The help box and the controls that a dialog locks.
#include <set>

#include "paper/fields/help_text.h"
#include "tests/fields/field_dialog.h"

namespace kestrel {
namespace {

using platform::Desk;

TEST_F(FieldDialogTest, DescribesTheControlInUse) {
  const HelpRow rows[] = {
      Plain(1, IDS_HELP_PAPER_LIST),
      {2, IDS_HELP_PAPER_PEEL_OFFSET, kHelpDotRange, -40, 99, -60, 149},
      Ranged(3, IDS_HELP_PAPER_REGISTER_WIDTH, kHelpTenthsRange, 100, 580),
      {4, IDS_HELP_DECO_FONT_WIDTH, kHelpDotRangeUnits, 27, 550, 40, 826},
      Ranged(5, IDS_HELP_PAPER_REGISTER_GAP, kHelpTenthsUsual, 0, 80),
      {6, IDS_HELP_PAPER_REGISTER_GAP, kHelpTenthsUsualToo, 0, 80, 10, 70},
      Ranged(7, IDS_HELP_PAPER_REGISTER_PRINTABLE_LEFT, kHelpZero, 0, 0),
      Plain(8, 0),
      Plain(9, IDS_HELP_OPERATION_COLOR_ADJUST),
      {0, 0, 0, 0, 0, 0, 0},
      Plain(11, IDS_HELP_PAPER_LIST),
  };
  const struct {
    int control, unit, dpi;
    std::u16string text;
  } kCases[] = {
      {1, kMillimetre, 203, u"登録されている用紙名を選択します。"},
      {2, kPlain, 203,
       u"ハクリオフセット（ハクリ搬送停止位置）を設定します。（範囲は、-40ﾄﾞｯﾄから99ﾄﾞｯﾄです。）"
       u"通常は「0」となります。"},
      {2, kPlain, 305,
       u"ハクリオフセット（ハクリ搬送停止位置）を設定します。（範囲は、-60ﾄﾞｯﾄから149ﾄﾞｯﾄです。）"
       u"通常は「0」となります。"},
      {3, kInch, 203, u"用紙幅サイズを設定します。（指定範囲0.394inchから2.283inchです。）"},
      {4, kMillimetre, 203, u"文字の幅を設定します。（範囲は、3.4mmから68.8mmです。）"},
      {4, kDot, 0, u"文字の幅を設定します。（範囲は、40dotから826dotです。）"},
      {5, kMillimetre, 203,
       u"ラベルとラベルの間のサイズ（ギャップサイズ）を設定します。（範囲は、0.0mmから8.0mmです。"
       u"通常は3.0mmです）"},
      {6, kInch, 0,
       u"ラベルとラベルの間のサイズ（ギャップサイズ）を設定します。（範囲は、0.039inchから"
       u"0.276inchです。通常は0.118inchです）"},
      {7, kInch, 203, u"ラベル左端からの印字禁止領域を設定します。（通常は 0.000inch です。）"},
      {8, kMillimetre, 203, u"as before"},
      {9, kMillimetre, 203, u""},  // its text does not exist
      {10, kMillimetre, 203, u"as before"},
      {11, kMillimetre, 203, u"as before"},  // behind the row that ends the table
  };
  Open(IDD_OPERATION, [&] {
    for (const auto& c : kCases) {
      SetDlgItemTextW(dialog.window, IDC_HELP_TEXT, TEXT("as before"));
      ShowHelp(dialog.window, rows, c.control, IDC_HELP_TEXT, c.unit, c.dpi);
      WCHAR text[512];
      GetDlgItemTextW(dialog.window, IDC_HELP_TEXT, text, 512);
      EXPECT_EQ(text, c.text) << c.control;
    }
    EndDialog(dialog.window, 0);
  });
}

TEST_F(FieldDialogTest, LocksTheControlsOfADialogWithoutPermission) {
  // What stays usable of each dialog's buttons, lists, edits and boxes.
  const struct {
    int dialogId;
    std::set<int> usable;
  } kCases[] = {
      {IDD_OPERATION, {}},
      {IDD_PAPER, {}},
      {IDD_PAPER_REGISTER, {IDOK, IDCANCEL}},
      {IDD_PAPER_REFERENCE, {IDOK, IDCANCEL, IDC_PAPER_REFERENCE_LIST}},
      {IDD_DEVICE, {}},
      {IDD_CREATE_FONT, {IDC_CREATE_FONT_DECO_LIST, IDC_CREATE_FONT_BAR_LIST}},
      {IDD_VERSION, {IDC_VERSION_WEBSITE}},
      {IDD_UTILITY, {}},
  };
  for (const auto& c : kCases) {
    Open(c.dialogId, [&] {
      std::set<int> before, after;
      const auto usable = [&](std::set<int>& ids) {
        for (HWND child = GetWindow(dialog.window, GW_CHILD); child != nullptr;
             child = GetWindow(child, GW_HWNDNEXT)) {
          WCHAR name[32];
          GetClassNameW(child, name, 32);
          const std::u16string kind = name;
          const auto style = GetWindowLongPtrW(child, GWL_STYLE);
          const bool group = kind == u"Button" && (style & 0xF) >= 7;  // boxes, owner-drawn
          if (kind == u"Static" || kind == u"msctls_updown32" || group) continue;
          if (IsWindowEnabled(child) && (style & WS_VISIBLE)) ids.insert(GetDlgCtrlID(child));
        }
      };
      LockControls(dialog.window, c.dialogId, true);
      usable(before);
      LockControls(dialog.window, c.dialogId, false);
      usable(after);
      EXPECT_EQ(after, c.usable) << c.dialogId;
      EXPECT_GE(before.size(), after.size());
      EndDialog(dialog.window, 0);
    });
  }
}

}  // namespace
}  // namespace kestrel
