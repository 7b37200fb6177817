// Property sheets through the common property-sheet library: who is told what, and in which order.
#include "platform/desktop/libraries/sheet.h"

#include <windows.h>
#include <compstui.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/desktop/drawing/gdi.h"
#include "resources/resource.h"
#include "support/test_machine.h"

namespace {

using platform::Desk;
using platform::ScriptedUser;
using platform::SheetButton;
using testing::ElementsAre;
using testing::IsEmpty;

// A sheet of three pages on the module's templates; what pages and the property-sheet function are
// told is written down.
class SheetTest : public support::MachineTest {
 protected:
  enum class Road { kPage, kDialogPage };

  void SetUp() override {
    MachineTest::SetUp();
    test = this;
  }
  void TearDown() override {
    EXPECT_EQ(platform::LivePropertySheetPages(), 0);
    EXPECT_EQ(platform::LiveGdiObjects(), 0);
    EXPECT_EQ(platform::LiveDcs(), 0);
    MachineTest::TearDown();
  }

  // Shows the sheet and answers what CommonPropertySheetUIW did.
  LONG Show(std::vector<ScriptedUser::Step> steps) {
    ScriptedUser user(std::move(steps));
    desk().Attach(&user);
    const HMODULE library = LoadLibraryW(u"compstui.dll");
    const auto show = reinterpret_cast<decltype(&CommonPropertySheetUIW)>(
        reinterpret_cast<void (*)()>(GetProcAddress(library, "CommonPropertySheetUIW")));
    const LONG answer = show(nullptr, Function, 77, &result);
    FreeLibrary(library);
    desk().Attach(nullptr);
    EXPECT_EQ(user.Problem(), "");
    return answer;
  }

  static LONG CALLBACK Function(PPROPSHEETUI_INFO info, LPARAM param) {
    return test->OnFunction(*info, param);
  }

  LONG OnFunction(PROPSHEETUI_INFO& info, LPARAM param) {
    static constexpr const char* kNames[] = {"INIT", "HEADER", "DESTROY", "RESULT"};
    log.push_back(kNames[info.Reason]);
    if (info.Reason == PROPSHEETUI_REASON_INIT) {
      EXPECT_EQ(param, 77);
      EXPECT_EQ(info.lParamInit, 77);
      info.UserData = 4711;
      call = info.pfnComPropSheet;
      sheet = info.hComPropSheet;
      info.Result = 0;
      return AddPages() ? initAnswer : -1;
    }
    EXPECT_EQ(info.UserData, 4711u);
    if (info.Reason == PROPSHEETUI_REASON_GET_INFO_HEADER) {
      auto& header = *reinterpret_cast<PROPSHEETUI_INFO_HEADER*>(param);
      header.Flags = headerFlags;
      header.pTitle = title;
    } else if (info.Reason == PROPSHEETUI_REASON_SET_RESULT) {
      info.Result = static_cast<ULONG_PTR>(reinterpret_cast<SETRESULT_INFO*>(param)->Result);
    }
    return 1;
  }

  bool AddPages() {
    for (size_t i = 0; i < 3; ++i) {
      const LONG_PTR page = road == Road::kPage ? AddPage(i) : AddDialogPage(i);
      if (page == 0) return false;
      pages.push_back(page);
    }
    return true;
  }

  static constexpr WORD kTemplates[] = {IDD_VERSION, IDD_UTILITY, IDD_OPERATION};

  LONG_PTR AddPage(size_t index) {
    PROPSHEETPAGEW page = {};
    page.dwSize = sizeof page;
    page.hInstance = module_;
    page.pszTemplate = MAKEINTRESOURCEW(index == missing ? 9999 : kTemplates[index]);
    page.pfnDlgProc = PageProc;
    page.lParam = static_cast<LPARAM>(index);
    const HPROPSHEETPAGE made = CreatePropertySheetPageW(&page);
    const LONG_PTR added =
        call(sheet, CPSFUNC_ADD_HPROPSHEETPAGE, reinterpret_cast<LPARAM>(made), 0);
    if (!added && made) DestroyPropertySheetPage(made);
    return added;
  }

  LONG_PTR AddDialogPage(size_t index) {
    WCHAR none[] = u"";
    OPTITEM item = {};
    DLGPAGE dialog = {};
    dialog.cbSize = sizeof dialog;
    dialog.DlgProc = PageProc;
    dialog.DlgTemplateID = kTemplates[index];
    COMPROPSHEETUI ui = {};
    ui.cbSize = sizeof ui;
    ui.hInstCaller = module_;
    ui.pCallerName = none;
    ui.UserData = index;
    ui.pOptItem = index == missing ? nullptr : &item;
    ui.cOptItem = 1;
    ui.pDlgPage = &dialog;
    ui.cDlgPage = 1;
    DWORD count = 99;
    const LONG_PTR added = call(sheet, CPSFUNC_ADD_PCOMPROPSHEETUIW, reinterpret_cast<LPARAM>(&ui),
                                reinterpret_cast<LPARAM>(&count));
    EXPECT_EQ(count, added ? 1u : 0u);
    return added;
  }

