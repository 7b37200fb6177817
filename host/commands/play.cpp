// The play command: drives a property sheet by a script, without a browser.
#include <windows.h>

#include <filesystem>
#include <fstream>
#include <iostream>

#include "host/commands/commands.h"
#include "host/sheet/sheet_call.h"
#include "host/sheet/steps.h"
#include "platform/machine/desk.h"

namespace printhost {
namespace {

constexpr Option kPlayOptions[] = {
    kKindOption,
    kInRecordOption,
    kOutRecordOption,
    {"--json", 0, "", "a last line with how the sheet ended and the resulting record"}};

// Reads steps, one JSON object a line; ignores empty lines and lines that begin with "#". Each line
// is read when it is needed, so that a program can choose its next step by the last result.
class Script {
 public:
  explicit Script(const std::string& path) {
    if (path == "-") return;
    file_.open(path);
    // A folder can be opened but not read.
    if (!file_ || std::filesystem::is_directory(path))
      throw Failure{kFailed, "\"" + path + "\" cannot be read"};
    in_ = &file_;
  }

  // Returns the next step, or nothing at the end. Throws Failure when a line is not JSON.
  std::optional<Json> Next() {
    for (std::string line; std::getline(*in_, line);) {
      const std::size_t first = line.find_first_not_of(" \t\r");
      if (first == std::string::npos || line[first] == '#') continue;
      ++number_;
      Json step = Json::parse(line, nullptr, false);
      if (step.is_discarded()) throw Failure{kFailed, "the step is no JSON"};
      return step;
    }
    return std::nullopt;
  }
  int number() const { return number_; }

 private:
  std::ifstream file_;
  std::istream* in_ = &std::cin;
  int number_ = 0;
};

// Performs the script's steps and prints one line for each: {"step": 3, "ok": true, …}, or "ok"
// false and the "reason", after which the sheet is cancelled.
class Player : public platform::User {
 public:
  Player(Script& script, SheetCall& sheet) : script_(script), sheet_(sheet) {}

  bool Act(platform::Desk& desk) override {
    wasShown_ = true;
    // A step that opens a window returns when the window closes; it is done once the window waits
    // for input.
    ReportDone();
    return WithFailureReported([&] {
      const std::optional<Json> step = script_.Next();
      if (!step) return false;
      isPending_ = true;
      if (MayConfirm(desk, *step)) {
        if (const auto error = sheet_.SaveError()) throw Failure(*error);
      }
      const Json read = PerformStep(desk, sheet_.module(), *step);
      ReportDone(read);
      return true;
    });
  }

  // Fails when steps are left after the sheet has closed.
  void Finish() {
    WithFailureReported([this] {
      if (script_.Next()) throw Failure{kFailed, "the sheet had been closed before this step"};
      return false;
    });
  }

  // Returns true once a window has been shown.
  bool wasShown() const { return wasShown_; }

 private:
  // Prints the line of the step that is being performed, if any.
  void ReportDone(const Json& read = Json::object()) {
    if (!isPending_) return;
    isPending_ = false;
    Json line = {{"step", script_.number()}, {"ok", true}};
    line.update(read);
    std::cout << line.dump() << std::endl;
  }

  // Calls a function. When it throws a Failure, prints the line of the failed step and throws the
  // Failure with the step's number; the next windows, which close, only pass it on.
  template <typename Function>
  bool WithFailureReported(const Function& function) {
    try {
      return function();
    } catch (const Failure& failure) {
      isPending_ = false;
      if (hasFailed_) throw;
      hasFailed_ = true;
      std::cout
          << Json{{"step", script_.number()}, {"ok", false}, {"reason", failure.message}}.dump()
          << std::endl;
      throw Failure{kFailed, "step " + std::to_string(script_.number()) + ": " + failure.message};
    }
  }

  Script& script_;
  SheetCall& sheet_;
  bool isPending_ = false;  // a step has begun and its line is not printed yet
  bool hasFailed_ = false;
  bool wasShown_ = false;
};

int Play(Call& call) {
  const auto& arguments = call.arguments.positional();
  const std::string steps = arguments.size() > 1 ? arguments[1] : "-";
  if (steps == "-" && call.arguments.Value("--in") == "-")
    throw Failure{kUsage, "--in - and the steps both read standard input; name a file for one"};
  SheetCall sheet(call, call.PrinterArgument());
  Script script(steps);
  Player player(script, sheet);
  call.machine.desk().Attach(&player);
  struct DetachUser {
    platform::Desk& desk;
    ~DetachUser() { desk.Attach(nullptr); }
  } detach{call.machine.desk()};
  const LONG result = sheet.Show();
  if (result < 0 || !player.wasShown()) throw Failure{kFailed, "the sheet did not open"};
  player.Finish();
  if (result >= CPSUI_OK) {
    sheet.RequirePrinter();
    if (const auto error = CatchFailure([&] { sheet.Save(); })) throw Failure(*error);
  }
  const bool done = result >= CPSUI_OK;
  if (call.json())
    std::cout
        << Json{{"end", done ? "ok" : "cancel"}, {"record", done ? sheet.Result() : Json()}}.dump()
        << std::endl;
  return done ? kDone : kCancelled;
}

}  // namespace

const Command kPlay = {"play", "NAME [STEPS]", kPlayOptions,
                       "a sheet against a script of steps, a file or standard input", Play};

}  // namespace printhost
