// kestrel-try with the module. Both are native code, or, when DRIVER_MODULE names the module's
// Windows image, that image and the kestrel-try.exe in its folder.
#include <windows.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "platform/kernel32/program.h"
#include "resources/resource.h"
#include "tests/support/open_sheet.h"
#include "try/arguments.h"
#include "try/program.h"

namespace {

using platform::ProgramResult;
using support::kPrinter;

enum : UINT { kDone, kCancelled, kUsage, kFailed };  // documented exit codes

class KestrelTry : public support::SheetTest {
 protected:
  ProgramResult Run(const std::u16string& arguments) {
    const std::u16string line = u"\"C:\\My tools\\kestrel-try.exe\" " + arguments;
    const char* given = std::getenv("DRIVER_MODULE");
    if (given == nullptr) return platform::RunProgram(KestrelTryMain, line);
    const auto program = std::filesystem::path(given).replace_filename("kestrel-try.exe");
    return platform::RunProgram(platform::ReadWhole(program), line);
  }
  ProgramResult RunModule(const std::u16string& arguments) {
    return Run(u"C:/WINDOWS/system32/spool/drivers/w32x86/3/QM610rDRV1.DLL " + arguments);
  }
  // Returns all that a sheet may store, by name: registry values, the printer's data and its
  // default record.
  auto Stored() {
    std::map<std::u16string, std::vector<std::byte>> stored = {
        {u"record", machine().DefaultRecord(kPrinter)}};
    for (const auto& [name, value] : machine().AllRegistry(u"")) stored[name] = value.bytes;
    for (const auto& [name, value] : machine().AllData(kPrinter)) stored[name] = value.bytes;
    return stored;
  }
};

TEST_F(KestrelTry, PrinterOfAnyDriverGivesRecordedAnswers) {
  const auto before = Stored();
  const std::string recorded = support::Golden("answers.json");
  EXPECT_EQ(RunModule(u"\"Label Printer\"").output, recorded);
  EXPECT_EQ(Stored(), before);

  // A printer of another driver, with a record and data of that driver.
  kestrel::SettingsRecord record = support::DefaultBlock().Record;
  record.Public.dmDriverVersion = 0x0100;
  record.Private.nPrintSpeed = 2;
  const std::u16string name = u"\\\\server\\倉庫の複合機 with a name of more than 31 characters";
  machine().AddPrinter({.name = name, .driverName = u"Another Driver", .administer = false});
  machine().SetDefaultRecord(name, support::BytesOf(record));
  machine().SetData(name, u"Private DevMode", {REG_BINARY, std::vector<std::byte>(3338)});
  EXPECT_EQ(RunModule(u'"' + name + u'"').output, recorded);
}

TEST_F(KestrelTry, FailureHasAReasonOnStandardErrorAndAnExitCode) {
  const std::u16string folder = u"C:\\WINDOWS\\system32\\spool\\drivers\\w32x86\\3\\";
  const struct {
    std::u16string arguments;
    UINT exitCode;
    std::string reason;
  } kCases[] = {
      {u"", kUsage, "the module's file and the printer's name are missing"},
      {u"1 2 3 4 5 6 7 8 9", kUsage, "there are too many arguments"},  // at most 8
      // Without a folder a name is that of a file in the current directory, wherever else one is.
      {u"QM610rDRV1.dll b-1", kFailed, "QM610rDRV1.dll cannot be loaded (error 126)"},
      {folder + u"QM610rDRV1.dll 倉庫", kFailed, "the printer 倉庫 cannot be opened (error 1801)"},
  };
  for (const auto& [arguments, exitCode, reason] : kCases) {
    const ProgramResult run = Run(arguments);
    EXPECT_EQ(run.exitCode, exitCode) << reason;
    EXPECT_EQ(run.errors, "kestrel-try: " + reason +
                              (exitCode == kUsage ? "; see kestrel-try --help\n" : "\n"));
  }
  machine().faults.FailNth(platform::Fault::kStore, 2);
  const ProgramResult run = RunModule(u"\"Label Printer\"");
  EXPECT_EQ(run.exitCode, kFailed);
  EXPECT_EQ(run.errors, "kestrel-try: the output cannot be written (error 112)\n");
}

TEST_F(KestrelTry, DocumentSheetsStoreNothing) {
  using namespace support;
  const std::u16string key =
      u"SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\Label Printer\\PrinterDriverData";
  machine().SetRegistry(key, u"Other", {REG_DWORD, BytesOf(DWORD{1})});
  for (const std::u16string kind : {u"document", u"advanced"}) {
    const auto before = Stored();
    const auto show = [&] { return RunModule(u"\"Label Printer\" --sheet " + kind); };
    EXPECT_EQ(RunSteps(PressCancel(), show).exitCode, kCancelled);
    const ProgramResult run = RunSteps({GoTo(kOperationTab), GoTo(kPaperTab), PressOk()}, show);
    EXPECT_EQ(run.exitCode, kDone);
    EXPECT_EQ(Stored(), before);
    const auto call = nlohmann::json::parse(run.output)[0];
    EXPECT_EQ(call["record"]["Dither"], 3);  // the operation page always stores this value
    // The second sheet replaces an existing value and has to restore it.
    machine().SetRegistry(key, u"SyncPrint", {REG_DWORD, BytesOf(DWORD{0x10001})});
  }
}

TEST_F(KestrelTry, StoringSheetsStoreOnOkWhereAllowed) {
  using namespace support;
  for (const std::u16string kind : {u"user-default", u"printer"}) {
    const auto show = [&] { return RunModule(u"--sheet " + kind + u" \"Label Printer\""); };
    machine().RemoveData(kPrinter, u"Private DevMode");
    const auto before = Stored();
    EXPECT_EQ(RunSteps(PressCancel(), show).exitCode, kCancelled);
    machine().SetPermission(kPrinter, false, false);
    EXPECT_EQ(RunSteps(PressOk(), show).exitCode, kDone);
    EXPECT_EQ(Stored(), before);
    machine().SetPermission(kPrinter, true, true);
    const ProgramResult run = RunSteps(PressOk(), show);
    EXPECT_EQ(run.exitCode, kDone);
    EXPECT_EQ(nlohmann::json::parse(run.output)[0].contains("record"), kind == u"user-default");
    EXPECT_EQ(Stored()[u"Private DevMode"], BytesOf(DefaultBlock().Printer));
  }
}

TEST(SplitCommandLine, FollowsTheDocumentedRules) {
  const struct {
    std::u16string line;
    std::vector<std::u16string> arguments;
  } kCases[] = {
      {u"\"C:\\My tools\\\" a  b\t c ", {u"a", u"b", u"c"}},  // no escape in the program's name
      {u"try \\\\server\\p a\\b", {u"\\\\server\\p", u"a\\b"}},
      {u"try a\\\"b a\\\\\"b c\" a\\\\\\\"b", {u"a\"b", u"a\\b c", u"a\\\"b"}},
  };
  for (const auto& [line, arguments] : kCases) {
    std::vector<WCHAR> storage(line.size() + 1);
    const WCHAR* words[4] = {};
    const size_t count = kestrel_try::SplitCommandLine(line.c_str(), storage.data(), words, 4);
    EXPECT_EQ(std::vector<std::u16string>(words, words + count), arguments);
  }
}

}  // namespace
