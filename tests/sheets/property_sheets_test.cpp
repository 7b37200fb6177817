// The two property-sheet functions, called as by the sheet library; a replacement records their
// calls.
#include <windows.h>
#include <winddiui.h>

#include <memory>
#include <sstream>

#include "driver/instance.h"
#include "driver/resolve_settings.h"
#include "paper/paper_table.h"
#include "platform/comctl32/property_sheet.h"
#include "platform/machine/guard.h"
#include "platform/machine/text.h"
#include "resources/resource.h"
#include "sheets/page_services.h"
#include "sheets/ui_session.h"
#include "tests/support/test_machine.h"

namespace kestrel {
namespace {

using support::kPrinter;
using support::Words;

// The calls of the sheet library: function and two parameters each.
std::vector<ULONG_PTR> calls;
size_t refuseAt;  // the number of the call that returns 0, counted from 1; 0: none

LONG_PTR CALLBACK RecordCall(HANDLE sheet, UINT function, LPARAM first, LPARAM second) {
  EXPECT_EQ(sheet, reinterpret_cast<HANDLE>(0x77));
  for (const ULONG_PTR word : Words(function, first, second)) calls.push_back(word);
  return calls.size() / 3 == refuseAt ? 0 : static_cast<LONG_PTR>(1000 + calls.size() / 3);
}

class PropertySheets : public support::MachineTest {
 protected:
  PropertySheets() { refuseAt = 0; }
  LONG Call(WORD reason, const void* parameter = nullptr) {
    const void* header = isDevice ? static_cast<void*>(&device) : &document;
    info.Reason = reason;
    info.lParamInit = reinterpret_cast<LPARAM>(header);
    const auto function =
        isDevice ? exports_.DrvDevicePropertySheets : exports_.DrvDocumentPropertySheets;
    return function(&info, reinterpret_cast<LPARAM>(parameter));
  }
  LONG SetResult(LRESULT result) {
    const SETRESULT_INFO set = {sizeof(set), 0, nullptr, result};
    return Call(PROPSHEETUI_REASON_SET_RESULT, &set);
  }
  // Destroys the pages that the sheet library accepted, as it would.
  void DropPages() {
    for (size_t i = 0; i < calls.size() && i / 3 + 1 != refuseAt; i += 3) {
      if (calls[i] != CPSFUNC_ADD_HPROPSHEETPAGE) continue;
      DestroyPropertySheetPage(reinterpret_cast<HPROPSHEETPAGE>(calls[i + 1]));
    }
    calls.clear();
  }
  LONG End() { return DropPages(), Call(PROPSHEETUI_REASON_DESTROY); }
  // Checks the COMPROPSHEETUI of a page.
  void ExpectPageSheet(int i) {
    const auto& sheet = *reinterpret_cast<const COMPROPSHEETUI*>(calls[3 * i + 1]);
    EXPECT_EQ(
        Words(sheet.cbSize, sheet.Flags, sheet.hInstCaller, *sheet.pCallerName, sheet.UserData,
              sheet.pHelpFile, sheet.pfnCallBack, sheet.cOptItem, sheet.pOptItem->DMPubID,
              sheet.cDlgPage, sheet.IconID, *sheet.pOptItemName, sheet.CallerVersion,
              sheet.OptItemVersion),
        Words(sizeof(sheet), session().permission ? CPSUIF_UPDATE_PERMISSION : 0, ModuleInstance(),
              0, info.UserData, session().helpFile, 0, 1, 100 + i, 1, 0, 0, 0x0E01, 0));
    EXPECT_TRUE(std::u16string_view(sheet.pHelpFile).ends_with(u"\\QM610rDRV1.HLP"));
    const DLGPAGE& page = *sheet.pDlgPage;
    const PageEntry& entry = session().pages[i];
    EXPECT_EQ(Words(page.cbSize, page.Flags, page.DlgProc, page.pTabName, page.DlgTemplateID),
              Words(sizeof(page), 0, entry.procedure, nullptr, entry.templateId));
    EXPECT_NE(calls[3 * i + 2], 0u) << "a buffer for the result";
  }
  DriverUiData& session() { return *reinterpret_cast<DriverUiData*>(info.UserData); }

