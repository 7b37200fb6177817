#include "sheets/item_tables.h"

#include <cstdint>

#include "driver/text.h"

namespace kestrel {
namespace {

constexpr WORD kHeaderName = 64734;  // "none", a string of the common property-sheet library
constexpr LONG kHeaderIcon = 64000;  // IDI_CPSUI_EMPTY
constexpr int kErrorTextLength = 64;

// Places tables one after another in a block, each at its alignment. Without a block it only adds
// up their size.
class BlockLayout {
 public:
  explicit BlockLayout(BYTE* block) : block_(block) {}
  template <typename T>
  void Place(FixedTable<T>& table, int capacity, size_t unitsPerElement = 1) {
    size_ = (size_ + alignof(T) - 1) & ~(alignof(T) - 1);
    if (block_ != nullptr) {
      table = {reinterpret_cast<T*>(block_ + size_), capacity, 0, 0};
    }
    size_ += static_cast<size_t>(capacity) * unitsPerElement * sizeof(T);
  }
  size_t size() const { return size_; }

 private:
  BYTE* block_;
  size_t size_ = 0;
};

size_t PlaceTables(const TableBases& bases, int dialogPages, BYTE* block, OptItemTables& tables) {
  BlockLayout layout(block);
  layout.Place(tables.items, bases.items + dialogPages);
  layout.Place(tables.types, bases.types + dialogPages);
  layout.Place(tables.params, bases.params + dialogPages);
  layout.Place(tables.texts, bases.texts, static_cast<size_t>(bases.textLength));
  layout.Place(tables.halftones, bases.halftones);
  layout.Place(tables.checkBoxes, bases.checkBoxes);
  layout.Place(tables.pushes, bases.pushes);
  return layout.size();
}

int CountDialogPages(const DriverUiData& session) {
  int count = 0;
  for (int page = 0; page < session.pageCount; ++page) {
    if (session.pages[page].kind == kPageDialog) ++count;
  }
  return count;
}

// Returns the next free slot of a table, or null when an error is set. Sets the error `full` when
// the table has no free slot. Counts every call.
template <typename T>
T* AllocateSlot(DriverUiData& session, FixedTable<T>& table, TableError full,
                size_t unitsPerElement = 1) {
  ++table.calls;
  if (session.tableError != kTableOk) return nullptr;
  if (table.used >= table.capacity) {
    session.tableError = full;
    return nullptr;
  }
  return &table.start[static_cast<size_t>(table.used++) * unitsPerElement];
}

OPTITEM* FindItem(OptItemTables& tables, BYTE publicId) {
  for (int index = 0; index < tables.items.used; ++index) {
    if (tables.items.start[index].DMPubID == publicId) return &tables.items.start[index];
  }
  return nullptr;
}

}  // namespace

bool AllocateItemTables(DriverUiData& session) {
  const int dialogPages = CountDialogPages(session);
  OptItemTables tables = {};
  const size_t size = PlaceTables(session.bases, dialogPages, nullptr, tables);
  HANDLE heap = HeapCreate(0, size, 0);
  if (heap == nullptr) return false;
  void* block = HeapAlloc(heap, HEAP_ZERO_MEMORY, size);
  if (block == nullptr) {
    HeapDestroy(heap);
    return false;
  }
  PlaceTables(session.bases, dialogPages, static_cast<BYTE*>(block), tables);
  session.tables = tables;
  session.tableHeap = heap;
  session.tableError = kTableOk;
  return true;
}

void AddOptItem(DriverUiData& session, const OPTITEM& item) {
  FixedTable<OPTITEM>& items = session.tables.items;
  const bool incomplete = session.tableError == kTableOk && items.used < items.capacity &&
                          session.tables.missingParams != 0;
  if (incomplete) session.tableError = kParamsMissing;
  if (OPTITEM* slot = AllocateSlot(session, items, kItemTableFull)) *slot = item;
}

LPWSTR AddItemText(DriverUiData& session, const WCHAR* text) {
  if (text != nullptr && IS_INTRESOURCE(text)) return const_cast<LPWSTR>(text);
  const auto slotLength = static_cast<size_t>(session.bases.textLength);
  WCHAR* slot = AllocateSlot(session, session.tables.texts, kTextTableFull, slotLength);
  if (slot != nullptr) CopyText(slot, slotLength, text);
  return slot;
}

PEXTCHKBOX AddExtCheckBox(DriverUiData& session, const CheckBoxDescription& description) {
  EXTCHKBOX* box = AllocateSlot(session, session.tables.checkBoxes, kCheckBoxTableFull);
  if (box == nullptr) return nullptr;
  box->cbSize = sizeof(EXTCHKBOX);
  box->Flags = description.flags;
  box->pTitle = AddItemText(session, description.title);
  box->pSeparator = AddItemText(session, description.separator);
  box->pCheckedName = AddItemText(session, description.checkedName);
  box->IconID = description.iconId;
  return box;
}

PEXTPUSH AddExtPush(DriverUiData& session, const PushDescription& description) {
  EXTPUSH* push = AllocateSlot(session, session.tables.pushes, kPushTableFull);
  if (push == nullptr) return nullptr;
  push->cbSize = sizeof(EXTPUSH);
  push->Flags = description.flags;
  push->pTitle = AddItemText(session, description.title);
  push->pfnCallBack = nullptr;
  push->IconID = description.iconId;
  return push;
}

OPTITEM ComposeItem(DriverUiData& session, const ItemDescription& description, BYTE publicId,
                    SelectionMode mode, LONG selection) {
  OPTITEM item = {};
  item.cbSize = sizeof(OPTITEM);
  item.Level = description.level;
  item.Flags = OPTIF_CALLBACK;
  item.pName = AddItemText(session, description.name);
  item.Sel = mode == kGivenSelection ? selection : 0;
  const FixedTable<OPTTYPE>& types = session.tables.types;
  if (mode != kItemWithoutType && types.used < types.capacity) {
    item.pOptType = &types.start[types.used];
  }
  item.HelpIndex = description.helpIndex;
  item.DMPubID = publicId;
  if (description.checkBox != nullptr) {
    item.pExtChkBox = AddExtCheckBox(session, *description.checkBox);
  } else if (description.push != nullptr) {
    item.pExtPush = AddExtPush(session, *description.push);
    item.Flags |= OPTIF_EXT_IS_EXTPUSH;
  }
  return item;
}

void SetItemState(DriverUiData& session, BYTE publicId, LONG selection, unsigned state) {
  if (session.tableError != kTableOk) return;
  OPTITEM* item = FindItem(session.tables, publicId);
  if (item == nullptr) {
    session.tableError = kNoSuchItem;
    return;
  }
  if (item->pOptType != nullptr && item->pOptType->Type != TVOT_EDITBOX) item->Sel = selection;
  if (state & kItemDisabled) item->Flags |= OPTIF_DISABLED;
  if (state & kItemHidden) item->Flags |= OPTIF_HIDE;
  if (state & kItemExtensionDisabled) item->Flags |= OPTIF_EXT_DISABLED;
  if (state & kItemChecked) item->Flags |= OPTIF_ECB_CHECKED;
  if (state & kItemTypeDisabled) {
    if (item->pOptType != nullptr) {
      item->pOptType->Flags |= OPTTF_TYPE_DISABLED;
    } else {
      session.tableError = kNoSuchItem;
    }
  }
}

void AddPageHeaderItem(DriverUiData& session, BYTE publicId) {
  const ItemDescription description = {1, MAKEINTRESOURCEW(kHeaderName), 0, nullptr, nullptr};
  OPTITEM item = ComposeItem(session, description, publicId, kItemWithoutType, 0);
  item.Sel = kHeaderIcon;
  AddOptItem(session, item);
  SetItemState(session, publicId, 0, 0);
}

namespace {

struct ErrorText {
  const WCHAR* format;
  int number;
};

ErrorText DescribeError(const DriverUiData& session) {
  const OptItemTables& tables = session.tables;
  switch (session.tableError) {
    case kItemTableFull:
      return {TEXT("ItemTable OverFlow!!\n( %d )"), tables.items.calls};
    case kTypeTableFull:
      return {TEXT("TypeTable OverFlow!!\n( %d )"), tables.types.calls};
    case kParamTableFull:
      return {TEXT("ParamTable OverFlow!!\n( %d )"), tables.params.calls};
    case kTextTableFull:
      return {TEXT("TextTable OverFlow!!\n( %d )"), tables.texts.calls};
    case kHalftoneTableFull:
      return {TEXT("HTSetupTable OverFlow!!\n( %d )"), tables.halftones.calls};
    case kCheckBoxTableFull:
      return {TEXT("ExtCheckBoxTable OverFlow!!\n( %d )"), tables.checkBoxes.calls};
    case kPushTableFull:
      return {TEXT("ExtPushButtonTable OverFlow!!\n( %d )"), tables.pushes.calls};
    case kParamsMissing:
      return {TEXT("NotEqual AddParam!!\n"), 0};
    case kNoSuchItem:
      return {TEXT("Invalid Parameter!!\n"), 0};
    case kTablesClosed:
      return {nullptr, 0};
    default:
      return {TEXT("Internal Error!!\n( %d )"), session.tableError};
  }
}

}  // namespace

bool ReportTableError(const DriverUiData& session) {
  if (session.tableError == kTableOk) return true;
  const ErrorText error = DescribeError(session);
  if (error.format == nullptr) return false;
  WCHAR text[kErrorTextLength];
  wsprintfW(text, error.format, error.number);
  MessageBeep(0);
  MessageBoxW(nullptr, text, TEXT("TreeViewMakeError"), MB_ICONHAND | MB_SETFOREGROUND);
  return false;
}

}  // namespace kestrel
