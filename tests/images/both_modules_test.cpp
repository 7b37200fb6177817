// The Windows image and the native module answer alike, and neither lets an exception through.
#include <algorithm>
#include <random>

#include "driver/handles.h"
#include "platform/system/guard.h"
#include "tests/support/guarded_buffer.h"
#include "tests/support/steps.h"
#include "tests/support/test_machine.h"

namespace {

using Record = std::vector<std::byte>;
using support::BytesOf;
using support::Exports;

// The shipped file for the machine of this process.
constexpr const char* kImage =
    sizeof(void*) == 8 ? "../../windows/x64/QM610rDRV1.dll" : "../../windows/x86/QM610rDRV1.dll";

class BothModules : public support::MachineTest {
 protected:
  HMODULE Load() {
    const std::u16string path = machine_->driverDirectory() + u"\\3\\image.dll";
    machine_->InstallModule(path, support::Built(kImage));
    return LoadLibraryW(path.c_str());
  }
  // What one answers, sets as the last error and writes, so does the other.
  template <typename Ask>
  void Compare(Ask ask) {
    std::vector<std::tuple<int64_t, DWORD, Record>> told;
    for (const Exports* of : {&exports_, &ofImage_}) {
      const support::GuardedBuffer output(2688);
      std::memset(output.data(), 0xCD, output.size());
      SetLastError(77);
      const int64_t answer = ask(*of, output.As<DEVMODEW>());
      told.emplace_back(answer, GetLastError(), BytesOf(output.data(), output.size()));
    }
    EXPECT_TRUE(told[0] == told[1]);
  }

  kestrel::Module image_{Load()};
  Exports ofImage_{image_.get()};
  support::OpenedPrinter printer_;
  std::u16string name_ = support::kPrinter;
};

// A record of the driver's with words at random, or none at all; each as long as it says of itself.
Record RandomRecord(std::minstd_rand& random, int kind) {
  Record record = BytesOf(support::DefaultBlock().Record);
  for (auto changes = random() % 12; changes > 0; --changes)
    support::Put(record.data(), random() % 225 * 2, static_cast<uint16_t>(random()));
  if (kind == 1) std::ranges::generate(record, [&] { return static_cast<std::byte>(random()); });
  const size_t size = kind >= 2 ? 76 + random() % 145 : 220;
  if (kind == 3) record.resize(size);
  support::Put(record.data(), 68, static_cast<uint16_t>(size));
  support::Put(record.data(), 70, static_cast<uint16_t>(record.size() - size));
  return record;
}

TEST_F(BothModules, AnswerAlike) {
  std::minstd_rand random(610);
  for (int i = 0; i < 401; ++i) {
    SCOPED_TRACE(i);
    const Record bytes = RandomRecord(random, i % 4);
    const support::GuardedBuffer given(bytes.data(), bytes.size());
    DEVMODEW* const record = i < 400 ? given.As<DEVMODEW>() : nullptr;
    for (int index = -1; index < 64; index += i < 400 ? 5 : 1) {
      Compare([&](const Exports& of, DEVMODEW* out) {
        return of.DrvDeviceCapabilities(printer_, name_.data(), WORD(index), out, record);
      });
    }
    for (const DWORD mode : {0, 1, 2, 3, 8, 9, 10, 11}) {  // without a prompt
      Compare([&](const Exports& of, DEVMODEW* out) {
        return of.DrvDocumentProperties(nullptr, printer_, name_.data(), out, record, mode);
      });
      Compare([&](const Exports& of, DEVMODEW* out) {
        LONG size = 452;
        return of.DrvConvertDevMode(name_.data(), record, out, &size, mode) + size * 2;
      });
    }
    Compare([&](const Exports& of, DEVMODEW* out) {
      return of.DrvSplDeviceCaps(printer_, name_.data(), DC_MEDIAREADY, out, 128, record);
    });
    Compare([&](const Exports& of, DEVMODEW* out) {
      ULONG size = 64;
      return of.DrvQueryJobAttributes(printer_, record, 4, (BYTE*)(out + 1)) +
             of.DevQueryPrint(printer_, record, (DWORD*)(out + 2)) * 2 +
             of.DrvQueryColorProfile(printer_, record, 1, out + 3, &size, (ULONG*)out) * 4 +
             size * 8;
    });
  }
}

struct ThrowingUser : platform::User {
  bool Act(platform::Desk&) override { throw std::runtime_error("a person's mistake"); }
};

LONG_PTR CALLBACK ThrowingHost(HANDLE, UINT, LPARAM, LPARAM) {
  throw std::runtime_error("a host's mistake");
}

TEST_F(BothModules, TellOfExceptionsOnceTheyHaveReturned) {
  for (const Exports* module : {&exports_, &ofImage_}) {
    ThrowingUser user;
    const support::Seat seat(user);
    EXPECT_EQ(
        module->DrvDocumentProperties(nullptr, printer_, name_.data(), nullptr, nullptr, DM_PROMPT),
        LONG{CPSUI_CANCEL});
    EXPECT_THROW(platform::RethrowKept(), std::runtime_error);

    DOCUMENTPROPERTYHEADER header = {sizeof header, 0,       printer_, name_.data(),
                                     nullptr,       nullptr, 0,        DM_PROMPT};
    const auto param = reinterpret_cast<LPARAM>(&header);
    PROPSHEETUI_INFO info = {sizeof info, 0, 0, 0, nullptr, platform::Guarded<ThrowingHost>::Call,
                             param,       0, 0};
    EXPECT_EQ(module->DrvDocumentPropertySheets(&info, param), -1);
    EXPECT_THROW(platform::RethrowKept(), std::runtime_error);
  }
}

}  // namespace
