// The common file dialogs: the files of a folder, and a file name.
#include <windows.h>
#include <commdlg.h>

#include <algorithm>

#include "platform/comdlg32/file_paths.h"
#include "platform/machine/machine.h"
#include "platform/user32/window.h"

namespace platform::filedialog {
namespace {

// The documented ids of the controls of the common dialogs.
constexpr int kNameEdit = 1148;
constexpr int kFileList = 1120;
constexpr int kFolderText = 1137;
constexpr int kFilterText = 1136;

constexpr std::u16string_view kFirstDrive = u"C:\\";

std::u16string Trimmed(std::u16string_view text) {
  const size_t first = text.find_first_not_of(u" \"");
  if (first == std::u16string_view::npos) return {};
  return std::u16string(text.substr(first, text.find_last_not_of(u" \"") - first + 1));
}

class FileDialog : public WindowState {
 public:
  // Shows the dialog; returns true when a file was chosen. Uses the first filter of the request.
  static bool Show(const OPENFILENAMEW& request, bool saving, std::u16string& path);

 private:
  static INT_PTR CALLBACK Proc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  Window& Item(int id) const { return *FindWindowOf(GetDlgItem(window_, id)); }
  void Command(int id, UINT code);
  void ShowFolder(std::u16string folder);
  void SelectLine();
  void Accept();
  bool IsAcceptable(std::u16string& path) const;
  bool ShowError(std::u16string_view about, std::u16string_view text) const {
    ShowMessage(about, text, MB_OK);
    return false;
  }
  int ShowMessage(std::u16string_view about, std::u16string_view text, UINT style) const;

