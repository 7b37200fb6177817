// The device page, with device libraries of all sorts behind it.
#include <string>
#include <vector>

#include "resources/resource.h"
#include "tests/support/open_sheet.h"

namespace kestrel {
namespace {

using namespace support;

constexpr char16_t kLibrary[] = u"QM610rLIB.DLL";
constexpr char16_t kPageTitle[] = u"デバイスの設定";

// The library that answers: what it writes from the start of the reply and at places of it.
struct Device {
  std::string text;
  std::vector<std::pair<size_t, BYTE>> bytes;
  DWORD answer = 1;
  int asked = 0;
} device;

template <BYTE kFilling, DWORD kSize>
DWORD WINAPI Answer(LPCWSTR name, BYTE* reply, DWORD replySize, DWORD* size, DWORD* status) {
  ++device.asked;
  EXPECT_EQ(std::u16string(name), kPrinter);
  EXPECT_EQ(replySize, kSize);
  EXPECT_EQ(*size, kSize);
  EXPECT_NE(status, nullptr);
  EXPECT_EQ(std::string(reply, reply + replySize), std::string(replySize, char(kFilling)));
  EXPECT_EQ(platform::Machine::Current().desk().Cursor(), LoadCursorW(nullptr, IDC_WAIT));
  device.text.copy(reinterpret_cast<char*>(reply), replySize);
  for (const auto& [at, byte] : device.bytes) reply[at] = byte;
  return device.answer;
}
template <typename Proc>
FARPROC AnyEntry(Proc* proc) {
  return reinterpret_cast<FARPROC>(reinterpret_cast<void (*)()>(proc));
}

const Step kFailed =
    CloseMessage(u"プリンタから情報を取得できませんでした。", MB_ICONHAND, kPageTitle);
const Step kDensityChanged = CloseMessage(
    u"解像度が変更されました。設定されたデータが現在の\n解像度で不正な値になる可能性があります。\n"
    u"特に以下のデータについて、現在の解像度で\n正当なデータかどうかを確認してください。\n"
    u"\t・用紙サイズ\n\t・フォントサイズ",
    MB_ICONEXCLAMATION, kPageTitle);
const Step kModeChanged = CloseMessage(
    u"機種が変更されました。設定されたデータが現在の\n機種では不正な値になる可能性があります。\n"
    u"特に以下のデータについて現在の機種で、\n正当なデータかどうかを確認してください。\n"
    u"\t・印字基点補正\n\t・ﾒｶﾆｽﾞﾑ寸法補正\n",
    MB_ICONEXCLAMATION, kPageTitle);
Step LibraryError(std::u16string text) {
  return CloseMessage(std::move(text), MB_OK, u"DeviceDlgFunc");
}

class DevicePageTest : public SheetTest {
 protected:
  void InstallLibrary() {
    device = {};
    machine().RegisterModule(kLibrary, {{"RtlGetModeComW", AnyEntry(&Answer<0xFF, 30>)},
                                        {"RtlGetVersionComW", AnyEntry(&Answer<0, 50>)}});
  }
  // Opens the page over a printer, asks by a button, closes the boxes that follow and looks. The
  // mode and density kept then.
  std::pair<int, int> Ask(int mode, int density, int button, const Steps& boxes,
                          const Steps& looks) {
    DriverSettingsBlock block = DefaultBlock();
    block.Printer.Mecha = static_cast<uint16_t>(mode);
    block.Printer.HeadDensity = static_cast<uint16_t>(density);
    Keep(block);
    int modules = 0;
    Ok(kDeviceTab, {[&](Desk&) { modules = machine().OpenModules(); }, Click(button), boxes,
                    [&](Desk& desk) {
                      EXPECT_EQ(desk.ModalDepth(), 1);
                      EXPECT_EQ(desk.Cursor(), LoadCursorW(nullptr, IDC_ARROW));
                      EXPECT_EQ(machine().OpenModules(), modules) << "kept";
                    },
                    looks});
    const PrinterSettingsPart kept = KeptPrinterPart(machine());
    return {kept.Mecha, kept.HeadDensity};
  }
};

TEST_F(DevicePageTest, TakesWhatThePrinterTells) {
  const struct {
    int mode, density;
    std::vector<std::pair<size_t, BYTE>> reply;
    Steps boxes;
    int modeAfter, densityAfter, row;
  } kCases[] = {
      {1, 203, {}, {}, 1, 203, 1},  // nothing told
      {2, 203, {{1, 0}, {3, 2}}, {}, 2, 203, 2},
      {0, 203, {{1, 0}, {3, 2}}, kModeChanged, 2, 203, 2},
      {2, 203, {{3, 0}}, kModeChanged, 0, 203, 0},
      {1, 203, {{1, 0}, {3, 3}}, {}, 1, 203, 1},  // an unknown mode
      {0, 305, {{1, 1}}, {}, 0, 305, 0},          // an unknown density
      {0, 305, {{1, 0}}, kDensityChanged, 0, 203, 0},
      {0, 305, {{1, 0}, {3, 1}}, {kDensityChanged, kModeChanged}, 1, 203, 1},
      {0, 203, {{0, 2}, {2, 2}, {4, 2}, {29, 2}}, {}, 0, 203, 0},
      {9, 203, {}, {}, 9, 203, 0},  // a mode that no list holds
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(&c - kCases);
    InstallLibrary();
    device.bytes = c.reply;
    EXPECT_EQ(Ask(c.mode, c.density, IDC_DEVICE_QUERY_MODE, c.boxes,
                  {ExpectSelected(IDC_DEVICE_MODE, c.row),
                   ExpectText(IDC_DEVICE_DENSITY, u"203dpi(  8本/mm)"), ExpectChanged(true),
                   // The paper page sees it at once.
                   GoTo(kPaperTab), ExpectEnabled({IDC_PAPER_PEEL_OFFSET}, c.modeAfter == 2)}),
              std::pair(c.modeAfter, c.densityAfter));
    EXPECT_EQ(device.asked, 1);
  }
}

TEST_F(DevicePageTest, TellsOfEachFailure) {
  enum Failure { kNoLibrary, kNoEntry, kCallFails };
  const struct {
    int button;
    Failure failure;
    Steps boxes;
  } kCases[] = {
      {IDC_DEVICE_QUERY_MODE, kNoLibrary, {LibraryError(u"LoadLibrary Error!"), kFailed}},
      {IDC_DEVICE_QUERY_MODE, kNoEntry, {LibraryError(u"GetProcAddress Error!"), kFailed}},
      {IDC_DEVICE_QUERY_MODE, kCallFails, kFailed},
      {IDC_DEVICE_QUERY_VERSION, kNoLibrary, kFailed},
      {IDC_DEVICE_QUERY_VERSION, kNoEntry, kFailed},
      {IDC_DEVICE_QUERY_VERSION, kCallFails, kFailed},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(&c - kCases);
    InstallLibrary();
    // A failing call may have written its reply all the same.
    device = {.text = "V1", .bytes = {{1, 0}, {3, 2}}, .answer = 0};
    if (c.failure == kNoLibrary) machine().UnregisterModule(kLibrary);
    if (c.failure == kNoEntry) machine().RegisterModule(kLibrary, {});
    EXPECT_EQ(Ask(1, 305, c.button, c.boxes,
                  {ExpectText(IDC_DEVICE_FIRMWARE_VERSION, u""),
                   ExpectText(IDC_DEVICE_FONT_VERSION, u""), ExpectChanged(false)}),
              std::pair(1, 305));
    EXPECT_EQ(device.asked, c.failure == kCallFails ? 1 : 0);
  }
}

TEST_F(DevicePageTest, ShowsTheVersionsOfThePrinter) {
  const std::string zeros(16, '\0');
  const struct {
    std::string reply;
    std::u16string firmware, font;
  } kCases[] = {
      {"V01.20" + zeros.substr(6) + "F01.03", u"V01.20", u"F01.03"},
      {"", u"", u""},
      {"0123456789ABCDEFabcdefgh" + std::string(26, 'x'), u"0123456789ABCDEF", u"abcdefgh"},
      {"\xCA\xDE\xB0\xBC\xDE\xAE\xDD" + zeros.substr(7) + "\x83\x5C\x95\x5C", u"ﾊﾞｰｼﾞｮﾝ", u"ソ表"},
      {std::string("V1\0junk", 7) + zeros.substr(7) + std::string("F\0X", 3), u"V1", u"F"},
  };
  InstallLibrary();
  for (const auto& c : kCases) {
    device.text = c.reply;
    Ask(0, 203, IDC_DEVICE_QUERY_VERSION, {},
        {ExpectText(IDC_DEVICE_FIRMWARE_VERSION, c.firmware),
         ExpectText(IDC_DEVICE_FONT_VERSION, c.font)});
  }
}

TEST_F(DevicePageTest, ChangesTheModeAtOnce) {
  Ok(kDeviceTab, {ExpectEnabled({IDC_DEVICE_DENSITY}, false), Select(IDC_DEVICE_MODE, 1),
                  // Without leaving the page by OK: other pages see it.
                  GoTo(kOperationTab), GoTo(kDeviceTab), ExpectSelected(IDC_DEVICE_MODE, 1)});
  EXPECT_EQ(KeptPrinterPart(machine()).Mecha, 1);
}

}  // namespace
}  // namespace kestrel
