#include "sheets/item_tables.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

#include "platform/desk.h"
#include "platform/machine.h"

namespace kestrel {
namespace {

class ItemTablesTest : public testing::Test {
 protected:
  ~ItemTablesTest() override {
    if (session->tableHeap != nullptr) HeapDestroy(session->tableHeap);
  }

  // Lets the session have pages of the given kinds and creates its tables.
  bool Allocate(std::initializer_list<int> kinds) {
    for (int kind : kinds) session->pages[session->pageCount++].kind = kind;
    return AllocateItemTables(*session);
  }
  bool AllocateGeneral() {
    session->bases = {2, 2, 2, 3, 1, 1, 1, 8};
    return Allocate({kPageOwnDialog});
  }
  OPTITEM Item(BYTE publicId) {
    OPTITEM item = {};
    item.DMPubID = publicId;
    return item;
  }

  std::unique_ptr<platform::Machine> machine = platform::Machine::Create();
  std::unique_ptr<DriverUiData> session = std::make_unique<DriverUiData>();
  OptItemTables& tables = session->tables;
};

TEST_F(ItemTablesTest, HoldAnItemForEachOwnPageAndTellOfTheFirstOverflow) {
  ASSERT_TRUE(Allocate({kPageDocumentSet, 5, 5, kPageTreeView, 5, 5, 5, 5}));
  EXPECT_EQ(tables.types.capacity, 6);
  EXPECT_EQ(tables.params.capacity, 6);
  EXPECT_EQ(tables.texts.capacity + tables.halftones.capacity + tables.checkBoxes.capacity +
                tables.pushes.capacity,
            0);
  for (BYTE id = 100; id < 106; ++id) AddPageHeaderItem(*session, id);
  EXPECT_TRUE(ReportTableError(*session));
  OPTITEM header = Item(100);
  header.cbSize = sizeof(OPTITEM);
  header.Level = 1;
  header.Flags = OPTIF_CALLBACK;
  header.pName = MAKEINTRESOURCEW(64734);
  header.Sel = 64000;
  for (int i = 0; i < 6; ++i, ++header.DMPubID) {
    EXPECT_EQ(std::memcmp(&tables.items.start[i], &header, sizeof header), 0) << i;
  }
  AddPageHeaderItem(*session, 106);
  EXPECT_FALSE(ReportTableError(*session));
  EXPECT_EQ(machine->desk().History()[0].caption, u"TreeViewMakeError");
  EXPECT_EQ(machine->desk().History()[0].text, u"ItemTable OverFlow!!\n( 7 )");
  EXPECT_EQ(machine->desk().History()[0].style, MB_ICONHAND | MB_SETFOREGROUND);
  // Later adds and changes do nothing but count.
  AddOptItem(*session, Item(1));
  EXPECT_EQ(AddItemText(*session, TEXT("text")), nullptr);
  EXPECT_EQ(AddExtCheckBox(*session, {}), nullptr);
  EXPECT_EQ(AddExtPush(*session, {}), nullptr);
  SetItemState(*session, 99, 0, 0);
  EXPECT_EQ(session->tableError, kItemTableFull);
  EXPECT_EQ(tables.items.used, 6);
  EXPECT_EQ(tables.items.calls, 8);
  EXPECT_EQ(tables.texts.calls, 1);
  EXPECT_EQ(tables.checkBoxes.calls, 1);
  EXPECT_EQ(tables.pushes.calls, 1);
}

TEST_F(ItemTablesTest, CutTextsToTheirSlots) {
  ASSERT_TRUE(AllocateGeneral());
  const LPWSTR id = MAKEINTRESOURCEW(64734);
  EXPECT_EQ(AddItemText(*session, id), id);
  EXPECT_EQ(tables.texts.calls, 0);
  const LPWSTR full = AddItemText(*session, TEXT("1234567"));
  const LPWSTR cut = AddItemText(*session, TEXT("123456789"));
  const LPWSTR empty = AddItemText(*session, nullptr);
  EXPECT_EQ(std::u16string(full), u"1234567");
  EXPECT_EQ(std::u16string(cut), u"1234567");
  EXPECT_EQ(std::u16string(empty), u"");
  EXPECT_EQ(cut, full + 8);
  EXPECT_EQ(AddItemText(*session, TEXT("one more")), nullptr);
  EXPECT_EQ(session->tableError, kTextTableFull);
  // A resource id needs no slot, whatever went wrong before.
  EXPECT_EQ(AddItemText(*session, id), id);
}

TEST_F(ItemTablesTest, ComposeItemsWithExtensions) {
  ASSERT_TRUE(AllocateGeneral());
  const CheckBoxDescription box = {ECBF_CHECKNAME_AT_FRONT, TEXT("box"), nullptr,
                                   MAKEINTRESOURCEW(7), 11};
  OPTITEM first = {};
  first.cbSize = sizeof first;
  first.Level = 2;
  first.Flags = OPTIF_CALLBACK;
  first.Sel = 5;
  first.pExtChkBox = tables.checkBoxes.start;
  first.pOptType = tables.types.start;
  first.HelpIndex = 33;
  first.DMPubID = 9;
  first.pName = MAKEINTRESOURCEW(6);
  OPTITEM item = ComposeItem(*session, {2, first.pName, 33, &box, nullptr}, 9, kGivenSelection, 5);
  EXPECT_EQ(std::memcmp(&item, &first, sizeof item), 0);
  const EXTCHKBOX& made = *tables.checkBoxes.start;
  EXPECT_EQ(made.cbSize, sizeof(EXTCHKBOX));
  EXPECT_EQ(made.Flags, ECBF_CHECKNAME_AT_FRONT);
  EXPECT_EQ(std::u16string(made.pTitle), u"box");
  EXPECT_EQ(std::u16string(made.pSeparator), u"");
  EXPECT_EQ(made.pCheckedName, MAKEINTRESOURCEW(7));
  EXPECT_EQ(made.IconID, 11u);

  const PushDescription push = {EPF_NO_DOT_DOT_DOT, MAKEINTRESOURCEW(8), 12};
  item = ComposeItem(*session, {1, MAKEINTRESOURCEW(9), 0, nullptr, &push}, 9, kItemWithoutType, 5);
  EXPECT_EQ(item.Sel, 0);
  EXPECT_EQ(item.pOptType, nullptr);
  EXPECT_EQ(item.Flags, OPTIF_CALLBACK | OPTIF_EXT_IS_EXTPUSH);
  EXTPUSH button = {};
  button.cbSize = sizeof button;
  button.Flags = EPF_NO_DOT_DOT_DOT;
  button.pTitle = MAKEINTRESOURCEW(8);
  button.IconID = 12;
  EXPECT_EQ(std::memcmp(item.pExtPush, &button, sizeof button), 0);
  EXPECT_EQ(AddExtPush(*session, push), nullptr);
  EXPECT_EQ(session->tableError, kPushTableFull);
}

TEST_F(ItemTablesTest, SetStatesOfTheFirstItemWithAnId) {
  ASSERT_TRUE(AllocateGeneral());
  OPTITEM item = Item(50);
  tables.types.start[0].Type = TVOT_COMBOBOX;
  item.pOptType = &tables.types.start[0];
  AddOptItem(*session, item);
  AddOptItem(*session, Item(50));
  SetItemState(*session, 50, 3, 0x2 | 0x8 | 0x20 | 0x40 | 0x200);
  const OPTITEM& set = tables.items.start[0];
  EXPECT_EQ(set.Sel, 3);
  EXPECT_EQ(set.Flags, DWORD{0x20 | 0x2 | 0x100 | 0x40});
  EXPECT_EQ(tables.types.start[0].Flags, OPTTF_TYPE_DISABLED);
  EXPECT_EQ(tables.items.start[1].Flags, 0u);
  // An edit box keeps its text.
  tables.types.start[0].Type = TVOT_EDITBOX;
  SetItemState(*session, 50, 4, 0);
  EXPECT_EQ(set.Sel, 3);
  EXPECT_EQ(session->tableError, kTableOk);

  SetItemState(*session, 51, 0, 0);
  EXPECT_EQ(session->tableError, kNoSuchItem);
}

TEST_F(ItemTablesTest, RefuseWhatDoesNotFit) {
  ASSERT_TRUE(Allocate({5, 5}));
  AddOptItem(*session, Item(50));
  SetItemState(*session, 50, 7, kItemDisabled | kItemTypeDisabled);
  EXPECT_EQ(tables.items.start[0].Flags, OPTIF_DISABLED);
  EXPECT_EQ(tables.items.start[0].Sel, 0);
  EXPECT_EQ(session->tableError, kNoSuchItem) << "an item without a type";

  session->tableError = kTableOk;
  tables.owedParams = 1;
  AddOptItem(*session, Item(51));
  EXPECT_EQ(session->tableError, kParamsOwed);
  EXPECT_EQ(tables.items.used, 1);
  EXPECT_EQ(tables.items.calls, 2);
}

TEST_F(ItemTablesTest, NameEachError) {
  int* const calls[] = {&tables.items.calls, &tables.types.calls,     &tables.params.calls,
                        &tables.texts.calls, &tables.halftones.calls, &tables.checkBoxes.calls,
                        &tables.pushes.calls};
  const char16_t* const full[] = {u"Item",    u"Type",        u"Param",        u"Text",
                                  u"HTSetup", u"ExtCheckBox", u"ExtPushButton"};
  const auto expect = [&](int error, const std::u16string& text) {
    session->tableError = error;
    machine->desk().ClearShown();
    EXPECT_FALSE(ReportTableError(*session));
    std::u16string shown;
    for (const auto& box : machine->desk().History()) shown += box.text;
    EXPECT_EQ(shown, text) << error;
  };
  for (int i = 0; i < 7; ++i) {
    *calls[i] = i + 1;
    expect(i + 1, full[i] + std::u16string(u"Table OverFlow!!\n( ") + char16_t(u'1' + i) + u" )");
  }
  expect(kParamsOwed, u"NotEqual AddParam!!\n");
  expect(kNoSuchItem, u"Invalid Parameter!!\n");
  expect(77, u"Internal Error!!\n( 77 )");
  expect(kTablesClosed, u"");
}

}  // namespace
}  // namespace kestrel
