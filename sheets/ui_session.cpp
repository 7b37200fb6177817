#include "sheets/ui_session.h"

#include "driver/instance.h"
#include "driver/os_version.h"
#include "driver/printer_access.h"
#include "driver/resolve_settings.h"
#include "driver/text.h"
#include "sheets/item_tables.h"
#include "sheets/page_list.h"
#include "sheets/session_fonts.h"

namespace kestrel {
namespace {

constexpr BYTE kFirstHeaderId = DMPUB_USER;

// The values that a session needs from either kind of header.
struct SessionStart {
  HANDLE printer;
  const WCHAR* name;  // null: the name is queried from the printer
  SessionMode mode;
  bool permission;
  const DEVMODEW* input;
};

DriverUiData* AllocateSession() {
  HANDLE heap = HeapCreate(0, sizeof(DriverUiData), 0);
  if (heap == nullptr) return nullptr;
  auto* session =
      static_cast<DriverUiData*>(HeapAlloc(heap, HEAP_ZERO_MEMORY, sizeof(DriverUiData)));
  if (session == nullptr) {
    HeapDestroy(heap);
    return nullptr;
  }
  session->self = session;
  session->size = sizeof(DriverUiData);
  session->selfEnd = session;
  session->sessionHeap = heap;
  session->settings = &session->block;
  return session;
}

// The Printers folder of Windows 2000 opens the user's defaults with the mode of a document.
bool IsPrintersFolder(const DOCUMENTPROPERTYHEADER& header) {
  if (GetOsVersionCode() != kOsWindows2000 || header.pdmIn != header.pdmOut || header.cbOut != 0) {
    return false;
  }
  WCHAR running[MAX_PATH] = {};
  WCHAR explorer[MAX_PATH] = {};
  // Windows 2000 and XP do not terminate a truncated path and return the buffer's size.
  const DWORD length = GetModuleFileNameW(nullptr, running, MAX_PATH);
  if (length == 0 || length >= MAX_PATH) return false;
  if (GetWindowsDirectoryW(explorer, MAX_PATH) == 0) return false;
  AppendText(explorer, TEXT("\\explorer.exe"));
  return SameTextIgnoringCase(running, explorer);
}

SessionMode DocumentMode(const DOCUMENTPROPERTYHEADER& header) {
  if (header.fMode & DM_ADVANCED) return kAdvancedSession;
  if (header.fMode & DM_USER_DEFAULT) return kUserDefaultSession;
  return IsPrintersFolder(header) ? kUserDefaultSession : kDocumentSession;
}

bool HasFonts(SessionMode mode) { return mode == kDocumentSession || mode == kUserDefaultSession; }

void ReadBackupName(const DriverUiData& session, const WCHAR* value,
                    WCHAR (&name)[kBackupNameLength]) {
  DWORD needed = 0;
  if (!ReadPrinterData(session.printer, value, name, kBackupNameDataSize, &needed)) name[0] = 0;
}

void LoadBackupNames(DriverUiData& session) {
  ReadBackupName(session, TEXT("BackupFile Read Name"), session.utility.readName);
  ReadBackupName(session, TEXT("BackupFile Write Name"), session.utility.writeName);
}

void BuildDialogPage(DLGPAGE& page, const PageEntry& entry) {
  const bool isDialog = entry.kind == kPageDialog;
  page.cbSize = sizeof(DLGPAGE);
  page.DlgProc = isDialog ? entry.procedure : nullptr;
  page.pTabName = isDialog ? nullptr : const_cast<LPWSTR>(entry.tabTitle);
  page.DlgTemplateID = isDialog ? entry.templateId : DP_STD_TREEVIEWPAGE;
}

WORD SheetFlags(const DriverUiData& session, const PageEntry& entry) {
  WORD flags = session.permission ? CPSUIF_UPDATE_PERMISSION : WORD{0};
  if (entry.kind == kPageDialog) return flags;
  flags |= CPSUIF_ABOUT_CALLBACK;
  if (entry.permissionFlags & kGrantPermission) flags |= CPSUIF_UPDATE_PERMISSION;
  if (entry.permissionFlags & kWithdrawPermission) {
    flags = static_cast<WORD>(flags & ~CPSUIF_UPDATE_PERMISSION);
  }
  return flags;
}

void BuildPageSheet(DriverUiData& session, int index) {
  PageEntry& entry = session.pages[index];
  const bool isDialog = entry.kind == kPageDialog;
  BuildDialogPage(session.dialogPages[index], entry);
  const FixedTable<OPTITEM>& items = session.tables.items;

  COMPROPSHEETUI& sheet = session.pageSheets[index];
  sheet.cbSize = sizeof(COMPROPSHEETUI);
  sheet.Flags = SheetFlags(session, entry);
  sheet.hInstCaller = ModuleInstance();
  sheet.pCallerName = isDialog ? const_cast<LPWSTR>(TEXT("")) : entry.callerName;
  sheet.UserData = reinterpret_cast<ULONG_PTR>(&session);
  sheet.pHelpFile = session.helpFile;
  sheet.pfnCallBack = isDialog ? nullptr : entry.callback;
  sheet.pOptItem = items.start + session.tables.firstItem;
  sheet.cOptItem = static_cast<WORD>(items.used - session.tables.firstItem);
  if (isDialog || entry.kind == kPageTreeView) {
    sheet.pDlgPage = &session.dialogPages[index];
    sheet.cDlgPage = 1;
  } else {
    sheet.pDlgPage = reinterpret_cast<PDLGPAGE>(static_cast<ULONG_PTR>(entry.kind));
  }
  sheet.IconID = isDialog ? 0 : entry.sheetIconId;
  sheet.pOptItemName = isDialog ? const_cast<LPWSTR>(TEXT("")) : entry.itemName;
  sheet.CallerVersion = kDriverVersion;
}

bool BuildPages(DriverUiData& session) {
  for (int index = 0; index < session.pageCount; ++index) {
    session.tables.firstItem = session.tables.items.used;
    if (session.pages[index].kind == kPageDialog) {
      AddPageHeaderItem(session, static_cast<BYTE>(kFirstHeaderId + index));
    }
    if (!ReportTableError(session)) return false;
    BuildPageSheet(session, index);
  }
  session.tableError = kTablesClosed;
  return true;
}

bool FillSession(DriverUiData& session, const SessionStart& start) {
  session.printer = start.printer;
  if (start.name != nullptr) {
    CopyText(session.printerName, start.name);
  } else if (start.printer != nullptr) {
    GetPrinterNameOfHandle(start.printer, session.printerName, kPageTextLength);
  }
  session.mode = start.mode;
  session.permission = start.permission;

  ResolveBlock(*session.settings, RecordView(start.input), session.printer, session.printerName);
  BuildPageList(session, session.mode);
  if (session.pageCount <= 0) {
    session.pages[0].kind = kPageDialog;
    session.pageCount = 1;
  }
  if (session.pageCount > kPageCapacity) session.pageCount = kPageCapacity;
  if (!AllocateItemTables(session)) return false;
  if (HasFonts(session.mode)) {
    if (!LoadSessionFonts(session)) return false;
    LoadBackupNames(session);
  }
  GetPrinterInfoValue(session.printer, session.printerName, session.helpFile,
                      sizeof(session.helpFile), kInfoHelpFile);
  return BuildPages(session);
}

DriverUiData* CreateFrom(const SessionStart& start) {
  DriverUiData* session = AllocateSession();
  if (session == nullptr) return nullptr;
  if (FillSession(*session, start)) return session;
  DestroyUiSession(session);
  return nullptr;
}

}  // namespace

DriverUiData* CreateUiSession(const DOCUMENTPROPERTYHEADER* header) {
  if (header == nullptr) return nullptr;
  return CreateFrom({header->hPrinter, header->pszPrinterName, DocumentMode(*header),
                     (header->fMode & DM_NOPERMISSION) == 0, header->pdmIn});
}

DriverUiData* CreateUiSession(const DEVICEPROPERTYHEADER* header) {
  if (header == nullptr) return nullptr;
  return CreateFrom({header->hPrinter, header->pszPrinterName, kPrinterSession,
                     (header->Flags & DPS_NOPERMISSION) == 0, nullptr});
}

void DestroyUiSession(DriverUiData* session) {
  if (HasFonts(session->mode)) FreeSessionFonts(*session);
  if (session->tableHeap != nullptr) HeapDestroy(session->tableHeap);
  HANDLE heap = session->sessionHeap;
  // Invalidate the session in case its memory stays mapped and a stale pointer is checked.
  session->self = nullptr;
  HeapDestroy(heap);
}

}  // namespace kestrel