  const OPENFILENAMEW* request_ = nullptr;
  bool saving_ = false;
  HWND window_ = nullptr;
  std::u16string pattern_, folder_;
  std::u16string selectedFolder_;  // the folder selected in the list since the name was edited
  std::u16string* path_ = nullptr;
};

bool FileDialog::Show(const OPENFILENAMEW& request, bool saving, std::u16string& path) {
  const std::u16string filter = request.lpstrFilter != nullptr ? request.lpstrFilter : u"";
  const std::u16string start = request.lpstrFile;
  auto state = std::make_unique<FileDialog>();
  FileDialog& dialog = *state;
  dialog.request_ = &request;
  dialog.saving_ = saving;
  dialog.path_ = &path;
  if (!filter.empty()) dialog.pattern_ = request.lpstrFilter + filter.size() + 1;
  TopWindowRequest top;
  top.title = saving ? u"名前を付けて保存" : u"ファイルを開く";
  top.width = 430;
  top.height = 264;
  top.owner = request.hwndOwner;
  top.proc = Proc;
  top.kind = WindowView::Kind::kFileDialog;
  top.state = std::move(state);
  const DWORD shown = SS_LEFT | SS_NOPREFIX;
  top.controls = {
      MakeControl(u"static", IDC_STATIC, u"場所(&I):", SS_LEFT, 11, 14, 90, 14),
      MakeControl(u"static", kFolderText, u"", shown, 105, 14, 310, 14),
      MakeControl(u"listbox", kFileList, u"", LBS_NOTIFY | WS_TABSTOP, 11, 38, 404, 150),
      MakeControl(u"static", IDC_STATIC, u"ファイル名(&N):", SS_LEFT, 11, 202, 90, 14),
      MakeControl(u"edit", kNameEdit, u"", WS_TABSTOP, 105, 199, 210, 20),
      MakeControl(u"button", IDOK, saving ? u"保存(&S)" : u"開く(&O)",
                  BS_DEFPUSHBUTTON | WS_TABSTOP, 325, 198, 90, 22),
      MakeControl(u"static", IDC_STATIC, u"ファイルの種類:", SS_LEFT, 11, 232, 90, 14),
      MakeControl(u"static", kFilterText, filter, shown, 105, 232, 210, 14),
      MakeControl(u"button", IDCANCEL, u"キャンセル", WS_TABSTOP, 325, 228, 90, 22)};
  const HWND window = CreateTopWindow(std::move(top));
  if (window == nullptr) return false;
  dialog.window_ = window;
  SendDlgItemMessageW(window, kNameEdit, EM_LIMITTEXT, MAX_PATH - 1, 0);
  // The folder of the initial name has priority over the initial directory.
  std::u16string folder(kFirstDrive);
  for (const std::u16string& one :
       {request.lpstrInitialDir != nullptr ? std::u16string(request.lpstrInitialDir) : folder,
        start.substr(0, TitleStart(start))})
    if (!one.empty() && FolderExists(FullPath(kFirstDrive, one)))
      folder = FullPath(kFirstDrive, one);
  dialog.ShowFolder(std::move(folder));
  SetDlgItemTextW(window, kNameEdit, start.c_str() + TitleStart(start));
  SetFocus(GetDlgItem(window, kNameEdit));
  return RunModal(window) == IDOK;
}

INT_PTR CALLBACK FileDialog::Proc(HWND window, UINT message, WPARAM wParam, LPARAM) {
  const auto found = FindWindowOf(window);
  auto* dialog = found ? StateOf<FileDialog>(*found) : nullptr;
  if (dialog == nullptr || dialog->window_ == nullptr) return FALSE;
  if (message == WM_CLOSE) return EndModal(window, IDCANCEL);
  if (message == WM_COMMAND) dialog->Command(LOWORD(wParam), HIWORD(wParam));
  return message == WM_COMMAND;
}

void FileDialog::Command(int id, UINT code) {
  if (id == IDCANCEL) EndModal(window_, IDCANCEL);
  if (id == IDOK)
    selectedFolder_.empty() ? Accept() : ShowFolder(FullPath(folder_, selectedFolder_));
  if (id == kFileList && code == LBN_SELCHANGE) SelectLine();
  if (id == kNameEdit && code == EN_CHANGE) selectedFolder_.clear();
}

// As documented for callers without OFN_NOCHANGEDIR, the current directory of the process becomes
// the shown folder.
void FileDialog::ShowFolder(std::u16string folder) {
  folder_ = std::move(folder);
  SetCurrentDirectoryW(folder_.c_str());
  selectedFolder_.clear();
  SetDlgItemTextW(window_, kFolderText, folder_.c_str());
  Item(kFileList).list = {List(folder_, pattern_), -1};
}

// A selected file becomes the name; a selected folder is opened by the OK button.
void FileDialog::SelectLine() {
  const ListData& list = Item(kFileList).list;
  const std::u16string line = list.texts[static_cast<size_t>(list.selected)];
  if (line.back() != u'\\') SetDlgItemTextW(window_, kNameEdit, line.c_str());
  selectedFolder_ = line.back() == u'\\' ? line : u"";
}

int FileDialog::ShowMessage(std::u16string_view about, std::u16string_view text, UINT style) const {
  const std::u16string message = std::u16string(about) + u"\n" + std::u16string(text);
  return MessageBoxW(window_, message.c_str(), FindWindowOf(window_)->text.c_str(),
                     style | MB_ICONEXCLAMATION);
}

// Opens the folder that was typed; accepts any other name as the chosen file.
void FileDialog::Accept() {
  const std::u16string name = Trimmed(Item(kNameEdit).text);
  if (name.empty()) return;
  if (HasForbiddenCharacter(name)) {
    ShowError(name, u"ファイル名が無効です。");
    return;
  }
  std::u16string path = FullPath(folder_, name);
  if (FolderExists(path)) {
    SetDlgItemTextW(window_, kNameEdit, u"");
    ShowFolder(std::move(path));
  } else if (IsAcceptable(path)) {
    SetCurrentDirectoryW(FolderAbove(path).c_str());
    *path_ = std::move(path);
    EndModal(window_, IDOK);
  }
}

// The default extension, then what the caller's flags demand.
bool FileDialog::IsAcceptable(std::u16string& path) const {
  const bool extensionless = ExtensionStart(path) == path.size();
  if (extensionless && request_->lpstrDefExt && (saving_ || !FileExists(path))) {
    if (path.back() != u'.') path += u'.';
    path += request_->lpstrDefExt;
  }
  const DWORD flags = request_->Flags;
  if ((flags & OFN_PATHMUSTEXIST) != 0 && !FolderExists(FolderAbove(path)))
    return ShowError(path, u"パスが存在しません。\nパスを確認してください。");
  if ((flags & OFN_FILEMUSTEXIST) != 0 && !FileExists(path))
    return ShowError(path, u"ファイルが見つかりません。\nファイル名を確認してください。");
  return !saving_ || (flags & OFN_OVERWRITEPROMPT) == 0 || !FileExists(path) ||
         ShowMessage(path, u"このファイルは既に存在します。上書きしますか?",
                     MB_YESNO | MB_DEFBUTTON2) == IDYES;
}

// Fails at once for an initial name that no file can have (FNERR_INVALIDFILENAME). Changes the
// request only when a file was chosen. When the buffer is too small, its first character receives
// the required size.
BOOL ChooseFile(LPOPENFILENAMEW request, bool saving) {
  if (request == nullptr || request->lStructSize != sizeof(OPENFILENAMEW) ||
      request->lpstrFile == nullptr || HasForbiddenCharacter(request->lpstrFile))
    return FALSE;
  std::u16string path;
  if (!FileDialog::Show(*request, saving, path)) return FALSE;
  if (path.size() + 1 > request->nMaxFile) {
    if (request->nMaxFile > 0) request->lpstrFile[0] = static_cast<WCHAR>(path.size() + 1);
    return FALSE;
  }
  request->lpstrFile[path.copy(request->lpstrFile, path.size())] = 0;
  return TRUE;
}

}  // namespace

}  // namespace platform::filedialog

using namespace platform::filedialog;

BOOL WINAPI GetOpenFileNameW(LPOPENFILENAMEW file) { return ChooseFile(file, false); }

BOOL WINAPI GetSaveFileNameW(LPOPENFILENAMEW file) { return ChooseFile(file, true); }

// As documented, fails for an empty name, wildcards, brackets, invalid characters, and a trailing
// separator or colon. The title has its extension only when the user does not hide extensions.
SHORT WINAPI GetFileTitleW(LPCWSTR path, LPWSTR title, WORD size) {
  const std::u16string_view whole(path != nullptr ? path : u"");
  std::u16string_view name = whole.substr(TitleStart(whole));
  if (name.empty() || whole.size() >= MAX_PATH || HasForbiddenCharacter(whole) ||
      whole.find_first_of(u"[]") != whole.npos)
    return -1;
  const size_t extension = ExtensionStart(name);
  if (extension > 1 && extension < name.size() && platform::Machine::Current().hidesExtensions())
    name = name.substr(0, extension - 1);
  if (title == nullptr || name.size() + 1 > size) return static_cast<SHORT>(name.size() + 1);
  title[name.copy(title, name.size())] = 0;
  return 0;
}
