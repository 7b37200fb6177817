// Arguments, results and stored data of the exports, also when a platform call fails.
#include <algorithm>
#include <functional>
#include <set>

#include "platform/machine/guard.h"
#include "tests/support/test_machine.h"

namespace kestrel {
namespace {

using support::At;
using support::BytesOf;
using support::kPrinter;

class EntryPoints : public support::MachineTest {
 protected:
  DEVMODEW* In() { return &in_.Record.Public; }
  DEVMODEW* Out() { return reinterpret_cast<DEVMODEW*>(out_); }
  EntryPoints() { Describe(0); }
  // Returns a result as text with the last error of a failure and the number of bytes written to
  // out_. Resets both.
  std::string Describe(LONG result) {
    std::string text = std::to_string(result);
    if (result <= 0) text += " error " + std::to_string(GetLastError());
    size_t written = sizeof out_;
    while (written > 0 && out_[written - 1] == 0xCD) --written;
    if (written > 0) text += " wrote " + std::to_string(written);
    std::fill_n(out_, sizeof out_, BYTE{0xCD});
    SetLastError(0);
    return text;
  }
  // `without` names the arguments that a call lacks by their first letters: input, output, printer,
  // size.
  static bool Given(std::string_view without, char what) {
    return without.find(what) == without.npos;
  }
  // Returns the size that a conversion reports, negated when it fails.
  LONG Convert(DWORD mode, std::string_view without, LONG size) {
    std::u16string unknown = u"No such printer";
    const BOOL done = exports_.DrvConvertDevMode(
        Given(without, 'p') ? name_.data() : unknown.data(), Given(without, 'i') ? In() : nullptr,
        Given(without, 'o') ? Out() : nullptr, Given(without, 's') ? &size : nullptr, mode);
    return done ? size : -size;
  }
  LONG Resolve(HANDLE printer, DWORD mode, std::string_view without) {
    return exports_.DrvDocumentProperties(nullptr, printer, name_.data(),
                                          Given(without, 'o') ? Out() : nullptr,
                                          Given(without, 'i') ? In() : nullptr, mode);
  }
  std::pair<DWORD, std::vector<std::byte>> Stored(const char16_t* value) {
    const auto data = machine().Data(kPrinter, value).value();
    return {data.type, data.bytes};
  }
  LONG Event(int event) { return exports_.DrvPrinterEvent(name_.data(), event, 0, 0); }

