// What each entry point checks, answers and leaves behind.
#include <gtest/gtest.h>

#include "tests/support/settings.h"
#include "tests/support/test_machine.h"

namespace kestrel {
namespace {

using support::At;
using support::DefaultBlock;
using support::kPrinter;

class EntryPoints : public support::MachineTest {
 protected:
  DEVMODEW* Out() { return reinterpret_cast<DEVMODEW*>(out_); }
  DEVMODEW* In() { return &in_.Record.Public; }
  bool OutUntouched() {
    return std::all_of(out_, out_ + 452, [](BYTE b) { return b == 0xCD; });
  }
  void ClearOut() {
    std::fill_n(out_, 452, BYTE{0xCD});
    SetLastError(0);
  }

  std::u16string name_ = kPrinter;
  DriverSettingsBlock in_ = DefaultBlock();
  alignas(8) BYTE out_[452];
};

TEST_F(EntryPoints, FixedAnswers) {
  machine().SetPermission(kPrinter, false, true);  // initialisation needs administering rights
  for (const int event : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, -1}) {
    const bool known = event >= 1 && event <= 8;
    SetLastError(0);
    EXPECT_EQ(exports_.DrvPrinterEvent(name_.data(), event, 0, 0), known ? TRUE : FALSE) << event;
    if (event != PRINTER_EVENT_INITIALIZE) {
      EXPECT_EQ(GetLastError(), known ? 0u : 87u) << event;
    }
  }
  EXPECT_TRUE(machine().AllData(kPrinter).empty());
  for (const DWORD level : {0u, 1u, 2u, 3u}) {
    const bool known = level == 1 || level == 2;
    SetLastError(0);
    EXPECT_EQ(exports_.DrvUpgradePrinter(level, out_), known ? TRUE : FALSE);
    EXPECT_EQ(GetLastError(), known ? 0u : 87u);
    EXPECT_FALSE(exports_.DrvUpgradePrinter(level, nullptr));
    EXPECT_EQ(GetLastError(), 87u);
  }
  DWORD resource = 5;
  EXPECT_TRUE(exports_.DevQueryPrint(nullptr, nullptr, &resource));
  EXPECT_EQ(resource, 0u);
  EXPECT_TRUE(exports_.DevQueryPrint(nullptr, nullptr, nullptr));
  EXPECT_TRUE(exports_.DevQueryPrintEx(nullptr));
  ClearOut();
  EXPECT_EQ(exports_.DrvDocumentEvent(nullptr, nullptr, 1, 452, out_, 452, out_), 0);
  ULONG size = 452;
  EXPECT_FALSE(exports_.DrvQueryColorProfile(nullptr, nullptr, 0, out_, &size, nullptr));
  EXPECT_EQ(GetLastError(), 50u);
  EXPECT_TRUE(OutUntouched());
}

TEST_F(EntryPoints, InitialisationStoresDefaultsAndTheRenderingModule) {
  EXPECT_TRUE(exports_.DrvPrinterEvent(name_.data(), PRINTER_EVENT_INITIALIZE, 0, 0));
  const auto module = machine().Data(kPrinter, u"SPLUserModePrinterDriver").value();
  EXPECT_EQ(module.type, REG_SZ);
  EXPECT_EQ(module.bytes, support::BytesOf(u"QM610rDRV2", 20));
  const auto part = machine().Data(kPrinter, u"Private DevMode").value();
  EXPECT_EQ(part.type, REG_BINARY);
  EXPECT_EQ(part.bytes, support::BytesOf(&in_.Printer, 3338));
  EXPECT_EQ(machine().AllData(kPrinter).size(), 2u);
}

TEST_F(EntryPoints, ConversionChecksInOrder) {
  constexpr LONG kNoPointer = 0;
  std::u16string nobody = u"No such printer";
  struct Case {
    DWORD mode;
    char16_t* name;
    bool input, output;
    LONG size;
    DWORD error;  // 0: it succeeds
    LONG sizeAfter;
  };
  const Case cases[] = {
      {CDM_CONVERT, name_.data(), true, true, 999, 0, 452},
      {CDM_CONVERT, name_.data(), false, true, 100, 87, 100},
      {CDM_CONVERT, name_.data(), true, false, 100, 87, 100},
      {CDM_CONVERT, name_.data(), true, true, kNoPointer, 87, 0},
      {CDM_CONVERT, nobody.data(), true, true, 100, 122, 452},
      {CDM_CONVERT, nobody.data(), true, true, 999, 87, 999},
      {CDM_CONVERT, name_.data(), true, true, -1, 122, 452},
      {CDM_DRIVER_DEFAULT, name_.data(), false, true, 999, 0, 452},
      {CDM_DRIVER_DEFAULT, name_.data(), false, true, kNoPointer, 87, 0},
      {CDM_DRIVER_DEFAULT, name_.data(), false, true, 100, 122, 452},
      {CDM_DRIVER_DEFAULT, nobody.data(), false, false, 999, 122, 452},
      {CDM_DRIVER_DEFAULT, nobody.data(), false, true, 999, 87, 999},
      {CDM_CONVERT351, name_.data(), true, true, 999, 87, 999},
      {0, name_.data(), true, true, 999, 87, 999},
      {3, name_.data(), true, true, 999, 87, 999},
      {5, name_.data(), true, true, 999, 87, 999},
  };
  for (const Case& c : cases) {
    LONG size = c.size;
    ClearOut();
    EXPECT_EQ(
        exports_.DrvConvertDevMode(c.name, c.input ? In() : nullptr, c.output ? Out() : nullptr,
                                   c.size != kNoPointer ? &size : nullptr, c.mode),
        c.error == 0 ? TRUE : FALSE);
    EXPECT_EQ(size, c.sizeAfter);
    EXPECT_TRUE(c.error == 0 || GetLastError() == c.error) << c.error;
    EXPECT_EQ(OutUntouched(), c.error != 0);
  }
}

TEST_F(EntryPoints, DocumentPropertiesWithoutSheet) {
  const support::OpenedPrinter printer;
  struct Case {
    DWORD mode;
    bool input, output;
    LONG result;
    DWORD error;
    bool written;
  };
  const Case cases[] = {
      {0, false, false, 452, 0, false},
      {0, true, true, 452, 0, false},
      {DM_COPY, false, true, 1, 0, true},
      {DM_UPDATE, false, true, 1, 0, true},
      {DM_UPDATE, true, false, 452, 0, false},
      {DM_MODIFY, true, true, 1, 0, false},
      {DM_MODIFY, false, true, -1, 87, false},
      {DM_COPY | DM_MODIFY, true, true, 1, 0, true},
      {DM_COPY, true, false, -1, 87, false},
      {DM_COPY | DM_PROMPT, true, false, -1, 87, false},
      {DM_PROMPT | DM_MODIFY, false, true, -1, 87, false},
      {0x100, false, true, 1, 0, false},
  };
  for (const Case& c : cases) {
    ClearOut();
    EXPECT_EQ(
        exports_.DrvDocumentProperties(nullptr, printer, name_.data(), c.output ? Out() : nullptr,
                                       c.input ? In() : nullptr, c.mode),
        c.result)
        << c.mode;
    EXPECT_TRUE(c.error == 0 || GetLastError() == c.error) << c.mode;
    EXPECT_EQ(OutUntouched(), !c.written) << c.mode;
  }
  EXPECT_EQ(exports_.DrvDocumentProperties(nullptr, nullptr, nullptr, nullptr, nullptr, 0), 452);
  EXPECT_EQ(
      exports_.DrvAdvancedDocumentProperties(nullptr, printer, name_.data(), nullptr, nullptr), -1);
  EXPECT_TRUE(machine().AllData(kPrinter).empty()) << "nothing is stored";
  EXPECT_TRUE(machine().DefaultRecord(kPrinter).empty());
}

TEST_F(EntryPoints, SheetFunctionWithoutSheet) {
  const support::OpenedPrinter printer;
  DOCUMENTPROPERTYHEADER header{};
  header.cbSize = sizeof header;
  header.hPrinter = printer;
  header.pszPrinterName = name_.data();
  header.pdmOut = Out();
  EXPECT_EQ(exports_.DrvDocumentPropertySheets(nullptr, reinterpret_cast<LPARAM>(&header)), 452);
  header.cbOut = 0;
  header.fMode = DM_COPY;
  EXPECT_EQ(exports_.DrvDocumentPropertySheets(nullptr, reinterpret_cast<LPARAM>(&header)), 1);
  EXPECT_EQ(header.cbOut, 452u);
  EXPECT_EQ(At<WORD>(out_, 70), 232);
  EXPECT_EQ(exports_.DrvDocumentPropertySheets(nullptr, 0), -1);
  EXPECT_EQ(exports_.DrvDevicePropertySheets(nullptr, reinterpret_cast<LPARAM>(&header)), -1);
  EXPECT_EQ(exports_.DrvDevicePropertySheets(nullptr, 0), -1);
}

TEST_F(EntryPoints, SheetsThatCannotBeShownFail) {
  const support::OpenedPrinter printer;
  for (const bool entryMissing : {false, true}) {
    if (entryMissing)
      machine().RegisterModule(u"compstui.dll", {});
    else
      machine().faults.FailFrom(platform::Fault::kModule, 1);
    ClearOut();
    EXPECT_EQ(exports_.DrvDocumentProperties(nullptr, printer, name_.data(), Out(), nullptr,
                                             DM_COPY | DM_PROMPT),
              -1);
    EXPECT_FALSE(exports_.PrinterProperties(nullptr, printer));
    EXPECT_TRUE(OutUntouched());
    machine().faults.Clear();
  }
  const auto permission = machine().Data(kPrinter, u"Permission");
  ASSERT_TRUE(permission);
  EXPECT_EQ(permission->type, REG_DWORD);
  EXPECT_EQ(At<DWORD>(permission->bytes.data(), 0), 1u);
}

// What the sheet library was called with, in place of a sheet.
struct SheetCall {
  LONG answer;
  DWORD result;
  PFNPROPSHEETUI sheets;
  std::vector<std::byte> header;
};
SheetCall sheetCall;

LONG WINAPI PretendSheet(HWND, PFNPROPSHEETUI sheets, LPARAM header, LPDWORD result) {
  sheetCall.sheets = sheets;
  const void* bytes = reinterpret_cast<const void*>(header);
  sheetCall.header = support::BytesOf(bytes, *static_cast<const WORD*>(bytes));
  *result = sheetCall.result;
  return sheetCall.answer;
}

TEST_F(EntryPoints, SheetsGetTheirHeaderAndTellTheirResult) {
  machine().RegisterModule(
      u"compstui.dll", {{"CommonPropertySheetUIW",
                         reinterpret_cast<FARPROC>(reinterpret_cast<void (*)()>(PretendSheet))}});
  const support::OpenedPrinter printer;
  DOCUMENTPROPERTYHEADER document = {sizeof document, 0, printer, name_.data(), In(), Out(), 0, 0};
  DEVICEPROPERTYHEADER device = {sizeof device, 0, printer, nullptr};
  for (const LONG answer : {1, 0, -1}) {
    for (const DWORD result : {DWORD{CPSUI_CANCEL}, DWORD{CPSUI_OK}, DWORD{CPSUI_RESTARTWINDOWS}}) {
      sheetCall = {answer, result, nullptr, {}};
      const LONG expected = answer < 0 ? -1 : static_cast<LONG>(result);
      document.fMode = DM_COPY | DM_PROMPT | DM_MODIFY;
      EXPECT_EQ(exports_.DrvDocumentProperties(nullptr, printer, name_.data(), Out(), In(),
                                               document.fMode),
                expected);
      EXPECT_EQ(sheetCall.sheets, exports_.DrvDocumentPropertySheets);
      EXPECT_EQ(sheetCall.header, support::BytesOf(document));
      document.fMode = 22;
      EXPECT_EQ(exports_.DrvAdvancedDocumentProperties(nullptr, printer, name_.data(), Out(), In()),
                expected);
      EXPECT_EQ(sheetCall.header, support::BytesOf(document));
      for (const bool permission : {true, false}) {
        machine().SetPermission(kPrinter, true, permission);
        device.Flags = permission ? WORD{0} : WORD{DPS_NOPERMISSION};
        EXPECT_EQ(exports_.PrinterProperties(nullptr, printer), expected > 0 ? TRUE : FALSE);
        EXPECT_EQ(sheetCall.sheets, exports_.DrvDevicePropertySheets);
        EXPECT_EQ(sheetCall.header, support::BytesOf(device));
      }
    }
  }
}

TEST_F(EntryPoints, JobAttributesFollowTheGivenRecord) {
  const support::OpenedPrinter printer;
  in_.Record.Public.dmPrintQuality = 305;
  in_.Record.Public.dmYResolution = 300;
  for (const DWORD level : {1u, 2u, 3u, 4u, 5u}) {
    for (const bool given : {true, false}) {
      std::fill_n(out_, 452, BYTE{0xCD});
      EXPECT_FALSE(exports_.DrvQueryJobAttributes(printer, given ? In() : nullptr, level, out_));
      const bool resolution = given && (level == 3 || level == 4);
      const bool optimization = level >= 2 && level <= 4;
      EXPECT_EQ(At<DWORD>(out_, 28), optimization ? 0u : 0xCDCDCDCDu) << level;
      EXPECT_EQ(At<WORD>(out_, 32), resolution ? 305 : 0xCDCD) << level;
      EXPECT_EQ(At<WORD>(out_, 34), resolution ? 300 : 0xCDCD) << level;
      EXPECT_EQ(At<DWORD>(out_, 24), 0xCDCDCDCDu);
      EXPECT_EQ(At<DWORD>(out_, 36), 0xCDCDCDCDu);
    }
  }
  std::fill_n(out_, 452, BYTE{0xCD});
  EXPECT_FALSE(exports_.DrvQueryJobAttributes(nullptr, In(), 3, out_));
  EXPECT_TRUE(OutUntouched());
  EXPECT_FALSE(exports_.DrvQueryJobAttributes(printer, In(), 3, nullptr));
}

}  // namespace
}  // namespace kestrel
