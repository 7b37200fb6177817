// What each entry point checks, answers and leaves behind, whatever fails meanwhile.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <set>

#include "tests/support/fault_walk.h"
#include "tests/support/settings.h"
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
  // What a call answers, the last error when it failed, and how far it wrote into out_.
  template <typename Call>
  std::string Told(Call call) {
    std::fill_n(out_, sizeof out_, BYTE{0xCD});
    SetLastError(0);
    const auto answer = static_cast<LONG>(call());
    std::string told = std::to_string(answer);
    if (answer <= 0) told += " error " + std::to_string(GetLastError());
    size_t written = sizeof out_;
    while (written > 0 && out_[written - 1] == 0xCD) --written;
    return written == 0 ? told : told + " wrote " + std::to_string(written);
  }
  // These lack what is named by its first letter: input, output, printer, size.
  static bool Given(std::string_view without, char what) {
    return without.find(what) == without.npos;
  }
  // The size that a conversion tells, below zero when it fails.
  LONG Convert(DWORD mode, std::string_view without, LONG size) {
    std::u16string nobody = u"No such printer";
    const BOOL done = exports_.DrvConvertDevMode(
        Given(without, 'p') ? name_.data() : nobody.data(), Given(without, 'i') ? In() : nullptr,
        Given(without, 'o') ? Out() : nullptr, Given(without, 's') ? &size : nullptr, mode);
    return done ? size : -size;
  }
  LONG Resolve(HANDLE printer, DWORD mode, std::string_view without) {
    return exports_.DrvDocumentProperties(nullptr, printer, name_.data(),
                                          Given(without, 'o') ? Out() : nullptr,
                                          Given(without, 'i') ? In() : nullptr, mode);
  }
  LONG Event(int event) { return exports_.DrvPrinterEvent(name_.data(), event, 0, 0); }

  std::u16string name_ = kPrinter;
  DriverSettingsBlock in_ = support::DefaultBlock();
  alignas(8) BYTE out_[3000];
};

