// The device communication library: what each kind of device answers.
#include <cstring>

#include "companions/simulated_device.h"
#include "tests/companions/companion_fixture.h"

namespace support {
namespace {

using companions::DeviceAnswer;
using QueryProc = DWORD(WINAPI*)(LPCWSTR, BYTE*, DWORD, DWORD*, DWORD*);

class DeviceLibrary : public CompanionTest {
 protected:
  void SetUp() override { ASSERT_NE(Load("QM610rLIB"), nullptr); }

  // The reply's bytes, "!" in those that were not written; nothing when there was no answer.
  std::string Query(const char* entry, DWORD capacity, const companions::SimulatedDevice& device) {
    companions::SaveSimulatedDevice(u"Label", device);
    std::string reply(64, '!');
    DWORD size = 0, status = 77;
    const bool answered = Entry<QueryProc>(entry)(u"Label", reinterpret_cast<BYTE*>(reply.data()),
                                                  capacity, &size, &status) != 0;
    EXPECT_EQ(status, device.offline ? 1u : 0u);
    EXPECT_EQ(reply.find_last_not_of('!') + 1, size) << "as long as it says";
    return answered ? reply.substr(0, std::max<DWORD>(size, 1)) : "";
  }
  std::string Mode(companions::SimulatedDevice device) {
    return Query("RtlGetModeComW", 30, device);
  }
  std::string Version(companions::SimulatedDevice device) {
    return Query("RtlGetVersionComW", 50, device);
  }
};

TEST_F(DeviceLibrary, EachKindOfDeviceShowsInItsReply) {
  using std::string_literals::operator""s;
  EXPECT_EQ(Mode({.mode = 1}), "\0\0\0\1"s);
  EXPECT_EQ(Mode({.mode = 7, .density = 305}), "\0\1\0\7"s);
  EXPECT_EQ(Mode({.answer = DeviceAnswer::kSilent}), "!");
  EXPECT_EQ(Mode({.mode = 2, .answer = DeviceAnswer::kShort}), "\0"s);
  EXPECT_EQ(Mode({.offline = true}), "");
  EXPECT_EQ(Version({.firmware = u"ABCD", .font = u"ｶﾅ1"}),
            "ABCD\0\0\0\0\0\0\0\0\0\0\0\0\xB6\xC5"
            "1\0\0\0\0\0"s);
  EXPECT_EQ(Version({.firmware = u"0123456789ABCDEFG", .font = u"12345678"}),
            "0123456789ABCDEF12345678")
      << "no room for a terminator";
  const std::string overlong = Version({.answer = DeviceAnswer::kOverlong});
  EXPECT_EQ(std::pair(overlong.size(), overlong.find('\0')), std::pair(size_t{50}, overlong.npos));
}

TEST_F(DeviceLibrary, DamagedRecordsCountAsAFreshDevice) {
  const std::u16string key = u"SOFTWARE\\Kestrel\\Devices\\Label";
  machine_->SetRegistry(key, u"Mode", {3, std::vector<std::byte>(4, std::byte{2})});
  machine_->SetRegistry(key, u"Density", {4, std::vector<std::byte>(2, std::byte{1})});
  machine_->SetRegistry(key, u"Answer", {4, std::vector<std::byte>(4, std::byte{9})});
  machine_->SetRegistry(key, u"Firmware", {1, {std::byte{'A'}, std::byte{0}, std::byte{'B'}}});
  const companions::SimulatedDevice device = companions::LoadSimulatedDevice(u"Label");
  EXPECT_EQ(std::tuple(device.mode, device.density, device.answer),
            std::tuple(0u, 203u, DeviceAnswer::kNormal));
  EXPECT_EQ(device.firmware, u"A") << "an odd byte at the end belongs to no character";
}

}  // namespace
}  // namespace support