  const support::OpenedPrinter printer_;
  WCHAR name_[32] = TEXT("Label Printer");
  SettingsRecord output = {};
  DOCUMENTPROPERTYHEADER document = {sizeof(document), 0, printer_,           name_, nullptr,
                                     &output.Public,   0, DM_COPY | DM_PROMPT};
  DEVICEPROPERTYHEADER device = {sizeof(device), 0, printer_, nullptr};
  PROPSHEETUI_INFO info = {sizeof(info), 0, 0, 0, reinterpret_cast<HANDLE>(0x77),
                           RecordCall,   0, 0, 0};
  bool isDevice = false;
};

// Replacements of the activation context functions. They record their calls and the number of
// pages.
std::string contexts;
template <typename Value>
BOOL Note(const char* what, Value value) {
  contexts += what + std::to_string((ULONG_PTR)value) + ':' +
              std::to_string(platform::LivePropertySheetPages()) + ' ';
  return TRUE;
}
HANDLE WINAPI Create(PCACTCTXW context) {
  Note("create", context->lpResourceName);
  return reinterpret_cast<HANDLE>(81);
}
BOOL WINAPI Activate(HANDLE context, ULONG_PTR* cookie) {
  *cookie = 9;
  return Note("on", context);
}
BOOL WINAPI Deactivate(DWORD, ULONG_PTR cookie) { return Note("off", cookie); }
void WINAPI Release(HANDLE context) { Note("release", context); }

TEST_F(PropertySheets, PagesAreCreatedWithinTheManifestsContextIfSupported) {
  // Windows 2000 exports none of the four functions; all four are needed.
  const platform::Machine::EntryPoints all = {
      {"CreateActCtxW", platform::AsEntryPoint(Create)},
      {"ActivateActCtx", platform::AsEntryPoint(Activate)},
      {"DeactivateActCtx", platform::AsEntryPoint(Deactivate)},
      {"ReleaseActCtx", platform::AsEntryPoint(Release)}};
  for (const auto& some : {platform::Machine::EntryPoints(), {*all.begin()}, all}) {
    EXPECT_EQ(contexts, "");
    machine().RegisterModule(u"kernel32.dll", some);
    ASSERT_EQ(Call(PROPSHEETUI_REASON_INIT), 1);
    EXPECT_EQ(platform::LivePropertySheetPages(), 6);
    End();
  }
  EXPECT_EQ(contexts,
            "create2:0 on81:0 off9:1 on81:1 off9:2 on81:2 off9:3 on81:3 off9:4 on81:4 off9:5 "
            "on81:5 off9:6 release81:6 ");
}

TEST_F(PropertySheets, InvalidSessionsAndReasonsReturnMinusOne) {
  EXPECT_EQ(Call(PROPSHEETUI_REASON_GET_INFO_HEADER), -1) << "no session";
  info.lParamInit = 0;
  info.Reason = PROPSHEETUI_REASON_INIT;
  EXPECT_EQ(exports_.DrvDocumentPropertySheets(&info, 0), -1);
  ASSERT_EQ(Call(PROPSHEETUI_REASON_INIT), 1);
  EXPECT_EQ(info.Result, 0u);
  for (const WORD reason : {PROPSHEETUI_REASON_SET_RESULT, PROPSHEETUI_REASON_GET_INFO_HEADER,
                            WORD{PROPSHEETUI_REASON_SET_RESULT + 1}})
    EXPECT_EQ(Call(reason), -1);
  // A block that is not a session, and one with a wrong size.
  const auto foreign = std::make_unique<DriverUiData>();
  const ULONG_PTR good = std::exchange(info.UserData, reinterpret_cast<ULONG_PTR>(foreign.get()));
  foreign->self = foreign.get();
  foreign->size = sizeof(DriverUiData);
  EXPECT_EQ(SetResult(CPSUI_OK), -1);
  foreign->selfEnd = foreign.get();
  foreign->size = sizeof(DriverUiData) - 1;
  EXPECT_EQ(SetResult(CPSUI_OK), -1);
  info.UserData = good;
  EXPECT_EQ(End(), 1);
  EXPECT_EQ(Call(PROPSHEETUI_REASON_DESTROY), -1);
}

// Windows 2000 does not terminate a path that fills the buffer.
TEST_F(PropertySheets, ProgramWithALongPathGetsADocumentSession) {
  machine().SetOs({.major = 5});
  machine().SetExecutablePath(machine().windowsDirectory() + u"\\" + std::u16string(300, u'e'));
  document.pdmOut = document.pdmIn;
  document.cbOut = 0;
  ASSERT_EQ(Call(PROPSHEETUI_REASON_INIT), 1);
  EXPECT_EQ(session().mode, kDocumentSession);
  EXPECT_EQ(End(), 1);
}

// golden/ways.txt: the result for each kind of header, system, mode and sheet result.
TEST_F(PropertySheets, CopyAndStoreByKindPermissionAndResult) {
  SettingsRecord input = {};
  ASSERT_TRUE(ResolveSettings(&input, nullptr, printer_, kPrinter, DM_COPY));
  input.Private.nPrintSpeed = 2;
  for (const std::string& row : support::GoldenRows("ways.txt")) {
    SCOPED_TRACE(row);
    std::istringstream way(row);
    DWORD os, mode;
    LRESULT result;
    std::string program, record, expected;
    way >> isDevice >> os >> std::hex >> mode >> std::dec >> result >> refuseAt >> program >>
        record;
    std::getline(way >> document.cbOut, expected);
    machine().SetOs({.major = os / 10, .minor = os % 10});
    machine().SetExecutablePath(machine().windowsDirectory() + u"\\" + platform::ToUtf16(program));
    document.fMode = mode;
    device.Flags = static_cast<WORD>(mode);
    SettingsRecord same = input, other = input;
    document.pdmIn = &same.Public;
    document.pdmOut = record == "same" ? &same.Public : &other.Public;
    machine().RemoveData(kPrinter, u"Private DevMode");
    const size_t broadcasts = machine().Broadcasts().size();
    const int blocks = machine().LiveAllocations();

    const LONG started = Call(PROPSHEETUI_REASON_INIT);
    std::string actual = " ";
    for (size_t i = 0; i < calls.size(); i += 3)
      actual += calls[i] == CPSFUNC_ADD_HPROPSHEETPAGE ? 'P' : 'S';
    if (started == 1) {
      DriverUiData& made = session();
      // The session of a DLL has the same layout here: its size and the offset of its last member.
      ASSERT_TRUE(IsValidUiSession(&made));
      EXPECT_EQ(made.tableError, kTablesClosed);
      EXPECT_EQ(made.block.Record.Private.nPrintSpeed, isDevice ? 1 : 2);
      actual += " " + std::to_string(made.mode) + (made.permission ? "p" : "-") +
                (made.fonts.Loaded ? "f" : "-");
      for (size_t i = 0; i < calls.size() / 3; ++i) {
        EXPECT_EQ(made.pageHandles[i], static_cast<LONG_PTR>(1001 + i));
        if (calls[3 * i] == CPSFUNC_ADD_PCOMPROPSHEETUIW) ExpectPageSheet(static_cast<int>(i));
      }
      PROPSHEETUI_INFO_HEADER header = {};
      EXPECT_EQ(Call(PROPSHEETUI_REASON_GET_INFO_HEADER, &header), 1);
      EXPECT_EQ(Words(header.Flags, header.hInst, header.IconID),
                Words(6, ModuleInstance(), 64062));
      EXPECT_TRUE(isDevice ? header.pTitle == MAKEINTRESOURCEW(64717) : *header.pTitle == 0);
      made.block.Record.Private.PaperID = kFreePaperId;
      made.block.Printer.Mecha = 2;
      EXPECT_EQ(SetResult(result), 1);
      EXPECT_EQ(info.Result, static_cast<ULONG_PTR>(result));
      const auto& out = *reinterpret_cast<const SettingsRecord*>(document.pdmOut);
      const bool copied =
          out.Public.dmPaperSize == kFreePaperId;  // the public fields are refreshed
      EXPECT_EQ(support::BytesOf(out), support::BytesOf(copied ? made.block.Record : input));
      if (copied) actual += " copied";
      const size_t before = calls.size();
      EXPECT_TRUE(ConfirmSheetResult(made));
      EXPECT_EQ(std::vector(calls.end() - 3, calls.end()),
                Words(CPSFUNC_SET_RESULT, 1001, CPSUI_OK));
      refuseAt = calls.size() / 3 + 1;
      EXPECT_FALSE(ConfirmSheetResult(made));
      made.pages[0].kind = kPageTreeView;
      EXPECT_FALSE(ConfirmSheetResult(made));
      EXPECT_EQ(calls.size(), before + 6);
      refuseAt = 0;
      End();
    } else {
      actual += " refused";
      EXPECT_EQ(info.UserData, 0u);
      DropPages();
    }
    EXPECT_EQ(machine().LiveAllocations(), blocks);
    EXPECT_EQ(platform::LivePropertySheetPages(), 0);
    const bool stored = machine().Data(kPrinter, u"Private DevMode").has_value();
    ASSERT_EQ(machine().Broadcasts().size(), broadcasts + stored);
    if (stored) {
      actual += " stored";
      // The printer has no stored settings that printer properties could load again.
      EXPECT_EQ(support::StoredPrinterPart(machine()).Mecha, 2);
      EXPECT_EQ(machine().Broadcasts().back().message, WM_DEVMODECHANGE);
      EXPECT_EQ(machine().Broadcasts().back().text, kPrinter);
    }
    EXPECT_EQ(actual, expected);
  }
}

}  // namespace
}  // namespace kestrel
