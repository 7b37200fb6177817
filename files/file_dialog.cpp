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

// The length of a name's folder with its separator; 0 for a bare file name.
int FolderLength(const WCHAR* name) {
  int length = TextLength(name);
  while (length > 0 && name[length - 1] != '\\' && name[length - 1] != '/' &&
         name[length - 1] != ':') {
    --length;
  }
  return length;
}

Module LoadDialogLibrary() { return LoadSystemLibrary(TEXT("comdlg32.dll")); }

bool TitleFrom(const Module& library, const WCHAR* name, WCHAR (&title)[kFileTitleLength]) {
  const auto getTitle = EntryPoint<FileTitleProc>(library.get(), "GetFileTitleW");
  if (getTitle != nullptr && getTitle(name, title, kFileTitleLength) == 0) return true;
  title[0] = 0;
  return false;
}

// File name and folder that a dialog starts with.
struct StartPlace {
  WCHAR file[kBackupNameLength];
  WCHAR folder[kBackupNameLength];
};

// Splits the current name behind its last separator. The title from the platform only tells whether
// the name is valid: it lacks the extension when the user's preference hides extensions.
void FindStart(StartPlace& start, const Module& library, const WCHAR* name) {
  start = {};
  if (IsBlankText(name)) return;
  const int folderLength = FolderLength(name);
  WCHAR title[kFileTitleLength];
  if (TitleFrom(library, name, title)) CopyText(start.file, name + folderLength);
  if (folderLength >= 1) {
    CopyField(start.folder, kBackupNameLength, name, static_cast<size_t>(folderLength));
  } else {
    GetSystemDirectoryW(start.folder, kBackupNameLength);
  }
}

// The process's current directory, which a file dialog may change: OFN_NOCHANGEDIR has no effect in
// GetOpenFileNameW. Restored at the end of the scope.
class CurrentDirectoryScope {
 public:
  CurrentDirectoryScope() {
    const DWORD size = GetCurrentDirectoryW(0, nullptr);
    if (size == 0) return;
    directory_ = HeapBlock<WCHAR>(size * sizeof(WCHAR));
    // Another thread may have changed to a longer one meanwhile.
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
  const CurrentDirectoryScope directory;
  const bool chosen = choose != nullptr && choose(&dialog);
  if (chosen) CopyText(name, start.file);
  return chosen;
}

}  // namespace kestrel
