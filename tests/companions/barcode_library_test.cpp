#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <set>
#include <string>

#include "companion_fixture.h"

namespace {

using platform::Desk;
using platform::ScriptedUser;

struct Kind {
  const char* suffix;
  int id;
};
constexpr Kind kKinds[] = {{"UPCA", 100},   {"UPCE", 200},   {"JAN8", 300},    {"JAN13", 400},
                           {"CODE39", 500}, {"CODE93", 600}, {"CODE128", 700}, {"UCC128", 800},
                           {"INT25", 900},  {"NW7", 1200},   {"CUSTOM", 1300}, {"RSS", 2500},
                           {"QR1", 1400},   {"QR2", 1500},   {"QRM", 1600},    {"PDF417", 1700},
                           {"MAXI", 1900},  {"ECC", 2000},   {"MPDF417", 2100}};

using Block = std::array<BYTE, 48>;  // eight bytes more than the library may touch
using GetBarNameProc = void(WINAPI*)(char*);
using BlockProc = WORD(WINAPI*)(BYTE*, const uint16_t*, HWND);

constexpr WORD kConfirmed = 1, kCancelled = 2;
// Controls of a detail dialog by the row of their parameter: id, rotation, unit, the layout's own.
constexpr int kControl = 1000, kSpin = 1100, kUnitList = kControl + 2, kOk = 1, kCancel = 2;

int Word(const Block& block, int offset) {
  const auto at = static_cast<std::size_t>(offset);
  return block[at] | block[at + 1] << 8;
}

class BarcodeLibrary : public CompanionTest {
 protected:
  void SetUp() override { ASSERT_NE(Load("QM610rBAR"), nullptr); }

  Block Defaults(const std::string& suffix, uint16_t density = 203) {
    Block block;
    block.fill(0xEE);
    const uint16_t info[4] = {density, density, 0, 0};
    EXPECT_NE(Entry<BlockProc>("Init" + suffix)(block.data(), info, nullptr), kConfirmed);
    return block;
  }

