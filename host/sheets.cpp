// The driver's property sheets, shown in a browser.
#include <algorithm>
#include <iostream>

#include "driver/settings_block.h"
#include "host/browser_user.h"
#include "host/commands.h"
#include "host/driver_module.h"
#include "host/failure.h"
#include "host/record_json.h"
#include "host/sheet_server.h"
#include "host/termination.h"
#include "platform/desk.h"

namespace printhost {
namespace {

constexpr Option kKindOption = {"--kind", 1, "KIND",
                                "document (default), advanced, user-default or printer"};
constexpr Option kListenOption = {"--listen", 1, "127.0.0.1:0", "the loopback address to serve at"};
constexpr Option kOutOption = {"--out", 1, "FILE", "where the resulting record is written"};
constexpr Option kSheetOptions[] = {kKindOption,
                                    kListenOption,
                                    {"--in", 1, "FILE", "a settings record to start from"},
                                    kOutOption,
                                    kJsonOption};
constexpr Option kDemoOptions[] = {kListenOption, kOutOption, kJsonOption};

// What a caller of a sheet brings and gets.
struct Request {
  DriverModule& module;
  PrinterHandle& printer;
  bool permission = true;
  Record input;  // empty: none
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
  const LONG answer = CommonPropertySheetUIW(nullptr, request.module.documentPropertySheets,
                                             reinterpret_cast<LPARAM>(&header), &result);
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

// Runs the sheet with the browser as its user. Answers the sheet's result.
LONG Run(Call& call, const SheetKind& kind, Request& request) {
  Exchange exchange;
  const Termination termination([&] { exchange.Cancel(); });
  const std::string listen =
      call.arguments.Has("--listen") ? call.arguments.Value("--listen") : "127.0.0.1:0";
  SheetServer server(exchange, listen, request.module.handle());
  std::cout << server.address() << std::endl;
  BrowserUser user(exchange);
  platform::Desk& desk = call.machine.desk();
  desk.Attach(&user);
  const LONG result = kind.show(request);
  desk.Attach(nullptr);
  exchange.End(Json{{"end", result >= CPSUI_OK ? "ok" : "cancel"}}.dump());
  if (result < 0 || !user.asked()) throw Failure{kFailed, "the sheet did not open"};
  return result;
}

int Show(Call& call, const std::u16string& name, const SheetKind& kind) {
  const Arguments& arguments = call.arguments;
  if (!kind.record && (arguments.Has("--in") || arguments.Has("--out")))
    throw Failure{kUsage,
                  "the printer's own sheet has no settings record; leave --in and --out away"};
  Record input;
  if (arguments.Has("--in")) input = ReadRecordFile(arguments.Value("--in"));
  DriverModule module(call.machine);
  PrinterHandle printer(name);
  Request request{module, printer, call.machine.FindPrinter(name)->writable, std::move(input)};
  const bool done = Run(call, kind, request) >= CPSUI_OK;
  Json json;
  if (done && kind.record) {
    request.output.resize(RecordExtent(request.output));
    if (kind.keptHere) call.machine.SetDefaultRecord(name, request.output);
    if (arguments.Has("--out")) WriteRecordFile(arguments.Value("--out"), request.output);
    json = RecordJson(request.output);
  }
  if (call.json()) std::cout << json.dump(2) << '\n';
  return done ? kDone : kCancelled;
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

const Command kSheet = {
    "sheet", "NAME",        1,
    1,       kSheetOptions, "shows a property sheet in the browser; prints its address first",
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
