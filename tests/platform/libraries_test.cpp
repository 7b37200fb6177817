// The libraries with windows of their own: property sheets (order of notifications), file dialogs
// (paths, refusals and questions) and the halftone dialogs (fields and results).
#include <windows.h>
#include <commdlg.h>
#include <compstui.h>
#include <winddi.h>

#include "platform/comctl32/property_sheet.h"
#include "resources/resource.h"
#include "tests/support/steps.h"
#include "tests/support/test_machine.h"

namespace support {
namespace {

// A sheet of three pages with templates of the module.
class PropertySheet : public MachineTest {
 protected:
  // A page, named by its template, and its notification; or 0 and the reason of a call of the
  // property-sheet function.
  using Events = std::vector<std::pair<int, UINT>>;

  // Shows the sheet. Returns its result.
  DWORD Show(Steps steps) {
    test = this;
    DWORD result = 0xABCD;
    const auto show = [&] { return CommonPropertySheetUIW(nullptr, Function, 77, &result); };
    EXPECT_EQ(RunSteps(std::move(steps), show), 1);
    EXPECT_EQ(platform::LivePropertySheetPages(), 0);
    return result;
  }

  static LONG CALLBACK Function(PPROPSHEETUI_INFO info, LPARAM param) {
    test->events.emplace_back(0, info->Reason);
    if (info->Reason == PROPSHEETUI_REASON_INIT) {
      test->sheet = *info;
      for (const int id : {IDD_OPERATION, IDD_UTILITY, IDD_VERSION}) {
        PROPSHEETPAGEW page = {};
        page.dwSize = sizeof page;
        page.hInstance = test->module_;
        page.pszTemplate = MAKEINTRESOURCEW(id);
        page.pfnDlgProc = PageProc;
        page.lParam = id;
        const auto made = reinterpret_cast<LPARAM>(CreatePropertySheetPageW(&page));
        test->lastPage = test->Call(CPSFUNC_ADD_HPROPSHEETPAGE, made, 0);
      }
    }
    if (info->Reason == PROPSHEETUI_REASON_GET_INFO_HEADER) {
      auto& header = *reinterpret_cast<PROPSHEETUI_INFO_HEADER*>(param);
      header.Flags = PSUIHDRF_NOAPPLYNOW | PSUIHDRF_PROPTITLE;
      header.pTitle = MAKEINTRESOURCEW(64717);
    }
    if (info->Reason == PROPSHEETUI_REASON_SET_RESULT)
      info->Result = static_cast<ULONG_PTR>(reinterpret_cast<SETRESULT_INFO*>(param)->Result);
    return 1;
  }
  LONG_PTR Call(UINT function, LPARAM one, LPARAM other) {
    return sheet.pfnComPropSheet(sheet.hComPropSheet, function, one, other);
  }
  static INT_PTR CALLBACK PageProc(HWND page, UINT message, WPARAM, LPARAM lParam) {
    if (message == WM_INITDIALOG)
      SetWindowLongPtrW(page, DWLP_USER, reinterpret_cast<PROPSHEETPAGEW*>(lParam)->lParam);
    if (message != WM_NOTIFY && message != WM_INITDIALOG) return FALSE;
    const UINT code = message == WM_NOTIFY ? reinterpret_cast<NMHDR*>(lParam)->code : message;
    test->events.emplace_back(GetWindowLongPtrW(page, DWLP_USER), code);
    if (code == PSN_APPLY) test->Call(CPSFUNC_SET_RESULT, test->lastPage, CPSUI_OK);
    SetWindowLongPtrW(page, DWLP_MSGRESULT, test->refuses);
    return TRUE;
  }

  static inline PropertySheet* test = nullptr;
  Events events;
  bool refuses = false;
  PROPSHEETUI_INFO sheet = {};
  LONG_PTR lastPage = 0;
};

// A page is created when it is shown first. Pages that were shown apply in page order.
TEST_F(PropertySheet, ActivePageMayRefuseBeforeShownPagesApply) {
  const auto look = [&](Desk& desk) {
    EXPECT_EQ(desk.Windows().back().title, u"プリンタのプロパティ");
    EXPECT_EQ(desk.FocusedId(), IDC_OPERATION_COLOR_BLACK) << "the page's first control";
    events.clear();
    refuses = true;
    EXPECT_FALSE(desk.Page(1) || desk.Press(platform::SheetButton::kOk) || desk.Close());
    refuses = false;
  };
  EXPECT_EQ(Show({look, GoTo(2), GoTo(0), PressOk()}), DWORD{CPSUI_OK});
  const Events expected = {{IDD_OPERATION, PSN_KILLACTIVE},    {IDD_OPERATION, PSN_KILLACTIVE},
                           {IDD_OPERATION, PSN_QUERYCANCEL},   {IDD_OPERATION, PSN_KILLACTIVE},
                           {IDD_VERSION, WM_INITDIALOG},       {IDD_VERSION, PSN_SETACTIVE},
                           {IDD_VERSION, PSN_KILLACTIVE},      {IDD_OPERATION, PSN_SETACTIVE},
                           {IDD_OPERATION, PSN_KILLACTIVE},    {IDD_OPERATION, PSN_APPLY},
                           {0, PROPSHEETUI_REASON_SET_RESULT}, {IDD_VERSION, PSN_APPLY},
                           {0, PROPSHEETUI_REASON_SET_RESULT}, {0, PROPSHEETUI_REASON_DESTROY}};
  EXPECT_EQ(events, expected);
  EXPECT_EQ(Call(CPSFUNC_SET_RESULT, lastPage, CPSUI_OK), 0) << "the sheet is closed";
}

class FileDialogTest : public MachineTest {
 protected:
  static constexpr int kName = 1148, kFiles = 1120;

