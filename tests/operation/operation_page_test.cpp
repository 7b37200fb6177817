// The operation page in sheets that a person uses.
#include <optional>
#include <string>

#include "operation/device_settings.h"
#include "operation/halftone_ui.h"
#include "paper/fields/option_table.h"
#include "resources/resource.h"
#include "tests/support/bin_dir.h"
#include "tests/support/open_sheet.h"

namespace kestrel {
namespace {

using namespace support;

constexpr char16_t kPrinters[] = u"SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\";
constexpr char16_t kKey[] =
    u"SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\Label Printer\\PrinterDriverData";

class OperationPageTest : public SheetTest {
 protected:
  PrivateDevMode Leave(Steps steps = {}) {
    return Ok(kOperationTab, std::move(steps)).record.Private;
  }
  std::optional<DWORD> SyncPrint() {
    const auto data = machine().Registry(kKey, u"SyncPrint");
    if (!data || data->type != REG_DWORD || data->bytes.size() != 4) return std::nullopt;
    return At<DWORD>(data->bytes.data(), 0);
  }
  void SetSyncPrint(DWORD value) {
    machine().SetRegistry(kKey, u"SyncPrint", {REG_DWORD, BytesOf(value)});
  }
};

Step SyncPrintShown(bool checked) { return ExpectChecked({IDC_OPERATION_SYNC_PRINT}, checked); }

TEST_F(OperationPageTest, ReadsAndWritesPageByPageConfirmation) {
  const struct {
    std::optional<DWORD> value;
    bool readable, writable, checked;
    std::optional<DWORD> after;
  } kCases[] = {
      {std::nullopt, true, true, false, 0},
      {0, true, true, false, 0},
      {5, true, true, true, 1},
      {0x10000, true, true, true, 1},
      {1, false, true, false, 1},  // the key cannot be opened for writing either
      {5, true, false, true, 5},
      {std::nullopt, true, false, false, std::nullopt},
  };
  DriverSettingsBlock block = DefaultBlock();
  block.Record.Private.nTSMode = 1;  // what the record holds does not count
  Keep(block);
  for (const auto& c : kCases) {
    SCOPED_TRACE(&c - kCases);
    machine().RemoveRegistryKey(kKey);
    if (c.value) SetSyncPrint(*c.value);
    machine().SetRegistryAccess(c.readable, c.writable);
    EXPECT_EQ(Leave(SyncPrintShown(c.checked)).nTSMode, c.checked ? 1 : 0);
    machine().SetRegistryAccess(true, true);
    EXPECT_EQ(SyncPrint(), c.after);
  }
  machine().SetRegistry(kKey, u"SyncPrint", {REG_SZ, BytesOf(u"1")});
  machine().SetRegistry(kKey, u"Other", {REG_DWORD, BytesOf(DWORD{7})});
  EXPECT_EQ(Leave(SyncPrintShown(false)).nTSMode, 0);
  EXPECT_TRUE(machine().Registry(kKey, u"Other"));
  // Written when the page is left, read when it is entered again.
  Leave({Click(IDC_OPERATION_SYNC_PRINT), GoTo(kVersionTab),
         [&](Desk&) {
           EXPECT_EQ(SyncPrint(), DWORD{1});
           SetSyncPrint(0);
         },
         GoTo(kOperationTab), SyncPrintShown(false)});
  EXPECT_EQ(SyncPrint(), DWORD{0});
}

// Its name holds what separates keys.
TEST_F(OperationPageTest, APrinterConnectionHasOneKey) {
  WriteSyncPrint(u"\\\\server\\printer", true);
  const auto all = machine().AllRegistry(kPrinters);
  ASSERT_EQ(all.size(), 1u);
  EXPECT_EQ(all.begin()->first,
            std::u16string(kPrinters) + u",,server,printer\\PrinterDriverData\\SyncPrint");
  EXPECT_EQ(ReadSyncPrint(u"\\\\server\\printer"), 1u);
  EXPECT_EQ(ReadSyncPrint(u"printer"), 0u);
}

TEST_F(OperationPageTest, ConfirmationIsForAdministratorsAndTheHalftoneForTheOwner) {
  const auto halftone = [](bool shown) {
    return [=](Desk& desk) {
      const RECT rect = desk.Control(IDC_OPERATION_HALFTONE).rect;
      EXPECT_EQ(rect.right > rect.left && rect.bottom > rect.top, shown);
    };
  };
  machine().SetAdministrator(false);
  Leave({ExpectEnabled({IDC_OPERATION_SYNC_PRINT}, false),
         ExpectEnabled({IDC_OPERATION_COMPULSORY}), halftone(true)});
  Show({}, {GoTo(kOperationTab), halftone(false), PressOk()});
}

TEST_F(OperationPageTest, StoresWhatItsAbsentControlsStandFor) {
  DriverSettingsBlock block = DefaultBlock();
  block.Record.Private.nMoveMode = kFollowPrinter;
  block.Record.Private.Dither = 0;
  for (uint16_t mode = 0; mode < 4; ++mode) {
    constexpr int16_t kMoveModes[] = {1, 0, 7, 1};
    block.Printer.Mecha = mode;
    Keep(block);
    const PrivateDevMode left = Leave();
    EXPECT_EQ(left.nMoveMode, kMoveModes[mode]);
    EXPECT_EQ(left.Dither, 3);
  }
  // A page that is never entered stores nothing.
  machine().RemoveRegistryKey(kKey);
  Keep(block);
  const PrivateDevMode kept = Ok(kVersionTab).record.Private;
  EXPECT_EQ(kept.nMoveMode, kFollowPrinter);
  EXPECT_EQ(kept.Dither, 0);
  EXPECT_EQ(SyncPrint(), std::nullopt);
}

TEST_F(OperationPageTest, ShowsAndStoresItsFields) {
  const struct {
    int16_t speed, sensor;
    int row;
  } kCases[] = {{1, 0, 0}, {2, 1, 1}, {255, 255, 2}, {99, -1, 0}};
  for (const auto& c : kCases) {
    for (int16_t on : {int16_t{0}, int16_t{1}}) {
      const auto expect = [&](const PrivateDevMode& left, int row, int switches) {
        EXPECT_EQ(left.nPrintSpeed, kCases[row].speed);
        EXPECT_EQ(left.nSensor, kCases[row].sensor);
        EXPECT_EQ(left.nColorText, switches);
        EXPECT_EQ(left.nCompulsory, switches);
      };
      DriverSettingsBlock block = DefaultBlock();
      block.Record.Private.nPrintSpeed = c.speed;
      block.Record.Private.nSensor = c.sensor;
      block.Record.Private.nColorText = block.Record.Private.nCompulsory = on;
      Keep(block);
      expect(Leave({ExpectSelected(IDC_OPERATION_SPEED, c.row),
                    ExpectSelected(IDC_OPERATION_SENSOR, c.row),
                    ExpectChecked({IDC_OPERATION_COLOR_SHADED, IDC_OPERATION_COMPULSORY}, on == 1),
                    ExpectChecked({IDC_OPERATION_COLOR_BLACK}, on == 0)}),
             c.row, on);
      const int other = (c.row + 1) % 3;
      expect(Leave({Select(IDC_OPERATION_SPEED, other), Select(IDC_OPERATION_SENSOR, other),
                    Click(on == 1 ? IDC_OPERATION_COLOR_BLACK : IDC_OPERATION_COLOR_SHADED),
                    Click(IDC_OPERATION_COMPULSORY)}),
             other, 1 - on);
    }
  }
}

// What the adjustment functions are handed.
struct Handed {
  COLORADJUSTMENT values;
  BOOL permission;
  DEVHTADJDATA data;
  DWORD defaultPattern;
  LONG answer;
} handed;

LONG WINAPI FakeColor(LPWSTR title, HANDLE picture, LPWSTR pictureTitle, COLORADJUSTMENT* values,
                      BOOL monochrome, BOOL permission) {
  EXPECT_EQ(std::u16string(title), kPrinter);
  EXPECT_EQ(picture, nullptr);
  EXPECT_EQ(pictureTitle, nullptr);
  EXPECT_TRUE(monochrome);
  handed.permission = permission;
  handed.values = *values;
  values->caContrast = 17;
  return handed.answer;
}
LONG WINAPI FakeDevice(LPWSTR title, DEVHTADJDATA* data) {
  EXPECT_EQ(std::u16string(title), kPrinter);
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
    bool permission = true;
  } kCases[] = {{203, 1, 203},  {305, 1, 305},        {300, 0, 203},
                {203, -3, 203}, {203, 1, 203, false}, {203, 2, 203}};
  for (const auto& c : kCases) {
    DriverSettingsBlock block = DefaultBlock();
    block.Printer.HeadDensity = c.density;
    DEVHTINFO own = DefaultHalftoneInfo();
    own.HTPatternSize = 5;
    std::memcpy(&block.Printer.HTInfo, &own, sizeof(own));
    block.Record.Private.ColorAdjust.caContrast = 3;
    block.Record.Private.ColorAdjust.caSize = 0;  // from a backup of another driver
    Keep(block);
    handed = {};
    handed.answer = c.answer;
    const bool taken = c.answer >= 1 && c.permission;
    if (c.permission) {
      for (int button : {IDC_OPERATION_COLOR_ADJUST, IDC_OPERATION_HALFTONE}) {
        Cancel(kOperationTab, {Click(button), ExpectChanged(taken)});
      }
      block.Record.Private =
          Leave({Click(IDC_OPERATION_COLOR_ADJUST), Click(IDC_OPERATION_HALFTONE)});
      block.Printer = KeptPrinterPart(machine());
    } else {
      EXPECT_EQ(AdjustHalftone(block, kPrinter, false), 1);
      EXPECT_EQ(AdjustColor(block, kPrinter, false), 1);
    }
    EXPECT_EQ(handed.permission != FALSE, c.permission);
    EXPECT_EQ(handed.values.caSize, sizeof(COLORADJUSTMENT));
    EXPECT_EQ(handed.data.DeviceFlags, 0u);
    EXPECT_EQ(handed.data.DeviceXDPI, c.dpi);
    EXPECT_EQ(handed.data.DeviceYDPI, c.dpi);
    EXPECT_EQ(handed.data.pAdjHTInfo != nullptr, c.permission);
    EXPECT_EQ(handed.defaultPattern, c.permission ? DefaultHalftoneInfo().HTPatternSize : 5u);
    EXPECT_EQ(block.Record.Private.ColorAdjust.caContrast, c.answer >= 1 ? 17 : 3);
    std::memcpy(&own, &block.Printer.HTInfo, sizeof(own));
    EXPECT_EQ(own.HTPatternSize, taken ? 6u : 5u);
  }
}

TEST_F(OperationPageTest, ToleratesAMissingHalftoneLibrary) {
  const auto adjust = [&](int failing) {
    return Steps{[=](Desk&) {
                   platform::Machine::Current().faults.FailNth(platform::Fault::kModule, failing);
                 },
                 Click(IDC_OPERATION_COLOR_ADJUST)};
  };
  int modules = 0;
  const auto none = [&](Desk& desk) {
    EXPECT_EQ(desk.ModalDepth(), 1);
    EXPECT_EQ(machine().OpenModules(), modules);
  };
  machine().RegisterModule(u"htui.dll", {});
  Leave({[&](Desk&) { modules = machine().OpenModules(); }, Click(IDC_OPERATION_COLOR_ADJUST), none,
         Click(IDC_OPERATION_HALFTONE), none, adjust(1), none});
  // A file of that name where programs look first is not taken for the system's.
  machine().UnregisterModule(u"htui.dll");
  machine().InstallModule(machine().driverDirectory() + u"\\3\\htui.dll", Built("QM610rBAR.so"));
  Leave({Click(IDC_OPERATION_COLOR_ADJUST), [](Desk& desk) { EXPECT_EQ(desk.ModalDepth(), 2); },
         Escape()});
}

}  // namespace
}  // namespace kestrel
