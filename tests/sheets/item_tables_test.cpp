// The item tables of a session: their capacities, the records that are added, and their errors.
#include "sheets/item_tables.h"

#include <gtest/gtest.h>

#include <memory>

#include "platform/machine/desk.h"
#include "platform/machine/machine.h"

namespace kestrel {
namespace {

constexpr BYTE kId = 50;
const LPWSTR kResource = MAKEINTRESOURCEW(64734);
const CheckBoxDescription kBox = {1, TEXT("box"), nullptr, kResource, 11};
const PushDescription kPush = {4, TEXT("longer than 7"), 12};

class ItemTables : public testing::Test {
 protected:
  ItemTables() {
    for (const int kind : {kPageDocumentSet, kPageDialog, kPageTreeView, kPageDialog}) {
      session.pages[session.pageCount++].kind = kind;
    }
    session.bases = {3, 2, 1, 5, 2, 1, 1, 8};  // the last is the length of a text
    EXPECT_TRUE(AllocateItemTables(session));
  }
  ~ItemTables() override { HeapDestroy(session.tableHeap); }

  // Fills a table and adds one element more.
  template <typename T, typename Add>
  void ExpectOverflow(const FixedTable<T>& table, TableError error, Add add) {
    session.tableError = kTableOk;
    while (table.used < table.capacity && session.tableError == kTableOk) add();
    EXPECT_EQ(session.tableError, kTableOk);
    const int calls = table.calls;
    add();
    EXPECT_EQ(session.tableError, error);
    EXPECT_EQ(table.used, table.capacity);
    EXPECT_EQ(table.calls, calls + 1);
  }

