// printhost plays the spooler and the application for the driver's user-interface module.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "host/commands/commands.h"
#include "host/failure.h"
#include "host/utf8.h"

namespace printhost {

std::u16string Call::TextArgument(std::size_t n) const {
  return FromUtf8(arguments.positional().at(n));
}

void RequirePrinter(const platform::Machine& machine, const std::u16string& name) {
  if (!machine.FindPrinter(name))
    throw Failure{kFailed, "there is no printer \"" + ToUtf8(name) +
                               "\"; \"printhost list\" shows those that are installed"};
}

std::u16string Call::PrinterArgument() const {
  std::u16string name = TextArgument(0);
  RequirePrinter(machine, name);
  return name;
}

static void PrintFields(const Json& fields, const std::string& prefix) {
  for (const auto& [name, value] : fields.items()) {
    if (value.is_object())
      PrintFields(value, prefix + name + '.');
    else
      std::cout << prefix << Printable(name) << '\t'
                << Printable(value.is_string() ? value.get<std::string>() : value.dump()) << '\n';
  }
}

int Call::PrintResult(const Json& result) const {
  // Names from a driver's file may be invalid UTF-8.
  if (json())
    std::cout << result.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
  else
    PrintFields(result, "");
  return kDone;
}

std::span<const Command> Commands() {
  static const Command commands[] = {kAdd,     kRemove,     kList,  kCaps,     kSettings,
                                     kConvert, kSetDefault, kData,  kRegistry, kMachine,
                                     kDevice,  kModule,     kSheet, kPlay,     kDemo};
  return commands;
}

namespace {

std::filesystem::path DefaultState() {
  if (const char* state = std::getenv("XDG_STATE_HOME"); state != nullptr && *state == '/')
    return std::filesystem::path(state) / "printhost";
  if (const char* home = std::getenv("HOME"); home != nullptr && *home == '/')
    return std::filesystem::path(home) / ".local/state/printhost";
  throw Failure{kUsage, "neither XDG_STATE_HOME nor HOME is set; name a folder with --state DIR"};
}

int Run(std::vector<std::string> arguments) {
  const CommandLine line(Commands(), std::move(arguments));
  int exit = kDone;
  if (line.command() == nullptr) {
    std::cout << line.text();
  } else {
    const auto machine = platform::Machine::Open(
        line.state().empty() ? DefaultState() : std::filesystem::path(line.state()));
    Call call{line.arguments(), *machine};
    exit = line.command()->run(call);
  }
  std::cout.flush();
  if (!std::cout) throw Failure{kFailed, "standard output cannot be written"};
  return exit;
}

}  // namespace
}  // namespace printhost

int main(int argc, char** argv) {
  try {
    return printhost::Run({argv + 1, argv + argc});
  } catch (const printhost::Failure& failure) {
    std::cerr << "printhost: " << printhost::Printable(failure.message) << '\n';
    return failure.exit;
  } catch (const std::exception& error) {
    std::cerr << "printhost: " << printhost::Printable(error.what()) << '\n';
    return printhost::kFailed;
  }
}
