// The page that lists the registered fonts, the rules for their names, and how they are kept.
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

// What a list shows, the first entry selected, and which buttons can be used.
Steps Shows(const Kind& kind, const std::vector<std::u16string>& names, bool room = true) {
  return {ExpectItems(kind.list, names), ExpectSelected(kind.list, names.empty() ? -1 : 0),
          ExpectEnabled({kind.create}, room),
          ExpectEnabled({kind.change, kind.remove, kind.reference}, !names.empty())};
}
Steps Remove(const Kind& kind, int row, const std::u16string& name, int answer = IDOK) {
  return {Select(kind.list, row), Click(kind.remove),
          CloseMessage(name + u" を削除します。\nよろしいですか？",
                       MB_OKCANCEL | MB_ICONEXCLAMATION, kPage, answer)};
}

TEST_F(FontTest, CountsBothKindsToSeventy) {
  const std::vector<int> both = {kDeco.create, kBar.create};
  Store(Many(0, 68));
  Records expected = Many(0, 68);
  expected.insert(expected.begin(), Deco(u"A"));
  expected.push_back(Bar(u"Last", 100, kInitial));
  Gives(expected,
        {ExpectText(IDC_CREATE_FONT_LIMIT_TEXT,
                    u"装飾フォントとバーコードフォントは、合計 70 個まで登録できます。"),
         Shows(kDeco, {}), ExpectChanged(false), New(kDeco, u"A"), ExpectChanged(true),
         ExpectEnabled(both), New(kDeco, u"B"),
         // The keyboard goes on where its button was disabled.
         Shows(kDeco, {u"A", u"B"}, false), ExpectEnabled(both, false), ExpectFocus(kDeco.list),
         ExpectText(IDC_HELP_TEXT, u"ここにﾏｳｽｶｰｿﾙのある 入力項目についての説明が表示されます。"),
         Remove(kDeco, 1, u"B"), ExpectEnabled(both), ExpectFocus(kDeco.remove), New(kBar, u"Last"),
         ExpectEnabled(both, false)});
  Store(Many(50, 40));
  Gives(Many(30, 40), {ExpectEnabled(both, false), Remove(kDeco, 29, u"D29", IDCANCEL)});
  // The place that is freed holds nothing, the last one too.
  const auto freed = [](Desk& desk) { EXPECT_EQ(SessionFonts(desk).BarFonts[69].FontName[0], 0); };
  Store(Many(0, 70));
  Gives(Many(0, 69), {Remove(kBar, 69, u"B69"), freed});
}

// Names and words of any content are listed and asked about without a read past their record.
TEST_F(FontTest, DeletesTheSelectedFont) {
  Record deco, bar;
  deco.fill(u'あ');
  bar.fill(u'い');
  const std::u16string decoName(32, u'あ'), barName(32, u'い');
  Store({deco.Put(64, {0}), bar.Put(64, {1}), Bar(u"B2"), Bar(u"B3")});
  Gives({bar, Bar(u"B3")},
        {Remove(kBar, 1, u"B2", IDCANCEL), Shows(kBar, {barName, u"B2", u"B3"}),
         ExpectChanged(false), Remove(kBar, 1, u"B2"), ExpectChanged(true),
         Shows(kBar, {barName, u"B3"}), Shows(kDeco, {decoName}), Remove(kDeco, 0, decoName),
         Shows(kDeco, {}), ExpectFocus(kDeco.list), Shows(kBar, {barName, u"B3"}),
         Click(kBar.change), ExpectText(kBar.name, barName.substr(1)), Click(IDCANCEL)});
}

// A changed font stays in its place; a new one is the selected one under another name, or without
// one as any other. The box stays checked.
TEST_F(FontTest, ChangesAndRefersToTheSelectedFont) {
  const Record deco = Deco(u"O", u"漢字(縦書)", 512, 55, 83)
                          .Put(202, {2, 3, 0, 1, 270, 1, 0, 1, 0, 1, 1, 12, -34, 5, 6}),
               bar = Bar(u"O", 500).Put(130, {0x4008, 500, 1, 1, 9, -8, 7, 6});
  for (const auto& [kind, font, fresh] :
       {std::tuple(kDeco, deco, Deco(u"M")), std::tuple(kBar, bar, Bar(u"M", 100, kInitial))}) {
    const auto named = [&](const char16_t* name) { return Record(font).Name(name); };
    Steps declined;
    for (const Step& end : {Click(IDCANCEL), Close(), Escape()}) {
      declined += {Click(kind.change), Replace(kind.name, u"Y"), end};
    }
    Store({named(u"F1"), named(u"F2"), named(u"F3")});
    const Records expected = {named(u"F1"), named(u"X"), named(u"F3"), named(u"E")};
    Gives(
        expected,
        {declined, ExpectChanged(false), Select(kind.list, 1),
         Change(kind, Replace(kind.name, u"X")), ExpectChanged(true), ExpectSelected(kind.list, 0),
         // Entered again, the page selects the first.
         Select(kind.list, 1), GoTo(kVersionTab), GoTo(kFontTab), ExpectSelected(kind.list, 0),
         ExpectChecked({kind.reference}, false), Click(kind.reference), Select(kind.list, 1),
         Click(kind.create), ExpectText(kind.name, u""), Replace(kind.name, u"X"), Click(IDOK),
         CloseMessage(kTaken, MB_ICONEXCLAMATION, Registers(kind)), Replace(kind.name, u"E"),
         Click(IDOK), ExpectChecked({kind.reference})});
    EXPECT_EQ(FakeLibrary::calls, "");
    Cancel(kFontTab, Change(kind, Replace(kind.name, u"Y")));
    EXPECT_EQ(Stored(), expected);
    Store({font});
    Gives({font, named(u"M")}, {Click(kind.reference), New(kind, u"M")});
    Store({font});
    Gives({fresh}, {Click(kind.reference), Remove(kind, 0, u"O"), New(kind, u"M"),
                    ExpectChecked({kind.reference})});
  }
}

