// The device page, with device libraries of all sorts behind it.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "resources/resource.h"
#include "tests/support/open_sheet.h"
#include "tests/support/settings.h"

namespace kestrel {
namespace {

using platform::Desk;
using support::Click;
using support::DefaultBlock;
using support::GoTo;
using support::kDeviceTab;
using support::kOperationTab;
using support::kPaperTab;
using support::kPrinter;
using support::PressOk;
using support::SheetKind;
using support::Steps;
using support::StoreBlock;

constexpr char16_t kLibrary[] = u"QM610rLIB.DLL";
constexpr char16_t kQueryFailed[] = u"プリンタから情報を取得できませんでした。";
constexpr char16_t kDensityWarning[] =
    u"解像度が変更されました。設定されたデータが現在の\n解像度で不正な値になる可能性があります。\n"
    u"特に以下のデータについて、現在の解像度で\n正当なデータかどうかを確認してください。\n"
    u"\t・用紙サイズ\n\t・フォントサイズ";
constexpr char16_t kModeWarning[] =
    u"機種が変更されました。設定されたデータが現在の\n機種では不正な値になる可能性があります。\n"
    u"特に以下のデータについて現在の機種で、\n正当なデータかどうかを確認してください。\n"
    u"\t・印字基点補正\n\t・ﾒｶﾆｽﾞﾑ寸法補正\n";

// The library that answers, and what it was asked.
struct Device {
  std::vector<std::pair<size_t, BYTE>> bytes;  // written into the reply
  std::string text;                            // written from its start
  DWORD answer = 1;
  int asked = 0;
} device;

DWORD Answer(BYTE* reply, BYTE untouched, DWORD replySize, DWORD expectedSize, LPCWSTR name,
             const DWORD* size) {
  ++device.asked;
  EXPECT_EQ(std::u16string(name), kPrinter);
  EXPECT_EQ(replySize, expectedSize);
  EXPECT_EQ(*size, expectedSize);
  for (DWORD i = 0; i < replySize; ++i) EXPECT_EQ(reply[i], untouched) << i;
  EXPECT_EQ(platform::Machine::Current().desk().Cursor(), LoadCursorW(nullptr, IDC_WAIT));
  for (const auto& [at, byte] : device.bytes) reply[at] = byte;
  device.text.copy(reinterpret_cast<char*>(reply), replySize);
  return device.answer;
}

DWORD WINAPI FakeMode(LPCWSTR name, BYTE* reply, DWORD replySize, DWORD* size, DWORD* status) {
  EXPECT_NE(status, nullptr);
  return Answer(reply, 0xFF, replySize, 30, name, size);
}
DWORD WINAPI FakeVersion(LPCWSTR name, BYTE* reply, DWORD replySize, DWORD* size, DWORD* status) {
  EXPECT_NE(status, nullptr);
  return Answer(reply, 0, replySize, 50, name, size);
}

template <typename Proc>
FARPROC AnyEntry(Proc* proc) {
  return reinterpret_cast<FARPROC>(reinterpret_cast<void (*)()>(proc));
}

struct Box {
  std::u16string caption, text;
  UINT style;
};

class DevicePageTest : public support::MachineTest {
 protected:
  void SetUp() override {
    MachineTest::SetUp();
    InstallLibrary();
  }
  void InstallLibrary() {
    device = {};
    machine().RegisterModule(kLibrary, {{"RtlGetModeComW", AnyEntry(FakeMode)},
                                        {"RtlGetVersionComW", AnyEntry(FakeVersion)}});
  }
  void Start(uint16_t mode, uint16_t density = 203) {
    DriverSettingsBlock block = DefaultBlock();
    block.Printer.Mecha = mode;
    block.Printer.HeadDensity = density;
    StoreBlock(machine(), block);
  }
  // Opens the page, does what is asked and presses OK; the printer part that is kept then.
  PrinterSettingsPart Leave(Steps steps, SheetKind kind = SheetKind::kUserDefault,
                            bool permission = true) {
    steps.insert(steps.begin(), GoTo(kDeviceTab));
    steps.push_back(PressOk());
    support::ShowSheet(exports_, {.kind = kind, .permission = permission}, std::move(steps));
    return support::KeptPrinterPart(machine());
  }
  // Asks the printer by a button and closes the boxes that follow, one after another.
  Steps Query(int button, const std::vector<Box>& boxes) {
    Steps steps = {[this](Desk&) { modules_ = machine().OpenModules(); }, Click(button)};
    for (const Box& box : boxes) {
      steps.push_back(support::CloseMessage(box.text, box.style, box.caption));
    }
    steps.push_back([this](Desk& desk) {
      EXPECT_EQ(desk.ModalDepth(), 1);
      EXPECT_EQ(desk.Cursor(), LoadCursorW(nullptr, IDC_ARROW));
      EXPECT_EQ(machine().OpenModules(), modules_);
    });
    return steps;
  }

