#include "tests/support/open_sheet.h"

#include <cstring>

namespace support {
namespace {

DWORD DocumentMode(const SheetAsk& ask) {
  DWORD mode = DM_COPY | DM_PROMPT;
  if (ask.kind == SheetKind::kAdvanced) mode |= DM_ADVANCED;
  if (ask.kind == SheetKind::kUserDefault) mode |= DM_USER_DEFAULT;
  if (!ask.permission) mode |= DM_NOPERMISSION;
  if (ask.input != nullptr) mode |= DM_IN_BUFFER;
  return mode;
}

DEVMODEW* InputOf(const SheetAsk& ask) {
  return ask.input ? const_cast<DEVMODEW*>(&ask.input->Public) : nullptr;
}

LONG ShowUserDefault(const Exports& exports, const SheetAsk& ask, HANDLE printer, LPWSTR name,
                     DEVMODEW* output) {
  DOCUMENTPROPERTYHEADER header = {
      sizeof(header),   0, printer, name, InputOf(ask), output, kestrel::kRecordSize,
      DocumentMode(ask)};
  DWORD result = 0;
  const LONG shown = CommonPropertySheetUIW(nullptr, exports.DrvDocumentPropertySheets,
                                            reinterpret_cast<LPARAM>(&header), &result);
  return shown > 0 ? static_cast<LONG>(result) : -1;
}

LONG Show(const Exports& exports, const SheetAsk& ask, HANDLE printer, DEVMODEW* output) {
  std::u16string name = ask.printer;
  switch (ask.kind) {
    case SheetKind::kPrinter:
      return exports.PrinterProperties(nullptr, printer);
    case SheetKind::kUserDefault:
      return ShowUserDefault(exports, ask, printer, name.data(), output);
    case SheetKind::kAdvanced:
      if (ask.permission) {
        return exports.DrvAdvancedDocumentProperties(nullptr, printer, name.data(), output,
                                                     InputOf(ask));
      }
      [[fallthrough]];
    default:
      return exports.DrvDocumentProperties(nullptr, printer, name.data(), output, InputOf(ask),
                                           DocumentMode(ask));
  }
}

}  // namespace

SheetAnswer AskForSheet(const Exports& exports, const SheetAsk& ask) {
  SheetAnswer answer;
  std::memset(&answer.record, 0xAA, sizeof(answer.record));
  const kestrel::SettingsRecord untouched = answer.record;
  const OpenedPrinter printer(ask.printer);
  answer.result = Show(exports, ask, printer, &answer.record.Public);
  answer.written = std::memcmp(&answer.record, &untouched, sizeof(untouched)) != 0;
  if (ask.kind == SheetKind::kUserDefault && answer.result == CPSUI_OK) {
    platform::Machine::Current().SetDefaultRecord(ask.printer, BytesOf(answer.record));
  }
  return answer;
}

}  // namespace support
