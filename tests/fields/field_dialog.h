// A dialog of the driver with nothing behind its fields but the toolkit.
#pragma once

#include <commctrl.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "paper/fields/controls.h"
#include "paper/fields/numeric_field.h"
#include "paper/paper_info.h"
#include "resources/resource.h"
#include "tests/support/open_sheet.h"

namespace kestrel {

// Fields of those dialogs that the tests open.
inline constexpr NumericField kSizeRows[] = {
    {IDC_PAPER_REGISTER_WIDTH, IDC_PAPER_REGISTER_WIDTH_SPIN, 100, 580, kMillimetre},
    {IDC_PAPER_REGISTER_GAP, IDC_PAPER_REGISTER_GAP_SPIN, 0, 80, kMillimetre},
};
inline constexpr NumericField kDecoRows[] = {
    {IDC_DECO_FONT_WIDTH, IDC_DECO_FONT_WIDTH_SPIN, 27, 550, kDot},
    {IDC_DECO_FONT_HEIGHT, IDC_DECO_FONT_HEIGHT_SPIN, 50, 999, kDot},
    {IDC_DECO_FONT_INCREMENT, IDC_DECO_FONT_INCREMENT_SPIN, -9999, 9999, kPlain},
};

// A template of the module with the toolkit behind it and nothing else.
class FieldDialogTest : public support::MachineTest {
 protected:
  // Opens a template, does what is asked when it opens, follows the script and closes it.
  void Open(int dialogId, std::function<void()> opened, support::Steps steps = {}) {
    opened_ = std::move(opened);
    dialog = {nullptr, dialogId == IDD_DECO_FONT ? NumericFieldTable(kDecoRows) : kSizeRows};
    steps.push_back([](platform::Desk& desk) { EXPECT_TRUE(desk.Close()); });
    platform::ScriptedUser user(std::move(steps));
    desk().Attach(&user);
    DialogBoxParamW(module_, MAKEINTRESOURCEW(dialogId), nullptr, Procedure,
                    reinterpret_cast<LPARAM>(this));
    desk().Attach(nullptr);
    EXPECT_EQ(user.Problem(), "");
  }

  static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
      SetWindowLongPtrW(window, DWLP_USER, lParam);
      auto* self = reinterpret_cast<FieldDialogTest*>(lParam);
      self->dialog.window = window;
      self->opened_();
      return TRUE;
    }
    auto* self = reinterpret_cast<FieldDialogTest*>(GetWindowLongPtrW(window, DWLP_USER));
    if (message == WM_COMMAND && LOWORD(wParam) == IDCANCEL) return EndDialog(window, 0);
    if (message == WM_COMMAND && HIWORD(wParam) == EN_CHANGE && self && self->typed) {
      self->typed(LOWORD(wParam));
    }
    return FALSE;
  }

  int Position(int spin) { return SpinPosition(dialog.window, spin); }

  FieldDialog dialog = {};
  std::function<void(int)> typed;

 private:
  std::function<void()> opened_;
};

}  // namespace kestrel
