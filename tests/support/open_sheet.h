// Property sheets of the loaded module, driven by a scripted user.
#pragma once

#include <cstring>
#include <memory>
#include <string>

#include "tests/support/steps.h"
#include "tests/support/test_machine.h"

namespace support {

// The kind of sheet; for a document sheet its flag in the mode.
enum class SheetKind : DWORD {
  kDocument = 0,
  kAdvanced = DM_ADVANCED,
  kUserDefault = DM_USER_DEFAULT,
  kPrinter = ~0u
};

struct SheetRequest {
  SheetKind kind = SheetKind::kDocument;
  bool permission = true;                          // document sheets only
  const kestrel::SettingsRecord* input = nullptr;  // document sheets only
  std::u16string printer = kPrinter;
};

struct SheetResult {
  LONG result = 0;  // CPSUI_OK, CPSUI_CANCEL or -1; TRUE or FALSE for printer properties
  kestrel::SettingsRecord record;  // the output record, filled with 0xAA before the call
};

// The tabs of a document sheet.
enum DocumentTab : int { kVersionTab, kPaperTab, kOperationTab, kDeviceTab, kFontTab, kUtilityTab };

// A fixture that runs sheets over the settings that the spooler stores.
class SheetTest : public MachineTest {
 protected:
  // Runs a sheet with the attached user. Calls the exports as the system does; for the user's
  // defaults it calls the sheet library and stores the record after OK.
  SheetResult RunSheet(const SheetRequest& ask) {
    SheetResult answer;
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
  // Runs a sheet with a user who does the steps. The last step has to close the sheet.
  SheetResult Show(const SheetRequest& ask, Steps steps) {
    return RunSteps(std::move(steps), [&] { return RunSheet(ask); });
  }
  // Run the sheet of the user's defaults, go to a tab, do the steps and press OK or Cancel.
  SheetResult Ok(DocumentTab tab, Steps steps = {}) {
    return Show({.kind = SheetKind::kUserDefault}, {GoTo(tab), steps, PressOk()});
  }
  SheetResult Cancel(DocumentTab tab, Steps steps = {}) {
    return Show({.kind = SheetKind::kUserDefault}, {GoTo(tab), steps, PressCancel()});
  }
  void StoreDefaults(const kestrel::DriverSettingsBlock& block) { StoreBlock(machine(), block); }
};

}  // namespace support
