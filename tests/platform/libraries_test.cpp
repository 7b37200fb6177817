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

// A sheet of three pages with templates of the module. Logs the calls of the pages and of the
// property-sheet function.
class SheetTest : public MachineTest {
 protected:
  // The calls after the initial ones, and the result.
  std::string Show(Steps steps) {
    test = this;
    log.clear();
    DWORD result = 0xABCD;
    const auto show = [&] { return CommonPropertySheetUIW(nullptr, Function, 77, &result); };
    EXPECT_EQ(RunSteps(std::move(steps), show), 1);
    EXPECT_EQ(platform::LivePropertySheetPages(), 0);
    const std::string start = "INIT HEADER 110INIT 110SETACTIVE ";
    EXPECT_TRUE(log.starts_with(start)) << log;
    return log.substr(start.size()) + "-> " + std::to_string(result);
  }

  static LONG CALLBACK Function(PPROPSHEETUI_INFO info, LPARAM param) {
    static constexpr const char* kNames[] = {"INIT ", "HEADER ", "DESTROY ", "RESULT "};
    test->log += kNames[info->Reason];
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
        test->last = test->Call(CPSFUNC_ADD_HPROPSHEETPAGE, made, 0);
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
    if (message == WM_INITDIALOG) {
      const LPARAM id = reinterpret_cast<PROPSHEETPAGEW*>(lParam)->lParam;
      SetWindowLongPtrW(page, DWLP_USER, id);
      test->log += std::to_string(id) + "INIT ";
      SendMessageW(GetParent(page), PSM_CHANGED, reinterpret_cast<WPARAM>(page), 0);
    }
    if (message == WM_COMMAND && GetFocus() == nullptr) test->log += "left ";
    if (message != WM_NOTIFY) return FALSE;
    static constexpr const char* kNames[] = {"SETACTIVE", "KILLACTIVE", "APPLY", "RESET"};
    const auto& notification = *reinterpret_cast<const PSHNOTIFY*>(lParam);
    test->log +=
        std::to_string(GetWindowLongPtrW(page, DWLP_USER)) +
        (notification.hdr.code == PSN_QUERYCANCEL ? "QUERYCANCEL"
                                                  : kNames[PSN_FIRST - notification.hdr.code]);
    test->log += (notification.hdr.code == PSN_RESET && notification.lParam != 0 ? "-BOX " : " ");
    if (notification.hdr.code == PSN_APPLY) test->Call(CPSFUNC_SET_RESULT, test->last, CPSUI_OK);
    SetWindowLongPtrW(page, DWLP_MSGRESULT, test->refuse);
    return TRUE;
  }

  static inline SheetTest* test = nullptr;
  std::string log;
  bool refuse = false;
  PROPSHEETUI_INFO sheet = {};
  LONG_PTR last = 0;  // the handle of the last page
};

TEST_F(SheetTest, ActivePageMayRefuseBeforeAllShownPagesAreNotified) {
  const auto look = [&](Desk& desk) {
    EXPECT_EQ(desk.Windows().back().title, u"プリンタのプロパティ");
    EXPECT_EQ(desk.FocusedId(), IDC_OPERATION_COLOR_BLACK) << "the page's first control";
  };
  EXPECT_EQ(Show({look, GoTo(2), GoTo(0), GoTo(1), PressOk()}),
            "110KILLACTIVE 145INIT 145SETACTIVE 145KILLACTIVE 110SETACTIVE "
            "110KILLACTIVE 153INIT 153SETACTIVE left 153KILLACTIVE 110APPLY RESULT "
            "153APPLY RESULT 145APPLY RESULT DESTROY -> 1");
  EXPECT_EQ(Call(CPSFUNC_SET_RESULT, last, CPSUI_OK), 0) << "the handle of a closed one";
  EXPECT_EQ(Show({GoTo(1), PressCancel()}),
            "110KILLACTIVE 153INIT 153SETACTIVE "
            "left 153QUERYCANCEL 110RESET 153RESET DESTROY -> 0");
  const auto refused = [&](Desk& desk) {
    refuse = true;
    EXPECT_FALSE(desk.Page(1) || desk.Press(platform::SheetButton::kOk) || desk.Close());
    refuse = false;
  };
  EXPECT_EQ(Show({refused, Close()}),
            "110KILLACTIVE 110KILLACTIVE 110QUERYCANCEL "
            "110QUERYCANCEL 110RESET-BOX DESTROY -> 0");
  EXPECT_EQ(CommonPropertySheetUIW(nullptr, DrvDocumentPropertySheets, 0, nullptr), CPSUI_CANCEL)
      << "without a header it refuses to begin";
  const int local = 0;
  EXPECT_EQ(CommonPropertySheetUIW(nullptr, Function, reinterpret_cast<LPARAM>(&local), nullptr),
            ERR_CPSUI_INVALID_LPARAM)
      << "a parameter on the stack";
}

