// Arguments, results and stored data of the exports, also when a platform call fails.
#include <functional>
#include <set>

#include "platform/machine/guard.h"
#include "tests/support/test_machine.h"

namespace kestrel {
namespace {

using platform::Fault;
using support::BytesOf;
using support::kPrinter;
using Bytes = std::vector<std::byte>;

// The arguments that a call omits.
enum Omitted : unsigned { kNone = 0, kInput = 1, kOutput = 2, kSize = 4, kPrinterName = 8 };

class EntryPoints : public support::MachineTest {
 protected:
  EntryPoints() { ClearOutput(); }
  DEVMODEW* Input() { return &input_.Record.Public; }
  DEVMODEW* Output() { return reinterpret_cast<DEVMODEW*>(output_); }
  void ClearOutput() { std::fill_n(output_, sizeof output_, BYTE{0xCD}); }
  // Returns the output up to the last byte that a call has written.
  Bytes WrittenBytes() {
    size_t size = sizeof output_;
    while (size > 0 && output_[size - 1] == 0xCD) --size;
    return BytesOf(output_, size);
  }
  BOOL Convert(DWORD mode, unsigned omitted, LONG* size) {
    return exports_.DrvConvertDevMode((omitted & kPrinterName) != 0 ? nullptr : name_.data(),
                                      (omitted & kInput) != 0 ? nullptr : Input(),
                                      (omitted & kOutput) != 0 ? nullptr : Output(),
                                      (omitted & kSize) != 0 ? nullptr : size, mode);
  }
  LONG Resolve(HANDLE printer, DWORD mode, unsigned omitted = kNone) {
    return exports_.DrvDocumentProperties(nullptr, printer, name_.data(),
                                          (omitted & kOutput) != 0 ? nullptr : Output(),
                                          (omitted & kInput) != 0 ? nullptr : Input(), mode);
  }

