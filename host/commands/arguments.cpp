#include "host/commands/arguments.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <sstream>
#include <utility>

#include "host/commands/commands.h"
#include "host/driver_module.h"
#include "host/failure.h"

namespace printhost {
namespace {

constexpr Option kStateOption = {"--state", 1, "DIR", "the folder that the computer is kept in"};
constexpr char kFooter[] =
    "The computer is kept in DIR, by default $XDG_STATE_HOME/printhost or "
    "~/.local/state/printhost.\n"
    "Exit codes: 0 done, 1 cancelled, 2 usage, 3 failed.";

CLI::Option* AddOption(CLI::App& app, const Option& option) {
  const std::string name(option.name), help(option.help);
  if (option.values == 0) return app.add_flag(name, help)->disable_flag_override();
  const auto accept = [](const CLI::results_t&) { return true; };
  return app.add_option(name, accept, help)
      ->type_name(std::string(option.shown))
      ->type_size(option.values)
      ->allow_extra_args(false);
}

// Adds the positional arguments that a command declares, like "NAME [VALUE]".
void AddPositionals(CLI::App& app, const Command& command) {
  std::istringstream names{std::string(command.positional)};
  for (std::string name; names >> name;) {
    const bool isRequired = !name.starts_with('[');
    std::erase_if(name, [](char c) { return c == '[' || c == ']'; });
    const auto accept = [](const CLI::results_t&) { return true; };
    app.add_option(name, accept)->required(isRequired);
  }
}

// Returns an option's values. Throws Failure when the option occurs more than once.
std::vector<std::string> Values(const CLI::Option& option, int perUse) {
  if (option.count() > static_cast<std::size_t>(std::max(perUse, 1)))
    throw Failure{kUsage, option.get_name() + " is given twice"};
  return perUse == 0 ? std::vector<std::string>() : option.results();
}

// Splits "--name=" into "--name" and an empty value, which the parser would otherwise ignore.
std::vector<std::string> SplitEmptyValues(const std::vector<std::string>& arguments) {
  std::vector<std::string> split;
  bool optionsEnded = false;
  for (const std::string& argument : arguments) {
    optionsEnded = optionsEnded || argument == "--";
    const bool isEmpty =
        !optionsEnded && argument.starts_with("--") && argument.find('=') == argument.size() - 1;
    split.push_back(isEmpty ? argument.substr(0, argument.size() - 1) : argument);
    if (isEmpty) split.emplace_back();
  }
  return split;
}

}  // namespace

std::string Arguments::Value(std::string_view option, std::size_t n) const {
  const auto found = values_.find(option);
  return found == values_.end() || n >= found->second.size() ? std::string() : found->second[n];
}

CommandLine::CommandLine(std::span<const Command> commands, std::vector<std::string> arguments) {
  CLI::App app(
      "Installs label printers on a computer of its own, asks their driver and shows its "
      "sheets.",
      "printhost");
  app.require_subcommand(0, 1)->footer(kFooter);
  app.set_help_flag("-h,--help", "show this help, or that of a command");
  app.set_version_flag("--version", "printhost " + DriverPackageVersion(),
                       "show the driver package's version");
  app.get_formatter()->column_width(34);
  app.get_formatter()->label("SUBCOMMAND", "COMMAND");
  AddOption(app, kStateOption);
  for (const Command& command : commands) {
    CLI::App& sub = *app.add_subcommand(std::string(command.name), std::string(command.summary));
    sub.group("Commands")->footer("");
    sub.set_help_flag("-h,--help", "show this help");
    for (const Option& option : command.options) AddOption(sub, option);
    AddOption(sub, kStateOption);
    AddPositionals(sub, command);
  }
  app.add_subcommand("help", "show this help")->group("")->allow_extras();
  app.allow_extras();  // after the subcommands, which would inherit it

  arguments = SplitEmptyValues(arguments);
  std::ranges::reverse(arguments);  // the order that the parser expects
  try {
    app.parse(std::move(arguments));
  } catch (const CLI::CallForVersion& version) {
    text_ = std::string(version.what()) + '\n';
    return;
  } catch (const CLI::CallForHelp&) {
    text_ = app.help();
    return;
  } catch (const CLI::ParseError& error) {
    throw Failure{kUsage, error.what()};
  }
  if (app.got_subcommand("help")) {
    text_ = app.get_formatter()->make_help(&app, app.get_name(), CLI::AppFormatMode::Normal);
    return;
  }
  const auto rest = app.remaining();
  if (!rest.empty())
    throw Failure{kUsage, rest[0].starts_with('-')
                              ? "unknown option " + rest[0]
                              : "there is no command \"" + rest[0] + "\"; --help shows them"};
  if (app.get_subcommands().empty()) throw Failure{kUsage, "no command given; --help shows them"};
  const CLI::App& sub = *app.get_subcommands()[0];
  command_ = &*std::ranges::find(commands, std::string_view(sub.get_name()), &Command::name);
  for (const Option& option : command_->options)
    if (const CLI::Option& parsed = *sub.get_option(std::string(option.name)); parsed.count() > 0)
      arguments_.values_.emplace(option.name, Values(parsed, option.values));
  for (const CLI::Option* option : sub.get_options())
    if (option->get_positional() && option->count() > 0)
      arguments_.positional_.push_back(option->results()[0]);
  for (const CLI::Option* state :
       {sub.get_option("--state"), std::as_const(app).get_option("--state")}) {
    if (state->count() == 0 || !state_.empty()) continue;
    state_ = Values(*state, 1)[0];
    if (state_.empty()) throw Failure{kUsage, "--state takes a folder"};
  }
}

bool ParseYesOrNo(std::string_view option, std::string_view value) {
  if (value == "yes") return true;
  if (value == "no") return false;
  throw Failure{kUsage, std::string(option) + " takes yes or no"};
}

}  // namespace printhost
