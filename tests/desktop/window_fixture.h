// A dialog under test: what it is told is written down, and a script acts on it.
#pragma once

#include <windows.h>
#include <commctrl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/desk.h"
#include "platform/machine.h"
#include "support/dialog_builder.h"

namespace test {

using platform::Desk;
using platform::ScriptedUser;
using support::DialogBuilder;
using Steps = std::vector<ScriptedUser::Step>;
using Log = std::vector<std::string>;

class WindowTest : public ::testing::Test {
 protected:
  WindowTest();
  ~WindowTest() override;

  // Runs a dialog under a script that must be walked to its end; answers the dialog's result.
  INT_PTR Run(DialogBuilder& dialog, Steps steps);
  // What the dialog was told since the last call: "10 EN_CHANGE", "INIT", "DRAW 11", …
  Log Take();
  HWND Item(int id) const { return GetDlgItem(dialog, id); }
  LRESULT Send(int id, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return SendDlgItemMessageW(dialog, id, message, wParam, lParam);
  }
  static std::u16string TextOf(HWND window);

  std::unique_ptr<platform::Machine> machine;
  HWND dialog = nullptr;
  // Asked before the dialog's own default (OK and cancel end it); what it answers other than 0
  // stands.
  std::function<INT_PTR(UINT, WPARAM, LPARAM)> on;
  std::function<void()> init;
  bool logPaint = false;

 private:
  static INT_PTR CALLBACK Proc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  void Write(UINT message, WPARAM wParam, LPARAM lParam);
  Log log_;
};

}  // namespace test
