#include "platform/desktop/libraries/commdlg_dialog.h"

#include <algorithm>

namespace platform::filedialog {
namespace {

constexpr std::u16string_view kDrives[] = {u"C:\\", u"Z:\\"};
constexpr int kWidth = 430;
constexpr int kHeight = 264;
constexpr int kReadOnlyHeight = 26;  // more with the read-only box

// A folder is listed with a closing backslash, which no file name has.
std::u16string FolderLine(const std::u16string& name) { return name + u'\\'; }

std::u16string Trimmed(std::u16string_view text) {
  const size_t first = text.find_first_not_of(u" \"");
  if (first == std::u16string_view::npos) return {};
  return std::u16string(text.substr(first, text.find_last_not_of(u" \"") - first + 1));
}

// The folder shown first and the start name: the start name's own folder, else the folder asked
// for, else the first drive.
std::u16string StartFolder(const OPENFILENAMEW& request, std::u16string_view startName) {
  const size_t title = TitleStart(startName);
  if (title > 0) {
    const std::u16string own = FullPath(u"C:\\", startName.substr(0, title));
    if (FolderExists(own)) return own;
  }
  if (request.lpstrInitialDir && *request.lpstrInitialDir) {
    const std::u16string asked = FullPath(u"C:\\", request.lpstrInitialDir);
    if (FolderExists(asked)) return asked;
  }
  return std::u16string(kDrives[0]);
}

bool HasReadOnlyBox(const OPENFILENAMEW& request, bool saving) {
  return !saving && !(request.Flags & OFN_HIDEREADONLY);
}

struct Part {
  const char16_t* windowClass;
  const char16_t* text;
  DWORD style;
  int id, x, y, width, height;
};

bool AddPart(HWND window, const Part& part) {
  return CreateWindowExW(0, part.windowClass, part.text, WS_CHILD | WS_VISIBLE | part.style, part.x,
                         part.y, part.width, part.height, window,
                         reinterpret_cast<HMENU>(static_cast<LONG_PTR>(part.id)), nullptr,
                         nullptr) != nullptr;
}

void AddLine(HWND window, int id, UINT message, const std::u16string& text) {
  SendDlgItemMessageW(window, id, message, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

int Selection(HWND window, int id, UINT message) {
  return static_cast<int>(SendDlgItemMessageW(window, id, message, 0, 0));
}

}  // namespace

Dialog::Dialog(const OPENFILENAMEW& request, bool saving)
    : request_(request), saving_(saving), filters_(ReadFilters(request.lpstrFilter)) {
  const int filter = std::clamp(static_cast<int>(request.nFilterIndex), 1,
                                std::max(1, static_cast<int>(filters_.size())));
  choice_.filter = filter - 1;
  patterns_ = filters_.empty() ? u"*.*" : filters_[static_cast<size_t>(filter - 1)].patterns;
}

bool Dialog::Show(const OPENFILENAMEW& request, bool saving, Choice& choice) {
  TopWindowRequest top;
  top.title = request.lpstrTitle ? request.lpstrTitle
              : saving           ? u"名前を付けて保存"
                                 : u"ファイルを開く";
  top.width = kWidth;
  top.height = kHeight + (HasReadOnlyBox(request, saving) ? kReadOnlyHeight : 0);
  top.owner = request.hwndOwner;
  top.proc = Proc;
  top.kind = WindowView::Kind::kFileDialog;
  auto state = std::make_unique<Dialog>(request, saving);
  Dialog& dialog = *state;
  dialog.out_ = &choice;
  top.state = std::move(state);
  const HWND window = CreateTopWindow(std::move(top));
  if (!window) return false;
  if (dialog.Build(window)) return RunModal(window) == IDOK;
  DestroyWindow(window);
  return false;
}

bool Dialog::Build(HWND window) {
  window_ = window;
  const char16_t* accept = saving_ ? u"保存(&S)" : u"開く(&O)";
  const Part parts[] = {
      {u"STATIC", u"場所(&I):", 0, -1, 11, 14, 90, 14},
      {u"COMBOBOX", u"", CBS_DROPDOWNLIST | WS_TABSTOP, kFolderCombo, 105, 11, 310, 160},
      {u"LISTBOX", u"", LBS_NOTIFY | WS_BORDER | WS_VSCROLL | WS_TABSTOP, kFileList, 11, 38, 404,
       150},
      {u"STATIC", u"ファイル名(&N):", 0, -1, 11, 202, 90, 14},
      {u"EDIT", u"", ES_AUTOHSCROLL | WS_BORDER | WS_TABSTOP, kNameEdit, 105, 199, 210, 20},
      {u"BUTTON", accept, BS_DEFPUSHBUTTON | WS_TABSTOP, IDOK, 325, 198, 90, 22},
      {u"STATIC", u"ファイルの種類(&T):", 0, -1, 11, 232, 90, 14},
      {u"COMBOBOX", u"", CBS_DROPDOWNLIST | WS_TABSTOP, kFilterCombo, 105, 229, 210, 100},
      {u"BUTTON", u"キャンセル", BS_PUSHBUTTON | WS_TABSTOP, IDCANCEL, 325, 228, 90, 22},
      {u"BUTTON", u"読み取り専用ファイルとして開く(&R)", BS_AUTOCHECKBOX | WS_TABSTOP,
       kReadOnlyCheck, 105, 262, 240, 14}};
  for (const Part& part : parts)
    if ((part.id != kReadOnlyCheck || HasReadOnlyBox(request_, saving_)) && !AddPart(window, part))
      return false;
  SendMessageW(window, DM_SETDEFID, IDOK, 0);
  for (const Filter& filter : filters_) AddLine(window, kFilterCombo, CB_ADDSTRING, filter.text);
  SendDlgItemMessageW(window, kFilterCombo, CB_SETCURSEL, static_cast<WPARAM>(choice_.filter), 0);
  SendDlgItemMessageW(window, kNameEdit, EM_LIMITTEXT, MAX_PATH - 1, 0);
  const std::u16string start = request_.lpstrFile ? request_.lpstrFile : u"";
  GoTo(StartFolder(request_, start));
  SetDlgItemTextW(window, kNameEdit, start.c_str() + TitleStart(start));
  SetFocus(GetDlgItem(window, kNameEdit));
  return true;
}

INT_PTR CALLBACK Dialog::Proc(HWND window, UINT message, WPARAM wParam, LPARAM) {
  const auto found = FindWindowOf(window);
  auto* dialog = found ? StateOf<Dialog>(*found) : nullptr;
  if (!dialog || !dialog->window_) return FALSE;
  if (message == WM_CLOSE) return EndModal(window, IDCANCEL);
  return message == WM_COMMAND && dialog->Command(LOWORD(wParam), HIWORD(wParam));
}

bool Dialog::Command(int id, UINT code) {
  if (id == IDCANCEL) return EndModal(window_, IDCANCEL);
  if (id == IDOK)
    folderPicked_ ? OpenPicked() : Accept();
  else if (id == kFolderCombo && code == CBN_SELCHANGE)
    PickFolder();
  else if (id == kFilterCombo && code == CBN_SELCHANGE)
    PickFilter();
  else if (id == kFileList && code == LBN_SELCHANGE)
    PickFile();
  else if (id == kFileList && code == LBN_DBLCLK)
    folderPicked_ ? OpenPicked() : Accept();
  else if (id == kNameEdit && code == EN_CHANGE)
    folderPicked_ = false;
  else
    return false;
  return true;
}

// The drives, and below its own drive the folders down to the one shown.
void Dialog::FillFolders() {
  folders_.clear();
  for (const std::u16string_view drive : kDrives) {
    folders_.emplace_back(drive);
    if (lstrcmpiW(folders_.back().c_str(), folder_.substr(0, 3).c_str()) != 0) continue;
    const auto chain = FolderChain(folder_);
    folders_.insert(folders_.end(), chain.begin() + 1, chain.end());
  }
  SendDlgItemMessageW(window_, kFolderCombo, CB_RESETCONTENT, 0, 0);
  size_t shown = 0;
  for (size_t i = 0; i < folders_.size(); ++i) {
    AddLine(window_, kFolderCombo, CB_ADDSTRING, folders_[i]);
    if (lstrcmpiW(folders_[i].c_str(), folder_.c_str()) == 0) shown = i;
  }
  SendDlgItemMessageW(window_, kFolderCombo, CB_SETCURSEL, shown, 0);
}

void Dialog::FillFiles() {
  const Listing listing = List(folder_, patterns_);
  SendDlgItemMessageW(window_, kFileList, LB_RESETCONTENT, 0, 0);
  if (FolderAbove(folder_) != folder_) AddLine(window_, kFileList, LB_ADDSTRING, u"..\\");
  for (const auto& name : listing.folders)
    AddLine(window_, kFileList, LB_ADDSTRING, FolderLine(name));
  for (const auto& name : listing.files) AddLine(window_, kFileList, LB_ADDSTRING, name);
  folderPicked_ = false;
}

void Dialog::GoTo(std::u16string folder) {
  folder_ = std::move(folder);
  FillFolders();
  FillFiles();
}

void Dialog::PickFolder() {
  const int index = Selection(window_, kFolderCombo, CB_GETCURSEL);
  if (index >= 0 && index < static_cast<int>(folders_.size()))
    GoTo(folders_[static_cast<size_t>(index)]);
}

void Dialog::PickFilter() {
  const int index = Selection(window_, kFilterCombo, CB_GETCURSEL);
  if (index < 0 || index >= static_cast<int>(filters_.size())) return;
  choice_.filter = index;
  patterns_ = filters_[static_cast<size_t>(index)].patterns;
  FillFiles();
}

std::u16string Dialog::Picked() const {
  const int index = Selection(window_, kFileList, LB_GETCURSEL);
  if (index < 0) return {};
  const LRESULT length =
      SendDlgItemMessageW(window_, kFileList, LB_GETTEXTLEN, static_cast<WPARAM>(index), 0);
  std::u16string line(static_cast<size_t>(std::max<LRESULT>(length, 0)) + 1, u'\0');
  SendDlgItemMessageW(window_, kFileList, LB_GETTEXT, static_cast<WPARAM>(index),
                      reinterpret_cast<LPARAM>(line.data()));
  line.pop_back();
  return line;
}

// A picked file becomes the name; a picked folder is entered when it is opened.
void Dialog::PickFile() {
  const std::u16string line = Picked();
  if (line.empty()) return;
  if (line.back() != u'\\') SetDlgItemTextW(window_, kNameEdit, line.c_str());
  folderPicked_ = line.back() == u'\\';
}

void Dialog::OpenPicked() { GoTo(FullPath(folder_, Picked())); }

std::u16string Dialog::Name() const {
  WCHAR text[MAX_PATH] = {};
  GetDlgItemTextW(window_, kNameEdit, text, MAX_PATH);
  return Trimmed(text);
}

int Dialog::Ask(std::u16string_view about, std::u16string_view text, UINT style) const {
  const std::u16string message = std::u16string(about) + u"\n" + std::u16string(text);
  const auto window = FindWindowOf(window_);
  return MessageBoxW(window_, message.c_str(), window ? window->text.c_str() : u"", style);
}

// A name with wildcards filters, a folder is entered, anything else is the chosen file.
void Dialog::Accept() {
  const std::u16string name = Name();
  if (name.empty()) return;
  if (HasWildcard(name)) {
    patterns_ = name.substr(TitleStart(name));
    if (TitleStart(name) > 0) folder_ = FullPath(folder_, name.substr(0, TitleStart(name)));
    if (!FolderExists(folder_)) folder_ = std::u16string(kDrives[0]);
    GoTo(folder_);
    return;
  }
  if (HasForbiddenCharacter(name)) {
    Ask(name, u"ファイル名が無効です。", MB_OK | MB_ICONEXCLAMATION);
    return;
  }
  std::u16string path = FullPath(folder_, name);
  if (FolderExists(path)) {
    SetDlgItemTextW(window_, kNameEdit, u"");
    GoTo(std::move(path));
    return;
  }
  AcceptFile(std::move(path));
}

void Dialog::AcceptFile(std::u16string path) {
  if (!Passes(path)) return;
  choice_.path = std::move(path);
  choice_.readOnly = IsDlgButtonChecked(window_, kReadOnlyCheck) == BST_CHECKED;
  *out_ = choice_;
  EndModal(window_, IDOK);
}

// The default extension, then what the caller's flags demand.
bool Dialog::Passes(std::u16string& path) {
  const bool extensionless = ExtensionStart(path) == path.size();
  if (extensionless && request_.lpstrDefExt && (saving_ || !FileExists(path))) {
    if (path.back() != u'.') path += u'.';
    path += request_.lpstrDefExt;
  }
  const bool mustExist = !saving_ && (request_.Flags & OFN_FILEMUSTEXIST);
  if ((mustExist || (request_.Flags & OFN_PATHMUSTEXIST)) && !FolderExists(FolderAbove(path))) {
    Ask(path, u"パスが存在しません。\nパスを確認してください。", MB_OK | MB_ICONEXCLAMATION);
    return false;
  }
  if (mustExist && !FileExists(path)) {
    Ask(path, u"ファイルが見つかりません。\nファイル名を確認してください。",
        MB_OK | MB_ICONEXCLAMATION);
    return false;
  }
  if (saving_ && (request_.Flags & OFN_OVERWRITEPROMPT) && FileExists(path))
    return Ask(path, u"このファイルは既に存在します。上書きしますか?",
               MB_YESNO | MB_ICONEXCLAMATION | MB_DEFBUTTON2) == IDYES;
  return true;
}

}  // namespace platform::filedialog