  std::unique_ptr<platform::Machine> machine = platform::Machine::Create();
  DriverUiData session = {};
  OptItemTables& tables = session.tables;
};

TEST_F(ItemTables, HeaderItemOfAPageHasAnIconAndNoType) {
  AddPageHeaderItem(session, 100);
  AddPageHeaderItem(session, 101);
  EXPECT_EQ(session.tableError, kTableOk);
  const OPTITEM& item = tables.items.start[1];
  EXPECT_EQ(item.cbSize, sizeof item);
  EXPECT_EQ(item.Level, 1);
  EXPECT_EQ(item.pName, kResource);
  EXPECT_EQ(item.pOptType, nullptr);
  EXPECT_EQ(item.Sel, 64000);
  EXPECT_EQ(item.HelpIndex, 0u);
  EXPECT_EQ(item.Flags, OPTIF_CALLBACK);
  EXPECT_EQ(item.DMPubID, 101);
}

TEST_F(ItemTables, ComposedItemHasItsSelectionTypeAndExtension) {
  const OPTITEM boxed =
      ComposeItem(session, {2, kResource, 33, &kBox, nullptr}, kId, kGivenSelection, 5);
  EXPECT_EQ(boxed.Sel, 5);
  EXPECT_EQ(boxed.HelpIndex, 33u);
  EXPECT_EQ(boxed.pOptType, tables.types.start);
  ASSERT_NE(boxed.pExtChkBox, nullptr);
  EXPECT_EQ(boxed.pExtChkBox->pTitle, std::u16string(u"box"));
  EXPECT_EQ(boxed.pExtChkBox->pSeparator, std::u16string());
  EXPECT_EQ(boxed.pExtChkBox->pCheckedName, kResource);
  const OPTITEM pushed =
      ComposeItem(session, {1, TEXT("name"), 0, nullptr, &kPush}, kId, kItemWithoutType, 5);
  EXPECT_EQ(pushed.Sel, 0);
  EXPECT_EQ(pushed.pOptType, nullptr);
  EXPECT_EQ(pushed.pName, std::u16string(u"name"));
  EXPECT_EQ(pushed.Flags, OPTIF_CALLBACK | OPTIF_EXT_IS_EXTPUSH);
  EXPECT_EQ(pushed.pExtPush->pTitle, std::u16string(u"longer ")) << "truncated to 7 units";
}

TEST_F(ItemTables, FullTableSetsItsErrorAndAcceptsNothingElse) {
  EXPECT_EQ(tables.items.capacity, 5) << "the base and one for each dialog page";
  EXPECT_EQ(tables.types.capacity, 4);
  EXPECT_EQ(tables.params.capacity, 3);
  EXPECT_EQ(tables.halftones.capacity, 2);
  ExpectOverflow(tables.checkBoxes, kCheckBoxTableFull, [&] { AddExtCheckBox(session, kBox); });
  ExpectOverflow(tables.pushes, kPushTableFull, [&] { AddExtPush(session, kPush); });
  ExpectOverflow(tables.items, kItemTableFull, [&] { AddOptItem(session, {}); });
  EXPECT_EQ(AddItemText(session, TEXT("text")), nullptr) << "the error of another table";
  EXPECT_EQ(tables.texts.used, 3) << "two of the check box and one of the push button";
  ExpectOverflow(tables.texts, kTextTableFull, [&] { AddItemText(session, TEXT("text")); });
  EXPECT_EQ(AddItemText(session, kResource), kResource) << "a resource id needs no slot";
  SetItemState(session, kId, 0, 0);
  EXPECT_EQ(session.tableError, kTextTableFull) << "the first error";
}

TEST_F(ItemTables, StateIsSetInTheFirstItemWithTheId) {
  OPTTYPE list = {}, edit = {};
  list.Type = TVOT_EDITBOX - 1;
  edit.Type = TVOT_EDITBOX;
  for (const auto& [id, type] : {std::pair{kId, &list}, {kId, &list}, {BYTE{51}, &edit}}) {
    OPTITEM item = {};
    item.DMPubID = id;
    item.pOptType = type;
    AddOptItem(session, item);
  }
  OPTITEM* items = tables.items.start;
  DWORD expected = 0;
  for (const auto& [state, flag] : {std::pair{kItemDisabled, OPTIF_DISABLED},
                                    {kItemHidden, OPTIF_HIDE},
                                    {kItemExtensionDisabled, OPTIF_EXT_DISABLED},
                                    {kItemChecked, OPTIF_ECB_CHECKED},
                                    {kItemTypeDisabled, DWORD{0}}}) {
    SetItemState(session, kId, 3, state);
    EXPECT_EQ(items[0].Flags, expected |= flag);
  }
  EXPECT_EQ(items[0].Sel, 3);
  EXPECT_EQ(list.Flags, OPTTF_TYPE_DISABLED);
  EXPECT_EQ(items[1].Flags, 0u);
  SetItemState(session, 51, 4, kItemDisabled);
  EXPECT_EQ(items[2].Sel, 0) << "an edit box has a text";
  EXPECT_EQ(session.tableError, kTableOk);
  items[2].pOptType = nullptr;
  SetItemState(session, 51, 4, kItemTypeDisabled);
  EXPECT_EQ(session.tableError, kNoSuchItem) << "no type";
  session.tableError = kTableOk;
  SetItemState(session, 52, 0, 0);
  EXPECT_EQ(session.tableError, kNoSuchItem);
  // An item is added behind a complete type only.
  session.tableError = kTableOk;
  tables.missingParams = 1;
  AddOptItem(session, {});
  EXPECT_EQ(session.tableError, kParamsMissing);
  EXPECT_EQ(tables.items.used, 3);
}

TEST_F(ItemTables, ErrorIsReportedWithTheNumberOfCalls) {
  tables.items.calls = 11, tables.types.calls = 22, tables.params.calls = 33;
  tables.texts.calls = 44, tables.halftones.calls = 55, tables.checkBoxes.calls = 66;
  tables.pushes.calls = 77;
  const std::pair<int, const char16_t*> rows[] = {
      {kItemTableFull, u"ItemTable OverFlow!!\n( 11 )"},
      {kTypeTableFull, u"TypeTable OverFlow!!\n( 22 )"},
      {kParamTableFull, u"ParamTable OverFlow!!\n( 33 )"},
      {kTextTableFull, u"TextTable OverFlow!!\n( 44 )"},
      {kHalftoneTableFull, u"HTSetupTable OverFlow!!\n( 55 )"},
      {kCheckBoxTableFull, u"ExtCheckBoxTable OverFlow!!\n( 66 )"},
      {kPushTableFull, u"ExtPushButtonTable OverFlow!!\n( 77 )"},
      {kParamsMissing, u"NotEqual AddParam!!\n"},
      {kNoSuchItem, u"Invalid Parameter!!\n"},
      {99, u"Internal Error!!\n( 99 )"}};
  EXPECT_TRUE(ReportTableError(session));
  session.tableError = kTablesClosed;
  EXPECT_FALSE(ReportTableError(session));
  EXPECT_TRUE(machine->desk().History().empty());
  for (const auto& [error, text] : rows) {
    session.tableError = error;
    EXPECT_FALSE(ReportTableError(session));
    EXPECT_EQ(machine->desk().History().back().text, text);
    EXPECT_EQ(machine->desk().History().back().caption, u"TreeViewMakeError");
  }
}

}  // namespace
}  // namespace kestrel
