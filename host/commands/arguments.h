// The command line: commands, their options by name, everything else in order.
#pragma once

#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace printhost {

struct Option {
  std::string_view name;   // with its dashes
  int values = 0;          // how many arguments follow
  std::string_view shown;  // the values as the help names them
  std::string_view help;
};

class Arguments {
 public:
  bool Has(std::string_view option) const { return values_.contains(option); }
  // Returns the n-th value of an option; empty when the option was not given.
  std::string Value(std::string_view option, std::size_t n = 0) const;
  const std::vector<std::string>& positional() const { return positional_; }

 private:
  friend class CommandLine;
  std::map<std::string, std::vector<std::string>, std::less<>> values_;
  std::vector<std::string> positional_;
};

struct Command;

// A parsed command line. Options of a command may stand anywhere after its name, as "--name value"
// or "--name=value"; after "--" nothing is an option.
class CommandLine {
 public:
  // Throws Failure (usage) for an unknown command or option, a missing or superfluous argument or
  // an option given twice.
  CommandLine(std::span<const Command> commands, std::vector<std::string> words);

  // The command to run; null when help or the version is asked for.
  const Command* command() const { return command_; }
  const Arguments& arguments() const { return arguments_; }
  // The text to print in place of a command.
  const std::string& text() const { return text_; }
  // The state directory; empty when it was not given.
  const std::string& state() const { return state_; }

 private:
  const Command* command_ = nullptr;
  Arguments arguments_;
  std::string text_;
  std::string state_;
};

// "yes" or "no"; throws Failure (usage) for anything else.
bool YesOrNo(std::string_view option, std::string_view value);

}  // namespace printhost
