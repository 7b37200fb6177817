// Walks through the paper page and its dialogs: what a person does, step by step, in a sheet that
// the module's exports open.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "driver/default_settings.h"
#include "driver/settings_block.h"
#include "driver/text.h"
#include "paper/paper_table.h"
#include "resources/resource.h"
#include "tests/support/open_sheet.h"
#include "tests/support/test_machine.h"

namespace kestrel {

using platform::Desk;
using support::kPaperTab;
using support::kPrinter;
using support::kVersionTab;
using support::SheetAnswer;
using support::SheetKind;
using Step = platform::ScriptedUser::Step;

class PaperWalk : public support::MachineTest {
 protected:
  void SetUp() override {
    MachineTest::SetUp();
    ask_.kind = SheetKind::kUserDefault;
    steps_ = {support::GoTo(kPaperTab)};
  }

  // ---- what the printer starts with ----
  static DriverSettingsBlock Fresh() {
    DriverSettingsBlock block = {};
    FillDefaultSettings(block, nullptr, kPrinter);
    block.Record.Private.Signature = SETTINGS_SIGNATURE;
    return block;
  }
  // Registers papers named by their slot, "P1" and so on, behind the standard paper.
  static void Register(DriverSettingsBlock& block, int count) {
    for (int i = 1; i <= count; ++i) {
      PaperInfo paper = NewPaper();
      CopyText(paper.PaperName, (u"P" + Digits(i)).c_str());
      paper.LabelWidth = static_cast<int16_t>(200 + i);
      AppendPaper(block, paper);
    }
  }
  void Keep(const DriverSettingsBlock& block) {
    machine().SetDefaultRecord(kPrinter, Bytes(&block.Record, sizeof block.Record));
    machine().SetData(kPrinter, u"Private DevMode",
                      {REG_BINARY, Bytes(&block.Printer, sizeof block.Printer)});
  }
  // ---- and what it has afterwards ----
  PrinterSettingsPart Stored() {
    PrinterSettingsPart part = {};
    const auto data = machine().Data(kPrinter, u"Private DevMode");
    if (data && data->bytes.size() == sizeof part) {
      std::memcpy(&part, data->bytes.data(), sizeof part);
    }
    return part;
  }
  std::u16string StoredName(int slot) { return Stored().Papers[slot].PaperName; }

  static std::vector<std::byte> Bytes(const void* data, size_t size) {
    const auto* first = static_cast<const std::byte*>(data);
    return {first, first + size};
  }
  static std::u16string Digits(int number) {
    std::u16string text;
    for (char digit : std::to_string(number)) text.push_back(static_cast<char16_t>(digit));
    return text;
  }

  // ---- what the person does ----
  void Then(Step step) { steps_.push_back(std::move(step)); }
  static void Must(bool could, const std::string& what) {
    if (!could) throw std::runtime_error("could not " + what);
  }
  void Click(int id) {
    Then([id](Desk& desk) { Must(desk.Click(id), "click " + std::to_string(id)); });
  }
  void Focus(int id) {
    Then([id](Desk& desk) { Must(desk.Focus(id), "focus " + std::to_string(id)); });
  }
  void Type(int id, std::u16string text) {
    Then([=](Desk& desk) {
      // Typing that a field takes back keeps the rest of it out.
      desk.Replace(id, text);
    });
  }
  void Paste(int id, std::u16string text) {
    Then([=](Desk& desk) { Must(desk.Paste(id, text), "paste into " + std::to_string(id)); });
  }
  void Pick(int id, int index) {
    Then([=](Desk& desk) { Must(desk.Select(id, index), "select in " + std::to_string(id)); });
  }
  void Spin(int id, int steps) {
    Then([=](Desk& desk) { Must(desk.Spin(id, steps), "spin " + std::to_string(id)); });
  }
  // Opens the registration dialog and fills it in; empty texts stay as they are.
  void FillNewPaper(std::u16string name, std::u16string width = u"", std::u16string length = u"",
                    std::u16string gap = u"") {
    Click(IDC_PAPER_REGISTER);
    FillPaper(std::move(name), std::move(width), std::move(length), std::move(gap));
  }
  void FillPaper(std::u16string name, std::u16string width = u"", std::u16string length = u"",
                 std::u16string gap = u"") {
    if (!name.empty()) Type(IDC_PAPER_REGISTER_NAME, std::move(name));
    if (!width.empty()) Type(IDC_PAPER_REGISTER_WIDTH, std::move(width));
    if (!length.empty()) Type(IDC_PAPER_REGISTER_LENGTH, std::move(length));
    if (!gap.empty()) Type(IDC_PAPER_REGISTER_GAP, std::move(gap));
  }

  // ---- what the person sees ----
  void Sees(int id, std::u16string text) {
    Then([=](Desk& desk) { EXPECT_EQ(desk.Text(id), text) << id; });
  }
  void SeesSelected(int id, int index) {
    Then([=](Desk& desk) { EXPECT_EQ(desk.Control(id).selection, index) << id; });
  }
  void SeesList(int id, std::vector<std::u16string> items) {
    Then([=](Desk& desk) { EXPECT_EQ(desk.Control(id).items, items) << id; });
  }
  void SeesEnabled(int id, bool enabled) {
    Then([=](Desk& desk) { EXPECT_EQ(desk.Control(id).enabled, enabled) << id; });
  }
  void SeesTitle(std::u16string title) {
    Then([=](Desk& desk) { EXPECT_EQ(desk.Title(), title); });
  }
  void SeesFocus(int id) {
    Then([=](Desk& desk) { EXPECT_EQ(desk.FocusedId(), id); });
  }
  // A message box, closed by one of its buttons.
  void Answers(std::u16string caption, std::u16string text, UINT style = MB_ICONEXCLAMATION,
               int button = IDOK) {
    Then([=](Desk& desk) {
      Must(desk.IsMessageBox(), "find a message box");
      EXPECT_EQ(desk.Title(), caption);
      EXPECT_EQ(desk.MessageText(), text);
      EXPECT_EQ(desk.MessageStyle(), style);
      Must(desk.Click(button), "answer the message box");
    });
  }

  // Does all steps; the last must close the sheet.
  SheetAnswer Run() {
    const SheetAnswer answer = support::ShowSheet(exports_, ask_, std::move(steps_));
    steps_ = {support::GoTo(kPaperTab)};
    return answer;
  }
  // The spooler keeps the user's defaults that come back.
  SheetAnswer RunToOk() {
    Then(support::PressOk());
    const SheetAnswer answer = Run();
    if (ask_.kind == SheetKind::kUserDefault) {
      machine().SetDefaultRecord(kPrinter, Bytes(&answer.record, sizeof answer.record));
    }
    return answer;
  }
  SheetAnswer RunToCancel() {
    Then(support::PressCancel());
    return Run();
  }

  support::SheetAsk ask_;
  support::Steps steps_;
};

}  // namespace kestrel
