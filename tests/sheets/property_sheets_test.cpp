// The two property-sheet functions as the sheet library calls them, with a library that records.
#include <windows.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <winddiui.h>

#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "driver/instance.h"
#include "driver/resolve_settings.h"
#include "paper/paper_table.h"
#include "platform/desktop/libraries/sheet.h"
#include "platform/system/guard.h"
#include "resources/resource.h"
#include "sheets/page_services.h"
#include "sheets/ui_session.h"
#include "tests/support/fault_walk.h"
#include "tests/support/settings.h"
#include "tests/support/test_machine.h"

namespace kestrel {
namespace {

using platform::Fault;

using support::kPrinter;

// What the sheet library was asked.
struct Call {
  UINT function;
  LPARAM first, second;
};
std::vector<Call> calls;
int refuseAt;  // the call with this number (1 is the first) is answered with 0; 0: none

LONG_PTR CALLBACK RecordCall(HANDLE sheet, UINT function, LPARAM first, LPARAM second) {
  EXPECT_EQ(sheet, reinterpret_cast<HANDLE>(0x77));
  calls.push_back({function, first, second});
  if (static_cast<int>(calls.size()) == refuseAt) return 0;
  return 1000 + static_cast<LONG_PTR>(calls.size());
}

class PropertySheetsTest : public support::MachineTest {
 protected:
  void SetUp() override {
    MachineTest::SetUp();
    printer_.emplace();
    calls.clear();
    refuseAt = 0;
    document = {sizeof(document), 0, *printer_,          name_, nullptr,
                &output.Public,   0, DM_COPY | DM_PROMPT};
    device = {sizeof(device), 0, *printer_, nullptr};
    info.cbSize = sizeof(info);
    info.hComPropSheet = reinterpret_cast<HANDLE>(0x77);
    info.pfnComPropSheet = RecordCall;
    std::memset(&output, 0xAA, sizeof(output));
  }
  void TearDown() override {
    if (info.UserData != 0) Ask(PROPSHEETUI_REASON_DESTROY);
    DropPages();
    EXPECT_EQ(platform::LivePropertySheetPages(), 0);
    printer_.reset();
    MachineTest::TearDown();
  }

  // Pages that were taken are the sheet library's to destroy.
  void DropPages() {
    for (const Call& call : calls) {
      if (call.function == CPSFUNC_ADD_HPROPSHEETPAGE) {
        DestroyPropertySheetPage(reinterpret_cast<HPROPSHEETPAGE>(call.first));
      }
    }
    calls.clear();
  }
  LONG Ask(WORD reason, LPARAM parameter = 0) {
    info.Reason = reason;
    info.lParamInit =
        isDevice ? reinterpret_cast<LPARAM>(&device) : reinterpret_cast<LPARAM>(&document);
    return isDevice ? exports_.DrvDevicePropertySheets(&info, parameter)
                    : exports_.DrvDocumentPropertySheets(&info, parameter);
  }
  LONG SetResult(LRESULT result) {
    SETRESULT_INFO set = {sizeof(set), 0, nullptr, result};
    return Ask(PROPSHEETUI_REASON_SET_RESULT, reinterpret_cast<LPARAM>(&set));
  }
  DriverUiData& session() { return *reinterpret_cast<DriverUiData*>(info.UserData); }

