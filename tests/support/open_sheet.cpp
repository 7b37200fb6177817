#include "tests/support/open_sheet.h"

#include <cstring>

namespace support {

SheetAnswer SheetTest::AskForSheet(const SheetAsk& ask) {
  SheetAnswer answer;
  std::memset(&answer.record, 0xAA, sizeof(answer.record));
  const kestrel::SettingsRecord untouched = answer.record;
  const OpenedPrinter printer(ask.printer);
  std::u16string name = ask.printer;
  auto* input = ask.input ? const_cast<DEVMODEW*>(&ask.input->Public) : nullptr;
  DEVMODEW* output = &answer.record.Public;
  const DWORD mode = DM_COPY | DM_PROMPT | static_cast<DWORD>(ask.kind) |
                     (ask.permission ? 0 : DM_NOPERMISSION) | (input ? DM_IN_BUFFER : 0);
  if (ask.kind == SheetKind::kPrinter) {
    answer.result = exports_.PrinterProperties(nullptr, printer);
  } else if (ask.kind == SheetKind::kUserDefault) {
    DOCUMENTPROPERTYHEADER header = {sizeof(header),       0,   printer, name.data(), input, output,
                                     kestrel::kRecordSize, mode};
    DWORD result = 0;
    const LONG shown = CommonPropertySheetUIW(nullptr, exports_.DrvDocumentPropertySheets,
                                              reinterpret_cast<LPARAM>(&header), &result);
    answer.result = shown > 0 ? static_cast<LONG>(result) : -1;
    if (answer.result == CPSUI_OK) {
      machine().SetDefaultRecord(ask.printer, BytesOf(answer.record));
    }
  } else if (ask.kind == SheetKind::kAdvanced && ask.permission) {
    answer.result =
        exports_.DrvAdvancedDocumentProperties(nullptr, printer, name.data(), output, input);
  } else {
    answer.result =
        exports_.DrvDocumentProperties(nullptr, printer, name.data(), output, input, mode);
  }
  answer.written = std::memcmp(&answer.record, &untouched, sizeof(untouched)) != 0;
  return answer;
}

}  // namespace support
