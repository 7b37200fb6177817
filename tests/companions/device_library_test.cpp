#include <array>
#include <cstring>
#include <string>
#include <tuple>

#include "companion_fixture.h"
#include "companions/simulated_device.h"

namespace {

using companions::DeviceAnswer;
using companions::SimulatedDevice;

using QueryProc = DWORD(WINAPI*)(LPCWSTR, BYTE*, DWORD, DWORD*, DWORD*);

class DeviceLibrary : public CompanionTest {
 protected:
  void SetUp() override { ASSERT_NE(Load("QM610rLIB"), nullptr); }

  struct Result {
    bool answered;
    std::array<BYTE, 64> reply;  // filled with 0xFF beforehand
    DWORD size;
  };
  Result Query(const char* entry, DWORD size) {
    Result result{false, {}, size};
    result.reply.fill(0xFF);
    DWORD status = 77;
    result.answered =
        Entry<QueryProc>(entry)(u"Label", result.reply.data(), size, &result.size, &status) != 0;
    EXPECT_NE(status, 77u);
    return result;
  }
  Result Mode() { return Query("RtlGetModeComW", 30); }
  Result Version() { return Query("RtlGetVersionComW", 50); }
};

TEST_F(DeviceLibrary, TellsDensityAndModeInTheirBytes) {
  const std::tuple<DWORD, DWORD, BYTE, BYTE> rows[] = {
      {0, 203, 0, 0}, {1, 203, 0, 1}, {2, 305, 1, 2}, {7, 203, 0, 7}};
  for (const auto& [mode, density, densityCode, modeCode] : rows) {
    SimulatedDevice device;
    device.mode = mode;
    device.density = density;
    SaveSimulatedDevice(u"Label", device);
    const Result result = Mode();
    EXPECT_TRUE(result.answered);
    EXPECT_EQ(result.reply[1], densityCode);
    EXPECT_EQ(result.reply[3], modeCode);
    EXPECT_EQ(result.reply[4], 0xFF) << "nothing is written past the answer";
    EXPECT_EQ(result.size, 4u);
  }
}

TEST_F(DeviceLibrary, EachAnswerKindShowsInTheReply) {
  SimulatedDevice device;
  device.mode = 2;
  device.firmware = u"ABCD";
  device.font = u"ｶﾅ1";

  device.answer = DeviceAnswer::kSilent;
  SaveSimulatedDevice(u"Label", device);
  EXPECT_TRUE(Mode().answered);
  EXPECT_EQ(Mode().reply[3], 0xFF);

  device.answer = DeviceAnswer::kShort;
  SaveSimulatedDevice(u"Label", device);
  EXPECT_TRUE(Mode().answered);
  EXPECT_EQ(Mode().reply[0], 0);
  EXPECT_EQ(Mode().reply[1], 0xFF);

  device.answer = DeviceAnswer::kOverlong;
  SaveSimulatedDevice(u"Label", device);
  const Result overlong = Version();
  EXPECT_EQ(std::memchr(overlong.reply.data(), 0, 50), nullptr) << "no terminator anywhere";
  EXPECT_EQ(overlong.size, 50u);
  EXPECT_EQ(overlong.reply[50], 0xFF) << "the caller's buffer is not overrun";

  device.answer = DeviceAnswer::kNormal;
  SaveSimulatedDevice(u"Label", device);
  const Result normal = Version();
  EXPECT_EQ(std::memcmp(normal.reply.data(), "ABCD\0", 5), 0);
  EXPECT_EQ(std::memcmp(normal.reply.data() + 16,
                        "\xB6\xC5"
                        "1\0",
                        4),
            0);

  device.offline = true;
  SaveSimulatedDevice(u"Label", device);
  EXPECT_FALSE(Mode().answered);
  EXPECT_FALSE(Version().answered);
  EXPECT_EQ(Version().reply[0], 0xFF);
}

TEST_F(DeviceLibrary, FullTextsHaveNoRoomForATerminator) {
  SimulatedDevice device;
  device.firmware = u"0123456789ABCDEFG";  // one more than fits
  device.font = u"12345678";
  SaveSimulatedDevice(u"Label", device);
  const Result result = Version();
  EXPECT_EQ(std::memcmp(result.reply.data(), "0123456789ABCDEF12345678\xFF", 25), 0);
}

TEST_F(DeviceLibrary, DamagedRecordsCountAsAFreshDevice) {
  const std::u16string key = u"SOFTWARE\\Kestrel\\Devices\\Label";
  machine_->SetRegistry(key, u"Mode", {3, std::vector<std::byte>(4, std::byte{2})});
  machine_->SetRegistry(key, u"Density", {4, std::vector<std::byte>(2, std::byte{1})});
  machine_->SetRegistry(key, u"Answer", {4, std::vector<std::byte>(4, std::byte{9})});
  machine_->SetRegistry(key, u"Firmware", {1, {std::byte{'A'}, std::byte{0}, std::byte{'B'}}});
  const SimulatedDevice device = companions::LoadSimulatedDevice(u"Label");
  EXPECT_EQ(device.mode, 0u);
  EXPECT_EQ(device.density, 203u);
  EXPECT_EQ(device.answer, DeviceAnswer::kNormal);
  EXPECT_EQ(device.firmware, u"A") << "an odd byte at the end belongs to no character";
  companions::SaveSimulatedDevice(u"Other", {.mode = 1});
  EXPECT_EQ(companions::LoadSimulatedDevice(u"Label").mode, 0u) << "one record a printer";
}

}  // namespace