TEST_F(EntryPoints, CheckTheirArgumentsInOrder) {
  const support::OpenedPrinter printer;
  ULONG size = 452;
  DOCUMENTPROPERTYHEADER header = {sizeof header, 0, printer, name_.data(), nullptr, Out(), 7, 0};
  const auto headerAddress = reinterpret_cast<LPARAM>(&header);
  const struct {
    std::function<LONG()> call;
    const char* told;
  } kCalls[] = {
      {[&] { return Convert(CDM_CONVERT, "", 452); }, "452 wrote 452"},
      {[&] { return Convert(CDM_CONVERT, "i", 100); }, "-100 error 87"},
      {[&] { return Convert(CDM_CONVERT, "o", 100); }, "-100 error 87"},
      {[&] { return Convert(CDM_CONVERT, "s", 100); }, "-100 error 87"},
      {[&] { return Convert(CDM_CONVERT, "p", 451); }, "-452 error 122"},
      {[&] { return Convert(CDM_CONVERT, "p", 999); }, "-999 error 87"},
      {[&] { return Convert(CDM_CONVERT, "", -1); }, "-452 error 122"},
      {[&] { return Convert(CDM_DRIVER_DEFAULT, "i", 999); }, "452 wrote 452"},
      {[&] { return Convert(CDM_DRIVER_DEFAULT, "s", 999); }, "-999 error 87"},
      {[&] { return Convert(CDM_DRIVER_DEFAULT, "", 451); }, "-452 error 122"},
      {[&] { return Convert(CDM_DRIVER_DEFAULT, "op", 999); }, "-452 error 122"},
      {[&] { return Convert(CDM_DRIVER_DEFAULT, "p", 999); }, "-999 error 87"},
      {[&] { return Convert(CDM_CONVERT351, "", 999); }, "-999 error 87"},
      {[&] { return Convert(0, "", 999); }, "-999 error 87"},
      {[&] { return Convert(5, "", 999); }, "-999 error 87"},
      {[&] { return Resolve(nullptr, 0, "io"); }, "452"},
      {[&] { return Resolve(printer, 0, ""); }, "452"},
      {[&] { return Resolve(printer, DM_COPY, "i"); }, "1 wrote 452"},
      {[&] { return Resolve(printer, DM_UPDATE, "i"); }, "1 wrote 452"},
      {[&] { return Resolve(printer, DM_UPDATE, "o"); }, "452"},
      {[&] { return Resolve(printer, DM_MODIFY, ""); }, "1"},
      {[&] { return Resolve(printer, DM_MODIFY, "i"); }, "-1 error 87"},
      {[&] { return Resolve(printer, DM_COPY | DM_MODIFY, ""); }, "1 wrote 452"},
      {[&] { return Resolve(printer, DM_COPY, "o"); }, "-1 error 87"},
      {[&] { return Resolve(printer, DM_COPY | DM_PROMPT, "o"); }, "-1 error 87"},
      {[&] { return Resolve(printer, DM_PROMPT | DM_MODIFY, "i"); }, "-1 error 87"},
      {[&] { return Resolve(printer, 0x100, "i"); }, "1"},
      {[&] {
         return exports_.DrvAdvancedDocumentProperties(nullptr, printer, nullptr, nullptr, In());
       },
       "-1 error 87"},
      {[&] { return exports_.DrvDocumentPropertySheets(nullptr, headerAddress); }, "452"},
      {[&] { return LONG(header.cbOut); }, "452"},
      {[&] { return LONG(header.fMode = DM_COPY); }, "2"},
      {[&] { return exports_.DrvDocumentPropertySheets(nullptr, headerAddress); }, "1 wrote 452"},
      {[&] { return exports_.DrvDocumentPropertySheets(nullptr, 0); }, "-1 error 0"},
      {[&] { return exports_.DrvDevicePropertySheets(nullptr, headerAddress); }, "-1 error 0"},
      {[&] { return exports_.DrvDevicePropertySheets(nullptr, 0); }, "-1 error 0"},
      {[&] { return exports_.DrvUpgradePrinter(0, out_); }, "0 error 87"},
      {[&] { return exports_.DrvUpgradePrinter(1, out_); }, "1"},
      {[&] { return exports_.DrvUpgradePrinter(2, out_); }, "1"},
      {[&] { return exports_.DrvUpgradePrinter(2, nullptr); }, "0 error 87"},
      {[&] { return exports_.DrvUpgradePrinter(3, out_); }, "0 error 87"},
      {[&] { return exports_.DevQueryPrint(nullptr, nullptr, &size); }, "1"},
      {[&] { return LONG(size); }, "0 error 0"},
      {[&] { return exports_.DevQueryPrint(nullptr, nullptr, nullptr); }, "1"},
      {[&] { return exports_.DevQueryPrintEx(nullptr); }, "1"},
      {[&] { return exports_.DrvDocumentEvent(nullptr, nullptr, 1, 9, out_, 9, out_); },
       "0 error 0"},
      {[&] { return exports_.DrvQueryColorProfile(nullptr, nullptr, 0, out_, &size, nullptr); },
       "0 error 50"},
  };
  for (const auto& row : kCalls) EXPECT_EQ(Told(row.call), row.told) << &row - kCalls;
  machine().SetPermission(kPrinter, false, true);  // initialisation needs administering rights
  std::string told;
  for (int event = -1; event < 10; ++event) told += Told([&] { return Event(event); }) + ", ";
  EXPECT_EQ(told, "0 error 87, 0 error 87, 1, 1, 1, 1, 1, 1, 1, 1, 0 error 87, ");
  EXPECT_TRUE(machine().AllData(kPrinter).empty()) << "nothing is stored";
  EXPECT_TRUE(machine().DefaultRecord(kPrinter).empty());
}

