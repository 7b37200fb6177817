// Property sheets of the loaded module, shown to a scripted user.
#pragma once

#include <string>
#include <vector>

#include "driver/settings_block.h"
#include "platform/desk.h"
#include "tests/support/test_machine.h"

namespace support {

enum class SheetKind { kDocument, kAdvanced, kUserDefault, kPrinter };

struct SheetAsk {
  SheetKind kind = SheetKind::kDocument;
  bool permission = true;  // document kinds: without it DM_NOPERMISSION is passed
  const kestrel::SettingsRecord* input = nullptr;  // document kinds
  std::u16string printer = kPrinter;
};

struct SheetAnswer {
  LONG result =
      0;  // of the document kinds CPSUI_OK, CPSUI_CANCEL or -1; of the printer TRUE or FALSE
  kestrel::SettingsRecord record;  // the output record, filled with 0xAA before the call
  bool written = false;            // whether it was changed
};

using Steps = std::vector<platform::ScriptedUser::Step>;

// Shows a sheet of the printer as its callers do: documents and the printer through the exports
// for them, user defaults through the sheet library. Fails the test when the script could not be
// followed to its end.
SheetAnswer ShowSheet(const Exports& exports, const SheetAsk& ask, Steps steps);

// The same with any user at the desk.
SheetAnswer ShowSheetTo(platform::User& user, const Exports& exports, const SheetAsk& ask);

// Tabs of the document kinds.
enum DocumentTab : int {
  kVersionTab = 0,
  kPaperTab = 1,
  kOperationTab = 2,
  kDeviceTab = 3,
  kFontTab = 4,
  kUtilityTab = 5,
};

// Steps. Each fails the test when the person cannot do it.
platform::ScriptedUser::Step GoTo(int tab);
platform::ScriptedUser::Step PressOk();
platform::ScriptedUser::Step PressCancel();
platform::ScriptedUser::Step Click(int id);
platform::ScriptedUser::Step Select(int id, int index);
platform::ScriptedUser::Step Replace(int id, std::u16string text);
platform::ScriptedUser::Step Spin(int id, int steps);
platform::ScriptedUser::Step Focus(int id);
// The text of a control is this.
platform::ScriptedUser::Step ExpectText(int id, std::u16string text);
// Whether some page has marked the sheet changed.
platform::ScriptedUser::Step ExpectChanged(bool changed);
// A message box with this text, style and caption is on top; OK closes it.
platform::ScriptedUser::Step CloseMessage(std::u16string text, UINT style, std::u16string caption);

}  // namespace support
