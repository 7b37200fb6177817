// What a printer's fonts are loaded from and written to.
#include "font_fixture.h"
#include "fonts/font_store.h"

namespace fonts {
namespace {

using platform::Fault;

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
  constexpr int kCases[][5] = {{40, 29, 40, 29, 1}, {40, 30, 40, 30, 0}, {50, 40, 30, 40, 0},
                               {70, 70, 0, 70, 0},  {90, 10, 60, 10, 0}, {0, 99, 0, 70, 0}};
  for (const auto& [deco, bar, savedDeco, savedBar, more] : kCases) {
    Store(Many(deco, bar));
    Session session;
    EXPECT_EQ(session.fonts.DecoFontNum, std::min(deco, 70));
    EXPECT_EQ(session.fonts.BarFontNum, std::min(bar, 70));
    EXPECT_EQ(kestrel::CanRegisterMore(session.fonts), more != 0);
    EXPECT_TRUE(session.Save());
    EXPECT_EQ(Stored(), Many(savedDeco, savedBar));
  }
}

TEST_F(FontTest, WithoutMemory) {
  for (const Records& records : {Records(), {Deco(u"A")}}) {
    Store(records);
    Session session;
    Store({Deco(u"Former")});
    machine().faults.FailNth(Fault::kAllocation, 1);
    EXPECT_EQ(session.Save(), records.empty());
    EXPECT_EQ(Get(u"CreateFont Number"), records.empty() ? std::string(2, '\0') : Number(1));
    EXPECT_EQ(Get(u"CreateFont Data").size(), records.empty() ? 0 : sizeof(Record));
  }
  // Without one of the lists there is no store; without room to read the records into it is empty
  // and takes new fonts.
  for (int n = 1; n <= 3; ++n) {
    Store({Deco(u"A")});
    machine().faults.FailNth(Fault::kAllocation, n);
    Session session;
    EXPECT_TRUE(machine().faults.Struck(Fault::kAllocation));
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
