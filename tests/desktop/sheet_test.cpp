// Property sheets through the common property-sheet library: who is told what, and in which order.
#include "platform/desktop/libraries/sheet.h"

#include <compstui.h>
#include <gmock/gmock.h>

#include <map>

#include "platform/desktop/drawing/gdi.h"
#include "resources/resource.h"
#include "tests/support/steps.h"
#include "tests/support/test_machine.h"

namespace support {
namespace {

using testing::ElementsAre;

// A sheet of three pages on the module's templates; what pages and the property-sheet function are
// told is written down.
class SheetTest : public MachineTest {
 protected:
  void SetUp() override {
    MachineTest::SetUp();
    test = this;
  }
  void TearDown() override {
    EXPECT_EQ(platform::LivePropertySheetPages(), 0);
    EXPECT_EQ(platform::LiveGdiObjects() + platform::LiveDcs(), 0);
    MachineTest::TearDown();
  }
  LONG Show(Steps steps) {
    log.clear(), pages.clear(), windows.clear();
    return Follow(std::move(steps),
                  [&] { return CommonPropertySheetUIW(nullptr, Function, 77, &result); });
  }

  static LONG CALLBACK Function(PPROPSHEETUI_INFO info, LPARAM param) {
    static constexpr const char* kNames[] = {"INIT", "HEADER", "DESTROY", "RESULT"};
    test->log.push_back(kNames[info->Reason]);
    if (info->Reason == PROPSHEETUI_REASON_INIT) {
      EXPECT_EQ(std::pair(param, info->lParamInit), std::pair(LPARAM{77}, LPARAM{77}));
      info->UserData = 4711;
      test->call = info->pfnComPropSheet;
      test->sheet = info->hComPropSheet;
      return test->AddPages() ? 1 : -1;
    }
    EXPECT_EQ(info->UserData, 4711u);
    if (info->Reason == PROPSHEETUI_REASON_GET_INFO_HEADER) {
      auto& header = *reinterpret_cast<PROPSHEETUI_INFO_HEADER*>(param);
      header.Flags = PSUIHDRF_NOAPPLYNOW | PSUIHDRF_PROPTITLE;
      header.pTitle = MAKEINTRESOURCEW(64717);
    } else if (info->Reason == PROPSHEETUI_REASON_SET_RESULT) {
      info->Result = static_cast<ULONG_PTR>(reinterpret_cast<SETRESULT_INFO*>(param)->Result);
    }
    return 1;
  }

  bool AddPages() {
    for (const int id : {IDD_VERSION, IDD_UTILITY, IDD_OPERATION}) {
      PROPSHEETPAGEW page = {};
      page.dwSize = sizeof page;
      page.hInstance = module_;
      page.pszTemplate = MAKEINTRESOURCEW(id == missing ? 9999 : id);
      page.pfnDlgProc = PageProc;
      page.lParam = static_cast<LPARAM>(pages.size());
      const HPROPSHEETPAGE made = CreatePropertySheetPageW(&page);
      pages.push_back(call(sheet, CPSFUNC_ADD_HPROPSHEETPAGE, reinterpret_cast<LPARAM>(made), 0));
      if (pages.back() == 0) return DestroyPropertySheetPage(made), false;
    }
    return true;
  }

  static INT_PTR CALLBACK PageProc(HWND page, UINT message, WPARAM, LPARAM lParam) {
    if (message == WM_INITDIALOG)
      test->windows[page] = reinterpret_cast<PROPSHEETPAGEW*>(lParam)->lParam;
    static const std::map<UINT, std::string> kNames = {
        {PSN_SETACTIVE, "SETACTIVE"}, {PSN_KILLACTIVE, "KILLACTIVE"},
        {PSN_APPLY, "APPLY"},         {PSN_QUERYCANCEL, "QUERYCANCEL"},
        {PSN_RESET, "RESET"},         {WM_INITDIALOG, "INIT"},
        {WM_DESTROY, "GONE"}};
    const auto* notification = reinterpret_cast<const PSHNOTIFY*>(lParam);
    const auto name = kNames.find(message == WM_NOTIFY ? notification->hdr.code : message);
    if (name == kNames.end()) return FALSE;
    const std::string told = std::to_string(test->windows[page]) + " " + name->second;
    test->log.push_back(told);
    if (name->first == PSN_RESET) test->closeBox = notification->lParam != 0;
    if (name->first == PSN_APPLY) {
      EXPECT_EQ(test->call(test->sheet, CPSFUNC_SET_RESULT, test->pages[0], CPSUI_OK), 1);
    }
    SetWindowLongPtrW(page, DWLP_MSGRESULT, told == test->refused);
    return TRUE;
  }