  std::u16string name_ = kPrinter;
  DriverSettingsBlock in_ = support::DefaultBlock();
  alignas(8) BYTE out_[3000];
};

// golden/arguments.txt: calls by name, mode and missing arguments (see Given).
TEST_F(EntryPoints, CheckArgumentsInOrder) {
  std::string all;
  const auto record = [&](std::string what, int mode, std::string_view without, LONG result) {
    const std::string text = Describe(result);
    const bool cancelled = what == "properties" && text.starts_with("0 ");
    all += what + ' ' + std::to_string(mode) + ' ' + std::string(without) + ": " +
           (cancelled ? "cancelled" : text) + '\n';
  };
  for (const DWORD mode : {CDM_CONVERT, CDM_DRIVER_DEFAULT, CDM_CONVERT351, DWORD{0}, DWORD{5}})
    for (const char* without : {"", "i", "o", "s", "p", "op"})
      for (const LONG size : {451, 452})
        record("convert to " + std::to_string(size), mode, without, Convert(mode, without, size));
  // OpenPrinterW without a name opens the print server, which is no printer.
  WCHAR empty = 0;
  LONG needed = 452;
  for (WCHAR* name : {&empty, static_cast<WCHAR*>(nullptr)}) {
    EXPECT_FALSE(exports_.DrvConvertDevMode(name, In(), Out(), &needed, CDM_CONVERT));
    EXPECT_EQ(Describe(0), "0 error 87");
  }
  record("convert to -1", CDM_CONVERT, "", Convert(CDM_CONVERT, "", -1));
  const support::OpenedPrinter printer;
  for (const DWORD mode : {DWORD{0}, DM_UPDATE, DM_COPY, DM_MODIFY, DM_COPY | DM_MODIFY,
                           DM_COPY | DM_PROMPT, DM_PROMPT | DM_MODIFY, DWORD{256}})
    for (const char* without : {"", "i", "o", "io"})
      record("properties", mode, without, Resolve(printer, mode, without));
  record("properties", 0, "iop", Resolve(nullptr, 0, "io"));
  record("advanced", 0, "op", exports_.DrvAdvancedDocumentProperties(0, printer, 0, 0, In()));
  DOCUMENTPROPERTYHEADER header = {sizeof header, 0, printer, name_.data(), nullptr, Out(), 7, 0};
  for (const DWORD mode : {DWORD{0}, DM_COPY}) {
    header.fMode = mode;
    for (const auto given : {reinterpret_cast<LPARAM>(&header), LPARAM{0}}) {
      const char* without = given == 0 ? "i" : "";
      record("document sheets", mode, without, exports_.DrvDocumentPropertySheets(nullptr, given));
      record("device sheets", mode, without, exports_.DrvDevicePropertySheets(nullptr, given));
    }
  }
  EXPECT_EQ(header.cbOut, 452);
  ULONG size = 452;
  for (const char* without : {"", "o"}) {
    const bool given = Given(without, 'o');
    for (DWORD level = 0; level < 4; ++level)
      record("upgrade", level, without, exports_.DrvUpgradePrinter(level, given ? out_ : nullptr));
    record("query", 0, without, exports_.DevQueryPrint(0, 0, given ? &size : nullptr));
  }
  EXPECT_EQ(size, 0u);
  record("query", 1, "", exports_.DevQueryPrintEx(nullptr));
  record("event of a document", 1, "", exports_.DrvDocumentEvent(0, 0, 1, 9, out_, 9, out_));
  record("profile", 0, "", exports_.DrvQueryColorProfile(0, 0, 0, out_, &size, 0));
  machine().SetPermission(kPrinter, false, true);  // initialisation needs administering rights
  for (int event = -1; event < 10; ++event)
    record("event " + std::to_string(event), 0, "", Event(event));
  EXPECT_EQ(all, support::Golden("arguments.txt"));
  EXPECT_TRUE(machine().AllData(kPrinter).empty()) << "nothing is stored";
  EXPECT_TRUE(machine().DefaultRecord(kPrinter).empty());
}

// A replacement of the sheet library: the header's size with its mode or flags, and the result that
// it returns.
std::pair<size_t, DWORD> sheetHeader;
std::pair<LONG, DWORD> sheetResult;

LONG WINAPI FakeSheet(HWND, PFNPROPSHEETUI, LPARAM header, LPDWORD result) {
  const auto* device = reinterpret_cast<const DEVICEPROPERTYHEADER*>(header);
  const auto* document = reinterpret_cast<const DOCUMENTPROPERTYHEADER*>(header);
  sheetHeader = {device->cbSize,
                 device->cbSize == sizeof *device ? device->Flags : document->fMode};
  *result = sheetResult.second;
  return sheetResult.first;
}

TEST_F(EntryPoints, SheetsReturnTheirResult) {
  const support::OpenedPrinter printer;
  const auto properties = [&] { return exports_.PrinterProperties(nullptr, printer); };
  const auto prompt = [&] { return Resolve(printer, DM_COPY | DM_PROMPT | DM_MODIFY, ""); };
  const auto advanced = [&] {
    return exports_.DrvAdvancedDocumentProperties(nullptr, printer, name_.data(), Out(), In());
  };
  machine().faults.FailFrom(platform::Fault::kModule, 1);
  EXPECT_EQ((std::vector<std::string>{Describe(prompt()), Describe(properties())}),
            (std::vector<std::string>{"-1 error 126", "0 error 126"}));
  machine().faults.Clear();
  machine().RegisterModule(u"compstui.dll", {});  // without its function
  EXPECT_EQ((std::vector<std::string>{Describe(prompt()), Describe(properties())}),
            (std::vector<std::string>{"-1 error 127", "0 error 127"}));
  EXPECT_EQ(Stored(u"Permission"), std::pair(REG_DWORD, BytesOf(DWORD{1})));
  machine().RegisterModule(u"compstui.dll",
                           {{"CommonPropertySheetUIW", platform::AsEntryPoint(FakeSheet)}});
  const std::pair<LONG, DWORD> kResults[] = {
      {1, CPSUI_CANCEL}, {0, CPSUI_OK}, {1, CPSUI_RESTARTWINDOWS}, {-1, CPSUI_OK}};
  for (const auto& expected : kResults) {
    sheetResult = expected;
    const LONG result = expected.first < 0 ? -1 : static_cast<LONG>(expected.second);
    EXPECT_EQ(prompt(), result);
    EXPECT_EQ(sheetHeader, std::pair(sizeof(DOCUMENTPROPERTYHEADER), DWORD{14}));
    EXPECT_EQ(advanced(), result);
    EXPECT_EQ(sheetHeader, std::pair(sizeof(DOCUMENTPROPERTYHEADER), DWORD{22}));
    machine().SetPermission(kPrinter, true, result > 0);
    EXPECT_EQ(properties(), result > 0);
    const DWORD flags = result > 0 ? 0 : DPS_NOPERMISSION;
    EXPECT_EQ(sheetHeader, std::pair(sizeof(DEVICEPROPERTYHEADER), flags));
  }
}

TEST_F(EntryPoints, JobAttributesFollowTheGivenRecord) {
  const support::OpenedPrinter printer;
  in_.Record.Public.dmPrintQuality = 305;
  in_.Record.Public.dmYResolution = 300;
  for (const DWORD level : {1u, 2u, 3u, 4u, 5u}) {
    for (DEVMODEW* input : {In(), static_cast<DEVMODEW*>(nullptr)}) {
      const bool resolution = level == 3 || level == 4;
      auto expected = std::vector(sizeof out_, std::byte{0xCD});
      if (resolution || level == 2) support::Put(expected.data(), 28, 0);
      if (resolution && input != nullptr) support::Put(expected.data(), 32, 300 << 16 | 305);
      EXPECT_FALSE(exports_.DrvQueryJobAttributes(printer, input, level, out_));
      EXPECT_EQ(BytesOf(out_), expected) << level;
      Describe(0);
    }
  }
  EXPECT_EQ(Describe(exports_.DrvQueryJobAttributes(nullptr, In(), 3, out_)), "0 error 6");
  EXPECT_FALSE(exports_.DrvQueryJobAttributes(printer, In(), 3, nullptr));
}

// When one platform call fails, an export returns the stored settings, the defaults or nothing, but
// never a mixture.
TEST_F(EntryPoints, WriteNothingOrWholeSettingsOnFailure) {
  using enum platform::Fault;
  const support::OpenedPrinter printer;
  auto stored = in_;
  stored.Record.Private.Position = 5;
  stored.Printer.PaperNum = 3;
  const std::pair<const char*, std::function<LONG()>> kCalls[] = {
      {"convert", [&] { return Convert(CDM_CONVERT, "", 452); }},
      {"default", [&] { return Convert(CDM_DRIVER_DEFAULT, "", 452); }},
      {"properties", [&] { return Resolve(printer, DM_COPY | DM_MODIFY, ""); }},
      {"papers",
       [&] {
         return exports_.DrvDeviceCapabilities(printer, name_.data(), DC_PAPERS, out_, In());
       }},
      {"names",
       [&] {
         return exports_.DrvSplDeviceCaps(printer, name_.data(), DC_MEDIAREADY, out_, 999, nullptr);
       }},
      {"attributes", [&] { return exports_.DrvQueryJobAttributes(printer, In(), 3, out_); }},
      {"initialise", [&] { return Event(PRINTER_EVENT_INITIALIZE); }}};
  std::string all;
  for (const auto& [name, call] : kCalls) {
    std::set<std::string> found;
    std::string outcome;
    const auto fresh = [&] {
      support::StoreBlock(machine(), stored);
      machine().RemoveData(kPrinter, u"SPLUserModePrinterDriver");
      const LONG result = call();
      const int position = At(out_, 436);
      outcome = Describe(result);
      if (outcome.ends_with("wrote 452")) outcome += " of " + std::to_string(position);
      const int papers = support::StoredPrinterPart(machine()).PaperNum;
      if (outcome == "1") outcome += " stored " + std::to_string(papers);
      if (machine().Data(kPrinter, u"SPLUserModePrinterDriver")) outcome += " module";
    };
    fresh();
    const std::string whole = outcome;
    const auto note = [&](platform::Fault kind, bool struck) {
      const bool wrote = outcome.find("wrote") != outcome.npos;
      // A printer that changes between two calls is queried again.
      EXPECT_TRUE(kind != kSpoolerChange || outcome == whole) << outcome;
      found.insert((kind == kAllocation && struck && !wrote ? "no memory: " : "") + outcome);
    };
    ForEachFault({kAllocation, kSpooler, kSpoolerChange, kFile, kModule, kRegistry}, fresh, note);
    for (const std::string& each : found) all += name + (": " + each) + '\n';
  }
  EXPECT_EQ(all, support::Golden("outcomes.txt"));
  // The last call has initialised the printer.
  EXPECT_EQ(Stored(u"SPLUserModePrinterDriver"), std::pair(REG_SZ, BytesOf(u"QM610rDRV2", 20)));
  EXPECT_EQ(Stored(u"Private DevMode"), std::pair(REG_BINARY, BytesOf(in_.Printer)));
  EXPECT_EQ(machine().AllData(kPrinter).size(), 2u);
}

}  // namespace
}  // namespace kestrel
