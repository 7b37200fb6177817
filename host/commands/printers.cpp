// The add, remove and list commands.
#include <algorithm>
#include <iostream>

#include "companions/simulated_device.h"
#include "driver/settings_block.h"
#include "host/commands/commands.h"
#include "host/driver_module.h"
#include "host/failure.h"
#include "host/record_json.h"
#include "host/utf8.h"

namespace printhost {
namespace {

constexpr Option kAddOptions[] = {
    {"--driver-name", 1, "TEXT",
     "the driver's name as the spooler knows it (default \"VELA QM610r\")"},
    {"--without-companions", 0, "", "do not install the device and barcode libraries"},
    {"--native", 0, "", "install this system's build of the driver in place of the Windows DLL"},
};
constexpr Option kListOptions[] = {kJsonOption};

// Stores the driver's default record as the printer's; the driver ignores its stored paper table
// for a printer without one.
void StoreDefaultRecord(platform::Machine& machine, DriverModule& module, std::u16string name) {
  LONG size = 0;
  module.convertDevMode(name.data(), nullptr, nullptr, &size, CDM_DRIVER_DEFAULT);
  Record record(static_cast<std::size_t>(size > 0 ? size : 0));
  if (record.empty() ||
      !module.convertDevMode(name.data(), nullptr, AsDevMode(record), &size, CDM_DRIVER_DEFAULT))
    throw Failure{kFailed, "the driver gave no default record for \"" + ToUtf8(name) + "\""};
  record.resize(RecordExtent(record));
  machine.SetDefaultRecord(name, record);
}

// Throws Failure when a name has characters that programs may drop or display differently.
void RequireName(std::u16string_view name, std::string_view what) {
  constexpr std::size_t kMaxNameUnits = 220;
  const auto isControl = [](char16_t c) {
    return c < 0x20 || (c >= 0x7F && c < 0xA0) || c == 0x2028 || c == 0x2029;
  };
  if (name.empty() || name.size() > kMaxNameUnits || std::ranges::any_of(name, isControl) ||
      name[0] == 0xFEFF || name[0] == 0xFFFE)
    throw Failure{kUsage,
                  "add takes " + std::string(what) + " of 1 to " + std::to_string(kMaxNameUnits) +
                      " characters without control characters, line breaks and byte order marks"};
}

// Throws Failure when a name is blank before its first comma: programs show and store only that
// part.
void RequireNameBeforeComma(std::u16string_view name) {
  constexpr std::u16string_view kBlanks = u" \u3000";
  if (name.substr(0, name.find(u',')).find_first_not_of(kBlanks) == name.npos)
    throw Failure{kUsage, "add takes a name that is not empty or blank before its first comma"};
}

int Add(Call& call) {
  const std::u16string name = call.TextArgument(0);
  const std::u16string driver = call.arguments.Has("--driver-name")
                                    ? FromUtf8(call.arguments.Value("--driver-name"))
                                    : platform::PrinterSetup().driverName;
  RequireName(name, "a printer's name");
  RequireNameBeforeComma(name);
  RequireName(driver, "a driver's name");
  InstallPrinter(call.machine, name, driver, !call.arguments.Has("--without-companions"),
                 call.arguments.Has("--native"));
  return kDone;
}

int Remove(Call& call) {
  std::u16string name = call.PrinterArgument();
  DriverModule module(call.machine);
  call.machine.Transaction([&] {
    module.printerEvent(name.data(), PRINTER_EVENT_DELETE, 0, 0);
    call.machine.RemovePrinter(name);
    companions::RemoveSimulatedDevice(name);
  });
  return kDone;
}

int List(Call& call) {
  Json json = Json::array();
  for (const platform::PrinterSetup& printer : call.machine.Printers()) {
    json.push_back({{"name", ToUtf8(printer.name)},
                    {"driver", ToUtf8(printer.driverName)},
                    {"port", ToUtf8(printer.portName)}});
    if (!call.json())
      std::cout << Printable(ToUtf8(printer.name)) << '\t' << Printable(ToUtf8(printer.driverName))
                << '\t' << Printable(ToUtf8(printer.portName)) << '\n';
  }
  return call.json() ? call.PrintResult(json) : kDone;
}

}  // namespace

void InstallPrinter(platform::Machine& machine, const std::u16string& name,
                    const std::u16string& driverName, bool companions, bool native) {
  if (companions) InstallCompanions(machine);
  DriverModule module(machine, native ? DriverFile::kNative : DriverFile::kImage);
  platform::PrinterSetup setup;
  setup.name = name;
  setup.driverName = driverName;
  machine.Transaction([&] {
    if (machine.FindPrinter(name))
      throw Failure{kFailed,
                    "there is a printer \"" + ToUtf8(name) + "\" already; remove it first"};
    machine.AddPrinter(setup);
    std::u16string mutableName = name;
    module.printerEvent(mutableName.data(), PRINTER_EVENT_INITIALIZE, 0, 0);
    StoreDefaultRecord(machine, module, name);
  });
}

const Command kAdd = {"add", "NAME", kAddOptions, "installs a printer", Add};
const Command kRemove = {
    "remove", "NAME", {}, "removes a printer with all that is stored for it", Remove};
const Command kList = {"list", "", kListOptions, "the printers: name, driver, port", List};

}  // namespace printhost
