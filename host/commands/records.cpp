// The settings, convert and set-default commands.
#include <iostream>

#include "driver/settings_block.h"
#include "host/commands/commands.h"
#include "host/driver_module.h"
#include "host/failure.h"
#include "host/record_json.h"
#include "host/utf8.h"

namespace printhost {
namespace {

constexpr Option kInOption = {"--in", 1, "FILE", "a settings record; - is standard input"};
constexpr Option kOutOption = {"--out", 1, "FILE",
                               "where the record that comes back is written; - is standard output"};
constexpr Option kSettingsOptions[] = {
    {"--in", 1, "FILE",
     "a settings record to merge into the printer's settings; - is standard input"},
    kOutOption,
    kJsonOption};
constexpr Option kConvertOptions[] = {kInOption, kOutOption, kJsonOption};
constexpr Option kSetDefaultOptions[] = {kInOption};

void RequireOption(const Call& call, std::string_view option) {
  if (!call.arguments.Has(option)) throw Failure{kUsage, std::string(option) + " FILE is missing"};
}

// Throws Failure when record and JSON would both go to standard output.
void CheckOutput(const Call& call) {
  if (call.arguments.Value("--out") == "-" && call.json())
    throw Failure{kUsage, "--out - and --json both write to standard output; give one of them"};
}

// Writes a record to the file or standard output that --out names; prints it with --json or without
// --out.
void WriteResult(const Call& call, const Record& record) {
  const bool hasOut = call.arguments.Has("--out");
  if (const std::string out = call.arguments.Value("--out"); out == "-")
    std::cout.write(reinterpret_cast<const char*>(record.data()),
                    static_cast<std::streamsize>(record.size()));
  else if (hasOut)
    WriteRecordFile(out, record);
  if (call.json() || !hasOut) call.PrintResult(RecordJson(record));
}

// Returns the printer's settings, merged with an input record if there is one, as an application
// gets them from DocumentProperties without a sheet. Throws Failure when the driver fails.
Record Resolve(DriverModule& module, const std::u16string& name,
               const std::optional<Record>& input) {
  PrinterHandle printer(name);
  const LONG size =
      module.documentProperties(nullptr, printer.get(), printer.name(), nullptr, nullptr, 0);
  Record output(static_cast<std::size_t>(std::max<LONG>(size, kestrel::kRecordSize)));
  // DocumentProperties only reads its input, but its parameter is not const.
  auto* inputMode =
      input ? reinterpret_cast<DEVMODEW*>(const_cast<std::byte*>(input->data())) : nullptr;
  const DWORD mode = DM_COPY | (input ? DM_IN_BUFFER : 0);
  if (module.documentProperties(nullptr, printer.get(), printer.name(), AsDevMode(output),
                                inputMode, mode) != IDOK)
    throw Failure{kFailed, "the driver gave no settings for \"" + ToUtf8(name) + "\""};
  output.resize(RecordExtent(output));
  return output;
}

int Settings(Call& call) {
  CheckOutput(call);
  const std::u16string name = call.PrinterArgument();
  std::optional<Record> input;
  if (call.arguments.Has("--in")) input = ReadRecordFile(call.arguments.Value("--in"));
  DriverModule module(call.machine);
  const Record record = Resolve(module, name, input);
  WriteResult(call, record);
  return kDone;
}

int Convert(Call& call) {
  CheckOutput(call);
  std::u16string name = call.PrinterArgument();
  RequireOption(call, "--in");
  Record input = ReadRecordFile(call.arguments.Value("--in"));
  DriverModule module(call.machine);
  Record output(kestrel::kRecordSize);
  auto size = static_cast<LONG>(output.size());
  if (!module.convertDevMode(name.data(), AsDevMode(input), AsDevMode(output), &size, CDM_CONVERT))
    throw Failure{kFailed, "the driver did not convert the record (error " +
                               std::to_string(GetLastError()) + ")"};
  output.resize(RecordExtent(output));
  WriteResult(call, output);
  return kDone;
}

int SetDefault(Call& call) {
  const std::u16string name = call.PrinterArgument();
  RequireOption(call, "--in");
  if (!call.machine.FindPrinter(name)->administer)
    throw Failure{kFailed, "the settings of \"" + ToUtf8(name) +
                               "\" may not be changed; `machine --permission NAME yes` allows it"};
  const Record input = ReadRecordFile(call.arguments.Value("--in"));
  DriverModule module(call.machine);
  const Record record = Resolve(module, name, input);
  if (record.size() != kestrel::kRecordSize)
    throw Failure{kFailed,
                  "the driver hands a record of that older, shorter form back as it is; it cannot "
                  "be a printer's default"};
  call.machine.SetDefaultRecord(name, record);
  return kDone;
}

}  // namespace

const Command kSettings = {"settings", "NAME", kSettingsOptions, "the resolved settings record",
                           Settings};
const Command kConvert = {"convert", "NAME", kConvertOptions,
                          "converts a record to the driver's form", Convert};
const Command kSetDefault = {"set-default", "NAME", kSetDefaultOptions,
                             "resolves a record and keeps it as the printer's default", SetDefault};

}  // namespace printhost
