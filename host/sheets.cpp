// The driver's property sheets, shown in a browser.
#include <windows.h>
#include <winspool.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <iostream>

#include "driver/settings_block.h"
#include "host/browser_user.h"
#include "host/commands.h"
#include "host/driver_module.h"
#include "host/failure.h"
#include "host/record_json.h"
#include "host/sheet_server.h"
#include "host/termination.h"
#include "host/utf8.h"
#include "platform/desk.h"

namespace printhost {
namespace {

constexpr Option kKindOption = {"--kind", 1, "KIND",
                                "document (default), advanced, user-default or printer"};
constexpr Option kListenOption = {"--listen", 1, "127.0.0.1:0", "the loopback address to serve at"};
constexpr Option kGlossOption = {"--gloss", 1, "en", "shows the English beside the Japanese"};
constexpr Option kOutOption = {"--out", 1, "FILE", "where the resulting record is written"};
constexpr Option kSheetOptions[] = {
    kKindOption, kListenOption, {"--in", 1, "FILE", "a settings record to start from"},
    kOutOption,  kGlossOption,  kJsonOption};
constexpr Option kDemoOptions[] = {kListenOption, kOutOption, kGlossOption, kJsonOption};

// What a caller of a sheet brings and gets.
struct Request {
  DriverModule& module;
  PrinterHandle& printer;
  bool permission = true;
  Record input;  // empty: none; after OK what came back
  Record output = Record(kestrel::kRecordSize);

  DEVMODEW* in() { return input.empty() ? nullptr : AsDevMode(input); }
};

// A sheet's result: CPSUI_OK and above, CPSUI_CANCEL, or a failure below 0.
LONG ShowDocument(Request& request) {
  const DWORD mode = DM_COPY | DM_PROMPT | (request.in() != nullptr ? DM_IN_BUFFER : 0);
  return request.module.documentProperties(nullptr, request.printer.get(), request.printer.name(),
                                           AsDevMode(request.output), request.in(), mode);
}

LONG ShowAdvanced(Request& request) {
  return request.module.advancedDocumentProperties(nullptr, request.printer.get(),
                                                   request.printer.name(),
                                                   AsDevMode(request.output), request.in());
}

LONG ShowUserDefault(Request& request) {
  DOCUMENTPROPERTYHEADER header = {};
  header.cbSize = sizeof header;
  header.hPrinter = request.printer.get();
  header.pszPrinterName = request.printer.name();
  header.pdmIn = request.in();
  header.pdmOut = AsDevMode(request.output);
  header.cbOut = kestrel::kRecordSize;
  header.fMode = DM_COPY | DM_PROMPT | DM_USER_DEFAULT | (request.permission ? 0 : DM_NOPERMISSION);
  DWORD result = CPSUI_CANCEL;
  const LONG answer =
      CommonPropertySheetUIW(nullptr, request.module.documentPropertySheets.function,
                             reinterpret_cast<LPARAM>(&header), &result);
  platform::RethrowKept();
  return answer < 0 ? answer : static_cast<LONG>(result);
}

LONG ShowPrinter(Request& request) {
  request.output.clear();
  return request.module.printerProperties(nullptr, request.printer.get()) ? CPSUI_OK : CPSUI_CANCEL;
}

struct SheetKind {
  std::string_view name;
  LONG (*show)(Request& request);
  bool record;    // whether a settings record comes back
  bool keptHere;  // whether it becomes the printer's default
};
constexpr SheetKind kKinds[] = {{"document", ShowDocument, true, false},
                                {"advanced", ShowAdvanced, true, false},
                                {"user-default", ShowUserDefault, true, true},
                                {"printer", ShowPrinter, false, false}};

const SheetKind& FindKind(const std::string& name) {
  const auto kind = std::ranges::find(kKinds, std::string_view(name), &SheetKind::name);
  if (kind == std::end(kKinds))
    throw Failure{kUsage, "--kind takes document, advanced, user-default or printer"};
  return *kind;
}

// What the page tells about the sheet: whose it is, which one, and where its drives lie.
Json About(Call& call, const SheetKind& kind, Request& request) {
  Json drives = Json::object();
  for (const char16_t* drive : {u"C:\\", u"Z:\\"})
    drives[ToUtf8(drive)] = std::filesystem::absolute(call.machine.HostPath(drive)).string();
  return {{"printer", ToUtf8(request.printer.name())}, {"kind", kind.name}, {"drives", drives}};
}

// The address's tail that switches the page's English on.
std::string GlossOf(const Arguments& arguments) {
  if (!arguments.Has("--gloss")) return {};
  if (arguments.Value("--gloss") != "en") throw Failure{kUsage, "--gloss takes en"};
  return "#gloss=en";
}

// One call of a sheet, from the address to the last word.
class Session {
 public:
  Session(Call& call, const SheetKind& kind, Request& request)
      : call_(call),
        kind_(kind),
        request_(request),
        termination_([this] { exchange_.Cancel(); }),
        server_(exchange_,
                call.arguments.Has("--listen") ? call.arguments.Value("--listen") : "127.0.0.1:0",
                request.module.handle()),
        user_(exchange_, call.machine, About(call, kind, request), [this] { return MayKeep(); }) {
    // A reader of the output that is gone is a failure to tell, not the end.
    std::signal(SIGPIPE, SIG_IGN);
    // A program that wants JSON reads standard output whole.
    std::ostream& told = call.json() ? std::cerr : std::cout;
    told << server_.address() << GlossOf(call.arguments) << std::endl;
    if (!told) throw Failure{kFailed, "the address cannot be written; nobody could open the sheet"};
    call_.machine.desk().Attach(&user_);
  }
  ~Session() { call_.machine.desk().Attach(nullptr); }

