#include "host/arguments.h"

#include <algorithm>

#include "host/failure.h"

namespace printhost {

Arguments::Arguments(std::span<const Option> options, std::span<const std::string> words) {
  bool ended = false;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::string& word = words[i];
    if (ended || word.size() < 2 || word[0] != '-') {
      positional_.push_back(word);
      continue;
    }
    if (word == "--") {
      ended = true;
      continue;
    }
    const std::size_t equals = word.find('=');
    const std::string name = word == "-h" ? "--help" : word.substr(0, equals);
    const auto option = std::ranges::find(options, std::string_view(name), &Option::name);
    if (option == options.end()) throw Failure{kUsage, "unknown option " + name};
    std::vector<std::string> values;
    if (equals != std::string::npos) values.push_back(word.substr(equals + 1));
    while (static_cast<int>(values.size()) < option->values && i + 1 < words.size())
      values.push_back(words[++i]);
    if (static_cast<int>(values.size()) != option->values)
      throw Failure{kUsage, name + " takes " +
                                (option->values == 0 ? "no value" : std::string(option->shown))};
    if (!values_.emplace(name, std::move(values)).second)
      throw Failure{kUsage, name + " is given twice"};
  }
}

std::string Arguments::Value(std::string_view option, std::size_t n) const {
  const auto found = values_.find(option);
  return found == values_.end() || n >= found->second.size() ? std::string() : found->second[n];
}

bool YesOrNo(std::string_view option, std::string_view value) {
  if (value == "yes") return true;
  if (value == "no") return false;
  throw Failure{kUsage, std::string(option) + " takes yes or no"};
}

}  // namespace printhost
