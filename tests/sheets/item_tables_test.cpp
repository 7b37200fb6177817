// The item tables of a session: their capacities, the items that are added, and their errors.
#include "sheets/item_tables.h"

#include <gtest/gtest.h>

#include <memory>

#include "platform/machine/desk.h"
#include "platform/machine/machine.h"

namespace kestrel {
namespace {

class ItemTables : public testing::Test {
 protected:
  ItemTables() {
    for (const int kind : {kPageDocumentSet, kPageDialog, kPageTreeView, kPageDialog}) {
      session.pages[session.pageCount++].kind = kind;
    }
    session.bases.items = session.bases.checkBoxes = 1;
    session.bases.texts = 2;
    session.bases.textLength = 4;
    EXPECT_TRUE(AllocateItemTables(session));
  }
  ~ItemTables() override { HeapDestroy(session.tableHeap); }

  std::unique_ptr<platform::Machine> machine = platform::Machine::Create();
  DriverUiData session = {};
  OptItemTables& tables = session.tables;
};

TEST_F(ItemTables, HeaderItemsFillTheirTableInOrder) {
  EXPECT_EQ(tables.items.capacity, 3) << "the base and one for each dialog page";
  for (BYTE id = 100; id < 103; ++id) AddPageHeaderItem(session, id);
  EXPECT_TRUE(ReportTableError(session));
  const OPTITEM& item = tables.items.start[1];
  EXPECT_EQ(item.cbSize, sizeof item);
  EXPECT_EQ(item.pName, MAKEINTRESOURCEW(64734));
  EXPECT_EQ(item.pOptType, nullptr);
  EXPECT_EQ(item.Sel, 64000) << "an icon";
  EXPECT_EQ(item.DMPubID, 101);
  AddPageHeaderItem(session, 103);
  EXPECT_EQ(tables.items.used, 3);
  EXPECT_FALSE(ReportTableError(session));
  EXPECT_EQ(machine->desk().History().back().text, u"ItemTable OverFlow!!\n( 4 )");
}

TEST_F(ItemTables, FirstErrorStaysAndLaterCallsAddNothing) {
  const WCHAR* text = AddItemText(session, TEXT("longer"));
  EXPECT_EQ(text, std::u16string(u"lon")) << "truncated to 4 units";
  AddExtCheckBox(session, {1, TEXT("box"), TEXT("two"), MAKEINTRESOURCEW(1), 11});
  EXPECT_EQ(session.tableError, kTextTableFull);
  EXPECT_EQ(tables.texts.used, 2);
  AddPageHeaderItem(session, 100);
  SetItemState(session, 100, 0, kItemHidden);
  EXPECT_EQ(tables.items.used, 0);
  EXPECT_EQ(session.tableError, kTextTableFull);
}

}  // namespace
}  // namespace kestrel
