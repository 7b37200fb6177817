// Windows and controls in the order that the documentation states: notifications, focus, keyboard,
// modal windows, up-down positions and painting.
#include <windows.h>
#include <commctrl.h>

#include <functional>
#include <limits>

#include "platform/loader/resource_table.h"
#include "platform/user32/dialog_template.h"
#include "platform/user32/window.h"
#include "resources/resource.h"
#include "tests/support/steps.h"
#include "tests/support/test_machine.h"

namespace support {
namespace {

using platform::MakeControl;

// The controls of the window under test; IDOK and IDCANCEL close it.
constexpr int kEdit = 10, kOtherEdit = 11, kList = 12, kUpDown = 13;
constexpr int kButton = 20, kDefaultButton = 21, kRadio = 22, kOtherRadio = 23, kCheckBox = 24,
              kDrawing = 30;

class WindowTest : public MachineTest {
 protected:
  // A control and its notification code.
  using Notification = std::pair<int, UINT>;
  using Notifications = std::vector<Notification>;

  static platform::ControlRequest Edit(int id, DWORD style = 0) {
    return MakeControl(u"edit", id, u"", style | WS_TABSTOP, 0, 0, 60, 20);
  }
  static platform::ControlRequest Button(int id, DWORD style = 0) {
    return MakeControl(u"button", id, u"Press", style | WS_TABSTOP, 0, 0, 60, 20);
  }
  static platform::ControlRequest ComboBox() {
    return MakeControl(u"combobox", kList, u"", WS_TABSTOP, 0, 0, 50, 90);
  }

