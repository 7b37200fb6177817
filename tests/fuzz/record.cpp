// Records of callers, and what the spooler keeps as a printer's own, as any bytes at all. The first
// bytes choose the system, the stored settings and how the record is cut.
#include <windows.h>
#include <winddiui.h>

#include <algorithm>
#include <string>

#include "tests/fuzz/harness.h"

namespace {

using namespace kestrel;
using support::At;
using support::kPrinter;

constexpr ptrdiff_t kChoices = 4;

// Whatever the driver gets is a block of its own, whose ends the address sanitizer watches. A
// record may claim more than the input has; a caller who tells the truth has all of it.
std::vector<uint8_t> TruthfulRecord(const uint8_t* data, size_t size) {
  std::vector<uint8_t> start(data, data + std::min<size_t>(size, 72));
  start.resize(72, 0x5A);
  const size_t claimed = size_t{At<WORD>(start.data(), 68)} + At<WORD>(start.data(), 70);
  std::vector<uint8_t> record(std::max(start.size(), claimed), 0x5A);
  std::memcpy(record.data(), data, std::min(size, record.size()));
  return record;
}

void AskEverything(HANDLE printer, DEVMODEW* record) {
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
  // Once its public fields have been made to follow, the driver's own record stays as it is.
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
  if ((data[-kChoices] & 4) != 0) machine->SetDefaultRecord(kPrinter, support::BytesOf(data, size));
  const int blocks = machine->LiveAllocations();
  AskEverything(OpenedPrinter().get(),
                reinterpret_cast<DEVMODEW*>(TruthfulRecord(data, size).data()));
  Require(machine->LiveAllocations() == blocks && machine->OpenPrinterHandles() == 0);
  return 0;
}
