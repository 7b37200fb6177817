// Property sheets of the loaded module, shown to a scripted user.
#pragma once

#include <cstring>
#include <memory>
#include <string>

#include "tests/support/steps.h"
#include "tests/support/test_machine.h"

namespace support {

// What the mode of the document kinds says besides.
enum class SheetKind : DWORD {
  kDocument = 0,
  kAdvanced = DM_ADVANCED,
  kUserDefault = DM_USER_DEFAULT,
  kPrinter = ~0u
};

struct SheetAsk {
  SheetKind kind = SheetKind::kDocument;
  bool permission = true;                          // document kinds
  const kestrel::SettingsRecord* input = nullptr;  // document kinds
  std::u16string printer = kPrinter;
};

struct SheetAnswer {
  LONG result = 0;  // of the document kinds CPSUI_OK, CPSUI_CANCEL or -1; else TRUE or FALSE
  kestrel::SettingsRecord record;  // the output record, filled with 0xAA before the call
};

// Tabs of the document kinds.
enum DocumentTab : int { kVersionTab, kPaperTab, kOperationTab, kDeviceTab, kFontTab, kUtilityTab };

// Sheets over settings that the spooler keeps.
class SheetTest : public MachineTest {
 protected:
  // Asks for a sheet of the printer as its callers do, whoever sits at the desk: through the
  // exports, user defaults through the sheet library, whose record the spooler keeps after OK.
  SheetAnswer AskForSheet(const SheetAsk& ask) {
    SheetAnswer answer;
    std::memset(&answer.record, 0xAA, sizeof(answer.record));
    const OpenedPrinter printer(ask.printer);
    std::u16string name = ask.printer;
    auto* input = ask.input ? const_cast<DEVMODEW*>(&ask.input->Public) : nullptr;
    DEVMODEW* output = &answer.record.Public;
    const DWORD mode = DM_COPY | DM_PROMPT | static_cast<DWORD>(ask.kind) |
                       (ask.permission ? 0 : DM_NOPERMISSION) | (input ? DM_IN_BUFFER : 0);
    if (ask.kind == SheetKind::kPrinter) {
      answer.result = exports_.PrinterProperties(nullptr, printer);
    } else if (ask.kind == SheetKind::kUserDefault) {
      const auto header = std::make_unique<DOCUMENTPROPERTYHEADER>(
          DOCUMENTPROPERTYHEADER{sizeof(DOCUMENTPROPERTYHEADER), 0, printer, name.data(), input,
                                 output, kestrel::kRecordSize, mode});
      DWORD result = 0;
      const LONG shown = CommonPropertySheetUIW(nullptr, exports_.DrvDocumentPropertySheets,
                                                reinterpret_cast<LPARAM>(header.get()), &result);
      answer.result = shown > 0 ? static_cast<LONG>(result) : -1;
      if (answer.result == CPSUI_OK) machine().SetDefaultRecord(name, BytesOf(answer.record));
    } else {
      answer.result =
          exports_.DrvDocumentProperties(nullptr, printer, name.data(), output, input, mode);
    }
    return answer;
  }
  // The same with a person who does the steps, the last of which closes the sheet.
  SheetAnswer Show(const SheetAsk& ask, Steps steps) {
    return Follow(std::move(steps), [&] { return AskForSheet(ask); });
  }
  // The sheet of the user's defaults from one of its tabs on, to OK or to Cancel.
  SheetAnswer Ok(DocumentTab tab, Steps steps = {}) {
    return Show({.kind = SheetKind::kUserDefault}, {GoTo(tab), steps, PressOk()});
  }
  SheetAnswer Cancel(DocumentTab tab, Steps steps = {}) {
    return Show({.kind = SheetKind::kUserDefault}, {GoTo(tab), steps, PressCancel()});
  }
  void Keep(const kestrel::DriverSettingsBlock& block) { StoreBlock(machine(), block); }
};

}  // namespace support