  std::optional<support::OpenedPrinter> printer_;
  WCHAR name_[32] = TEXT("Label Printer");
  SettingsRecord output;
  DOCUMENTPROPERTYHEADER document;
  DEVICEPROPERTYHEADER device;
  PROPSHEETUI_INFO info = {};
  bool isDevice = false;
};

TEST_F(PropertySheetsTest, HostPagesByTheOldRoadBeforeXp) {
  const struct {
    DWORD major, minor;
    UINT function;
  } kCases[] = {{5, 0, CPSFUNC_ADD_PCOMPROPSHEETUIW},
                {5, 1, CPSFUNC_ADD_HPROPSHEETPAGE},
                {10, 0, CPSFUNC_ADD_HPROPSHEETPAGE}};
  for (const auto& c : kCases) {
    machine().SetOs({.major = c.major, .minor = c.minor});
    DropPages();
    ASSERT_EQ(Ask(PROPSHEETUI_REASON_INIT), 1);
    // What a DLL made reads alike here: its size and the place of its last member.
    ASSERT_TRUE(IsValidUiSession(&session()));
    ASSERT_EQ(calls.size(), 6u);
    for (int i = 0; i < 6; ++i) EXPECT_EQ(session().pageHandles[i], 1001 + i);
    EXPECT_EQ(calls[5].function, c.function);
    if (c.function == CPSFUNC_ADD_PCOMPROPSHEETUIW) {
      const auto& sheet = *reinterpret_cast<const COMPROPSHEETUI*>(calls[5].first);
      EXPECT_EQ(sheet.cbSize, sizeof(COMPROPSHEETUI));
      EXPECT_EQ(sheet.Flags, CPSUIF_UPDATE_PERMISSION);
      EXPECT_EQ(sheet.hInstCaller, ModuleInstance());
      EXPECT_EQ(std::u16string(sheet.pCallerName), u"");
      EXPECT_EQ(sheet.UserData, info.UserData);
      EXPECT_EQ(sheet.pHelpFile, session().helpFile);
      EXPECT_NE(std::u16string(sheet.pHelpFile).find(u"QM610rDRV1.HLP"), std::u16string::npos);
      ASSERT_EQ(sheet.cOptItem, 1);
      EXPECT_EQ(sheet.pOptItem[0].DMPubID, 105);
      ASSERT_EQ(sheet.cDlgPage, 1);
      EXPECT_EQ(sheet.pDlgPage->cbSize, sizeof(DLGPAGE));
      EXPECT_EQ(sheet.pDlgPage->DlgTemplateID, IDD_UTILITY);
      EXPECT_EQ(sheet.pDlgPage->DlgProc, session().pages[5].procedure);
      EXPECT_EQ(sheet.CallerVersion, 0x0E01);
      EXPECT_NE(calls[5].second, 0);
    }
    Ask(PROPSHEETUI_REASON_DESTROY);
  }
}

// The system's functions for activation contexts, recorded with the pages that there are meanwhile.
struct Contexts {
  static inline std::vector<std::string> log;
  static void Note(const char* what) {
    log.push_back(what + std::to_string(platform::LivePropertySheetPages()));
  }
  static HANDLE WINAPI Create(PCACTCTXW context) {
    EXPECT_EQ(context->lpResourceName, ISOLATIONAWARE_MANIFEST_RESOURCE_ID);
    Note("create ");
    return reinterpret_cast<HANDLE>(0x51);
  }
  static BOOL WINAPI Activate(HANDLE context, ULONG_PTR* cookie) {
    EXPECT_EQ(context, reinterpret_cast<HANDLE>(0x51));
    *cookie = 9;
    Note("on ");
    return TRUE;
  }
  static BOOL WINAPI Deactivate(DWORD, ULONG_PTR cookie) {
    EXPECT_EQ(cookie, 9u);
    Note("off ");
    return TRUE;
  }
  static void WINAPI Release(HANDLE) { Note("release "); }
};

TEST_F(PropertySheetsTest, CreateThePagesWithinTheManifestsContextWhereThereIsOne) {
  // Windows 2000 has none of the four; one alone is of no use.
  for (bool some : {false, true}) {
    platform::Machine::EntryPoints few;
    if (some) few["CreateActCtxW"] = platform::AsEntryPoint(Contexts::Create);
    machine().RegisterModule(u"kernel32.dll", few);
    ASSERT_EQ(Ask(PROPSHEETUI_REASON_INIT), 1);
    EXPECT_EQ(platform::LivePropertySheetPages(), 6);
    Ask(PROPSHEETUI_REASON_DESTROY);
    DropPages();
  }
  EXPECT_TRUE(Contexts::log.empty());
  machine().RegisterModule(u"kernel32.dll",
                           {{"CreateActCtxW", platform::AsEntryPoint(Contexts::Create)},
                            {"ActivateActCtx", platform::AsEntryPoint(Contexts::Activate)},
                            {"DeactivateActCtx", platform::AsEntryPoint(Contexts::Deactivate)},
                            {"ReleaseActCtx", platform::AsEntryPoint(Contexts::Release)}});
  ASSERT_EQ(Ask(PROPSHEETUI_REASON_INIT), 1);
  EXPECT_THAT(Contexts::log,
              testing::ElementsAre("create 0", "on 0", "off 1", "on 1", "off 2", "on 2", "off 3",
                                   "on 3", "off 4", "on 4", "off 5", "on 5", "off 6", "release 6"));
}

TEST_F(PropertySheetsTest, CloseWhenAPageIsRefused) {
  for (DWORD major : {5u, 10u}) {
    machine().SetOs({.major = major});
    const int blocks = machine().LiveAllocations();
    for (refuseAt = 1; refuseAt <= 6; ++refuseAt) {
      EXPECT_EQ(Ask(PROPSHEETUI_REASON_INIT), -1);
      EXPECT_EQ(static_cast<int>(calls.size()), refuseAt);
      EXPECT_EQ(info.UserData, 0u);
      calls.pop_back();  // the refused page is gone
      DropPages();
      EXPECT_EQ(platform::LivePropertySheetPages(), 0);
      EXPECT_EQ(machine().LiveAllocations(), blocks);
    }
  }
}

TEST_F(PropertySheetsTest, AnswerMinusOneToWhatTheyDoNotKnow) {
  EXPECT_EQ(Ask(PROPSHEETUI_REASON_GET_INFO_HEADER), -1);  // no session
  info.lParamInit = 0;
  info.Reason = PROPSHEETUI_REASON_INIT;
  EXPECT_EQ(exports_.DrvDocumentPropertySheets(&info, 0), -1);
  ASSERT_EQ(Ask(PROPSHEETUI_REASON_INIT), 1);
  EXPECT_EQ(info.Result, 0u);
  EXPECT_EQ(Ask(PROPSHEETUI_REASON_GET_ICON), -1);
  EXPECT_EQ(Ask(PROPSHEETUI_REASON_BEFORE_INIT), -1);
  EXPECT_EQ(Ask(PROPSHEETUI_REASON_SET_RESULT), -1);
  // A block that is no session, and one whose end was overwritten.
  const ULONG_PTR good = info.UserData;
  const auto foreign = std::make_unique<DriverUiData>();
  info.UserData = reinterpret_cast<ULONG_PTR>(foreign.get());
  foreign->self = foreign.get();
  foreign->size = sizeof(DriverUiData);
  EXPECT_EQ(SetResult(CPSUI_OK), -1);
  foreign->selfEnd = foreign.get();
  foreign->size = sizeof(DriverUiData) - 1;
  EXPECT_EQ(SetResult(CPSUI_OK), -1);
  info.UserData = good;
  EXPECT_EQ(Ask(PROPSHEETUI_REASON_DESTROY), 1);
  EXPECT_EQ(Ask(PROPSHEETUI_REASON_DESTROY), -1);
}

TEST_F(PropertySheetsTest, DescribeTheSheet) {
  for (bool asDevice : {false, true}) {
    isDevice = asDevice;
    ASSERT_EQ(Ask(PROPSHEETUI_REASON_INIT), 1);
    PROPSHEETUI_INFO_HEADER header = {};
    ASSERT_EQ(Ask(PROPSHEETUI_REASON_GET_INFO_HEADER, reinterpret_cast<LPARAM>(&header)), 1);
    EXPECT_EQ(header.Flags, 6);
    EXPECT_EQ(header.hInst, ModuleInstance());
    EXPECT_EQ(header.IconID, 64062u);
    if (asDevice) {
      EXPECT_EQ(header.pTitle, MAKEINTRESOURCEW(64717));
    } else {
      EXPECT_EQ(std::u16string(header.pTitle), u"");
    }
    Ask(PROPSHEETUI_REASON_DESTROY);
    DropPages();
  }
}

// What each kind of session hands out and stores, by result and permission.
TEST_F(PropertySheetsTest, HandOutAndStoreByKindPermissionAndResult) {
  const struct {
    const char* what;
    bool device;
    DWORD mode;  // fMode, or Flags of a device header
    LRESULT result;
    bool copies, stores;
  } kCases[] = {
      {"document OK", false, DM_COPY, CPSUI_OK, true, false},
      {"document OK by DM_UPDATE", false, DM_UPDATE, CPSUI_OK, true, false},
      {"document OK without output mode", false, DM_PROMPT, CPSUI_OK, false, false},
      {"document restart", false, DM_COPY, CPSUI_RESTARTWINDOWS, false, false},
      {"document cancel", false, DM_COPY, CPSUI_CANCEL, false, false},
      {"user default cancel", false, DM_COPY | DM_USER_DEFAULT, CPSUI_CANCEL, false, false},
      {"printer cancel", true, 0, CPSUI_CANCEL, false, false},
      {"advanced OK", false, DM_COPY | DM_ADVANCED | DM_USER_DEFAULT, CPSUI_OK, true, false},
      {"user default OK", false, DM_COPY | DM_USER_DEFAULT, CPSUI_OK, true, true},
      {"user default OK, no permission", false, DM_COPY | DM_USER_DEFAULT | DM_NOPERMISSION,
       CPSUI_OK, true, false},
      {"printer OK", true, 0, CPSUI_OK, false, true},
      {"printer OK, no permission", true, DPS_NOPERMISSION, CPSUI_OK, false, true},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    isDevice = c.device;
    document.fMode = c.mode;
    device.Flags = static_cast<WORD>(c.mode);
    std::memset(&output, 0xAA, sizeof(output));
    machine().RemoveData(kPrinter, u"Private DevMode");
    const size_t broadcasts = machine().Broadcasts().size();
    ASSERT_EQ(Ask(PROPSHEETUI_REASON_INIT), 1);
    session().settings->Record.Private.PaperID = kFreePaperId;
    session().settings->Printer.Mecha = 2;
    EXPECT_EQ(SetResult(c.result), 1);
    EXPECT_EQ(info.Result, static_cast<ULONG_PTR>(c.result));

    SettingsRecord untouched;
    std::memset(&untouched, 0xAA, sizeof(untouched));
    if (c.copies) {
      EXPECT_EQ(output.Private.PaperID, kFreePaperId);
      EXPECT_EQ(output.Public.dmPaperSize, kFreePaperId);  // the public fields follow
      EXPECT_EQ(std::u16string(output.Public.dmDeviceName), kPrinter);
    } else {
      EXPECT_EQ(std::memcmp(&output, &untouched, sizeof(output)), 0);
    }
    const auto stored = machine().Data(kPrinter, u"Private DevMode");
    EXPECT_EQ(stored.has_value(), c.stores);
    if (stored) {
      EXPECT_EQ(stored->bytes.size(), kPrinterPartSize);
      EXPECT_EQ(stored->bytes[3656 - 452], std::byte{2});
    }
    ASSERT_EQ(machine().Broadcasts().size(), broadcasts + (c.stores ? 1 : 0));
    if (c.stores) {
      EXPECT_EQ(machine().Broadcasts().back().message, WM_DEVMODECHANGE);
      EXPECT_EQ(machine().Broadcasts().back().text, kPrinter);
    }
    Ask(PROPSHEETUI_REASON_DESTROY);
    DropPages();
  }
}

TEST_F(PropertySheetsTest, ConfirmOnTheFirstPage) {
  ASSERT_EQ(Ask(PROPSHEETUI_REASON_INIT), 1);
  EXPECT_TRUE(ConfirmSheetResult(session()));
  EXPECT_EQ(calls.back().function, CPSFUNC_SET_RESULT);
  EXPECT_EQ(calls.back().first, session().pageHandles[0]);
  EXPECT_EQ(calls.back().second, CPSUI_OK);
  refuseAt = static_cast<int>(calls.size()) + 1;
  EXPECT_FALSE(ConfirmSheetResult(session()));
  const size_t before = calls.size();
  session().pages[0].kind = kPageTreeView;
  EXPECT_FALSE(ConfirmSheetResult(session()));
  session().pages[0].kind = kPageOwnDialog;
  const int count = session().pageCount;
  session().pageCount = 0;
  EXPECT_FALSE(ConfirmSheetResult(session()));
  EXPECT_EQ(calls.size(), before);
  session().pageCount = count;
}

TEST_F(PropertySheetsTest, KnowTheirSessionsMode) {
  const std::u16string explorer = machine().windowsDirectory() + u"\\EXPLORER.EXE";
  const struct {
    const char* what;
    DWORD osMajor, mode;
    bool explorer, sameRecords;
    DWORD cbOut;
    SessionMode expected;
    bool permission;
  } kCases[] = {
      {"document", 10, DM_COPY, false, false, 0, kDocumentSession, true},
      {"no permission", 10, DM_COPY | DM_NOPERMISSION, false, false, 0, kDocumentSession, false},
      {"advanced", 10, DM_ADVANCED, false, false, 0, kAdvancedSession, true},
      {"user default", 10, DM_USER_DEFAULT, false, false, 0, kUserDefaultSession, true},
      {"both", 10, DM_ADVANCED | DM_USER_DEFAULT, false, false, 0, kAdvancedSession, true},
      {"Printers folder of 2000", 5, DM_COPY, true, true, 0, kUserDefaultSession, true},
      {"other program on 2000", 5, DM_COPY, false, true, 0, kDocumentSession, true},
      {"two records on 2000", 5, DM_COPY, true, false, 0, kDocumentSession, true},
      {"room for output on 2000", 5, DM_COPY, true, true, 452, kDocumentSession, true},
      {"advanced on 2000", 5, DM_ADVANCED, true, true, 0, kAdvancedSession, true},
      {"folder of a later system", 6, DM_COPY, true, true, 0, kDocumentSession, true},
  };
  SettingsRecord input = {};
  ASSERT_TRUE(ResolveSettings(&input, nullptr, *printer_, kPrinter, DM_COPY));
  input.Private.nPrintSpeed = 2;
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    machine().SetOs({.major = c.osMajor});
    machine().SetExecutablePath(c.explorer ? explorer : u"C:\\WINDOWS\\system32\\app.exe");
    document.fMode = c.mode;
    document.cbOut = c.cbOut;
    document.pdmIn = &input.Public;
    document.pdmOut = c.sameRecords ? &input.Public : &output.Public;
    DriverUiData* made = CreateUiSession(&document);
    ASSERT_NE(made, nullptr);
    EXPECT_TRUE(IsValidUiSession(made));
    EXPECT_EQ(made->mode, c.expected);
    EXPECT_EQ(made->block.Record.Private.nPrintSpeed, 2);  // the application's record
    EXPECT_EQ(made->permission != FALSE, c.permission);
    EXPECT_EQ(made->tableError, kTablesClosed);
    EXPECT_EQ(made->fonts.Loaded, c.expected != kAdvancedSession);
    DestroyUiSession(made);
  }
}

TEST_F(PropertySheetsTest, AskThePrinterForAMissingName) {
  document.pszPrinterName = nullptr;
  DriverUiData* made = CreateUiSession(&document);
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(std::u16string(made->printerName), kPrinter);
  DestroyUiSession(made);
  document.hPrinter = nullptr;
  made = CreateUiSession(&document);
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(std::u16string(made->printerName), u"");
  EXPECT_EQ(PaperCount(made->block), 1);  // the defaults
  DestroyUiSession(made);
  EXPECT_EQ(CreateUiSession(static_cast<const DOCUMENTPROPERTYHEADER*>(nullptr)), nullptr);
  EXPECT_EQ(CreateUiSession(static_cast<const DEVICEPROPERTYHEADER*>(nullptr)), nullptr);
}

TEST_F(PropertySheetsTest, LoadTheBackupNamesOfDocumentAndUserDefaultSessions) {
  // A name of exactly 130 units without a terminator, and one that is too long.
  for (const size_t units : {130u, 131u}) {
    const std::u16string full(units, u'x');
    machine().SetData(kPrinter, u"BackupFile Read Name",
                      {REG_BINARY, support::BytesOf(u"C:\\a.ini", 18)});
    machine().SetData(kPrinter, u"BackupFile Write Name",
                      {REG_BINARY, support::BytesOf(full.data(), 2 * units)});
    for (const DWORD mode : {DM_COPY, DM_USER_DEFAULT, DM_ADVANCED}) {
      document.fMode = mode;
      DriverUiData* made = CreateUiSession(&document);
      ASSERT_NE(made, nullptr);
      const bool loaded = mode != DM_ADVANCED;
      EXPECT_EQ(std::u16string(made->utility.readName), loaded ? u"C:\\a.ini" : u"");
      EXPECT_EQ(made->utility.writeName, loaded && units == 130 ? full : u"");
      DestroyUiSession(made);
    }
  }
}

}  // namespace
}  // namespace kestrel