  // Shows a window with these controls. Returns the id of the button that closed it.
  INT_PTR Run(std::vector<platform::ControlRequest> controls, Steps steps) {
    current_ = this;
    window = platform::CreateTopWindow({u"", 150, 150, nullptr, Proc,
                                        platform::WindowView::Kind::kDialog, nullptr,
                                        std::move(controls)});
    return RunSteps(std::move(steps), [this] { return platform::RunModal(window); });
  }
  // Shows two edits and an up-down, whose buddy is the first edit.
  void RunUpDown(std::function<void(Desk&)> step) {
    constexpr DWORD kStyle = UDS_SETBUDDYINT | UDS_ALIGNRIGHT | UDS_ARROWKEYS;
    const auto attach = [this](Desk&) {
      Send(kUpDown, UDM_SETBUDDY, reinterpret_cast<WPARAM>(Item(kEdit)));
    };
    Run({Edit(kEdit), MakeControl(u"msctls_updown32", kUpDown, u"", kStyle, 0, 0, 9, 12),
         Edit(kOtherEdit)},
        {attach, step, Close()});
  }
  void SetRange(int low, int high) {
    Send(kUpDown, UDM_SETRANGE32, static_cast<WPARAM>(low), high);
  }
  void SetPosition(int position) { Send(kUpDown, UDM_SETPOS32, 0, position); }
  HWND Item(int id) const { return GetDlgItem(window, id); }
  LRESULT Send(int id, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return SendDlgItemMessageW(window, id, message, wParam, lParam);
  }
  // A step that fills the list of the combo box.
  Step FillList() {
    return [this](Desk&) {
      for (const WCHAR* text : {u"one", u"two", u"three"})
        Send(kList, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
      Send(kList, CB_SETCURSEL, 0);
    };
  }
  // A step that expects the notifications since the last such step.
  Step Expect(Notifications expected) {
    return [=, this](Desk&) { EXPECT_EQ(std::exchange(notifications, {}), expected); };
  }
  Step Forget() {
    return [this](Desk&) { notifications.clear(); };
  }

  HWND window = nullptr;
  Notifications notifications;
  std::function<INT_PTR(UINT, WPARAM, LPARAM)> on;  // a result other than 0 is returned

 private:
  static INT_PTR CALLBACK Proc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const int id = LOWORD(wParam);
    if (message == WM_COMMAND) current_->notifications.emplace_back(id, HIWORD(wParam));
    const INT_PTR result = current_->on ? current_->on(message, wParam, lParam) : 0;
    if (result != 0 || message != WM_COMMAND || (id != IDOK && id != IDCANCEL)) return result;
    return EndDialog(window, id);
  }
  static inline WindowTest* current_ = nullptr;
};

TEST_F(WindowTest, LostFocusIsNotifiedFirstAndItsHandlerMayMoveFocus) {
  on = [&](UINT message, WPARAM wParam, LPARAM) {
    if (message == WM_COMMAND && wParam == MAKEWPARAM(kOtherEdit, EN_KILLFOCUS)) {
      EXPECT_EQ(GetFocus(), Item(kList)) << "the control that gains the focus has it already";
      SetFocus(Item(kEdit));
    }
    return INT_PTR{0};
  };
  const auto moveToList = [](Desk& desk) { EXPECT_FALSE(desk.Focus(kList)); };
  EXPECT_EQ(Run({Edit(kEdit), Edit(kOtherEdit), ComboBox(), Button(IDOK)},
                {Focus(kOtherEdit), Focus(kOtherEdit),
                 Expect({{kEdit, EN_SETFOCUS}, {kEdit, EN_KILLFOCUS}, {kOtherEdit, EN_SETFOCUS}}),
                 moveToList,
                 Expect({{kOtherEdit, EN_KILLFOCUS}, {kList, CBN_KILLFOCUS}, {kEdit, EN_SETFOCUS}}),
                 Click(IDOK)}),
            IDOK);
}

TEST_F(WindowTest, TabSkipsDisabledControlsAndVisitsTheCheckedRadioButton) {
  const auto check = [&](Desk&) {
    CheckDlgButton(window, kCheckBox, BST_CHECKED);
    CheckRadioButton(window, kRadio, kOtherRadio, kOtherRadio);
  };
  Run({Edit(kEdit), Edit(kOtherEdit, WS_DISABLED), Button(kRadio, BS_AUTORADIOBUTTON | WS_GROUP),
       Button(kOtherRadio, BS_AUTORADIOBUTTON), Button(kCheckBox, BS_AUTOCHECKBOX | WS_GROUP)},
      {check, Tab(), ExpectFocus(kOtherRadio), Tab(), ExpectFocus(kCheckBox), Tab(),
       ExpectFocus(kEdit), Tab(true), ExpectFocus(kCheckBox), Tab(true), ExpectFocus(kOtherRadio),
       Key(VK_UP), ExpectChecked({kRadio, kCheckBox}), ExpectChecked({kOtherRadio}, false),
       Close()});
}

TEST_F(WindowTest, EnterPressesTheFocusedOrTheDefaultButton) {
  const auto pressed = [&](int id) { return Steps{Forget(), Enter(), Expect({{id, BN_CLICKED}})}; };
  const auto nextControl = [&](WPARAM target, bool isHandle) {
    return [=, this](Desk&) { SendMessageW(window, WM_NEXTDLGCTL, target, isHandle); };
  };
  const auto toButton = [&](Desk& desk) {
    nextControl(reinterpret_cast<WPARAM>(Item(kButton)), true)(desk);
  };
  const auto focusOnly = [&](Desk&) { SetFocus(Item(kButton)); };
  Run({Edit(kEdit), Button(kButton), Button(kDefaultButton, BS_DEFPUSHBUTTON), Button(IDCANCEL)},
      {pressed(kDefaultButton), Focus(kButton), pressed(kButton), Focus(kEdit),
       pressed(kDefaultButton), focusOnly, pressed(kDefaultButton), toButton, pressed(kButton),
       nextControl(TRUE, false), pressed(kDefaultButton), Click(IDCANCEL)});
  EXPECT_EQ(Run({Edit(kEdit)}, {Enter()}), IDOK) << "no default button: OK";
}

TEST_F(WindowTest, ModalWindowBlocksWindowsBelow) {
  on = [&](UINT message, WPARAM wParam, LPARAM) -> INT_PTR {
    if (message != WM_COMMAND || wParam != MAKEWPARAM(kButton, BN_CLICKED)) return 0;
    EXPECT_EQ(MessageBoxW(Item(kButton), u"Sure?", u"Ask", MB_OKCANCEL | MB_DEFBUTTON2), IDCANCEL);
    return TRUE;
  };
  const auto below = [&](Desk& desk) {
    EXPECT_FALSE(desk.Windows()[0].enabled);
    EXPECT_FALSE(desk.Focus(kEdit) || SetFocus(Item(kEdit)));
    EXPECT_EQ(desk.MessageText(), u"Sure?");
  };
  Run({Edit(kEdit), Button(kButton)},
      {Click(kButton), below, ExpectTitle(u"Ask"), ExpectFocus(IDCANCEL), Enter(),
       ExpectFocus(kButton), Focus(kEdit), Escape()});
}

TEST_F(WindowTest, SelectionByMouseNotifiesAChangeAfterTheListCloses) {
  const Notification opens = {kList, CBN_DROPDOWN}, accepts = {kList, CBN_SELENDOK},
                     closes = {kList, CBN_CLOSEUP}, changes = {kList, CBN_SELCHANGE};
  Run({ComboBox()},
      {FillList(), Focus(kList), Expect({{kList, CBN_SETFOCUS}}), Select(kList, u"three"),
       Expect({opens, accepts, closes, changes}), Select(kList, 2),
       Expect({opens, accepts, closes}), Key(VK_UP), Expect({accepts, changes}), Close()});
}

// Enter and Esc close the list first, and reach the dialog only when it is closed.
TEST_F(WindowTest, OpenListNotifiesEachArrowAndEscRestoresTheSelection) {
  const Steps open = {Focus(kList), Forget(), Key(VK_F4), Expect({{kList, CBN_DROPDOWN}})};
  const Steps down = {Key(VK_DOWN), Expect({{kList, CBN_SELCHANGE}})};
  const Notification accepts = {kList, CBN_SELENDOK}, cancels = {kList, CBN_SELENDCANCEL},
                     closes = {kList, CBN_CLOSEUP}, leaves = {kList, CBN_KILLFOCUS};
  const Steps escape = {open,
                        down,
                        down,
                        ExpectSelected(kList, 2),
                        Escape(),
                        Expect({cancels, closes}),
                        ExpectSelected(kList, 0)};
  const Steps enter = {open, down, Enter(), Expect({accepts, closes}), ExpectSelected(kList, 1)};
  const Steps tab = {open, down, Tab(), Expect({cancels, closes, leaves, {kEdit, EN_SETFOCUS}}),
                     ExpectSelected(kList, 1)};
  const Steps key = {open, Key(VK_F4), Expect({accepts, closes})};
  EXPECT_EQ(Run({ComboBox(), Edit(kEdit)}, {FillList(), escape, enter, tab, key, Escape()}),
            IDCANCEL);
}

TEST_F(WindowTest, UpDownPositionIsBuddyNumberInRange) {
  const struct {
    int low, high;
    const char16_t* text;
    BOOL error;
    int position;  // the old position when there is an error
  } rows[] = {{0, 100, u" +7", FALSE, 7}, {0, 100, u"100", FALSE, 100},
              {-9, 50, u"-9", FALSE, -9}, {100, 0, u"60", FALSE, 60},
              {0, 100, u"101", TRUE, 5},  {0, 100, u"", TRUE, 5},
              {0, 100, u"4a", TRUE, 5},   {0, 100, u"99999999999999999999", TRUE, 5}};
  const auto step = [&](Desk&) {
    for (const auto& row : rows) {
      BOOL error = FALSE;
      SetRange(row.low, row.high);
      SetPosition(5);
      SetDlgItemTextW(window, kEdit, row.text);
      const LRESULT position = Send(kUpDown, UDM_GETPOS32, 0, reinterpret_cast<LPARAM>(&error));
      EXPECT_EQ(position, row.position) << testing::PrintToString(row.text);
      EXPECT_EQ(error, row.error);
    }
  };
  RunUpDown(step);
}

TEST_F(WindowTest, UpDownPositionIsClampedAndWritesTheBuddyOnce) {
  RunUpDown([&](Desk& desk) {
    SetRange(-800, 800);
    SetPosition(1234);
    EXPECT_EQ(desk.Text(kEdit), u"800");
    notifications.clear();
    for (int i = 0; i < 2; ++i) SetPosition(-3);
    EXPECT_EQ(desk.Text(kEdit), u"-3");
    EXPECT_EQ(notifications, Notifications({{kEdit, EN_UPDATE}, {kEdit, EN_CHANGE}}));
    SetDlgItemTextW(window, kEdit, u"5x");
    SetPosition(-3);
    EXPECT_EQ(desk.Text(kEdit), u"-3") << "the same position replaces an invalid text";
    EXPECT_TRUE(desk.Spin(kUpDown, std::numeric_limits<int>::min()));
    EXPECT_EQ(desk.Text(kEdit), u"-800");
    SetRange(900, 0);
    EXPECT_TRUE(desk.Spin(kUpDown, -2));
    EXPECT_EQ(desk.Text(kEdit), u"1") << "down counts up in an inverted range";
  });
}

TEST_F(WindowTest, UpDownStepNotifiesThenMovesThenScrolls) {
  bool refuses = false;
  on = [&](UINT message, WPARAM wParam, LPARAM lParam) -> INT_PTR {
    if (message == WM_VSCROLL) {
      notifications.emplace_back(kUpDown, WM_VSCROLL);
      EXPECT_EQ(HIWORD(wParam), refuses ? 8 : 9);
    }
    if (message != WM_NOTIFY) return 0;
    notifications.emplace_back(kUpDown, UDN_DELTAPOS);
    EXPECT_EQ(reinterpret_cast<const NMUPDOWN*>(lParam)->iPos, 8);
    SetWindowLongPtrW(window, DWLP_MSGRESULT, refuses);
    return TRUE;
  };
  const Notification step = {kUpDown, UDN_DELTAPOS}, scrolls = {kUpDown, WM_VSCROLL};
  const auto press = [&](Desk& desk, bool isRefused, Notifications expected) {
    SetDlgItemTextW(window, kEdit, u"8");
    notifications.clear();
    refuses = isRefused;
    EXPECT_TRUE(desk.Spin(kUpDown, 1));
    EXPECT_EQ(notifications, expected);
  };
  RunUpDown([&](Desk& desk) {
    SetRange(0, 100);
    desk.Focus(kOtherEdit);
    press(desk, false,
          {{kOtherEdit, EN_KILLFOCUS},
           {kEdit, EN_SETFOCUS},
           step,
           {kEdit, EN_UPDATE},
           {kEdit, EN_CHANGE},
           scrolls,
           scrolls});
    press(desk, true, {step, scrolls});
    EXPECT_EQ(desk.Text(kEdit), u"8");
    refuses = false;
    EXPECT_TRUE(desk.Key(VK_UP));
    EXPECT_EQ(desk.Text(kEdit), u"9");
  });
}

TEST_F(WindowTest, WmPaintComesAfterInput) {
  on = [&](UINT message, WPARAM, LPARAM lParam) -> INT_PTR {
    if (message != WM_DRAWITEM) return 0;
    notifications.emplace_back(kDrawing, WM_DRAWITEM);
    return Rectangle(reinterpret_cast<const DRAWITEMSTRUCT*>(lParam)->hDC, 0, 0, 9, 9);
  };
  const auto input = [&](Desk& desk) {
    InvalidateRect(Item(kDrawing), nullptr, FALSE);
    EXPECT_TRUE(desk.Type(kEdit, u"a"));
  };
  Run({MakeControl(u"static", kDrawing, u"", SS_OWNERDRAW, 0, 0, 60, 18), Edit(kEdit)},
      {Expect({{kEdit, EN_SETFOCUS}, {kDrawing, WM_DRAWITEM}}), input,
       Expect({{kEdit, EN_UPDATE}, {kEdit, EN_CHANGE}, {kDrawing, WM_DRAWITEM}}), Close()});
}

TEST_F(MachineTest, TruncatedOrForeignDialogTemplateIsRejected) {
  const platform::Bytes data =
      platform::FindResourceBytes(module_, MAKEINTRESOURCEW(DWORD_PTR{platform::kResourceDialog}),
                                  MAKEINTRESOURCEW(IDD_UTILITY));
  const auto isValid = [](const void* bytes, size_t size) {
    platform::DialogTemplate form;
    return platform::ParseDialogTemplate(bytes, size, form);
  };
  EXPECT_TRUE(isValid(data.data(), data.size()));
  for (size_t size = 0; size + sizeof(DWORD) < data.size(); ++size)
    EXPECT_FALSE(isValid(data.data(), size)) << size;
  const std::vector<std::byte> zeros(data.size());
  EXPECT_FALSE(isValid(zeros.data(), zeros.size()));
}

}  // namespace
}  // namespace support