TEST_F(EntryPoints, InitialisationStoresDefaultsAndTheRenderingModule) {
  EXPECT_TRUE(Event(PRINTER_EVENT_INITIALIZE));
  const auto module = machine().Data(kPrinter, u"SPLUserModePrinterDriver").value();
  EXPECT_EQ(module.type, REG_SZ);
  EXPECT_EQ(module.bytes, BytesOf(u"QM610rDRV2", 20));
  const auto part = machine().Data(kPrinter, u"Private DevMode").value();
  EXPECT_EQ(part.type, REG_BINARY);
  EXPECT_EQ(part.bytes, BytesOf(&in_.Printer, 3338));
  EXPECT_EQ(machine().AllData(kPrinter).size(), 2u);
}

// What the sheet library was called with, in place of a sheet, and what it answers.
std::pair<PFNPROPSHEETUI, std::vector<std::byte>> sheetCall;
std::pair<LONG, DWORD> sheetAnswer;

LONG WINAPI PretendSheet(HWND, PFNPROPSHEETUI sheets, LPARAM header, LPDWORD result) {
  const void* bytes = reinterpret_cast<const void*>(header);
  sheetCall = {sheets, BytesOf(bytes, *static_cast<const WORD*>(bytes))};
  *result = sheetAnswer.second;
  return sheetAnswer.first;
}

TEST_F(EntryPoints, SheetsGetTheirHeaderAndTellTheirResult) {
  const support::OpenedPrinter printer;
  const auto properties = [&] { return exports_.PrinterProperties(nullptr, printer); };
  const auto prompt = [&] { return Resolve(printer, DM_COPY | DM_PROMPT | DM_MODIFY, ""); };
  const auto advanced = [&] {
    return exports_.DrvAdvancedDocumentProperties(nullptr, printer, name_.data(), Out(), In());
  };
  machine().faults.FailFrom(platform::Fault::kModule, 1);
  EXPECT_EQ(Told(prompt) + ", " + Told(properties), "-1 error 126, 0 error 126");
  machine().faults.Clear();
  machine().RegisterModule(u"compstui.dll", {});  // without its function
  EXPECT_EQ(Told(prompt) + ", " + Told(properties), "-1 error 127, 0 error 127");
  const auto permission = machine().Data(kPrinter, u"Permission").value();
  EXPECT_EQ(permission.type, REG_DWORD);
  EXPECT_EQ(permission.bytes, BytesOf(DWORD{1}));

  machine().RegisterModule(
      u"compstui.dll", {{"CommonPropertySheetUIW",
                         reinterpret_cast<FARPROC>(reinterpret_cast<void (*)()>(PretendSheet))}});
  DOCUMENTPROPERTYHEADER document = {sizeof document, 0, printer, name_.data(), In(), Out(), 0, 0};
  DEVICEPROPERTYHEADER device = {sizeof device, 0, printer, nullptr};
  for (const auto& answer : {std::pair<LONG, DWORD>{1, CPSUI_CANCEL},
                             {0, CPSUI_OK},
                             {1, CPSUI_RESTARTWINDOWS},
                             {-1, CPSUI_OK}}) {
    sheetAnswer = answer;
    const LONG expected = answer.first < 0 ? -1 : static_cast<LONG>(answer.second);
    EXPECT_EQ(prompt(), expected);
    document.fMode = DM_COPY | DM_PROMPT | DM_MODIFY;
    EXPECT_EQ(sheetCall, std::pair(exports_.DrvDocumentPropertySheets, BytesOf(document)));
    EXPECT_EQ(advanced(), expected);
    document.fMode = 22;
    EXPECT_EQ(sheetCall, std::pair(exports_.DrvDocumentPropertySheets, BytesOf(document)));
    for (const bool permitted : {true, false}) {
      machine().SetPermission(kPrinter, true, permitted);
      EXPECT_EQ(properties(), expected > 0);
      device.Flags = permitted ? WORD{0} : WORD{DPS_NOPERMISSION};
      EXPECT_EQ(sheetCall, std::pair(exports_.DrvDevicePropertySheets, BytesOf(device)));
    }
  }
}

