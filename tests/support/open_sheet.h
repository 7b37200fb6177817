// Property sheets of the loaded module, driven by a scripted user.
#pragma once

#include <cstring>

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
  bool permission = true;  // document sheets only
  std::u16string printer = kPrinter;
};

struct SheetResult {
  LONG result = 0;  // CPSUI_OK, CPSUI_CANCEL or -1; TRUE or FALSE for printer properties
  kestrel::SettingsRecord record;  // the output record, filled with 0xAA before the call
};

enum DocumentTab : int { kVersionTab, kPaperTab, kOperationTab, kDeviceTab, kFontTab, kUtilityTab };

// A fixture that runs sheets over the settings that the spooler stores.
class SheetTest : public MachineTest {
 protected:
  // Runs a sheet with the attached user. Stores the user's defaults as the system does after OK.
  SheetResult RunSheet(const SheetRequest& request) {
    SheetResult sheet;
    std::memset(&sheet.record, 0xAA, sizeof(sheet.record));
    const OpenedPrinter printer(request.printer);
    std::u16string name = request.printer;
    DEVMODEW* output = &sheet.record.Public;
    const DWORD mode = DM_COPY | DM_PROMPT | static_cast<DWORD>(request.kind) |
                       (request.permission ? 0 : DM_NOPERMISSION);
    if (request.kind == SheetKind::kPrinter) {
      sheet.result = exports_.PrinterProperties(nullptr, printer);
    } else if (request.kind == SheetKind::kUserDefault) {
      // The parameter must not be a stack address (PFNPROPSHEETUI).
      const auto header = std::make_unique<DOCUMENTPROPERTYHEADER>(
          DOCUMENTPROPERTYHEADER{sizeof(DOCUMENTPROPERTYHEADER), 0, printer, name.data(), nullptr,
                                 output, kestrel::kRecordSize, mode});
      DWORD result = 0;
      const LONG shown = CommonPropertySheetUIW(nullptr, exports_.DrvDocumentPropertySheets,
                                                reinterpret_cast<LPARAM>(header.get()), &result);
      sheet.result = shown > 0 ? static_cast<LONG>(result) : -1;
      if (sheet.result == CPSUI_OK) machine().SetDefaultRecord(name, BytesOf(sheet.record));
    } else {
      sheet.result =
          exports_.DrvDocumentProperties(nullptr, printer, name.data(), output, nullptr, mode);
    }
    return sheet;
  }
  // Runs a sheet with a user who does the steps. The last step has to close the sheet.
  SheetResult Show(const SheetRequest& request, Steps steps) {
    return RunSteps(std::move(steps), [&] { return RunSheet(request); });
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