  std::u16string name_ = kPrinter;
  DriverSettingsBlock input_ = support::DefaultBlock();
  alignas(8) BYTE output_[3000];
};

// The mode is checked first, then the pointers, the size, the printer and memory. tests/try has a
// case of each check alone.
TEST_F(EntryPoints, ConvertDevModeChecksItsArgumentsInOrder) {
  const struct {
    DWORD mode;
    unsigned omitted;
    LONG size;      // the caller's *pcbNeeded
    DWORD error;    // ERROR_SUCCESS: converted
    LONG reported;  // *pcbNeeded after the call
  } kCases[] = {
      {CDM_CONVERT, kNone, 453, ERROR_SUCCESS, 452},
      {CDM_CONVERT, kNone, -1, ERROR_INSUFFICIENT_BUFFER, 452},
      {CDM_CONVERT, kOutput, 451, ERROR_INVALID_PARAMETER, 451},
      {CDM_CONVERT, kPrinterName, 451, ERROR_INSUFFICIENT_BUFFER, 452},
      {CDM_DRIVER_DEFAULT, kSize | kOutput, 451, ERROR_INVALID_PARAMETER, 451},
      {CDM_DRIVER_DEFAULT, kPrinterName, 453, ERROR_INVALID_PARAMETER, 453},
      {CDM_CONVERT | CDM_DRIVER_DEFAULT, kNone, 451, ERROR_INVALID_PARAMETER, 451},
  };
  for (auto [mode, omitted, size, error, reported] : kCases) {
    SCOPED_TRACE(testing::Message() << "mode " << mode << " omitted " << omitted);
    EXPECT_EQ(Convert(mode, omitted, &size) ? ERROR_SUCCESS : GetLastError(), error);
    EXPECT_EQ(size, reported);
    EXPECT_EQ(WrittenBytes().size(), error == ERROR_SUCCESS ? 452u : 0u);
    ClearOutput();
  }
  LONG size = 452;
  machine().faults.FailFrom(Fault::kAllocation, 1);
  EXPECT_FALSE(Convert(CDM_CONVERT, kNone, &size));
  EXPECT_EQ(size, 0);
}

TEST_F(EntryPoints, DocumentPropertiesWriteTheRecordOrNothingByMode) {
  const support::OpenedPrinter printer;
  EXPECT_EQ(Resolve(printer, DM_MODIFY), IDOK);
  EXPECT_EQ(Resolve(printer, DM_MODIFY, kOutput), 452);
  EXPECT_EQ(Resolve(printer, DM_COPY | DM_PROMPT, kInput), CPSUI_CANCEL);
  EXPECT_EQ(WrittenBytes(), Bytes());
  EXPECT_EQ(Resolve(printer, DM_UPDATE, kInput), IDOK);
  EXPECT_EQ(WrittenBytes(), BytesOf(input_.Record));
  DOCUMENTPROPERTYHEADER header = {sizeof header, 0,        printer, name_.data(),
                                   nullptr,       Output(), 0,       0};
  const auto parameter = reinterpret_cast<LPARAM>(&header);
  EXPECT_EQ(exports_.DrvDocumentPropertySheets(nullptr, parameter), 452) << "mode 0";
  EXPECT_EQ(header.cbOut, 452);
  EXPECT_EQ(exports_.DrvDocumentPropertySheets(nullptr, 0), -1);
  EXPECT_TRUE(machine().AllData(kPrinter).empty()) << "nothing is stored";
}

// A replacement of the sheet library's function. It stores the mode of a document sheet or the
// flags of a device sheet.
DWORD sheetMode;
LONG sheetFunctionResult;

LONG WINAPI FakeSheet(HWND, PFNPROPSHEETUI, LPARAM header, LPDWORD result) {
  const auto* device = reinterpret_cast<const DEVICEPROPERTYHEADER*>(header);
  const auto* document = reinterpret_cast<const DOCUMENTPROPERTYHEADER*>(header);
  sheetMode = device->cbSize == sizeof *device ? device->Flags : document->fMode;
  *result = CPSUI_RESTARTWINDOWS;
  return sheetFunctionResult;
}

TEST_F(EntryPoints, SheetsReturnTheResultOfTheLibraryOrFailWithoutIt) {
  const support::OpenedPrinter printer;
  machine().RegisterModule(u"compstui.dll",
                           {{"CommonPropertySheetUIW", platform::AsEntryPoint(FakeSheet)}});
  for (const auto& [functionResult, result] : {std::pair{0, CPSUI_RESTARTWINDOWS}, {-1, -1L}}) {
    sheetFunctionResult = functionResult;
    EXPECT_EQ(Resolve(printer, DM_COPY | DM_PROMPT), result);
    EXPECT_EQ(sheetMode, DM_COPY | DM_PROMPT);
    EXPECT_EQ(
        exports_.DrvAdvancedDocumentProperties(nullptr, printer, name_.data(), Output(), Input()),
        result);
    EXPECT_EQ(sheetMode, DM_COPY | DM_PROMPT | DM_ADVANCED);
    EXPECT_EQ(exports_.PrinterProperties(nullptr, printer), result > 0);
    EXPECT_EQ(sheetMode, 0u);
  }
  EXPECT_EQ(machine().Data(kPrinter, u"Permission")->bytes, BytesOf(DWORD{1}));
  machine().SetPermission(kPrinter, true, false);
  exports_.PrinterProperties(nullptr, printer);
  EXPECT_EQ(sheetMode, DPS_NOPERMISSION);
  machine().RegisterModule(u"compstui.dll", {});  // without its function
  EXPECT_EQ(Resolve(printer, DM_COPY | DM_PROMPT), -1);
  machine().faults.FailFrom(Fault::kAllocation, 1);
  EXPECT_EQ(Resolve(printer, DM_COPY | DM_PROMPT), -1);
  EXPECT_EQ(GetLastError(), DWORD{ERROR_NOT_ENOUGH_MEMORY});
  EXPECT_FALSE(exports_.PrinterProperties(nullptr, printer));
}

TEST_F(EntryPoints, JobAttributesContainTheResolutionOfTheGivenRecord) {
  const support::OpenedPrinter printer;
  Input()->dmPrintQuality = 305;
  Input()->dmYResolution = 300;
  ATTRIBUTE_INFO_3 info = {};
  const auto query = [&](HANDLE handle, DEVMODEW* record, void* attributes) {
    info.dwColorOptimization = 77;
    info.dmPrintQuality = info.dmYResolution = 78;
    EXPECT_FALSE(exports_.DrvQueryJobAttributes(handle, record, 3, static_cast<BYTE*>(attributes)));
    return std::tuple(info.dwColorOptimization, info.dmPrintQuality, info.dmYResolution);
  };
  EXPECT_EQ(query(printer, Input(), &info), std::tuple(0, 305, 300));
  EXPECT_EQ(query(printer, nullptr, &info), std::tuple(0, 78, 78));
  query(printer, Input(), nullptr);
  machine().faults.FailNth(Fault::kAllocation, 2);  // the first one is for the printer's name
  EXPECT_EQ(query(printer, Input(), &info), std::tuple(77, 78, 78));
  EXPECT_EQ(GetLastError(), DWORD{ERROR_NOT_ENOUGH_MEMORY});
}

// When one platform call fails, an export returns the stored settings, the defaults or nothing, but
// never a mixture.
TEST_F(EntryPoints, WriteStoredSettingsDefaultsOrNothingOnFailure) {
  const support::OpenedPrinter printer;
  DriverSettingsBlock stored = input_;
  stored.Record.Private.Position = 5;
  stored.Printer.PaperNum = 3;
  LONG size;
  const std::function<LONG()> kCalls[] = {
      [&] { return Convert(CDM_CONVERT, kNone, &(size = 452)); },
      [&] { return Resolve(printer, DM_COPY | DM_MODIFY); },
      [&] {
        return exports_.DrvDeviceCapabilities(printer, name_.data(), DC_PAPERS, output_, Input());
      }};
  for (const auto& call : kCalls) {
    using Outcome = std::pair<LONG, Bytes>;  // the result and the output
    const auto run = [&] {
      ClearOutput();
      const LONG result = call();
      return Outcome(result, WrittenBytes());
    };
    machine().RemoveData(kPrinter, u"Private DevMode");
    const Outcome defaults = run(), nothing(defaults.second.size() == 452 ? 0 : -1, {});
    support::StoreBlock(machine(), stored);
    const Outcome whole = run();
    std::set<Outcome> found;
    Outcome actual;
    ForEachFault(
        {Fault::kAllocation, Fault::kSpooler, Fault::kSpoolerChange}, [&] { actual = run(); },
        [&](Fault kind, bool failed) {
          found.insert(actual);
          // A printer that changes between two calls is queried again.
          EXPECT_TRUE(actual == whole || (failed && kind != Fault::kSpoolerChange));
        });
    EXPECT_EQ(found, (std::set{whole, defaults, nothing}));
  }
}

TEST_F(EntryPoints, InitializationStoresDefaultsAndRenderingModule) {
  const auto initialize = [&] {
    machine().RemoveData(kPrinter, u"Private DevMode");
    machine().RemoveData(kPrinter, u"SPLUserModePrinterDriver");
    EXPECT_TRUE(exports_.DrvPrinterEvent(name_.data(), PRINTER_EVENT_INITIALIZE, 0, 0));
  };
  machine().SetPermission(kPrinter, false, true);  // it needs the right to administer the printer
  initialize();
  EXPECT_TRUE(machine().AllData(kPrinter).empty());
  machine().SetPermission(kPrinter, true, true);
  ForEachFault({Fault::kAllocation, Fault::kSpooler}, initialize, [&](Fault kind, bool failed) {
    const auto settings = machine().Data(kPrinter, u"Private DevMode");
    const auto module = machine().Data(kPrinter, u"SPLUserModePrinterDriver");
    EXPECT_TRUE(settings
                    ? settings->bytes == BytesOf(input_.Printer) && settings->type == REG_BINARY
                    : failed);
    EXPECT_TRUE(module ? module->bytes == BytesOf(u"QM610rDRV2", 20) && module->type == REG_SZ
                       : failed && kind == Fault::kSpooler);
  });
}

}  // namespace
}  // namespace kestrel
