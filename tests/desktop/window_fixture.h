// A window under test: what its procedure is told is written down, and a person's steps act on it.
#pragma once

#include <windows.h>
#include <commctrl.h>
#include <gmock/gmock.h>

#include <functional>
#include <utility>
#include <vector>

#include "platform/desktop/windows/window.h"
#include "tests/support/steps.h"
#include "tests/support/test_machine.h"

namespace support {

using platform::Part;
using testing::ElementsAre;
using testing::IsEmpty;

class WindowTest : public MachineTest {
 protected:
  // A control and its notification code; of other messages a number that they bear, and the
  // message.
  using Heard = std::vector<std::pair<int, UINT>>;

  static platform::ControlRequest Edit(int id, DWORD style = WS_TABSTOP) {
    return Part(u"edit", id, u"", style, id, 0, 60, 20);
  }
  static platform::ControlRequest Button(int id, DWORD style = 0, std::u16string text = u"Press") {
    return Part(u"button", id, std::move(text), style | WS_TABSTOP, id, 0, 60, 20);
  }

  // Shows a window of these controls; OK and cancel end it.
  INT_PTR Run(std::vector<platform::ControlRequest> parts, Steps steps) {
    current_ = this;
    platform::TopWindowRequest request;
    request.width = request.height = 100;
    request.proc = Proc;
    request.parts = std::move(parts);
    window = platform::CreateTopWindow(std::move(request));
    if (init) init();
    return Follow(std::move(steps), [this] { return platform::RunModal(window); });
  }
  HWND Item(int id) const { return GetDlgItem(window, id); }
  LRESULT Send(int id, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return SendDlgItemMessageW(window, id, message, wParam, lParam);
  }
  Heard Take() { return std::exchange(heard, {}); }
  // Nothing else was told since the last look.
  Step Told(Heard expected) {
    return [this, expected](Desk&) { EXPECT_EQ(Take(), expected); };
  }

  HWND window = nullptr;
  Heard heard;
  std::function<void()> init;
  std::function<INT_PTR(UINT, WPARAM, LPARAM)> on;  // what it answers other than 0 stands

 private:
  static INT_PTR CALLBACK Proc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    Heard& heard = current_->heard;
    if (message == WM_COMMAND) heard.emplace_back(LOWORD(wParam), HIWORD(wParam));
    if (message == WM_DRAWITEM) heard.emplace_back(static_cast<int>(wParam), message);
    if (message == WM_PAINT || message == WM_DEVMODECHANGE) heard.emplace_back(0, message);
    if (message == WM_VSCROLL) heard.emplace_back(static_cast<SHORT>(HIWORD(wParam)), message);
    if (message == WM_NOTIFY)
      heard.emplace_back(reinterpret_cast<const NMUPDOWN*>(lParam)->iPos, UDN_DELTAPOS);
    const INT_PTR answer = current_->on ? current_->on(message, wParam, lParam) : 0;
    if (answer != 0 || message != WM_COMMAND || HIWORD(wParam) != BN_CLICKED) return answer;
    const int id = LOWORD(wParam);
    return (id == IDOK || id == IDCANCEL) && EndDialog(window, id);
  }
  static inline WindowTest* current_ = nullptr;
};

}  // namespace support