  FileDialogTest() {
    for (const auto* name : {u"a.ini", u"plain", u"note.txt", u"ソ表\\b.ini"})
      machine().WriteFile(std::u16string(u"C:\\data\\") + name, "x");
  }
  // Returns the chosen file, or u"".
  std::u16string Choose(Steps steps, DWORD size = MAX_PATH) {
    WCHAR file[MAX_PATH] = {};
    OPENFILENAMEW request = {};
    request.lStructSize = sizeof request;
    request.lpstrFilter = u"初期化ﾌｧｲﾙ(*.ini)\0*.ini\0";
    request.lpstrFile = file;
    request.nMaxFile = size;
    request.lpstrInitialDir = u"C:\\data\\";
    request.lpstrDefExt = u"ini";
    request.Flags = OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST;
    const bool chosen =
        RunSteps(std::move(steps), [&] { return GetOpenFileNameW(&request) != FALSE; });
    return chosen || file[0] > size ? file : u"";
  }
  // Types a name. Then a message box has this text, if any, and is closed.
  static Steps Enter(std::u16string name, std::u16string text = u"") {
    Steps steps = {Replace(kName, name), support::Enter()};
    const auto box = [=](Desk& desk) { EXPECT_EQ(desk.MessageText(), text); };
    if (!text.empty()) steps += {box, Click(IDOK)};
    return steps;
  }
  static Steps Pick(std::u16string line) { return {Select(kFiles, line), Click(IDOK)}; }
};

TEST_F(FileDialogTest, OpenedFileMustExist) {
  const Steps walk = {ExpectItems(kFiles, {u"..\\", u"ソ表\\", u"a.ini"}), Pick(u"..\\"),
                      Pick(u"data\\"), Pick(u"ソ表\\")};
  EXPECT_EQ(Choose({walk, Pick(u"b.ini")}), u"C:\\data\\ソ表\\b.ini");
  EXPECT_EQ(Choose({Pick(u"a.ini")}, 14), u"C:\\data\\a.ini");
  EXPECT_EQ(Choose({Pick(u"a.ini")}, 13), u"\x0E") << "the size that it needs";
  const std::u16string check = u".ini\nファイルが見つかりません。\nファイル名を確認してください。";
  const std::u16string path = u"\nパスが存在しません。\nパスを確認してください。";
  const Steps refused = {Enter(u"missing", u"C:\\data\\missing" + check),
                         Enter(u"nowhere\\a.ini", u"C:\\data\\nowhere\\a.ini" + path),
                         Enter(u"a<.ini", u"a<.ini\nファイル名が無効です。"), Enter(u""),
                         Enter(u"ソ表")};
  EXPECT_EQ(Choose({refused, ExpectText(kName, u""), Enter(u"..\\PLAIN")}), u"C:\\data\\PLAIN");
}

// The k-th field of the dialog has the id 2101 + k.
TEST_F(MachineTest, HalftoneDialogStoresConfirmedFieldsInTheirRange) {
  constexpr int kContrast = 2101, kBrightness = 2102, kRed = 2105, kNegative = 2111, kReset = 2400;
  COLORADJUSTMENT value = {sizeof value, 0, 0, 10000, 10000, 10000, 0, 10000, 300, 0, 0, 0};
  const COLORADJUSTMENT before = value;
  const auto adjust = [&](Steps steps, BOOL permission = TRUE) {
    return RunSteps(std::move(steps), [&] {
      return HTUI_ColorAdjustmentW(nullptr, nullptr, nullptr, &value, TRUE, permission);
    });
  };
  const auto locked = ExpectEnabled({kContrast, kNegative, kReset, IDOK}, false);
  EXPECT_EQ(adjust({locked, Escape()}, FALSE), 0);
  EXPECT_EQ(adjust({Replace(kRed, u"7"), Close()}), 0);
  EXPECT_EQ(adjust({Click(IDOK)}), 0) << "an unchanged value may be outside the range";
  EXPECT_EQ(std::memcmp(&value, &before, sizeof before), 0);
  EXPECT_EQ(adjust({Replace(kRed, u"65000"), Select(kNegative, 1), Replace(kContrast, u"-999"),
                    Tab(), ExpectText(kContrast, u"-100"), Replace(kBrightness, u"5"), Enter()}),
            1);
  EXPECT_EQ(value.caContrast, -100);
  EXPECT_EQ(value.caRedGamma, 65000);
  EXPECT_EQ(value.caFlags, CA_NEGATIVE);
  EXPECT_EQ(adjust({Click(kReset), Click(IDOK)}), 1);
  EXPECT_EQ(value.caBrightness, 0);
}

}  // namespace
}  // namespace support
