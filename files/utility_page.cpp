// The page that saves all driver properties to a backup file and loads them from one.
#include <algorithm>
#include <cstring>

#include "driver/handles.h"
#include "driver/printer_access.h"
#include "driver/text.h"
#include "files/backup_file.h"
#include "files/file_dialog.h"
#include "paper/fields/controls.h"
#include "paper/fields/help_text.h"
#include "resources/resource.h"
#include "sheets/messages.h"
#include "sheets/page_handlers.h"
#include "sheets/page_procs.h"
#include "sheets/page_services.h"
#include "sheets/session_fonts.h"

namespace kestrel {
namespace {

constexpr HelpRow kHelp[] = {
    Plain(IDC_UTILITY_SAVE_NAME, IDS_HELP_UTILITY_SAVE_NAME),
    Plain(IDC_UTILITY_LOAD_NAME, IDS_HELP_UTILITY_LOAD_NAME),
    Plain(IDC_UTILITY_SAVE, IDS_HELP_UTILITY_SAVE),
    Plain(IDC_UTILITY_LOAD, IDS_HELP_UTILITY_LOAD),
    Plain(IDC_UTILITY_SAVE_BROWSE, IDS_HELP_UTILITY_SAVE_BROWSE),
    Plain(IDC_UTILITY_LOAD_BROWSE, IDS_HELP_UTILITY_LOAD_BROWSE),
};

using BackupName = WCHAR[kBackupNameLength];

// The controls, messages and printer data of a direction.
struct Side {
  TransferDirection direction;
  int field;
  BackupName UtilityPageState::*name;
  const WCHAR* dataValue;
  UINT doneText;
  UINT failedText;
};

constexpr Side kSave = {TransferDirection::kSave,
                        IDC_UTILITY_SAVE_NAME,
                        &UtilityPageState::writeName,
                        TEXT("BackupFile Write Name"),
                        IDS_SAVED,
                        IDS_SAVE_FAILED};
constexpr Side kLoad = {TransferDirection::kLoad,
                        IDC_UTILITY_LOAD_NAME,
                        &UtilityPageState::readName,
                        TEXT("BackupFile Read Name"),
                        IDS_LOADED,
                        IDS_LOAD_FAILED};

BackupName& NameOf(DriverUiData& session, const Side& side) { return session.utility.*side.name; }

void ReadName(HWND page, DriverUiData& session, const Side& side) {
  BackupName& name = NameOf(session, side);
  std::memset(name, 0, sizeof(name));
  GetDlgItemTextW(page, side.field, name, kBackupNameLength);
}

// Accepts the extension only in these two spellings.
bool HasBackupExtension(const WCHAR* name) {
  constexpr int kExtensionLength = 4;
  const int length = TextLength(name);
  if (length < kExtensionLength) return false;
  const WCHAR* end = name + length - kExtensionLength;
  return SameText(end, TEXT(".ini")) || SameText(end, TEXT(".INI"));
}

// Returns true when a name is valid for a backup file. Shows a message for a missing name and for a
// wrong extension, but not for a name that the platform rejects.
bool CheckName(HWND page, const WCHAR* name) {
  if (IsBlankText(name)) {
    ShowMessage(page, IDS_FILE_NAME_MISSING, MB_ICONEXCLAMATION);
    return false;
  }
  WCHAR title[kFileTitleLength];
  if (!GetTitleOfFile(name, title)) return false;
  if (!HasBackupExtension(name)) {
    ShowMessage(page, IDS_FILE_NAME_WRONG, MB_ICONEXCLAMATION);
    return false;
  }
  return true;
}

// Checks the name and runs the transfer. Stores the name in printer data on success; restores the
// settings after a failed load.
bool SaveOrLoadBackup(HWND page, DriverUiData& session, const Side& side) {
  DriverSettingsBlock& block = *session.settings;
  HeapBlock<DriverSettingsBlock> before;
  if (side.direction == TransferDirection::kLoad) {
    before = HeapBlock<DriverSettingsBlock>::One();
    if (!before) return false;
    *before = block;
  }
  const BackupName& name = NameOf(session, side);
  if (!CheckName(page, name)) {
    MoveFocus(page, side.field);
    return false;
  }
  SetWaitCursor(true);
  const bool done = BackupFileTransfer(page, name, {block, session.fonts, session.printerName},
                                       side.direction, BACKUP_ALL);
  if (done) {
    WritePrinterData(session.printer, side.dataValue, REG_BINARY, name, kBackupNameDataSize);
  } else if (before) {
    block = *before;
  }
  SetWaitCursor(false);
  return done;
}

void Transfer(HWND page, DriverUiData& session, const Side& side) {
  ReadName(page, session, side);
  if (!SaveOrLoadBackup(page, session, side)) {
    ShowMessage(page, side.failedText, MB_ICONHAND);
    return;
  }
  ShowMessage(page, side.doneText, MB_ICONASTERISK);
  if (side.direction == TransferDirection::kSave) return;
  MarkPageChanged(page);
  session.settings->Record.Private.Signature = SETTINGS_SIGNATURE;
}

void Browse(HWND page, DriverUiData& session, const Side& side) {
  ReadName(page, session, side);
  if (BrowseBackupFile(page, NameOf(session, side), side.direction)) {
    SetDlgItemTextW(page, side.field, NameOf(session, side));
  }
}

void ShowFirstHelp(HWND page, DriverUiData&) {
  SetDlgItemTextW(page, IDC_HELP_TEXT, kFirstHelpPosition);
}

void CreatePage(HWND page, DriverUiData& session) {
  ShowFirstHelp(page, session);
  if (session.mode != kUserDefaultSession) {
    EnableWindow(GetDlgItem(page, IDC_UTILITY_LOAD), FALSE);
  }
  for (const Side* side : {&kLoad, &kSave}) {
    SendDlgItemMessageW(page, side->field, EM_LIMITTEXT, kBackupNameLength - 1, 0);
    SetDlgItemTextW(page, side->field, NameOf(session, *side));
  }
  LockControls(page, IDD_UTILITY, session.permission != FALSE);
}

void ReadBothNames(HWND page, DriverUiData& session) {
  ReadName(page, session, kLoad);
  ReadName(page, session, kSave);
}

void OnCommand(HWND page, DriverUiData& session, int control, int notification) {
  const bool field = control == IDC_UTILITY_SAVE_NAME || control == IDC_UTILITY_LOAD_NAME;
  if (notification != static_cast<int>(field ? EN_SETFOCUS : BN_CLICKED)) return;
  ShowHelp(page, kHelp, control, IDC_HELP_TEXT, kPlain, session.settings->Printer.HeadDensity);
  switch (control) {
    case IDC_UTILITY_SAVE:
      return Transfer(page, session, kSave);
    case IDC_UTILITY_LOAD:
      return Transfer(page, session, kLoad);
    case IDC_UTILITY_SAVE_BROWSE:
      return Browse(page, session, kSave);
    case IDC_UTILITY_LOAD_BROWSE:
      return Browse(page, session, kLoad);
    default:
      return;
  }
}

constexpr PageHandlers kPage = {.create = CreatePage,
                                .activate = ShowFirstHelp,
                                .leave = ReadBothNames,
                                .command = OnCommand,
                                .apply = ConfirmThenSaveFonts};

}  // namespace

INT_PTR CALLBACK UtilityPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
  return HandlePageMessage(kPage, page, message, wParam, lParam);
}

}  // namespace kestrel
