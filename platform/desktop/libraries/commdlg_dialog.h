// The window of a file dialog: folders, files, filter and name.
#pragma once

#include <windows.h>
#include <commdlg.h>

#include <string>
#include <vector>

#include "platform/desktop/libraries/commdlg_paths.h"
#include "platform/desktop/windows/window.h"

namespace platform::filedialog {

// Ids that the common dialogs have always given their controls.
constexpr int kNameEdit = 1148;
constexpr int kFileList = 1120;
constexpr int kFolderCombo = 1137;
constexpr int kFilterCombo = 1136;
constexpr int kReadOnlyCheck = 1040;

struct Choice {
  std::u16string path;  // full, as the caller gets it
  int filter = 0;       // index of the filter in use
  bool readOnly = false;
};

class Dialog : public WindowState {
 public:
  Dialog(const OPENFILENAMEW& request, bool saving);

  // Shows the dialog: true when a file was chosen.
  static bool Show(const OPENFILENAMEW& request, bool saving, Choice& choice);

 private:
  static INT_PTR CALLBACK Proc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  bool Build(HWND window);
  bool Command(int id, UINT code);
  void FillFolders();
  void FillFiles();
  void GoTo(std::u16string folder);
  void PickFolder();
  void PickFilter();
  void PickFile();
  void OpenPicked();
  void Accept();
  void AcceptFile(std::u16string path);
  bool Passes(std::u16string& path);
  std::u16string Name() const;
  std::u16string Picked() const;  // the list's selected line; empty: none
  int Ask(std::u16string_view about, std::u16string_view text, UINT style) const;

  OPENFILENAMEW request_;
  bool saving_;
  HWND window_ = nullptr;
  std::u16string folder_;
  std::vector<std::u16string> folders_;  // lines of the folder combo box
  std::vector<Filter> filters_;
  std::u16string patterns_;
  bool folderPicked_ = false;  // a folder was picked from the list after the name was last edited
  Choice choice_;
  Choice* out_ = nullptr;
};

}  // namespace platform::filedialog
