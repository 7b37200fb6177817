// The rules for names of registered fonts, and their order.
#include "font_fixture.h"
#include "fonts/font_names.h"
#include "fonts/font_store.h"

namespace fonts {
namespace {

using kestrel::FontNameVerdict;
using enum kestrel::FontNameVerdict;

class FontNamesTest : public FontTest {
 protected:
  void SetUp() override {
    FontTest::SetUp();
    // Some of these names no rule would let in; they show which rule comes first.
    Store({Deco(u"Deco"), Deco(u"　　　"), Deco(u"VELA POP"), Deco(u"Installed Face"), Deco(u"é"),
           Bar(u"Bar"), Bar(u"ü"), Bar(u"あいうえおかきくけこさしすせそた")});
    // A stored name may fill its field.
    std::u16string full(32, u'x');
    SetRecords([&] {
      Records records = Stored();
      records[1].Put(66, full);
      return records;
    }());
    const OpenedPrinter printer;
    ASSERT_TRUE(kestrel::LoadFontStore(store_, printer, GetProcessHeap()));
    // What lies behind a list's end is no font.
    std::memcpy(&store_.DecoFonts[store_.DecoFontNum], Deco(u"Gone").bytes.data(), sizeof(Record));
    std::memcpy(&store_.BarFonts[store_.BarFontNum], Bar(u"Gone").bytes.data(), sizeof(Record));
  }
  void TearDown() override {
    kestrel::FreeFontStore(store_, GetProcessHeap());
    FontTest::TearDown();
  }
  kestrel::FontStore store_;
};

TEST_F(FontNamesTest, AreJudgedInOrder) {
  const struct {
    const char16_t* name;
    FontNameVerdict verdict;
    int index = -1;
    bool barcode = false;
  } kCases[] = {
      {u"", kBlank},
      {u" 　 ", kBlank},
      {u"VELA X20", kReserved},
      {u"VELA 漢字(縦書)", kReserved},
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
      {u"ü", kBadCharacter},                                  // also a barcode font's
      {u"あいうえおかきくけこさしすせそたé", kBadCharacter},  // also too long
      {u"あいうえおかきくけこさしすせそa", kGood},            // 31 bytes
      {u"あいうえおかきくけこさしすせそた", kTooLong},        // also a barcode font's
      {u"xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx", kGood},            // a stored one is longer
      {u"ｱｲｳｴｵｶｷｸｹｺｻｼｽｾｿﾀﾁﾂﾃﾄﾅﾆﾇﾈﾉﾊﾋﾌﾍﾎﾏ", kGood},            // half-width: a byte each
      {u"Bar", kTaken},
      {u"Gone", kGood},
      // A font's own record does not count against its name; the record at the same place of the
      // other list does.
      {u"Deco", kGood, 0},
      {u"Deco", kTaken, 1},
      {u"Bar", kTaken, 0},
      {u"Bar", kGood, 0, true},
      {u"Bar", kTaken, 1, true},
      {u"Deco", kTaken, 0, true},
  };
  HDC dc = GetDC(nullptr);
  for (const auto& c : kCases) {
    EXPECT_EQ(kestrel::JudgeFontName(store_, dc, c.name, c.index,
                                     c.barcode ? kestrel::kBarcodeFont : kestrel::kDecorativeFont),
              c.verdict)
        << testing::PrintToString(std::u16string(c.name)) << c.index << c.barcode;
  }
  ReleaseDC(nullptr, dc);
}

}  // namespace
}  // namespace fonts