// A size that could not be checked is not copied.
TEST_F(FontTest, ReferenceCopyGetsFirstSizeOfItsResidentFont) {
  const auto copies = [&](const Record& font, const Record& copy) {
    Store({font});
    Gives({font, Record(copy).Name(u"M")}, {Click(kDeco.reference), New(kDeco, u"M")});
  };
  copies(Deco(u"A", u"X20", 1024, 300, 400).Put(202, {2, 3}),
         Deco(u"M", u"X20", 1, 10, 27).Put(202, {2, 3}));
  copies(Deco(u"A", u"漢字(横書)", 384, 50, 50), Deco(u"M", u"漢字(横書)", 128, 16, 16));
  copies(Deco(u"A", u"X99", 1024, 300, 400), Deco(u"M", u"X99", 1024, 300, 400));
}

// Another session saves while the fonts are read, between two calls of the spooler or around one:
// what is loaded is stored as a whole before or after.
TEST_F(FontTest, FontsThatAnotherSessionSavesMeanwhileAreLoadedWhole) {
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
    // The number is stored before the first call, the data before the third.
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

// Some of the stored names no rule would let in; they show which rule comes first. What lies behind
// a list's end is no font.
TEST_F(FontTest, NamesAreJudgedInOrder) {
  const auto bury = [gone = Deco(u"Gone")](Desk& desk) {
    kestrel::FontStore& fonts = SessionFonts(desk);
    std::memcpy(fonts.DecoFonts + fonts.DecoFontNum, &gone, sizeof gone);
    std::memcpy(fonts.BarFonts + fonts.BarFontNum, &gone, sizeof gone);
  };
  // Names for the font in a row of a kind's list, or for a new one (-1); null: they are taken.
  const auto judged = [&](const Kind& kind, int row, const char16_t* message,
                          const std::vector<std::u16string>& names) {
    for (const std::u16string& name : names) {
      SCOPED_TRACE(testing::PrintToString(name) + std::to_string(row));
      const bool fresh = row < 0;
      Steps steps = {bury, Select(kind.list, std::max(row, 0)),
                     Click(fresh ? kind.create : kind.change), Put(kind.name, name)};
      if (message != nullptr) {
        // The name goes before the numbers.
        steps +=
            {Put(IDC_DECO_FONT_EXPAND_X, u"7"), Click(IDOK),
             CloseMessage(message, MB_ICONEXCLAMATION, fresh ? Registers(kind) : Changes(kind)),
             ExpectFocus(kind.name)};
      }
      Cancel(kFontTab, {steps, Click(message != nullptr ? IDCANCEL : IDOK), ExpectTitle(kPage)});
    }
  };
  Store({Deco(u"Deco"), Deco(u"L").Put(66, std::u16string(32, u'x')), Deco(u"VELA POP"),
         Deco(u"Installed Face"), Deco(u"é"), Bar(u"Bar"), Bar(u"ü"),
         Bar(u"あいうえおかきくけこさしすせそた")});
  judged(kDeco, -1, u"登録フォント名を入力して下さい。", {u"", u" 　 "});
  judged(
      kDeco, -1, u"このフォント名は、使用できません\n。別のフォント名を入力して下さい。",
      {u"VELA X20", u"VELA 漢字(縦書)", u"VELA POP", u"Installed Face", std::u16string(31, u'F')});
  judged(kDeco, -1, kTaken, {u"Deco", u"é", u"Bar"});
  judged(kDeco, -1, u"不正な文字が使用されています。",
         {u"aéb", u"¥", u"\xD83D", u"ü", u"あいうえおかきくけこさしすせそたé"});
  judged(kDeco, -1, u"文字数が多すぎます。", {u"あいうえおかきくけこさしすせそた"});  // 32 bytes
  judged(kDeco, -1, nullptr,
         {u"VELA X20 ", u"VELA X25", u"VELA ", u"vela X20", u"X20", u"Installed", u"installed face",
          u"Installed Face 2", u"deco", u"a?b", u"Gone", u"あいうえおかきくけこさしすせそa",
          std::u16string(31, u'x'), std::u16string(31, u'ｱ')});
  // A font's own record does not count, that at the same place of the other list does.
  judged(kDeco, 0, nullptr, {u"Deco"});
  judged(kDeco, 1, kTaken, {u"Deco"});
  judged(kDeco, 0, kTaken, {u"Bar"});
  judged(kBar, 0, nullptr, {u"Bar", u"Gone"});
  judged(kBar, 1, kTaken, {u"Bar"});
  judged(kBar, 0, kTaken, {u"Deco"});
}

// The printer's fonts as a session loads them.
struct Session {
  kestrel::FontStore fonts;
  OpenedPrinter printer;
  bool loaded = kestrel::LoadFontStore(fonts, printer, GetProcessHeap());
  ~Session() { kestrel::FreeFontStore(fonts, GetProcessHeap()); }
  bool Save() { return kestrel::SaveFontStore(printer, fonts); }
};

TEST_F(FontTest, DamagedStoresAreEmpty) {
  using std::string_literals::operator""s;
  const Records both = {Deco(u"A"), Bar(u"B")};
  const auto gives = [&](const Records& loaded) {
    Session session;
    Store({Deco(u"Former")});
    EXPECT_TRUE(session.loaded && session.Save());
    EXPECT_EQ(Stored(), loaded);
  };
  // As announced, with another third word, more than there are; fewer, which the data do not fit,
  // none, an older version, other sizes.
  const std::vector<std::string> kNumbers = {
      "\2\0\1\16\0\0"s, "\2\0\1\16\7\7"s, "\11\0\1\16\0\0"s, "\377\377\1\16\0\0"s, "\1\0\1\16\0\0"s,
      "\0\0\1\16\0\0"s, "\2\0\0\16\0\0"s, "\2\0\1\16\0"s,    "\2\0\1\16\0\0\0"s};
  for (size_t i = 0; i < kNumbers.size(); ++i) {
    Store(both);
    Set(u"CreateFont Number", kNumbers[i]);
    SCOPED_TRACE(i);
    gives(i < 4 ? both : Records());
  }
  for (const char16_t* missing : {u"CreateFont Number", u"CreateFont Data"}) {
    Store(both);
    machine().RemoveData(kPrinter, missing);
    gives({});
  }
  // The end of the data lies within a record: that record does not count.
  Store(both);
  Set(u"CreateFont Data", Get(u"CreateFont Data").substr(0, 463));
  gives({Deco(u"A")});
  // Stored order is kept within a kind; records of no kind are dropped.
  Store({Bar(u"B1"), Deco(u"D1"), Deco(u"X").Put(64, {2}), Bar(u"B2"), Deco(u"D2")});
  gives({Deco(u"D1"), Deco(u"D2"), Bar(u"B1"), Bar(u"B2")});
}

// What the lists show is what is written: decorative fonts give way to barcode fonts.
TEST_F(FontTest, KeepsSeventyFonts) {
  constexpr int kCases[][4] = {
      {40, 30, 40, 30}, {50, 40, 30, 40}, {70, 70, 0, 70}, {90, 10, 60, 10}, {0, 99, 0, 70}};
  for (const auto& [deco, bar, savedDeco, savedBar] : kCases) {
    Store(Many(deco, bar));
    Session session;
    EXPECT_EQ(Words(session.fonts.DecoFontNum, session.fonts.BarFontNum),
              Words(std::min(deco, 70), std::min(bar, 70)));
    EXPECT_TRUE(session.Save());
    EXPECT_EQ(Stored(), Many(savedDeco, savedBar));
  }
}

TEST_F(FontTest, WithoutMemory) {
  for (const Records& records : {Records(), {Deco(u"A")}}) {
    Store(records);
    Session session;
    Store({Deco(u"Former")});
    machine().faults.FailNth(platform::Fault::kAllocation, 1);
    EXPECT_EQ(session.Save(), records.empty());
    EXPECT_EQ(Get(u"CreateFont Number"), records.empty() ? std::string(2, '\0') : Number(1));
    EXPECT_EQ(Get(u"CreateFont Data").size(), records.empty() ? 0 : sizeof(Record));
  }
  // Without one of the lists there is no store; without room to read the records into it is empty
  // and takes new fonts.
  for (int n = 1; n <= 3; ++n) {
    Store({Deco(u"A")});
    machine().faults.FailNth(platform::Fault::kAllocation, n);
    Session session;
    EXPECT_EQ(session.loaded, n == 3);
    EXPECT_EQ(session.Save(), n == 3);
    EXPECT_EQ(Stored(), n == 3 ? Records() : Records{Deco(u"A")});
  }
}

// Applying any page but the version page writes the fonts, to the last word of a record, but only
// those that the sheet has loaded.
TEST_F(FontTest, EachPageWritesWhatItsSessionLoaded) {
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
  // What the spooler refuses changes nothing.
  machine().SetPermission(kPrinter, false, false);
  Gives(golden, {Click(kDeco.remove), Click(IDOK)});
}

}  // namespace
}  // namespace fonts
