// What a printer's fonts are loaded from and written to.
#include "font_fixture.h"
#include "fonts/font_store.h"

namespace fonts {
namespace {

using platform::Fault;

class FontStoreTest : public FontTest {
 protected:
  kestrel::FontStore Load() {
    kestrel::FontStore store;
    const OpenedPrinter printer;
    EXPECT_TRUE(kestrel::LoadFontStore(store, printer, GetProcessHeap()));
    EXPECT_TRUE(store.Loaded);
    return store;
  }
  bool Save(const kestrel::FontStore& store) {
    const OpenedPrinter printer;
    return kestrel::SaveFontStore(printer, store);
  }
  static void Free(kestrel::FontStore& store) { kestrel::FreeFontStore(store, GetProcessHeap()); }
  // Loads the printer's fonts, and writes them back over nothing.
  Records LoadAndSave() {
    kestrel::FontStore store = Load();
    ForgetFonts();
    EXPECT_TRUE(Save(store));
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
  const Records records = {Deco(u"A"), Bar(u"B")};
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    ForgetFonts();
    if (!c.number.empty()) SetNumber(c.number);
    if (c.data) SetRecords(records);
    EXPECT_EQ(LoadAndSave(), c.loaded == 2 ? records : Records());
  }
  // The end of the data lies within a record: that record does not count.
  Store(records);
  const std::vector<std::byte> data = Data(u"CreateFont Data");
  machine().SetData(kPrinter, u"CreateFont Data",
                    {REG_BINARY, BytesOf(data.data(), data.size() - 1)});
  EXPECT_EQ(LoadAndSave(), Records{Deco(u"A")});
}

// What the lists show is what is written: decorative fonts give way to barcode fonts.
TEST_F(FontStoreTest, KeepsSeventyFonts) {
  const struct {
    int deco, bar, savedDeco, savedBar;
    bool more;
  } kCases[] = {{40, 29, 40, 29, true}, {40, 30, 40, 30, false}, {50, 40, 30, 40, false},
                {70, 70, 0, 70, false}, {90, 10, 60, 10, false}, {0, 99, 0, 70, false}};
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

// Stored order is kept within a kind; records of no kind are dropped.
TEST_F(FontStoreTest, SortsMixedRecords) {
  Records records, decos, bars;
  for (int i = 0; i < 200; ++i) {
    Record record = Numbered(u"N", i, i % 2 == 1);
    if (i % 5 == 4) record.Put(64, i);
    if (i % 5 != 4) (i % 2 == 1 ? bars : decos).push_back(record);
    records.push_back(record);
  }
  Store(records);
  kestrel::FontStore store = Load();
  ASSERT_EQ(store.DecoFontNum, 70);
  ASSERT_EQ(store.BarFontNum, 70);
  EXPECT_EQ(std::memcmp(store.DecoFonts, decos.data(), 70 * sizeof(Record)), 0);
  EXPECT_EQ(std::memcmp(store.BarFonts, bars.data(), 70 * sizeof(Record)), 0);
  Free(store);
}

TEST_F(FontStoreTest, WithoutMemory) {
  kestrel::FontStore none = Load();
  machine().faults.FailNth(Fault::kAllocation, 1);
  EXPECT_TRUE(Save(none));
  EXPECT_TRUE(machine().faults.Struck(Fault::kAllocation));
  EXPECT_EQ(Data(u"CreateFont Number"), std::vector<std::byte>(2));
  EXPECT_TRUE(Data(u"CreateFont Data").empty());
  Free(none);

  Store({Deco(u"A")});
  kestrel::FontStore one = Load();
  ForgetFonts();
  machine().faults.FailNth(Fault::kAllocation, 1);
  EXPECT_FALSE(Save(one));
  EXPECT_FALSE(HasFonts());
  Free(one);

  Store({Deco(u"A")});
  for (int n = 1; n <= 2; ++n) {  // neither of the two lists
    const OpenedPrinter printer;
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
  machine().SetPermission(kPrinter, false, false);
  EXPECT_EQ(Register({Click(IDC_CREATE_FONT_DECO_DELETE), Click(IDOK)}),
            (Records{Deco(u"A"), Deco(u"B")}));
}

// Applying any page but the version page writes the fonts, every field at its own offset, but only
// those that the sheet has loaded.
TEST_F(FontStoreTest, EachPageWritesWhatItsSessionLoaded) {
  const std::u16string full = u"ABCDEFGHIJKLMNOPQRSTUVWXYZ12345";
  const Records golden = {
      Deco(u"見出し１", u"漢字(縦書)", 512, 55, 83)
          .Put(202, {2, 3, 0, 1, 270, 1, 0, 1, 0, 1, 1, 12, -34, 5, 6}),
      Deco(full, u"POP", 2048, 394, 655)
          .Put(202, {1, 1, 1, 2, 180, 0, 0, 0, 0, 1, 0, 9999, -9999, 99, 99}),
      Bar(u"商品コード"), Bar(u"MAXI", 1900).Put(130, {0x4008, 1900, 1, 1, 2, -1, 8, 1}),
      Bar(u"ｶﾅ", 1000).Put(230, 0x5A5A)};  // beyond what the detail library knows
  for (SheetKind kind : {SheetKind::kDocument, SheetKind::kAdvanced, SheetKind::kUserDefault}) {
    for (int tab = kVersionTab; tab <= kUtilityTab; ++tab) {
      SCOPED_TRACE(testing::Message() << "kind " << static_cast<int>(kind) << ", tab " << tab);
      Store(golden);
      Show({.kind = kind}, {GoTo(tab), [&](Desk&) { ForgetFonts(); }, PressOk()});
      const bool saves = kind != SheetKind::kAdvanced && tab != kVersionTab;
      EXPECT_EQ(HasFonts(), saves);
      if (saves) {
        EXPECT_EQ(Stored(), golden);
      }
    }
  }
}

}  // namespace
}  // namespace fonts
