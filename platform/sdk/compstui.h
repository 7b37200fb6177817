// The common property-sheet library: its records, functions and reasons.
#pragma once

#ifndef _WINDOWS_
#error "<windows.h> comes before this header, as on Windows"
#endif

#include <prsht.h>

constexpr WORD PROPSHEETUI_INFO_VERSION = 0x0100;

struct OPTPARAM {
  WORD cbSize;
  BYTE Flags;
  BYTE Style;
  LPWSTR pData;
  ULONG_PTR IconID;
  LPARAM lParam;
  ULONG_PTR dwReserved[2];
};
static_assert(HasDocumentedSize<OPTPARAM>(24, 48));

struct OPTTYPE {
  WORD cbSize;
  BYTE Type;
  BYTE Flags;
  WORD Count;
  WORD BegCtrlID;
  OPTPARAM* pOptParam;
  WORD Style;
  WORD wReserved[3];
  ULONG_PTR dwReserved[3];
};
static_assert(HasDocumentedSize<OPTTYPE>(32, 48));

constexpr BYTE TVOT_EDITBOX = 7;

constexpr BYTE OPTTF_TYPE_DISABLED = 0x01;

struct EXTPUSH {
  WORD cbSize;
  WORD Flags;
  LPWSTR pTitle;
  union {
    DLGPROC DlgProc;
    FARPROC pfnCallBack;
  };
  ULONG_PTR IconID;
  union {
    WORD DlgTemplateID;
    HANDLE hDlgTemplate;
  };
  ULONG_PTR dwReserved[3];
};
using PEXTPUSH = EXTPUSH*;
static_assert(HasDocumentedSize<EXTPUSH>(32, 64));

struct EXTCHKBOX {
  WORD cbSize;
  WORD Flags;
  LPWSTR pTitle;
  LPWSTR pSeparator;
  LPWSTR pCheckedName;
  ULONG_PTR IconID;
  WORD wReserved[4];
  ULONG_PTR dwReserved[2];
};
using PEXTCHKBOX = EXTCHKBOX*;
static_assert(HasDocumentedSize<EXTCHKBOX>(36, 64));

struct OPTITEM {
  WORD cbSize;
  BYTE Level;
  BYTE DlgPageIdx;
  DWORD Flags;
  ULONG_PTR UserData;
  LPWSTR pName;
  union {
    LONG Sel;
    LPWSTR pSel;
  };
  union {
    PEXTCHKBOX pExtChkBox;
    PEXTPUSH pExtPush;
  };
  OPTTYPE* pOptType;
  DWORD HelpIndex;
  BYTE DMPubID;
  BYTE UserItemID;
  WORD wReserved;
  struct OIEXT* pOIExt;
  ULONG_PTR dwReserved[3];
};
static_assert(HasDocumentedSize<OPTITEM>(52, 88));

constexpr DWORD OPTIF_HIDE = 0x00000002;
constexpr DWORD OPTIF_CALLBACK = 0x00000004;
constexpr DWORD OPTIF_DISABLED = 0x00000020;
constexpr DWORD OPTIF_ECB_CHECKED = 0x00000040;
constexpr DWORD OPTIF_EXT_DISABLED = 0x00000100;
constexpr DWORD OPTIF_EXT_IS_EXTPUSH = 0x00000400;

constexpr BYTE DMPUB_USER = 100;

using _CPSUICALLBACK = LONG(APIENTRY*)(struct CPSUICBPARAM*);

struct DLGPAGE {
  WORD cbSize;
  WORD Flags;
  DLGPROC DlgProc;
  LPWSTR pTabName;
  ULONG_PTR IconID;
  union {
    WORD DlgTemplateID;
    HANDLE hDlgTemplate;
  };
};
using PDLGPAGE = DLGPAGE*;
static_assert(HasDocumentedSize<DLGPAGE>(20, 40));

constexpr WORD DP_STD_TREEVIEWPAGE = 0xFFFF;

