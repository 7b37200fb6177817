// The create-font page and the font store in printer data.
#include "font_fixture.h"
#include "fonts/font_store.h"

namespace fonts {
namespace {

class CreateFontPageTest : public FontTest {};

// Expects the names in a list with the first one selected, and the buttons enabled accordingly.
Steps ExpectList(const KindControls& kind, const std::vector<std::u16string>& names) {
  return {ExpectItems(kind.list, names), ExpectSelected(kind.list, names.empty() ? -1 : 0),
          ExpectEnabled({kind.change, kind.remove, kind.reference}, !names.empty())};
}
Steps Remove(const KindControls& kind, int row, const std::u16string& name, int button = IDOK) {
  return {Select(kind.list, row), Click(kind.remove),
          CloseMessage(name + u" を削除します。\nよろしいですか？",
                       MB_OKCANCEL | MB_ICONEXCLAMATION, kPageTitle, button)};
}

TEST_F(CreateFontPageTest, BothKindsTogetherAreLimitedToSeventy) {
  const std::vector<int> both = {kDeco.create, kBar.create};
  Fonts expected = Many(1, 68);
  Store(expected);
  expected.push_back(Bar(u"Last"));
  // The focus moves from the disabled button to the list.
  ExpectStored(expected,
               {ExpectText(IDC_CREATE_FONT_LIMIT_TEXT,
                           u"装飾フォントとバーコードフォントは、合計 70 個まで登録できます。"),
                ExpectEnabled(both), New(kDeco, u"B"), ExpectEnabled(both, false),
                ExpectFocus(kDeco.list), ExpectList(kDeco, {u"D0", u"B"}), Remove(kDeco, 1, u"B"),
                ExpectEnabled(both), New(kBar, u"Last")});
  // The page drops decorative fonts above the limit.
  Store(Many(50, 40));
  ExpectStored(Many(29, 40), Remove(kDeco, 29, u"D29"));
}

// Two of the names fill their fields without a terminator.
TEST_F(CreateFontPageTest, DeleteRemovesSelectedFont) {
  const std::u16string full(kFontNameLength, u'あ');
  Store({Deco(full), Bar(full), Bar(u"B2"), Bar(u"B3")});
  ExpectStored({Bar(full), Bar(u"B3")},
               {Remove(kBar, 1, u"B2", IDCANCEL), ExpectList(kBar, {full, u"B2", u"B3"}),
                ExpectChanged(false), Remove(kBar, 1, u"B2"), ExpectChanged(true),
                ExpectList(kBar, {full, u"B3"}), Remove(kDeco, 0, full), ExpectList(kDeco, {}),
                ExpectFocus(kDeco.list), Click(kBar.change), ExpectText(kBar.name, full.substr(1)),
                Click(IDCANCEL)});
}

TEST_F(CreateFontPageTest, ChangedFontStaysAtItsIndex) {
  for (const auto& [kind, font] : {std::pair(kDeco, Deco(u"")), std::pair(kBar, Bar(u""))}) {
    const auto named = [&font = font](const char16_t* name) { return Font(font).Name(name); };
    const Steps declined = {Click(kind.change), Replace(kind.name, u"Y"), Click(IDCANCEL)};
    Store({named(u"F1"), named(u"F2"), named(u"F3")});
    // The page selects the first font after a change and each time it becomes active.
    ExpectStored(
        {named(u"F1"), named(u"X"), named(u"F3")},
        {declined, ExpectChanged(false), Select(kind.list, 1),
         Change(kind, Replace(kind.name, u"X")), ExpectChanged(true), ExpectSelected(kind.list, 0),
         Select(kind.list, 1), GoTo(kVersionTab), GoTo(kFontTab), ExpectSelected(kind.list, 0)});
  }
}

TEST_F(CreateFontPageTest, ReferenceBoxMakesNewFontACopyOfTheSelectedOne) {
  const std::array<int16_t, 4> numbers = {12, -34, 5, 6};
  const Font deco = Deco(u"O", u"漢字(縦書)", kSize22x22, 55, 83).Numbered(true, true, numbers);
  for (const auto& [kind, font, defaults] :
       {std::tuple(kDeco, deco, Deco(u"M")), std::tuple(kBar, Bar(u"O", 500, 20), Bar(u"M"))}) {
    Store({defaults, font});
    ExpectStored({defaults, font, Font(font).Name(u"N")},
                 {Click(kind.reference), Select(kind.list, 1),
                  New(kind, u"N", ExpectText(kind.name, u"")), ExpectChecked({kind.reference})});
    // While the list is empty a new font has the defaults.
    Store({font});
    ExpectStored({defaults}, {Click(kind.reference), Remove(kind, 0, u"O"), New(kind, u"M")});
  }
  // A size that the resident font does not support becomes its first one, as no field checks it.
  Store({Deco(u"A", u"X20", kSizeScalable, 300, 400).Magnified(2, 3)});
  Ok(kFontTab, {Click(kDeco.reference), New(kDeco, u"N")});
  EXPECT_EQ(Stored().at(1), Deco(u"N", u"X20", kSize5x9, 10, 27).Magnified(2, 3));
}

// A program may send the command of a disabled button.
TEST_F(CreateFontPageTest, CommandOfDisabledButtonDoesNothing) {
  const auto send = [](int button) {
    return [=](Desk& desk) {
      SendMessageW(desk.Windows().back().page->handle, WM_COMMAND, MAKEWPARAM(button, 0), 0);
      EXPECT_EQ(desk.ModalDepth(), 1) << button;
    };
  };
  Store({});
  ExpectStored({}, {send(kDeco.change), send(kDeco.remove), send(kBar.change), send(kBar.remove)});
  Store(Many(35, 35));
  ExpectStored(Many(35, 35), send(kDeco.create));
  Show({.kind = SheetKind::kAdvanced}, {GoTo(kFontTab), send(kDeco.create), PressOk()});
}

// A font store that is loaded from the printer.
struct LoadedStore {
  FontStore fonts = {};
  OpenedPrinter printer;
  bool loaded = LoadFontStore(fonts, printer, GetProcessHeap());
  ~LoadedStore() { FreeFontStore(fonts, GetProcessHeap()); }
};

class FontStoreTest : public FontTest {
 protected:
  // Returns the stored fonts after a load and a save.
  Fonts SaveAgain() {
    const LoadedStore store;
    EXPECT_TRUE(store.loaded && SaveFontStore(store.printer, store.fonts));
    return Stored();
  }
};

// Another session saves both values between the reads of the load, or only the data because it
// wrote the number before.
TEST_F(FontStoreTest, LoadDuringSaveOfAnotherSessionGetsOneConsistentState) {
  for (const auto& [before, after] : {std::pair(1, 2), std::pair(2, 1)}) {
    Store(Many(before, 0));
    // Call 1 opens the printer, 2 reads the number, 3 the data, 4 and 5 read both again.
    machine().faults.FailNth(platform::Fault::kSpoolerChange, 3);
    machine().faults.OnSpoolerChange([this, fonts = Many(after, 0)] { Store(fonts); });
    EXPECT_EQ(LoadedStore().fonts.DecoFontNum, after);
    Store(Many(before, 0));
    Set(u"CreateFont Number", Number(size_t(after)));
    machine().faults.FailNth(platform::Fault::kSpoolerChange, 4);
    EXPECT_EQ(LoadedStore().fonts.DecoFontNum, after);
  }
}

TEST_F(FontStoreTest, InvalidNumberMeansNoFonts) {
  const auto savedWith = [this](const FontNumber& number, size_t size = sizeof(FontNumber)) {
    Store(Many(1, 1));
    std::vector<std::byte> bytes = BytesOf(number);
    bytes.resize(size);
    Set(u"CreateFont Number", bytes);
    return SaveAgain();
  };
  EXPECT_EQ(savedWith({9, 0x0E01, 7}), Many(1, 1)) << "the data end earlier";
  EXPECT_EQ(savedWith({1, 0x0E01, 0}), Fonts()) << "less than the data";
  EXPECT_EQ(savedWith({2, 0x0E00, 0}), Fonts()) << "the version";
  EXPECT_EQ(savedWith({2, 0x0E01, 0}, 5), Fonts()) << "the size of the number";
}

TEST_F(FontStoreTest, UnusableRecordsAreDropped) {
  Store(Many(1, 1));
  machine().RemoveData(kPrinter, u"CreateFont Data");
  EXPECT_EQ(SaveAgain(), Fonts());
  // The data end within the last record.
  Store(Many(2, 0));
  std::vector<std::byte> data = Get(u"CreateFont Data");
  data.pop_back();
  Set(u"CreateFont Data", data);
  EXPECT_EQ(SaveAgain(), Many(1, 0));
  // The order within a kind is preserved; a record of an unknown kind is dropped.
  Font unknown = Deco(u"X");
  unknown.FontKind = 2;
  Store({Bar(u"B0"), Deco(u"D0"), unknown, Bar(u"B1"), Deco(u"D1")});
  EXPECT_EQ(SaveAgain(), Many(2, 2));
  // Decorative fonts above the limit of both kinds together are dropped first.
  Store(Many(50, 40));
  EXPECT_EQ(SaveAgain(), Many(30, 40));
  Store(Many(99, 99));
  EXPECT_EQ(SaveAgain(), Many(0, 70));
}

// Every page except the version page saves the fonts on Apply, but only in a session that has
// loaded them.
TEST_F(FontStoreTest, ApplySavesFontsThatSessionLoaded) {
  const Fonts loaded = {Deco(u"見出し１"), Bar(u"商品コード", 1900)}, other = {Deco(u"A")};
  for (const SheetKind kind : {SheetKind::kDocument, SheetKind::kAdvanced}) {
    for (int tab = kVersionTab; tab <= kUtilityTab; ++tab) {
      Store(loaded);
      Show({.kind = kind}, {GoTo(tab), [&](Desk&) { Store(other); }, PressOk()});
      const bool saves = kind == SheetKind::kDocument && tab != kVersionTab;
      EXPECT_EQ(Stored(), saves ? loaded : other) << "tab " << tab;
    }
  }
}

}  // namespace
}  // namespace fonts
