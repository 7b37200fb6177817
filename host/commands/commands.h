// The commands of printhost.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "host/commands/arguments.h"
#include "host/record_json.h"
#include "platform/machine/machine.h"

namespace printhost {

// One call of a command.
struct Call {
  const Arguments& arguments;
  platform::Machine& machine;

  bool json() const { return arguments.Has("--json"); }
  // Prints a result: as JSON with --json, otherwise one line of name and value for each member.
  // Returns kDone.
  int PrintResult(const Json& result) const;
  // Returns the n-th positional argument in UTF-16.
  std::u16string TextArgument(std::size_t n) const;
  // Returns the first positional argument. Throws Failure unless it names an installed printer.
  std::u16string PrinterArgument() const;
};

struct Command {
  std::string_view name;
  std::string_view positional;  // the arguments without a name, optional ones in brackets
  std::span<const Option> options;
  std::string_view summary;
  int (*run)(Call& call);  // returns an exit code; throws Failure
};

std::span<const Command> Commands();

// Installing and removing printers (printers.cpp).
extern const Command kAdd, kRemove, kList;
// Settings records (records.cpp) and capabilities (capabilities.cpp).
extern const Command kSettings, kConvert, kSetDefault, kCaps;
// What is stored (stored.cpp) and what the computer is (computer.cpp).
extern const Command kData, kRegistry, kMachine, kDevice;
// The driver's own file (module.cpp).
extern const Command kModule;
// Property sheets: in the browser (sheets.cpp) and by a script (play.cpp).
extern const Command kSheet, kDemo, kPlay;

// Throws Failure when no printer of this name is installed.
void RequirePrinter(const platform::Machine& machine, const std::u16string& name);

// Installs a printer as the spooler does: sends the driver the initialize event, then stores the
// driver's default record as the printer's. Throws Failure and leaves no printer when a step fails.
void InstallPrinter(platform::Machine& machine, const std::u16string& name,
                    const std::u16string& driverName, bool companions, bool native = false);

// An option of several commands.
inline constexpr Option kJsonOption = {"--json", 0, "", "answer as JSON"};

}  // namespace printhost
