#include "host/sheet/sheet_call.h"

#include <windows.h>
#include <winspool.h>

#include <algorithm>
#include <memory>

#include "driver/settings_block.h"
#include "host/utf8.h"
#include "platform/machine/guard.h"

namespace printhost {

struct SheetCall::Kind {
  std::string_view name;
  LONG (SheetCall::*show)();
  bool hasRecord;          // the sheet returns a settings record
  bool isStoredAsDefault;  // the record becomes the printer's default
};
const SheetCall::Kind SheetCall::kKinds[] = {
    {"document", &SheetCall::ShowDocument, true, false},
    {"advanced", &SheetCall::ShowAdvanced, true, false},
    {"user-default", &SheetCall::ShowUserDefault, true, true},
    {"printer", &SheetCall::ShowPrinter, false, false}};

const SheetCall::Kind& SheetCall::FindKind(std::string_view name) {
  const auto kind = std::ranges::find(kKinds, name, &Kind::name);
  if (kind == std::end(kKinds))
    throw Failure{kUsage, "--kind takes document, advanced, user-default or printer"};
  return *kind;
}

SheetCall::SheetCall(Call& call, std::u16string printer, std::string_view kind)
    : machine_(call.machine),
      kind_(FindKind(!kind.empty()                  ? std::string(kind)
                     : call.arguments.Has("--kind") ? call.arguments.Value("--kind")
                                                    : "document")),
      module_(call.machine),
      printer_(std::move(printer)),
      printsJson_(call.json()),
      out_(call.arguments.Value("--out")),
      output_(kestrel::kRecordSize) {
  if (!kind_.hasRecord && (call.arguments.Has("--in") || call.arguments.Has("--out")))
    throw Failure{kUsage,
                  "the printer's own sheet has no settings record; leave --in and --out away"};
  if (out_ == "-")
    throw Failure{kUsage, "--out takes a file; --json tells the record on standard output"};
  if (call.arguments.Has("--in")) input_ = ReadRecordFile(call.arguments.Value("--in"));
  if (call.arguments.Has("--out")) CheckRecordFile(out_);
}

std::string_view SheetCall::kind() const { return kind_.name; }

LONG SheetCall::Show() { return (this->*kind_.show)(); }

bool SheetCall::HasPermission() { return machine_.FindPrinter(printer())->writable; }

LONG SheetCall::ShowDocument() {
  const DWORD mode = DM_COPY | DM_PROMPT | (input() != nullptr ? DM_IN_BUFFER : 0) |
                     (HasPermission() ? 0 : DM_NOPERMISSION);
  return module_.documentProperties(nullptr, printer_.get(), printer(), AsDevMode(output_), input(),
                                    mode);
}

// DrvAdvancedDocumentProperties has no mode parameter. A sheet without permission is shown through
// DrvDocumentProperties, which has one.
LONG SheetCall::ShowAdvanced() {
  if (!HasPermission()) {
    return module_.documentProperties(nullptr, printer_.get(), printer(), AsDevMode(output_),
                                      input(), DM_COPY | DM_PROMPT | DM_ADVANCED | DM_NOPERMISSION);
  }
  return module_.advancedDocumentProperties(nullptr, printer_.get(), printer(), AsDevMode(output_),
                                            input());
}

// The header, a parameter of CommonPropertySheetUIW, has to be on the heap.
LONG SheetCall::ShowUserDefault() {
  const auto owned = std::make_unique<DOCUMENTPROPERTYHEADER>();
  DOCUMENTPROPERTYHEADER& header = *owned;
  header.cbSize = sizeof header;
  header.hPrinter = printer_.get();
  header.pszPrinterName = printer();
  header.pdmIn = input();
  header.pdmOut = AsDevMode(output_);
  header.cbOut = kestrel::kRecordSize;
  header.fMode = DM_COPY | DM_PROMPT | DM_USER_DEFAULT | (HasPermission() ? 0 : DM_NOPERMISSION);
  DWORD result = CPSUI_CANCEL;
  const LONG status = CommonPropertySheetUIW(nullptr, module_.documentPropertySheets.function,
                                             reinterpret_cast<LPARAM>(&header), &result);
  platform::RethrowPendingException();
  return status < 0 ? status : static_cast<LONG>(result);
}

LONG SheetCall::ShowPrinter() {
  output_.clear();
  return module_.printerProperties(nullptr, printer_.get()) ? CPSUI_OK : CPSUI_CANCEL;
}

void SheetCall::RequirePrinter() {
  DWORD needed = 0;
  GetPrinterW(printer_.get(), 4, nullptr, 0, &needed);
  if (GetLastError() == ERROR_PRINTER_DELETED)
    throw Failure{
        kFailed, "the printer \"" + ToUtf8(printer()) + "\" was removed meanwhile; nothing is kept",
        "プリンタが削除されたため、設定は保存されていません。"};
}

void SheetCall::Save() {
  if (!kind_.hasRecord) return;
  input_ = output_;
  input_.resize(RecordExtent(input_));
  // The default record last: a failure to write the file leaves the printer unchanged.
  if (!out_.empty()) WriteRecordFile(out_, input_);
  if (kind_.isStoredAsDefault) machine_.SetDefaultRecord(printer(), input_);
}

std::optional<Failure> SheetCall::SaveError() const {
  return CatchFailure([this] {
    machine_.RequireWritable();
    if (!out_.empty()) CheckRecordFile(out_);
  });
}

Failure StoreFailure(std::string_view reason) {
  struct Reason {
    std::string_view english;
    const char* japanese;
  };
  static constexpr Reason kReasons[] = {
      {"locked", "ほかのプログラムが computer.sqlite を使用しています。"},
      {"disk is full", "ディスクの空き容量がありません。"},
      {"cannot be written", "computer.sqlite への書き込みが許可されていません。"},
      {"", "computer.sqlite に書き込めません。"}};
  const auto found = std::ranges::find_if(
      kReasons, [&](const Reason& each) { return reason.find(each.english) != reason.npos; });
  return {kFailed, "the settings cannot be kept: " + std::string(reason), found->japanese};
}

std::string SheetCall::DescribeOutcome() {
  const std::string name = '"' + ToUtf8(printer()) + '"';
  if (!kind_.hasRecord) return "stored for the printer " + name;
  std::string outcome =
      kind_.isStoredAsDefault ? "stored as the default of " + name : std::string();
  if (!out_.empty()) outcome += (outcome.empty() ? "" : " and ") + ("written to " + out_);
  if (!outcome.empty()) return outcome;
  return printsJson_ ? "printed on standard output"
                     : "handed to no application and not stored; --out FILE writes them";
}

Json SheetCall::Result() const { return kind_.hasRecord ? RecordJson(input_) : Json(); }

}  // namespace printhost