class FileDialogTest : public MachineTest {
 protected:
  static constexpr int kName = 1148, kFiles = 1120;

  // Returns the chosen file, or u"". With an initial name the dialog is for saving.
  std::u16string Choose(Steps steps, const char16_t* start = u"", DWORD size = MAX_PATH) {
    for (const auto* name : {u"a.ini", u"plain", u"note.txt", u"ソ表\\b.ini"})
      machine().WriteFile(std::u16string(u"C:\\data\\") + name, "x");
    WCHAR file[MAX_PATH] = {};
    std::u16string(start).copy(file, MAX_PATH);
    OPENFILENAMEW request = {};
    request.lStructSize = sizeof request;
    request.lpstrFilter = u"初期化ﾌｧｲﾙ(*.ini)\0*.ini\0";
    request.lpstrFile = file;
    request.nMaxFile = size;
    request.lpstrInitialDir = u"C:\\data\\";
    request.lpstrDefExt = u"ini";
    request.Flags = *start ? OFN_OVERWRITEPROMPT : OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST;
    auto* const ask = *start ? GetSaveFileNameW : GetOpenFileNameW;
    const bool chosen = RunSteps(std::move(steps), [&] { return ask(&request) != FALSE; });
    return chosen || file[0] > size ? file : u"";
  }
  // Types a name. Then a message box has this text, if any, and is closed by a button.
  static Steps Enter(std::u16string name, std::u16string text = u"", int button = IDOK) {
    Steps steps = {Replace(kName, name), support::Enter()};
    const auto box = [=](Desk& desk) { EXPECT_EQ(desk.MessageText(), text); };
    if (!text.empty()) steps += {box, Click(button)};
    return steps;
  }
  static Steps Pick(std::u16string line) { return {Select(kFiles, line), Click(IDOK)}; }
};

TEST_F(FileDialogTest, OpenedFileMustExist) {
  const Steps walk = {ExpectItems(kFiles, {u"..\\", u"ソ表\\", u"a.ini"}), Pick(u"..\\"),
                      Pick(u"data\\"), Pick(u"ソ表\\")};
  EXPECT_EQ(Choose({walk, Pick(u"b.ini")}), u"C:\\data\\ソ表\\b.ini");
  EXPECT_EQ(Choose({Pick(u"a.ini")}, u"", 13), u"\x0E") << "the size that it needs";
  const std::u16string check = u".ini\nファイルが見つかりません。\nファイル名を確認してください。";
  const std::u16string path = u"\nパスが存在しません。\nパスを確認してください。";
  const Steps refused = {Enter(u"missing", u"C:\\data\\missing" + check),
                         Enter(u"nowhere\\a.ini", u"C:\\data\\nowhere\\a.ini" + path),
                         Enter(u"a<.ini", u"a<.ini\nファイル名が無効です。"), Enter(u""),
                         Enter(u"ソ表")};
  EXPECT_EQ(Choose({refused, ExpectText(kName, u""), Enter(u"..\\PLAIN")}), u"C:\\data\\PLAIN");
}

