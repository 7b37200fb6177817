// What all pages have in common: the sheets in which a control is enabled, whether using it marks
// the sheet as changed, and its help text.
#include <algorithm>
#include <map>

#include "fonts/font_record.h"
#include "paper/fields/help_text.h"
#include "resources/resource.h"
#include "tests/support/open_sheet.h"

namespace kestrel {
namespace {

using platform::ControlKind;
using platform::ControlView;
using namespace support;

using ControlsByTab = std::map<int, std::vector<int>>;
bool Contains(const ControlsByTab& controls, int tab, int id) {
  const auto found = controls.find(tab);
  return found != controls.end() && std::ranges::count(found->second, id) != 0;
}

// A control is enabled in each sheet whose user may change settings, except these:
const ControlsByTab kAlwaysEnabled = {
    {kVersionTab, {IDC_VERSION_WEBSITE}},
    {kFontTab, {IDC_CREATE_FONT_DECO_LIST, IDC_CREATE_FONT_BAR_LIST}}};
const ControlsByTab kNeverEnabled = {
    {kPaperTab, {IDC_PAPER_PEEL_OFFSET, IDC_PAPER_PEEL_OFFSET_SPIN}},  // in tear-off mode
    {kDeviceTab, {IDC_DEVICE_DENSITY}}};
const ControlsByTab kEnabledForUserDefaults = {
    {kPaperTab, {IDC_PAPER_REGISTER, IDC_PAPER_EDIT, IDC_PAPER_DELETE}},
    {kOperationTab, {IDC_OPERATION_HALFTONE, IDC_OPERATION_SYNC_PRINT, IDC_OPERATION_COMPULSORY}},
    {kFontTab,
     {IDC_CREATE_FONT_DECO_NEW, IDC_CREATE_FONT_DECO_EDIT, IDC_CREATE_FONT_DECO_DELETE,
      IDC_CREATE_FONT_BAR_NEW, IDC_CREATE_FONT_BAR_EDIT, IDC_CREATE_FONT_BAR_DELETE}},
    {kUtilityTab, {IDC_UTILITY_LOAD}}};
// The sheet of advanced settings has no fonts.
const ControlsByTab kEnabledWithFonts = {
    {kFontTab, {IDC_CREATE_FONT_DECO_REFERENCE, IDC_CREATE_FONT_BAR_REFERENCE}}};

// Using a control does not mark the sheet as changed, except these:
const ControlsByTab kMarksChange = {
    {kPaperTab,
     {IDC_PAPER_LIST, IDC_PAPER_PORTRAIT, IDC_PAPER_LANDSCAPE, IDC_PAPER_FLIP, IDC_PAPER_POSITION,
      IDC_PAPER_VERT_BASE, IDC_PAPER_VERT_BASE_SPIN, IDC_PAPER_HORZ_BASE, IDC_PAPER_HORZ_BASE_SPIN,
      IDC_PAPER_TEAR_OFFSET, IDC_PAPER_TEAR_OFFSET_SPIN, IDC_PAPER_PITCH_OFFSET,
      IDC_PAPER_PITCH_OFFSET_SPIN}},
    {kOperationTab,
     {IDC_OPERATION_COLOR_SHADED, IDC_OPERATION_COLOR_BLACK, IDC_OPERATION_SPEED,
      IDC_OPERATION_SENSOR, IDC_OPERATION_SYNC_PRINT, IDC_OPERATION_COMPULSORY}},
    {kDeviceTab, {IDC_DEVICE_MODE}}};

// Using a control shows a help text that no other control of the page has, except these:
const ControlsByTab kWithoutHelp = {
    {kVersionTab, {IDC_VERSION_WEBSITE}},
    {kOperationTab, {IDC_OPERATION_COLOR_ADJUST, IDC_OPERATION_HALFTONE}}};

bool IsEnabled(int tab, int id, SheetKind kind, bool permission) {
  if (Contains(kAlwaysEnabled, tab, id)) return true;
  if (!permission || Contains(kNeverEnabled, tab, id)) return false;
  if (Contains(kEnabledForUserDefaults, tab, id)) return kind == SheetKind::kUserDefault;
  return kind != SheetKind::kAdvanced || !Contains(kEnabledWithFonts, tab, id);
}

class Pages : public SheetTest {
 protected:
  Pages() {
    FontRecord fonts[2] = {};
    fonts[0].FontName[0] = u'D', fonts[0].FontKind = kDecorativeFont;
    fonts[1].FontName[0] = u'B', fonts[1].FontKind = kBarcodeFont;
    const FontNumber number = {2, 0x0E01, 0};
    machine().SetData(kPrinter, u"CreateFont Number", {REG_BINARY, BytesOf(number)});
    machine().SetData(kPrinter, u"CreateFont Data", {REG_BINARY, BytesOf(fonts)});
  }
  // Opens each page and returns the controls that are enabled on it.
  ControlsByTab ExpectEnabledControls(SheetKind kind, bool permission) {
    ControlsByTab enabled;
    Steps steps;
    for (int tab = 0; tab < 6; ++tab) {
      const auto expectControls = [&, tab](Desk& desk) {
        const auto page = desk.Windows().back().page;
        for (const ControlView& control : page->controls) {
          if (!control.visible || control.kind == ControlKind::kStatic ||
              control.kind == ControlKind::kGroupBox || control.kind == ControlKind::kOwnerDraw)
            continue;
          EXPECT_EQ(control.enabled, IsEnabled(tab, control.id, kind, permission))
              << "control " << control.id << " of tab " << tab;
          if (control.enabled) enabled[tab].push_back(control.id);
        }
      };
      steps += {GoTo(tab), ExpectChanged(false), expectControls};
    }
    Show({.kind = kind, .permission = permission}, {steps, PressCancel()});
    return enabled;
  }
};

TEST_F(Pages, ControlsAreEnabledBySheetAndPermission) {
  for (const SheetKind kind :
       {SheetKind::kDocument, SheetKind::kAdvanced, SheetKind::kUserDefault}) {
    ExpectEnabledControls(kind, true);
    machine().SetOs({.major = 5, .minor = 0});  // Windows 2000 adds the pages as COMPROPSHEETUI
    ExpectEnabledControls(kind, false);
    machine().SetOs({.major = 10, .minor = 0});
  }
}

// The printer is not connected, and questions are declined.
TEST_F(Pages, UsingAControlMarksChangesAndShowsItsHelp) {
  // The control that shows a help text; an up-down shows that of its edit.
  std::map<std::u16string, int> shownBy = {
      {u"", 0}, {kFirstHelpCursor, 0}, {kFirstHelpPosition, 0}, {kFirstHelpFonts, 0}};
  for (const auto& [tab, ids] : ExpectEnabledControls(SheetKind::kUserDefault, true)) {
    for (const int id : ids) {
      SCOPED_TRACE(testing::Message() << "control " << id << " of tab " << tab);
      ControlView used;
      const auto use = [&](Desk& desk) {
        used = desk.Control(id);
        EXPECT_TRUE(used.kind == ControlKind::kEdit       ? desk.Replace(id, u"7")
                    : used.kind == ControlKind::kListBox  ? desk.Focus(id)
                    : used.kind == ControlKind::kUpDown   ? desk.Spin(id, 1)
                    : used.kind == ControlKind::kComboBox ? desk.Select(id, 1)
                                                          : desk.Click(id));
      };
      // A dialog may have opened over the page.
      const auto expectHelp = [&](Desk& desk) {
        const auto page = desk.Windows().front().page;
        const auto help = std::ranges::find(page->controls, IDC_HELP_TEXT, &ControlView::id);
        if (Contains(kWithoutHelp, tab, id)) return;
        const int owner = used.kind == ControlKind::kUpDown ? used.buddy : id;
        ASSERT_NE(help, page->controls.end());
        EXPECT_EQ(shownBy.try_emplace(help->text, owner).first->second, owner);
      };
      Steps closeDialogs;
      closeDialogs.insert(closeDialogs.end(), 10, [](Desk& desk) {
        EXPECT_TRUE(desk.ModalDepth() == 1 || desk.Escape() || desk.Close());
      });
      Cancel(static_cast<DocumentTab>(tab),
             {use, expectHelp, closeDialogs, ExpectChanged(Contains(kMarksChange, tab, id))});
    }
  }
}

TEST_F(Pages, ChangeIsMarkedFromWindows2000On) {
  for (const DWORD major : {4u, 5u}) {
    machine().SetOs({.major = major, .minor = 0});
    Cancel(kPaperTab, {Click(IDC_PAPER_LANDSCAPE), ExpectChanged(major >= 5)});
  }
}

}  // namespace
}  // namespace kestrel
