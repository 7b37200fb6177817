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

  // Prints an answer: as JSON, or its members in lines of name and value. Answers kDone.
  int Answer(const Json& answer) const;
  bool json() const { return arguments.Has("--json"); }
  // The n-th positional argument as the platform's text.
  std::u16string Text(std::size_t n) const;
  // The first positional argument, which has to name an installed printer; throws Failure.
  std::u16string Printer() const;
};

struct Command {
  std::string_view name;
  std::string_view positional;  // as the help shows them
  std::size_t least, most;      // how many positional arguments
  std::span<const Option> options;
  std::string_view summary;
  int (*run)(Call& call);  // answers an exit code; throws Failure
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

// Throws Failure, with where to look, when there is no such printer.
void RequirePrinter(const platform::Machine& machine, const std::u16string& name);

// Installs a printer as the spooler does when a driver's printer is added: the initialise event,
// then the driver's default record as the printer's. Throws Failure; then no printer is left
// behind.
void InstallPrinter(platform::Machine& machine, const std::u16string& name,
                    const std::u16string& driverName, bool companions, bool native = false);

// One option each that several commands have.
inline constexpr Option kJsonOption = {"--json", 0, "", "answer as JSON"};

}  // namespace printhost
