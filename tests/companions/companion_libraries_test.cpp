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

class CompanionTest : public testing::Test {
 protected:
  Module Load(const char* name) {
    const auto file = machine_->driverDirectory() + u"\\3\\" + platform::FromCp932(name) + u".DLL";
    machine_->InstallModule(file, Built(name + ".so"s));
    return Module(LoadLibraryW(file.c_str()));
  }
  // Calls an entry point of the barcode library with a block. Returns the result.
  int Call(const std::string& entry, std::string& block, uint16_t density = 203) {
    using Proc = int16_t(WINAPI*)(char*, const BarcodeLibInfo*, HWND);
    const BarcodeLibInfo info = {density, density, {0, 0}};
    return EntryPoint<Proc>(bar_.get(), entry.c_str())(block.data(), &info, nullptr);
  }
  // Returns the default parameters and eight bytes that the library must not change.
  std::string Defaults(const std::string& kind, uint16_t density = 203) {
    std::string block(48, '\xEE');
    EXPECT_EQ(Call("Init" + kind, block, density), 0);
    return block;
  }
  // Does the steps in the detail dialog of a kind and clicks OK. Returns the block.
  std::string Edit(const std::string& kind, const Steps& steps = {}) {
    std::string block = Defaults(kind);
    EXPECT_EQ(RunSteps({steps, Click(IDOK)}, [&] { return Call("ShowDlg" + kind, block); }), IDOK);
    return block;
  }
  // Returns the reply, with "!" for a byte that was not written; empty when the query failed.
  std::string Query(const std::string& what, const SimulatedDevice& device) {
    using Proc = DWORD(WINAPI*)(LPCWSTR, char*, DWORD, DWORD*, DWORD*);
    SaveSimulatedDevice(u"Label", device);
    std::string reply(64, '!');
    DWORD size = 0, status = 77;
    const auto query = EntryPoint<Proc>(lib_.get(), ("RtlGet" + what + "ComW").c_str());
    const bool succeeded = query(u"Label", reply.data(), what == "Mode" ? 30 : 50, &size, &status);
    EXPECT_EQ(status, device.offline ? 1u : 0u);
    EXPECT_EQ(reply.find_last_not_of('!') + 1, size) << "the size is that of the reply";
    return succeeded ? reply.substr(0, std::max<DWORD>(size, 1)) : "";
  }

  std::unique_ptr<platform::Machine> machine_ = platform::Machine::Create();
  Module bar_ = Load("QM610rBAR"), lib_ = Load("QM610rLIB");
};

// Expects that OK rejects a text with a message of this beginning.
Steps ExpectRejected(int field, std::u16string text, std::u16string beginning) {
  return {Replace(field, text), Click(IDOK), [=](Desk& desk) {
            EXPECT_TRUE(desk.IsMessageBox() && desk.MessageText().starts_with(beginning));
            desk.Click(IDOK);
          }};
}

TEST_F(CompanionTest, EveryKindHasNameAndDefaultsThatItsDialogAccepts) {
  std::u16string names;
  for (const BarcodeKindRow& row : kBarcodeKinds) {
    SCOPED_TRACE(row.id);
    std::string name(40, '~');
    EntryPoint<void(WINAPI*)(char*)>(bar_.get(), row.getName)(name.data());
    EXPECT_EQ(name.substr(32), "~~~~~~~~") << "nothing is written past the caller's buffer";
    names += platform::FromCp932(name.c_str()) + u' ';
    const std::string kind = row.init + 4, block = Edit(kind);
    EXPECT_EQ(block, Defaults(kind));
    EXPECT_EQ(At<uint16_t>(block.data(), 0), row.id);
    EXPECT_EQ(At<uint16_t>(block.data(), 10), 2) << "dots";
    EXPECT_EQ(block.substr(40), std::string(8, '\xEE'));
    std::string foreign(48, '\xFF');
    RunSteps({Click(IDOK), Click(IDOK), Close()}, [&] { return Call(row.showDialog, foreign); });
    EXPECT_EQ(foreign, std::string(48, '\xFF'));
  }
  EXPECT_EQ(names,
            u"UPC-A UPC-E JAN-8 JAN-13 CODE39 CODE93 CODE128 UCC/EAN128 ITF(Interleaved 2of5) NW-7 "
            u"カスタマバーコード RSS(GS1 DataBar) QRコード(モデル1) QRコード(モデル2) "
            u"マイクロQRコード PDF417 MaxiCode DataMatrix(ECC200) マイクロPDF417 ");
  EXPECT_EQ(At<uint16_t>(Defaults("JAN13", 305).data(), 14), 120) << "10 mm";
}

