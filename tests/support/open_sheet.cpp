#include "tests/support/open_sheet.h"

#include <cstring>

namespace support {
namespace {

using platform::Desk;
using platform::ScriptedUser;

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

SheetAnswer ShowSheet(const Exports& exports, const SheetAsk& ask, Steps steps) {
  ScriptedUser user(std::move(steps));
  const SheetAnswer answer = ShowSheetTo(user, exports, ask);
  EXPECT_EQ(user.Problem(), "");
  EXPECT_TRUE(user.Finished());
  return answer;
}

SheetAnswer ShowSheetTo(platform::User& user, const Exports& exports, const SheetAsk& ask) {
  SheetAnswer answer;
  std::memset(&answer.record, 0xAA, sizeof(answer.record));
  const kestrel::SettingsRecord untouched = answer.record;
  Desk& desk = platform::Machine::Current().desk();
  desk.Attach(&user);
  {
    const OpenedPrinter printer(ask.printer);
    answer.result = Show(exports, ask, printer, &answer.record.Public);
  }
  desk.Attach(nullptr);
  EXPECT_EQ(desk.ModalDepth(), 0);
  answer.written = std::memcmp(&answer.record, &untouched, sizeof(untouched)) != 0;
  return answer;
}

ScriptedUser::Step GoTo(int tab) {
  return [=](Desk& desk) { EXPECT_TRUE(desk.Page(tab)) << "tab " << tab; };
}
ScriptedUser::Step PressOk() {
  return [](Desk& desk) { EXPECT_TRUE(desk.Press(platform::SheetButton::kOk)); };
}
ScriptedUser::Step PressCancel() {
  return [](Desk& desk) { EXPECT_TRUE(desk.Press(platform::SheetButton::kCancel)); };
}
ScriptedUser::Step Click(int id) {
  return [=](Desk& desk) { EXPECT_TRUE(desk.Click(id)) << "control " << id; };
}
ScriptedUser::Step Select(int id, int index) {
  return [=](Desk& desk) { EXPECT_TRUE(desk.Select(id, index)) << "control " << id; };
}
ScriptedUser::Step Replace(int id, std::u16string text) {
  return [=](Desk& desk) { EXPECT_TRUE(desk.Replace(id, text)) << "control " << id; };
}
ScriptedUser::Step Spin(int id, int steps) {
  return [=](Desk& desk) { EXPECT_TRUE(desk.Spin(id, steps)) << "control " << id; };
}
ScriptedUser::Step Focus(int id) {
  return [=](Desk& desk) { EXPECT_TRUE(desk.Focus(id)) << "control " << id; };
}
ScriptedUser::Step ExpectText(int id, std::u16string text) {
  return [=](Desk& desk) { EXPECT_EQ(desk.Text(id), text) << "control " << id; };
}
ScriptedUser::Step ExpectChanged(bool changed) {
  return [=](Desk& desk) { EXPECT_EQ(desk.Windows().back().applyEnabled, changed); };
}
ScriptedUser::Step CloseMessage(std::u16string text, UINT style, std::u16string caption) {
  return [=](Desk& desk) {
    EXPECT_TRUE(desk.IsMessageBox());
    EXPECT_EQ(desk.MessageText(), text);
    EXPECT_EQ(desk.MessageStyle(), style);
    EXPECT_EQ(desk.Title(), caption);
    EXPECT_TRUE(desk.Click(IDOK));
  };
}

}  // namespace support
