// What every page shares, control by control: when it may be used, what the help box says of it,
// and whether its use marks the sheet changed. A control that is missing here fails the test.
#include <algorithm>
#include <string>

#include "fonts/font_record.h"
#include "resources/resource.h"
#include "tests/support/open_sheet.h"

namespace kestrel {
namespace {

using platform::ControlKind;
using platform::ControlView;
using platform::Desk;
using platform::WindowView;
using support::kDeviceTab;
using support::kFontTab;
using support::kOperationTab;
using support::kPaperTab;
using support::kUtilityTab;
using support::kVersionTab;
using support::SheetKind;

enum When {
  kNever,      // as the printer is set here, or hidden
  kPermitted,  // with the permission to change settings
  kOwner,      // the same, in the user's defaults alone
  kAlways,
  kPicture,  // drawn by the page and nobody's to use
};

struct Control {
  int tab, id;
  When when;
  UINT help;   // string id; 0: the help box keeps its text
  bool marks;  // whether using it, and declining what it asks, changes something
};

constexpr Control kControls[] = {
    {kVersionTab, IDC_VERSION_PICTURE, kPicture, 0, false},
    {kVersionTab, IDC_VERSION_WEBSITE, kAlways, 0, false},

    {kPaperTab, IDC_PAPER_LIST, kPermitted, 2354, true},
    {kPaperTab, IDC_PAPER_PORTRAIT, kPermitted, 2355, true},
    {kPaperTab, IDC_PAPER_LANDSCAPE, kPermitted, 2356, true},
    {kPaperTab, IDC_PAPER_FLIP, kPermitted, 2357, true},
    {kPaperTab, IDC_PAPER_VERT_BASE, kPermitted, 2358, true},
    {kPaperTab, IDC_PAPER_VERT_BASE_SPIN, kPermitted, 0, true},
    {kPaperTab, IDC_PAPER_HORZ_BASE, kPermitted, 2359, true},
    {kPaperTab, IDC_PAPER_HORZ_BASE_SPIN, kPermitted, 0, true},
    {kPaperTab, IDC_PAPER_PEEL_OFFSET, kNever, 2361, true},
    {kPaperTab, IDC_PAPER_PEEL_OFFSET_SPIN, kNever, 0, true},
    {kPaperTab, IDC_PAPER_TEAR_OFFSET, kPermitted, 2362, true},
    {kPaperTab, IDC_PAPER_TEAR_OFFSET_SPIN, kPermitted, 0, true},
    {kPaperTab, IDC_PAPER_PITCH_OFFSET, kPermitted, 2363, true},
    {kPaperTab, IDC_PAPER_PITCH_OFFSET_SPIN, kPermitted, 0, true},
    {kPaperTab, IDC_PAPER_PICTURE, kNever, 0, false},
    {kPaperTab, IDC_PAPER_FEED_PICTURE, kPicture, 0, false},
    {kPaperTab, IDC_PAPER_FEED_TEXT, kPicture, 0, false},
    {kPaperTab, IDC_PAPER_WHOLE_LABEL, kPermitted, 2382, false},
    {kPaperTab, IDC_PAPER_REGISTER, kOwner, 2364, false},
    {kPaperTab, IDC_PAPER_EDIT, kOwner, 2365, false},
    {kPaperTab, IDC_PAPER_DELETE, kOwner, 2366, false},
    {kPaperTab, IDC_PAPER_FREE_EDIT, kPermitted, 2367, false},
    {kPaperTab, IDC_PAPER_REFERENCE, kPermitted, 2369, false},
    {kPaperTab, IDC_PAPER_POSITION, kPermitted, 2112, true},

    {kOperationTab, IDC_OPERATION_COLOR_BLACK, kPermitted, 2332, true},
    {kOperationTab, IDC_OPERATION_COLOR_SHADED, kPermitted, 2333, true},
    {kOperationTab, IDC_OPERATION_COLOR_ADJUST, kPermitted, 2473, false},
    {kOperationTab, IDC_OPERATION_HALFTONE, kOwner, 2474, false},
    {kOperationTab, IDC_OPERATION_SPEED, kPermitted, 2340, true},
    {kOperationTab, IDC_OPERATION_SENSOR, kPermitted, 2341, true},
    {kOperationTab, IDC_OPERATION_SYNC_PRINT, kOwner, 2507, true},
    {kOperationTab, IDC_OPERATION_COMPULSORY, kOwner, 2105, true},

    {kDeviceTab, IDC_DEVICE_MODE, kPermitted, 2475, true},
    {kDeviceTab, IDC_DEVICE_DENSITY, kNever, 0, false},
    {kDeviceTab, IDC_DEVICE_QUERY_MODE, kPermitted, 2477, false},
    {kDeviceTab, IDC_DEVICE_QUERY_VERSION, kPermitted, 2478, false},

    {kFontTab, IDC_CREATE_FONT_DECO_LIST, kAlways, 2282, false},
    {kFontTab, IDC_CREATE_FONT_DECO_NEW, kOwner, 2283, false},
    {kFontTab, IDC_CREATE_FONT_DECO_EDIT, kOwner, 2284, false},
    {kFontTab, IDC_CREATE_FONT_DECO_DELETE, kOwner, 2285, false},
    {kFontTab, IDC_CREATE_FONT_DECO_REFERENCE, kPermitted, 2397, false},
    {kFontTab, IDC_CREATE_FONT_BAR_LIST, kAlways, 2286, false},
    {kFontTab, IDC_CREATE_FONT_BAR_NEW, kOwner, 2287, false},
    {kFontTab, IDC_CREATE_FONT_BAR_EDIT, kOwner, 2288, false},
    {kFontTab, IDC_CREATE_FONT_BAR_DELETE, kOwner, 2289, false},
    {kFontTab, IDC_CREATE_FONT_BAR_REFERENCE, kPermitted, 2396, false},

    {kUtilityTab, IDC_UTILITY_SAVE_NAME, kPermitted, 2263, false},
    {kUtilityTab, IDC_UTILITY_SAVE_BROWSE, kPermitted, 2267, false},
    {kUtilityTab, IDC_UTILITY_SAVE, kPermitted, 2265, false},
    {kUtilityTab, IDC_UTILITY_LOAD_NAME, kPermitted, 2264, false},
    {kUtilityTab, IDC_UTILITY_LOAD_BROWSE, kPermitted, 2268, false},
    {kUtilityTab, IDC_UTILITY_LOAD, kOwner, 2266, false},
};

const Control* Listed(int tab, int id) {
  const auto* row = std::ranges::find_if(
      kControls, [=](const Control& control) { return control.tab == tab && control.id == id; });
  return row == std::end(kControls) ? nullptr : row;
}

bool IsForUse(const ControlView& control) {
  return control.visible && control.kind != ControlKind::kStatic &&
         control.kind != ControlKind::kGroupBox;
}

// A person who uses one control of a page, declines whatever it opens, and looks at the page.
class OneUse : public platform::User {
 public:
  explicit OneUse(const Control& control) : control_(control) {}
  bool Act(Desk& desk) override {
    if (desk.ModalDepth() > 1) {
      Look(desk);
      return desk.Escape() || desk.Close();
    }
    switch (step_++) {
      case 0:
        return desk.Page(control_.tab);
      case 1:
        EXPECT_FALSE(desk.Windows().back().changed);
        return done = Use(desk);
      default:
        Look(desk);
        marked = desk.Windows().back().changed;
        return desk.Press(platform::SheetButton::kCancel);
    }
  }