TEST_F(EntryPoints, JobAttributesFollowTheGivenRecord) {
  const support::OpenedPrinter printer;
  in_.Record.Public.dmPrintQuality = 305;
  in_.Record.Public.dmYResolution = 300;
  for (const DWORD level : {1u, 2u, 3u, 4u, 5u}) {
    for (DEVMODEW* input : {In(), static_cast<DEVMODEW*>(nullptr)}) {
      const bool resolution = level == 3 || level == 4;
      std::vector<std::byte> expected(sizeof out_, std::byte{0xCD});
      if (resolution || level == 2) support::Put(expected.data(), 28, 0);
      if (resolution && input != nullptr) support::Put(expected.data(), 32, 300 << 16 | 305);
      Told([&] { return exports_.DrvQueryJobAttributes(printer, input, level, out_); });
      EXPECT_EQ(BytesOf(out_), expected) << level;
    }
  }
  EXPECT_EQ(Told([&] { return exports_.DrvQueryJobAttributes(nullptr, In(), 3, out_); }),
            "0 error 6");
  EXPECT_FALSE(exports_.DrvQueryJobAttributes(printer, In(), 3, nullptr));
}

// Every allocation, spooler, file, module and registry call in turn fails once: what comes out is
// what is stored or the defaults, never a mixture, or nothing.
TEST_F(EntryPoints, AnswerWholeOrNotAtAllWhateverFails) {
  using enum platform::Fault;
  const support::OpenedPrinter printer;
  auto stored = in_;
  stored.Record.Private.Position = 5;
  stored.Printer.PaperNum = 3;
  const struct {
    std::function<LONG()> call;
    std::set<std::string> outcomes;
  } kCalls[] = {
      {[&] { return Convert(CDM_CONVERT, "", 452); },
       {"452 wrote 452 of 5", "452 wrote 452 of 1", "-452 error 87", "no memory: 0 error 0"}},
      {[&] { return Convert(CDM_DRIVER_DEFAULT, "", 452); },
       {"452 wrote 452 of 5", "452 wrote 452 of 1", "-452 error 87", "no memory: 0 error 0"}},
      {[&] { return Resolve(printer, DM_COPY | DM_MODIFY, ""); },
       {"1 wrote 452 of 5", "1 wrote 452 of 1", "no memory: 0 error 0"}},
      {[&] { return exports_.DrvDeviceCapabilities(printer, name_.data(), DC_PAPERS, out_, In()); },
       {"4 wrote 8", "2 wrote 4", "no memory: -1 error 0"}},
      {[&] {
         return exports_.DrvSplDeviceCaps(printer, name_.data(), DC_MEDIAREADY, out_, 999, nullptr);
       },
       {"4 wrote 512", "2 wrote 256", "no memory: -1 error 0"}},
      {[&] { return exports_.DrvQueryJobAttributes(printer, In(), 3, out_); },
       {"0 error 122 wrote 36", "0 error 1722", "no memory: 0 error 122", "no memory: 0 error 8"}},
      {[&] { return Event(PRINTER_EVENT_INITIALIZE); },
       {"1 stored 1 module", "1 stored 1", "1 stored 3 module", "1 stored 3",
        "no memory: 1 stored 1 module", "no memory: 1 stored 3 module"}},
  };
  for (const auto& [call, outcomes] : kCalls) {
    std::set<std::string> found;
    std::string told;
    const auto fresh = [&] {
      support::StoreBlock(machine(), stored);
      machine().RemoveData(kPrinter, u"SPLUserModePrinterDriver");
      told = Told(call);
      if (told.ends_with("wrote 452")) told += " of " + std::to_string(At(out_, 436));
      const int papers = support::KeptPrinterPart(machine()).PaperNum;
      if (told == "1") told += " stored " + std::to_string(papers);
      if (machine().Data(kPrinter, u"SPLUserModePrinterDriver")) told += " module";
    };
    const auto note = [&](platform::Fault kind, bool struck) {
      const bool wrote = told.find("wrote") != told.npos;
      found.insert((kind == kAllocation && struck && !wrote ? "no memory: " : "") + told);
    };
    support::WalkFaults(machine(), {kAllocation, kSpooler, kFile, kModule, kRegistry}, fresh, note);
    EXPECT_EQ(found, outcomes);
  }
}

}  // namespace
}  // namespace kestrel
