#include "sheets/item_tables.h"

#include <gtest/gtest.h>

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

TEST_F(ItemTablesTest, HoldAnItemForEachOwnPage) {
  ASSERT_TRUE(Allocate({kPageDocumentSet, 5, 5, kPageTreeView, 5, 5, 5, 5}));
  EXPECT_EQ(tables.items.capacity, 6);
  EXPECT_EQ(tables.types.capacity, 6);
  EXPECT_EQ(tables.params.capacity, 6);
  EXPECT_EQ(tables.texts.capacity + tables.halftones.capacity + tables.checkBoxes.capacity +
                tables.pushes.capacity,
            0);
  for (BYTE id = 100; id < 106; ++id) AddPageHeaderItem(*session, id);
  EXPECT_TRUE(ReportTableError(*session));
  ASSERT_EQ(tables.items.used, 6);
  for (int i = 0; i < 6; ++i) {
    const OPTITEM& item = tables.items.start[i];
    EXPECT_EQ(item.cbSize, sizeof(OPTITEM));
    EXPECT_EQ(item.Level, 1);
    EXPECT_EQ(item.Flags, OPTIF_CALLBACK);
    EXPECT_EQ(reinterpret_cast<ULONG_PTR>(item.pName), 64734u);
    EXPECT_EQ(item.Sel, 64000);
    EXPECT_EQ(item.pOptType, nullptr);
    EXPECT_EQ(item.DMPubID, 100 + i);
  }
}

TEST_F(ItemTablesTest, TellOfTheFirstOverflowAndIgnoreLaterAdds) {
  ASSERT_TRUE(Allocate({5, 5, 5, 5, 5, 5}));
  for (BYTE id = 100; id < 107; ++id) AddPageHeaderItem(*session, id);
  EXPECT_EQ(session->tableError, kItemTableFull);
  EXPECT_FALSE(ReportTableError(*session));
  const auto& history = machine->desk().History();
  ASSERT_EQ(history.size(), 1u);
  EXPECT_EQ(history[0].caption, u"TreeViewMakeError");
  EXPECT_EQ(history[0].text, u"ItemTable OverFlow!!\n( 7 )");
  EXPECT_EQ(history[0].style, MB_ICONHAND | MB_SETFOREGROUND);

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
  const ItemDescription withBox = {2, TEXT("name"), 33, &box, nullptr};
  const OPTITEM first = ComposeItem(*session, withBox, 9, kGivenSelection, 5);
  EXPECT_EQ(first.Sel, 5);
  EXPECT_EQ(first.Level, 2);
  EXPECT_EQ(first.HelpIndex, 33u);
  EXPECT_EQ(first.pOptType, tables.types.start);
  EXPECT_EQ(first.Flags, OPTIF_CALLBACK);
  ASSERT_NE(first.pExtChkBox, nullptr);
  EXPECT_EQ(first.pExtChkBox->cbSize, sizeof(EXTCHKBOX));
  EXPECT_EQ(first.pExtChkBox->Flags, ECBF_CHECKNAME_AT_FRONT);
  EXPECT_EQ(std::u16string(first.pExtChkBox->pTitle), u"box");
  EXPECT_EQ(first.pExtChkBox->pCheckedName, MAKEINTRESOURCEW(7));
  EXPECT_EQ(first.pExtChkBox->IconID, 11u);

  const PushDescription push = {EPF_NO_DOT_DOT_DOT, MAKEINTRESOURCEW(8), 12};
  const ItemDescription withPush = {1, MAKEINTRESOURCEW(9), 0, nullptr, &push};
  const OPTITEM second = ComposeItem(*session, withPush, 9, kItemWithoutType, 5);
  EXPECT_EQ(second.Sel, 0);
  EXPECT_EQ(second.pOptType, nullptr);
  EXPECT_EQ(second.Flags, OPTIF_CALLBACK | OPTIF_EXT_IS_EXTPUSH);
  ASSERT_NE(second.pExtPush, nullptr);
  EXPECT_EQ(second.pExtPush->cbSize, sizeof(EXTPUSH));
  EXPECT_EQ(second.pExtPush->IconID, 12u);

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
  tables.items.calls = 1;
  tables.types.calls = 2;
  tables.params.calls = 3;
  tables.texts.calls = 4;
  tables.halftones.calls = 5;
  tables.checkBoxes.calls = 6;
  tables.pushes.calls = 7;
  const std::pair<int, std::u16string> cases[] = {
      {1, u"ItemTable OverFlow!!\n( 1 )"},
      {2, u"TypeTable OverFlow!!\n( 2 )"},
      {3, u"ParamTable OverFlow!!\n( 3 )"},
      {4, u"TextTable OverFlow!!\n( 4 )"},
      {5, u"HTSetupTable OverFlow!!\n( 5 )"},
      {6, u"ExtCheckBoxTable OverFlow!!\n( 6 )"},
      {7, u"ExtPushButtonTable OverFlow!!\n( 7 )"},
      {8, u"NotEqual AddParam!!\n"},
      {9, u"Invalid Parameter!!\n"},
      {77, u"Internal Error!!\n( 77 )"},
  };
  for (const auto& [error, text] : cases) {
    session->tableError = error;
    machine->desk().ClearShown();
    EXPECT_FALSE(ReportTableError(*session));
    ASSERT_EQ(machine->desk().History().size(), 1u) << error;
    EXPECT_EQ(machine->desk().History()[0].text, text);
  }
  session->tableError = kTablesClosed;
  machine->desk().ClearShown();
  EXPECT_FALSE(ReportTableError(*session));
  EXPECT_TRUE(machine->desk().History().empty());
}

}  // namespace
}  // namespace kestrel