  std::u16string help;  // what the help box said first from the control's use on
  bool marked = false;
  bool done = false;

 private:
  bool Use(Desk& desk) {
    const ControlView view = desk.Control(control_.id);
    switch (view.kind) {
      case ControlKind::kEdit:
        return desk.Replace(control_.id, u"7");
      case ControlKind::kComboBox:
      case ControlKind::kListBox:
        return desk.Select(control_.id, static_cast<int>(view.items.size()) - 1);
      case ControlKind::kUpDown:
        return desk.Spin(control_.id, 1);
      default:
        return desk.Click(control_.id);
    }
  }
  void Look(Desk& desk) {
    if (!help.empty()) return;
    const WindowView sheet = desk.Windows().front();
    for (const ControlView& control : sheet.page->controls) {
      if (control.id == IDC_HELP_TEXT) help = control.text;
    }
  }

  const Control& control_;
  int step_ = 0;
};

class Pages : public support::SheetTest {
 protected:
  void SetUp() override {
    SheetTest::SetUp();
    DriverSettingsBlock block = support::DefaultBlock();
    block.Printer.PaperNum = 2;
    block.Printer.Papers[1] = block.Printer.Papers[0];
    block.Printer.Papers[1].UserDef = 1;
    Keep(block);
    FontRecord fonts[4] = {};
    for (int i = 0; i < 4; ++i) {
      fonts[i].FontName[0] = static_cast<WCHAR>(u'A' + i);
      fonts[i].FontKind = i < 2 ? kDecorativeFont : kBarcodeFont;
    }
    const FontNumber number = {4, 0x0E01, 0};
    machine().SetData(support::kPrinter, u"CreateFont Number",
                      {REG_BINARY, support::BytesOf(number)});
    machine().SetData(support::kPrinter, u"CreateFont Data", {REG_BINARY, support::BytesOf(fonts)});
  }
  // A text of the string table up to what is filled in.
  std::u16string TextOf(UINT id) {
    WCHAR text[512] = {};
    LoadStringW(module_, id, text, 512);
    const std::u16string_view whole = text;
    return std::u16string(whole.substr(0, whole.find(u'%')));
  }
};

TEST_F(Pages, ControlsAreUsableByKindAndPermission) {
  const std::vector<std::u16string> kTitles = {u"バージョン情報",     u"用紙",
                                               u"動作モード",         u"デバイスの設定",
                                               u"クリエイトフォント", u"ユーティリティ"};
  for (const SheetKind kind :
       {SheetKind::kDocument, SheetKind::kAdvanced, SheetKind::kUserDefault}) {
    for (const bool permission : {true, false}) {
      // Pages are hosted in another way on Windows 2000.
      machine().SetOs({.major = permission ? 10u : 5u});
      size_t seen = 0;
      const auto look = [&](Desk& desk) {
        const WindowView sheet = desk.Windows().back();
        EXPECT_EQ(sheet.tabs, kTitles);
        for (const ControlView& control : sheet.page->controls) {
          if (!IsForUse(control)) continue;
          const Control* row = Listed(sheet.activeTab, control.id);
          ASSERT_NE(row, nullptr) << "control " << control.id << " of tab " << sheet.activeTab;
          const bool owner = permission && kind == SheetKind::kUserDefault;
          EXPECT_EQ(control.enabled, row->when == kAlways || row->when == kPicture ||
                                         (row->when == kPermitted && permission) ||
                                         (row->when == kOwner && owner))
              << control.id << " of tab " << row->tab << " permission " << permission;
          ++seen;
        }
      };
      support::Steps steps;
      for (int tab = 0; tab < 6; ++tab) {
        // An advanced session has no fonts to refer to.
        if (kind != SheetKind::kAdvanced || tab != kFontTab) {
          steps += {support::GoTo(tab), look};
        }
      }
      Show({.kind = kind, .permission = permission}, {steps, support::PressCancel()});
      if (kind == SheetKind::kUserDefault) {
        EXPECT_EQ(seen, std::size(kControls));
      }
    }
  }
}

TEST_F(Pages, ControlsDescribeThemselvesAndMarkTheSheet) {
  for (const Control& control : kControls) {
    if (control.when == kNever || control.when == kPicture) continue;
    SCOPED_TRACE("control " + std::to_string(control.id) + " of tab " +
                 std::to_string(control.tab));
    OneUse user(control);
    {
      const support::Seat seat(user);
      AskForSheet(exports_, {.kind = SheetKind::kUserDefault});
    }
    EXPECT_TRUE(user.done);
    EXPECT_EQ(user.marked, control.marks);
    if (control.help == 0) continue;
    const std::u16string expected = TextOf(control.help);
    EXPECT_EQ(expected.empty() ? user.help : user.help.substr(0, expected.size()), expected);
  }
}

}  // namespace
}  // namespace kestrel
