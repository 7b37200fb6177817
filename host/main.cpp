// printhost: the spooler and the application around the driver's user-interface module.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/commands.h"
#include "host/driver_module.h"
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

constexpr Option kStateOption = {"--state", 1, "DIR", "the folder that the computer is kept in"};
constexpr Option kHelpOption = {"--help", 0, "", "show this help, as -h does"};
constexpr Option kVersionOption = {"--version", 0, "", "show the driver package's version"};

void PrintOption(const Option& option) {
  std::string left = "  " + std::string(option.name);
  if (!option.shown.empty()) left.append(" ").append(option.shown);
  left.resize(std::max<std::size_t>(left.size() + 2, 34), ' ');
  std::cout << left << option.help << '\n';
}

void PrintHelp() {
  std::cout << "printhost [--state DIR] COMMAND …\n"
               "Installs label printers on a computer of its own, asks their driver and shows its "
               "sheets.\n\n";
  for (const Command& command : Commands()) {
    std::string left = "  " + std::string(command.name) + ' ' + std::string(command.positional);
    left.resize(std::max<std::size_t>(left.size() + 2, 34), ' ');
    std::cout << left << command.summary << '\n';
  }
  std::cout << "\nprinthost COMMAND --help tells a command's options, printhost --version the "
               "driver package's\nversion. The computer is kept in DIR, "
               "by default\n"
               "$XDG_STATE_HOME/printhost or ~/.local/state/printhost.\n"
               "Exit codes: 0 done, 1 cancelled, 2 usage, 3 failed.\n";
}

void PrintHelp(const Command& command) {
  std::cout << "printhost [--state DIR] " << command.name;
  if (!command.positional.empty()) std::cout << ' ' << command.positional;
  std::cout << (command.options.empty() ? "\n" : " [OPTION…]\n") << command.summary << "\n\n";
  for (const Option& option : command.options) PrintOption(option);
  PrintOption(kStateOption);
  PrintOption(kHelpOption);
}

std::filesystem::path DefaultState() {
  if (const char* state = std::getenv("XDG_STATE_HOME"); state != nullptr && *state == '/')
    return std::filesystem::path(state) / "printhost";
  if (const char* home = std::getenv("HOME"); home != nullptr && *home == '/')
    return std::filesystem::path(home) / ".local/state/printhost";
  throw Failure{kUsage, "neither XDG_STATE_HOME nor HOME is set; name a folder with --state DIR"};
}

// Options before the command's name are those of the program alone.
int Main(std::vector<std::string> words) {
  std::size_t first = 0;
  while (first < words.size() && words[first].starts_with('-'))
    first += words[first] == "--state" ? 2 : 1;
  first = std::min(first, words.size());
  const Option programOptions[] = {kStateOption, kHelpOption, kVersionOption};
  const Arguments program(programOptions, std::span(words).first(first));
  if (program.Has("--help") || (first < words.size() && words[first] == "help")) {
    PrintHelp();
    return kDone;
  }
  if (program.Has("--version")) {
    std::cout << "printhost " << DriverPackageVersion() << '\n';
    return kDone;
  }
  if (first == words.size()) throw Failure{kUsage, "no command given; --help shows them"};
  const auto commands = Commands();
  const auto command = std::ranges::find(commands, std::string_view(words[first]), &Command::name);
  if (command == commands.end())
    throw Failure{kUsage, "there is no command \"" + words[first] + "\"; --help shows them"};

  std::vector<Option> options(command->options.begin(), command->options.end());
  options.insert(options.end(), {kStateOption, kHelpOption});
  const Arguments arguments(options, std::span(words).subspan(first + 1));
  if (arguments.Has("--help")) {
    PrintHelp(*command);
    return kDone;
  }
  const std::size_t count = arguments.positional().size();
  if (count < command->least || count > command->most)
    throw Failure{kUsage, std::string(command->name) + " takes " +
                              (command->most == 0 ? "no name" : std::string(command->positional))};
  const std::string state =
      arguments.Has("--state") ? arguments.Value("--state") : program.Value("--state");
  if (state.empty() && (arguments.Has("--state") || program.Has("--state")))
    throw Failure{kUsage, "--state takes a folder"};
  const auto machine =
      platform::Machine::Open(state.empty() ? DefaultState() : std::filesystem::path(state));
  Call call{arguments, *machine};
  const int exit = command->run(call);
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
