// The operation page and the device page, with replacements of the libraries that they call.
#include <sstream>

#include "driver/default_settings.h"
#include "driver/halftone_info.h"
#include "operation/device_settings.h"
#include "operation/halftone_ui.h"
#include "paper/fields/help_text.h"
#include "paper/fields/option_table.h"
#include "platform/machine/guard.h"
#include "platform/machine/text.h"
#include "resources/resource.h"
#include "tests/support/open_sheet.h"

namespace kestrel {
namespace {

using namespace support;

const std::u16string kPrinters = u"SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\";
const std::u16string kKey = kPrinters + u"Label Printer\\PrinterDriverData";

constexpr DWORD kAbsent = 0xFFFFFFFF;

class OperationPage : public SheetTest {
 protected:
  PrivateDevMode Leave(Steps steps) { return Ok(kOperationTab, std::move(steps)).record.Private; }
  DWORD SyncPrint() {
    const auto data = machine().Registry(kKey, u"SyncPrint");
    return data && data->type == REG_DWORD ? At<DWORD>(data->bytes.data(), 0) : kAbsent;
  }
  void SetSyncPrint(DWORD value) {
    machine().SetRegistry(kKey, u"SyncPrint", {REG_DWORD, BytesOf(value)});
  }
};

Step SyncPrintShown(bool checked) { return ExpectChecked({IDC_OPERATION_SYNC_PRINT}, checked); }

TEST_F(OperationPage, PageByPageConfirmationIsStoredInTheRegistry) {
  constexpr DWORD kCases[][5] = {
      // stored value, key readable, key writable, shown as checked, value afterwards
      {kAbsent, 1, 1, 0, 0},       {5, 1, 1, 1, 1}, {0x10000, 1, 1, 1, 1}, {5, 1, 0, 1, 5},
      {kAbsent, 1, 0, 0, kAbsent}, {1, 0, 1, 0, 1},  // cannot be opened for writing either
  };
  DriverSettingsBlock block = DefaultBlock();
  block.Record.Private.nTSMode = 1;  // the registry value takes precedence over the record
  StoreDefaults(block);
  for (const auto& [value, readable, writable, checked, after] : kCases) {
    SCOPED_TRACE(value);
    machine().RemoveRegistryKey(kKey);
    if (value != kAbsent) SetSyncPrint(value);
    machine().SetRegistryAccess(readable, writable);
    EXPECT_EQ(Leave(SyncPrintShown(checked)).nTSMode, static_cast<int16_t>(checked));
    machine().SetRegistryAccess(true, true);
    EXPECT_EQ(SyncPrint(), after);
  }
  machine().SetRegistry(kKey, u"SyncPrint", {REG_SZ, BytesOf(u"1")});
  machine().SetRegistry(kKey, u"Other", {REG_DWORD, BytesOf(DWORD{7})});
  // Written when the page is left, read when it is entered again.
  const auto written = [&](Desk&) {
    EXPECT_EQ(SyncPrint(), 1u);
    SetSyncPrint(0);
  };
  Leave(
      {SyncPrintShown(false), Click(IDC_OPERATION_SYNC_PRINT), GoTo(kVersionTab), written,
       GoTo(kOperationTab), SyncPrintShown(false), ExpectText(IDC_HELP_TEXT, kFirstHelpPosition),
       ExpectItems(IDC_OPERATION_SENSOR, {u"反射センサタイプ：アイマーク",
                                          u"透過センサタイプ：ギャップ", u"プリンタ設定に従う"})});
  EXPECT_EQ(SyncPrint(), 0u);
  EXPECT_TRUE(machine().Registry(kKey, u"Other"));
  machine().SetAdministrator(false);
  Leave({ExpectEnabled({IDC_OPERATION_SYNC_PRINT}, false),
         ExpectEnabled({IDC_OPERATION_COMPULSORY})});
}

// The spooler looks for local printers below "Printers".
TEST_F(OperationPage, KeyOfAConnectionIsWrittenButNotCreated) {
  constexpr char16_t kConnection[] = u"\\\\server\\printer";
  const std::u16string key = kPrinters + u",,server,printer\\PrinterDriverData";
  DeviceSettings(kConnection).SetSyncPrint(true);
  HKEY opened = nullptr;
  EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, key.c_str(), 0, KEY_READ, &opened),
            LSTATUS{ERROR_FILE_NOT_FOUND});
  machine().SetRegistry(key, u"SyncPrint", {REG_DWORD, BytesOf(DWORD{0})});
  DeviceSettings(kConnection).SetSyncPrint(true);
  EXPECT_EQ(DeviceSettings(kConnection).SyncPrint(), 1u);
}

