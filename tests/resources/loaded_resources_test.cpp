// The module's resources as the platform hands them out.
#include <windows.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/desk.h"
#include "platform/machine.h"
#include "resources/resource.h"
#include "tests/support/bin_dir.h"

namespace {

using platform::ControlKind;
using platform::ControlView;
using platform::Desk;
using platform::ScriptedUser;

class LoadedResources : public testing::Test {
 protected:
  void SetUp() override {
    const std::u16string path = machine_->driverDirectory() + u"\\3\\QM610rDRV1.dll";
    machine_->InstallModule(path, support::Built("QM610rDRV1.so"));
    module_ = LoadLibraryW(path.c_str());
    ASSERT_NE(module_, nullptr);
  }
  void TearDown() override { FreeLibrary(module_); }

  std::u16string Text(UINT id) {
    WCHAR text[512];
    return {text, static_cast<std::size_t>(LoadStringW(module_, id, text, 512))};
  }

  // Shows a template as a dialog without a procedure of its own while a user looks at it.
  void Show(int dialog, const ScriptedUser::Step& look) {
    ScriptedUser user({look, [](Desk& desk) { desk.Close(); }});
    machine_->desk().Attach(&user);
    DialogBoxParamW(module_, MAKEINTRESOURCEW(dialog), nullptr, Quiet, 0);
    machine_->desk().Attach(nullptr);
    EXPECT_EQ(user.Problem(), "");
  }

  static INT_PTR CALLBACK Quiet(HWND window, UINT message, WPARAM, LPARAM) {
    if (message == WM_CLOSE) EndDialog(window, IDCANCEL);
    return message == WM_INITDIALOG || message == WM_CLOSE;
  }

