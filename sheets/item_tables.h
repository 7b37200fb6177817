// The item tables from which the common property-sheet library builds pages (COMPROPSHEETUI).
//
// The only production caller is CreateUiSession, which adds one header item per page: the module's
// pages are dialogs, and a COMPROPSHEETUI must have at least one OPTITEM. The remaining operations
// serve the page kinds that the library draws itself from OPTITEM trees. They are complete because
// the tables share one contract: capacities are fixed when the session is created, the first
// failing operation sets tableError, and later ones only count their calls. A page of those kinds
// would work without a change here.
#pragma once

#include <windows.h>

#include "sheets/driver_ui_data.h"

namespace kestrel {

// Allocates the tables of a session as one zero-filled block in a private heap. The capacities are
// session.bases; items, types and params get one more for each page of kind kPageDialog. Returns
// false and allocates nothing when out of memory.
bool AllocateItemTables(DriverUiData& session);

// A check box or push button next to an item. Texts may be resource ids (MAKEINTRESOURCE).
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
  const CheckBoxDescription* checkBox;  // null for none; at most one of checkBox and push
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

// Adds a copy of an item. Sets an error when the table is full or the last type lacks parameters.
void AddOptItem(DriverUiData& session, const OPTITEM& item);
// Copies a text to the text table, truncated to the size of a slot, and returns the copy. Returns a
// resource id unchanged, without using a slot. Returns null when the table is full or an error is
// set.
LPWSTR AddItemText(DriverUiData& session, const WCHAR* text);
// Each returns null when its table is full or an error is set.
PEXTCHKBOX AddExtCheckBox(DriverUiData& session, const CheckBoxDescription& description);
PEXTPUSH AddExtPush(DriverUiData& session, const PushDescription& description);

// Returns an item made from a description. Adds its texts and its check box or push button to the
// tables, but not the item itself.
OPTITEM ComposeItem(DriverUiData& session, const ItemDescription& description, BYTE publicId,
                    SelectionMode mode, LONG selection);

// Sets the selection and adds state (ItemState bits) of the first item with a DMPubID. Sets the
// error kNoSuchItem when there is none. Does nothing while an error is set.
void SetItemState(DriverUiData& session, BYTE publicId, LONG selection, unsigned state);

// Adds the header item of a page, an item without a type: a COMPROPSHEETUI must have one item at
// least.
void AddPageHeaderItem(DriverUiData& session, BYTE publicId);

// Returns true when no error is set. Otherwise shows a message box with the error, except for
// kTablesClosed.
bool ReportTableError(const DriverUiData& session);

}  // namespace kestrel
