// printhost: the spooler and the application around the driver's user-interface module.
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

std::u16string Call::Text(std::size_t n) const { return FromUtf8(arguments.positional().at(n)); }

void RequirePrinter(const platform::Machine& machine, const std::u16string& name) {
  if (!machine.FindPrinter(name))
    throw Failure{kFailed, "there is no printer \"" + ToUtf8(name) +
                               "\"; \"printhost list\" shows those that are installed"};
}

std::u16string Call::Printer() const {
  std::u16string name = Text(0);
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

int Call::Answer(const Json& answer) const {
  // Names from a driver's file may be anything.
  if (json())
    std::cout << answer.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
  else
    PrintFields(answer, "");
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

int Main(std::vector<std::string> words) {
  const CommandLine line(Commands(), std::move(words));
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

int main(int count, char** words) {
  try {
    return printhost::Main({words + 1, words + count});
  } catch (const printhost::Failure& failure) {
    std::cerr << "printhost: " << printhost::Printable(failure.message) << '\n';
    return failure.exit;
  } catch (const std::exception& problem) {
    std::cerr << "printhost: " << printhost::Printable(problem.what()) << '\n';
    return printhost::kFailed;
  }
}
