// The operation page and the device page, with replacements of the libraries that they call.
#include "driver/halftone_info.h"
#include "operation/device_settings.h"
#include "operation/halftone_ui.h"
#include "paper/fields/option_table.h"
#include "platform/machine/guard.h"
#include "resources/resource.h"
#include "tests/support/open_sheet.h"

namespace kestrel {
namespace {

using namespace support;

const std::u16string kPrinters = u"SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\";
const std::u16string kKey = kPrinters + u"Label Printer\\PrinterDriverData";

class OperationPage : public SheetTest {
 protected:
  PrivateDevMode Leave(Steps steps) { return Ok(kOperationTab, std::move(steps)).record.Private; }
  std::optional<DWORD> SyncPrint() {
    const auto data = machine().Registry(kKey, u"SyncPrint");
    if (!data || data->type != REG_DWORD) return std::nullopt;
    return At<DWORD>(data->bytes.data(), 0);
  }
  void SetSyncPrint(DWORD value) {
    machine().SetRegistry(kKey, u"SyncPrint", {REG_DWORD, BytesOf(value)});
  }
};

Step ExpectSyncPrint(bool checked) { return ExpectChecked({IDC_OPERATION_SYNC_PRINT}, checked); }

TEST_F(OperationPage, SyncPrintIsShownAndStoredAsTheRegistryAllows) {
  DriverSettingsBlock block = DefaultBlock();
  block.Record.Private.nTSMode = 1;  // the registry value takes precedence over the record
  StoreDefaults(block);
  EXPECT_EQ(Leave(ExpectSyncPrint(false)).nTSMode, 0);
  EXPECT_EQ(SyncPrint(), 0u) << "the key is created";
  SetSyncPrint(0x10000);
  EXPECT_EQ(Leave(ExpectSyncPrint(true)).nTSMode, 1);
  EXPECT_EQ(SyncPrint(), 1u);
  machine().SetRegistryAccess(false, true);
  EXPECT_EQ(Leave(ExpectSyncPrint(false)).nTSMode, 0);
  EXPECT_EQ(SyncPrint(), 1u) << "not readable, which writing needs too";
}

TEST_F(OperationPage, SyncPrintIsWrittenOnLeavingAndReadOnReturning) {
  machine().SetRegistry(kKey, u"SyncPrint", {REG_SZ, BytesOf(u"1")});
  const auto replaceValue = [&](Desk&) {
    EXPECT_EQ(SyncPrint(), 1u);
    SetSyncPrint(0);
  };
  Leave({ExpectSyncPrint(false), Click(IDC_OPERATION_SYNC_PRINT), GoTo(kVersionTab), replaceValue,
         GoTo(kOperationTab), ExpectSyncPrint(false)});
  machine().SetAdministrator(false);
  Cancel(kOperationTab, {ExpectEnabled({IDC_OPERATION_SYNC_PRINT}, false),
                         ExpectEnabled({IDC_OPERATION_COMPULSORY})});
}

// The spooler looks for local printers below "Printers".
TEST_F(OperationPage, KeyOfAConnectionIsWrittenButNotCreated) {
  constexpr char16_t kConnection[] = u"\\\\server\\printer";
  const std::u16string key = kPrinters + u",,server,printer\\PrinterDriverData";
  DeviceSettings(kConnection).SetSyncPrint(true);
  EXPECT_FALSE(machine().Registry(key, u"SyncPrint"));
  machine().SetRegistry(key, u"SyncPrint", {REG_DWORD, BytesOf(DWORD{0})});
  DeviceSettings(kConnection).SetSyncPrint(true);
  EXPECT_EQ(DeviceSettings(kConnection).SyncPrint(), 1u);
}

TEST_F(OperationPage, SelectedFieldsAreStored) {
  DriverSettingsBlock block = DefaultBlock();
  block.Record.Private.nPrintSpeed = 2;
  block.Record.Private.nSensor = 1;
  block.Record.Private.nColorText = 0;
  block.Record.Private.nCompulsory = 1;
  StoreDefaults(block);
  const PrivateDevMode left =
      Leave({ExpectSelected(IDC_OPERATION_SPEED, 1), ExpectSelected(IDC_OPERATION_SENSOR, 1),
             ExpectChecked({IDC_OPERATION_COLOR_BLACK, IDC_OPERATION_COMPULSORY}),
             ExpectChecked({IDC_OPERATION_COLOR_SHADED}, false), Select(IDC_OPERATION_SPEED, 0),
             Select(IDC_OPERATION_SENSOR, 2), Click(IDC_OPERATION_COLOR_SHADED),
             Click(IDC_OPERATION_COMPULSORY)});
  EXPECT_EQ(left.nPrintSpeed, 1);
  EXPECT_EQ(left.nSensor, kFollowPrinter);
  EXPECT_EQ(left.nColorText, 1);
  EXPECT_EQ(left.nCompulsory, 0);
  EXPECT_EQ(left.Dither, 3) << "the template has no radio buttons for it";
}

TEST_F(OperationPage, LeavingStoresTheFeedModeOfThePrinterMode) {
  constexpr std::pair<uint16_t, int16_t> kFeedModes[] = {
      {kTearOffMode, 1}, {kContinuousMode, 0}, {kPeelMode, 7}, {3, 1}};  // the last is unknown
  for (const auto& [printerMode, feedMode] : kFeedModes) {
    DriverSettingsBlock block = DefaultBlock();
    block.Printer.Mecha = printerMode;
    block.Record.Private.nMoveMode = kFollowPrinter;
    block.Record.Private.nSensor = block.Record.Private.nPrintSpeed = 99;  // unknown
    StoreDefaults(block);
    const PrivateDevMode left = Leave({});
    EXPECT_EQ(left.nMoveMode, feedMode);
    EXPECT_EQ(left.nPrintSpeed, 1);
    EXPECT_EQ(left.nSensor, 0);
  }
}

// What the replacements of the adjustment functions receive, and their result.
struct Adjustment {
  bool permission;
  DWORD defaultPattern, ownPattern;
};
Adjustment received;
LONG adjustmentResult;

LONG WINAPI FakeColor(LPWSTR title, HANDLE picture, LPWSTR pictureTitle, COLORADJUSTMENT* values,
                      BOOL monochrome, BOOL permission) {
  EXPECT_EQ(title, std::u16string(kPrinter));
  EXPECT_TRUE(!picture && !pictureTitle && monochrome);
  EXPECT_EQ(values->caSize, sizeof *values);
  EXPECT_EQ(std::exchange(values->caContrast, SHORT{17}), 3);
  received.permission = permission != FALSE;
  return adjustmentResult;
}
LONG WINAPI FakeDevice(LPWSTR title, DEVHTADJDATA* data) {
  EXPECT_EQ(title, std::u16string(kPrinter));
  EXPECT_EQ(data->DeviceXDPI, 203u);
  received.defaultPattern = data->pDefHTInfo->HTPatternSize;
  DEVHTINFO* own = data->pAdjHTInfo;
  received.ownPattern = own != nullptr ? std::exchange(own->HTPatternSize, 6) : 0;
  return adjustmentResult;
}

TEST_F(OperationPage, AdjustmentDialogsReceiveAndReturnTheSettings) {
  machine().RegisterModule(u"htui.dll",
                           {{"HTUI_ColorAdjustmentW", platform::AsEntryPoint(FakeColor)},
                            {"HTUI_DeviceColorAdjustmentW", platform::AsEntryPoint(FakeDevice)}});
  DriverSettingsBlock block = DefaultBlock();
  DEVHTINFO own = HalftoneInfo(block);
  const DWORD factory = std::exchange(own.HTPatternSize, 5);
  SetHalftoneInfo(block, own);
  block.Record.Private.ColorAdjust.caContrast = 3;
  block.Record.Private.ColorAdjust.caSize = 0;  // from a backup of another driver
  struct Case {
    LONG result = 1;
    bool permission = true;
    int contrast = 17;  // afterwards
    WORD pattern = 6;
  };
  constexpr Case kCases[] = {
      {}, {.result = 0, .contrast = 3, .pattern = 5}, {.permission = false, .pattern = 5}};
  for (const Case& row : kCases) {
    SCOPED_TRACE(&row - kCases);
    DriverSettingsBlock settings = block;
    adjustmentResult = row.result;
    EXPECT_EQ(AdjustColor(settings, kPrinter, row.permission), row.result);
    EXPECT_EQ(AdjustHalftone(settings, kPrinter, row.permission), row.result);
    EXPECT_EQ(received.permission, row.permission);
    // Without permission the dialog shows the printer's own values as the defaults.
    EXPECT_EQ(received.defaultPattern, row.permission ? factory : 5u);
    EXPECT_EQ(received.ownPattern, row.permission ? 5u : 0u);
    EXPECT_EQ(settings.Record.Private.ColorAdjust.caContrast, row.contrast);
    EXPECT_EQ(HalftoneInfo(settings).HTPatternSize, row.pattern);
  }
  StoreDefaults(block);
  Leave({Click(IDC_OPERATION_COLOR_ADJUST), ExpectChanged(true)});
  Leave({Click(IDC_OPERATION_HALFTONE), ExpectChanged(true)});
}

TEST_F(OperationPage, MissingAdjustmentLibraryShowsNoMessage) {
  machine().RegisterModule(u"htui.dll", {});
  Leave({Click(IDC_OPERATION_COLOR_ADJUST), Click(IDC_OPERATION_HALFTONE), ExpectChanged(false)});
  // A file of the same name in the driver's directory is not loaded.
  machine().UnregisterModule(u"htui.dll");
  machine().InstallModule(machine().driverDirectory() + u"\\3\\htui.dll", Built("QM610rBAR.so"));
  Leave({Click(IDC_OPERATION_COLOR_ADJUST), [](Desk& desk) { EXPECT_EQ(desk.ModalDepth(), 2); },
         Escape()});
}

constexpr char16_t kLibrary[] = u"QM610rLIB.DLL";

// The reply of the replaced device library, and its result.
std::string reply;
DWORD queryResult;

template <BYTE kFilling, DWORD kSize>
DWORD WINAPI FakeQuery(LPCWSTR name, BYTE* out, DWORD outSize, DWORD* size, DWORD* status) {
  EXPECT_EQ(name, std::u16string(kPrinter));
  EXPECT_TRUE(outSize == kSize && *size == kSize && *status == 0);
  EXPECT_EQ(std::string(out, out + outSize), std::string(outSize, char(kFilling)));
  reply.copy(reinterpret_cast<char*>(out), outSize);
  return queryResult;
}

class DevicePage : public SheetTest {
 protected:
  DevicePage() {
    queryResult = 1;
    machine().RegisterModule(kLibrary,
                             {{"RtlGetModeComW", platform::AsEntryPoint(&FakeQuery<0xFF, 30>)},
                              {"RtlGetVersionComW", platform::AsEntryPoint(&FakeQuery<0, 50>)}});
  }
  void StorePrinter(uint16_t mode, uint16_t density = 203) {
    DriverSettingsBlock block = DefaultBlock();
    block.Printer.Mecha = mode;
    block.Printer.HeadDensity = density;
    StoreDefaults(block);
  }
};

TEST_F(DevicePage, EscInTheOpenModeListRestoresTheMode) {
  const auto closeWith = [&](const Step& key) {
    StorePrinter(9);  // unknown, shown as the first
    Ok(kDeviceTab, {MoveInOpenList(IDC_DEVICE_MODE, 1), key});
    return StoredPrinterPart(machine()).Mecha;
  };
  EXPECT_EQ(closeWith(Escape()), 9);
  EXPECT_EQ(closeWith(Enter()), kContinuousMode);
}

TEST_F(DevicePage, ModeQueryChangesKnownValuesAndWarns) {
  struct Printer {
    uint16_t mode, density;
  };
  const struct {
    Printer before;
    BYTE modeCode, densityCode;  // of the reply; 0xFF: not filled in
    Printer after;
  } rows[] = {
      {{kContinuousMode, 203}, 0xFF, 0xFF, {kContinuousMode, 203}},
      {{kTearOffMode, 305}, 3, 1, {kTearOffMode, 305}},  // unknown codes
      {{kPeelMode, 203}, 0, 0xFF, {kTearOffMode, 203}},
      {{kTearOffMode, 305}, 1, 0, {kContinuousMode, 203}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    StorePrinter(row.before.mode, row.before.density);
    reply = std::string(30, '\2');
    reply[1] = static_cast<char>(row.densityCode);
    reply[3] = static_cast<char>(row.modeCode);
    Steps warnings;
    if (row.after.density != row.before.density) warnings += Click(IDOK);
    if (row.after.mode != row.before.mode) warnings += Click(IDOK);
    Ok(kDeviceTab, {Click(IDC_DEVICE_QUERY_MODE), warnings, ExpectChanged(true),
                    ExpectSelected(IDC_DEVICE_MODE, row.after.mode),
                    ExpectText(IDC_DEVICE_DENSITY, u"203dpi(  8本/mm)")});
    EXPECT_EQ(StoredPrinterPart(machine()).Mecha, row.after.mode);
    EXPECT_EQ(StoredPrinterPart(machine()).HeadDensity, row.after.density);
  }
}

TEST_F(DevicePage, VersionQueryShowsTextsUpToTheirEnd) {
  reply = std::string("0123456789ABCDEF\x83\x5C\0X", 20);  // sixteen bytes of firmware
  Ok(kDeviceTab,
     {Click(IDC_DEVICE_QUERY_VERSION), ExpectText(IDC_DEVICE_FIRMWARE_VERSION, u"0123456789ABCDEF"),
      ExpectText(IDC_DEVICE_FONT_VERSION, u"ソ"), ExpectChanged(false)});
}

TEST_F(DevicePage, FailedQueryChangesNothing) {
  // A call that fails may still have written its reply.
  reply = std::string("V\0\0\2", 4) + "000000000000F1";
  queryResult = 0;
  StorePrinter(kContinuousMode, 305);
  const Step failed = Click(IDOK);  // of the message
  const auto expectFailure = [&](Steps libraryError) {
    Ok(kDeviceTab,
       {Click(IDC_DEVICE_QUERY_MODE), libraryError, failed, Click(IDC_DEVICE_QUERY_VERSION), failed,
        ExpectText(IDC_DEVICE_FIRMWARE_VERSION, u""), ExpectText(IDC_DEVICE_FONT_VERSION, u""),
        ExpectChanged(false)});
    EXPECT_EQ(StoredPrinterPart(machine()).Mecha, kContinuousMode);
    EXPECT_EQ(StoredPrinterPart(machine()).HeadDensity, 305);
  };
  expectFailure({});
  machine().UnregisterModule(kLibrary);
  expectFailure(CloseMessage(u"LoadLibrary Error!", MB_OK, u"DeviceDlgFunc"));
}

}  // namespace
}  // namespace kestrel
