#include "try/program.h"

#include <winspool.h>

#include "try/answers.h"
#include "try/arguments.h"
#include "try/sheet.h"

namespace kestrel_try {
namespace {

enum ExitCode : UINT { kDone = 0, kCancelled = 1, kUsage = 2, kFailed = 3 };

constexpr char kHelp[] =
    "kestrel-try MODULE PRINTER [--sheet document|advanced|user-default|printer]\n"
    "\n"
    "Loads a driver's user-interface module, such as QM610rDRV1.dll, opens an installed printer\n"
    "and writes what the module's exports return to standard output, as JSON in UTF-8. The "
    "answers\n"
    "for a printer of another driver are the same on every machine.\n"
    "\n"
    "--sheet shows a property sheet instead. Only OK in the kinds user-default and\n"
    "printer stores anything.\n"
    "\n"
    "Exit codes: 0 done, or OK pressed; 1 sheet cancelled; 2 usage; 3 failed, with the reason and\n"
    "the system's error code on standard error.\n";

// Writes "kestrel-try: ..." to standard error.
UINT Fail(UINT exitCode, const char* what, const WCHAR* name = nullptr, const char* rest = "",
          DWORD error = ERROR_SUCCESS) {
  Output errors(STD_ERROR_HANDLE);
  errors.Put("kestrel-try: ").Put(what);
  if (name != nullptr) errors.Put(name);
  errors.Put(rest);
  if (error != ERROR_SUCCESS) errors.Put(" (error ").Put(error).Put(')');
  errors.Put('\n');
  errors.Flush();
  return exitCode;
}

UINT FailWithLastError(const char* what, const WCHAR* name, const char* rest) {
  const DWORD error = GetLastError();
  return Fail(kFailed, what, name, rest, error);
}

UINT Finish(Output& out, UINT exitCode) {
  const DWORD error = out.Flush();
  if (error == ERROR_SUCCESS) return exitCode;
  return Fail(kFailed, "the output cannot be written", nullptr, "", error);
}

UINT WriteAnswers(const Target& target, Output& out) {
  Json json(out);
  json.OpenCalls();
  const bool complete = WriteCapabilities(target, json) && WriteRecords(target, json) &&
                        WriteFixedAnswers(target, json);
  json.CloseCalls();
  if (complete) return Finish(out, kDone);
  out.Flush();
  return Fail(kFailed, "there is not enough memory", nullptr, "", ERROR_NOT_ENOUGH_MEMORY);
}

UINT WriteSheet(const Target& target, Sheet sheet, bool mayStore, Output& out) {
  Json json(out);
  json.OpenCalls();
  const SheetEnd end = ShowSheet(target, sheet, mayStore, json);
  const DWORD error = GetLastError();
  json.CloseCalls();
  if (end != SheetEnd::kFailed) return Finish(out, end == SheetEnd::kOk ? kDone : kCancelled);
  out.Flush();
  return Fail(kFailed, "the sheet cannot be shown", nullptr, "", error);
}

// Opens a printer for use, or with all access where wanted and allowed. A handle for use cannot
// store printer data, whatever the user does in a sheet.
kestrel::Printer Open(const WCHAR* name, bool allAccess, bool& hasAllAccess) {
  HANDLE handle = nullptr;
  PRINTER_DEFAULTSW defaults = {nullptr, nullptr, PRINTER_ALL_ACCESS};
  LPWSTR const given = const_cast<LPWSTR>(name);  // only read
  hasAllAccess = allAccess && OpenPrinterW(given, &handle, &defaults);
  if (!hasAllAccess && !OpenPrinterW(given, &handle, nullptr)) handle = nullptr;
  return kestrel::Printer(handle);
}

UINT Try(const Arguments& arguments, Output& out) {
  const kestrel::Module module = LoadModule(arguments.module);
  if (!module) return FailWithLastError("", arguments.module, " cannot be loaded");
  Exports exports;
  if (const char* missing = exports.Find(module.get())) {
    return Fail(kFailed, missing, nullptr, " is not exported by the module", ERROR_PROC_NOT_FOUND);
  }
  bool mayStore = false;
  const kestrel::Printer printer = Open(arguments.printer, StoresOnOk(arguments.sheet), mayStore);
  if (!printer) return FailWithLastError("the printer ", arguments.printer, " cannot be opened");
  const Target target = {exports, printer.get(), arguments.printer};
  return arguments.sheet == Sheet::kNone ? WriteAnswers(target, out)
                                         : WriteSheet(target, arguments.sheet, mayStore, out);
}

UINT Run(const WCHAR* commandLine) {
  size_t length = 0;
  while (commandLine[length] != 0) ++length;
  const kestrel::HeapBlock<WCHAR> storage((length + 1) * sizeof(WCHAR));
  if (!storage) return Fail(kFailed, "there is not enough memory");
  constexpr size_t kMostWords = 8;
  const WCHAR* words[kMostWords];
  const size_t count = SplitCommandLine(commandLine, storage.get(), words, kMostWords);
  Arguments arguments;
  const char* wrong =
      count > kMostWords ? "there are too many arguments" : ReadArguments(words, count, arguments);
  if (wrong != nullptr) return Fail(kUsage, wrong, nullptr, "; see kestrel-try --help");
  Output out(STD_OUTPUT_HANDLE);
  if (!arguments.help) return Try(arguments, out);
  out.Put(kHelp);
  return Finish(out, kDone);
}

}  // namespace
}  // namespace kestrel_try

void WINAPI KestrelTryMain() { ExitProcess(kestrel_try::Run(GetCommandLineW())); }
