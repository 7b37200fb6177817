// The two property-sheet functions, called as by the sheet library; a replacement records their
// calls.
#include <windows.h>
#include <winddiui.h>

#include <memory>

#include "driver/instance.h"
#include "driver/resolve_settings.h"
#include "paper/paper_table.h"
#include "platform/comctl32/property_sheet.h"
#include "platform/machine/guard.h"
#include "resources/resource.h"
#include "sheets/page_services.h"
#include "sheets/ui_session.h"
#include "tests/support/test_machine.h"

namespace kestrel {
namespace {

using support::BytesOf;
using support::kPrinter;

// A call of the sheet library.
struct LibraryCall {
  UINT function;
  LPARAM first, second;
};
std::vector<LibraryCall> calls;
size_t rejectedCall;  // the number of the call that returns 0, counted from 1; 0: none
const HANDLE kSheet = reinterpret_cast<HANDLE>(0x77);

LONG_PTR CALLBACK RecordCall(HANDLE sheet, UINT function, LPARAM first, LPARAM second) {
  EXPECT_EQ(sheet, kSheet);
  calls.push_back({function, first, second});
  return calls.size() == rejectedCall ? 0 : static_cast<LONG_PTR>(1000 + calls.size());
}

class PropertySheets : public support::MachineTest {
 protected:
  PropertySheets() {
    rejectedCall = 0;
    EXPECT_TRUE(ResolveSettings(&input, nullptr, printer_, kPrinter, DM_COPY));
    input.Private.nPrintSpeed = 2;
  }
  LONG Call(WORD reason, const void* parameter = nullptr) {
    const void* header = isPrinterSheet ? static_cast<void*>(&device) : &document;
    info.Reason = reason;
    info.lParamInit = reinterpret_cast<LPARAM>(header);
    const auto function =
        isPrinterSheet ? exports_.DrvDevicePropertySheets : exports_.DrvDocumentPropertySheets;
    return function(&info, reinterpret_cast<LPARAM>(parameter));
  }
  // Closes the sheet with a result.
  LONG SetResult(LRESULT result) {
    const SETRESULT_INFO set = {sizeof(set), 0, nullptr, result};
    return Call(PROPSHEETUI_REASON_SET_RESULT, &set);
  }
  // Destroys the pages that the sheet library accepted, as it would.
  void DropPages() {
    for (size_t i = 0; i < calls.size() && i + 1 != rejectedCall; ++i) {
      if (calls[i].function != CPSFUNC_ADD_HPROPSHEETPAGE) continue;
      DestroyPropertySheetPage(reinterpret_cast<HPROPSHEETPAGE>(calls[i].first));
    }
    calls.clear();
    EXPECT_EQ(platform::LivePropertySheetPages(), 0);
  }
  LONG End() { return DropPages(), Call(PROPSHEETUI_REASON_DESTROY); }
  DriverUiData& session() { return *reinterpret_cast<DriverUiData*>(info.UserData); }
  // The public fields of a copied record are refreshed.
  bool IsCopied() const { return output.Public.dmPaperSize == kFreePaperId; }
  bool IsStored() { return machine().Data(kPrinter, u"Private DevMode").has_value(); }

