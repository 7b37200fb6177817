#include "files/file_dialog.h"

#include <windows.h>
#include <commdlg.h>

#include <cstring>

#include "driver/libraries.h"
#include "driver/text.h"
#include "resources/resource.h"
#include "sheets/messages.h"

namespace kestrel {
namespace {

using FileTitleProc = short(WINAPI*)(LPCWSTR name, LPWSTR title, WORD length);
using FileNameProc = BOOL(WINAPI*)(OPENFILENAMEW* dialog);

Module LoadDialogLibrary() { return LoadSystemLibrary(TEXT("comdlg32.dll")); }

bool TitleFrom(const Module& library, const WCHAR* name, WCHAR (&title)[kFileTitleLength]) {
  const auto getTitle = EntryPoint<FileTitleProc>(library.get(), "GetFileTitleW");
  if (getTitle != nullptr && getTitle(name, title, kFileTitleLength) == 0) return true;
  title[0] = 0;
  return false;
}

// Where a dialog starts: the title of the current name, and its folder.
struct StartPlace {
  WCHAR file[kBackupNameLength];
  WCHAR folder[kBackupNameLength];
};

void FindStart(StartPlace& start, const Module& library, const WCHAR* name) {
  start = {};
  if (IsBlankText(name)) return;
  WCHAR title[kFileTitleLength];
  TitleFrom(library, name, title);
  CopyText(start.file, title);
  const int folder = TextLength(name) - TextLength(title);
  if (folder >= 1) {
    CopyText(start.folder, static_cast<size_t>(folder) + 1, name);
  } else {
    GetSystemDirectoryW(start.folder, kBackupNameLength);
  }
}

// The text's last character stands for the terminators that a filter has between its parts.
void MakeFilter(WCHAR (&filter)[kMessageLength]) {
  std::memset(filter, 0, sizeof(filter));
  const int length = LoadMessageText(IDS_BACKUP_FILTER, filter, kMessageLength - 1);
  if (length == 0) return;
  const WCHAR separator = filter[length - 1];
  for (int i = 0; i < length; ++i) {
    if (filter[i] == separator) filter[i] = 0;
  }
}

}  // namespace

bool FileTitle(const WCHAR* name, WCHAR (&title)[kFileTitleLength]) {
  return TitleFrom(LoadDialogLibrary(), name, title);
}

bool BrowseBackupFile(HWND owner, WCHAR (&name)[kBackupNameLength], TransferDirection direction) {
  const Module library = LoadDialogLibrary();
  if (!library) return false;
  StartPlace start;
  FindStart(start, library, name);
  WCHAR filter[kMessageLength];
  MakeFilter(filter);

  const bool save = direction == TransferDirection::kSave;
  OPENFILENAMEW dialog = {};
  dialog.lStructSize = sizeof(dialog);
  dialog.hwndOwner = owner;
  dialog.lpstrFilter = filter;
  dialog.nFilterIndex = 1;
  dialog.lpstrFile = start.file;
  dialog.nMaxFile = kBackupNameLength;
  dialog.nMaxFileTitle = kBackupNameLength;
  dialog.lpstrInitialDir = start.folder;
  dialog.lpstrDefExt = TEXT("ini");
  dialog.Flags = save ? OFN_LONGNAMES | OFN_OVERWRITEPROMPT | OFN_HIDEREADONLY
                      : OFN_LONGNAMES | OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST;
  const auto choose =
      EntryPoint<FileNameProc>(library.get(), save ? "GetSaveFileNameW" : "GetOpenFileNameW");
  const bool chosen = choose != nullptr && choose(&dialog);
  if (chosen) CopyText(name, start.file);
  return chosen;
}

}  // namespace kestrel
