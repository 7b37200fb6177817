// The barcode detail library: names, defaults and the detail dialog of every kind.
#include <algorithm>
#include <array>
#include <cstring>
#include <set>

#include "tests/companions/companion_fixture.h"
#include "tests/support/steps.h"

namespace support {
namespace {

constexpr struct {
  const char* suffix;
  int id;
} kKinds[] = {{"UPCA", 100},   {"UPCE", 200},   {"JAN8", 300},    {"JAN13", 400},
              {"CODE39", 500}, {"CODE93", 600}, {"CODE128", 700}, {"UCC128", 800},
              {"INT25", 900},  {"NW7", 1200},   {"CUSTOM", 1300}, {"RSS", 2500},
              {"QR1", 1400},   {"QR2", 1500},   {"QRM", 1600},    {"PDF417", 1700},
              {"MAXI", 1900},  {"ECC", 2000},   {"MPDF417", 2100}};

using Block = std::array<BYTE, 48>;  // eight bytes more than the library may touch
using GetBarNameProc = void(WINAPI*)(char*);
using BlockProc = WORD(WINAPI*)(BYTE*, const uint16_t*, HWND);

// Controls of a detail dialog by the row of their parameter: rotation, unit, the layout's own.
constexpr int kControl = 1000, kSpin = 1100, kUnitList = kControl + 1, kHeight = kControl + 3;

int Word(const Block& block, std::size_t at) { return block[at] | block[at + 1] << 8; }

class BarcodeLibrary : public CompanionTest {
 protected:
  void SetUp() override { ASSERT_NE(Load("QM610rBAR"), nullptr); }

  Block Defaults(const std::string& suffix, uint16_t density = 203) {
    Block block;
    block.fill(0xEE);
    const uint16_t info[4] = {density, density, 0, 0};
    EXPECT_EQ(Entry<BlockProc>("Init" + suffix)(block.data(), info, nullptr), 0);
    return block;
  }
  // The answer of the detail dialog over a block while a person does the steps.
  int Show(const std::string& suffix, Block& block, Steps steps) {
    SCOPED_TRACE(suffix);
    const uint16_t info[4] = {203, 203, 0, 0};
    return Follow(std::move(steps), [&] {
      return Entry<BlockProc>("ShowDlg" + suffix)(block.data(), info, nullptr);
    });
  }
  static Step Refused(std::u16string beginning) {
    return [beginning](Desk& desk) {
      EXPECT_TRUE(desk.IsMessageBox() && desk.MessageText().starts_with(beginning));
      desk.Click(IDOK);
    };
  }
};

TEST_F(BarcodeLibrary, EveryKindHasANameAndDefaultsThatPassItsDialog) {
  std::set<std::string> names;
  for (const auto& [suffix, id] : kKinds) {
    std::array<char, 40> name;
    name.fill('\x7E');
    Entry<GetBarNameProc>(std::string("GetBarName") + suffix)(name.data());
    EXPECT_EQ(name[32], '\x7E') << "nothing is written past the caller's buffer";
    EXPECT_LE(std::find(name.begin(), name.end(), '\0') - name.begin(), 31) << suffix;
    names.insert(name.data());
    Block block = Defaults(suffix);
    EXPECT_EQ(Word(block, 0), id);
    EXPECT_EQ(Word(block, 10), 2) << "dots";
    EXPECT_TRUE(std::all_of(block.begin() + 40, block.end(), [](BYTE b) { return b == 0xEE; }));
    const Block before = block;
    EXPECT_EQ(Show(suffix, block, {Click(IDOK)}), IDOK);
    EXPECT_EQ(block, before) << suffix;
    block.fill(0xFF);
    EXPECT_EQ(Show(suffix, block, {Click(IDOK), Refused(u""), Close()}), IDCANCEL);
    EXPECT_TRUE(std::all_of(block.begin(), block.end(), [](BYTE b) { return b == 0xFF; }));
  }
  EXPECT_EQ(names.size(), std::size(kKinds)) << "names tell the kinds apart";
  EXPECT_EQ(Word(Defaults("JAN13", 305), 14), 120) << "10 mm";
}

TEST_F(BarcodeLibrary, NumbersStayInTheirRangeAndMeasuresKeepTheirLength) {
  constexpr int kCell = kControl + 3;
  Block block = Defaults("QR2");
  EXPECT_EQ(Show("QR2", block,
                 {Replace(kCell, u"51"), Click(IDOK), Refused(u"セルサイズ\n1 ～ 50"),
                  ExpectFocus(kCell), Replace(kCell, u""), Click(IDOK), Refused(u"セルサイズ"),
                  Replace(kCell, u"50"), Select(kControl + 2, 3), Click(IDOK)}),
            IDOK);
  EXPECT_EQ(std::pair(Word(block, 14), Word(block, 12)), std::pair(50, 3));

  block = Defaults("CODE128");
  const auto refused = [](std::u16string text) {
    return Steps{Replace(kHeight, text), Click(IDOK), Refused(u"バーの高さ")};
  };
  EXPECT_EQ(Show("CODE128", block,
                 {Select(kUnitList, 0), ExpectText(kHeight, u"10.0"), refused(u"125.1"),
                  refused(u"1.2.3"), refused(u"4294968"), Replace(kHeight, u"12.4"),
                  Spin(kSpin + 3, 1), ExpectText(kHeight, u"12.5"), Click(IDOK)}),
            IDOK);
  EXPECT_EQ(std::pair(Word(block, 10), Word(block, 14)), std::pair(0, 125));
  EXPECT_EQ(Show("CODE128", block,
                 {Replace(kHeight, u"12.6"), Select(kUnitList, 1), ExpectText(kHeight, u"0.496"),
                  Select(kUnitList, 2), ExpectText(kHeight, u"101"), Click(IDOK)}),
            IDOK);
  EXPECT_EQ(std::pair(Word(block, 10), Word(block, 14)), std::pair(2, 101));
}

TEST_F(BarcodeLibrary, PostalCodesAreBytesOfCodePage932) {
  constexpr int kCustom = kControl + 3, kMaxi = kControl + 6;
  Block block = Defaults("CUSTOM");
  EXPECT_EQ(Show("CUSTOM", block,
                 {Replace(kCustom, u"あいうえ"), Click(IDOK), Refused(u"郵便番号\n7 バイト"),
                  Replace(kCustom, u"😀"), Click(IDOK), Refused(u"郵便番号\n不正"),
                  Replace(kCustom, u"1234567"), Click(IDOK)}),
            IDOK);
  EXPECT_EQ(std::memcmp(block.data() + 14, "1234567\0", 8), 0);
  block = Defaults("MAXI");
  EXPECT_EQ(Show("MAXI", block, {Replace(kMaxi, u"ｶﾅ45678901234567890"), Click(IDOK)}), IDOK);
  EXPECT_EQ(std::memcmp(block.data() + 20,
                        "\xB6\xC5"
                        "45678901234567890\0",
                        20),
            0);
  EXPECT_EQ(block[40], 0xEE);
}

}  // namespace
}  // namespace support