  // Shows the sheet until its settings are kept or it is cancelled; answers an exit code. Throws
  // Failure; the page is told everything first.
  int Run() {
    try {
      const int exit = Show();
      Print(exit == kDone);
      exchange_.End(Json{{"end", exit == kDone ? "ok" : "cancel"}}.dump());
      return exit;
    } catch (const Failure& failure) {
      exchange_.End(Json{{"end", "failed"}, {"reason", failure.message}}.dump());
      throw;
    }
  }

 private:
  int Show() {
    std::optional<Failure> problem;
    do {
      const LONG result = kind_.show(request_);
      if (result < 0 || !user_.asked()) throw Failure{kFailed, "the sheet did not open"};
      if (result < CPSUI_OK && problem) throw Failure(*problem);
      if (result < CPSUI_OK) return kCancelled;
      RequirePrinter();
      // What could not be kept is shown again, so that the person can try once more.
      problem = Trouble([this] { Keep(); });
      if (problem) Tell(*problem);
    } while (problem);
    return kDone;
  }

  // What stands against keeping the settings is better told while the sheet still holds them.
  bool MayKeep() {
    const auto problem = Trouble([this] {
      call_.machine.RequireWritable();
      if (call_.arguments.Has("--out")) CheckRecordFile(call_.arguments.Value("--out"));
    });
    if (problem) Tell(*problem);
    return !problem;
  }

  void RequirePrinter() const {
    DWORD needed = 0;
    GetPrinterW(request_.printer.get(), 4, nullptr, 0, &needed);
    if (GetLastError() == ERROR_PRINTER_DELETED)
      throw Failure{kFailed, "the printer \"" + ToUtf8(request_.printer.name()) +
                                 "\" was removed meanwhile; nothing is kept"};
  }

  // Everything that outlives the sheet.
  void Keep() {
    if (!kind_.record) return;
    request_.input = request_.output;
    request_.input.resize(RecordExtent(request_.input));
    if (kind_.keptHere) call_.machine.SetDefaultRecord(request_.printer.name(), request_.input);
    if (call_.arguments.Has("--out"))
      WriteRecordFile(call_.arguments.Value("--out"), request_.input);
  }

  // What went wrong in a step.
  template <typename Step>
  static std::optional<Failure> Trouble(const Step& step) {
    try {
      step();
      return std::nullopt;
    } catch (const Failure& failure) {
      return failure;
    } catch (const std::exception& failure) {
      return Failure{kFailed, std::string("the settings cannot be kept: ") + failure.what()};
    }
  }

  void Tell(const Failure& problem) {
    const std::u16string text =
        u"設定を保存できませんでした。原因を取り除いてから、もう一度 OK を押してください。\n\n" +
        FromUtf8(problem.message);
    MessageBoxW(nullptr, text.c_str(), request_.printer.name(), MB_OK | MB_ICONEXCLAMATION);
  }

  void Print(bool done) const {
    if (!call_.json()) return;
    std::cout << (done && kind_.record ? RecordJson(request_.input) : Json()).dump(2) << std::endl;
    if (!std::cout) throw Failure{kFailed, "standard output cannot be written"};
  }

  Call& call_;
  const SheetKind& kind_;
  Request& request_;
  Exchange exchange_;
  Termination termination_;
  SheetServer server_;
  BrowserUser user_;
};

int Show(Call& call, const std::u16string& name, const SheetKind& kind) {
  const Arguments& arguments = call.arguments;
  if (!kind.record && (arguments.Has("--in") || arguments.Has("--out")))
    throw Failure{kUsage,
                  "the printer's own sheet has no settings record; leave --in and --out away"};
  Record input;
  if (arguments.Has("--in")) input = ReadRecordFile(arguments.Value("--in"));
  if (arguments.Has("--out")) CheckRecordFile(arguments.Value("--out"));
  DriverModule module(call.machine);
  PrinterHandle printer(name);
  Request request{module, printer, call.machine.FindPrinter(name)->writable, std::move(input)};
  return Session(call, kind, request).Run();
}

int Sheet(Call& call) {
  const std::u16string name = call.Printer();
  return Show(call, name,
              FindKind(call.arguments.Has("--kind") ? call.arguments.Value("--kind") : "document"));
}

int Demo(Call& call) {
  const std::u16string name = u"Label Printer";
  if (!call.machine.FindPrinter(name))
    InstallPrinter(call.machine, name, platform::PrinterSetup().driverName, true);
  return Show(call, name, FindKind("user-default"));
}

}  // namespace

const Command kSheet = {"sheet",
                        "NAME",
                        1,
                        1,
                        kSheetOptions,
                        "shows a property sheet in the browser; prints its address first (with "
                        "--json on standard error)",
                        Sheet};
const Command kDemo = {
    "demo",
    "",
    0,
    0,
    kDemoOptions,
    "installs \"Label Printer\" if it is not there and shows its default settings",
    Demo};

}  // namespace printhost
