// What each entry point checks, answers and leaves behind, whatever fails meanwhile.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <set>
#include <tuple>

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
  // What is told: a record written, its size, the size asked for, nothing to do, a parameter that
  // is missing, a sheet cancelled at once.
  const std::map<std::string, char> kLetters = {
      {"452 wrote 452", 'w'},  {"1 wrote 452", 'w'}, {"452", '4'},
      {"-452 error 122", 's'}, {"1", '1'},           {"-452 error 87", '-'},
      {"-451 error 87", '-'},  {"-1 error 87", '-'}};
  const auto letter = [&](auto call) {
    const std::string told = Told(call);
    return told.starts_with("0 ") ? 'c' : kLetters.at(told);
  };
  std::string told;
  for (const DWORD mode : {CDM_CONVERT, CDM_DRIVER_DEFAULT, CDM_CONVERT351, DWORD{0}, DWORD{5}})
    for (const char* without : {"", "i", "o", "s", "p", "op"})
      for (const LONG size : {451, 452})
        told += letter([&] { return Convert(mode, without, size); });
  EXPECT_EQ(told, "sw------s---swswss--s-ss" + std::string(36, '-'));
  EXPECT_EQ(Told([&] { return Convert(CDM_CONVERT, "", -1); }), "-452 error 122");
  const support::OpenedPrinter printer;
  told.clear();
  for (const DWORD mode : {DWORD{0}, DM_UPDATE, DM_COPY, DM_MODIFY, DM_COPY | DM_MODIFY,
                           DM_COPY | DM_PROMPT, DM_PROMPT | DM_MODIFY, DWORD{256}})
    for (const char* without : {"", "i", "o", "io"})
      told += letter([&] { return Resolve(printer, mode, without); });
  EXPECT_EQ(told, "4444ww44ww--1-4-w---cc--c-c-1144");

  ULONG size = 452;
  DOCUMENTPROPERTYHEADER header = {sizeof header, 0, printer, name_.data(), nullptr, Out(), 7, 0};
  const auto address = reinterpret_cast<LPARAM>(&header);
  const std::pair<std::function<LONG()>, const char*> kCalls[] = {
      {[&] { return Resolve(nullptr, 0, "io"); }, "452"},
      {[&] {
         return exports_.DrvAdvancedDocumentProperties(nullptr, printer, nullptr, nullptr, In());
       },
       "-1 error 87"},
      {[&] { return exports_.DrvDocumentPropertySheets(nullptr, address); }, "452"},
      {[&] { return LONG(header.cbOut); }, "452"},
      {[&] { return LONG(header.fMode = DM_COPY); }, "2"},
      {[&] { return exports_.DrvDocumentPropertySheets(nullptr, address); }, "1 wrote 452"},
      {[&] { return exports_.DrvDocumentPropertySheets(nullptr, 0); }, "-1 error 0"},
      {[&] { return exports_.DrvDevicePropertySheets(nullptr, address); }, "-1 error 0"},
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
  for (const auto& row : kCalls) EXPECT_EQ(Told(row.first), row.second) << &row - kCalls;
  machine().SetPermission(kPrinter, false, true);  // initialisation needs administering rights
  told.clear();
  for (int event = -1; event < 10; ++event) told += Told([&] { return Event(event); }) + ", ";
  EXPECT_EQ(told, "0 error 87, 0 error 87, 1, 1, 1, 1, 1, 1, 1, 1, 0 error 87, ");
  EXPECT_TRUE(machine().AllData(kPrinter).empty()) << "nothing is stored";
  EXPECT_TRUE(machine().DefaultRecord(kPrinter).empty());
}

// In place of a sheet: the size of the header that it got and its mode or flags, and what it
// answers.
std::pair<size_t, DWORD> sheetAsked;
std::pair<LONG, DWORD> sheetAnswer;

LONG WINAPI PretendSheet(HWND, PFNPROPSHEETUI, LPARAM header, LPDWORD result) {
  const auto* device = reinterpret_cast<const DEVICEPROPERTYHEADER*>(header);
  const auto* document = reinterpret_cast<const DOCUMENTPROPERTYHEADER*>(header);
  sheetAsked = {device->cbSize, device->cbSize == sizeof *device ? device->Flags : document->fMode};
  *result = sheetAnswer.second;
  return sheetAnswer.first;
}

TEST_F(EntryPoints, SheetsTellTheirResult) {
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
  const std::pair<LONG, DWORD> kAnswers[] = {
      {1, CPSUI_CANCEL}, {0, CPSUI_OK}, {1, CPSUI_RESTARTWINDOWS}, {-1, CPSUI_OK}};
  for (const auto& answer : kAnswers) {
    sheetAnswer = answer;
    const LONG result = answer.first < 0 ? -1 : static_cast<LONG>(answer.second);
    EXPECT_EQ(prompt(), result);
    EXPECT_EQ(sheetAsked, std::pair(sizeof(DOCUMENTPROPERTYHEADER), DWORD{14}));
    EXPECT_EQ(advanced(), result);
    EXPECT_EQ(sheetAsked, std::pair(sizeof(DOCUMENTPROPERTYHEADER), DWORD{22}));
    machine().SetPermission(kPrinter, true, result > 0);
    EXPECT_EQ(properties(), result > 0);
    const DWORD flags = result > 0 ? 0 : DPS_NOPERMISSION;
    EXPECT_EQ(sheetAsked, std::pair(sizeof(DEVICEPROPERTYHEADER), flags));
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
  // The last of them has initialised the printer.
  const auto module = machine().Data(kPrinter, u"SPLUserModePrinterDriver").value();
  const auto part = machine().Data(kPrinter, u"Private DevMode").value();
  EXPECT_EQ(std::pair(module.type, module.bytes), std::pair(REG_SZ, BytesOf(u"QM610rDRV2", 20)));
  EXPECT_EQ(std::pair(part.type, part.bytes), std::pair(REG_BINARY, BytesOf(in_.Printer)));
  EXPECT_EQ(machine().AllData(kPrinter).size(), 2u);
}

}  // namespace
}  // namespace kestrel
