#include "desktop/window_fixture.h"

#include <utility>

namespace test {

namespace {

WindowTest* current = nullptr;

std::string CommandName(HWND control, UINT code) {
  WCHAR name[32] = {};
  struct Entry {
    platform::ControlKind kind;
    UINT code;
    const char* name;
  };
  using Kind = platform::ControlKind;
  static constexpr Entry kEntries[] = {
      {Kind::kEdit, EN_SETFOCUS, "EN_SETFOCUS"},
      {Kind::kEdit, EN_KILLFOCUS, "EN_KILLFOCUS"},
      {Kind::kEdit, EN_UPDATE, "EN_UPDATE"},
      {Kind::kEdit, EN_CHANGE, "EN_CHANGE"},
      {Kind::kEdit, EN_MAXTEXT, "EN_MAXTEXT"},
      {Kind::kComboBox, CBN_SETFOCUS, "CBN_SETFOCUS"},
      {Kind::kComboBox, CBN_KILLFOCUS, "CBN_KILLFOCUS"},
      {Kind::kComboBox, CBN_DROPDOWN, "CBN_DROPDOWN"},
      {Kind::kComboBox, CBN_SELENDOK, "CBN_SELENDOK"},
      {Kind::kComboBox, CBN_SELENDCANCEL, "CBN_SELENDCANCEL"},
      {Kind::kComboBox, CBN_CLOSEUP, "CBN_CLOSEUP"},
      {Kind::kComboBox, CBN_SELCHANGE, "CBN_SELCHANGE"},
      {Kind::kListBox, LBN_SETFOCUS, "LBN_SETFOCUS"},
      {Kind::kListBox, LBN_KILLFOCUS, "LBN_KILLFOCUS"},
      {Kind::kListBox, LBN_SELCHANGE, "LBN_SELCHANGE"},
      {Kind::kButton, BN_CLICKED, "BN_CLICKED"},
      {Kind::kButton, BN_SETFOCUS, "BN_SETFOCUS"},
      {Kind::kButton, BN_KILLFOCUS, "BN_KILLFOCUS"},
  };
  // The class tells which of the equal numbers is meant.
  GetClassNameW(control, name, 32);
  const std::u16string_view which = name;
  const Kind kind = which == u"Edit"       ? Kind::kEdit
                    : which == u"ComboBox" ? Kind::kComboBox
                    : which == u"ListBox"  ? Kind::kListBox
                                           : Kind::kButton;
  for (const Entry& entry : kEntries) {
    if (entry.kind == kind && entry.code == code) return entry.name;
  }
  return std::to_string(code);
}

}  // namespace

WindowTest::WindowTest() : machine(platform::Machine::Create()) { current = this; }
WindowTest::~WindowTest() { current = nullptr; }

INT_PTR WindowTest::Run(DialogBuilder& builder, Steps steps) {
  ScriptedUser user(std::move(steps));
  machine->desk().Attach(&user);
  const INT_PTR result =
      DialogBoxIndirectParamW(nullptr, builder.Template(), nullptr, Proc, 0x1234);
  machine->desk().Attach(nullptr);
  EXPECT_EQ(user.Problem(), "");
  EXPECT_TRUE(user.Finished());
  EXPECT_EQ(machine->desk().ModalDepth(), 0);
  EXPECT_TRUE(machine->desk().Windows().empty());
  return result;
}

Log WindowTest::Take() { return std::exchange(log_, {}); }

std::u16string WindowTest::TextOf(HWND window) {
  WCHAR text[256] = {};
  GetWindowTextW(window, text, 256);
  return text;
}

void WindowTest::Write(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_INITDIALOG:
      EXPECT_EQ(lParam, 0x1234);
      log_.push_back("INIT");
      break;
    case WM_COMMAND:
      log_.push_back(std::to_string(LOWORD(wParam)) + " " +
                     CommandName(reinterpret_cast<HWND>(lParam), HIWORD(wParam)));
      break;
    case WM_NOTIFY: {
      const auto* notice = reinterpret_cast<const NMUPDOWN*>(lParam);
      if (notice->hdr.code == UDN_DELTAPOS) {
        log_.push_back("DELTA " + std::to_string(notice->iPos) + " " +
                       std::to_string(notice->iDelta));
      }
      break;
    }
    case WM_VSCROLL:
    case WM_HSCROLL:
      log_.push_back("SCROLL " + std::to_string(LOWORD(wParam)) + " " +
                     std::to_string(static_cast<SHORT>(HIWORD(wParam))));
      break;
    case WM_CLOSE:
      log_.push_back("CLOSE");
      break;
    case WM_PAINT:
      if (logPaint) log_.push_back("PAINT");
      break;
    case WM_DRAWITEM:
      if (logPaint) log_.push_back("DRAW " + std::to_string(wParam));
      break;
    case WM_APP:
      log_.push_back("POSTED");
      break;
    default:
      break;
  }
}

INT_PTR CALLBACK WindowTest::Proc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  WindowTest& test = *current;
  test.dialog = window;
  test.Write(message, wParam, lParam);
  if (test.on) {
    const INT_PTR answer = test.on(message, wParam, lParam);
    if (answer != 0) return answer;
  }
  if (message == WM_INITDIALOG) {
    if (test.init) test.init();
    return TRUE;
  }
  if (message == WM_COMMAND && HIWORD(wParam) == BN_CLICKED &&
      (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL)) {
    EndDialog(window, LOWORD(wParam));
    return TRUE;
  }
  return FALSE;
}

}  // namespace test
