// The page that lists the registered fonts.
#include "fake_library.h"
#include "font_fixture.h"

namespace fonts {
namespace {

using platform::Desk;
using support::Click;
using support::ExpectChecked;
using support::ExpectEnabled;
using support::ExpectItems;
using support::ExpectSelected;
using support::ExpectText;
using support::ExpectTitle;
using support::GoTo;
using support::Replace;
using support::Select;
using support::SheetKind;

constexpr char16_t kTitle[] = u"クリエイトフォント";
constexpr char16_t kFirstHelp[] = u"ここにﾏｳｽｶｰｿﾙのある 入力項目についての説明が表示されます。";

// One of the two groups of the page.
struct Group {
  int list, create, change, remove, reference;
};
constexpr Group kDeco = {IDC_CREATE_FONT_DECO_LIST, IDC_CREATE_FONT_DECO_NEW,
                         IDC_CREATE_FONT_DECO_EDIT, IDC_CREATE_FONT_DECO_DELETE,
                         IDC_CREATE_FONT_DECO_REFERENCE};
constexpr Group kBar = {IDC_CREATE_FONT_BAR_LIST, IDC_CREATE_FONT_BAR_NEW, IDC_CREATE_FONT_BAR_EDIT,
                        IDC_CREATE_FONT_BAR_DELETE, IDC_CREATE_FONT_BAR_REFERENCE};
const std::vector<int> kNew = {kDeco.create, kBar.create};

Steps ExpectUsable(const Group& group, bool usable) {
  return {ExpectEnabled({group.change, group.remove, group.reference}, usable)};
}

// The question about a font, answered.
platform::ScriptedUser::Step Answer(std::u16string name, int button) {
  return [=](Desk& desk) {
    ASSERT_TRUE(desk.IsMessageBox());
    EXPECT_EQ(desk.MessageText(), name + u" を削除します。\nよろしいですか？");
    EXPECT_EQ(desk.Title(), kTitle);
    EXPECT_EQ(desk.MessageStyle(), static_cast<UINT>(MB_OKCANCEL | MB_ICONEXCLAMATION));
    EXPECT_TRUE(desk.Click(button));
  };
}

// Counts the marks that the page makes on the sheet on top.
int marks;
LRESULT CALLBACK CountMarks(HWND sheet, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == PSM_CHANGED) ++marks;
  return DefDlgProcW(sheet, message, wParam, lParam);
}
void WatchMarks(Desk& desk) {
  marks = 0;
  SetWindowLongPtrW(desk.Top(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&CountMarks));
}
platform::ScriptedUser::Step ExpectMarks(int number) {
  return [=](Desk&) { EXPECT_EQ(marks, number); };
}

class CreateFontPageTest : public FontTest {
 protected:
  void SetUp() override {
    FontTest::SetUp();
    FakeLibrary::Install(machine());
  }
};

TEST_F(CreateFontPageTest, ListsNothingAtFirst) {
  EXPECT_EQ(Register(Steps{ExpectTitle(kTitle),
                           ExpectText(
                               IDC_CREATE_FONT_LIMIT_TEXT,
                               u"装飾フォントとバーコードフォントは、合計 70 個まで登録できます。"),
                           ExpectItems(kDeco.list, {}), ExpectItems(kBar.list, {}),
                           ExpectEnabled(kNew, true)} +
                     ExpectUsable(kDeco, false) + ExpectUsable(kBar, false)),
            Records());
}

TEST_F(CreateFontPageTest, CountsBothKindsToSeventy) {
  Store(Many(39, 30));
  const Steps addDeco = {ExpectEnabled(kNew, true), Click(kDeco.create),
                         Replace(IDC_DECO_FONT_NAME, u"Seventieth"), Click(IDOK)};
  const Steps full = {ExpectEnabled(kNew, false)};
  Records expected = Many(39, 30);
  expected.erase(expected.begin());
  expected.insert(expected.begin() + 38, Deco(u"Seventieth"));
  expected.push_back(Bar(u"Last"));
  const Records stored =
      Register(addDeco + full + ExpectUsable(kDeco, true) +
               Steps{Click(kDeco.remove), Answer(u"D0", IDOK), ExpectEnabled(kNew, true),
                     Click(kBar.create), Replace(IDC_BAR_FONT_NAME, u"Last"), Click(IDOK)} +
               full);
  ASSERT_EQ(stored.size(), 70u);
  EXPECT_TRUE(std::equal(stored.begin(), stored.end() - 1, expected.begin()));
  EXPECT_EQ(stored.back().Text(0), u"Last");
}

TEST_F(CreateFontPageTest, ShowsNoMoreThanSeventy) {
  Store(Many(50, 40));
  Records expected = Many(30, 40);
  EXPECT_EQ(Register({[](Desk& desk) {
                        EXPECT_EQ(desk.Control(kDeco.list).items.size(), 30u);
                        EXPECT_EQ(desk.Control(kBar.list).items.size(), 40u);
                      },
                      ExpectEnabled(kNew, false), Select(kDeco.list, 29), Click(kDeco.remove),
                      Answer(u"D29", IDCANCEL)}),
            expected);
}

TEST_F(CreateFontPageTest, DeletesTheSelectedFont) {
  Store({Deco(u"D1"), Deco(u"D2"), Bar(u"B1"), Bar(u"B2"), Bar(u"B3")});
  const Steps steps = Steps{Select(kBar.list, 1),
                            Click(kBar.remove),
                            Answer(u"B2", IDCANCEL),
                            ExpectItems(kBar.list, {u"B1", u"B2", u"B3"}),
                            ExpectSelected(kBar.list, 0),
                            Select(kBar.list, 1),
                            Click(kBar.remove),
                            Answer(u"B2", IDOK),
                            ExpectItems(kBar.list, {u"B1", u"B3"}),
                            ExpectSelected(kBar.list, 0),
                            ExpectItems(kDeco.list, {u"D1", u"D2"}),
                            Select(kDeco.list, 1),
                            Click(kDeco.remove),
                            Answer(u"D2", IDOK),
                            Click(kDeco.remove),
                            Answer(u"D1", IDOK),
                            ExpectEnabled(kNew, true)} +
                      ExpectUsable(kDeco, false) + ExpectUsable(kBar, true);
  EXPECT_EQ(Register(steps), (Records{Bar(u"B1"), Bar(u"B3")}));
}

TEST_F(CreateFontPageTest, MarksTheSheetWhenAListChanged) {
  Store({Deco(u"D"), Bar(u"B")});
  Register({WatchMarks,
            Select(kBar.list, 0),
            Click(kDeco.reference),
            Click(kDeco.reference),
            Click(kDeco.remove),
            Answer(u"D", IDCANCEL),
            Click(kDeco.change),
            Click(IDCANCEL),
            Click(kBar.create),
            Click(IDCANCEL),
            ExpectMarks(0),
            Click(kBar.create),
            Replace(IDC_BAR_FONT_NAME, u"C"),
            Click(IDOK),
            ExpectMarks(1),
            Click(kDeco.change),
            Click(IDOK),
            ExpectMarks(2),
            Click(kBar.change),
            Click(IDOK),
            ExpectMarks(3),
            Click(kDeco.remove),
            Answer(u"D", IDOK),
            ExpectMarks(4)});
}

TEST_F(CreateFontPageTest, ChangesTheSelectedFontInItsPlace) {
  Store({Deco(u"D1"), Deco(u"D2"), Deco(u"D3"), Bar(u"B1"), Bar(u"B2")});
  EXPECT_EQ(Register({Select(kDeco.list, 1), Click(kDeco.change),
                      ExpectText(IDC_DECO_FONT_NAME, u"D2"), Replace(IDC_DECO_FONT_NAME, u"E"),
                      Click(IDOK), ExpectItems(kDeco.list, {u"D1", u"E", u"D3"}),
                      ExpectSelected(kDeco.list, 0), Select(kBar.list, 1), Click(kBar.change),
                      ExpectText(IDC_BAR_FONT_NAME, u"B2"), Replace(IDC_BAR_FONT_NAME, u"C"),
                      Click(IDOK), ExpectItems(kBar.list, {u"B1", u"C"})}),
            (Records{Deco(u"D1"), Deco(u"E"), Deco(u"D3"), Bar(u"B1"), Bar(u"C")}));
}

// The new font is the selected one under another name; without one it starts as any other.
TEST_F(CreateFontPageTest, NewFontsReferToTheSelectedOne) {
  Record deco = Deco(u"D2", u"漢字(縦書)", 512, 55, 83);
  deco.Put(202, {2, 3, 0, 1, 270, 1, 0, 1, 0, 1, 1, 12, -34, 5, 6});
  Record bar = Bar(u"B2", 500).Put(130, {0x4008, 500, 1, 1, 9, -8, 7, 6});
  Record newDeco = deco;
  newDeco.Put(0, u"E2").Put(66, u"E2");
  Record newBar = bar;
  newBar.Put(0, u"C2").Put(66, u"C2");
  Store({Deco(u"D1"), deco, Bar(u"B1"), bar});
  const Steps steps = {
      ExpectChecked({kDeco.reference, kBar.reference}, false),
      Click(kDeco.reference),
      Select(kDeco.list, 1),
      Click(kDeco.create),
      ExpectTitle(u"装飾フォントの登録"),
      ExpectText(IDC_DECO_FONT_NAME, u""),
      ExpectSelected(IDC_DECO_FONT_RESIDENT, 9),
      ExpectSelected(IDC_DECO_FONT_SIZE, 2),
      ExpectText(IDC_DECO_FONT_INCREMENT, u"-34"),
      Replace(IDC_DECO_FONT_NAME, u"E2"),
      Click(IDOK),
      Click(kBar.reference),
      Select(kBar.list, 1),
      Click(kBar.create),
      ExpectText(IDC_BAR_FONT_NAME, u""),
      ExpectSelected(IDC_BAR_FONT_KIND, 4),
      Replace(IDC_BAR_FONT_NAME, u"C2"),
      Click(IDOK),
      ExpectChecked({kDeco.reference, kBar.reference}),
      // The own name of the font referred to is taken.
      Click(kDeco.create),
      Replace(IDC_DECO_FONT_NAME, u"D1"),
      Click(IDOK),
      support::CloseMessage(
          u"既に同一のフォント名が登録されています。\n別のフォント名に変更して下さい。",
          MB_ICONEXCLAMATION, u"装飾フォントの登録"),
      Click(IDCANCEL),
  };
  EXPECT_EQ(Register(steps), (Records{Deco(u"D1"), deco, newDeco, Bar(u"B1"), bar, newBar}));
  EXPECT_TRUE(FakeLibrary::calls.empty());

  // The box stays checked when the last font goes; there is nothing to refer to then.
  Store({deco});
  EXPECT_EQ(Register({Click(kDeco.reference), Click(kDeco.remove), Answer(u"D2", IDOK),
                      Click(kDeco.create), ExpectSelected(IDC_DECO_FONT_RESIDENT, 0),
                      Replace(IDC_DECO_FONT_NAME, u"N"), Click(IDOK)}),
            Records{Deco(u"N")});
}

TEST_F(CreateFontPageTest, LocksByKindAndPermission) {
  const std::vector<int> buttons = {kDeco.create, kDeco.change, kDeco.remove,
                                    kBar.create,  kBar.change,  kBar.remove};
  const std::vector<int> references = {kDeco.reference, kBar.reference};
  for (SheetKind kind : {SheetKind::kDocument, SheetKind::kAdvanced, SheetKind::kUserDefault}) {
    for (bool permission : {true, false}) {
      SCOPED_TRACE(testing::Message() << static_cast<int>(kind) << permission);
      Store({Deco(u"D"), Bar(u"B")});
      const bool loaded = kind != SheetKind::kAdvanced;
      using Names = std::vector<std::u16string>;
      const Steps looks = {
          ExpectItems(kDeco.list, loaded ? Names{u"D"} : Names()),
          ExpectItems(kBar.list, loaded ? Names{u"B"} : Names()),
          ExpectEnabled(buttons, kind == SheetKind::kUserDefault && permission),
          ExpectEnabled(references, loaded && permission),
      };
      // The same when the page is entered again.
      Show({.kind = kind, .permission = permission},
           looks + Steps{GoTo(support::kVersionTab), GoTo(support::kFontTab)} + looks);
      EXPECT_EQ(Stored(), (Records{Deco(u"D"), Bar(u"B")}));
    }
  }
}

TEST_F(CreateFontPageTest, CancelOfTheSheetKeepsTheFonts) {
  Store({Deco(u"D"), Bar(u"B")});
  support::ShowSheet(
      exports_, {.kind = SheetKind::kUserDefault},
      {GoTo(support::kFontTab), Click(kDeco.remove), Answer(u"D", IDOK), Click(kBar.create),
       Replace(IDC_BAR_FONT_NAME, u"C"), Click(IDOK), support::PressCancel()});
  EXPECT_EQ(Stored(), (Records{Deco(u"D"), Bar(u"B")}));
}

TEST_F(CreateFontPageTest, SelectsTheFirstFontsWhenEnteredAgain) {
  Store({Deco(u"D1"), Deco(u"D2"), Bar(u"B1"), Bar(u"B2")});
  Register({Select(kDeco.list, 1), Select(kBar.list, 1), GoTo(support::kVersionTab),
            GoTo(support::kFontTab), ExpectSelected(kDeco.list, 0), ExpectSelected(kBar.list, 0)});
}

TEST_F(CreateFontPageTest, HelpFollowsTheControlInUse) {
  Store({Deco(u"D"), Bar(u"B")});
  const auto help = [](std::u16string text) { return ExpectText(IDC_HELP_TEXT, text); };
  Register({Click(kBar.remove), Answer(u"B", IDCANCEL),
            help(u"選択したバーコードフォントを削除します。"),
            // A dialog, confirmed or not, leaves the page as set up anew.
            Click(kDeco.create), Click(IDCANCEL), help(kFirstHelp), Select(kDeco.list, 0),
            [](Desk& desk) { EXPECT_NE(desk.Text(IDC_HELP_TEXT), kFirstHelp); }});
}

// Names and words of any content are listed and asked about without a read past their record.
TEST_F(CreateFontPageTest, ListsRecordsOfGarbage) {
  Record deco;
  Record bar;
  for (size_t at = 0; at < sizeof(Record); at += 2) {
    deco.Put(at, 0x3042);
    bar.Put(at, 0x3044);
  }
  deco.Put(64, 0);
  bar.Put(64, 1);
  Store({deco, bar});
  EXPECT_EQ(Register({ExpectItems(kDeco.list, {std::u16string(32, u'あ')}),
                      ExpectItems(kBar.list, {std::u16string(32, u'い')}), Click(kDeco.remove),
                      Answer(std::u16string(32, u'あ'), IDCANCEL), Click(kBar.change),
                      ExpectText(IDC_BAR_FONT_NAME, std::u16string(31, u'い')), Click(IDCANCEL)}),
            (Records{deco, bar}));
}

}  // namespace
}  // namespace fonts
