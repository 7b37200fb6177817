// Arbitrary bytes as the record of a caller and as the printer data of the spooler. The first bytes
// choose the system, the stored settings, when another program changes the printer, and how input
// and output overlap.
#include <windows.h>
#include <winddiui.h>

#include <algorithm>
#include <cstdlib>
#include <string>

#include "tests/fuzz/harness.h"

namespace {

using namespace kestrel;
using support::At;
using support::kPrinter;

constexpr ptrdiff_t kChoices = 4;

constexpr size_t kOwnSize = sizeof(SettingsRecord);

// Returns a record in a block of its own, whose ends the address sanitizer watches. The block has
// the size that the record declares, up to the size of the driver record, beyond which nothing is
// read.
std::vector<uint8_t> ExactRecord(const uint8_t* data, size_t size) {
  std::vector<uint8_t> start(data, data + std::min<size_t>(size, 72));
  start.resize(72, 0x5A);
  const size_t claimed = size_t{At<WORD>(start.data(), 68)} + At<WORD>(start.data(), 70);
  std::vector<uint8_t> record(std::clamp(claimed, start.size(), kOwnSize), 0x5A);
  std::memcpy(record.data(), data, std::min(size, record.size()));
  return record;
}

// Converts a record into an output that overlaps it by `distance` bytes after or before it. The
// result equals that of separate buffers.
void ConvertOverlapping(const std::vector<uint8_t>& record, int distance,
                        const SettingsRecord& separate) {
  const size_t gap = static_cast<size_t>(std::abs(distance));
  std::vector<uint8_t> memory(std::max(record.size(), kOwnSize) + gap);
  uint8_t* const input = memory.data() + (distance < 0 ? gap : 0);
  uint8_t* const output = memory.data() + (distance < 0 ? 0 : gap);
  std::memcpy(input, record.data(), record.size());
  std::u16string name = kPrinter;
  LONG size = 452;
  Require(DrvConvertDevMode(name.data(), reinterpret_cast<DEVMODEW*>(input),
                            reinterpret_cast<DEVMODEW*>(output), &size, CDM_CONVERT) == TRUE);
  Require(std::memcmp(output, &separate, kOwnSize) == 0);
}

void CallEverything(HANDLE printer, std::vector<uint8_t> bytes, int distance) {
  auto* const record = reinterpret_cast<DEVMODEW*>(bytes.data());
  std::u16string name = kPrinter;
  LONG size = 452;
  const auto converted = [&](DEVMODEW* from) {
    auto to = std::make_unique<SettingsRecord>();
    Require(DrvConvertDevMode(name.data(), from, &to->Public, &size, CDM_CONVERT) == TRUE);
    return to;
  };
  const auto out = converted(record);
  const WORD given = At<WORD>(record, 68);
  const bool echoed = given >= 76 && given < 220;
  Require(size == 452 && out->Public.dmSize == (echoed ? given : 220));
  if (!echoed) Require(out->Private.Signature == SETTINGS_SIGNATURE);
  ConvertOverlapping(bytes, distance, *out);
  // A second conversion of a converted record changes nothing.
  const auto once = converted(&out->Public);
  Require(std::memcmp(once.get(), converted(&once->Public).get(), sizeof *once) == 0);

  Require(DrvDocumentProperties(nullptr, printer, name.data(), &out->Public, record,
                                DM_COPY | DM_MODIFY) == 1);
  WORD ids[21];
  const DWORD papers = DrvDeviceCapabilities(printer, name.data(), DC_PAPERS, ids, record);
  Require(papers >= 1 && papers <= 21 && ids[papers - 1] == 256);
  std::vector<WCHAR> names(papers * 64);
  for (const WORD index : {DC_PAPERNAMES, DC_PAPERSIZE, DC_ENUMRESOLUTIONS})
    DrvDeviceCapabilities(printer, name.data(), index, names.data(), record);
  Require(DrvSplDeviceCaps(printer, name.data(), DC_MEDIAREADY, names.data(), papers * 64,
                           record) == papers);
  ATTRIBUTE_INFO_4 attributes{};
  DrvQueryJobAttributes(printer, record, 4, reinterpret_cast<BYTE*>(&attributes));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const auto machine = NewComputer();
  static const auto factory = support::DefaultBlock();
  if (size < kChoices) return 0;
  const DWORD major = (data[0] & 1) != 0 ? 10 : 5;
  if (machine->os().major != major) machine->SetOs({.major = major, .minor = 0});

  auto stored = factory;
  stored.Printer.PaperNum = static_cast<int16_t>(At<int8_t>(data, 1) * 256 + data[2]);
  stored.Record.Private.nCompulsory = (data[0] & 2) != 0;
  support::StoreBlock(*machine, stored);
  data += kChoices;
  size -= kChoices;
  if ((data[-kChoices] & 8) != 0 && size > 0) {
    std::vector<std::byte> part(kPrinterPartSize);
    for (size_t i = 0; i < part.size(); ++i) part[i] = std::byte{data[i % size]};
    machine->SetData(kPrinter, u"Private DevMode", {REG_BINARY, part});
  }
  if ((data[-kChoices] & 4) != 0) machine->SetDefaultRecord(kPrinter, support::BytesOf(data, size));
  const int blocks = machine->LiveAllocations();
  // Another program changes the printer at a different call in each run.
  machine->faults.FailNth(platform::Fault::kSpoolerChange, data[3 - kChoices] % 64);
  CallEverything(OpenedPrinter().get(), ExactRecord(data, size),
                 static_cast<int8_t>(data[3 - kChoices]) * 4);
  machine->faults.Clear();
  Require(machine->LiveAllocations() == blocks && machine->OpenPrinterHandles() == 0);
  return 0;
}
