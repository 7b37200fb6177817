// answers ACTIONS [CONTROL_WORD]: prints what the module under test returns, stores and shows, so
// that the output of two machines can be compared: a line for each random record, and a line for
// each seed of a random user until that many actions are done. Sets the x87 control word first,
// when given, as an application may have.
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
#include "tests/fuzz/person.h"
#include "tests/support/digest.h"
#include "tests/support/exports.h"
#include "tests/support/guarded_buffer.h"
#include "tests/support/x87.h"

namespace {

using support::BytesOf;
using support::Digest;
using Record = std::vector<std::byte>;

// A settings record with random words, or random bytes; each as long as its sizes declare.
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

class Computer {
 public:
  // Returns digests of all results for a record, or for none (null). Calls every capability index
  // without a record, some with one.
  std::string AnswersFor(DEVMODEW* record) {
    Digest capabilities, resolutions, conversions, others;
    for (int index = -1; index < 64; index += record != nullptr ? 5 : 1) {
      Ask(capabilities, [&](DEVMODEW* out) {
        return exports_.DrvDeviceCapabilities(printer_.get(), name_.data(), WORD(index), out,
                                              record);
      });
    }
    for (const DWORD mode : {0, 1, 2, 3, 8, 9, 10, 11}) {  // without a prompt
      Ask(resolutions, [&](DEVMODEW* out) {
        return exports_.DrvDocumentProperties(nullptr, printer_.get(), name_.data(), out, record,
                                              mode);
      });
      Ask(conversions, [&](DEVMODEW* out) {
        LONG size = 452;
        return exports_.DrvConvertDevMode(name_.data(), record, out, &size, mode) + size * 2;
      });
    }
    Ask(others, [&](DEVMODEW* out) {
      return exports_.DrvSplDeviceCaps(printer_.get(), name_.data(), DC_MEDIAREADY, out, 128,
                                       record);
    });
    Ask(others, [&](DEVMODEW* out) {
      ULONG size = 64;
      return exports_.DrvQueryJobAttributes(printer_.get(), record, 4, (BYTE*)(out + 1)) +
             exports_.DevQueryPrint(printer_.get(), record, (DWORD*)(out + 2)) * 2 +
             exports_.DrvQueryColorProfile(printer_.get(), record, 1, out + 3, &size, (ULONG*)out) *
                 4 +
             size * 8;
    });
    return "capabilities " + capabilities.Text() + " resolutions " + resolutions.Text() +
           " conversions " + conversions.Text() + " others " + others.Text();
  }

 private:
  // Adds the result, last error and output of a call.
  template <typename Call>
  void Ask(Digest& digest, Call call) {
    const support::GuardedBuffer output(2688);
    std::memset(output.data(), 0xCD, output.size());
    SetLastError(77);
    const uint16_t word = support::ControlWord();
    const int64_t answer = call(output.As<DEVMODEW>());
    Require(support::ControlWord() == word && !support::DirectionFlag());
    digest.AddAll(answer, GetLastError());
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

void WriteRecordAnswers() {
  Computer computer;
  std::minstd_rand random(610);
  for (int i = 0; i < 400; ++i) {
    const Record bytes = RandomRecord(random, i % 4);
    const support::GuardedBuffer given(bytes.data(), bytes.size());
    std::printf("record %d: %s\n", i, computer.AnswersFor(given.As<DEVMODEW>()).c_str());
  }
  std::printf("no record: %s\n", computer.AnswersFor(nullptr).c_str());
}

void WriteSheetAnswers(long actions) {
  for (unsigned seed = 0; PersonActions() < actions; ++seed) {
    std::mt19937 random(seed);
    std::vector<uint8_t> bytes(1000);
    std::ranges::generate(bytes, [&] { return static_cast<uint8_t>(random()); });
    std::fprintf(stderr, "seed %u\n", seed);  // a failure ends the process
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    std::printf("seed %u: %s\n", seed, LastRunAnswers().c_str());
  }
  std::printf("%ld actions\n", PersonActions());
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 2) return 2;
  if (count > 2)
    support::SetControlWord(static_cast<uint16_t>(std::strtoul(arguments[2], nullptr, 0)));
  WriteRecordAnswers();
  WriteSheetAnswers(std::strtol(arguments[1], nullptr, 10));
}
