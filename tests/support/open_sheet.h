// Property sheets of the loaded module, shown to a scripted user.
#pragma once

#include <string>

#include "driver/settings_block.h"
#include "tests/support/settings.h"
#include "tests/support/steps.h"
#include "tests/support/test_machine.h"

namespace support {

// The document kinds are what their callers' fMode says besides.
enum class SheetKind : DWORD {
  kDocument = 0,
  kAdvanced = DM_ADVANCED,
  kUserDefault = DM_USER_DEFAULT,
  kPrinter = ~0u
};

struct SheetAsk {
  SheetKind kind = SheetKind::kDocument;
  bool permission = true;  // document kinds: without it DM_NOPERMISSION is passed
  const kestrel::SettingsRecord* input = nullptr;  // document kinds
  std::u16string printer = kPrinter;
};

struct SheetAnswer {
  LONG result = 0;  // of the document kinds CPSUI_OK, CPSUI_CANCEL or -1; else TRUE or FALSE
  kestrel::SettingsRecord record;  // the output record, filled with 0xAA before the call
  bool written = false;            // whether it was changed
};

// Tabs of the document kinds.
enum DocumentTab : int {
  kVersionTab = 0,
  kPaperTab = 1,
  kOperationTab = 2,
  kDeviceTab = 3,
  kFontTab = 4,
  kUtilityTab = 5,
};

// Sheets over settings that the spooler keeps.
class SheetTest : public MachineTest {
 protected:
  // Asks for a sheet of the printer as its callers do, whoever sits at the desk: documents and the
  // printer through the exports for them, user defaults through the sheet library, whose record the
  // spooler keeps after OK.
  SheetAnswer AskForSheet(const SheetAsk& ask);
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