// Values of COMPROPSHEETUI pDlgPage that stand for the library's own page sets.
inline PDLGPAGE CpsuiStandardPages(ULONG_PTR set) { return reinterpret_cast<PDLGPAGE>(set); }

struct COMPROPSHEETUI {
  WORD cbSize;
  WORD Flags;
  HINSTANCE hInstCaller;
  LPWSTR pCallerName;
  ULONG_PTR UserData;
  LPWSTR pHelpFile;
  _CPSUICALLBACK pfnCallBack;
  OPTITEM* pOptItem;
  PDLGPAGE pDlgPage;
  WORD cOptItem;
  WORD cDlgPage;
  ULONG_PTR IconID;
  LPWSTR pOptItemName;
  WORD CallerVersion;
  WORD OptItemVersion;
  ULONG_PTR dwReserved[4];
};
static_assert(HasDocumentedSize<COMPROPSHEETUI>(64, 128));

constexpr WORD CPSUIF_UPDATE_PERMISSION = 0x0001;
constexpr WORD CPSUIF_ABOUT_CALLBACK = 0x0004;

constexpr LONG CPSUI_CANCEL = 0;
constexpr LONG CPSUI_OK = 1;
constexpr LONG CPSUI_RESTARTWINDOWS = 2;

constexpr LONG ERR_CPSUI_GETLASTERROR = -1;
constexpr LONG ERR_CPSUI_INVALID_PDATA = -3;
constexpr LONG ERR_CPSUI_INVALID_LPARAM = -4;

using PFNCOMPROPSHEET = LONG_PTR(CALLBACK*)(HANDLE hComPropSheet, UINT Function, LPARAM lParam1,
                                            LPARAM lParam2);

struct PROPSHEETUI_INFO {
  WORD cbSize;
  WORD Version;
  WORD Flags;
  WORD Reason;
  HANDLE hComPropSheet;
  PFNCOMPROPSHEET pfnComPropSheet;
  LPARAM lParamInit;
  ULONG_PTR UserData;
  ULONG_PTR Result;
};
using PPROPSHEETUI_INFO = PROPSHEETUI_INFO*;
static_assert(HasDocumentedSize<PROPSHEETUI_INFO>(28, 48));
using PFNPROPSHEETUI = LONG(CALLBACK*)(PPROPSHEETUI_INFO pPSUIInfo, LPARAM lParam);

constexpr WORD PSUIINFO_UNICODE = 0x0001;

constexpr WORD PROPSHEETUI_REASON_INIT = 0;
constexpr WORD PROPSHEETUI_REASON_GET_INFO_HEADER = 1;
constexpr WORD PROPSHEETUI_REASON_DESTROY = 2;
constexpr WORD PROPSHEETUI_REASON_SET_RESULT = 3;

struct PROPSHEETUI_INFO_HEADER {
  WORD cbSize;
  WORD Flags;
  LPWSTR pTitle;
  HWND hWndParent;
  HINSTANCE hInst;
  union {
    HICON hIcon;
    ULONG_PTR IconID;
  };
};

static_assert(HasDocumentedSize<PROPSHEETUI_INFO_HEADER>(20, 40));

constexpr WORD PSUIHDRF_NOAPPLYNOW = 0x0002;
constexpr WORD PSUIHDRF_PROPTITLE = 0x0004;

struct SETRESULT_INFO {
  WORD cbSize;
  WORD wReserved;
  HANDLE hSetResult;
  LRESULT Result;
};
static_assert(HasDocumentedSize<SETRESULT_INFO>(12, 24));

constexpr UINT CPSFUNC_ADD_HPROPSHEETPAGE = 0;
constexpr UINT CPSFUNC_ADD_PCOMPROPSHEETUIW = 3;
constexpr UINT CPSFUNC_SET_RESULT = 9;

// Found at run time in "compstui.dll".
extern "C" {
LONG WINAPI CommonPropertySheetUIW(HWND hWndOwner, PFNPROPSHEETUI pfnPropSheetUI, LPARAM lParam,
                                   LPDWORD pResult);
}
