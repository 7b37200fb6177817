// The dialogs' toolkit: fields in real dialogs of the driver, help box, options and locks.
#include <windows.h>
#include <commctrl.h>

#include <functional>

#include "paper/fields/controls.h"
#include "paper/fields/help_text.h"
#include "paper/fields/measured_value.h"
#include "paper/fields/numeric_field.h"
#include "paper/fields/option_table.h"
#include "resources/resource.h"
#include "tests/support/open_sheet.h"

namespace kestrel {
namespace {

using namespace support;

constexpr int mm = kMillimetre;
constexpr int in = kInch;
constexpr int kWidth = IDC_DECO_FONT_WIDTH;
constexpr int kWidthSpin = IDC_DECO_FONT_WIDTH_SPIN;
constexpr int kStep = IDC_DECO_FONT_INCREMENT;
constexpr int kStepSpin = IDC_DECO_FONT_INCREMENT_SPIN;
constexpr NumericField kFields[] = {
    {kWidth, kWidthSpin, 27, 550, kDot},
    {kStep, kStepSpin, -9999, 9999, kPlain},
};

std::u16string TextOf(FieldDialog dialog, int control) {
  WCHAR text[512] = {};
  GetDlgItemTextW(dialog.window, control, text, 512);
  return text;
}
int Position(FieldDialog dialog, int spin) { return SpinPosition(dialog.window, spin); }

// The template of the decorative fonts with the toolkit behind it and nothing else.
class Fields : public SheetTest {
 protected:
  using Work = std::function<void(FieldDialog)>;
  void Open(Work work) {
    EXPECT_EQ(DialogBoxParamW(module_, MAKEINTRESOURCEW(IDD_DECO_FONT), nullptr, DoAndEnd,
                              reinterpret_cast<LPARAM>(&work)),
              1);
  }

