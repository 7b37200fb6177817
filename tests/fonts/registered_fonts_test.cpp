// The create-font page and the font store in printer data.
#include "font_fixture.h"
#include "fonts/font_store.h"
#include "sheets/page_services.h"

namespace fonts {
namespace {

class CreateFontPageTest : public FontTest {};

FontStore& SessionFonts(Desk& desk) {
  return PageSession(desk.Windows().back().page->handle)->fonts;
}
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
  Store(Many(1, 68));
  Fonts expected = Many(1, 68);
  expected.push_back(Bar(u"Last"));
  ExpectStored(expected,
               {ExpectText(IDC_CREATE_FONT_LIMIT_TEXT,
                           u"装飾フォントとバーコードフォントは、合計 70 個まで登録できます。"),
                ExpectEnabled(both), New(kDeco, u"B"), ExpectEnabled(both, false),
                // The focus moves from the disabled button to the list.
                ExpectFocus(kDeco.list), ExpectList(kDeco, {u"D0", u"B"}), Remove(kDeco, 1, u"B"),
                ExpectEnabled(both), New(kBar, u"Last"), ExpectEnabled(both, false)});
  // The page drops decorative fonts above the limit.
  Store(Many(50, 40));
  ExpectStored(Many(30, 40), {ExpectEnabled(both, false), Remove(kDeco, 29, u"D29", IDCANCEL)});
}

// Two of the names fill their fields without a terminator.
TEST_F(CreateFontPageTest, DeleteRemovesSelectedFont) {
  const std::u16string full(kFontNameLength, u'あ');
  const auto lastIsCleared = [](Desk& desk) {
    EXPECT_EQ(SessionFonts(desk).BarFonts[2].FontName[0], 0);
  };
  Store({Deco(full), Bar(full), Bar(u"B2"), Bar(u"B3")});
  ExpectStored({Bar(full), Bar(u"B3")},
               {Remove(kBar, 1, u"B2", IDCANCEL), ExpectList(kBar, {full, u"B2", u"B3"}),
                ExpectChanged(false), Remove(kBar, 1, u"B2"), ExpectChanged(true),
                ExpectList(kBar, {full, u"B3"}), lastIsCleared, Remove(kDeco, 0, full),
                ExpectList(kDeco, {}), ExpectFocus(kDeco.list), Click(kBar.change),
                ExpectText(kBar.name, full.substr(1)), Click(IDCANCEL)});
}

TEST_F(CreateFontPageTest, ChangedFontStaysAtItsIndex) {
  for (const auto& [kind, font] : {std::pair(kDeco, Deco(u"")), std::pair(kBar, Bar(u""))}) {
    const auto named = [&font = font](const char16_t* name) { return Font(font).Name(name); };
    Steps declined;
    for (const Step& end : {Click(IDCANCEL), Close(), Escape()})
      declined += {Click(kind.change), Replace(kind.name, u"Y"), end};
    Store({named(u"F1"), named(u"F2"), named(u"F3")});
    ExpectStored(
        {named(u"F1"), named(u"X"), named(u"F3")},
        {declined, ExpectChanged(false), Select(kind.list, 1),
         Change(kind, Replace(kind.name, u"X")), ExpectChanged(true), ExpectSelected(kind.list, 0),
         // The page selects the first font each time it becomes active.
         Select(kind.list, 1), GoTo(kVersionTab), GoTo(kFontTab), ExpectSelected(kind.list, 0)});
    Cancel(kFontTab, Change(kind, Replace(kind.name, u"Y")));
    EXPECT_EQ(Stored().at(0), named(u"F1"));
  }
}

TEST_F(CreateFontPageTest, ReferenceBoxMakesNewFontACopyOfTheSelectedOne) {
  const std::array<int16_t, 4> numbers = {12, -34, 5, 6};
  const Font deco = Deco(u"O", u"漢字(縦書)", kSize22x22, 55, 83).Numbered(true, true, numbers),
             bar = Bar(u"O", 500, 20).Numbered(true, true, numbers);
  for (const auto& [kind, font, defaults] :
       {std::tuple(kDeco, deco, Deco(u"M")), std::tuple(kBar, bar, Bar(u"M"))}) {
    Store({defaults, font});
    ExpectStored({defaults, font, Font(font).Name(u"N")},
                 {ExpectChecked({kind.reference}, false), Click(kind.reference),
                  Select(kind.list, 1), Click(kind.create), ExpectText(kind.name, u""),
                  Replace(kind.name, u"N"), Click(IDOK), ExpectChecked({kind.reference})});
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
  const Steps newFont = {send(kDeco.create), send(kBar.create)};
  ExpectStored(Many(35, 35), newFont);
  Show({.kind = SheetKind::kAdvanced}, {GoTo(kFontTab), newFont, PressOk()});
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

// Another session saves in front of a spooler call of the load, or writes the number in front of
// one call and the data in front of a later one.
TEST_F(FontStoreTest, LoadDuringSaveOfAnotherSessionGetsOneConsistentState) {
  const auto onSpoolerCall = [this](int call, const std::function<void()>& change) {
    machine().faults.FailNth(platform::Fault::kSpoolerChange, call);
    machine().faults.OnSpoolerChange(change);
  };
  for (const auto& [before, after] : {std::pair(1, 2), std::pair(2, 1)}) {
    const auto save = [this, fonts = Many(after, 0)] { Store(fonts); };
    const auto saveInTwoCalls = [&, count = size_t(after)] {
      Set(u"CreateFont Number", Number(count));
      onSpoolerCall(2, save);
    };
    const std::pair<int, std::function<void()>> kChanges[] = {
        {1, save}, {2, save}, {1, saveInTwoCalls}};
    for (const auto& [call, change] : kChanges) {
      Store(Many(before, 0));
      onSpoolerCall(call, change);
      EXPECT_EQ(LoadedStore().fonts.DecoFontNum, after) << call;
    }
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
  EXPECT_EQ(savedWith({2, 0x0E01, 7}), Many(1, 1)) << "the third word does not count";
  EXPECT_EQ(savedWith({9, 0x0E01, 0}), Many(1, 1)) << "the data end earlier";
  EXPECT_EQ(savedWith({1, 0x0E01, 0}), Fonts()) << "less than the data";
  EXPECT_EQ(savedWith({2, 0x0E00, 0}), Fonts());
  EXPECT_EQ(savedWith({2, 0x0E01, 0}, 5), Fonts());
  EXPECT_EQ(savedWith({2, 0x0E01, 0}, 7), Fonts());
}

TEST_F(FontStoreTest, UnusableRecordsAreDropped) {
  for (const char16_t* missing : {u"CreateFont Number", u"CreateFont Data"}) {
    Store(Many(1, 1));
    machine().RemoveData(kPrinter, missing);
    EXPECT_EQ(SaveAgain(), Fonts());
  }
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
  Store(Many(0, 99));
  EXPECT_EQ(SaveAgain(), Many(0, 70));
  Store(Many(99, 1));
  EXPECT_EQ(SaveAgain(), Many(69, 1));
}

TEST_F(FontStoreTest, FailedAllocationFailsSaveUnlessStoreIsEmpty) {
  for (const Fonts& fonts : {Fonts(), Many(1, 0)}) {
    Store(fonts);
    const LoadedStore store;
    Store(Many(1, 0));
    machine().faults.FailNth(platform::Fault::kAllocation, 1);
    EXPECT_EQ(SaveFontStore(store.printer, store.fonts), fonts.empty());
    // Without a buffer the number of an empty store has two bytes.
    EXPECT_EQ(Get(u"CreateFont Number"), fonts.empty() ? BytesOf(uint16_t{0}) : Number(1));
    EXPECT_EQ(Get(u"CreateFont Data").size(), fonts.size() * sizeof(Font));
  }
}

// The first two allocations are the lists, the third is the buffer of the stored data.
TEST_F(FontStoreTest, FailedAllocationFailsLoadOrLeavesStoreEmpty) {
  for (const int call : {1, 2, 3}) {
    Store(Many(1, 0));
    machine().faults.FailNth(platform::Fault::kAllocation, call);
    const LoadedStore store;
    EXPECT_EQ(store.loaded, call == 3);
    EXPECT_EQ(SaveFontStore(store.printer, store.fonts), call == 3);
    EXPECT_EQ(Stored(), call == 3 ? Fonts() : Many(1, 0));
  }
}

// Every page except the version page saves the fonts on Apply, but only in a session that has
// loaded them.
TEST_F(FontStoreTest, ApplySavesFontsThatSessionLoaded) {
  const Fonts loaded = {Deco(u"見出し１"), Bar(u"商品コード", 1900)}, other = {Deco(u"A")};
  for (const SheetKind kind :
       {SheetKind::kDocument, SheetKind::kAdvanced, SheetKind::kUserDefault}) {
    for (int tab = kVersionTab; tab <= kUtilityTab; ++tab) {
      Store(loaded);
      Show({.kind = kind}, {GoTo(tab), [&](Desk&) { Store(other); }, PressOk()});
      const bool saves = kind != SheetKind::kAdvanced && tab != kVersionTab;
      EXPECT_EQ(Stored(), saves ? loaded : other)
          << "kind " << static_cast<int>(kind) << ", tab " << tab;
    }
  }
  // A write that the spooler rejects does not change the stored fonts.
  Store(loaded);
  machine().SetPermission(kPrinter, false, false);
  ExpectStored(loaded, {Click(kDeco.remove), Click(IDOK)});
}

}  // namespace
}  // namespace fonts
