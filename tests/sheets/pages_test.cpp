// Behaviour that all pages have in common, for each control (golden/controls.txt): the sheets in
// which it is enabled (x; o: owner-drawn), whether using it marks the sheet as changed (*;
// questions are declined), and the help text that follows. The columns are the sheets of a
// document, of advanced settings and of the user's defaults, each without and with permission.
#include <map>
#include <string>

#include "fonts/font_record.h"
#include "platform/machine/text.h"
#include "resources/resource.h"
#include "tests/support/open_sheet.h"

namespace kestrel {
namespace {

using platform::ControlKind;
using platform::ControlView;
using namespace support;

class Pages : public SheetTest {
 protected:
  Pages() {
    DriverSettingsBlock block = DefaultBlock();
    block.Printer.PaperNum = 2;
    block.Printer.Papers[1] = block.Printer.Papers[0];
    block.Printer.Papers[1].UserDef = 1;
    StoreDefaults(block);
    FontRecord fonts[4] = {};
    for (int i = 0; i < 4; ++i) {
      fonts[i].FontName[0] = static_cast<WCHAR>(u'A' + i);
      fonts[i].FontKind = i < 2 ? kDecorativeFont : kBarcodeFont;
    }
    machine().SetData(kPrinter, u"CreateFont Number",
                      {REG_BINARY, BytesOf(FontNumber{4, 0x0E01, 0})});
    machine().SetData(kPrinter, u"CreateFont Data", {REG_BINARY, BytesOf(fonts)});
  }
  // Uses a control of a page of the user's defaults. Returns its effect as in golden/controls.txt.
  std::string Use(int tab, int id) {
    std::u16string help;
    bool changed = false;
    const auto use = [&](Desk& desk) {
      const ControlView view = desk.Control(id);
      const bool list = view.kind == ControlKind::kComboBox || view.kind == ControlKind::kListBox;
      EXPECT_TRUE(view.kind == ControlKind::kEdit ? desk.Replace(id, u"7")
                  : list ? desk.Select(id, static_cast<int>(view.items.size()) - 1)
                  : view.kind == ControlKind::kUpDown ? desk.Spin(id, 1)
                                                      : desk.Click(id));
    };
    const auto look = [&](Desk& desk) {
      const auto sheet = desk.Windows().front();
      changed = sheet.changed;
      for (const ControlView& control : sheet.page->controls) {
        if (control.id == IDC_HELP_TEXT && help.empty()) help = control.text;
      }
      EXPECT_TRUE(desk.ModalDepth() == 1 || desk.Escape() || desk.Close());
    };
    Show({.kind = SheetKind::kUserDefault}, {GoTo(tab), use, look, look, look, PressCancel()});
    return (changed ? " * " : " - ") + platform::ToUtf8(u'"' + help + u'"');
  }
};

TEST_F(Pages, ControlsAreEnabledBySheetAndPermissionAndMarkChanges) {
  std::map<std::pair<int, int>, std::string> controls;  // by tab and id
  std::string titles;
  size_t column = 0;
  for (const SheetKind kind :
       {SheetKind::kDocument, SheetKind::kAdvanced, SheetKind::kUserDefault}) {
    for (const bool permission : {false, true}) {
      // Windows 2000 adds the pages as COMPROPSHEETUI.
      machine().SetOs({.major = permission ? 10u : 5u});
      const auto look = [&](Desk& desk) {
        const auto sheet = desk.Windows().back();
        EXPECT_FALSE(sheet.changed);
        titles += platform::ToUtf8(sheet.tabs.at(static_cast<size_t>(sheet.activeTab))) + "|";
        for (const ControlView& control : sheet.page->controls) {
          if (!control.visible || control.kind == ControlKind::kStatic ||
              control.kind == ControlKind::kGroupBox)
            continue;
          std::string& when = controls[{sheet.activeTab, control.id}];
          when.resize(column, ' ');
          when += !control.enabled ? "." : control.kind == ControlKind::kOwnerDraw ? "o" : "x";
        }
      };
      Steps steps;
      for (int tab = 0; tab < 6; ++tab) steps += {GoTo(tab), look};
      Show({.kind = kind, .permission = permission}, {steps, PressCancel()});
      ++column;
    }
  }
  std::string actual = titles.substr(0, titles.size() / 6) + "\n";
  for (auto& [place, when] : controls) {
    const auto [tab, id] = place;
    when.resize(column, ' ');
    actual += std::to_string(tab) + ' ' + std::to_string(id) + ' ' + when +
              (when.back() == 'x' ? Use(tab, id) : "") + "\n";
  }
  EXPECT_EQ(actual, Golden("controls.txt"));
}

TEST_F(Pages, ChangeIsMarkedFromWindows2000On) {
  for (const DWORD major : {4u, 5u}) {
    machine().SetOs({.major = major});
    Show({.kind = SheetKind::kUserDefault},
         {GoTo(kPaperTab), Click(IDC_PAPER_LANDSCAPE), ExpectChanged(major >= 5), PressCancel()});
  }
}

}  // namespace
}  // namespace kestrel
