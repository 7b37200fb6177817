// The sheet and demo commands: show a property sheet in a browser.
#include <windows.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <iostream>

#include "host/commands/commands.h"
#include "host/server/sheet_server.h"
#include "host/sheet/browser_user.h"
#include "host/sheet/sheet_call.h"
#include "host/sheet/termination.h"
#include "host/utf8.h"
#include "platform/machine/desk.h"

namespace printhost {
namespace {

constexpr Option kListenOption = {"--listen", 1, "127.0.0.1:0", "the loopback address to serve at"};
constexpr Option kGlossOption = {"--gloss", 1, "en", "shows the English beside the Japanese"};
constexpr Option kSheetOptions[] = {kKindOption,      kListenOption, kInRecordOption,
                                    kOutRecordOption, kGlossOption,  kJsonOption};
constexpr Option kDemoOptions[] = {kListenOption, kOutRecordOption, kGlossOption, kJsonOption};

// Describes the sheet for the page: printer, kind and the host folders of its drives.
Json About(Call& call, SheetCall& sheet) {
  Json drives = Json::object();
  for (const char16_t* drive : {u"C:\\", u"Z:\\"})
    drives[ToUtf8(drive)] = std::filesystem::absolute(call.machine.HostPath(drive)).string();
  return {{"printer", ToUtf8(sheet.printer())}, {"kind", sheet.kind()}, {"drives", drives}};
}

// Returns the fragment of the address that shows the English texts.
std::string GlossFragment(const Arguments& arguments) {
  if (!arguments.Has("--gloss")) return {};
  if (arguments.Value("--gloss") != "en") throw Failure{kUsage, "--gloss takes en"};
  return "#gloss=en";
}

// Shows one sheet in the browser, from printing its address to reporting its result.
class Session {
 public:
  Session(Call& call, SheetCall& sheet)
      : call_(call),
        sheet_(sheet),
        termination_([this] { exchange_.Cancel(); }),
        server_(exchange_,
                call.arguments.Has("--listen") ? call.arguments.Value("--listen") : "127.0.0.1:0",
                sheet.module()),
        user_(exchange_, call.machine, About(call, sheet), [this] { return CanSave(); }) {
    // A closed pipe is reported as a failure; it must not end the process.
    std::signal(SIGPIPE, SIG_IGN);
    // With --json standard output is JSON only.
    std::ostream& output = call.json() ? std::cerr : std::cout;
    // One write, so that a reader never sees part of an address.
    output << server_.address() + GlossFragment(call.arguments) + '\n' << std::flush;
    if (!output)
      throw Failure{kFailed, "the address cannot be written; nobody could open the sheet"};
    WriteTerminalHint(
        "Open the address in a browser on this computer. On OK the settings are " +
        sheet_.DescribeOutcome() +
        ".\nCancel or Ctrl-C here leaves the settings as they were and ends the command.");
    call_.machine.desk().Attach(&user_);
  }
  ~Session() { call_.machine.desk().Attach(nullptr); }

  // Shows the sheet until its settings are saved or it is cancelled, and returns an exit code.
  // Throws Failure after the page has received it.
  int Run() {
    int exit = kFailed;
    const auto failure = CatchFailure([&] {
      exit = Show();
      Print(exit == kDone);
      WriteTerminalHint(exit == kDone ? "The settings are " + sheet_.DescribeOutcome() + '.'
                                      : "Cancelled; the settings are as they were.");
    });
    if (failure) {
      const std::string& reason = failure->message;
      exchange_.End(
          Json{{"end", "failed"}, {"reason", reason}, {"japanese", failure->japanese}}.dump());
      throw Failure(*failure);
    }
    exchange_.End(Json{{"end", exit == kDone ? "ok" : "cancel"}}.dump());
    return exit;
  }

 private:
  // Writes a hint when standard error is a terminal.
  static void WriteTerminalHint(const std::string& text) {
    if (isatty(STDERR_FILENO) != 0) std::cerr << text << '\n';
  }

  int Show() {
    std::optional<Failure> error;
    do {
      const LONG result = sheet_.Show();
      if (result < 0 || !user_.wasShown())
        throw Failure{kFailed, "the sheet did not open", "シートを開けませんでした。"};
      if (result < CPSUI_OK && error) throw Failure(*error);
      if (result < CPSUI_OK) return kCancelled;
      sheet_.RequirePrinter();
      // Show the sheet again after a save error, so that the user can retry.
      error = CatchFailure([this] { sheet_.Save(); });
      if (error) ReportSaveError(*error);
    } while (error);
    return kDone;
  }

  // Called while the sheet is still open, so that the user can retry after a message box.
  bool CanSave() {
    const auto error = sheet_.SaveError();
    if (error) ReportSaveError(*error);
    return !error;
  }

  void ReportSaveError(const Failure& error) {
    const std::u16string text =
        u"設定を保存できませんでした。原因を取り除いてから、もう一度 OK を押してください。\n\n" +
        FromUtf8(error.japanese);
    MessageBoxW(nullptr, text.c_str(), sheet_.printer(), MB_OK | MB_ICONEXCLAMATION);
  }

  void Print(bool done) const {
    if (!call_.json()) return;
    std::cout << (done ? sheet_.Result() : Json()).dump(2) << std::endl;
    if (!std::cout)
      throw Failure{kFailed, "standard output cannot be written", "標準出力に書き込めません。"};
  }

  Call& call_;
  SheetCall& sheet_;
  Exchange exchange_;
  Termination termination_;
  SheetServer server_;
  BrowserUser user_;
};

int Sheet(Call& call) {
  SheetCall sheet(call, call.PrinterArgument());
  return Session(call, sheet).Run();
}

int Demo(Call& call) {
  const std::u16string name = u"Label Printer";
  if (!call.machine.FindPrinter(name))
    InstallPrinter(call.machine, name, platform::PrinterSetup().driverName, true);
  SheetCall sheet(call, name, "user-default");
  return Session(call, sheet).Run();
}

}  // namespace

const Command kSheet = {"sheet", "NAME", kSheetOptions,
                        "shows a property sheet in the browser; prints its address first (with "
                        "--json on standard error)",
                        Sheet};
const Command kDemo = {
    "demo", "", kDemoOptions,
    "installs \"Label Printer\" if it is not there and shows its default settings", Demo};

}  // namespace printhost
