// Records of callers, and what the spooler keeps as a printer's own, as any bytes at all. The first
// bytes choose the system, the stored settings and how the record is cut.
#include <windows.h>
#include <winddiui.h>

#include <algorithm>
#include <memory>
#include <string>

#include "driver/handles.h"
#include "tests/fuzz/harness.h"
#include "tests/support/settings.h"

namespace {

using namespace kestrel;
using support::At;
using support::kPrinter;

constexpr size_t kChoices = 4;

// A block of its own, whose ends the address sanitizer watches.
template <typename T>
using Block = std::unique_ptr<T[]>;

// A record may claim more than the input has; a caller who tells the truth has all of it.
Block<uint8_t> TruthfulRecord(const uint8_t* data, size_t size) {
  uint8_t start[72];
  std::memset(start, 0x5A, sizeof start);
  std::memcpy(start, data, std::min(size, sizeof start));
  const size_t claimed = size_t{At<WORD>(start, 68)} + At<WORD>(start, 70);
  const size_t whole = std::max(sizeof start, claimed);
  Block<uint8_t> record(new uint8_t[whole]);
  std::memset(record.get(), 0x5A, whole);
  std::memcpy(record.get(), data, std::min(size, whole));
  return record;
}

// A caller's room for a record of the driver's.
struct Room {
  Block<std::byte> bytes = std::make_unique<std::byte[]>(sizeof(SettingsRecord));
  operator DEVMODEW*() const { return reinterpret_cast<DEVMODEW*>(bytes.get()); }
};

void AskEverything(HANDLE printer, DEVMODEW* record) {
  std::u16string name = kPrinter;
  const Room out, once, twice;
  LONG size = 452;
  Require(DrvConvertDevMode(name.data(), record, out, &size, CDM_CONVERT) == TRUE);
  const WORD given = At<WORD>(record, 68);
  const bool echoed = given >= 76 && given < 220;
  Require(size == 452 && At<WORD>(out, 68) == (echoed ? given : 220));
  if (!echoed) Require(At<DWORD>(out, 448) == SETTINGS_SIGNATURE);
  // Once its public fields have been made to follow, the driver's own record stays as it is.
  Require(DrvConvertDevMode(name.data(), out, once, &size, CDM_CONVERT) == TRUE);
  Require(DrvConvertDevMode(name.data(), once, twice, &size, CDM_CONVERT) == TRUE);
  Require(std::equal(once.bytes.get(), once.bytes.get() + 452, twice.bytes.get()));

  Require(DrvDocumentProperties(nullptr, printer, name.data(), out, record, DM_COPY | DM_MODIFY) ==
          1);
  WORD ids[21];
  const DWORD papers = DrvDeviceCapabilities(printer, name.data(), DC_PAPERS, ids, record);
  Require(papers >= 1 && papers <= 21 && ids[papers - 1] == 256);
  const Block<WCHAR> names(new WCHAR[papers * 64]);
  for (const WORD index : {DC_PAPERNAMES, DC_PAPERSIZE, DC_ENUMRESOLUTIONS})
    DrvDeviceCapabilities(printer, name.data(), index, names.get(), record);
  Require(DrvSplDeviceCaps(printer, name.data(), DC_MEDIAREADY, names.get(), papers * 64, record) ==
          papers);
  ATTRIBUTE_INFO_4 attributes{};
  DrvQueryJobAttributes(printer, record, 4, reinterpret_cast<BYTE*>(&attributes));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const DrivesInMemory inMemory;
  static const auto machine = platform::Machine::Create();
  static const bool furnished = [] {
    machine->AddPrinter({.name = kPrinter});
    machine->HoldProfile(u"C:\\WINDOWS\\SetupKit_QM6_1R.INI", "");  // no drive is looked at
    return true;
  }();
  static_cast<void>(furnished);
  if (size < kChoices) return 0;
  const DWORD major = (data[0] & 1) != 0 ? 10 : 5;
  if (machine->os().major != major) machine->SetOs({.major = major, .minor = 0});

  static const auto factory = support::DefaultBlock();
  auto stored = factory;
  stored.Printer.PaperNum = static_cast<int16_t>(At<int8_t>(data, 1) * 256 + data[2]);
  stored.Record.Private.nCompulsory = (data[0] & 2) != 0;
  support::StoreBlock(*machine, stored);
  const Block<uint8_t> record = TruthfulRecord(data + kChoices, size - kChoices);
  if ((data[0] & 4) != 0)
    machine->SetDefaultRecord(kPrinter, support::BytesOf(data + kChoices, size - kChoices));

  const int blocks = machine->LiveAllocations();
  {
    HANDLE printer = nullptr;
    PRINTER_DEFAULTSW all = {nullptr, nullptr, PRINTER_ALL_ACCESS};
    OpenPrinterW(const_cast<LPWSTR>(kPrinter), &printer, &all);
    const Printer owner(printer);
    AskEverything(printer, reinterpret_cast<DEVMODEW*>(record.get()));
  }
  Require(machine->LiveAllocations() == blocks && machine->OpenPrinterHandles() == 0);
  return 0;
}
