// The create-font page, the rules for font names, and the font store in printer data.
#include "font_fixture.h"
#include "fonts/font_store.h"
#include "sheets/page_services.h"

namespace fonts {
namespace {

kestrel::FontStore& SessionFonts(Desk& desk) {
  return kestrel::PageSession(desk.Windows().back().page->handle)->fonts;
}
constexpr char16_t kTaken[] =
    u"既に同一のフォント名が登録されています。\n別のフォント名に変更して下さい。";

class CreateFontPageTest : public FontTest {};
class FontNameTest : public FontTest {};
class FontStoreTest : public FontTest {};

// Expects the names in a list with the first one selected, and the buttons enabled accordingly.
Steps ExpectList(const Kind& kind, const std::vector<std::u16string>& names,
                 bool canCreate = true) {
  return {ExpectItems(kind.list, names), ExpectSelected(kind.list, names.empty() ? -1 : 0),
          ExpectEnabled({kind.create}, canCreate),
          ExpectEnabled({kind.change, kind.remove, kind.reference}, !names.empty())};
}
Steps Remove(const Kind& kind, int row, const std::u16string& name, int answer = IDOK) {
  return {Select(kind.list, row), Click(kind.remove),
          CloseMessage(name + u" を削除します。\nよろしいですか？",
                       MB_OKCANCEL | MB_ICONEXCLAMATION, kPage, answer)};
}

TEST_F(CreateFontPageTest, BothKindsTogetherAreLimitedToSeventy) {
  const std::vector<int> both = {kDeco.create, kBar.create};
  Store(Many(0, 68));
  Records expected = Many(0, 68);
  expected.insert(expected.begin(), Deco(u"A"));
  expected.push_back(Bar(u"Last", 100, kInitial));
  ExpectStored(
      expected,
      {ExpectText(IDC_CREATE_FONT_LIMIT_TEXT,
                  u"装飾フォントとバーコードフォントは、合計 70 個まで登録できます。"),
       ExpectList(kDeco, {}), ExpectChanged(false), New(kDeco, u"A"), ExpectChanged(true),
       ExpectEnabled(both), New(kDeco, u"B"),
       // The focus moves from the disabled button to the list.
       ExpectList(kDeco, {u"A", u"B"}, false), ExpectEnabled(both, false), ExpectFocus(kDeco.list),
       ExpectText(IDC_HELP_TEXT, u"ここにﾏｳｽｶｰｿﾙのある 入力項目についての説明が表示されます。"),
       Remove(kDeco, 1, u"B"), ExpectEnabled(both), ExpectFocus(kDeco.remove), New(kBar, u"Last"),
       ExpectEnabled(both, false)});
  Store(Many(50, 40));
  ExpectStored(Many(30, 40), {ExpectEnabled(both, false), Remove(kDeco, 29, u"D29", IDCANCEL)});
  // A deletion clears the last record.
  const auto cleared = [](Desk& desk) {
    EXPECT_EQ(SessionFonts(desk).BarFonts[69].FontName[0], 0);
  };
  Store(Many(0, 70));
  ExpectStored(Many(0, 69), {Remove(kBar, 69, u"B69"), cleared});
}

// Two of the names have no terminator; the page reads no further than the field.
TEST_F(CreateFontPageTest, DeleteRemovesSelectedFont) {
  Record deco, bar;
  deco.fill(u'あ');
  bar.fill(u'い');
  const std::u16string decoName(32, u'あ'), barName(32, u'い');
  Store({deco.Put(64, {0}), bar.Put(64, {1}), Bar(u"B2"), Bar(u"B3")});
  ExpectStored({bar, Bar(u"B3")},
               {Remove(kBar, 1, u"B2", IDCANCEL), ExpectList(kBar, {barName, u"B2", u"B3"}),
                ExpectChanged(false), Remove(kBar, 1, u"B2"), ExpectChanged(true),
                ExpectList(kBar, {barName, u"B3"}), ExpectList(kDeco, {decoName}),
                Remove(kDeco, 0, decoName), ExpectList(kDeco, {}), ExpectFocus(kDeco.list),
                ExpectList(kBar, {barName, u"B3"}), Click(kBar.change),
                ExpectText(kBar.name, barName.substr(1)), Click(IDCANCEL)});
}

// A changed font keeps its index. With the reference box checked a new font is a copy of the
// selected one, or has the defaults while the list is empty. The box stays checked.
TEST_F(CreateFontPageTest, SelectedFontIsChangedOrCopied) {
  const Record deco = Deco(u"O", u"漢字(縦書)", 512, 55, 83)
                          .Put(202, {2, 3, 0, 1, 270, 1, 0, 1, 0, 1, 1, 12, -34, 5, 6}),
               bar = Bar(u"O", 500).Put(130, {0x4008, 500, 1, 1, 9, -8, 7, 6});
  for (const auto& [kind, font, defaults] :
       {std::tuple(kDeco, deco, Deco(u"M")), std::tuple(kBar, bar, Bar(u"M", 100, kInitial))}) {
    const auto named = [&](const char16_t* name) { return Record(font).Name(name); };
    Steps declined;
    for (const Step& end : {Click(IDCANCEL), Close(), Escape()}) {
      declined += {Click(kind.change), Replace(kind.name, u"Y"), end};
    }
    Store({named(u"F1"), named(u"F2"), named(u"F3")});
    const Records expected = {named(u"F1"), named(u"X"), named(u"F3"), named(u"E")};
    ExpectStored(
        expected,
        {declined, ExpectChanged(false), Select(kind.list, 1),
         Change(kind, Replace(kind.name, u"X")), ExpectChanged(true), ExpectSelected(kind.list, 0),
         // The page selects the first font each time it becomes active.
         Select(kind.list, 1), GoTo(kVersionTab), GoTo(kFontTab), ExpectSelected(kind.list, 0),
         ExpectChecked({kind.reference}, false), Click(kind.reference), Select(kind.list, 1),
         Click(kind.create), ExpectText(kind.name, u""), Replace(kind.name, u"X"), Click(IDOK),
         CloseMessage(kTaken, MB_ICONEXCLAMATION, RegisterTitle(kind)), Replace(kind.name, u"E"),
         Click(IDOK), ExpectChecked({kind.reference})});
    EXPECT_EQ(FakeLibrary::calls, "");
    Cancel(kFontTab, Change(kind, Replace(kind.name, u"Y")));
    EXPECT_EQ(Stored(), expected);
    Store({font});
    ExpectStored({font, named(u"M")}, {Click(kind.reference), New(kind, u"M")});
    Store({font});
    ExpectStored({defaults}, {Click(kind.reference), Remove(kind, 0, u"O"), New(kind, u"M"),
                              ExpectChecked({kind.reference})});
  }
}

// No field would check a size that the resident font does not support.
TEST_F(CreateFontPageTest, CopyWithUnsupportedSizeGetsFirstSizeOfItsResidentFont) {
  const auto copies = [&](const Record& font, const Record& copy) {
    Store({font});
    ExpectStored({font, Record(copy).Name(u"M")}, {Click(kDeco.reference), New(kDeco, u"M")});
  };
  copies(Deco(u"A", u"X20", 1024, 300, 400).Put(202, {2, 3}),
         Deco(u"M", u"X20", 1, 10, 27).Put(202, {2, 3}));
  copies(Deco(u"A", u"漢字(横書)", 384, 50, 50), Deco(u"M", u"漢字(横書)", 128, 16, 16));
  copies(Deco(u"A", u"X99", 1024, 300, 400), Deco(u"M", u"X99", 1024, 300, 400));
}

// The other session saves between two spooler calls of the load, or starts before the first one and
// ends before the third.
TEST_F(FontStoreTest, LoadDuringSaveOfAnotherSessionGetsOneConsistentState) {
  using platform::Fault;
  const Records one = {Deco(u"A")}, two = {Deco(u"A"), Bar(u"B")};
  platform::Faults& faults = machine().faults;
  const support::OpenedPrinter printer;
  for (const auto& [before, after] : {std::pair(one, two), std::pair(two, one)}) {
    const auto load = [&] {
      kestrel::FontStore store;
      EXPECT_TRUE(kestrel::LoadFontStore(store, printer, GetProcessHeap()));
      const int count = store.DecoFontNum + store.BarFontNum;
      kestrel::FreeFontStore(store, GetProcessHeap());
      return static_cast<size_t>(count);
    };
    for (const int call : {1, 2}) {
      Store(before);
      faults.FailNth(Fault::kSpoolerChange, call);
      faults.OnSpoolerChange([&] { Store(after); });
      EXPECT_EQ(load(), after.size()) << call;
    }
    // The number changes before the first call, the data before the third.
    Store(before);
    faults.FailNth(Fault::kSpoolerChange, 1);
    faults.OnSpoolerChange([&] {
      Set(u"CreateFont Number", Number(after.size()));
      faults.FailNth(Fault::kSpoolerChange, 2);
      faults.OnSpoolerChange([&] { Store(after); });
    });
    EXPECT_EQ(load(), after.size());
    faults.Clear();
  }
}

// Some of the stored names break a rule themselves; they show which rule comes first. Records after
// the end of a list do not count.
TEST_F(FontNameTest, FirstBrokenRuleIsReported) {
  const auto fillUnused = [gone = Deco(u"Gone")](Desk& desk) {
    kestrel::FontStore& fonts = SessionFonts(desk);
    std::memcpy(fonts.DecoFonts + fonts.DecoFontNum, &gone, sizeof gone);
    std::memcpy(fonts.BarFonts + fonts.BarFontNum, &gone, sizeof gone);
  };
  // Expects a message for each name, or that OK accepts it (null). row is the font to change; -1
  // means a new font.
  const auto expect = [&](const Kind& kind, int row, const char16_t* message,
                          const std::vector<std::u16string>& names) {
    for (const std::u16string& name : names) {
      SCOPED_TRACE(testing::PrintToString(name) + std::to_string(row));
      const bool isNew = row < 0;
      Steps steps = {fillUnused, Select(kind.list, std::max(row, 0)),
                     Click(isNew ? kind.create : kind.change), Put(kind.name, name)};
      if (message != nullptr) {
        // The name is checked before the numbers.
        steps += {Put(IDC_DECO_FONT_EXPAND_X, u"7"), Click(IDOK),
                  CloseMessage(message, MB_ICONEXCLAMATION,
                               isNew ? RegisterTitle(kind) : ChangeTitle(kind)),
                  ExpectFocus(kind.name)};
      }
      Cancel(kFontTab, {steps, Click(message != nullptr ? IDCANCEL : IDOK), ExpectTitle(kPage)});
    }
  };
  Store({Deco(u"Deco"), Deco(u"L").Put(66, std::u16string(32, u'x')), Deco(u"VELA POP"),
         Deco(u"Installed Face"), Deco(u"é"), Bar(u"Bar"), Bar(u"ü"),
         Bar(u"あいうえおかきくけこさしすせそた")});
  expect(kDeco, -1, u"登録フォント名を入力して下さい。", {u"", u" 　 "});
  expect(
      kDeco, -1, u"このフォント名は、使用できません\n。別のフォント名を入力して下さい。",
      {u"VELA X20", u"VELA 漢字(縦書)", u"VELA POP", u"Installed Face", std::u16string(31, u'F')});
  expect(kDeco, -1, kTaken, {u"Deco", u"é", u"Bar"});
  expect(kDeco, -1, u"不正な文字が使用されています。",
         {u"aéb", u"¥", u"\xD83D", u"ü", u"あいうえおかきくけこさしすせそたé"});
  expect(kDeco, -1, u"文字数が多すぎます。", {u"あいうえおかきくけこさしすせそた"});  // 32 bytes
  expect(kDeco, -1, nullptr,
         {u"VELA X20 ", u"VELA X25", u"VELA ", u"vela X20", u"X20", u"Installed", u"installed face",
          u"Installed Face 2", u"deco", u"a?b", u"Gone", u"あいうえおかきくけこさしすせそa",
          std::u16string(31, u'x'), std::u16string(31, u'ｱ')});
  // The font's own record does not count; the record at the same index of the other list does.
  expect(kDeco, 0, nullptr, {u"Deco"});
  expect(kDeco, 1, kTaken, {u"Deco"});
  expect(kDeco, 0, kTaken, {u"Bar"});
  expect(kBar, 0, nullptr, {u"Bar", u"Gone"});
  expect(kBar, 1, kTaken, {u"Bar"});
  expect(kBar, 0, kTaken, {u"Deco"});
}

// A font store that is loaded from the printer.
struct LoadedStore {
  kestrel::FontStore fonts;
  OpenedPrinter printer;
  bool loaded = kestrel::LoadFontStore(fonts, printer, GetProcessHeap());
  ~LoadedStore() { kestrel::FreeFontStore(fonts, GetProcessHeap()); }
  bool Save() { return kestrel::SaveFontStore(printer, fonts); }
};

TEST_F(FontStoreTest, DamagedDataLoadsAsEmptyStore) {
  using std::string_literals::operator""s;
  const Records both = {Deco(u"A"), Bar(u"B")};
  const auto expectLoaded = [&](const Records& loaded) {
    LoadedStore store;
    Store({Deco(u"Former")});
    EXPECT_TRUE(store.loaded && store.Save());
    EXPECT_EQ(Stored(), loaded);
  };
  // Valid: the stored count, any third word, counts above the stored one. Invalid: a count below
  // it, 0, an older version, other sizes.
  const std::vector<std::string> kNumbers = {
      "\2\0\1\16\0\0"s, "\2\0\1\16\7\7"s, "\11\0\1\16\0\0"s, "\377\377\1\16\0\0"s, "\1\0\1\16\0\0"s,
      "\0\0\1\16\0\0"s, "\2\0\0\16\0\0"s, "\2\0\1\16\0"s,    "\2\0\1\16\0\0\0"s};
  for (size_t i = 0; i < kNumbers.size(); ++i) {
    Store(both);
    Set(u"CreateFont Number", kNumbers[i]);
    SCOPED_TRACE(i);
    expectLoaded(i < 4 ? both : Records());
  }
  for (const char16_t* missing : {u"CreateFont Number", u"CreateFont Data"}) {
    Store(both);
    machine().RemoveData(kPrinter, missing);
    expectLoaded({});
  }
  // The data end within a record; that record does not count.
  Store(both);
  Set(u"CreateFont Data", Get(u"CreateFont Data").substr(0, 463));
  expectLoaded({Deco(u"A")});
  // The order within a kind is preserved; a record of an unknown kind is dropped.
  Store({Bar(u"B1"), Deco(u"D1"), Deco(u"X").Put(64, {2}), Bar(u"B2"), Deco(u"D2")});
  expectLoaded({Deco(u"D1"), Deco(u"D2"), Bar(u"B1"), Bar(u"B2")});
}

// The limit drops decorative fonts first, as the page does.
TEST_F(FontStoreTest, SavesSeventyFontsAtMost) {
  constexpr int kCases[][4] = {
      {40, 30, 40, 30}, {50, 40, 30, 40}, {70, 70, 0, 70}, {90, 10, 60, 10}, {0, 99, 0, 70}};
  for (const auto& [deco, bar, savedDeco, savedBar] : kCases) {
    Store(Many(deco, bar));
    LoadedStore store;
    EXPECT_EQ(Words(store.fonts.DecoFontNum, store.fonts.BarFontNum),
              Words(std::min(deco, 70), std::min(bar, 70)));
    EXPECT_TRUE(store.Save());
    EXPECT_EQ(Stored(), Many(savedDeco, savedBar));
  }
}

TEST_F(FontStoreTest, FailedAllocationKeepsStoredFonts) {
  for (const Records& records : {Records(), {Deco(u"A")}}) {
    Store(records);
    LoadedStore store;
    Store({Deco(u"Former")});
    machine().faults.FailNth(platform::Fault::kAllocation, 1);
    EXPECT_EQ(store.Save(), records.empty());
    EXPECT_EQ(Get(u"CreateFont Number"), records.empty() ? std::string(2, '\0') : Number(1));
    EXPECT_EQ(Get(u"CreateFont Data").size(), records.empty() ? 0 : sizeof(Record));
  }
  // The load fails when a list cannot be allocated. When the read buffer cannot be allocated, the
  // store is empty and accepts new fonts.
  for (int n = 1; n <= 3; ++n) {
    Store({Deco(u"A")});
    machine().faults.FailNth(platform::Fault::kAllocation, n);
    LoadedStore store;
    EXPECT_EQ(store.loaded, n == 3);
    EXPECT_EQ(store.Save(), n == 3);
    EXPECT_EQ(Stored(), n == 3 ? Records() : Records{Deco(u"A")});
  }
}

// Every page except the version page saves the fonts on Apply, with every word of a record, but
// only in a session that has loaded them.
TEST_F(FontStoreTest, ApplySavesFontsThatSessionLoaded) {
  const Records golden = {Deco(u"見出し１").Put(220, {1, 1, 12, -34, 5, 6}),
                          Bar(u"商品コード", 1900),
                          Bar(u"ABCDEFGHIJKLMNOPQRSTUVWXYZ12345").Put(230, {0x5A5A})};
  for (SheetKind kind : {SheetKind::kDocument, SheetKind::kAdvanced, SheetKind::kUserDefault}) {
    for (int tab = kVersionTab; tab <= kUtilityTab; ++tab) {
      SCOPED_TRACE(testing::Message() << "kind " << static_cast<int>(kind) << ", tab " << tab);
      Store(golden);
      Show({.kind = kind}, {GoTo(tab), [&](Desk&) { Store({Deco(u"A")}); }, PressOk()});
      const bool saves = kind != SheetKind::kAdvanced && tab != kVersionTab;
      EXPECT_EQ(Stored(), saves ? golden : Records{Deco(u"A")});
    }
  }
  // A write that the spooler rejects does not change the stored fonts.
  machine().SetPermission(kPrinter, false, false);
  ExpectStored(golden, {Click(kDeco.remove), Click(IDOK)});
}

}  // namespace
}  // namespace fonts