  // Shows the detail dialog over a block while a user does the steps.
  WORD Show(const std::string& suffix, Block& block, std::vector<ScriptedUser::Step> steps,
            uint16_t density = 203) {
    const uint16_t info[4] = {density, density, 0, 0};
    ScriptedUser user(std::move(steps));
    machine_->desk().Attach(&user);
    const WORD result = Entry<BlockProc>("ShowDlg" + suffix)(block.data(), info, nullptr);
    machine_->desk().Attach(nullptr);
    EXPECT_EQ(user.Problem(), "") << suffix;
    EXPECT_TRUE(user.Finished()) << suffix;
    return result;
  }
};

ScriptedUser::Step Click(int id) {
  return [id](Desk& desk) { EXPECT_TRUE(desk.Click(id)); };
}
ScriptedUser::Step Replace(int id, std::u16string text) {
  return [id, text](Desk& desk) { EXPECT_TRUE(desk.Replace(id, text)); };
}
ScriptedUser::Step Select(int id, int index) {
  return [id, index](Desk& desk) { EXPECT_TRUE(desk.Select(id, index)); };
}
ScriptedUser::Step Reads(int id, std::u16string text) {
  return [id, text](Desk& desk) { EXPECT_EQ(desk.Text(id), text); };
}
// A message box that begins with a text is closed; the focus is then on the control.
ScriptedUser::Step Refused(std::u16string beginning) {
  return [beginning](Desk& desk) {
    ASSERT_TRUE(desk.IsMessageBox());
    EXPECT_TRUE(desk.MessageText().starts_with(beginning));
    EXPECT_EQ(desk.MessageStyle() & MB_ICONMASK, MB_ICONEXCLAMATION);
    desk.Click(kOk);
  };
}
ScriptedUser::Step Focused(int id) {
  return [id](Desk& desk) { EXPECT_EQ(desk.FocusedId(), id); };
}

TEST_F(BarcodeLibrary, NamesEveryKindInThirtyOneBytes) {
  std::set<std::string> names;
  for (const Kind& kind : kKinds) {
    std::array<char, 40> name;
    name.fill('\x7E');
    Entry<GetBarNameProc>(std::string("GetBarName") + kind.suffix)(name.data());
    const auto end = std::find(name.begin(), name.end(), '\0');
    EXPECT_LE(end - name.begin(), 31) << kind.suffix;
    EXPECT_GT(end - name.begin(), 0) << kind.suffix;
    EXPECT_EQ(name[32], '\x7E') << "nothing is written past the caller's buffer";
    names.insert(name.data());
  }
  EXPECT_EQ(names.size(), std::size(kKinds)) << "names tell the kinds apart";
}

TEST_F(BarcodeLibrary, DefaultsStayInTheirBlockAndPassTheirOwnDialog) {
  for (const Kind& kind : kKinds) {
    Block block = Defaults(kind.suffix);
    EXPECT_EQ(Word(block, 0), kind.id);
    EXPECT_EQ(Word(block, 10), 2) << "dots";
    EXPECT_TRUE(std::all_of(block.begin() + 40, block.end(), [](BYTE b) { return b == 0xEE; }));
    const Block before = block;
    EXPECT_EQ(Show(kind.suffix, block, {Click(kOk)}), kConfirmed) << kind.suffix;
    EXPECT_EQ(block, before) << kind.suffix;
  }
}

TEST_F(BarcodeLibrary, HeightsOfDefaultsAreTenMillimetresAtEitherDensity) {
  EXPECT_EQ(Word(Defaults("JAN13", 203), 14), 80);
  EXPECT_EQ(Word(Defaults("JAN13", 305), 14), 120);
}

TEST_F(BarcodeLibrary, EditsTheCellSizeOfAQrCodeWithinItsRange) {
  constexpr int cell = kControl + 4;
  Block block = Defaults("QR2");
  const Block before = block;
  EXPECT_EQ(Show("QR2", block,
                 {Replace(cell, u"51"), Click(kOk), Refused(u"セルサイズ"), Focused(cell),
                  Replace(cell, u"0"), Click(kOk), Refused(u"セルサイズ"), Replace(cell, u""),
                  Click(kOk), Refused(u"セルサイズ"), Replace(cell, u"8"), Click(kCancel)}),
            kCancelled);
  EXPECT_EQ(block, before);
  EXPECT_EQ(Show("QR2", block, {Replace(cell, u"50"), Select(kControl + 3, 3), Click(kOk)}),
            kConfirmed);
  EXPECT_EQ(Word(block, 14), 50);
  EXPECT_EQ(Word(block, 12), 3);
}

TEST_F(BarcodeLibrary, AnotherUnitKeepsTheHeightAndItsRange) {
  constexpr int height = kControl + 4;
  Block block = Defaults("CODE128");
  EXPECT_EQ(
      Show("CODE128", block,
           {Select(kUnitList, 0), Reads(height, u"10.0"), Replace(height, u"125.1"), Click(kOk),
            Refused(u"バーの高さ\n1.0mm から 125.0mm"), Replace(height, u"12.5"), Click(kOk)}),
      kConfirmed);
  EXPECT_EQ(Word(block, 10), 0);
  EXPECT_EQ(Word(block, 14), 125);
  EXPECT_EQ(Show("CODE128", block,
                 {Reads(height, u"12.5"), [](Desk& desk) { EXPECT_TRUE(desk.Spin(kSpin + 4, 1)); },
                  Reads(height, u"12.6"), Select(kUnitList, 1), Reads(height, u"0.496"),
                  Select(kUnitList, 2), Reads(height, u"101"), Click(kOk)}),
            kConfirmed);
  EXPECT_EQ(Word(block, 10), 2);
  EXPECT_EQ(Word(block, 14), 101);
}

TEST_F(BarcodeLibrary, PostalCodesAreBytesOfCodePage932) {
  constexpr int custom = kControl + 4, maxi = kControl + 7;
  Block block = Defaults("CUSTOM");
  EXPECT_EQ(Show("CUSTOM", block,
                 {Replace(custom, u"あいうえ"), Click(kOk), Refused(u"郵便番号\n7 バイト"),
                  Focused(custom), Replace(custom, u"😀"), Click(kOk), Refused(u"郵便番号"),
                  Replace(custom, u"1234567"), Click(kOk)}),
            kConfirmed);
  EXPECT_EQ(std::memcmp(block.data() + 14, "1234567\0", 8), 0);
  EXPECT_EQ(Show("CUSTOM", block, {Reads(custom, u"1234567"), Click(kOk)}), kConfirmed);

  block = Defaults("MAXI");
  EXPECT_EQ(Show("MAXI", block, {Replace(maxi, u"ｶﾅ45678901234567890"), Click(kOk)}), kConfirmed);
  EXPECT_EQ(std::memcmp(block.data() + 20,
                        "\xB6\xC5"
                        "45678901234567890\0",
                        20),
            0);
  EXPECT_EQ(block[40], 0xEE);
}

TEST_F(BarcodeLibrary, AForeignBlockIsShownButNotConfirmedAsItIs) {
  for (const Kind& kind : kKinds) {
    Block block;
    block.fill(0xFF);
    const Block before = block;
    EXPECT_EQ(Show(kind.suffix, block, {Click(kOk), Refused(u""), Click(kCancel)}), kCancelled)
        << kind.suffix;
    EXPECT_EQ(block, before) << kind.suffix;
  }
}

TEST_F(BarcodeLibrary, ClosingTheWindowCancels) {
  Block block = Defaults("ECC");
  EXPECT_EQ(Show("ECC", block, {[](Desk& desk) { EXPECT_TRUE(desk.Close()); }}), kCancelled);
}

}  // namespace
