// The libraries of the driver package, loaded from where the driver looks for them.
#include "companions/simulated_device.h"
#include "driver/handles.h"
#include "fonts/barcode_kinds.h"
#include "fonts/barcode_library.h"
#include "platform/machine/text.h"
#include "tests/support/bin_dir.h"
#include "tests/support/settings.h"
#include "tests/support/steps.h"

namespace support {
namespace {

using namespace companions;
using namespace kestrel;
using std::string_literals::operator""s;

// The controls of the detail dialogs: rotation, unit, and the first fields of a kind.
constexpr int kRotation = 1000, kUnit = 1001, kFirst = 1002, kSecond = 1003, kThird = 1004,
              kSecondSpin = 1103;
// Offsets of a block: its kind, the rotation, the unit of its lengths, and the first fields.
constexpr size_t kKindAt = 0, kRotationAt = 2, kUnitAt = 10, kFirstAt = 12, kSecondAt = 14,
                 kPostalCodeAt = 20;

class CompanionTest : public testing::Test {
 protected:
  Module Load(const char* name) {
    const auto file = machine_->driverDirectory() + u"\\3\\" + platform::FromCp932(name) + u".DLL";
    machine_->InstallModule(file, Built(name + ".so"s));
    return Module(LoadLibraryW(file.c_str()));
  }
  // Calls an entry point of the barcode library with a block. Returns the result.
  int Call(const std::string& entry, std::string& block) {
    using Proc = int16_t(WINAPI*)(char*, const BarcodeLibInfo*, HWND);
    const BarcodeLibInfo info = {203, 203, {0, 0}};
    return EntryPoint<Proc>(bar_.get(), entry.c_str())(block.data(), &info, nullptr);
  }
  // Returns the default parameters and eight bytes that the library must not change.
  std::string Defaults(const std::string& kind) {
    std::string block(48, '\xEE');
    EXPECT_EQ(Call("Init" + kind, block), 0);
    return block;
  }
  // Performs the steps in the detail dialog of a kind and clicks OK. Returns the block.
  std::string Edit(const std::string& kind, const Steps& steps = {}) {
    std::string block = Defaults(kind);
    EXPECT_EQ(RunSteps({steps, Click(IDOK)}, [&] { return Call("ShowDlg" + kind, block); }), IDOK);
    return block;
  }
  static int Word(const std::string& block, size_t at) { return At<uint16_t>(block.data(), at); }
  // Queries "Mode" or "Version". Returns the bytes of the reply; nullopt when the query failed.
  std::optional<std::string> Query(const std::string& what, const SimulatedDevice& device) {
    using Proc = DWORD(WINAPI*)(LPCWSTR, char*, DWORD, DWORD*, DWORD*);
    SaveSimulatedDevice(u"Label", device);
    std::string reply(64, '!');
    DWORD size = 0, status = 77;
    const auto query = EntryPoint<Proc>(lib_.get(), ("RtlGet" + what + "ComW").c_str());
    const bool succeeded = query(u"Label", reply.data(), what == "Mode" ? 30 : 50, &size, &status);
    EXPECT_EQ(status, device.offline ? 1u : 0u);
    EXPECT_EQ(reply.find_last_not_of('!') + 1, size) << "nothing is written after the reply";
    return succeeded ? std::optional(reply.substr(0, size)) : std::nullopt;
  }