  static INT_PTR CALLBACK PageProc(HWND page, UINT message, WPARAM, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
      const auto index =
          test->road == Road::kPage ? reinterpret_cast<PROPSHEETPAGEW*>(lParam)->lParam : lParam;
      test->windows[page] = static_cast<int>(index);
      test->log.push_back(std::to_string(index) + " INIT");
      return TRUE;
    }
    if (message == WM_NOTIFY) return test->OnNotify(page, *reinterpret_cast<PSHNOTIFY*>(lParam));
    if (message == WM_DESTROY) test->log.push_back(std::to_string(test->windows[page]) + " GONE");
    return FALSE;
  }

  INT_PTR OnNotify(HWND page, const PSHNOTIFY& notification) {
    static const std::map<UINT, std::string> kNames = {{PSN_SETACTIVE, "SETACTIVE"},
                                                       {PSN_KILLACTIVE, "KILLACTIVE"},
                                                       {PSN_APPLY, "APPLY"},
                                                       {PSN_RESET, "RESET"},
                                                       {PSN_QUERYCANCEL, "QUERYCANCEL"}};
    const std::string told = std::to_string(windows[page]) + " " + kNames.at(notification.hdr.code);
    log.push_back(told);
    if (confirm && notification.hdr.code == PSN_APPLY) {
      EXPECT_EQ(call(sheet, CPSFUNC_SET_RESULT, pages[0], CPSUI_OK), 1);
    }
    const auto answer = answers.find(told);
    SetWindowLongPtrW(page, DWLP_MSGRESULT, answer == answers.end() ? 0 : answer->second);
    return TRUE;
  }

  // A step that expects what was told since the last one.
  ScriptedUser::Step Told(std::vector<std::string> expected) {
    return [this, expected](Desk&) {
      EXPECT_EQ(log, expected);
      log.clear();
    };
  }
  static ScriptedUser::Step Turn(int index, bool done = true) {
    return [=](Desk& desk) { EXPECT_EQ(desk.Page(index), done); };
  }
  static ScriptedUser::Step Press(SheetButton button, bool done = true) {
    return [=](Desk& desk) { EXPECT_EQ(desk.Press(button), done); };
  }

  static inline SheetTest* test = nullptr;
  Road road = Road::kPage;
  WORD headerFlags = PSUIHDRF_NOAPPLYNOW | PSUIHDRF_PROPTITLE;
  LPWSTR title = MAKEINTRESOURCEW(64717);
  LONG initAnswer = 1;
  size_t missing = 99;
  bool confirm = true;
  std::map<std::string, LONG_PTR> answers;
  PFNCOMPROPSHEET call = nullptr;
  HANDLE sheet = nullptr;
  std::vector<LONG_PTR> pages;
  std::map<HWND, int> windows;
  std::vector<std::string> log;
  DWORD result = 0xABCD;
};

TEST_F(SheetTest, OkTellsTheActivePageThenEveryPageThatWasShown) {
  const LONG answer = Show(
      {Told({"INIT", "HEADER", "0 INIT", "0 SETACTIVE"}),
       [](Desk& desk) {
         const auto view = desk.Windows().back();
         EXPECT_EQ(view.title, u"プリンタのプロパティ");
         EXPECT_THAT(view.tabs, ElementsAre(u"バージョン情報", u"ユーティリティ", u"動作モード"));
         EXPECT_FALSE(view.applyVisible);
         ASSERT_NE(view.page, nullptr);
         EXPECT_NE(desk.FocusedId(), 0) << "the page's first control has the focus";
         EXPECT_EQ(desk.Title(), u"バージョン情報");
       },
       Turn(2), Told({"0 KILLACTIVE", "2 INIT", "2 SETACTIVE"}), Turn(0),
       Told({"2 KILLACTIVE", "0 SETACTIVE"}), Press(SheetButton::kOk)});
  EXPECT_EQ(answer, 1);
  EXPECT_EQ(result, static_cast<DWORD>(CPSUI_OK));
  EXPECT_THAT(log, ElementsAre("0 KILLACTIVE", "0 APPLY", "RESULT", "2 APPLY", "RESULT", "0 GONE",
                               "2 GONE", "DESTROY"));
}

TEST_F(SheetTest, CancelResetsThePagesThatWereShown) {
  EXPECT_EQ(Show({Turn(1), [this](Desk&) { log.clear(); }, Press(SheetButton::kCancel)}), 1);
  EXPECT_EQ(result, static_cast<DWORD>(CPSUI_CANCEL));
  EXPECT_THAT(log,
              ElementsAre("1 QUERYCANCEL", "0 RESET", "1 RESET", "0 GONE", "1 GONE", "DESTROY"));
}