  std::unique_ptr<platform::Machine> machine_ = platform::Machine::Create();
  HMODULE module_ = nullptr;
};

TEST_F(LoadedResources, TextsComeWithTheirBreaksAndBlanks) {
  EXPECT_EQ(Text(IDS_CONFIRM_DELETE), u" を削除します。\nよろしいですか？");
  EXPECT_EQ(Text(IDS_BACKUP_FILTER), u"初期化ﾌｧｲﾙ(*.ini)\n*.ini\n");
  EXPECT_EQ(Text(IDS_HELP_OPERATION_COLOR_ADJUST), u"") << "empties the help box";
  EXPECT_EQ(Text(IDS_HELP_OPERATION_HALFTONE), u"");
}

TEST_F(LoadedResources, PicturesHaveTheSizeTheirBoxNeeds) {
  const struct {
    int id, width, height, bits;
  } rows[] = {{IDB_PRODUCT, 420, 200, 24},        {IDB_SKETCH_WIDTH, 138, 246, 8},
              {IDB_SKETCH_EYE_MARK, 138, 246, 8}, {IDB_SKETCH_BASE_POINTS, 120, 189, 8},
              {IDB_PORTRAIT, 96, 96, 8},          {IDB_LANDSCAPE_ROTATED, 96, 96, 8}};
  for (const auto& row : rows) {
    const HBITMAP bitmap = LoadBitmapW(module_, MAKEINTRESOURCEW(row.id));
    ASSERT_NE(bitmap, nullptr) << row.id;
    BITMAP facts{};
    GetObjectW(bitmap, sizeof facts, &facts);
    EXPECT_EQ(facts.bmWidth, row.width) << row.id;
    EXPECT_EQ(facts.bmHeight, row.height) << row.id;
    EXPECT_EQ(facts.bmBitsPixel, row.bits) << row.id;
    DeleteObject(bitmap);
  }
}

TEST_F(LoadedResources, DialogsOpenWithTheirCaptionsAndSizes) {
  const struct {
    int id;
    const WCHAR* caption;
    int width, height;  // pixels at 6 x 12 a base unit pair
  } rows[] = {{IDD_PAPER_REGISTER, u"用紙登録", 490, 505},
              {IDD_PAPER_REFERENCE, u"参照用紙選択\u3000", 324, 87},
              {IDD_DECO_FONT, u"装飾フォントの登録", 595, 520},
              {IDD_BAR_FONT, u"バーコードフォントの登録", 484, 369}};
  for (const auto& row : rows) {
    Show(row.id, [&row](Desk& desk) {
      EXPECT_EQ(desk.Title(), row.caption);
      const auto window = desk.Windows().back();
      EXPECT_NEAR(window.width, row.width, 1);
      EXPECT_NEAR(window.height, row.height, 1);
    });
  }
}

TEST_F(LoadedResources, ARadioButtonReleasesItsOwnSetOnly) {
  const struct {
    int dialog;
    std::vector<std::vector<int>> sets;
  } rows[] = {
      {IDD_PAPER_REGISTER, {{IDC_PAPER_REGISTER_MM, IDC_PAPER_REGISTER_INCH}}},
      {IDD_DECO_FONT,
       {{IDC_DECO_FONT_DECORATE_ON, IDC_DECO_FONT_DECORATE_OFF},
        {IDC_DECO_FONT_MM, IDC_DECO_FONT_INCH, IDC_DECO_FONT_DOT},
        {IDC_DECO_FONT_PITCH_FIXED, IDC_DECO_FONT_PITCH_PROPORTIONAL},
        {IDC_DECO_FONT_ROTATE_0, IDC_DECO_FONT_ROTATE_90, IDC_DECO_FONT_ROTATE_180,
         IDC_DECO_FONT_ROTATE_270},
        {IDC_DECO_FONT_REVERSE_ON, IDC_DECO_FONT_REVERSE_OFF},
        {IDC_DECO_FONT_SMOOTH_ON, IDC_DECO_FONT_SMOOTH_OFF},
        {IDC_DECO_FONT_BOLD_ON, IDC_DECO_FONT_BOLD_OFF},
        {IDC_DECO_FONT_OUTLINE_STANDARD, IDC_DECO_FONT_OUTLINE_HOLLOW,
         IDC_DECO_FONT_OUTLINE_HOLLOW_SHADOW_ITALIC},
        {IDC_DECO_FONT_SERIAL_ON, IDC_DECO_FONT_SERIAL_OFF},
        {IDC_DECO_FONT_HEXADECIMAL, IDC_DECO_FONT_DECIMAL}}},
      {IDD_BAR_FONT,
       {{IDC_BAR_FONT_STRING_FONT, IDC_BAR_FONT_FILE_FONT},
        {IDC_BAR_FONT_SERIAL_ON, IDC_BAR_FONT_SERIAL_OFF},
        {IDC_BAR_FONT_HEXADECIMAL, IDC_BAR_FONT_DECIMAL}}},
  };
  for (const auto& row : rows) {
    Show(row.dialog, [&row](Desk& desk) {
      for (const auto& set : row.sets) desk.Click(set.back());
      for (const auto& set : row.sets)
        EXPECT_TRUE(desk.Control(set.back()).checked) << "released by another set: " << set.back();
      for (const auto& set : row.sets) {
        desk.Click(set.front());
        EXPECT_TRUE(desk.Control(set.front()).checked);
        EXPECT_FALSE(desk.Control(set.back()).checked) << set.back();
      }
    });
  }
}

TEST_F(LoadedResources, WhatIsHiddenCannotBeReached) {
  Show(IDD_PAPER_REGISTER, [](Desk& desk) {
    for (const int id :
         {IDC_PAPER_REGISTER_PRINTABLE_GROUP, IDC_PAPER_REGISTER_PRINTABLE_LEFT,
          IDC_PAPER_REGISTER_PRINTABLE_TOP_SPIN, IDC_PAPER_REGISTER_PRINTABLE_HEIGHT}) {
      EXPECT_FALSE(desk.Control(id).visible) << id;
      EXPECT_FALSE(desk.Focus(id)) << id;
    }
    EXPECT_FALSE(desk.Control(IDC_PAPER_REGISTER_PRINTABLE_GROUP).enabled);
    EXPECT_TRUE(desk.Control(IDOK).defaultButton);
  });
}

}  // namespace