  // What was told since the last look.
  Step Told(std::vector<std::string> expected) {
    return [this, expected](Desk&) { EXPECT_EQ(std::exchange(log, {}), expected); };
  }
  Step Refuse(std::string told) {
    return [this, told](Desk&) { refused = told; };
  }

  static inline SheetTest* test = nullptr;
  int missing = 0;
  std::string refused;
  bool closeBox = false;
  PFNCOMPROPSHEET call = nullptr;
  HANDLE sheet = nullptr;
  std::vector<LONG_PTR> pages;
  std::map<HWND, LPARAM> windows;
  std::vector<std::string> log;
  DWORD result = 0xABCD;
};

TEST_F(SheetTest, OkTellsTheActivePageThenEveryPageThatWasShown) {
  const auto look = [&](Desk& desk) {
    const auto view = desk.Windows().back();
    EXPECT_EQ(view.title, u"プリンタのプロパティ");
    EXPECT_THAT(view.tabs, ElementsAre(u"バージョン情報", u"ユーティリティ", u"動作モード"));
    EXPECT_NE(desk.FocusedId(), 0) << "the page's first control has the focus";
    const HWND page = windows.begin()->first;
    SendMessageW(GetParent(page), PSM_CHANGED, reinterpret_cast<WPARAM>(page), 0);
  };
  const LONG answer =
      Show({Told({"INIT", "HEADER", "0 INIT", "0 SETACTIVE"}), ExpectTitle(u"バージョン情報"),
            ExpectChanged(false), look, ExpectChanged(true), GoTo(2),
            Told({"0 KILLACTIVE", "2 INIT", "2 SETACTIVE"}), GoTo(0),
            Told({"2 KILLACTIVE", "0 SETACTIVE"}), PressOk()});
  EXPECT_EQ(answer, 1);
  EXPECT_EQ(result, static_cast<DWORD>(CPSUI_OK));
  EXPECT_THAT(log, ElementsAre("0 KILLACTIVE", "0 APPLY", "RESULT", "2 APPLY", "RESULT", "0 GONE",
                               "2 GONE", "DESTROY"));
  EXPECT_EQ(call(sheet, CPSFUNC_SET_RESULT, pages[0], CPSUI_OK), 0) << "the handle of a closed one";
}

TEST_F(SheetTest, CancelResetsThePagesThatWereShown) {
  EXPECT_EQ(Show({GoTo(1), [this](Desk&) { log.clear(); }, PressCancel()}), 1);
  EXPECT_EQ(result, static_cast<DWORD>(CPSUI_CANCEL));
  EXPECT_THAT(log,
              ElementsAre("1 QUERYCANCEL", "0 RESET", "1 RESET", "0 GONE", "1 GONE", "DESTROY"));
  EXPECT_FALSE(closeBox);
  Show({Close()});
  EXPECT_TRUE(closeBox);
}

TEST_F(SheetTest, PagesRefuse) {
  Show({Refuse("0 KILLACTIVE"),
        [](Desk& desk) { EXPECT_FALSE(desk.Page(1) || desk.Press(platform::SheetButton::kOk)); },
        Refuse("0 QUERYCANCEL"), [](Desk& desk) { EXPECT_FALSE(desk.Close()); }, Refuse("0 APPLY"),
        [](Desk& desk) { EXPECT_FALSE(desk.Press(platform::SheetButton::kOk)); }, Refuse(""),
        PressOk()});
  EXPECT_EQ(result, static_cast<DWORD>(CPSUI_OK));
}

TEST_F(SheetTest, APageThatCannotBeAddedIsTheEndOfIt) {
  for (const int id : {IDD_VERSION, IDD_UTILITY, IDD_OPERATION}) {
    missing = id;
    EXPECT_EQ(Show({}), CPSUI_CANCEL);
    EXPECT_THAT(log, ElementsAre("INIT"));
  }
}

}  // namespace
}  // namespace support
