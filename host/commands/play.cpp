// A property sheet against a script of steps, without a browser.
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

// The steps, one JSON object a line; empty lines and lines that begin with "#" are passed over.
// They are read as they are needed, so that another program may decide by the answers.
class Script {
 public:
  explicit Script(const std::string& path) {
    if (path == "-") return;
    file_.open(path);
    // A folder opens and has nothing to be read.
    if (!file_ || std::filesystem::is_directory(path))
      throw Failure{kFailed, "\"" + path + "\" cannot be read"};
    in_ = &file_;
  }

  // The next step, or nothing at the end. Throws Failure when a line is no JSON.
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

// Does the script's steps at the desk. Each is answered by one line: {"step": 3, "ok": true, …}, or
// with "ok" false and the "reason", which ends the sheet as cancelled.
class Player : public platform::User {
 public:
  Player(Script& script, SheetCall& sheet) : script_(script), sheet_(sheet) {}

  bool Act(platform::Desk& desk) override {
    wasShown_ = true;
    // The step before opened a window: it is done as soon as the next can be asked for.
    AnswerOpen();
    return Answered([&] {
      const std::optional<Json> step = script_.Next();
      if (!step) return false;
      open_ = true;
      if (MayConfirm(desk, *step)) {
        if (const auto error = sheet_.SaveError()) throw Failure(*error);
      }
      const Json read = DoStep(desk, sheet_.module(), *step);
      AnswerOpen(read);
      return true;
    });
  }

  // After the sheet has closed no step is left that could be done.
  void Finish() {
    Answered([this] {
      if (script_.Next()) throw Failure{kFailed, "the sheet had been closed before this step"};
      return false;
    });
  }

  // Whether any window has ever been shown.
  bool wasShown() const { return wasShown_; }

 private:
  void AnswerOpen(const Json& read = Json::object()) {
    if (!open_) return;
    open_ = false;
    Json line = {{"step", script_.number()}, {"ok", true}};
    line.update(read);
    std::cout << line.dump() << std::endl;
  }

  template <typename Step>
  bool Answered(const Step& step) {
    try {
      return step();
    } catch (const Failure& failure) {
      open_ = false;
      if (failed_) throw;
      failed_ = true;
      std::cout
          << Json{{"step", script_.number()}, {"ok", false}, {"reason", failure.message}}.dump()
          << std::endl;
      throw Failure{kFailed, "step " + std::to_string(script_.number()) + ": " + failure.message};
    }
  }

  Script& script_;
  SheetCall& sheet_;
  bool open_ = false;  // a step is begun and not yet answered
  bool failed_ = false;
  bool wasShown_ = false;
};

int Play(Call& call) {
  const auto& words = call.arguments.positional();
  const std::string steps = words.size() > 1 ? words[1] : "-";
  if (steps == "-" && call.arguments.Value("--in") == "-")
    throw Failure{kUsage, "--in - and the steps both read standard input; name a file for one"};
  SheetCall sheet(call, call.Printer());
  Script script(steps);
  Player player(script, sheet);
  call.machine.desk().Attach(&player);
  struct Leave {
    platform::Desk& desk;
    ~Leave() { desk.Attach(nullptr); }
  } leave{call.machine.desk()};
  const LONG result = sheet.Show();
  if (result < 0 || !player.wasShown()) throw Failure{kFailed, "the sheet did not open"};
  player.Finish();
  if (result >= CPSUI_OK) {
    sheet.RequirePrinter();
    if (const auto problem = CatchFailure([&] { sheet.Save(); })) throw Failure(*problem);
  }
  const bool done = result >= CPSUI_OK;
  if (call.json())
    std::cout
        << Json{{"end", done ? "ok" : "cancel"}, {"record", done ? sheet.Result() : Json()}}.dump()
        << std::endl;
  return done ? kDone : kCancelled;
}

}  // namespace

const Command kPlay = {
    "play", "NAME [STEPS]", 1,
    2,      kPlayOptions,   "a sheet against a script of steps, a file or standard input",
    Play};

}  // namespace printhost
