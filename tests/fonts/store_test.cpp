// What a printer's fonts are loaded from and written to.
#include "font_fixture.h"
#include "fonts/font_store.h"

namespace fonts {
namespace {

using platform::Desk;
using platform::Fault;
using support::Click;
using support::ExpectItems;
using support::GoTo;
using support::OpenedPrinter;
using support::PressOk;
using support::SheetKind;

class FontStoreTest : public FontTest {
 protected:
  // Loads the printer's fonts, and writes them back over nothing.
  kestrel::FontStore Load() {
    kestrel::FontStore store;
    const OpenedPrinter printer;
    EXPECT_TRUE(kestrel::LoadFontStore(store, printer, GetProcessHeap()));
    EXPECT_TRUE(store.Loaded);
    EXPECT_NE(store.DecoFonts, nullptr);
    EXPECT_NE(store.BarFonts, nullptr);
    return store;
  }
  static void Free(kestrel::FontStore& store) { kestrel::FreeFontStore(store, GetProcessHeap()); }
  Records LoadAndSave() {
    kestrel::FontStore store = Load();
    ForgetFonts();
    const OpenedPrinter printer;
    EXPECT_TRUE(kestrel::SaveFontStore(printer, store));
    Free(store);
    return Stored();
  }
};

TEST_F(FontStoreTest, DamagedStoresAreEmpty) {
  const struct {
    const char* what;
    std::vector<unsigned char> number;  // empty: absent
    bool data;
    int loaded;
  } kCases[] = {
      {"whole", {2, 0, 1, 14, 0, 0}, true, 2},
      {"another third word", {2, 0, 1, 14, 7, 7}, true, 2},
      {"absent", {}, true, 0},
      {"an older version", {2, 0, 0, 14, 0, 0}, true, 0},
      {"5 bytes", {2, 0, 1, 14, 0}, true, 0},
      {"7 bytes", {2, 0, 1, 14, 0, 0, 0}, true, 0},
      {"none announced", {0, 0, 1, 14, 0, 0}, true, 0},
      {"no data", {2, 0, 1, 14, 0, 0}, false, 0},
      {"more announced than there are", {9, 0, 1, 14, 0, 0}, true, 2},
      {"65535 announced", {255, 255, 1, 14, 0, 0}, true, 2},
      // The data do not fit what was announced: reading them fails.
      {"fewer announced than there are", {1, 0, 1, 14, 0, 0}, true, 0},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    ForgetFonts();
    if (!c.number.empty()) {
      const auto* bytes = reinterpret_cast<const std::byte*>(c.number.data());
      machine().SetData(support::kPrinter, u"CreateFont Number",
                        {REG_BINARY, {bytes, bytes + c.number.size()}});
    }
    const Records records = {Deco(u"A"), Bar(u"B")};
    if (c.data) SetRecords(records);
    EXPECT_EQ(LoadAndSave(), c.loaded == 2 ? records : Records());
  }
}

// The end of the data lies within a record: that record does not count.
TEST_F(FontStoreTest, TakesWholeRecordsAlone) {
  Store({Deco(u"A"), Deco(u"B")});
  std::vector<std::byte> data = Data(u"CreateFont Data");
  data.pop_back();
  machine().SetData(support::kPrinter, u"CreateFont Data", {REG_BINARY, data});
  EXPECT_EQ(LoadAndSave(), Records{Deco(u"A")});
}

// What the lists show is what is written: decorative fonts give way to barcode fonts.
TEST_F(FontStoreTest, KeepsSeventyFonts) {
  const struct {
    int deco, bar;
    int savedDeco, savedBar;
    bool more;
  } kCases[] = {
      {40, 29, 40, 29, true}, {40, 30, 40, 30, false}, {50, 40, 30, 40, false},
      {70, 70, 0, 70, false}, {90, 10, 60, 10, false}, {0, 99, 0, 70, false},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(testing::Message() << c.deco << " + " << c.bar);
    Store(Many(c.deco, c.bar));
    kestrel::FontStore store = Load();
    EXPECT_EQ(store.DecoFontNum, std::min(c.deco, 70));
    EXPECT_EQ(store.BarFontNum, std::min(c.bar, 70));
    EXPECT_EQ(kestrel::CanRegisterMore(store), c.more);
    Free(store);
    EXPECT_EQ(LoadAndSave(), Many(c.savedDeco, c.savedBar));
  }
}

TEST_F(FontStoreTest, TakesTheFirstSeventyOfTwoHundredMixedRecords) {
  Records records;
  Records decos;
  Records bars;
  for (int i = 0; i < 200; ++i) {
    Record record = Numbered(u"N", i, i % 2 == 1);
    if (i % 5 == 4) record.Put(64, i);
    records.push_back(record);
    if (i % 5 != 4) (i % 2 == 1 ? bars : decos).push_back(record);
  }
  ASSERT_EQ(bars.size(), 80u);
  bars.resize(70);
  decos.resize(70);
  Store(records);
  kestrel::FontStore store = Load();
  ASSERT_EQ(store.DecoFontNum, 70);
  ASSERT_EQ(store.BarFontNum, 70);
  EXPECT_EQ(std::memcmp(store.DecoFonts, decos.data(), 70 * sizeof(Record)), 0);
  EXPECT_EQ(std::memcmp(store.BarFonts, bars.data(), 70 * sizeof(Record)), 0);
  Free(store);
  EXPECT_EQ(LoadAndSave(), bars);
}

TEST_F(FontStoreTest, SavesWithoutMemory) {
  const OpenedPrinter printer;
  kestrel::FontStore none = Load();
  machine().faults.FailNth(Fault::kAllocation, 1);
  EXPECT_TRUE(kestrel::SaveFontStore(printer, none));
  EXPECT_TRUE(machine().faults.Struck(Fault::kAllocation));
  EXPECT_EQ(Data(u"CreateFont Number"), std::vector<std::byte>(2));
  EXPECT_TRUE(Data(u"CreateFont Data").empty());
  Free(none);

  Store({Deco(u"A")});
  kestrel::FontStore one = Load();
  ForgetFonts();
  machine().faults.FailNth(Fault::kAllocation, 1);
  EXPECT_FALSE(kestrel::SaveFontStore(printer, one));
  EXPECT_FALSE(HasFonts());
  Free(one);
}

TEST_F(FontStoreTest, LoadsNothingWithoutMemory) {
  Store({Deco(u"A")});
  const OpenedPrinter printer;
  for (int n = 1; n <= 2; ++n) {  // neither of the two lists
    kestrel::FontStore store;
    machine().faults.FailNth(Fault::kAllocation, n);
    EXPECT_FALSE(kestrel::LoadFontStore(store, printer, GetProcessHeap()));
    EXPECT_FALSE(store.Loaded);
    EXPECT_FALSE(kestrel::SaveFontStore(printer, store));
  }
  // No room to read the records into: the store is empty and takes new fonts.
  machine().faults.FailNth(Fault::kAllocation, 3);
  kestrel::FontStore store = Load();
  EXPECT_TRUE(machine().faults.Struck(Fault::kAllocation));
  EXPECT_EQ(store.DecoFontNum, 0);
  EXPECT_TRUE(kestrel::CanRegisterMore(store));
  Free(store);
}

TEST_F(FontStoreTest, WritesRefusedByTheSpoolerChangeNothing) {
  Store({Deco(u"A"), Deco(u"B")});
  machine().SetPermission(support::kPrinter, false, false);
  EXPECT_EQ(Register({Click(IDC_CREATE_FONT_DECO_DELETE), Click(IDOK)}),
            (Records{Deco(u"A"), Deco(u"B")}));
}

// Two decorative and three barcode fonts, every field at its own offset.
Records Golden() {
  Record kanji;
  kanji.Put(0, u"見出し１").Put(66, u"見出し１").Put(130, u"漢字(縦書)");
  kanji.Put(194, {1, 512, 55, 83, 2, 3, 0, 1, 270, 1, 0, 1, 0, 1, 1, 12, -34, 5, 6});
  Record serialOnly;
  serialOnly.Put(0, u"ABCDEFGHIJKLMNOPQRSTUVWXYZ12345").Put(66, u"ABCDEFGHIJKLMNOPQRSTUVWXYZ12345");
  serialOnly.Put(130, u"POP")
      .Put(194, {0, 2048, 394, 655, 1, 1, 1, 2, 180, 0, 0, 0, 0, 1, 0, 9999, -9999, 99, 99});
  Record upc = Bar(u"商品コード");
  Record maxi = Bar(u"MAXI", 1900);
  maxi.Put(130, {0x4008, 1900, 1, 1, 2, -1, 8, 1});
  Record foreign = Bar(u"ｶﾅ", 1000);
  foreign.bytes[231] = 0x5A;  // beyond what the detail library knows
  return {kanji, serialOnly, upc, maxi, foreign};
}

TEST_F(FontStoreTest, AGoldenStoreIsShownAndSavedToItself) {
  const Records golden = Golden();
  Store(golden);
  EXPECT_EQ(Register({ExpectItems(IDC_CREATE_FONT_DECO_LIST,
                                  {u"見出し１", u"ABCDEFGHIJKLMNOPQRSTUVWXYZ12345"}),
                      ExpectItems(IDC_CREATE_FONT_BAR_LIST, {u"商品コード", u"MAXI", u"ｶﾅ"}),
                      [&](Desk&) { ForgetFonts(); }}),
            golden);
}

// Applying any page but the version page writes the fonts, but only those that the sheet has
// loaded.
TEST_F(FontStoreTest, EachPageWritesWhatItsSessionLoaded) {
  for (SheetKind kind : {SheetKind::kDocument, SheetKind::kAdvanced, SheetKind::kUserDefault}) {
    for (int tab = support::kVersionTab; tab <= support::kUtilityTab; ++tab) {
      SCOPED_TRACE(testing::Message() << "kind " << static_cast<int>(kind) << ", tab " << tab);
      Store(Golden());
      support::ShowSheet(exports_, {.kind = kind},
                         {GoTo(tab), [&](Desk&) { ForgetFonts(); }, PressOk()});
      const bool saves = kind != SheetKind::kAdvanced && tab != support::kVersionTab;
      EXPECT_EQ(HasFonts(), saves);
      if (saves) {
        EXPECT_EQ(Stored(), Golden());
      }
    }
  }
  Store(Golden());
  support::ShowSheet(exports_, {.kind = SheetKind::kPrinter}, {PressOk()});
  EXPECT_EQ(Stored(), Golden());
}

}  // namespace
}  // namespace fonts