  const support::OpenedPrinter printer_;
  WCHAR name_[32] = TEXT("Label Printer");
  SettingsRecord input = {}, output = {};
  DOCUMENTPROPERTYHEADER document = {sizeof(document), 0, printer_,           name_, &input.Public,
                                     &output.Public,   0, DM_COPY | DM_PROMPT};
  DEVICEPROPERTYHEADER device = {sizeof(device), 0, printer_, nullptr};
  PROPSHEETUI_INFO info = {sizeof(info), 0, 0, 0, kSheet, RecordCall, 0, 0, 0};
  bool isPrinterSheet = false;
};

TEST_F(PropertySheets, OkCopiesDocumentsAndStoresDefaults) {
  constexpr struct {
    DWORD flags;  // of the header
    SessionMode session;
    bool copies, stores;  // the effect of OK
  } kRows[] = {
      {DM_COPY, kDocumentSession, true, false},
      {DM_PROMPT, kDocumentSession, false, false},
      {DM_UPDATE | DM_ADVANCED | DM_USER_DEFAULT, kAdvancedSession, true, false},
      {DM_COPY | DM_USER_DEFAULT, kUserDefaultSession, true, true},
      {DM_COPY | DM_USER_DEFAULT | DM_NOPERMISSION, kUserDefaultSession, true, false},
      {0, kPrinterSession, false, true},
      {DPS_NOPERMISSION, kPrinterSession, false, true},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(&row - kRows);
    isPrinterSheet = row.session == kPrinterSession;
    document.fMode = row.flags;
    device.Flags = static_cast<WORD>(row.flags);
    const DWORD forbids = isPrinterSheet ? DWORD{DPS_NOPERMISSION} : DM_NOPERMISSION;
    output = {};
    machine().RemoveData(kPrinter, u"Private DevMode");
    const size_t broadcasts = machine().Broadcasts().size();
    ASSERT_EQ(Call(PROPSHEETUI_REASON_INIT), 1);
    EXPECT_EQ(calls.at(0).function, UINT{CPSFUNC_ADD_HPROPSHEETPAGE});
    EXPECT_EQ(session().mode, row.session);
    EXPECT_EQ(session().permission, (row.flags & forbids) == 0);
    PROPSHEETUI_INFO_HEADER header = {};
    EXPECT_EQ(Call(PROPSHEETUI_REASON_GET_INFO_HEADER, &header), 1);
    EXPECT_EQ(header.Flags, PSUIHDRF_NOAPPLYNOW | PSUIHDRF_PROPTITLE);
    EXPECT_EQ(header.IconID, 64062u);
    EXPECT_EQ(header.pTitle == MAKEINTRESOURCEW(64717), isPrinterSheet);
    SettingsRecord& edited = session().block.Record;
    EXPECT_EQ(edited.Private.nPrintSpeed, isPrinterSheet ? 1 : 2) << "default or input record";
    edited.Private.PaperID = kFreePaperId;
    session().block.Printer.Mecha = kPeelMode;
    for (const LONG result : {CPSUI_CANCEL, CPSUI_RESTARTWINDOWS}) {
      EXPECT_EQ(SetResult(result), 1);
      EXPECT_EQ(info.Result, static_cast<ULONG_PTR>(result));
      EXPECT_FALSE(IsCopied() || IsStored());
    }
    EXPECT_EQ(SetResult(CPSUI_OK), 1);
    EXPECT_EQ(IsCopied(), row.copies);
    EXPECT_EQ(edited.Public.dmPaperSize == kFreePaperId, row.copies || row.stores);
    EXPECT_TRUE(!row.copies || BytesOf(output) == BytesOf(edited));
    EXPECT_EQ(IsStored(), row.stores);
    EXPECT_EQ(machine().Broadcasts().size(), broadcasts + row.stores);
    if (row.stores) {
      EXPECT_EQ(support::StoredPrinterPart(machine()).Mecha, kPeelMode);
      EXPECT_EQ(machine().Broadcasts().back().message, UINT{WM_DEVMODECHANGE});
      EXPECT_EQ(machine().Broadcasts().back().text, kPrinter);
    }
    End();
  }
}

// The call of the Printers folder of Windows 2000: the mode of a document, one record for input and
// output, and a cbOut of 0.
struct FolderCall {
  DWORD minor = 0;  // of Windows 5
  std::u16string program = u"EXPLORER.EXE";
  bool isOneRecord = true;
  DWORD cbOut = 0;
  SessionMode session = kDocumentSession;
};

TEST_F(PropertySheets, PrintersFolderOfWindows2000OpensUserDefaults) {
  const FolderCall rows[] = {
      {.session = kUserDefaultSession},
      {.minor = 1},  // Windows XP
      {.program = u"app.exe"},
      {.isOneRecord = false},
      {.cbOut = kRecordSize},
      {.program = std::u16string(300, u'e')},  // Windows 2000 does not terminate a truncated path
  };
  for (const FolderCall& row : rows) {
    SCOPED_TRACE(&row - rows);
    machine().SetOs({.major = 5, .minor = row.minor});
    machine().SetExecutablePath(machine().windowsDirectory() + u"\\" + row.program);
    document.pdmOut = row.isOneRecord ? &input.Public : &output.Public;
    document.cbOut = row.cbOut;
    ASSERT_EQ(Call(PROPSHEETUI_REASON_INIT), 1);
    EXPECT_EQ(session().mode, row.session);
    EXPECT_EQ(calls[0].function,
              UINT{row.minor == 0 ? CPSFUNC_ADD_PCOMPROPSHEETUIW : CPSFUNC_ADD_HPROPSHEETPAGE});
    End();
  }
}

TEST_F(PropertySheets, PagesOfWindows2000AreDescribedByComPropSheetUi) {
  machine().SetOs({.major = 5, .minor = 0});
  ASSERT_EQ(Call(PROPSHEETUI_REASON_INIT), 1);
  for (size_t i = 0; i < 6; ++i) {
    const auto& sheet = *reinterpret_cast<const COMPROPSHEETUI*>(calls.at(i).first);
    EXPECT_EQ(session().pageHandles[i], static_cast<LONG_PTR>(1001 + i));
    EXPECT_EQ(sheet.Flags, CPSUIF_UPDATE_PERMISSION);
    EXPECT_EQ(sheet.UserData, info.UserData);
    EXPECT_TRUE(std::u16string_view(sheet.pHelpFile).ends_with(u"\\QM610rDRV1.HLP"));
    EXPECT_EQ(sheet.pOptItem->DMPubID, DMPUB_USER + i);
    EXPECT_EQ(sheet.cDlgPage, 1);
    EXPECT_EQ(sheet.CallerVersion, 0x0E01);
    EXPECT_EQ(sheet.pDlgPage->DlgTemplateID, session().pages[i].templateId);
    EXPECT_NE(calls[i].second, 0) << "a buffer for the result";
  }
  EXPECT_TRUE(ConfirmSheetResult(session()));
  EXPECT_EQ(calls.back().first, 1001) << "the handle of the first page";
  rejectedCall = calls.size() + 1;
  EXPECT_FALSE(ConfirmSheetResult(session()));
  End();
}

TEST_F(PropertySheets, RejectedPageEndsTheSession) {
  for (const auto& [major, rejected] : {std::pair{10u, size_t{6}}, {5u, size_t{3}}}) {
    machine().SetOs({.major = major, .minor = 0});
    rejectedCall = rejected;
    const auto before = Live();
    EXPECT_EQ(Call(PROPSHEETUI_REASON_INIT), -1);
    EXPECT_EQ(calls.size(), rejected);
    EXPECT_EQ(info.UserData, 0u);
    DropPages();
    EXPECT_EQ(Live(), before);
  }
}

// Replacements of the activation context functions; a cookie is the number of pages before.
int pagesInContext;
HANDLE WINAPI Create(PCACTCTXW request) {
  return request->lpResourceName == MAKEINTRESOURCEW(2) ? &pagesInContext : INVALID_HANDLE_VALUE;
}
BOOL WINAPI Activate(HANDLE, ULONG_PTR* cookie) {
  *cookie = static_cast<ULONG_PTR>(platform::LivePropertySheetPages());
  return TRUE;
}
BOOL WINAPI Deactivate(DWORD, ULONG_PTR cookie) {
  return pagesInContext += platform::LivePropertySheetPages() - static_cast<int>(cookie);
}
void WINAPI Release(HANDLE) { EXPECT_EQ(std::exchange(pagesInContext, 0), 6); }

TEST_F(PropertySheets, PagesAreCreatedWithinTheManifestsContextIfSupported) {
  machine().RegisterModule(u"kernel32.dll", {});  // Windows 2000 exports none of the functions
  EXPECT_EQ(Call(PROPSHEETUI_REASON_INIT), 1);
  End();
  machine().RegisterModule(u"kernel32.dll",
                           {{"CreateActCtxW", platform::AsEntryPoint(Create)},
                            {"ActivateActCtx", platform::AsEntryPoint(Activate)},
                            {"DeactivateActCtx", platform::AsEntryPoint(Deactivate)},
                            {"ReleaseActCtx", platform::AsEntryPoint(Release)}});
  pagesInContext = 0;
  EXPECT_EQ(Call(PROPSHEETUI_REASON_INIT), 1);
  EXPECT_EQ(pagesInContext, 0) << "the context is released";
  End();
}

TEST_F(PropertySheets, InvalidSessionsAndReasonsReturnMinusOne) {
  EXPECT_EQ(Call(PROPSHEETUI_REASON_GET_INFO_HEADER), -1) << "no session";
  info.lParamInit = 0;
  info.Reason = PROPSHEETUI_REASON_INIT;
  EXPECT_EQ(exports_.DrvDocumentPropertySheets(&info, 0), -1);
  ASSERT_EQ(Call(PROPSHEETUI_REASON_INIT), 1);
  EXPECT_EQ(info.Result, 0u);
  EXPECT_EQ(Call(PROPSHEETUI_REASON_SET_RESULT), -1);
  EXPECT_EQ(Call(PROPSHEETUI_REASON_SET_RESULT + 1), -1);
  // A block that is not a session.
  const auto foreign = std::make_unique<DriverUiData>();
  const ULONG_PTR good = std::exchange(info.UserData, reinterpret_cast<ULONG_PTR>(foreign.get()));
  foreign->self = foreign.get();
  foreign->selfEnd = foreign.get();
  EXPECT_EQ(SetResult(CPSUI_OK), -1);
  info.UserData = good;
  EXPECT_EQ(End(), 1);
  EXPECT_EQ(Call(PROPSHEETUI_REASON_DESTROY), -1);
}

}  // namespace
}  // namespace kestrel