 private:
  int modules_ = 0;
};

const Box kFailureBox = {u"デバイスの設定", kQueryFailed, MB_ICONHAND};
const Box kDensityBox = {u"デバイスの設定", kDensityWarning, MB_ICONEXCLAMATION};
const Box kModeBox = {u"デバイスの設定", kModeWarning, MB_ICONEXCLAMATION};
const Box kNoLibraryBox = {u"DeviceDlgFunc", u"LoadLibrary Error!", MB_OK};
const Box kNoEntryBox = {u"DeviceDlgFunc", u"GetProcAddress Error!", MB_OK};

TEST_F(DevicePageTest, TakesWhatThePrinterTells) {
  const struct {
    const char* what;
    uint16_t mode, density;
    std::vector<std::pair<size_t, BYTE>> reply;
    std::vector<Box> boxes;
    uint16_t modeAfter, densityAfter;
    int row;
  } kCases[] = {
      {"nothing told", 1, 203, {}, {}, 1, 203, 1},
      {"the same again", 2, 203, {{1, 0}, {3, 2}}, {}, 2, 203, 2},
      {"peel", 0, 203, {{1, 0}, {3, 2}}, {kModeBox}, 2, 203, 2},
      {"tear-off", 2, 203, {{3, 0}}, {kModeBox}, 0, 203, 0},
      {"unknown mode", 1, 203, {{1, 0}, {3, 3}}, {}, 1, 203, 1},
      {"unknown density", 0, 203, {{1, 1}, {3, 0}}, {}, 0, 203, 0},
      {"density told to a block at 305", 0, 305, {{1, 0}}, {kDensityBox}, 0, 203, 0},
      {"both", 0, 305, {{1, 0}, {3, 1}}, {kDensityBox, kModeBox}, 1, 203, 1},
      {"305 stays 305", 0, 305, {{1, 1}}, {}, 0, 305, 0},
      {"other bytes", 0, 203, {{0, 2}, {2, 2}, {4, 2}, {29, 2}}, {}, 0, 203, 0},
      {"a mode that no list holds", 9, 203, {}, {}, 9, 203, 0},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    Start(c.mode, c.density);
    device = {.bytes = c.reply, .text = {}};
    Steps steps = Query(IDC_DEVICE_QUERY_MODE, c.boxes);
    steps.push_back([&](Desk& desk) {
      EXPECT_EQ(desk.Control(IDC_DEVICE_MODE).selection, c.row);
      EXPECT_EQ(desk.Text(IDC_DEVICE_DENSITY), u"203dpi(  8本/mm)");
      EXPECT_EQ(desk.Text(IDC_HELP_TEXT), u"ハードウェア情報を取得します。");
    });
    steps.push_back(support::ExpectChanged(true));
    const PrinterSettingsPart kept = Leave(std::move(steps));
    EXPECT_EQ(device.asked, 1);
    EXPECT_EQ(kept.Mecha, c.modeAfter);
    EXPECT_EQ(kept.HeadDensity, c.densityAfter);
  }
}

TEST_F(DevicePageTest, TellsOfEachFailure) {
  enum Failure { kNoLibrary, kNoEntry, kCallFails };
  const struct {
    const char* what;
    int button;
    Failure failure;
    std::vector<Box> boxes;
  } kCases[] = {
      {"mode, no library", IDC_DEVICE_QUERY_MODE, kNoLibrary, {kNoLibraryBox, kFailureBox}},
      {"mode, no entry point", IDC_DEVICE_QUERY_MODE, kNoEntry, {kNoEntryBox, kFailureBox}},
      {"mode, call fails", IDC_DEVICE_QUERY_MODE, kCallFails, {kFailureBox}},
      {"version, no library", IDC_DEVICE_QUERY_VERSION, kNoLibrary, {kFailureBox}},
      {"version, no entry point", IDC_DEVICE_QUERY_VERSION, kNoEntry, {kFailureBox}},
      {"version, call fails", IDC_DEVICE_QUERY_VERSION, kCallFails, {kFailureBox}},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    Start(1, 305);
    InstallLibrary();
    // A failing call may have written its reply all the same.
    device = {.bytes = {{1, 0}, {3, 2}}, .text = {}, .answer = 0};
    if (c.failure == kNoLibrary) machine().UnregisterModule(kLibrary);
    if (c.failure == kNoEntry) machine().RegisterModule(kLibrary, {});
    Steps steps = Query(c.button, c.boxes);
    steps.push_back([](Desk& desk) {
      EXPECT_EQ(desk.Text(IDC_DEVICE_FIRMWARE_VERSION), u"");
      EXPECT_EQ(desk.Text(IDC_DEVICE_FONT_VERSION), u"");
    });
    steps.push_back(support::ExpectChanged(false));
    const PrinterSettingsPart kept = Leave(std::move(steps));
    EXPECT_EQ(kept.Mecha, 1);
    EXPECT_EQ(kept.HeadDensity, 305);
    EXPECT_EQ(device.asked, c.failure == kCallFails ? 1 : 0);
  }
}

TEST_F(DevicePageTest, ShowsTheVersionsOfThePrinter) {
  const auto reply = [](std::string firmware, std::string font, std::string rest = {}) {
    firmware.resize(16);
    font.resize(8);
    return firmware + font + rest;
  };
  const struct {
    const char* what;
    std::string reply;
    std::u16string firmware, font;
    bool whole = true;
  } kCases[] = {
      {"plain", reply("V01.20", "F01.03"), u"V01.20", u"F01.03"},
      {"empty", "", u"", u""},
      {"full without a zero byte", "0123456789ABCDEFabcdefgh" + std::string(26, 'x'),
       u"0123456789ABCDEF", u"abcdefgh"},
      {"one byte short of full", reply("0123456789ABCDE", "abcdefg"), u"0123456789ABCDE",
       u"abcdefg"},
      {"katakana", reply("\xCA\xDE\xB0\xBC\xDE\xAE\xDD", "\x83\x5C\x95\x5C"), u"ﾊﾞｰｼﾞｮﾝ", u"ソ表"},
      {"a character cut by the place",
       "ABCDEFGHIJKLMNO\x83"
       "1234567\x83",
       u"ABCDEFGHIJKLMNO", u"1234567", false},
      {"bytes behind the zero", reply(std::string("V1\0junk", 7), std::string("F\0X", 3)), u"V1",
       u"F"},
      {"no characters", std::string(50, '\xFF'), u"", u"", false},
      {"first halves alone", std::string(50, '\x81'), u"", u"", false},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    Start(0);
    device = {.bytes = {}, .text = c.reply};
    Steps steps = Query(IDC_DEVICE_QUERY_VERSION, {});
    steps.push_back([&](Desk& desk) {
      // What becomes of half a character is the code page's affair; the rest stays whole.
      EXPECT_EQ(desk.Text(IDC_DEVICE_FIRMWARE_VERSION).substr(0, c.firmware.size()), c.firmware);
      EXPECT_LE(desk.Text(IDC_DEVICE_FIRMWARE_VERSION).size(), 16u);
      EXPECT_EQ(desk.Text(IDC_DEVICE_FONT_VERSION).substr(0, c.font.size()), c.font);
      EXPECT_LE(desk.Text(IDC_DEVICE_FONT_VERSION).size(), 8u);
      if (c.whole) {
        EXPECT_EQ(desk.Text(IDC_DEVICE_FIRMWARE_VERSION), c.firmware);
        EXPECT_EQ(desk.Text(IDC_DEVICE_FONT_VERSION), c.font);
      }
      EXPECT_EQ(desk.Text(IDC_HELP_TEXT), u"ハードウェアバージョンを取得します。");
    });
    Leave(std::move(steps));
  }
}

TEST_F(DevicePageTest, ChangesTheModeAtOnce) {
  Start(0);
  const PrinterSettingsPart kept =
      Leave({support::ExpectChanged(false), support::Select(IDC_DEVICE_MODE, 1),
             support::ExpectChanged(true),
             support::ExpectText(IDC_HELP_TEXT, u"プリンタ機種を選択します。"),
             // Without leaving the page by OK: other pages see it.
             GoTo(kOperationTab), GoTo(kDeviceTab),
             [](Desk& desk) { EXPECT_EQ(desk.Control(IDC_DEVICE_MODE).selection, 1); }});
  EXPECT_EQ(kept.Mecha, 1);
}

TEST_F(DevicePageTest, OpensTheOffsetsOfTheQueriedMode) {
  Start(0);
  device = {.bytes = {{1, 0}, {3, 2}}, .text = {}};
  Steps steps = {GoTo(kPaperTab),
                 [](Desk& desk) {
                   EXPECT_FALSE(desk.Control(IDC_PAPER_PEEL_OFFSET).enabled);
                   EXPECT_TRUE(desk.Control(IDC_PAPER_TEAR_OFFSET).enabled);
                 },
                 GoTo(kDeviceTab)};
  for (auto& step : Query(IDC_DEVICE_QUERY_MODE, {kModeBox})) steps.push_back(step);
  steps.push_back([](Desk& desk) { EXPECT_EQ(desk.Control(IDC_DEVICE_MODE).selection, 2); });
  steps.push_back(GoTo(kPaperTab));
  steps.push_back([](Desk& desk) {
    EXPECT_TRUE(desk.Control(IDC_PAPER_PEEL_OFFSET).enabled);
    EXPECT_FALSE(desk.Control(IDC_PAPER_TEAR_OFFSET).enabled);
  });
  Leave(std::move(steps));
}

TEST_F(DevicePageTest, LocksWithoutPermission) {
  Start(2);
  for (SheetKind kind : {SheetKind::kDocument, SheetKind::kUserDefault}) {
    for (bool permission : {false, true}) {
      Leave({[=](Desk& desk) {
              for (int id : {IDC_DEVICE_MODE, IDC_DEVICE_QUERY_MODE, IDC_DEVICE_QUERY_VERSION}) {
                EXPECT_EQ(desk.Control(id).enabled, permission) << id;
              }
              EXPECT_FALSE(desk.Control(IDC_DEVICE_DENSITY).enabled);
              // The list, when it can have it, takes the focus and tells of itself.
              EXPECT_EQ(desk.Text(IDC_HELP_TEXT),
                        permission ? u"プリンタ機種を選択します。"
                                   : u"ここにマウスカーソル位置についての説明が表示されます。");
            }},
            kind, permission);
    }
  }
}

}  // namespace
}  // namespace kestrel