TEST_F(OperationPage, ShowsAndStoresItsFields) {
  constexpr int16_t kSpeeds[] = {1, 2, 255, 99}, kSensors[] = {0, 1, 255, -1};  // the last unknown
  constexpr int16_t kMoveModes[] = {1, 0, 7, 1};                                // of a printer mode
  DriverSettingsBlock block = DefaultBlock();
  PrivateDevMode& settings = block.Record.Private;
  for (int16_t row = 0; row < 4; ++row) {
    const int shown = row % 3, other = (row + 1) % 3;
    const bool on = row % 2 == 1;
    block.Printer.Mecha = static_cast<uint16_t>(row);
    settings.nPrintSpeed = kSpeeds[row];
    settings.nSensor = kSensors[row];
    settings.nColorText = settings.nCompulsory = on;
    settings.nMoveMode = kFollowPrinter;
    settings.Dither = 0;
    StoreDefaults(block);
    settings.nPrintSpeed = kSpeeds[other];
    settings.nSensor = kSensors[other];
    settings.nColorText = settings.nCompulsory = !on;
    settings.nMoveMode = kMoveModes[row];
    settings.Dither = 3;
    const PrivateDevMode left = Leave(
        {ExpectSelected(IDC_OPERATION_SPEED, shown), ExpectSelected(IDC_OPERATION_SENSOR, shown),
         ExpectChecked({IDC_OPERATION_COLOR_SHADED, IDC_OPERATION_COMPULSORY}, on),
         ExpectChecked({IDC_OPERATION_COLOR_BLACK}, !on), Select(IDC_OPERATION_SPEED, other),
         Select(IDC_OPERATION_SENSOR, other),
         Click(on ? IDC_OPERATION_COLOR_BLACK : IDC_OPERATION_COLOR_SHADED),
         Click(IDC_OPERATION_COMPULSORY)});
    EXPECT_EQ(memcmp(&left, &settings, sizeof left), 0) << row;
  }
  // A page that is never entered stores nothing.
  machine().RemoveRegistryKey(kKey);
  settings.nMoveMode = kFollowPrinter;
  StoreDefaults(block);
  EXPECT_EQ(Ok(kVersionTab).record.Private.nMoveMode, kFollowPrinter);
  EXPECT_EQ(SyncPrint(), kAbsent);
}

// The values that the adjustment functions receive, and the result that they return.
using Numbers = std::vector<DWORD>;
Numbers received;
LONG adjustmentResult;

LONG WINAPI FakeColor(LPWSTR title, HANDLE picture, LPWSTR pictureTitle, COLORADJUSTMENT* values,
                      BOOL monochrome, BOOL permission) {
  EXPECT_TRUE(title == std::u16string(kPrinter) && !picture && !pictureTitle && monochrome);
  received = {DWORD(permission), values->caSize, DWORD(std::exchange(values->caContrast, 17))};
  return adjustmentResult;
}
LONG WINAPI FakeDevice(LPWSTR title, DEVHTADJDATA* data) {
  EXPECT_TRUE(title == std::u16string(kPrinter) && data->DeviceFlags == 0);
  DEVHTINFO* own = data->pAdjHTInfo;
  received.insert(received.end(),
                  {data->DeviceXDPI, data->DeviceYDPI, data->pDefHTInfo->HTPatternSize,
                   own != nullptr ? std::exchange(own->HTPatternSize, 6) : 0});
  return adjustmentResult;
}

