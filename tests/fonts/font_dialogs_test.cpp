// The parts that both font dialogs share: the name and the serial numbering.
#include "font_fixture.h"
#include "fonts/font_names.h"

namespace fonts {
namespace {

using FontDialogs = FontTest;

TEST_F(FontDialogs, SerialNumberingIsStoredAndShown) {
  const std::array<int16_t, 4> numbers = {5, -9999, 12, 8};
  for (const KindControls& kind : {kDeco, kBar}) {
    const std::vector<int> inputs = {kind.hexadecimal, kind.decimal, kind.step};
    const Font font = kind.list == kDeco.list ? Deco(u"A") : Bar(u"A");
    const Font numbered = Font(font).Numbered(true, true, numbers);
    ExpectChange(kind, font, numbered,
                 {ExpectEnabled(inputs, false), ExpectChecked({kind.serialOff, kind.decimal}),
                  Click(kind.serialOn), ExpectEnabled(inputs), Click(kind.hexadecimal),
                  Replace(kind.sameIssue, u"5"), Replace(kind.step, u"-9999"),
                  Replace(kind.activeDigits, u"12"), Replace(kind.lowDigits, u"8"),
                  Paste(kind.lowDigits, u"+1")});
    ExpectChange(kind, numbered, Font(numbered).Numbered(false, false, numbers),
                 {ExpectEnabled(inputs), ExpectChecked({kind.serialOn, kind.hexadecimal}),
                  Click(kind.decimal), Click(kind.serialOff), ExpectEnabled(inputs, false)});
  }
}

TEST_F(FontDialogs, MissingNameAndSerialNumberOutsideItsLimitsAreRejected) {
  for (const KindControls& kind : {kDeco, kBar}) {
    Cancel(kFontTab,
           New(kind, u"A",
               {Click(IDOK),
                CloseMessage(u"登録フォント名を入力して下さい。", MB_ICONEXCLAMATION,
                             kind.RegisterTitle()),
                ExpectFocus(kind.name), Replace(kind.name, u"A"), Click(kind.serialOn),
                ExpectRejected(
                    kind.RegisterTitle(), u"連番設定\n",
                    {{kind.sameIssue, u"同一発行枚数", u"枚", u"0", u"1", u"9999", u"4294967301"},
                     {kind.step, u"増減値", u"", u"-10000", u"-9999", u"9999", u"10000"},
                     {kind.activeDigits, u"連番有効桁数", u"枚", u"0", u"1", u"99", u"100"},
                     {kind.lowDigits, u"下位無効桁数", u"枚", u"-1", u"0", u"99", u"100"}})}));
  }
}

// Registered names may break a rule themselves: such a name shows which rule comes first.
TEST_F(FontDialogs, FirstBrokenRuleOfANameIsReported) {
  using enum FontNameResult;
  const std::u16string longest(31, u'a'), fifteen(15, u'あ'),
      sixteen(16, u'あ');  // 31, 30, 32 bytes
  Fonts deco = {Deco(u"D0"), Deco(u"VELA POP"), Deco(u"é")};
  Fonts bar = {Bar(u"B0"), Bar(u"ü"), Bar(sixteen)};
  FontStore store = {};
  store.DecoFonts = deco.data();
  store.BarFonts = bar.data();
  store.DecoFontNum = store.BarFontNum = 3;
  machine().SetInstalledFontFamilies({u"Installed Face", longest});
  HDC dc = GetDC(nullptr);
  const auto validate = [&](const std::u16string& name, FontKindCode kind, int index) {
    return ValidateFontName(store, dc, name.c_str(), index, kind);
  };
  const std::pair<std::u16string, FontNameResult> kNewNames[] = {
      {u" \u3000 ", kBlank},       {u"VELA POP", kReserved}, {u"Installed Face", kReserved},
      {longest, kReserved},        {u"é", kDuplicate},       {u"B0", kDuplicate},
      {u"ü", kBadCharacter},       {sixteen, kTooLong},      {u"VELA X25", kValid},
      {u"installed face", kValid}, {fifteen + u"a", kValid}};
  for (const auto& [name, result] : kNewNames)
    EXPECT_EQ(validate(name, kDecorativeFont, -1), result) << testing::PrintToString(name);
  EXPECT_EQ(validate(u"D0", kDecorativeFont, 0), kValid);
  EXPECT_EQ(validate(u"D0", kBarcodeFont, 0), kDuplicate);
  EXPECT_EQ(validate(u"B0", kBarcodeFont, 0), kValid);
  ReleaseDC(nullptr, dc);
}

}  // namespace
}  // namespace fonts
