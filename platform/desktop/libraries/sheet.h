// Property sheets: pages and the window that shows them. Internal to the stand-in.
#pragma once

#include <windows.h>
#include <prsht.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "platform/desktop/windows/window.h"

// A page made with CreatePropertySheetPageW. It keeps its own copy of what it was made from.
struct _PSP {
  std::vector<std::byte> block;  // the PROPSHEETPAGEW with whatever the caller put behind it
  LPARAM initParam = 0;          // WM_INITDIALOG lParam; 0: the address of the copy
  std::u16string title;          // on the tab
  int width = 0, height = 0;     // of the template, in pixels
  HWND window = nullptr;         // null until the page is first shown
  bool changed = false;

  PROPSHEETPAGEW& page() { return *reinterpret_cast<PROPSHEETPAGEW*>(block.data()); }
  bool hasHelp() { return (page().dwFlags & PSP_HASHELP) != 0; }
};

namespace platform {

// Pages made and not destroyed.
int LivePropertySheetPages();
bool IsPropertySheetPage(HPROPSHEETPAGE page);

struct SheetRequest {
  HWND owner = nullptr;
  std::u16string title;
  std::vector<HPROPSHEETPAGE> pages;  // stay the caller's
  int start = 0;                      // index of the page shown first
  bool applyButton = true;
};

// Shows a sheet until it is closed: true after OK, false after cancel, nothing when it could not
// open (no window, or no page that can be created).
std::optional<bool> ShowSheet(const SheetRequest& request);

// What happens on a sheet, apart from its window.
class Sheet : public SheetState {
 public:
  explicit Sheet(const SheetRequest& request) : request_(request) {}

  // Creates and activates the start page, or the first after it that can be created.
  bool Open(HWND window);

  HWND ActivePage() const override;
  void Describe(WindowView& view) const override;
  bool Turn(int index) override;
  bool Press(SheetButton button) override;
  bool Close() override { return Cancel(true); }

  // The messages of a sheet (PSM_…); false: not one of them.
  bool Handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);

 private:
  int Count() const { return static_cast<int>(request_.pages.size()); }
  _PSP& At(int index) const { return *request_.pages[static_cast<size_t>(index)]; }
  int IndexOf(HWND page) const;
  LRESULT Notify(int index, UINT code, LPARAM param) const;
  bool Create(int index);
  bool Activate(int index);
  bool Leave() const;
  bool Apply(bool closing);
  bool Cancel(bool closeBox);
  bool HasChanges() const;

  SheetRequest request_;
  HWND window_ = nullptr;
  int active_ = -1;
};

}  // namespace platform
