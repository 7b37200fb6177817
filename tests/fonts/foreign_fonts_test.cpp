// The dialog of decorative fonts over fonts and densities that this printer does not have.
#include "deco_walk.h"

namespace fonts {
namespace {

using ForeignFontsTest = FontTest;

// A font without cells: width and height are free within bounds that the unit converts.
TEST_F(ForeignFontsTest, FreeSizes) {
  Store({Deco(u"FREE", u"OUTLINE", 1024, 100, 200)});
  const auto refused = [](int field, std::u16string text, const char16_t* message) {
    return Steps{Replace(field, std::move(text)),
                 Refused(std::u16string(u"フォントサイズ\n") + message, field, kChangeTitle)};
  };
  constexpr int kWidth = IDC_DECO_FONT_WIDTH, kHeight = IDC_DECO_FONT_HEIGHT;
  const Steps steps = {
      Looks("-1 -1, 100/27..550 x 200/50..999, (1/1..6) x (1/1..6), 2 (0) 0 0 (0) (0) 0 {1}"),
      refused(kWidth, u"26", u"幅は 27 dot 以上にして下さい。"),
      refused(kWidth, u"551", u"幅は 550 dot 以下にして下さい。"),
      Replace(kWidth, u"549"),
      Spin(IDC_DECO_FONT_WIDTH_SPIN, 2),
      ExpectText(kWidth, u"550"),
      refused(kHeight, u"49", u"高さは 50 dot 以上にして下さい。"),
      Replace(kHeight, u"999"),
      Click(IDC_DECO_FONT_MM),
      Looks("-1 -1, 68.8/34..688 x 125.0/63..1250, (1/1..6) x (1/1..6), 0 (0) 0 0 (0) (0) 0 {1}"),
      refused(kWidth, u"68.9", u"幅は 68.8 mm 以下にして下さい。"),
      Replace(kWidth, u"12.5"),
      refused(kHeight, u"125.1", u"高さは 125.0 mm 以下にして下さい。"),
      Replace(kHeight, u"7"),
      Spin(IDC_DECO_FONT_HEIGHT_SPIN, 1),
      ExpectText(kHeight, u"7.1"),
      Paste(kWidth, u"9"),
      Focus(kHeight),
      ExpectText(kWidth, u"9.0"),
      Tab(true),
      [](Desk& desk) {
        // Written anew when the focus comes, the text stays selected as Tab has selected it.
        DWORD start = 0, end = 0;
        SendDlgItemMessageW(desk.Top(), kWidth, EM_GETSEL, reinterpret_cast<WPARAM>(&start),
                            reinterpret_cast<LPARAM>(&end));
        EXPECT_EQ(start, 0u);
        EXPECT_EQ(end, 3u);
      },
      Click(IDC_DECO_FONT_INCH),
      refused(kWidth, u"0.132", u"幅は 0.133 inch 以上にして下さい。"),
      Replace(kWidth, u"1.5")};
  EXPECT_EQ(Register(ChangeDeco(steps)),
            Records{Deco(u"FREE", u"OUTLINE", 1024, 1500, 280).Put(206, 1)});
}

// A resident font that this printer lacks: the record stays as it is until another is chosen.
TEST_F(ForeignFontsTest, UnknownResidentFontsStay) {
  for (const Record& record : {Deco(u"A", u"X99", 512, 44, 66).Put(202, {2, 3, 2, 2, 90, 1, 1, 1}),
                               Deco(u"A", u"OUTLINE", 1024, 60, 90).Put(206, 0).Put(218, 7),
                               Deco(u"A", u"NEW", 4096, 77, 88), Deco(u"A", u"NEW", 0, 77, 88),
                               Deco(u"A", u"NEW", 896, 77, 88), Deco(u"A").Put(130, {0, 0, 0})}) {
    Store({record});
    EXPECT_EQ(Register(ChangeDeco(ExpectSelected(IDC_DECO_FONT_RESIDENT, -1))), Records{record});
    EXPECT_EQ(Register(ChangeDeco(Select(IDC_DECO_FONT_RESIDENT, kX21))),
              Records{Deco(u"A", u"X21", 2, 17, 17)});
  }
}

TEST_F(ForeignFontsTest, RecordsAreMended) {
  const struct {
    const char* what;
    Record stored, changed;
    Steps steps;
  } kCases[] = {
      {"a cell that the font lacks",
       Deco(u"A", u"X21", 512, 44, 44),
       Deco(u"A", u"X21", 2, 17, 17),
       {}},
      {"none of three cells",
       Deco(u"A", u"漢字(横書)", 4, 48, 48),
       Deco(u"A", u"漢字(横書)", 128, 16, 16),
       {}},
      {"decoration and numbering both off", Deco(u"A").Put(194, 0), Deco(u"A"), {}},
      {"numbers out of range",
       Deco(u"A").Put(224, {0, 20000, 100, -1}),
       Deco(u"A").Put(224, {1, 9999, 99, 0}),
       {}},
      {"an unknown unit", Deco(u"A").Put(206, 9), Deco(u"A"), {}},
      {"magnifications out of range",
       Deco(u"A").Put(202, {9, 0}),
       Deco(u"A"),
       {Refused(u"フォントサイズ\n幅倍率は 6 以下にして下さい。", IDC_DECO_FONT_EXPAND_X,
                kChangeTitle),
        Replace(IDC_DECO_FONT_EXPAND_X, u"1"),
        Refused(u"フォントサイズ\n高さ倍率は 1 以上にして下さい。", IDC_DECO_FONT_EXPAND_Y,
                kChangeTitle),
        Replace(IDC_DECO_FONT_EXPAND_Y, u"1")}},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    Store({c.stored});
    EXPECT_EQ(Register({Click(IDC_CREATE_FONT_DECO_EDIT), Click(IDCANCEL)}), Records{c.stored});
    EXPECT_EQ(Register(ChangeDeco(c.steps)), Records{c.changed});
  }
}

// Every word of a record may hold anything.
TEST_F(ForeignFontsTest, RecordsOfGarbageOpen) {
  for (int filling : {0xFFFF, 0x7FFF, 0x8000, 0x0101}) {
    SCOPED_TRACE(filling);
    Store({Filled(filling, 0)});
    EXPECT_EQ(
        Register({Click(IDC_CREATE_FONT_DECO_EDIT), Click(IDC_DECO_FONT_MM),
                  Click(IDC_DECO_FONT_INCH), Click(IDC_DECO_FONT_SERIAL_ON), Click(IDCANCEL)}),
        Records{Filled(filling, 0)});
    EXPECT_EQ(Register({Click(IDC_CREATE_FONT_DECO_EDIT), Select(IDC_DECO_FONT_RESIDENT, kX20),
                        Replace(IDC_DECO_FONT_NAME, u"A"), SerialWalk(kDecoSerial, kChangeTitle),
                        Click(IDC_DECO_FONT_DECIMAL), Click(IDOK)}),
              Records{Deco(u"A").Put(220, {1, 0, 5, 0, 12, 8})});
  }
}

// Any density but 305 has the fonts of 203; sizes are converted at the density itself.
TEST_F(ForeignFontsTest, ForeignDensities) {
  const struct { int density, width, height; } kCases[] = {{600, 6, 9}, {204, 19, 27}, {0, 15, 22}};
  for (const auto& c : kCases) {
    SetDensity(c.density);
    ForgetFonts();
    EXPECT_EQ(
        Register(NewDeco(u"A", {Select(IDC_DECO_FONT_RESIDENT, kOcrA), Click(IDC_DECO_FONT_MM)})),
        Records{Deco(u"A", u"OCR-A", 8, c.width, c.height).Put(206, 0)});
  }
}

}  // namespace
}  // namespace fonts