// Numbers, measures that the dialog converts to another unit, and postal codes in code page 932.
TEST_F(CompanionTest, DetailDialogStoresOnlyValidFields) {
  constexpr int kUnit = 1001, kLevel = 1002, kSize = 1003, kHeight = kSize, kCode = kSize;
  const auto edits = [&](const char* kind, size_t at, const std::string& bytes, Steps steps) {
    EXPECT_EQ(Edit(kind, steps).substr(at, bytes.size()), bytes) << kind;
  };
  const auto height = [](std::u16string text) {
    return ExpectRejected(kHeight, text, u"バーの高さ");
  };
  edits("QR2", 12, "\3\0\62\0"s,
        {ExpectRejected(kSize, u"51", u"セルサイズ\n1 ～ 50"), ExpectFocus(kSize),
         ExpectRejected(kSize, u"", u"セルサイズ"), Replace(kSize, u"50"), Select(kLevel, 3)});
  edits(
      "CODE128", 10, "\0\0\2\0\175\0"s,
      {Select(kUnit, 0), ExpectText(kHeight, u"10.0"), height(u"125.1"), height(u"1.2.3"),
       height(u"4294968"), Replace(kHeight, u"12.4"), Spin(1103, 1), ExpectText(kHeight, u"12.5")});
  edits("CODE128", 10, "\2\0\2\0\145\0"s,
        {Select(kUnit, 0), Replace(kHeight, u"12.6"), Select(kUnit, 1),
         ExpectText(kHeight, u"0.496"), Select(kUnit, 2), ExpectText(kHeight, u"101")});
  edits("CUSTOM", 14, "1234567\0"s,
        {ExpectRejected(kCode, u"あいうえ", u"郵便番号\n7 バイト"),
         ExpectRejected(kCode, u"😀", u"郵便番号\n不正"), Replace(kCode, u"1234567")});
  edits("MAXI", 20, "\xB6\xC5-4567890123456789\0\xEE"s, Replace(1006, u"ｶﾅ-4567890123456789"));
}

TEST_F(CompanionTest, ReplyFollowsSimulatedDevice) {
  EXPECT_EQ(Query("Mode", {.mode = 1}), "\0\0\0\1"s);
  EXPECT_EQ(Query("Mode", {.mode = 7, .density = 305}), "\0\1\0\7"s);
  EXPECT_EQ(Query("Mode", {.reply = DeviceReply::kSilent}), "!");
  EXPECT_EQ(Query("Mode", {.mode = 2, .reply = DeviceReply::kShort}), "\0"s);
  EXPECT_EQ(Query("Mode", {.offline = true}), "");
  EXPECT_EQ(Query("Version", {.firmware = u"ABCD", .font = u"ｶﾅ1"}),
            "ABCD\0\0\0\0\0\0\0\0\0\0\0\0\xB6\xC5\61\0\0\0\0\0"s);
  // Texts that fill their bytes have no terminator.
  EXPECT_EQ(Query("Version", {.firmware = u"0123456789ABCDEFG", .font = u"12345678"}),
            "0123456789ABCDEF12345678");
  const std::string overlong = Query("Version", {.reply = DeviceReply::kOverlong});
  EXPECT_EQ(overlong.substr(0, overlong.find('\0')).size(), 50u);
}

TEST_F(CompanionTest, DamagedDeviceRecordHasDefaults) {
  // An odd byte at the end of a text is ignored.
  for (const auto& [value, type, bytes] : {std::tuple(u"Mode", REG_BINARY, "\2\0\0\0"s),
                                           {u"Density", REG_DWORD, "\1\1"s},
                                           {u"Answer", REG_DWORD, "\11\0\0\0"s},
                                           {u"Firmware", REG_SZ, "A\0B"s}}) {
    machine_->SetRegistry(u"SOFTWARE\\Kestrel\\Devices\\Label", value,
                          {type, BytesOf(bytes.data(), bytes.size())});
  }
  const SimulatedDevice device = LoadSimulatedDevice(u"Label");
  EXPECT_EQ(std::tuple(device.mode, device.density, device.reply, device.firmware),
            std::tuple(0u, 203u, DeviceReply::kNormal, u"A"));
}

}  // namespace
}  // namespace support
