// What the dialog of decorative fonts refuses, and how it treats records of other printers.
#include "deco_walk.h"

namespace fonts {
namespace {

using platform::Desk;
using support::Click;
using support::CloseMessage;
using support::ExpectChecked;
using support::ExpectEnabled;
using support::ExpectFocus;
using support::ExpectItems;
using support::ExpectRange;
using support::ExpectSelected;
using support::ExpectText;
using support::Replace;
using support::Select;
using support::Spin;

using DecoChecksTest = FontTest;

constexpr char16_t kReserved[] =
    u"このフォント名は、使用できません\n。別のフォント名を入力して下さい。";
constexpr char16_t kTaken[] =
    u"既に同一のフォント名が登録されています。\n別のフォント名に変更して下さい。";

TEST_F(DecoChecksTest, NamesAreRefusedWithTheirMessage) {
  Store({Deco(u"Deco"), Bar(u"Bar")});
  const struct {
    const char16_t *name, *message;
  } kCases[] = {
      {u"　", u"登録フォント名を入力して下さい。"},
      {u"VELA OCR-A", kReserved},
      {u"Installed Face", kReserved},
      {u"Deco", kTaken},
      {u"Bar", kTaken},
      {u"é", u"不正な文字が使用されています。"},
      {u"あいうえおかきくけこさしすせそた", u"文字数が多すぎます。"},
  };
  Steps steps;
  for (const auto& c : kCases) {
    steps = steps + Steps{Replace(IDC_DECO_FONT_NAME, c.name), Click(IDC_DECO_FONT_ROTATE_90)} +
            Refused(c.message, IDC_DECO_FONT_NAME);
  }
  // The name goes before the numbers. What is typed over the limit of 31 is not taken.
  steps = steps +
          Steps{Replace(IDC_DECO_FONT_EXPAND_X, u"7"), Replace(IDC_DECO_FONT_NAME, u"Bar")} +
          Refused(kTaken, IDC_DECO_FONT_NAME) +
          Steps{Replace(IDC_DECO_FONT_EXPAND_X, u"1"),
                Replace(IDC_DECO_FONT_NAME, u"12345678901234567890123456789012"),
                ExpectText(IDC_DECO_FONT_NAME, u"1234567890123456789012345678901"),
                Click(IDC_DECO_FONT_ROTATE_0)};
  EXPECT_EQ(Register(NewDeco(u"Good", steps)),
            (Records{Deco(u"Deco"), Deco(u"Good"), Bar(u"Bar")}));
}

TEST_F(DecoChecksTest, NumbersAreCheckedInOrder) {
  const struct {
    int field;
    const char16_t *wrong, *message, *right;
  } kCases[] = {
      {IDC_DECO_FONT_EXPAND_X, u"0", u"フォントサイズ\n幅倍率は 1 以上にして下さい。", u"1"},
      {IDC_DECO_FONT_EXPAND_X, u"7", u"フォントサイズ\n幅倍率は 6 以下にして下さい。", u"1"},
      {IDC_DECO_FONT_EXPAND_Y, u"0", u"フォントサイズ\n高さ倍率は 1 以上にして下さい。", u"1"},
      {IDC_DECO_FONT_EXPAND_Y, u"7", u"フォントサイズ\n高さ倍率は 6 以下にして下さい。", u"1"},
      {IDC_DECO_FONT_PRINT_NUM, u"0", u"連番設定\n同一発行枚数は 1 枚以上にして下さい。", u"9999"},
      {IDC_DECO_FONT_PRINT_NUM, u"10000", u"連番設定\n同一発行枚数は 9999 枚以下にして下さい。",
       u"9999"},
      {IDC_DECO_FONT_INCREMENT, u"-10000", u"連番設定\n増減値は -9999 以上にして下さい。", u"1"},
      {IDC_DECO_FONT_INCREMENT, u"10000", u"連番設定\n増減値は 9999 以下にして下さい。", u"-9999"},
      {IDC_DECO_FONT_ACTIVE_DIGITS, u"0", u"連番設定\n連番有効桁数は 1 枚以上にして下さい。",
       u"99"},
      {IDC_DECO_FONT_ACTIVE_DIGITS, u"100", u"連番設定\n連番有効桁数は 99 枚以下にして下さい。",
       u"99"},
      {IDC_DECO_FONT_LOW_DIGITS, u"-1", u"連番設定\n下位無効桁数は 0 枚以上にして下さい。", u"99"},
      {IDC_DECO_FONT_LOW_DIGITS, u"100", u"連番設定\n下位無効桁数は 99 枚以下にして下さい。",
       u"99"},
  };
  // Some are longer than a person can type.
  const auto put = [](int field, const char16_t* text) {
    return [=](Desk& desk) { SetDlgItemTextW(desk.Top(), field, text); };
  };
  Steps steps = {Click(IDC_DECO_FONT_SERIAL_ON), Replace(IDC_DECO_FONT_NAME, u"N")};
  for (const auto& c : kCases) steps.push_back(put(c.field, c.wrong));
  for (const auto& c : kCases) {
    steps = steps + Steps{put(c.field, c.wrong)} + Refused(c.message, c.field) +
            Steps{Replace(c.field, c.right)};
  }
  Record expected = Deco(u"N");
  expected.Put(220, {1, 0, 9999, -9999, 99, 99});
  EXPECT_EQ(Register(NewDeco(u"N", steps)), Records{expected});
}

// Numbers count even while numbering is off.
TEST_F(DecoChecksTest, SerialNumbersAreCheckedWhileOff) {
  Register(NewDeco(
      u"N", {Click(IDC_DECO_FONT_SERIAL_ON), Replace(IDC_DECO_FONT_PRINT_NUM, u"0"),
             Click(IDC_DECO_FONT_SERIAL_OFF), Replace(IDC_DECO_FONT_NAME, u"N"), Click(IDOK),
             CloseMessage(u"連番設定\n同一発行枚数は 1 枚以上にして下さい。", MB_ICONEXCLAMATION,
                          kRegisterTitle),
             Click(IDC_DECO_FONT_SERIAL_ON), Replace(IDC_DECO_FONT_PRINT_NUM, u"1"),
             Click(IDC_DECO_FONT_SERIAL_OFF)}));
}

// A font without cells: width and height are free within bounds that the unit converts.
TEST_F(DecoChecksTest, FreeSizes) {
  Store({Deco(u"FREE", u"OUTLINE", 1024, 100, 200)});
  const auto refused = [](int field, std::u16string text, const char16_t* message) {
    return Steps{Replace(field, std::move(text))} +
           Refused(std::u16string(u"フォントサイズ\n") + message, field, kChangeTitle);
  };
  const Steps dots =
      Steps{
          ExpectItems(IDC_DECO_FONT_SIZE, {}),
          ExpectEnabled(
              {IDC_DECO_FONT_WIDTH, IDC_DECO_FONT_HEIGHT_SPIN, IDC_DECO_FONT_OUTLINE_MIRROR}, true),
          ExpectEnabled({IDC_DECO_FONT_EXPAND_X, IDC_DECO_FONT_EXPAND_Y}, false),
          ExpectRange(IDC_DECO_FONT_WIDTH_SPIN, 27, 550, 100),
          ExpectRange(IDC_DECO_FONT_HEIGHT_SPIN, 50, 999, 200)} +
      refused(IDC_DECO_FONT_WIDTH, u"26", u"幅は 27 dot 以上にして下さい。") +
      refused(IDC_DECO_FONT_WIDTH, u"551", u"幅は 550 dot 以下にして下さい。") +
      Steps{Replace(IDC_DECO_FONT_WIDTH, u"550"), Spin(IDC_DECO_FONT_WIDTH_SPIN, 1),
            ExpectText(IDC_DECO_FONT_WIDTH, u"550"), Spin(IDC_DECO_FONT_WIDTH_SPIN, -2),
            ExpectText(IDC_DECO_FONT_WIDTH, u"548")} +
      refused(IDC_DECO_FONT_HEIGHT, u"49", u"高さは 50 dot 以上にして下さい。") +
      Steps{Replace(IDC_DECO_FONT_HEIGHT, u"999")};
  const Steps millimetres =
      Steps{Click(IDC_DECO_FONT_MM), ExpectText(IDC_DECO_FONT_WIDTH, u"68.6"),
            ExpectText(IDC_DECO_FONT_HEIGHT, u"125.0"),
            ExpectRange(IDC_DECO_FONT_WIDTH_SPIN, 34, 688, 686)} +
      refused(IDC_DECO_FONT_WIDTH, u"3.3", u"幅は 3.4 mm 以上にして下さい。") +
      refused(IDC_DECO_FONT_WIDTH, u"68.9", u"幅は 68.8 mm 以下にして下さい。") +
      Steps{Replace(IDC_DECO_FONT_WIDTH, u"12.5")} +
      refused(IDC_DECO_FONT_HEIGHT, u"6.2", u"高さは 6.3 mm 以上にして下さい。") +
      refused(IDC_DECO_FONT_HEIGHT, u"125.1", u"高さは 125.0 mm 以下にして下さい。") +
      Steps{Replace(IDC_DECO_FONT_HEIGHT, u"7"), Spin(IDC_DECO_FONT_HEIGHT_SPIN, 1),
            ExpectText(IDC_DECO_FONT_HEIGHT, u"7.1")};
  const Steps inches =
      Steps{Click(IDC_DECO_FONT_INCH), ExpectText(IDC_DECO_FONT_WIDTH, u"0.492")} +
      refused(IDC_DECO_FONT_WIDTH, u"0.132", u"幅は 0.133 inch 以上にして下さい。") +
      Steps{Replace(IDC_DECO_FONT_WIDTH, u"1.5"),
            Click(IDC_DECO_FONT_OUTLINE_HOLLOW_SHADOW_ITALIC)};
  Record expected = Deco(u"FREE", u"OUTLINE", 1024, 1500, 280);
  expected.Put(206, 1).Put(218, 9);
  EXPECT_EQ(Register(ChangeDeco(dots + millimetres + inches)), Records{expected});
}

// A resident font that this printer lacks: the record stays as it is until another is chosen.
TEST_F(DecoChecksTest, UnknownResidentFontsStay) {
  const Record kCell = Deco(u"A", u"X99", 512, 44, 66).Put(202, {2, 3, 2, 2, 90, 1, 1, 1});
  const Record kFree = Deco(u"A", u"OUTLINE", 1024, 60, 90).Put(206, 0).Put(218, 7);
  const Record kUnknownCell = Deco(u"A", u"NEW", 4096, 77, 88);
  const Record kNoCell = Deco(u"A", u"NEW", 0, 77, 88);
  const Record kManyCells = Deco(u"A", u"NEW", 896, 77, 88);
  Record noName = Deco(u"A");
  noName.Put(130, {0, 0, 0});
  for (const Record& record : {kCell, kFree, kUnknownCell, kNoCell, kManyCells, noName}) {
    SCOPED_TRACE(testing::Message() << record.Word(196));
    Store({record});
    EXPECT_EQ(Register(ChangeDeco({ExpectSelected(IDC_DECO_FONT_RESIDENT, -1)})), Records{record});
    EXPECT_EQ(Register(ChangeDeco(
                  {Select(IDC_DECO_FONT_RESIDENT, kX21), Replace(IDC_DECO_FONT_NAME, u"B")})),
              Records{Deco(u"B", u"X21", 2, 17, 17)});
  }
}

TEST_F(DecoChecksTest, ForeignRecordsAreMended) {
  struct {
    const char* what;
    Record stored, changed;
    Steps steps;
  } cases[] = {
      {"a cell that the font lacks",
       Deco(u"A", u"X21", 512, 44, 44),
       Deco(u"A", u"X21", 2, 17, 17),
       {ExpectSelected(IDC_DECO_FONT_SIZE, 0)}},
      {"decoration and numbering both off",
       Deco(u"A").Put(194, 0),
       Deco(u"A"),
       {ExpectChecked({IDC_DECO_FONT_DECORATE_ON, IDC_DECO_FONT_SERIAL_OFF})}},
      {"numbers out of range",
       Deco(u"A").Put(224, {0, 20000, 100, -1}),
       Deco(u"A").Put(224, {1, 9999, 99, 0}),
       {}},
      {"an unknown unit", Deco(u"A").Put(206, 9), Deco(u"A"), {ExpectChecked({IDC_DECO_FONT_DOT})}},
      {"magnifications out of range", Deco(u"A").Put(202, {9, 0}), Deco(u"A"),
       Refused(u"フォントサイズ\n幅倍率は 6 以下にして下さい。", IDC_DECO_FONT_EXPAND_X,
               kChangeTitle) +
           Steps{Replace(IDC_DECO_FONT_EXPAND_X, u"1")} +
           Refused(u"フォントサイズ\n高さ倍率は 1 以上にして下さい。", IDC_DECO_FONT_EXPAND_Y,
                   kChangeTitle) +
           Steps{Replace(IDC_DECO_FONT_EXPAND_Y, u"1")}},
  };
  for (auto& c : cases) {
    SCOPED_TRACE(c.what);
    Store({c.stored});
    EXPECT_EQ(Register({Click(IDC_CREATE_FONT_DECO_EDIT), Click(IDCANCEL)}), Records{c.stored});
    EXPECT_EQ(Register(ChangeDeco(c.steps)), Records{c.changed});
  }
}

// Every word of a record may hold anything.
TEST_F(DecoChecksTest, RecordsOfGarbageOpen) {
  for (int filling : {0xFFFF, 0x7FFF, 0x8000, 0x0101}) {
    SCOPED_TRACE(filling);
    Record garbage;
    for (size_t at = 0; at < sizeof(Record); at += 2) garbage.Put(at, filling);
    garbage.Put(64, 0);
    Store({garbage});
    EXPECT_EQ(
        Register({Click(IDC_CREATE_FONT_DECO_EDIT), Click(IDC_DECO_FONT_MM),
                  Click(IDC_DECO_FONT_INCH), Click(IDC_DECO_FONT_SERIAL_ON), Click(IDCANCEL)}),
        Records{garbage});
    EXPECT_EQ(
        Register({Click(IDC_CREATE_FONT_DECO_EDIT), Select(IDC_DECO_FONT_RESIDENT, kX20),
                  Click(IDC_DECO_FONT_SERIAL_ON), Replace(IDC_DECO_FONT_PRINT_NUM, u"1"),
                  Replace(IDC_DECO_FONT_INCREMENT, u"1"),
                  Replace(IDC_DECO_FONT_ACTIVE_DIGITS, u"1"),
                  Replace(IDC_DECO_FONT_LOW_DIGITS, u"0"), Click(IDC_DECO_FONT_DECIMAL),
                  Click(IDC_DECO_FONT_SERIAL_OFF), Replace(IDC_DECO_FONT_NAME, u"A"), Click(IDOK)}),
        Records{Deco(u"A")});
  }
}

// Any density but 305 has the fonts of 203; sizes are converted at the density itself.
TEST_F(DecoChecksTest, ForeignDensities) {
  const struct {
    int density, width, height;
    const char16_t* shown;
  } kCases[] = {{600, 6, 9, u"0.6"}, {204, 19, 27, u"1.9"}, {0, 15, 22, u"1.5"}};
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.density);
    SetDensity(c.density);
    ForgetFonts();
    EXPECT_EQ(Register(NewDeco(
                  u"A", {Select(IDC_DECO_FONT_RESIDENT, kOcrA),
                         ExpectItems(IDC_DECO_FONT_SIZE, {u"15*22"}), Click(IDC_DECO_FONT_MM),
                         ExpectText(IDC_DECO_FONT_WIDTH, c.shown)})),
              Records{Deco(u"A", u"OCR-A", 8, c.width, c.height).Put(206, 0)});
  }
}

}  // namespace
}  // namespace fonts
