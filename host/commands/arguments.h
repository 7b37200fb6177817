// Parses the command line: a command, its options by name and its positional arguments in order.
#pragma once

#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace printhost {

struct Option {
  std::string_view name;   // with its dashes
  int values = 0;          // number of values that follow it
  std::string_view shown;  // the values, as the help shows them
  std::string_view help;
};

class Arguments {
 public:
  bool Has(std::string_view option) const { return values_.contains(option); }
  // Returns the n-th value of an option; empty when the option is missing.
  std::string Value(std::string_view option, std::size_t n = 0) const;
  const std::vector<std::string>& positional() const { return positional_; }

 private:
  friend class CommandLine;
  std::map<std::string, std::vector<std::string>, std::less<>> values_;
  std::vector<std::string> positional_;
};

struct Command;

// A parsed command line. Options of a command may follow its name in any place, as "--name value"
// or "--name=value"; after "--" nothing is an option.
class CommandLine {
 public:
  // Throws Failure (usage) for an unknown command or option, a missing or extra argument, or an
  // option that occurs twice.
  CommandLine(std::span<const Command> commands, std::vector<std::string> arguments);

  // Returns the command to run; null for a request for help or the version.
  const Command* command() const { return command_; }
  const Arguments& arguments() const { return arguments_; }
  // Returns the help or version to print when there is no command.
  const std::string& text() const { return text_; }
  // Returns the state directory; empty when --state is missing.
  const std::string& state() const { return state_; }

 private:
  const Command* command_ = nullptr;
  Arguments arguments_;
  std::string text_;
  std::string state_;
};

// Parses "yes" or "no". Throws Failure (usage) for any other value.
bool ParseYesOrNo(std::string_view option, std::string_view value);

}  // namespace printhost
