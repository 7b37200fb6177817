// The entry points of the common dialogs.
#include <windows.h>
#include <commdlg.h>

#include <algorithm>

#include "platform/desktop/libraries/commdlg_dialog.h"
#include "platform/system/guard.h"
#include "platform/system/modules.h"

namespace {

using namespace platform::filedialog;

thread_local DWORD lastDialogError = 0;

void CopyCut(std::u16string_view text, LPWSTR buffer, DWORD size) {
  if (!buffer || size == 0) return;
  const size_t copied = std::min<size_t>(text.size(), size - 1);
  text.copy(buffer, copied);
  buffer[copied] = 0;
}

// Nothing of the caller's is touched but when a file was chosen; a buffer too small for it holds
// the size needed in its first character.
BOOL ChooseFile(LPOPENFILENAMEW request, bool saving) {
  lastDialogError = 0;
  if (!request || request->lStructSize != sizeof(OPENFILENAMEW) || !request->lpstrFile) {
    lastDialogError = request ? CDERR_STRUCTSIZE : CDERR_INITIALIZATION;
    return FALSE;
  }
  Choice choice;
  if (!Dialog::Show(*request, saving, choice)) return FALSE;
  const std::u16string& path = choice.path;
  if (path.size() + 1 > request->nMaxFile) {
    if (request->nMaxFile > 0) request->lpstrFile[0] = static_cast<WCHAR>(path.size() + 1);
    lastDialogError = FNERR_BUFFERTOOSMALL;
    return FALSE;
  }
  CopyCut(path, request->lpstrFile, request->nMaxFile);
  CopyCut(path.substr(TitleStart(path)), request->lpstrFileTitle, request->nMaxFileTitle);
  const size_t extension = ExtensionStart(path);
  request->nFileOffset = static_cast<WORD>(TitleStart(path));
  request->nFileExtension = extension < path.size() ? static_cast<WORD>(extension) : WORD{0};
  request->nFilterIndex = static_cast<DWORD>(choice.filter + 1);
  request->Flags &= ~(OFN_READONLY | OFN_EXTENSIONDIFFERENT);
  if (choice.readOnly) request->Flags |= OFN_READONLY;
  if (request->lpstrDefExt && lstrcmpiW(path.c_str() + extension, request->lpstrDefExt) != 0)
    request->Flags |= OFN_EXTENSIONDIFFERENT;
  return TRUE;
}

}  // namespace

BOOL WINAPI GetOpenFileNameW(LPOPENFILENAMEW file) { return ChooseFile(file, false); }

BOOL WINAPI GetSaveFileNameW(LPOPENFILENAMEW file) { return ChooseFile(file, true); }

SHORT WINAPI GetFileTitleW(LPCWSTR path, LPWSTR title, WORD size) {
  if (!path) return -1;
  const std::u16string_view whole(path);
  if (CheckTitle(whole) != 0) return -1;
  const std::u16string_view name = whole.substr(TitleStart(whole));
  if (!title || name.size() + 1 > size) return static_cast<SHORT>(name.size() + 1);
  CopyCut(name, title, size);
  return 0;
}

DWORD WINAPI CommDlgExtendedError() { return lastDialogError; }

namespace platform::filedialog {

const bool registered = RegisterBuiltIn(
    u"comdlg32.dll", {{"GetOpenFileNameW", EntryPoint<GetOpenFileNameW>()},
                      {"GetSaveFileNameW", EntryPoint<GetSaveFileNameW>()},
                      {"GetFileTitleW", EntryPoint<GetFileTitleW>()},
                      {"CommDlgExtendedError", EntryPoint<CommDlgExtendedError>()}});

}  // namespace platform::filedialog