TEST_F(OperationPage, AdjustmentDialogsReceiveAndReturnTheSettings) {
  machine().RegisterModule(u"htui.dll",
                           {{"HTUI_ColorAdjustmentW", platform::AsEntryPoint(FakeColor)},
                            {"HTUI_DeviceColorAdjustmentW", platform::AsEntryPoint(FakeDevice)}});
  DEVHTINFO own = DefaultHalftoneInfo();
  const DWORD factory = std::exchange(own.HTPatternSize, 5);
  DriverSettingsBlock block = DefaultBlock();
  SetHalftoneInfo(block, own);
  block.Record.Private.ColorAdjust.caContrast = 3;
  block.Record.Private.ColorAdjust.caSize = 0;  // from a backup of another driver
  constexpr int kCases[][4] = {
      {203, 1, 203, 1}, {305, 1, 305, 1}, {300, 0, 203, 1}, {203, -3, 203, 1}, {203, 1, 203, 0}};
  for (const auto& [density, result, resolution, permission] : kCases) {
    const DWORD dpi = resolution;
    DriverSettingsBlock other = block;
    other.Printer.HeadDensity = static_cast<uint16_t>(density);
    adjustmentResult = result;
    EXPECT_EQ(AdjustColor(other, kPrinter, permission), result);
    EXPECT_EQ(AdjustHalftone(other, kPrinter, permission), result);
    EXPECT_EQ(received, permission ? (Numbers{1, 24, 3, dpi, dpi, factory, 5})
                                   : (Numbers{0, 24, 3, dpi, dpi, 5, 0}));
    EXPECT_EQ(other.Record.Private.ColorAdjust.caContrast, result >= 1 ? 17 : 3);
    EXPECT_EQ(HalftoneInfo(other).HTPatternSize, result >= 1 && permission ? 6u : 5u);
  }
  // Either marks the sheet changed.
  StoreDefaults(block);
  for (const int button : {IDC_OPERATION_COLOR_ADJUST, IDC_OPERATION_HALFTONE}) {
    Leave({ExpectChanged(false), Click(button), ExpectChanged(true)});
  }
  EXPECT_EQ(received, (Numbers{1, 24, 3, 203, 203, factory, 5}));
  block.Printer = StoredPrinterPart(machine());
  EXPECT_EQ(HalftoneInfo(block).HTPatternSize, 6u);
  // The sheet of a document has no halftone button.
  Show({}, {GoTo(kOperationTab), ExpectHidden(IDC_OPERATION_HALFTONE), PressOk()});
  // A missing library and a library without the functions show no message.
  machine().RegisterModule(u"htui.dll", {});
  Leave({Click(IDC_OPERATION_COLOR_ADJUST), Click(IDC_OPERATION_HALFTONE),
         [&](Desk&) { machine().faults.FailNth(platform::Fault::kModule, 1); },
         Click(IDC_OPERATION_COLOR_ADJUST)});
  // A file of the same name in the driver's directory is not loaded.
  machine().UnregisterModule(u"htui.dll");
  machine().InstallModule(machine().driverDirectory() + u"\\3\\htui.dll", Built("QM610rBAR.so"));
  Leave({Click(IDC_OPERATION_COLOR_ADJUST), [](Desk& desk) { EXPECT_EQ(desk.ModalDepth(), 2); },
         Escape()});
}

constexpr char16_t kLibrary[] = u"QM610rLIB.DLL";

std::string reply;
DWORD result;

template <BYTE kFilling, DWORD kSize>
DWORD WINAPI FakeQuery(LPCWSTR name, BYTE* out, DWORD outSize, DWORD* size, DWORD* status) {
  EXPECT_TRUE(name == std::u16string(kPrinter) && outSize == kSize && *size == kSize && status);
  EXPECT_EQ(std::string(out, out + outSize), std::string(outSize, char(kFilling)));
  EXPECT_EQ(platform::Machine::Current().desk().Cursor(), LoadCursorW(nullptr, IDC_WAIT));
  reply.copy(reinterpret_cast<char*>(out), outSize);
  return result;
}

