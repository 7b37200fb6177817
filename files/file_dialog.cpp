#include "files/file_dialog.h"

#include <windows.h>
#include <commdlg.h>

#include <cstring>

#include "driver/handles.h"
#include "driver/libraries.h"
#include "driver/text.h"
#include "resources/resource.h"
#include "sheets/messages.h"

namespace kestrel {
namespace {

using FileTitleProc = short(WINAPI*)(LPCWSTR name, LPWSTR title, WORD length);
using FileNameProc = BOOL(WINAPI*)(OPENFILENAMEW* dialog);

// Returns the length of a name's folder including its separator; 0 for a bare file name.
int FolderLength(const WCHAR* name) {
  int length = TextLength(name);
  while (length > 0 && name[length - 1] != '\\' && name[length - 1] != '/' &&
         name[length - 1] != ':') {
    --length;
  }
  return length;
}

Module LoadDialogLibrary() { return LoadSystemLibrary(TEXT("comdlg32.dll")); }

bool GetTitle(const Module& library, const WCHAR* name, WCHAR (&title)[kFileTitleLength]) {
  const auto getTitle = EntryPoint<FileTitleProc>(library.get(), "GetFileTitleW");
  return getTitle != nullptr && getTitle(name, title, kFileTitleLength) == 0;
}

// The file name and the folder that a dialog shows first.
struct StartPlace {
  WCHAR file[kBackupNameLength];
  WCHAR folder[kBackupNameLength];
};

// Splits a name after its last separator. Uses the platform's title only to validate the name,
// because the title lacks the extension when the user's preference hides extensions.
void SplitName(StartPlace& start, const Module& library, const WCHAR* name) {
  start = {};
  if (IsBlankText(name)) return;
  const int folderLength = FolderLength(name);
  WCHAR title[kFileTitleLength];
  if (GetTitle(library, name, title)) CopyText(start.file, name + folderLength);
  if (folderLength >= 1) {
    CopyField(start.folder, kBackupNameLength, name, static_cast<size_t>(folderLength));
  } else {
    GetSystemDirectoryW(start.folder, kBackupNameLength);
  }
}

// Restores the process's current directory at the end of its scope. A file dialog may change the
// directory: OFN_NOCHANGEDIR has no effect in GetOpenFileNameW.
class CurrentDirectoryScope {
 public:
  CurrentDirectoryScope() {
    const DWORD size = GetCurrentDirectoryW(0, nullptr);
    if (size == 0) return;
    directory_ = HeapBlock<WCHAR>(size * sizeof(WCHAR));
    // Another thread may have changed to a longer directory in between.
    if (directory_ && GetCurrentDirectoryW(size, directory_.get()) >= size) directory_ = {};
  }
  ~CurrentDirectoryScope() {
    if (directory_) SetCurrentDirectoryW(directory_.get());
  }
  CurrentDirectoryScope(const CurrentDirectoryScope&) = delete;
  CurrentDirectoryScope& operator=(const CurrentDirectoryScope&) = delete;

 private:
  HeapBlock<WCHAR> directory_;
};

// Loads the filter text and replaces its separator, which is its last character, by the terminators
// that OPENFILENAMEW expects.
void LoadFilter(WCHAR (&filter)[kMessageLength]) {
  std::memset(filter, 0, sizeof(filter));
  const int length = LoadMessageText(IDS_BACKUP_FILTER, filter, kMessageLength - 1);
  if (length == 0) return;
  const WCHAR separator = filter[length - 1];
  for (int i = 0; i < length; ++i) {
    if (filter[i] == separator) filter[i] = 0;
  }
}

}  // namespace

bool GetTitleOfFile(const WCHAR* name, WCHAR (&title)[kFileTitleLength]) {
  return GetTitle(LoadDialogLibrary(), name, title);
}

bool BrowseBackupFile(HWND owner, WCHAR (&name)[kBackupNameLength], TransferDirection direction) {
  const Module library = LoadDialogLibrary();
  if (!library) return false;
  StartPlace start;
  SplitName(start, library, name);
  WCHAR filter[kMessageLength];
  LoadFilter(filter);

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
  const CurrentDirectoryScope directory;
  const bool chosen = choose != nullptr && choose(&dialog);
  if (chosen) CopyText(name, start.file);
  return chosen;
}

}  // namespace kestrel
