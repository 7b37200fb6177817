// The page that lists the registered fonts.
#include "fake_library.h"
#include "font_fixture.h"

namespace fonts {
namespace {

constexpr char16_t kTitle[] = u"クリエイトフォント";
constexpr char16_t kFirstHelp[] = u"ここにﾏｳｽｶｰｿﾙのある 入力項目についての説明が表示されます。";

// One of the two groups of the page.
struct Group {
  int list, create, change, remove, reference;
};
constexpr Group kDeco = {1131, 1133, 1047, 1048, 1179};
constexpr Group kBar = {1132, 1049, 1050, 1051, 1178};

// What the lists show and which entry is selected, and whether the buttons for new fonts can be
// used and those for the listed ones.
Step Shows(const Group& group, std::vector<std::u16string> names, bool room = true) {
  return [=](Desk& desk) {
    EXPECT_EQ(desk.Control(group.list).items, names);
    EXPECT_EQ(desk.Control(group.list).selection, names.empty() ? -1 : 0);
    EXPECT_EQ(desk.Control(group.create).enabled, room);
    for (int id : {group.change, group.remove, group.reference}) {
      EXPECT_EQ(desk.Control(id).enabled, !names.empty()) << id;
    }
  };
}
Steps Remove(const Group& group, int row, const std::u16string& name, int answer) {
  return {Select(group.list, row), Click(group.remove),
          CloseMessage(name + u" を削除します。\nよろしいですか？",
                       MB_OKCANCEL | MB_ICONEXCLAMATION, kTitle, answer)};
}
int NameOf(const Group& group) {
  return group.list == kDeco.list ? IDC_DECO_FONT_NAME : IDC_BAR_FONT_NAME;
}
Steps Named(const Group& group, int button, std::u16string name) {
  return {Click(button), Replace(NameOf(group), std::move(name)), Click(IDOK)};
}

class CreateFontPageTest : public FontTest {
 protected:
  void SetUp() override {
    FontTest::SetUp();
    FakeLibrary::Install(machine());
  }
};

TEST_F(CreateFontPageTest, CountsBothKindsToSeventy) {
  EXPECT_EQ(
      Register({ExpectText(IDC_CREATE_FONT_LIMIT_TEXT,
                           u"装飾フォントとバーコードフォントは、合計 70 個まで登録できます。"),
                Shows(kDeco, {}), Shows(kBar, {})}),
      Records());
  Store(Many(0, 68));
  Records expected = Many(0, 67);
  expected.insert(expected.begin(), Deco(u"A"));
  expected.push_back(Bar(u"B67"));
  expected.push_back(Bar(u"Last"));
  std::ranges::fill_n(expected.back().bytes.begin() + 146, 40, 0x40);
  const std::vector<int> both = {kDeco.create, kBar.create};
  EXPECT_EQ(Register({Named(kDeco, kDeco.create, u"A"), ExpectEnabled(both),
                      Named(kDeco, kDeco.create, u"B"), Shows(kDeco, {u"A", u"B"}, false),
                      // The keyboard goes on where its button was disabled.
                      ExpectEnabled(both, false), ExpectFocus(kDeco.list),
                      ExpectText(IDC_HELP_TEXT, kFirstHelp), Remove(kDeco, 1, u"B", IDOK),
                      ExpectEnabled(both), ExpectFocus(kDeco.remove),
                      Named(kBar, kBar.create, u"Last"), ExpectEnabled(both, false)}),
            expected);
  Store(Many(0, 70));
  EXPECT_EQ(Register(Remove(kBar, 69, u"B69", IDOK)), Many(0, 69));
  Store(Many(50, 40));
  EXPECT_EQ(Register({ExpectEnabled(both, false), Remove(kDeco, 29, u"D29", IDCANCEL)}),
            Many(30, 40));
}

TEST_F(CreateFontPageTest, DeletesTheSelectedFont) {
  Store({Deco(u"D1"), Bar(u"B1"), Bar(u"B2"), Bar(u"B3")});
  EXPECT_EQ(
      Register({Remove(kBar, 1, u"B2", IDCANCEL), Shows(kBar, {u"B1", u"B2", u"B3"}),
                ExpectChanged(false), Remove(kBar, 1, u"B2", IDOK), ExpectChanged(true),
                Shows(kBar, {u"B1", u"B3"}), Shows(kDeco, {u"D1"}), Remove(kDeco, 0, u"D1", IDOK),
                Shows(kDeco, {}), ExpectFocus(kDeco.list), Shows(kBar, {u"B1", u"B3"})}),
      (Records{Bar(u"B1"), Bar(u"B3")}));
}

TEST_F(CreateFontPageTest, ChangesTheSelectedFontInItsPlace) {
  const Records stored = {Deco(u"D1"), Deco(u"D2"), Deco(u"D3"), Bar(u"B1"), Bar(u"B2")};
  for (const Group& group : {kDeco, kBar}) {
    Store(stored);
    Records expected = stored;
    expected[group.list == kDeco.list ? 1 : 4].Name(u"X").Put(2, 0).Put(68, 0);
    Steps declined;
    for (const Step& end : {Click(IDCANCEL), Close(), Escape()}) {
      declined += {Click(group.change), Replace(NameOf(group), u"Y"), end};
    }
    EXPECT_EQ(Register({declined, ExpectChanged(false), ExpectText(IDC_HELP_TEXT, kFirstHelp),
                        Select(group.list, 1), Named(group, group.change, u"X"),
                        ExpectChanged(true), ExpectSelected(group.list, 0),
                        // Entered again, the page selects the first.
                        Select(group.list, 1), GoTo(kVersionTab), GoTo(kFontTab),
                        ExpectSelected(group.list, 0)}),
              expected);
    Cancel(kFontTab, Named(group, group.change, u"Y"));
    EXPECT_EQ(Stored(), expected);
  }
}

// The new font is the selected one under another name; without one it starts as any other.
TEST_F(CreateFontPageTest, NewFontsReferToTheSelectedOne) {
  Record deco = Deco(u"D2", u"漢字(縦書)", 512, 55, 83);
  deco.Put(202, {2, 3, 0, 1, 270, 1, 0, 1, 0, 1, 1, 12, -34, 5, 6});
  Record bar = Bar(u"B2", 500).Put(130, {0x4008, 500, 1, 1, 9, -8, 7, 6});
  Record newDeco = deco;
  Record newBar = bar;
  newDeco.Name(u"E2");
  newBar.Name(u"C2");
  Store({Deco(u"D1"), deco, Bar(u"B1"), bar});
  const auto asked = ExpectChecked({kDeco.reference, kBar.reference});
  EXPECT_EQ(Register({ExpectChecked({kDeco.reference, kBar.reference}, false),
                      Click(kDeco.reference), Select(kDeco.list, 1), Click(kDeco.create),
                      ExpectTitle(u"装飾フォントの登録"), ExpectText(IDC_DECO_FONT_NAME, u""),
                      Replace(IDC_DECO_FONT_NAME, u"D2"), Click(IDOK),
                      // The own name of the font referred to is taken.
                      CloseMessage(u"既に同一のフォント名が登録されています。\n"
                                   u"別のフォント名に変更して下さい。",
                                   MB_ICONEXCLAMATION, u"装飾フォントの登録"),
                      Replace(IDC_DECO_FONT_NAME, u"E2"), ExpectChanged(false), Click(IDOK),
                      ExpectChanged(true), Click(kBar.reference), Select(kBar.list, 1),
                      Click(kBar.create), ExpectText(IDC_BAR_FONT_NAME, u""),
                      Replace(IDC_BAR_FONT_NAME, u"C2"), Click(IDOK), asked}),
            (Records{Deco(u"D1"), deco, newDeco, Bar(u"B1"), bar, newBar}));
  EXPECT_EQ(FakeLibrary::calls, "");

  // The box stays checked when the last font goes; there is nothing to refer to then.
  Store({deco, bar});
  Record first = Bar(u"N");
  std::ranges::fill_n(first.bytes.begin() + 146, 40, 0x40);
  EXPECT_EQ(Register({Click(kDeco.reference), Remove(kDeco, 0, u"D2", IDOK),
                      Named(kDeco, kDeco.create, u"M"), Click(kBar.reference),
                      Remove(kBar, 0, u"B2", IDOK), Named(kBar, kBar.create, u"N"), asked}),
            (Records{Deco(u"M"), first}));
}

// Names and words of any content are listed and asked about without a read past their record.
TEST_F(CreateFontPageTest, ListsRecordsOfGarbage) {
  const Records garbage = {Filled(u'あ', 0), Filled(u'い', 1)};
  Store(garbage);
  EXPECT_EQ(
      Register({Shows(kDeco, {std::u16string(32, u'あ')}), Shows(kBar, {std::u16string(32, u'い')}),
                Remove(kDeco, 0, std::u16string(32, u'あ'), IDCANCEL), Click(kBar.change),
                ExpectText(IDC_BAR_FONT_NAME, std::u16string(31, u'い')), Click(IDCANCEL)}),
      garbage);
}

}  // namespace
}  // namespace fonts
