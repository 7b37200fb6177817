// The data of one property-sheet session. It is allocated zero-filled in a private heap of its own.
#pragma once

#include <windows.h>
#include <compstui.h>
#include <prsht.h>
#include <winddiui.h>

#include "driver/settings_block.h"
#include "files/utility_page_state.h"
#include "fonts/font_record.h"
#include "operation/device_page_state.h"
#include "paper/paper_page_state.h"

namespace kestrel {

enum SessionMode : int {
  kDocumentSession = 0,
  kAdvancedSession = 1,
  kUserDefaultSession = 2,
  kPrinterSession = 3,
};

constexpr int kPageCapacity = 20;
constexpr int kPageTextLength = 260;

enum PageKind : int {
  kPageDocumentSet = 1,  // CPSUI_PDLGPAGE_DOCPROP
  kPageAdvancedSet = 2,  // CPSUI_PDLGPAGE_ADVDOCPROP
  kPagePrinterSet = 3,   // CPSUI_PDLGPAGE_PRINTERPROP
  kPageTreeView = 4,     // DP_STD_TREEVIEWPAGE
  kPageDialog = 5,
};

enum PageFlag : DWORD { kPageHasHelp = 1, kPageIconById = 2, kPageUsesInstance = 4 };

// Grants or withdraws CPSUIF_UPDATE_PERMISSION on pages other than kPageDialog.
enum PermissionFlag : DWORD { kGrantPermission = 1, kWithdrawPermission = 2 };

struct PageEntry {
  int kind;  // PageKind
  DLGPROC procedure;
  WORD templateId;
  HINSTANCE instance;
  ULONG_PTR iconId;
  DWORD flags;  // PageFlag bits
  _CPSUICALLBACK callback;
  WCHAR callerName[kPageTextLength];
  WCHAR itemName[kPageTextLength];
  ULONG_PTR sheetIconId;
  WCHAR tabTitle[kPageTextLength];
  DWORD permissionFlags;  // PermissionFlag bits
};

enum TableError : int {
  kTableOk = 0,
  kItemTableFull = 1,
  kTypeTableFull = 2,
  kParamTableFull = 3,
  kTextTableFull = 4,
  kHalftoneTableFull = 5,
  kCheckBoxTableFull = 6,
  kPushTableFull = 7,
  kParamsMissing = 8,
  kNoSuchItem = 9,
  kTablesClosed = 256,
};

// An entry of the halftone table, which has a capacity but no add operation.
struct HalftoneSetup {
  DEVHTINFO info;
  COLORADJUSTMENT adjustment;
};

template <typename T>
struct FixedTable {
  T* start;
  int capacity;
  int used;
  int calls;  // number of add calls, failed ones included
};

struct OptItemTables {
  FixedTable<OPTITEM> items;
  FixedTable<OPTTYPE> types;
  FixedTable<OPTPARAM> params;
  FixedTable<WCHAR> texts;  // capacity and used in slots of textLength units
  FixedTable<HalftoneSetup> halftones;
  FixedTable<EXTCHKBOX> checkBoxes;
  FixedTable<EXTPUSH> pushes;
  int missingParams;  // OPTPARAMs that the last OPTTYPE still lacks; always 0 here
  int firstItem;      // index of the first item of the page being built
};

struct TableBases {
  int items, types, params, texts, halftones, checkBoxes, pushes;
  int textLength;
};

constexpr DWORD kMayStorePrinterPart = 1;  // session flag

struct DriverUiData {
  DriverUiData* self;  // self, size and selfEnd identify a valid session (IsValidUiSession)
  ULONG_PTR size;
  int pageCount;
  PageEntry pages[kPageCapacity];
  TableBases bases;
  DWORD flags;
  HANDLE printer;
  WCHAR printerName[kPageTextLength];
  WCHAR helpFile[kPageTextLength];
  BOOL permission;
  SessionMode mode;
  DriverSettingsBlock* settings;  // &block
  int tableError;                 // TableError
  HANDLE sessionHeap;
  HANDLE tableHeap;
  DriverSettingsBlock block;
  LONG_PTR pageHandles[kPageCapacity];
  COMPROPSHEETUI pageSheets[kPageCapacity];
  DLGPAGE dialogPages[kPageCapacity];
  PFNCOMPROPSHEET comPropSheet;
  HANDLE comPropSheetHandle;
  OptItemTables tables;

  FontStore fonts;
  PaperPageState paper;
  DevicePageState device;
  UtilityPageState utility;

  DriverUiData* selfEnd;
};

}  // namespace kestrel
