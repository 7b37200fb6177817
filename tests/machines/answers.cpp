// answers ACTIONS [CONTROL_WORD]: prints digests of what the module under test returns, stores and
// shows, for the comparison of two machines: a line for each random record, and a line for each
// seed of a random user until that many actions are done. Sets the x87 control word first, when
// given, as an application may have.
#include <windows.h>
#include <winddiui.h>
#include <winspool.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <vector>

#include "driver/handles.h"
#include "tests/fuzz/harness.h"
#include "tests/fuzz/random_user.h"
#include "tests/support/digest.h"
#include "tests/support/exports.h"
#include "tests/support/guarded_buffer.h"
#include "tests/support/x87.h"

namespace {

using support::BytesOf;
using support::Digest;
using Record = std::vector<std::byte>;

// Returns a record of the driver with some random words that is as long as its sizes declare; every
// second one has a shorter public part.
Record RandomRecord(std::minstd_rand& random, bool isShort) {
  Record record = BytesOf(support::DefaultBlock().Record);
  for (auto changes = random() % 12; changes > 0; --changes)
    support::Put(record.data(), random() % 225 * 2, static_cast<uint16_t>(random()));
  auto& header = *reinterpret_cast<DEVMODEW*>(record.data());
  header.dmSize = static_cast<WORD>(isShort ? 76 + random() % 145 : 220);
  header.dmDriverExtra = static_cast<WORD>(record.size() - header.dmSize);
  return record;
}

class Computer {
 public:
  // Returns a digest of what all exports without a prompt return and write for a record, or for
  // none (null). Calls every capability index without a record, some with one.
  std::string DigestOfResults(DEVMODEW* record) {
    Digest digest;
    const HANDLE printer = printer_.get();
    for (int index = -1; index < 64; index += record != nullptr ? 5 : 1) {
      AddCall(digest, [&](DEVMODEW* out) {
        return exports_.DrvDeviceCapabilities(printer, name_.data(), WORD(index), out, record);
      });
    }
    for (const DWORD mode : {0, 1, 2, 3, 8, 9, 10, 11}) {  // without DM_PROMPT
      AddCall(digest, [&](DEVMODEW* out) {
        return exports_.DrvDocumentProperties(nullptr, printer, name_.data(), out, record, mode);
      });
      AddCall(digest, [&](DEVMODEW* out) {
        LONG size = 452;
        const BOOL converted = exports_.DrvConvertDevMode(name_.data(), record, out, &size, mode);
        digest.Add(size);
        return converted;
      });
    }
    AddCall(digest, [&](DEVMODEW* out) {
      return exports_.DrvSplDeviceCaps(printer, name_.data(), DC_MEDIAREADY, out, 128, record);
    });
    AddCall(digest, [&](DEVMODEW* out) {
      return exports_.DrvQueryJobAttributes(printer, record, 4, reinterpret_cast<BYTE*>(out));
    });
    return digest.Text();
  }

 private:
  // Adds the result, last error and output of a call.
  template <typename Call>
  void AddCall(Digest& digest, Call call) {
    const support::GuardedBuffer output(2688);
    std::ranges::fill(output.bytes(), std::byte{0xCD});
    SetLastError(77);
    const uint16_t word = support::ControlWord();
    const int64_t result = call(output.As<DEVMODEW>());
    Require(support::ControlWord() == word && !support::DirectionFlag());
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
  for (int i = 0; i < 400; ++i) {
    const Record bytes = RandomRecord(random, i % 2 != 0);
    const support::GuardedBuffer given(bytes.data(), bytes.size());
    std::printf("record %d: %s\n", i, computer.DigestOfResults(given.As<DEVMODEW>()).c_str());
  }
  std::printf("no record: %s\n", computer.DigestOfResults(nullptr).c_str());
}

void WriteSheetDigests(long actions) {
  for (unsigned seed = 0; RandomUserActions() < actions; ++seed) {
    std::mt19937 random(seed);
    std::vector<uint8_t> bytes(1000);
    std::ranges::generate(bytes, [&] { return static_cast<uint8_t>(random()); });
    std::fprintf(stderr, "seed %u\n", seed);  // a failure ends the process
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    std::printf("seed %u: %s\n", seed, LastRunDigests().c_str());
  }
  std::printf("%ld actions\n", RandomUserActions());
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 2) return 2;
  if (count > 2)
    support::SetControlWord(static_cast<uint16_t>(std::strtoul(arguments[2], nullptr, 0)));
  WriteRecordDigests();
  WriteSheetDigests(std::strtol(arguments[1], nullptr, 10));
}
