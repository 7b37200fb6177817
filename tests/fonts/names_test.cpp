// The rules for names of registered fonts, and their order.
#include "font_fixture.h"
#include "fonts/font_names.h"
#include "fonts/font_store.h"
#include "fonts/resident_fonts.h"

namespace fonts {
namespace {

using kestrel::FontNameVerdict;
using support::OpenedPrinter;

constexpr char16_t kFifteen[] = u"あいうえおかきくけこさしすせそ";
constexpr char16_t kSixteen[] = u"あいうえおかきくけこさしすせそた";
constexpr char16_t kSixteenAndBad[] = u"あいうえおかきくけこさしすせそたé";

class FontNamesTest : public FontTest {
 protected:
  void SetUp() override {
    FontTest::SetUp();
    // Some of these names no rule would let in; they show which rule comes first.
    Store({Deco(u"Deco"), Deco(u"　　　"), Deco(u"VELA POP"), Deco(u"Installed Face"), Deco(u"é"),
           Bar(u"Bar"), Bar(u"ü"), Bar(kSixteen)});
    const OpenedPrinter printer;
    ASSERT_TRUE(kestrel::LoadFontStore(store_, printer, GetProcessHeap()));
  }
  void TearDown() override {
    kestrel::FreeFontStore(store_, GetProcessHeap());
    FontTest::TearDown();
  }
  FontNameVerdict Judge(const std::u16string& name, int index = -1, bool barcode = false) {
    HDC dc = GetDC(nullptr);
    const FontNameVerdict verdict =
        kestrel::JudgeFontName(store_, dc, name.c_str(), index,
                               barcode ? kestrel::kBarcodeFont : kestrel::kDecorativeFont);
    ReleaseDC(nullptr, dc);
    return verdict;
  }

  kestrel::FontStore store_;
};

TEST_F(FontNamesTest, AreJudgedInOrder) {
  using enum FontNameVerdict;
  const struct {
    const char16_t* name;
    FontNameVerdict verdict;
  } kCases[] = {
      {u"", kBlank},
      {u" 　 ", kBlank},
      {u"　　　", kBlank},  // also taken
      {u"VELA X20", kReserved},
      {u"VELA POP", kReserved},  // also taken
      {u"VELA X20 ", kGood},
      {u"VELA X25", kGood},
      {u"VELA ", kGood},
      {u"vela X20", kGood},
      {u"X20", kGood},
      {u"ＭＳ ゴシック", kReserved},
      {u"Installed Face", kReserved},  // also taken
      {u"Installed", kGood},
      {u"installed face", kGood},
      {u"Installed Face 2", kGood},
      {u"Deco", kTaken},
      {u"deco", kGood},
      {u"Deco ", kGood},
      {u"é", kTaken},  // also without a form
      {u"a?b", kGood},
      {u"aéb", kBadCharacter},
      {u"¥", kBadCharacter},
      {u"\xD83D", kBadCharacter},
      {u"ü", kBadCharacter},            // also a barcode font's
      {kSixteenAndBad, kBadCharacter},  // also too long
      {kFifteen, kGood},
      {u"あいうえおかきくけこさしすせそa", kGood},  // 31 bytes
      {kSixteen, kTooLong},                         // also a barcode font's
      {u"1234567890123456789012345678901", kGood},
      {u"ｱｲｳｴｵｶｷｸｹｺｻｼｽｾｿﾀﾁﾂﾃﾄﾅﾆﾇﾈﾉﾊﾋﾌﾍﾎﾏ", kGood},  // half-width: a byte each
      {u"Bar", kTaken},
  };
  for (const auto& c : kCases)
    EXPECT_EQ(Judge(c.name), c.verdict) << testing::PrintToString(c.name);
}

// A font's own record does not count against its name; the record at the same place of the other
// list does.
TEST_F(FontNamesTest, OwnNameIsFree) {
  using enum FontNameVerdict;
  EXPECT_EQ(Judge(u"Deco", 0), kGood);
  EXPECT_EQ(Judge(u"Deco", 1), kTaken);
  EXPECT_EQ(Judge(u"Bar", 0), kTaken);
  EXPECT_EQ(Judge(u"Bar", 0, true), kGood);
  EXPECT_EQ(Judge(u"Bar", 1, true), kTaken);
  EXPECT_EQ(Judge(u"Deco", 0, true), kTaken);
}

// Every length of a stored name is compared whole, up to one that fills its field.
TEST_F(FontNamesTest, StoredNamesNeedNoEnd) {
  const std::u16string full(32, u'x');
  Record unterminated = Deco(u"");
  unterminated.Put(66, full);
  std::memcpy(&store_.DecoFonts[0], unterminated.bytes.data(), sizeof(Record));
  EXPECT_EQ(Judge(full.substr(0, 31)), FontNameVerdict::kGood);
  EXPECT_EQ(Judge(u"x"), FontNameVerdict::kGood);
}

}  // namespace
}  // namespace fonts
