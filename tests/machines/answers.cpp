// answers ACTIONS [CONTROL_WORD]: prints digests of what the module under test returns, stores and
// shows: a line for each random record, and a line for each seed of a random user until that many
// actions are done. Sets the x87 control word first, as an application may have.
#include <algorithm>
#include <cstdlib>
#include <random>

#include "tests/fuzz/harness.h"
#include "tests/fuzz/random_user.h"
#include "tests/support/digest.h"
#include "tests/support/exports.h"
#include "tests/support/guarded_buffer.h"
#include "tests/support/x87.h"

namespace {

using support::Digest;

// Returns a record of the driver with some random words that is as long as its sizes declare.
std::vector<std::byte> RandomRecord(std::minstd_rand& random) {
  auto record = support::BytesOf(support::DefaultBlock().Record);
  for (auto changes = random() % 12; changes > 0; --changes)
    support::Put(record.data(), random() % 225 * 2, static_cast<uint16_t>(random()));
  auto& header = *reinterpret_cast<DEVMODEW*>(record.data());
  header.dmSize = static_cast<WORD>(random() % 2 != 0 ? 220 : 76 + random() % 145);
  header.dmDriverExtra = static_cast<WORD>(record.size() - header.dmSize);
  return record;
}

class Computer {
 public:
  // Returns a digest of what exports without a prompt return and write for a record.
  std::string DigestOfResults(DEVMODEW* record) {
    Digest digest;
    for (int index = -1; index < 64; ++index) {
      AddCall(digest, [&](DEVMODEW* out) {
        return exports_.DrvDeviceCapabilities(printer_.get(), name_.data(), WORD(index), out,
                                              record);
      });
    }
    for (const DWORD mode : {0, 1, 2, 3, 8, 9, 10, 11}) {  // without DM_PROMPT
      AddCall(digest, [&](DEVMODEW* out) {
        return exports_.DrvDocumentProperties(nullptr, printer_.get(), name_.data(), out, record,
                                              mode);
      });
      AddCall(digest, [&](DEVMODEW* out) {
        LONG size = 452;
        return exports_.DrvConvertDevMode(name_.data(), record, out, &size, mode);
      });
    }
    return digest.Text();
  }

 private:
  // Adds the result, last error and output of a call.
  template <typename Call>
  void AddCall(Digest& digest, Call call) {
    const support::GuardedBuffer output(2688);
    std::ranges::fill(output.bytes(), std::byte{0xCD});
    const int64_t result = call(output.As<DEVMODEW>());
    digest.AddAll(result, GetLastError());
    digest.AddBytes(output.bytes());
  }

  std::unique_ptr<platform::Machine> machine_ = NewComputer();
  kestrel::Module module_ = [this] {
    const std::u16string path = machine_->driverDirectory() + u"\\3\\QM610rDRV1.DLL";
    machine_->InstallModule(path, support::DriverModule());
    return kestrel::Module(LoadLibraryW(path.c_str()));
  }();
  support::Exports exports_{module_.get()};
  kestrel::Printer printer_ = OpenedPrinter();
  std::u16string name_ = support::kPrinter;
};

void WriteRecordDigests() {
  Computer computer;
  std::minstd_rand random(610);
  for (int i = 0; i < 200; ++i) {
    const auto bytes = RandomRecord(random);
    const support::GuardedBuffer given(bytes.data(), bytes.size());
    std::printf("record %d: %s\n", i, computer.DigestOfResults(given.As<DEVMODEW>()).c_str());
  }
}

void WriteSheetDigests(long actions) {
  for (unsigned seed = 0; RandomUserActions() < actions; ++seed) {
    std::mt19937 random(seed);
    std::vector<uint8_t> bytes(1000);
    std::ranges::generate(bytes, [&] { return static_cast<uint8_t>(random()); });
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    std::printf("seed %u: %s\n", seed, LastRunDigests().c_str());
  }
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 2) return 2;
  if (count > 2)
    support::SetControlWord(static_cast<uint16_t>(std::strtoul(arguments[2], nullptr, 0)));
  WriteRecordDigests();
  WriteSheetDigests(std::strtol(arguments[1], nullptr, 10));
}