  std::unique_ptr<platform::Machine> machine_ = platform::Machine::Create();
  Module bar_ = Load("QM610rBAR"), lib_ = Load("QM610rLIB");
};

// Expects that OK rejects a text with a message of this beginning and returns to the field.
Steps ExpectRejected(int field, std::u16string text, std::u16string beginning) {
  const auto message = [=](Desk& desk) { EXPECT_TRUE(desk.MessageText().starts_with(beginning)); };
  return {Replace(field, text), Click(IDOK), message, Click(IDOK), ExpectFocus(field)};
}

TEST_F(CompanionTest, EveryKindHasDefaultsThatItsDialogAccepts) {
  for (const BarcodeKindRow& row : kBarcodeKinds) {
    SCOPED_TRACE(row.id);
    std::string name(40, '~');
    EntryPoint<void(WINAPI*)(char*)>(bar_.get(), row.getName)(name.data());
    EXPECT_EQ(name.substr(32), "~~~~~~~~") << "nothing is written after the caller's buffer";
    const std::string kind = row.init + 4, block = Edit(kind);
    EXPECT_EQ(block, Defaults(kind));
    EXPECT_EQ(Word(block, kKindAt), row.id);
    EXPECT_EQ(block.substr(40), std::string(8, '\xEE'));
    std::string damaged(48, '\xFF');
    RunSteps({Click(IDOK), Click(IDOK), Close()}, [&] { return Call(row.showDialog, damaged); });
    EXPECT_EQ(damaged, std::string(48, '\xFF')) << "OK rejects it";
  }
}

TEST_F(CompanionTest, DetailDialogStoresNumbersInTheirRange) {
  const auto rejected = [](std::u16string text) {
    return ExpectRejected(kSecond, text, u"セルサイズ\n1 ～ 50");
  };
  const auto limit = ExpectEach({kSecond}, &platform::ControlView::textLimit, 7);
  const std::string block = Edit(
      "QR2", {ExpectTitle(u"QRコード(モデル2)の詳細設定"), limit, rejected(u"51"), rejected(u"0"),
              rejected(u""), Replace(kSecond, u"50"), Select(kFirst, 3), Select(kRotation, 1)});
  EXPECT_EQ(Word(block, kRotationAt), 90);
  EXPECT_EQ(Word(block, kFirstAt), 3);
  EXPECT_EQ(Word(block, kSecondAt), 50);
}

TEST_F(CompanionTest, DetailDialogConvertsLengthsToTheSelectedUnit) {
  const auto rejected = [](std::u16string text) {
    return ExpectRejected(kSecond, text, u"バーの高さ");
  };
  const Steps metric = {Select(kUnit, kMillimetre),   Spin(kSecondSpin, 1),
                        ExpectText(kSecond, u"10.1"), rejected(u"125.1"),
                        rejected(u"1.2.3"),           rejected(u"4294968"),
                        Replace(kSecond, u"12.4"),    Spin(kSecondSpin, 1)};
  EXPECT_EQ(Word(Edit("JAN13", metric), kSecondAt), 125);
  const Steps inches = {Select(kUnit, kInch), Select(kThird, 0), ExpectText(kSecond, u"0.492")};
  EXPECT_EQ(Word(Edit("JAN13", {metric, inches}), kUnitAt), kInch);
  EXPECT_EQ(Word(Edit("JAN13", {metric, inches, Select(kUnit, kDot)}), kSecondAt), 100);
}

TEST_F(CompanionTest, DetailDialogStoresTextsOfCodePage932) {
  const std::string custom = Edit(
      "CUSTOM", {ExpectEach({kSecond}, &platform::ControlView::textLimit, 7),
                 ExpectRejected(kSecond, u"あいうえ", u"郵便番号\n7 バイト"),
                 ExpectRejected(kSecond, u"😀", u"郵便番号\n不正"), Replace(kSecond, u"1234567")});
  EXPECT_EQ(custom.substr(kSecondAt, 8), "1234567\0"s);
  std::string maxi = Defaults("MAXI");
  maxi[kPostalCodeAt + 19] = 'x';
  RunSteps({Replace(1006, u"ｶﾅ-4567890123456789"), Click(IDOK)},
           [&] { return Call("ShowDlgMAXI", maxi); });
  EXPECT_EQ(maxi.substr(kPostalCodeAt, 21), "\xB6\xC5-4567890123456789\0\xEE"s);
}

TEST_F(CompanionTest, ReplyFollowsSimulatedDevice) {
  EXPECT_EQ(Query("Mode", {.mode = 7, .density = 305}), "\0\1\0\7"s);
  EXPECT_EQ(Query("Mode", {.reply = DeviceReply::kSilent}), "");
  EXPECT_EQ(Query("Mode", {.mode = 2, .reply = DeviceReply::kShort}), "\0"s);
  EXPECT_EQ(Query("Mode", {.offline = true}), std::nullopt);
  EXPECT_EQ(Query("Version", {.firmware = u"ABCD", .font = u"ｶﾅ1"}),
            "ABCD" + std::string(12, '\0') + "\xB6\xC5" + "1" + std::string(5, '\0'));
  EXPECT_EQ(Query("Version", {.firmware = u"0123456789ABCDEFG", .font = u"12345678"}),
            "0123456789ABCDEF12345678");
}

}  // namespace
}  // namespace support
