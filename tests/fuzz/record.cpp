// Records of callers, and what the spooler keeps as a printer's own, as any bytes at all. The first
// bytes choose the system, the stored settings and how the record is cut.
#include <windows.h>
#include <winddiui.h>

#include <algorithm>
#include <string>

#include "driver/handles.h"
#include "tests/fuzz/harness.h"
#include "tests/support/guarded_buffer.h"
#include "tests/support/settings.h"

namespace {

using namespace kestrel;
using support::At;
using support::kPrinter;

constexpr size_t kChoices = 4;

// A record may claim more than the input has; a caller who tells the truth has all of it.
support::GuardedBuffer TruthfulRecord(const uint8_t* data, size_t size) {
  std::vector<uint8_t> bytes(data, data + size);
  if (bytes.size() < 72) bytes.resize(72, 0x5A);
  const size_t claimed = size_t{At<WORD>(bytes.data(), 68)} + At<WORD>(bytes.data(), 70);
  bytes.resize(std::max(size_t{72}, claimed), 0x5A);
  return {bytes.data(), bytes.size()};
}

void AskEverything(HANDLE printer, DEVMODEW* record) {
  std::u16string name = kPrinter;
  const support::GuardedBuffer out(452);
  LONG size = 452;
  Require(DrvConvertDevMode(name.data(), record, out.As<DEVMODEW>(), &size, CDM_CONVERT) == TRUE);
  const WORD given = At<WORD>(record, 68);
  const bool echoed = given >= 76 && given < 220;
  Require(size == 452 && At<WORD>(out.data(), 68) == (echoed ? given : 220));
  if (!echoed) Require(At<DWORD>(out.data(), 448) == SETTINGS_SIGNATURE);
  // Once its public fields have been made to follow, the driver's own record stays as it is.
  const support::GuardedBuffer once(452);
  const support::GuardedBuffer twice(452);
  const auto convert = [&](const support::GuardedBuffer& from, const support::GuardedBuffer& to) {
    return DrvConvertDevMode(name.data(), from.As<DEVMODEW>(), to.As<DEVMODEW>(), &size,
                             CDM_CONVERT) == TRUE;
  };
  Require(convert(out, once) && convert(once, twice));
  Require(std::equal(once.bytes().begin(), once.bytes().end(), twice.bytes().begin()));

  Require(DrvDocumentProperties(nullptr, printer, name.data(), out.As<DEVMODEW>(), record,
                                DM_COPY | DM_MODIFY) == 1);
  WORD ids[21];
  const DWORD papers = DrvDeviceCapabilities(printer, name.data(), DC_PAPERS, ids, record);
  Require(papers >= 1 && papers <= 21 && ids[papers - 1] == 256);
  const support::GuardedBuffer names(papers * 128);
  for (const WORD index : {DC_PAPERNAMES, DC_PAPERSIZE, DC_ENUMRESOLUTIONS})
    DrvDeviceCapabilities(printer, name.data(), index, names.data(), record);
  Require(DrvSplDeviceCaps(printer, name.data(), DC_MEDIAREADY, names.data(), papers * 64,
                           record) == papers);
  ATTRIBUTE_INFO_4 attributes{};
  DrvQueryJobAttributes(printer, record, 4, reinterpret_cast<BYTE*>(&attributes));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const DrivesInMemory inMemory;
  static const auto machine = platform::Machine::Create();
  static const bool added = (machine->AddPrinter({.name = kPrinter}), true);
  static_cast<void>(added);
  if (size < kChoices) return 0;
  machine->SetOs({.major = (data[0] & 1) != 0 ? 10u : 5u, .minor = 0});

  auto stored = support::DefaultBlock();
  stored.Printer.PaperNum = static_cast<int16_t>(At<int8_t>(data, 1) * 256 + data[2]);
  stored.Record.Private.nCompulsory = (data[0] & 2) != 0;
  support::StoreBlock(*machine, stored);
  const support::GuardedBuffer record = TruthfulRecord(data + kChoices, size - kChoices);
  if ((data[0] & 4) != 0)
    machine->SetDefaultRecord(kPrinter, support::BytesOf(data + kChoices, size - kChoices));

  const int blocks = machine->LiveAllocations();
  {
    HANDLE printer = nullptr;
    PRINTER_DEFAULTSW all = {nullptr, nullptr, PRINTER_ALL_ACCESS};
    OpenPrinterW(const_cast<LPWSTR>(kPrinter), &printer, &all);
    const Printer owner(printer);
    AskEverything(printer, record.As<DEVMODEW>());
  }
  Require(machine->LiveAllocations() == blocks && machine->OpenPrinterHandles() == 0);
  return 0;
}
