// Operations on the item tables of a session and their contents afterwards
// (golden/item_tables.txt).
#include "sheets/item_tables.h"

#include <gtest/gtest.h>

#include <memory>
#include <sstream>

#include "platform/machine/desk.h"
#include "platform/machine/machine.h"
#include "platform/machine/text.h"
#include "tests/support/bin_dir.h"

namespace kestrel {
namespace {

class ItemTablesTest : public testing::Test {
 protected:
  ~ItemTablesTest() override { HeapDestroy(session.tableHeap); }

  // Records the session's error and clears it. rejected: the operation returned its failure value.
  void RecordError(bool rejected = true) {
    EXPECT_TRUE(rejected);
    log << "error " << std::exchange(session.tableError, 0) << "\n";
  }
  template <typename T>
  void Record(const FixedTable<T>& table) {
    log << table.used << '/' << table.capacity << " calls " << table.calls << ", ";
  }
  std::string Text(const WCHAR* at) {
    if (IS_INTRESOURCE(at)) return "#" + std::to_string(reinterpret_cast<ULONG_PTR>(at));
    return '"' + platform::ToUtf8(at) + "\" at " + std::to_string(at - tables.texts.start);
  }
  void Record(const OPTITEM& item) {
    EXPECT_EQ(item.cbSize, sizeof item);
    log << "level " << int{item.Level} << ", flags " << item.Flags << ", name " << Text(item.pName)
        << ", sel " << item.Sel << ", help " << item.HelpIndex << ", id " << int{item.DMPubID};
    if (item.pOptType) log << ", type flags " << int{item.pOptType->Flags};
    if (item.Flags & OPTIF_EXT_IS_EXTPUSH) {
      const EXTPUSH& push = *item.pExtPush;
      EXPECT_EQ(push.cbSize, sizeof push);
      log << ", push " << push.Flags << ' ' << Text(push.pTitle) << ' ' << push.IconID;
    } else if (item.pExtChkBox) {
      const EXTCHKBOX& box = *item.pExtChkBox;
      EXPECT_EQ(box.cbSize, sizeof box);
      log << ", box " << box.Flags << ' ' << Text(box.pTitle) << ' ' << Text(box.pSeparator) << ' '
          << Text(box.pCheckedName) << ' ' << box.IconID;
    }
    log << "\n";
  }

  std::unique_ptr<platform::Machine> machine = platform::Machine::Create();
  DriverUiData session = {};
  OptItemTables& tables = session.tables;
  std::ostringstream log;
};

TEST_F(ItemTablesTest, StoreAddedItemsAndReportTheFirstError) {
  for (int kind : {kPageDocumentSet, kPageDialog, kPageTreeView, kPageDialog})
    session.pages[session.pageCount++].kind = kind;
  session.bases = {3, 2, 2, 5, 1, 1, 1, 8};
  ASSERT_TRUE(AllocateItemTables(session));
  for (BYTE id = 100; id < 102; ++id) AddPageHeaderItem(session, id);
  for (int i = 0; i < 2; ++i) Record(tables.items.start[i]);
  tables.missingParams = 1;
  AddOptItem(session, {});
  RecordError();
  tables.missingParams = 0;

  const LPWSTR id = MAKEINTRESOURCEW(64734);
  const CheckBoxDescription box = {1, TEXT("box"), nullptr, id, 11};
  const PushDescription push = {4, TEXT("1234567"), 12};
  Record(ComposeItem(session, {2, id, 33, &box, nullptr}, 9, kGivenSelection, 5));
  Record(ComposeItem(session, {1, TEXT("123456789"), 0, nullptr, &push}, 9, kItemWithoutType, 5));
  log << Text(AddItemText(session, nullptr)) << "\n";
  EXPECT_EQ(AddItemText(session, id), id) << "a resource id needs no slot";
  RecordError(AddItemText(session, TEXT("one more")) == nullptr);
  RecordError(AddExtPush(session, push) == nullptr);
  RecordError(AddExtCheckBox(session, box) == nullptr);

  log << "states of the first item with an id, with a type and without\n";
  tables.types.start[0].Type = TVOT_EDITBOX - 1;
  for (const BYTE publicId : {BYTE{50}, BYTE{50}, BYTE{51}}) {
    OPTITEM item = ComposeItem(session, {1, id, 0, nullptr, nullptr}, publicId, kNoSelection, 7);
    if (publicId == 51) item.pOptType = nullptr;
    AddOptItem(session, item);
  }
  const OPTITEM* items = tables.items.start + 2;
  for (const unsigned state : {0x0u, 0x2u, 0x8u, 0x20u, 0x40u, 0x200u}) {
    SetItemState(session, 50, 3, state);
    Record(items[0]);
  }
  tables.types.start[0].Type = TVOT_EDITBOX;
  SetItemState(session, 50, 4, 0);
  SetItemState(session, 51, 4, 0x202);
  RecordError();
  for (int i = 0; i < 3; ++i) Record(items[i]);
  SetItemState(session, 52, 0, 0);
  RecordError();

  log << "later adds and changes do nothing but count\n";
  for (int i = 0; i < 2; ++i) AddOptItem(session, {});
  AddItemText(session, TEXT("text"));
  AddExtCheckBox(session, {});
  AddExtPush(session, {});
  SetItemState(session, 50, 5, 0);
  Record(items[0]);
  tables.types.calls = 22, tables.params.calls = 33, tables.halftones.calls = 55;
  Record(tables.items), Record(tables.types), Record(tables.params), Record(tables.texts);
  Record(tables.halftones), Record(tables.checkBoxes), Record(tables.pushes), RecordError();
  for (int error : {1, 2, 3, 4, 5, 6, 7, 8, 9, 77, 256}) {
    session.tableError = error;
    EXPECT_FALSE(ReportTableError(session));
  }
  for (const auto& shown : machine->desk().History()) {
    log << platform::ToUtf8(shown.caption + u": " + shown.text) << ' ' << shown.style << "\n";
  }
  EXPECT_EQ(log.str(), support::Golden("item_tables.txt"));
}

}  // namespace
}  // namespace kestrel