TEST_F(SheetTest, PagesRefuse) {
  answers = {{"0 KILLACTIVE", TRUE}, {"0 QUERYCANCEL", TRUE}};
  const auto relent = [this](Desk&) {
    answers.clear();
    answers["2 APPLY"] = PSNRET_INVALID;
    log.clear();
  };
  Show({Turn(1, false), Press(SheetButton::kOk, false), Press(SheetButton::kCancel, false),
        Told({"INIT", "HEADER", "0 INIT", "0 SETACTIVE", "0 KILLACTIVE", "0 KILLACTIVE",
              "0 QUERYCANCEL"}),
        relent, Turn(2), Turn(0), Press(SheetButton::kOk, false),
        [](Desk& desk) { EXPECT_EQ(desk.Windows().back().activeTab, 2) << "the refusing page"; },
        [this](Desk&) { answers["2 APPLY"] = PSNRET_NOERROR; }, Press(SheetButton::kOk)});
  EXPECT_EQ(result, static_cast<DWORD>(CPSUI_OK));
}

TEST_F(SheetTest, ApplyWaitsForAChangeAndKeepsTheSheetOpen) {
  headerFlags = 0;
  WCHAR text[] = u"Label";
  title = text;
  const auto changed = [this](Desk& desk) {
    const HWND page = windows.begin()->first;
    EXPECT_EQ(desk.Windows().back().title, u"Label");
    SendMessageW(GetParent(page), PSM_CHANGED, reinterpret_cast<WPARAM>(page), 0);
    EXPECT_TRUE(desk.Windows().back().applyEnabled);
    log.clear();
  };
  Show({Press(SheetButton::kApply, false), changed, Press(SheetButton::kApply),
        Told({"0 KILLACTIVE", "0 APPLY", "RESULT", "0 SETACTIVE"}),
        Press(SheetButton::kApply, false), [](Desk& desk) { EXPECT_TRUE(desk.Close()); }});
  EXPECT_EQ(result, static_cast<DWORD>(CPSUI_OK)) << "what was applied stays the result";
}

TEST_F(SheetTest, DialogPagesGetTheUserData) {
  road = Road::kDialogPage;
  Show({Turn(1), Press(SheetButton::kOk)});
  EXPECT_EQ(result, static_cast<DWORD>(CPSUI_OK));
  EXPECT_THAT(log, testing::Contains("1 INIT"));
}

TEST_F(SheetTest, NothingIsShownWhenTheSheetCannotBeBuilt) {
  const auto shows = [&](const char* what) {
    log.clear();
    pages.clear();
    result = 0xABCD;
    const LONG answer = Show({});
    EXPECT_LE(answer, 0) << what;
    // A function that refused at INIT makes a cancelled sheet.
    EXPECT_EQ(result, answer == 0 ? DWORD{CPSUI_CANCEL} : 0xABCDu) << what;
    EXPECT_EQ(platform::LivePropertySheetPages(), 0) << what;
  };
  for (const Road each : {Road::kPage, Road::kDialogPage}) {
    road = each;
    missing = 1;
    shows("a page is refused");
    EXPECT_THAT(log, ElementsAre("INIT"));
    missing = 99;
    for (int n = 1; n <= 6; ++n) {
      machine().faults.FailNth(platform::Fault::kWindow, n);
      shows("a page cannot be made or added");
      machine().faults.Clear();
    }
  }
  initAnswer = -1;
  shows("the function declines");
  EXPECT_EQ(result, DWORD{CPSUI_CANCEL});
  EXPECT_THAT(log, ElementsAre("INIT"));
  EXPECT_LT(CommonPropertySheetUIW(nullptr, nullptr, 0, &result), 0);
}

// Every creation failing in turn: the sheet opens on a later page or not at all, and nothing stays
// behind.
TEST_F(SheetTest, WindowFailuresLeaveNothingBehind) {
  int opened = 0, n = 1;
  for (bool struck = true; struck; ++n) {
    ASSERT_LT(n, 500);
    pages.clear();
    windows.clear();
    log.clear();
    machine().faults.FailNth(platform::Fault::kWindow, n);
    opened += Show({Press(SheetButton::kCancel)}) > 0;
    struck = machine().faults.Struck(platform::Fault::kWindow);
    machine().faults.Clear();
    EXPECT_EQ(platform::LivePropertySheetPages(), 0) << n;
    EXPECT_EQ(desk().ModalDepth(), 0) << n;
    for (const auto& [page, index] : windows) EXPECT_FALSE(IsWindow(page)) << n;
  }
  EXPECT_GT(n, 20);
  EXPECT_GT(opened, 1);
}

TEST_F(SheetTest, HandlesOfAClosedSheetAnswerNothing) {
  Show({[this](Desk&) {
          EXPECT_EQ(call(sheet, CPSFUNC_GET_PAGECOUNT, 0, 0), 3);
          EXPECT_EQ(call(sheet, CPSFUNC_SET_RESULT, 12345, CPSUI_OK), 0);
          EXPECT_EQ(call(sheet, CPSFUNC_ADD_HPROPSHEETPAGE, 12345, 0), 0);
        },
        Press(SheetButton::kCancel)});
  EXPECT_EQ(call(sheet, CPSFUNC_SET_RESULT, pages[0], CPSUI_OK), 0);
}

}  // namespace