TEST_F(FileDialogTest, SaveConfirmsBeforeOverwriting) {
  const std::u16string asks = u"C:\\data\\a.ini\nこのファイルは既に存在します。上書きしますか?";
  const Steps no = {ExpectText(kName, u"a.ini"), Enter(u"a", asks, IDNO)};
  EXPECT_EQ(Choose({no, Close()}, u"a.ini"), u"");
  EXPECT_EQ(Choose({no, Enter(u"a.ini", asks, IDYES)}, u"a.ini"), u"C:\\data\\a.ini");
  EXPECT_EQ(Choose({no, Enter(u"new")}, u"a.ini"), u"C:\\data\\new.ini");
}

TEST_F(MachineTest, FileTitleIsTheDisplayedName) {
  const struct {
    const char16_t* path;
    SHORT hidden, shown;  // results for a buffer of 6 units
    const char16_t* title;
  } rows[] = {{u"C:\\d\\a.ini", 0, 0, u"a"},
              {u"C:a.b.i", 0, 0, u"a.b"},
              {u"/.ini", 0, 0, u".ini"},
              {u"plain", 0, 0, u"plain"},
              {u"12345.ini", 0, 10, u"12345"},
              {u"123456.i", 7, 9, u""},
              {u"", -1, -1, u""},
              {u"C:\\d\\", -1, -1, u""},
              {u"C:", -1, -1, u""},
              {u"a*.ini", -1, -1, u""},
              {u"[a].ini", -1, -1, u""},
              {u"a<.ini", -1, -1, u""},
              {u"a\x1F.ini", -1, -1, u""}};
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::PrintToString(std::u16string(row.path)));
    machine().SetHidesExtensions(true);
    WCHAR title[6] = {};
    EXPECT_EQ(GetFileTitleW(row.path, title, 6), row.hidden);
    EXPECT_EQ(title, std::u16string(row.title));
    machine().SetHidesExtensions(false);
    EXPECT_EQ(GetFileTitleW(row.path, title, 6), row.shown);
  }
}

TEST_F(MachineTest, HalftoneValuesAreStoredWhenConfirmed) {
  // The k-th row has the field 2101 + k.
  constexpr int kContrast = 2101, kBrightness = 2102, kRed = 2105, kNegative = 2111, kReset = 2400;
  COLORADJUSTMENT of = {23, 0, 77, 10000, 10000, 10000, 0, 10000, 300, 0, 0, 0};
  // The result, then size, light, contrast, brightness, red, green and flags.
  const auto adjust = [&](Steps steps, BOOL permission = TRUE) {
    const LONG answer = RunSteps(std::move(steps), [&] {
      return HTUI_ColorAdjustmentW(nullptr, nullptr, nullptr, &of, TRUE, permission);
    });
    return std::vector<int>{answer,          of.caSize,     of.caIlluminantIndex, of.caContrast,
                            of.caBrightness, of.caRedGamma, of.caGreenGamma,      of.caFlags};
  };
  const auto locked = ExpectEnabled({kContrast, kNegative, kReset, IDOK}, false);
  EXPECT_EQ(adjust({locked, Escape()}, FALSE)[0] + adjust({Replace(kRed, u"7"), Close()})[0], 0);
  EXPECT_EQ(adjust({Click(IDOK)}), (std::vector<int>{1, 24, 77, 300, 0, 10000, 10000, 0}))
      << "a wrong size is corrected, unchanged fields keep their values";
  const Steps dark = {Replace(kBrightness, u"-100"), Replace(kRed, u"65000"), Select(kNegative, 1)};
  const Steps bad = {Replace(kContrast, u"-999"), Tab(), ExpectText(kContrast, u"-100")};
  EXPECT_EQ(adjust({dark, bad, Replace(kContrast, u"-"), Enter()}),
            (std::vector<int>{1, 24, 77, 300, -100, 65000, 10000, CA_NEGATIVE}));
  EXPECT_EQ(adjust({Click(kReset), Click(IDOK)})[3], 0);
}

}  // namespace
}  // namespace support
