// A command's arguments: options by name, everything else in order.
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
  // Options may stand anywhere, as "--name value" or "--name=value"; "-h" is "--help"; after
  // "--" nothing is an option. Throws Failure (usage) for an unknown option, a missing value or an
  // option given twice.
  Arguments(std::span<const Option> options, std::span<const std::string> words);

  bool Has(std::string_view option) const { return values_.contains(option); }
  // The n-th value of an option; empty when it was not given.
  std::string Value(std::string_view option, std::size_t n = 0) const;
  const std::vector<std::string>& positional() const { return positional_; }

 private:
  std::map<std::string, std::vector<std::string>, std::less<>> values_;
  std::vector<std::string> positional_;
};

// "yes" or "no"; throws Failure (usage) for anything else.
bool YesOrNo(std::string_view option, std::string_view value);

}  // namespace printhost
