// The operation page in sheets that a person uses.
#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>

#include "operation/halftone_ui.h"
#include "paper/fields/option_table.h"
#include "platform/desktop/libraries/htui_dialog.h"
#include "resources/resource.h"
#include "tests/support/open_sheet.h"
#include "tests/support/settings.h"

namespace kestrel {
namespace {

using platform::Desk;
using support::Click;
using support::DefaultBlock;
using support::GoTo;
using support::kOperationTab;
using support::kPrinter;
using support::kVersionTab;
using support::PressOk;
using support::Select;
using support::SheetAnswer;
using support::SheetKind;
using support::Steps;
using support::StoreBlock;

constexpr char16_t kKey[] =
    u"SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\Label Printer\\PrinterDriverData";

class OperationPageTest : public support::MachineTest {
 protected:
  SheetAnswer Show(SheetKind kind, Steps steps, bool permission = true) {
    return support::ShowSheet(exports_, {.kind = kind, .permission = permission}, std::move(steps));
  }
  // Opens the page, does what is asked and presses OK.
  PrivateDevMode Leave(Steps steps, SheetKind kind = SheetKind::kUserDefault) {
    steps.insert(steps.begin(), GoTo(kOperationTab));
    steps.push_back(PressOk());
    return Show(kind, std::move(steps)).record.Private;
  }
  std::optional<DWORD> SyncPrint() {
    const auto data = machine().Registry(kKey, u"SyncPrint");
    if (!data || data->type != REG_DWORD || data->bytes.size() != 4) return std::nullopt;
    DWORD value;
    std::memcpy(&value, data->bytes.data(), 4);
    return value;
  }
  void SetSyncPrint(DWORD value) {
    machine().SetRegistry(kKey, u"SyncPrint", {REG_DWORD, support::BytesOf(value)});
  }
};

TEST_F(OperationPageTest, ReadsAndWritesPageByPageConfirmation) {
  const struct {
    const char* what;
    std::optional<DWORD> value;
    bool readable, writable;
    bool checked;
    std::optional<DWORD> after;
  } kCases[] = {
      {"absent", std::nullopt, true, true, false, 0},
      {"0", 0, true, true, false, 0},
      {"1", 1, true, true, true, 1},
      {"5", 5, true, true, true, 1},
      {"only its upper half set", 0x10000, true, true, true, 1},
      {"unreadable", 1, false, true, false, 1},  // the key cannot be opened for writing either
      {"unwritable", 5, true, false, true, 5},
      {"unwritable and absent", std::nullopt, true, false, false, std::nullopt},
  };
  DriverSettingsBlock block = DefaultBlock();
  block.Record.Private.nTSMode = 1;  // what the record holds does not count
  StoreBlock(machine(), block);
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    machine().SetRegistryAccess(true, true);
    machine().RemoveRegistry(kKey, u"SyncPrint");
    if (c.value) SetSyncPrint(*c.value);
    machine().SetRegistryAccess(c.readable, c.writable);
    const PrivateDevMode left = Leave({[&](Desk& desk) {
      EXPECT_EQ(desk.Control(IDC_OPERATION_SYNC_PRINT).checked, c.checked);
    }});
    EXPECT_EQ(left.nTSMode, c.checked ? 1 : 0);
    machine().SetRegistryAccess(true, true);
    EXPECT_EQ(SyncPrint(), c.after);
  }
}

TEST_F(OperationPageTest, IgnoresAConfirmationOfAnotherType) {
  machine().SetRegistry(kKey, u"SyncPrint", {REG_SZ, support::BytesOf(u"1")});
  machine().SetRegistry(kKey, u"Other", {REG_DWORD, support::BytesOf(DWORD{7})});
  const PrivateDevMode left =
      Leave({[&](Desk& desk) { EXPECT_FALSE(desk.Control(IDC_OPERATION_SYNC_PRINT).checked); }});
  EXPECT_EQ(left.nTSMode, 0);
  EXPECT_EQ(SyncPrint(), DWORD{0});
  EXPECT_TRUE(machine().Registry(kKey, u"Other"));
}

TEST_F(OperationPageTest, SeesAConfirmationChangedElsewhereWhenEnteredAgain) {
  const auto expect = [](bool checked) {
    return [=](Desk& desk) { EXPECT_EQ(desk.Control(IDC_OPERATION_SYNC_PRINT).checked, checked); };
  };
  Leave({expect(false), Click(IDC_OPERATION_SYNC_PRINT), GoTo(kVersionTab),
         [&](Desk&) {
           EXPECT_EQ(SyncPrint(), DWORD{1});  // written when the page is left
           SetSyncPrint(0);
         },
         GoTo(kOperationTab), expect(false)});
  EXPECT_EQ(SyncPrint(), DWORD{0});
}

TEST_F(OperationPageTest, LocksByKindRightsAndPermission) {
  for (SheetKind kind : {SheetKind::kDocument, SheetKind::kAdvanced, SheetKind::kUserDefault}) {
    for (int rights = 0; rights < 4; ++rights) {
      const bool administrator = (rights & 1) != 0;
      const bool permission = (rights & 2) != 0;
      SCOPED_TRACE(testing::Message() << "kind " << static_cast<int>(kind) << ", administrator "
                                      << administrator << ", permission " << permission);
      machine().SetAdministrator(administrator);
      const bool userDefault = kind == SheetKind::kUserDefault;
      const std::map<int, bool> expected = {
          {IDC_OPERATION_SYNC_PRINT, userDefault && administrator && permission},
          {IDC_OPERATION_COMPULSORY, userDefault && permission},
          {IDC_OPERATION_HALFTONE, userDefault && permission},
          {IDC_OPERATION_COLOR_ADJUST, permission},
          {IDC_OPERATION_COLOR_BLACK, permission},
          {IDC_OPERATION_COLOR_SHADED, permission},
          {IDC_OPERATION_SPEED, permission},
          {IDC_OPERATION_SENSOR, permission},
      };
      const auto check = [&](Desk& desk) {
        for (const auto& [id, enabled] : expected) {
          EXPECT_EQ(desk.Control(id).enabled, enabled) << id;
        }
        const RECT halftone = desk.Control(IDC_OPERATION_HALFTONE).rect;
        EXPECT_EQ(halftone.right > halftone.left && halftone.bottom > halftone.top, userDefault);
      };
      // Entering it a second time changes nothing.
      Show(kind,
           {GoTo(kOperationTab), check, GoTo(kVersionTab), GoTo(kOperationTab), check, PressOk()},
           permission);
    }
  }
}

TEST_F(OperationPageTest, StoresWhatItsAbsentControlsStandFor) {
  const int16_t moveModes[] = {1, 0, 7};
  for (uint16_t mode = 0; mode < 3; ++mode) {
    DriverSettingsBlock block = DefaultBlock();
    block.Printer.Mecha = mode;
    block.Record.Private.nMoveMode = kFollowPrinter;
    block.Record.Private.Dither = 0;
    StoreBlock(machine(), block);
    const PrivateDevMode left = Leave({});
    EXPECT_EQ(left.nMoveMode, moveModes[mode]);
    EXPECT_EQ(left.Dither, 3);
  }
  // A page that is never entered stores nothing.
  DriverSettingsBlock block = DefaultBlock();
  block.Record.Private.nMoveMode = kFollowPrinter;
  StoreBlock(machine(), block);
  machine().RemoveRegistry(kKey, u"SyncPrint");
  const PrivateDevMode kept = Show(SheetKind::kUserDefault, {PressOk()}).record.Private;
  EXPECT_EQ(kept.nMoveMode, kFollowPrinter);
  EXPECT_EQ(kept.Dither, 2);
  EXPECT_EQ(SyncPrint(), std::nullopt);
}

TEST_F(OperationPageTest, ShowsAndStoresItsFields) {
  const struct {
    int16_t speed, sensor;
    int speedRow, sensorRow;
  } kCases[] = {{1, 0, 0, 0}, {2, 1, 1, 1}, {255, 255, 2, 2}, {99, -1, 0, 0}};
  const int16_t speeds[] = {1, 2, 255};
  const int16_t sensors[] = {0, 1, 255};
  for (const auto& c : kCases) {
    for (int16_t on : {int16_t{0}, int16_t{1}}) {
      const bool isOn = on != 0;
      DriverSettingsBlock block = DefaultBlock();
      block.Record.Private.nPrintSpeed = c.speed;
      block.Record.Private.nSensor = c.sensor;
      block.Record.Private.nColorText = on;
      block.Record.Private.nCompulsory = on;
      StoreBlock(machine(), block);
      const auto check = [&](Desk& desk) {
        EXPECT_EQ(desk.Control(IDC_OPERATION_SPEED).selection, c.speedRow);
        EXPECT_EQ(desk.Control(IDC_OPERATION_SENSOR).selection, c.sensorRow);
        EXPECT_EQ(desk.Control(IDC_OPERATION_COLOR_SHADED).checked, isOn);
        EXPECT_EQ(desk.Control(IDC_OPERATION_COLOR_BLACK).checked, !isOn);
        EXPECT_EQ(desk.Control(IDC_OPERATION_COMPULSORY).checked, isOn);
      };
      PrivateDevMode left = Leave({check});
      EXPECT_EQ(left.nPrintSpeed, speeds[c.speedRow]);
      EXPECT_EQ(left.nSensor, sensors[c.sensorRow]);
      EXPECT_EQ(left.nColorText, on);
      EXPECT_EQ(left.nCompulsory, on);

      const int newRow = (c.speedRow + 1) % 3;
      left = Leave({Select(IDC_OPERATION_SPEED, newRow), Select(IDC_OPERATION_SENSOR, newRow),
                    Click(isOn ? IDC_OPERATION_COLOR_BLACK : IDC_OPERATION_COLOR_SHADED),
                    Click(IDC_OPERATION_COMPULSORY)});
      EXPECT_EQ(left.nPrintSpeed, speeds[newRow]);
      EXPECT_EQ(left.nSensor, sensors[newRow]);
      EXPECT_EQ(left.nColorText, 1 - on);
      EXPECT_EQ(left.nCompulsory, 1 - on);
    }
  }
}

TEST_F(OperationPageTest, DescribesTheControlInUse) {
  const auto help = [](std::u16string text) { return support::ExpectText(IDC_HELP_TEXT, text); };
  const auto helpOf = [&](UINT id) {
    WCHAR text[256];
    LoadStringW(module_, id, text, 256);
    return help(text);
  };
  const auto escape = [](Desk& desk) { EXPECT_TRUE(desk.Escape()); };
  const auto first = help(u"ここにマウスカーソル位置についての説明が表示されます。");
  Leave({first, Click(IDC_OPERATION_COLOR_BLACK), helpOf(IDS_HELP_OPERATION_COLOR_BLACK),
         Click(IDC_OPERATION_COLOR_SHADED), helpOf(IDS_HELP_OPERATION_COLOR_SHADED),
         support::Focus(IDC_OPERATION_SPEED), helpOf(IDS_HELP_OPERATION_SPEED),
         support::Focus(IDC_OPERATION_SENSOR), helpOf(IDS_HELP_OPERATION_SENSOR),
         Click(IDC_OPERATION_SYNC_PRINT), helpOf(IDS_HELP_OPERATION_SYNC_PRINT),
         Click(IDC_OPERATION_COMPULSORY), helpOf(IDS_HELP_OPERATION_COMPULSORY),
         // The two adjustment buttons have no text of their own.
         Click(IDC_OPERATION_COLOR_ADJUST), escape, help(u""), Click(IDC_OPERATION_SYNC_PRINT),
         Click(IDC_OPERATION_HALFTONE), escape, help(u""), GoTo(kVersionTab), GoTo(kOperationTab),
         first});
}

TEST_F(OperationPageTest, ToleratesAMissingHalftoneLibrary) {
  machine().RegisterModule(u"htui.dll", {});
  int modules = 0;
  const PrivateDevMode left =
      Leave({[&](Desk&) { modules = machine().OpenModules(); }, Click(IDC_OPERATION_COLOR_ADJUST),
             Click(IDC_OPERATION_HALFTONE),
             [&](Desk& desk) {
               EXPECT_EQ(desk.ModalDepth(), 1);
               machine().faults.FailNth(platform::Fault::kModule, 1);
             },
             Click(IDC_OPERATION_COLOR_ADJUST),
             [&](Desk&) {
               EXPECT_TRUE(machine().faults.Struck(platform::Fault::kModule));
               EXPECT_EQ(machine().OpenModules(), modules);
             }});
  const COLORADJUSTMENT fresh = DefaultBlock().Record.Private.ColorAdjust;
  EXPECT_EQ(std::memcmp(&left.ColorAdjust, &fresh, sizeof(fresh)), 0);
}

TEST_F(OperationPageTest, MarksTheSheetChanged) {
  const auto slide = [](Desk& desk) {
    EXPECT_TRUE(desk.Slide(platform::halftone::kFirstSlider, 5));
  };
  const struct {
    const char* what;
    Steps steps;
    bool changed;
  } kCases[] = {
      {"entered", {}, false},
      {"focused", {support::Focus(IDC_OPERATION_SPEED)}, false},
      {"speed", {Select(IDC_OPERATION_SPEED, 1)}, true},
      {"sensor", {Select(IDC_OPERATION_SENSOR, 1)}, true},
      {"black", {Click(IDC_OPERATION_COLOR_BLACK)}, true},
      {"shaded", {Click(IDC_OPERATION_COLOR_SHADED)}, true},
      {"confirmation", {Click(IDC_OPERATION_SYNC_PRINT)}, true},
      {"precedence", {Click(IDC_OPERATION_COMPULSORY)}, true},
      {"adjusted", {Click(IDC_OPERATION_COLOR_ADJUST), slide, Click(IDOK)}, true},
      {"adjustment cancelled", {Click(IDC_OPERATION_COLOR_ADJUST), slide, Click(IDCANCEL)}, false},
      {"halftone cancelled", {Click(IDC_OPERATION_HALFTONE), Click(IDCANCEL)}, false},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    Steps steps = c.steps;
    steps.push_back(support::ExpectChanged(c.changed));
    Leave(std::move(steps));
  }
  // Sheets before Windows 2000 are not told.
  machine().SetOs({.major = 4});
  Leave({Select(IDC_OPERATION_SPEED, 1), support::ExpectChanged(false)});
}

// What the adjustment functions are handed.
struct Handed {
  std::u16string title;
  BOOL monochrome, permission;
  DEVHTADJDATA data;
  DWORD defaultPattern;
  LONG answer;
} handed;

LONG WINAPI FakeColor(LPWSTR title, HANDLE picture, LPWSTR pictureTitle, COLORADJUSTMENT* values,
                      BOOL monochrome, BOOL permission) {
  EXPECT_EQ(picture, nullptr);
  EXPECT_EQ(pictureTitle, nullptr);
  handed.title = title;
  handed.monochrome = monochrome;
  handed.permission = permission;
  values->caContrast = 17;
  return handed.answer;
}

LONG WINAPI FakeDevice(LPWSTR title, DEVHTADJDATA* data) {
  handed.title = title;
  handed.data = *data;
  handed.defaultPattern = data->pDefHTInfo->HTPatternSize;
  if (data->pAdjHTInfo != nullptr) data->pAdjHTInfo->HTPatternSize = 6;
  return handed.answer;
}

template <typename Proc>
FARPROC AnyEntry(Proc* proc) {
  return reinterpret_cast<FARPROC>(reinterpret_cast<void (*)()>(proc));
}

TEST_F(OperationPageTest, HandsTheAdjustmentsWhatTheyNeed) {
  machine().RegisterModule(u"htui.dll", {{"HTUI_ColorAdjustmentW", AnyEntry(FakeColor)},
                                         {"HTUI_DeviceColorAdjustmentW", AnyEntry(FakeDevice)}});
  const struct {
    uint16_t density;
    LONG answer;
    DWORD dpi;
  } kCases[] = {{203, 1, 203}, {305, 1, 305}, {300, 0, 203}, {203, -3, 203}};
  for (const auto& c : kCases) {
    DriverSettingsBlock block = DefaultBlock();
    block.Printer.HeadDensity = c.density;
    DEVHTINFO own = DefaultHalftoneInfo();
    own.HTPatternSize = 5;
    std::memcpy(&block.Printer.HTInfo, &own, sizeof(own));
    block.Record.Private.ColorAdjust.caContrast = 3;
    StoreBlock(machine(), block);
    handed = {};
    handed.answer = c.answer;
    const PrivateDevMode left =
        Leave({Click(IDC_OPERATION_COLOR_ADJUST), Click(IDC_OPERATION_HALFTONE)});
    EXPECT_EQ(handed.title, kPrinter);
    EXPECT_TRUE(handed.monochrome);
    EXPECT_TRUE(handed.permission);
    EXPECT_EQ(handed.data.DeviceFlags, 0u);
    EXPECT_EQ(handed.data.DeviceXDPI, c.dpi);
    EXPECT_EQ(handed.data.DeviceYDPI, c.dpi);
    EXPECT_NE(handed.data.pAdjHTInfo, nullptr);
    EXPECT_EQ(handed.defaultPattern, DefaultHalftoneInfo().HTPatternSize);
    EXPECT_EQ(left.ColorAdjust.caContrast, c.answer >= 1 ? 17 : 3);
    DEVHTINFO kept;
    const PrinterSettingsPart part = support::KeptPrinterPart(machine());
    std::memcpy(&kept, &part.HTInfo, sizeof(kept));
    EXPECT_EQ(kept.HTPatternSize, c.answer >= 1 ? 6u : 5u);
  }
}

TEST_F(OperationPageTest, OnlyShowsTheHalftoneWithoutPermission) {
  machine().RegisterModule(u"htui.dll", {{"HTUI_ColorAdjustmentW", AnyEntry(FakeColor)},
                                         {"HTUI_DeviceColorAdjustmentW", AnyEntry(FakeDevice)}});
  DriverSettingsBlock block = DefaultBlock();
  DEVHTINFO own = DefaultHalftoneInfo();
  own.HTPatternSize = 5;
  std::memcpy(&block.Printer.HTInfo, &own, sizeof(own));
  const DriverSettingsBlock before = block;
  handed = {};
  handed.answer = 1;
  EXPECT_EQ(AdjustHalftone(block, kPrinter, false), 1);
  EXPECT_EQ(handed.data.pAdjHTInfo, nullptr);
  EXPECT_EQ(handed.defaultPattern, 5u);
  EXPECT_EQ(std::memcmp(&block, &before, sizeof(block)), 0);
  AdjustColor(block, kPrinter, false);
  EXPECT_FALSE(handed.permission);
}

}  // namespace
}  // namespace kestrel
