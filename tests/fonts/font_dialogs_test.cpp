// The parts that both font dialogs share: the name, the serial numbering, the help box.
#include <set>

#include "font_fixture.h"
#include "fonts/font_names.h"

namespace fonts {
namespace {

using FontDialogs = FontTest;

TEST_F(FontDialogs, SerialNumberingIsStoredAndShown) {
  const std::array<int16_t, 4> numbers = {5, -9999, 12, 8};
  for (const KindControls& kind : {kDeco, kBar}) {
    const std::vector<int> inputs = {kind.hexadecimal,  kind.decimal,      kind.sameIssue,
                                     kind.step,         kind.activeDigits, kind.lowDigits,
                                     kind.lowDigitsSpin};
    const Font font = kind.list == kDeco.list ? Deco(u"A") : Bar(u"A");
    const Font numbered = Font(font).Numbered(true, true, numbers);
    ExpectChange(kind, font, numbered,
                 {ExpectEnabled(inputs, false), ExpectChecked({kind.serialOff, kind.decimal}),
                  Click(kind.serialOn), ExpectEnabled(inputs), Click(kind.hexadecimal),
                  Replace(kind.sameIssue, u"5"), Replace(kind.step, u"-9999"),
                  Replace(kind.activeDigits, u"12"), Replace(kind.lowDigits, u"7"),
                  Paste(kind.lowDigits, u"+1"), ExpectText(kind.lowDigits, u"7"),
                  Spin(kind.lowDigitsSpin, 1)});
    ExpectChange(kind, numbered, Font(numbered).Numbered(false, false, numbers),
                 {ExpectEnabled(inputs), ExpectChecked({kind.serialOn, kind.hexadecimal}),
                  Click(kind.decimal), Click(kind.serialOff), ExpectEnabled(inputs, false)});
  }
}

TEST_F(FontDialogs, SerialNumberOutsideItsLimitsIsRejected) {
  for (const KindControls& kind : {kDeco, kBar}) {
    Cancel(kFontTab,
           New(kind, u"A",
               {Replace(kind.name, u"A"), Click(kind.serialOn),
                ExpectRejected(
                    kind.RegisterTitle(), u"連番設定\n",
                    {{kind.sameIssue, u"同一発行枚数", u"枚", u"0", u"1", u"9999", u"4294967301"},
                     {kind.step, u"増減値", u"", u"-10000", u"-9999", u"9999", u"10000"},
                     {kind.activeDigits, u"連番有効桁数", u"枚", u"0", u"1", u"99", u"100"},
                     {kind.lowDigits, u"下位無効桁数", u"枚", u"-1", u"0", u"99", u"100"}})}));
  }
}

TEST_F(FontDialogs, EveryInputShowsItsOwnHelp) {
  for (const Font& font : {Deco(u"A"), Deco(u"A", u"OUTLINE", kSizeScalable, 60, 90), Bar(u"A")}) {
    const KindControls& kind = font.FontKind == kBarcodeFont ? kBar : kDeco;
    const auto useEveryInput = [&](Desk& desk) {
      using enum platform::ControlKind;
      std::set<std::u16string> texts;
      for (const auto& control : std::vector(desk.Windows().back().controls)) {
        if (control.kind != kRadio && control.kind != kEdit && control.kind != kComboBox) continue;
        // An input may have disabled others.
        for (const int enabling : {IDC_DECO_FONT_DECORATE_ON, kind.serialOn})
          if (desk.Has(enabling) && !desk.Control(control.id).enabled) desk.Click(enabling);
        if (!desk.Click(control.id) && !desk.Focus(control.id)) continue;
        EXPECT_TRUE(texts.insert(desk.Text(IDC_HELP_TEXT)).second) << control.id;
      }
      EXPECT_GE(texts.size(), 12u);
    };
    Store({font});
    Cancel(kFontTab, {Click(kind.change), useEveryInput, Click(IDCANCEL)});
  }
}

// The numbers are checked after the name, and even while the numbering is off.
TEST_F(FontDialogs, InvalidNameIsReportedBeforeInvalidNumber) {
  for (const KindControls& kind : {kDeco, kBar}) {
    const auto rejected = [&](const char16_t* message) {
      return Steps{Click(IDOK), CloseMessage(message, MB_ICONEXCLAMATION, kind.RegisterTitle())};
    };
    Cancel(kFontTab, {Click(kind.create), SetText(kind.step, u"10000"),
                      rejected(u"登録フォント名を入力して下さい。"), ExpectFocus(kind.name),
                      Replace(kind.name, u"A"),
                      rejected(u"連番設定\n増減値は 9999 以下にして下さい。"), Click(IDCANCEL)});
  }
}

// Registered names may break a rule themselves: such a name shows which rule comes first.
TEST_F(FontDialogs, FirstBrokenRuleOfANameIsReported) {
  using enum FontNameResult;
  const std::u16string longest(31, u'a'), fifteen(15, u'あ'),
      sixteen(16, u'あ');  // 31, 30, 32 bytes
  Fonts deco = {Deco(u"D0"), Deco(u"VELA POP"), Deco(u"é"), Deco(u"deleted")};
  Fonts bar = {Bar(u"B0"), Bar(u"ü"), Bar(sixteen), Bar(u"deleted")};
  FontStore store = {};
  store.DecoFonts = deco.data();
  store.BarFonts = bar.data();
  store.DecoFontNum = store.BarFontNum = 3;
  machine().SetInstalledFontFamilies({u"Installed Face", longest});
  HDC dc = GetDC(nullptr);
  const auto validate = [&](const std::u16string& name, FontKindCode kind, int index) {
    return ValidateFontName(store, dc, name.c_str(), index, kind);
  };
  const auto expectForNewFont = [&](FontNameResult result,
                                    const std::vector<std::u16string>& names) {
    for (const auto& name : names)
      EXPECT_EQ(validate(name, kDecorativeFont, -1), result) << testing::PrintToString(name);
  };
  expectForNewFont(kBlank, {u"", u" \u3000 "});
  expectForNewFont(kReserved,
                   {u"VELA X20", u"VELA 漢字(縦書)", u"VELA POP", u"Installed Face", longest});
  expectForNewFont(kDuplicate, {u"D0", u"é", u"B0"});
  expectForNewFont(kBadCharacter, {u"ü", fifteen + u"é"});
  expectForNewFont(kTooLong, {sixteen});
  expectForNewFont(kValid,
                   {u"VELA X20 ", u"VELA X25", u"installed face", u"deleted", fifteen + u"a"});
  // A changed font may keep its name.
  EXPECT_EQ(validate(u"D0", kDecorativeFont, 0), kValid);
  EXPECT_EQ(validate(u"D0", kDecorativeFont, 1), kDuplicate);
  EXPECT_EQ(validate(u"D0", kBarcodeFont, 0), kDuplicate);
  EXPECT_EQ(validate(u"B0", kBarcodeFont, 0), kValid);
  EXPECT_EQ(validate(u"B0", kBarcodeFont, 1), kDuplicate);
  EXPECT_EQ(validate(u"B0", kDecorativeFont, 0), kDuplicate);
  ReleaseDC(nullptr, dc);
}

}  // namespace
}  // namespace fonts
