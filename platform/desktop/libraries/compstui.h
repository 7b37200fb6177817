// The common property-sheet library from inside: the tree of what property-sheet functions added
// to a sheet.
#pragma once

#include <windows.h>
#include <compstui.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/desktop/libraries/sheet.h"

namespace platform {

// Texts of the library by resource id; empty when it has none.
std::u16string CompstuiText(ULONG_PTR id);

// One sheet under construction or shown. A node is a property-sheet function with what it added, a
// COMPROPSHEETUI with its pages, or a page. Node numbers are the handles the caller gets.
class CommonSheet {
 public:
  CommonSheet(HWND owner, PFNPROPSHEETUI function, LPARAM param);
  ~CommonSheet();
  CommonSheet(const CommonSheet&) = delete;
  CommonSheet& operator=(const CommonSheet&) = delete;

  // Builds, shows and takes down the sheet; above 0, or one of ERR_CPSUI_….
  LONG Run();
  DWORD result() const { return static_cast<DWORD>(nodes_[0]->info.Result); }

 private:
  struct Node {
    Node* parent = nullptr;
    HANDLE handle = nullptr;
    PFNPROPSHEETUI function = nullptr;  // of a function's node
    PROPSHEETUI_INFO info = {};
    HPROPSHEETPAGE page = nullptr;  // of a page's node
  };

  static LONG_PTR CALLBACK Call(HANDLE sheet, UINT function, LPARAM lParam1, LPARAM lParam2);
  static CommonSheet* Find(HANDLE sheet, Node*& node);

  Node* NodeOf(LONG_PTR handle) const;
  Node& Add(Node* parent);
  void Drop(size_t keep);  // takes down all nodes but the first ones
  LONG CallFunction(Node& node, WORD reason, LPARAM param);
  LONG_PTR Dispatch(Node& node, UINT function, LPARAM lParam1, LPARAM lParam2);
  LONG_PTR AddPage(Node& node, HPROPSHEETPAGE page);
  LONG_PTR AddFunction(Node& node, PFNPROPSHEETUI function, LPARAM param);
  LONG_PTR AddDialogPages(Node& node, const COMPROPSHEETUI* description, LPDWORD pageCount);
  LONG_PTR SetResult(Node& node, LPARAM handle, LPARAM result);
  int PageCount(const Node* below) const;
  LONG Show();

  HWND owner_;
  std::vector<std::unique_ptr<Node>> nodes_;  // in the order they were added; the first is the root
  LONG_PTR start_ = 0;                        // handle of the page to show first
};

}  // namespace platform