class DevicePage : public SheetTest {
 protected:
  DevicePage() {
    result = 1;
    machine().RegisterModule(kLibrary,
                             {{"RtlGetModeComW", platform::AsEntryPoint(&FakeQuery<0xFF, 30>)},
                              {"RtlGetVersionComW", platform::AsEntryPoint(&FakeQuery<0, 50>)}});
  }
  // Clicks a query button. Records the message boxes, the values on both pages and the stored
  // settings.
  void Query(int mode, int density, int button) {
    DriverSettingsBlock block = DefaultBlock();
    block.Printer.Mecha = static_cast<uint16_t>(mode);
    block.Printer.HeadDensity = static_cast<uint16_t>(density);
    StoreDefaults(block);
    const auto close = [this](Desk& desk) {
      if (!desk.IsMessageBox()) return;
      log_ << platform::ToUtf8(desk.Title() + u": " + desk.MessageText()) << ' '
           << desk.MessageStyle() << '\n';
      EXPECT_TRUE(desk.Click(IDOK));
    };
    const auto look = [this](Desk& desk) {
      EXPECT_EQ(desk.Cursor(), LoadCursorW(nullptr, IDC_ARROW));
      for (const int id : {IDC_DEVICE_MODE, IDC_DEVICE_DENSITY, IDC_DEVICE_FIRMWARE_VERSION,
                           IDC_DEVICE_FONT_VERSION})
        log_ << platform::ToUtf8(desk.Text(id)) << '|';
      log_ << (desk.Windows().back().changed ? "changed" : "as it was");
    };
    const auto peel = [this](Desk& desk) {
      log_ << (desk.Control(IDC_PAPER_PEEL_OFFSET).enabled ? ", peels, " : ", ");
    };
    log_ << mode << ' ' << density << ":\n";
    Ok(kDeviceTab, {Click(button), close, close, look, GoTo(kPaperTab), peel});
    const PrinterSettingsPart stored = StoredPrinterPart(machine());
    log_ << stored.Mecha << ' ' << stored.HeadDensity << '\n';
  }
  std::ostringstream log_;
};

TEST_F(DevicePage, EscInTheOpenModeListRestoresTheMode) {
  for (const uint16_t mode : {uint16_t{2}, uint16_t{9}}) {  // 9 is unknown and shown as the first
    DriverSettingsBlock block = DefaultBlock();
    block.Printer.Mecha = mode;
    const auto closed = [&](const Step& key) {
      StoreDefaults(block);
      Ok(kDeviceTab, {MoveInOpenList(IDC_DEVICE_MODE, mode == 2 ? -1 : 1), key});
      return StoredPrinterPart(machine()).Mecha;
    };
    EXPECT_EQ(closed(Escape()), mode);
    EXPECT_EQ(closed(Enter()), 1);
  }
}

// golden/device_page.txt.
TEST_F(DevicePage, QueriesUpdateThePageAndTheSettings) {
  constexpr int kCases[][4] = {// mode and density before, their codes in the reply
                               {1, 203, 255, 255}, {2, 203, 2, 0}, {0, 203, 2, 0},
                               {2, 203, 0, 255},   {1, 203, 3, 0}, {0, 305, 255, 1},
                               {0, 305, 255, 0},   {0, 305, 1, 0}, {9, 203, 255, 255}};
  for (const auto& [mode, density, modeCode, densityCode] : kCases) {
    reply = std::string(30, '\2');
    reply[1] = static_cast<char>(densityCode);
    reply[3] = static_cast<char>(modeCode);
    Query(mode, density, IDC_DEVICE_QUERY_MODE);
  }
  for (const auto& versions :
       {std::string("0123456789ABCDEF\x83\x5C\0X", 20),
        std::string("\xCA\xDE\0junk890123456abcdefgh", 24) + std::string(26, 'x')}) {
    reply = versions;
    Query(0, 203, IDC_DEVICE_QUERY_VERSION);
  }
  // A call that fails may still have written its reply.
  reply = std::string("V\0\0\2", 4) + "000000000000F1";
  result = 0;
  for (int failure = 0; failure < 3; ++failure) {
    if (failure == 1) machine().RegisterModule(kLibrary, {});
    if (failure == 2) machine().UnregisterModule(kLibrary);
    for (const int button : {IDC_DEVICE_QUERY_MODE, IDC_DEVICE_QUERY_VERSION})
      Query(1, 305, button);
  }
  EXPECT_EQ(log_.str(), Golden("device_page.txt"));
}

}  // namespace
}  // namespace kestrel