  static INT_PTR CALLBACK DoAndEnd(HWND window, UINT message, WPARAM, LPARAM work) {
    if (message != WM_INITDIALOG) return FALSE;
    (*reinterpret_cast<Work*>(work))({window, kFields});
    return EndDialog(window, 1);
  }
  static INT_PTR CALLBACK LockAll(HWND window, UINT message, WPARAM, LPARAM) {
    if (message == WM_INITDIALOG) LockControls(window, IDD_PAPER_REGISTER, false);
    return message == WM_CLOSE && EndDialog(window, 0);
  }
};

TEST_F(Fields, ShowAValueInItsRange) {
  const struct {
    int minimum, maximum, value, unit;
    std::u16string text;
    int position;
    RangeSide side;
  } cases[] = {
      {100, 1630, 580, mm, u"58.0", 580, kInside},
      {100, 1630, 99, mm, u"10.0", 100, kInside},
      {100, 580, 580, mm, u"58.0", 580, kInside},
      {100, 580, 581, mm, u"58.1", 580, kAbove},
      {394, 6417, 2283, in, u"2.283", 2283, kInside},
      {-300, 300, -300, kDot, u"-300", -300, kInside},
  };
  Open([&](FieldDialog dialog) {
    for (const auto& c : cases) {
      InitField(dialog, kWidth, c.minimum, c.maximum, c.value, c.unit, true);
      EXPECT_EQ(TextOf(dialog, kWidth), c.text);
      EXPECT_EQ(Position(dialog, kWidthSpin), c.position);
      EXPECT_EQ(CheckFieldRange(dialog, kWidth, c.unit), c.side);
      EXPECT_EQ(SendDlgItemMessageW(dialog.window, kWidthSpin, UDM_GETBUDDY, 0, 0),
                reinterpret_cast<LRESULT>(GetDlgItem(dialog.window, kWidth)));
    }
    SetDlgItemTextW(dialog.window, kWidth, TEXT("-301"));
    EXPECT_EQ(CheckFieldRange(dialog, kWidth, kDot), kBelow);
    // An arrow goes as far as the range, and the text with it.
    for (const auto& [step, text] : {std::pair{1, u"-299"}, {1000, u"300"}, {-4, u"296"}}) {
      EXPECT_TRUE(StepField(dialog, kWidthSpin, step, kDot));
      EXPECT_EQ(TextOf(dialog, kWidth), text);
    }
  });
}

// A bound that would vanish stays at one step; without a density dots stay dots.
TEST_F(Fields, ConvertToAnotherUnit) {
  const struct {
    int value, from, to, dpi;
    std::u16string text;
    int minimum, maximum;
  } cases[] = {
      {99, kDot, mm, 203, u"12.4", 34, 688},   {99, kDot, mm, 305, u"8.2", 22, 458},
      {99, kDot, in, 305, u"0.325", 89, 1803}, {124, mm, kDot, 203, u"99", 27, 550},
      {500, kDot, mm, 32767, u"0.4", 1, 4},    {99, kDot, mm, 0, u"9.9", 27, 550},
  };
  Open([&](FieldDialog dialog) {
    for (const auto& c : cases) {
      InitField(dialog, kWidth, -32768, 32767, c.value, c.from, true);
      ChangeFieldUnit(dialog, kWidth, c.from, c.to, c.dpi);
      EXPECT_EQ(TextOf(dialog, kWidth), c.text);
      int minimum, maximum;
      SpinRange(dialog.window, kWidthSpin, &minimum, &maximum);
      EXPECT_EQ(minimum, c.minimum) << testing::PrintToString(c.text);
      EXPECT_EQ(maximum, c.maximum) << testing::PrintToString(c.text);
    }
  });
}

TEST_F(Fields, UndoBadTyping) {
  const struct {
    int unit;
    const WCHAR *text, *shown;
    int position;
  } cases[] = {
      {mm, u"5.5", u"5.5", 55},        {mm, u" 7.", u" 7.", 70},
      {mm, u".5", u".5", 5},           {mm, u"", u"", 0},
      {mm, u"99", u"99", 80},          {mm, u"5.5.", u"2.0", 20},
      {mm, u"4. 5", u"2.0", 20},       {mm, u"4 ", u"2.0", 20},
      {mm, u"-4", u"2.0", 20},         {mm, u"4x", u"2.0", 20},
      {in, u"  .07", u"  .07", 70},    {in, u"1..3", u"0.020", 20},
      {kDot, u"55", u"55", 55},        {kDot, u"5.5", u"20", 20},
      {kPlain, u"-12", u"-12", -12},   {kPlain, u"9999", u"9999", 9999},
      {kPlain, u"99999", u"99999", 7}, {kPlain, u"-", u"-", 7},
      {kPlain, u"5-3", u"5-3", 7},     {kPlain, u"1.5", u"7", 7},
      {kPlain, u"1a", u"7", 7},
  };
  Open([&](FieldDialog dialog) {
    for (const auto& c : cases) {
      SCOPED_TRACE(testing::PrintToString(std::u16string(c.text)));
      const bool plain = c.unit == kPlain;
      const int edit = plain ? kStep : kWidth;
      SetSpin(dialog.window, kStepSpin, kStep, -9999, 9999, 7, true);
      InitField(dialog, kWidth, 0, 80, 20, c.unit, true);
      SetDlgItemTextW(dialog.window, edit, c.text);
      EXPECT_EQ(plain ? OnPlainTyped(dialog, edit) : OnMeasureTyped(dialog, edit, c.unit),
                std::u16string(c.text) == c.shown);
      EXPECT_EQ(TextOf(dialog, edit), c.shown);
      EXPECT_EQ(Position(dialog, plain ? kStepSpin : kWidthSpin), c.position);
    }
  });
}

TEST_F(Fields, DoNothingForWhatTheyDoNotKnow) {
  constexpr int kName = IDC_DECO_FONT_NAME;
  Open([&](FieldDialog dialog) {
    SetDlgItemTextW(dialog.window, kName, TEXT("12"));
    EXPECT_EQ(ReadField({dialog.window, {}}, kName, kPlain), 0);
    EXPECT_EQ(ReadField(dialog, kName, kPlain), 12);
    EXPECT_EQ(CheckFieldRange(dialog, kName, kPlain), kInside);
    InitField(dialog, kName, 0, 5, 3, kPlain, true);
    ReformatField(dialog, kName, mm);
    EXPECT_FALSE(StepField(dialog, kName, 1, mm));
    ChangeFieldUnit(dialog, kName, kDot, in, 203);
    EXPECT_FALSE(OnMeasureTyped(dialog, kName, mm));
    EXPECT_FALSE(OnPlainTyped(dialog, kName));
    EXPECT_EQ(TextOf(dialog, kName), u"12");
  });
}

TEST_F(Fields, DescribeTheControlInUse) {
  constexpr int kGap = IDS_HELP_PAPER_REGISTER_GAP;
  const HelpRow rows[] = {Plain(1, IDS_HELP_PAPER_LIST),
                          {2, IDS_HELP_PAPER_PEEL_OFFSET, kHelpDotRange, -40, 99, -60, 149},
                          Ranged(3, IDS_HELP_PAPER_REGISTER_WIDTH, kHelpTenthsRange, 100, 580),
                          {4, IDS_HELP_DECO_FONT_WIDTH, kHelpDotRangeUnits, 27, 550, 40, 826},
                          Ranged(5, kGap, kHelpTenthsUsual, 0, 80),
                          Ranged(6, kGap, kHelpTenthsUsualToo, 10, 70),
                          Ranged(7, IDS_HELP_PAPER_REGISTER_PRINTABLE_LEFT, kHelpZero, 0, 0),
                          Plain(8, 0),
                          Plain(9, 1),  // no such text
                          Plain(0, 0),
                          Plain(11, IDS_HELP_PAPER_LIST)};
  const struct {
    int control, unit, dpi;
    std::u16string text;
  } cases[] = {
      {1, mm, 203, u"登録されている用紙名を選択します。"},
      {2, kPlain, 305, u"-60ﾄﾞｯﾄから149ﾄﾞｯﾄです。）"},
      {3, in, 203, u"用紙幅サイズを設定します。（指定範囲0.394inchから2.283inchです。）"},
      {4, mm, 203, u"文字の幅を設定します。（範囲は、3.4mmから68.8mmです。）"},
      {4, kDot, 0, u"（範囲は、40dotから826dotです。）"},
      {5, mm, 203, u"0.0mmから8.0mmです。通常は3.0mmです）"},
      {6, in, 0, u"0.039inchから0.276inchです。通常は0.118inchです）"},
      {7, in, 203, u"（通常は 0.000inch です。）"},
      {8, mm, 203, u"as before"},
      {10, mm, 203, u"as before"},
      {11, mm, 203, u"as before"}  // behind the row that ends the table
  };
  Open([&](FieldDialog dialog) {
    for (const auto& c : cases) {
      SetDlgItemTextW(dialog.window, IDC_HELP_TEXT, TEXT("as before"));
      ShowHelp(dialog.window, rows, c.control, IDC_HELP_TEXT, c.unit, c.dpi);
      EXPECT_NE(TextOf(dialog, IDC_HELP_TEXT).find(c.text), std::u16string::npos) << c.control;
    }
    ShowHelp(dialog.window, rows, 9, IDC_HELP_TEXT, kPlain, 203);
    EXPECT_EQ(TextOf(dialog, IDC_HELP_TEXT), u"");
  });
}

TEST_F(Fields, LockEveryInputOfTheRegistrationDialogWithoutPermission) {
  const auto look = [](Desk& desk) {
    const std::vector<platform::WindowView> windows = desk.Windows();
    for (const platform::ControlView& control : windows.back().controls) {
      if (!control.tabStop || !control.visible) continue;
      EXPECT_EQ(control.enabled, control.id == IDOK || control.id == IDCANCEL);
    }
  };
  Follow({look, Close()}, [&] {
    return DialogBoxParamW(module_, MAKEINTRESOURCEW(IDD_PAPER_REGISTER), nullptr, LockAll, 0);
  });
}

// The operation page's own walk shows the rest.
TEST(OptionTables, AnswerTheFirstEntryForWhatTheyLack) {
  const OptionEntry entries[] = {
      {TEXT("one"), 1, '1', {}},
      {TEXT("follow"), kFollowPrinter, ' ', {}},
      {TEXT(""), kOptionEnd, 0, {}},
  };
  const OptionTable table = {entries, 2};
  for (int unknown : {7, -1, int{kOptionEnd}}) EXPECT_EQ(OptionIndex(table, unknown), 0);
  for (int outside : {-1, 2, 99}) EXPECT_EQ(OptionValue(table, outside), 1);
  EXPECT_EQ(OptionIndex(table, kFollowPrinter), 1);
  EXPECT_EQ(OptionValue(table, 1), kFollowPrinter);
}

}  // namespace
}  // namespace kestrel
