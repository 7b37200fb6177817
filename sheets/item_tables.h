// The item tables from which the common property-sheet library builds pages (COMPROPSHEETUI).
//
// The only production caller is CreateUiSession, which adds one header item per page: the module's
// pages are dialogs, and a COMPROPSHEETUI must have at least one OPTITEM. The remaining operations
// serve the page kinds that the library draws itself from OPTITEM trees. They are complete because
// the tables share one contract: capacities are fixed when the session is created, the first failing
// operation sets tableError, and later ones only count their calls. A page of those kinds would work
// without a change here.
#pragma once

#include <windows.h>

#include "sheets/driver_ui_data.h"

namespace kestrel {

// Creates the tables of a session as one zero-filled block of a private heap of their own, by its
// base capacities and the number of its own dialog pages. False when there is no memory; nothing is
// left behind then.
bool AllocateItemTables(DriverUiData& session);

// A check box or push button beside an item. Texts may be resource ids (MAKEINTRESOURCE).
struct CheckBoxDescription {
  WORD flags;  // ECBF_ of EXTCHKBOX
  const WCHAR* title;
  const WCHAR* separator;
  const WCHAR* checkedName;
  ULONG_PTR iconId;
};
struct PushDescription {
  WORD flags;  // EPF_ of EXTPUSH
  const WCHAR* title;
  ULONG_PTR iconId;
};

struct ItemDescription {
  BYTE level;
  const WCHAR* name;  // a text or a resource id
  DWORD helpIndex;
  const CheckBoxDescription* checkBox;  // at most one of the two; null: none
  const PushDescription* push;
};

enum SelectionMode : int {
  kNoSelection = 0,      // Sel is 0
  kItemWithoutType = 1,  // Sel is 0, no OPTTYPE
  kGivenSelection = 2,
};

// Bits of SetItemState.
enum ItemState : unsigned {
  kItemDisabled = 0x2,
  kItemHidden = 0x8,
  kItemExtensionDisabled = 0x20,
  kItemChecked = 0x40,
  kItemTypeDisabled = 0x200,
};

// Adds a copy of an item.
void AddOptItem(DriverUiData& session, const OPTITEM& item);
// A copy of a text in the text table, cut to a slot; a resource id is answered as it is and takes
// no slot. Null when the table is full or an error stands.
LPWSTR AddItemText(DriverUiData& session, const WCHAR* text);
// Null when their table is full or an error stands.
PEXTCHKBOX AddExtCheckBox(DriverUiData& session, const CheckBoxDescription& description);
PEXTPUSH AddExtPush(DriverUiData& session, const PushDescription& description);

// An item by its description, with its texts and extension added to the tables. The item itself is
// not added.
OPTITEM ComposeItem(DriverUiData& session, const ItemDescription& description, BYTE publicId,
                    SelectionMode mode, LONG selection);

// Changes selection and state (ItemState bits) of the first item with a DMPubID.
void SetItemState(DriverUiData& session, BYTE publicId, LONG selection, unsigned state);

// The item without a type that heads a page; the library asks for one in each COMPROPSHEETUI.
void AddPageHeaderItem(DriverUiData& session, BYTE publicId);

// Whether the tables are free of errors; else a message box names the error.
bool ReportTableError(const DriverUiData& session);

}  // namespace kestrel
