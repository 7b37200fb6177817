// The common property-sheet library: its records, functions and reasons.
#pragma once

#ifndef _WINDOWS_
#error "<windows.h> comes before this header, as on Windows"
#endif

#include <prsht.h>
#include <windows.h>

constexpr WORD PROPSHEETUI_INFO_VERSION = 0x0100;

struct OPTITEM;

struct OPTPARAM {
  WORD cbSize;
  BYTE Flags;
  BYTE Style;
  LPWSTR pData;
  ULONG_PTR IconID;
  LPARAM lParam;
  ULONG_PTR dwReserved[2];
};
using POPTPARAM = OPTPARAM*;

constexpr BYTE OPTPF_HIDE = 0x01;
constexpr BYTE OPTPF_DISABLED = 0x02;
constexpr BYTE OPTPF_ICONID_AS_HICON = 0x04;

struct OPTTYPE {
  WORD cbSize;
  BYTE Type;
  BYTE Flags;
  WORD Count;
  WORD BegCtrlID;
  POPTPARAM pOptParam;
  WORD Style;
  WORD wReserved[3];
  ULONG_PTR dwReserved[3];
};
using POPTTYPE = OPTTYPE*;

constexpr BYTE TVOT_2STATES = 0;
constexpr BYTE TVOT_3STATES = 1;
constexpr BYTE TVOT_UDARROW = 2;
constexpr BYTE TVOT_TRACKBAR = 3;
constexpr BYTE TVOT_SCROLLBAR = 4;
constexpr BYTE TVOT_LISTBOX = 5;
constexpr BYTE TVOT_COMBOBOX = 6;
constexpr BYTE TVOT_EDITBOX = 7;
constexpr BYTE TVOT_PUSHBUTTON = 8;
constexpr BYTE TVOT_CHKBOX = 9;
constexpr BYTE TVOT_NONE = 0xFF;

constexpr BYTE OPTTF_TYPE_DISABLED = 0x01;
constexpr BYTE OPTTF_NOSPACE_BEFORE_POSTFIX = 0x02;

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
static_assert(sizeof(void*) != 4 || sizeof(EXTPUSH) == 32);

constexpr WORD EPF_PUSH_TYPE_DLGPROC = 0x0001;
constexpr WORD EPF_INCL_SETUP_TITLE = 0x0002;
constexpr WORD EPF_NO_DOT_DOT_DOT = 0x0004;

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
static_assert(sizeof(void*) != 4 || sizeof(EXTCHKBOX) == 36);

constexpr WORD ECBF_CHECKNAME_AT_FRONT = 0x0001;
constexpr WORD ECBF_CHECKNAME_ONLY_ENABLED = 0x0002;
constexpr WORD ECBF_ICONID_AS_HICON = 0x0004;

struct OIEXT {
  WORD cbSize;
  WORD Flags;
  HINSTANCE hInstCaller;
  LPWSTR pHelpFile;
  ULONG_PTR dwReserved[4];
};
using POIEXT = OIEXT*;

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
  POPTTYPE pOptType;
  DWORD HelpIndex;
  BYTE DMPubID;
  BYTE UserItemID;
  WORD wReserved;
  POIEXT pOIExt;
  ULONG_PTR dwReserved[3];
};
using POPTITEM = OPTITEM*;
static_assert(sizeof(void*) != 4 || sizeof(OPTITEM) == 52);

constexpr DWORD OPTIF_COLLAPSE = 0x00000001;
constexpr DWORD OPTIF_HIDE = 0x00000002;
constexpr DWORD OPTIF_CALLBACK = 0x00000004;
constexpr DWORD OPTIF_CHANGED = 0x00000008;
constexpr DWORD OPTIF_CHANGEONCE = 0x00000010;
constexpr DWORD OPTIF_DISABLED = 0x00000020;
constexpr DWORD OPTIF_ECB_CHECKED = 0x00000040;
constexpr DWORD OPTIF_EXT_HIDE = 0x00000080;
constexpr DWORD OPTIF_EXT_DISABLED = 0x00000100;
constexpr DWORD OPTIF_SEL_AS_HICON = 0x00000200;
constexpr DWORD OPTIF_EXT_IS_EXTPUSH = 0x00000400;
constexpr DWORD OPTIF_NO_GROUPBOX_NAME = 0x00000800;

constexpr BYTE DMPUB_NONE = 0;
constexpr BYTE DMPUB_USER = 100;

struct CPSUICBPARAM {
  WORD cbSize;
  WORD Reason;
  HWND hDlg;
  POPTITEM pOptItem;
  WORD cOptItem;
  WORD Flags;
  POPTITEM pCurItem;
  union {
    LONG OldSel;
    LPWSTR pOldSel;
  };
  ULONG_PTR UserData;
  ULONG_PTR Result;
};
using PCPSUICBPARAM = CPSUICBPARAM*;
using _CPSUICALLBACK = LONG(APIENTRY*)(PCPSUICBPARAM);

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
static_assert(sizeof(void*) != 4 || sizeof(DLGPAGE) == 20);

constexpr WORD DPF_ICONID_AS_HICON = 0x0001;
constexpr WORD DPF_USE_HDLGTEMPLATE = 0x0002;
constexpr WORD DP_STD_TREEVIEWPAGE = 0xFFFF;
constexpr WORD DP_STD_DOCPROPPAGE2 = 0xFFFE;
constexpr WORD DP_STD_DOCPROPPAGE1 = 0xFFFD;
constexpr WORD DP_STD_RESERVED_START = 0xFFF0;

// Values of COMPROPSHEETUI pDlgPage that stand for the library's own page sets.
inline PDLGPAGE CpsuiStandardPages(ULONG_PTR set) { return reinterpret_cast<PDLGPAGE>(set); }
#define CPSUI_PDLGPAGE_DOCPROP CpsuiStandardPages(1)
#define CPSUI_PDLGPAGE_ADVDOCPROP CpsuiStandardPages(2)
#define CPSUI_PDLGPAGE_PRINTERPROP CpsuiStandardPages(3)
#define CPSUI_PDLGPAGE_TREEVIEWONLY CpsuiStandardPages(4)

struct COMPROPSHEETUI {
  WORD cbSize;
  WORD Flags;
  HINSTANCE hInstCaller;
  LPWSTR pCallerName;
  ULONG_PTR UserData;
  LPWSTR pHelpFile;
  _CPSUICALLBACK pfnCallBack;
  POPTITEM pOptItem;
  PDLGPAGE pDlgPage;
  WORD cOptItem;
  WORD cDlgPage;
  ULONG_PTR IconID;
  LPWSTR pOptItemName;
  WORD CallerVersion;
  WORD OptItemVersion;
  ULONG_PTR dwReserved[4];
};
using PCOMPROPSHEETUI = COMPROPSHEETUI*;
static_assert(sizeof(void*) != 4 || sizeof(COMPROPSHEETUI) == 64);

constexpr WORD CPSUIF_UPDATE_PERMISSION = 0x0001;
constexpr WORD CPSUIF_ICONID_AS_HICON = 0x0002;
constexpr WORD CPSUIF_ABOUT_CALLBACK = 0x0004;

constexpr LONG CPSUI_CANCEL = 0;
constexpr LONG CPSUI_OK = 1;
constexpr LONG CPSUI_RESTARTWINDOWS = 2;
constexpr LONG CPSUI_REBOOTSYSTEM = 3;

constexpr LONG ERR_CPSUI_GETLASTERROR = -1;
constexpr LONG ERR_CPSUI_ALLOCMEM_FAILED = -2;
constexpr LONG ERR_CPSUI_INVALID_PDATA = -3;

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
using PFNPROPSHEETUI = LONG(CALLBACK*)(PPROPSHEETUI_INFO pPSUIInfo, LPARAM lParam);

constexpr WORD PSUIINFO_UNICODE = 0x0001;

constexpr WORD PROPSHEETUI_REASON_INIT = 0;
constexpr WORD PROPSHEETUI_REASON_GET_INFO_HEADER = 1;
constexpr WORD PROPSHEETUI_REASON_DESTROY = 2;
constexpr WORD PROPSHEETUI_REASON_SET_RESULT = 3;
constexpr WORD PROPSHEETUI_REASON_GET_ICON = 4;
constexpr WORD PROPSHEETUI_REASON_BEFORE_INIT = 5;

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
using PPROPSHEETUI_INFO_HEADER = PROPSHEETUI_INFO_HEADER*;

constexpr WORD PSUIHDRF_OBSOLETE = 0x0001;
constexpr WORD PSUIHDRF_NOAPPLYNOW = 0x0002;
constexpr WORD PSUIHDRF_PROPTITLE = 0x0004;
constexpr WORD PSUIHDRF_USEHICON = 0x0008;
constexpr WORD PSUIHDRF_DEFTITLE = 0x0010;
constexpr WORD PSUIHDRF_EXACT_PTITLE = 0x0020;

struct SETRESULT_INFO {
  WORD cbSize;
  WORD wReserved;
  HANDLE hSetResult;
  LRESULT Result;
};
using PSETRESULT_INFO = SETRESULT_INFO*;

constexpr UINT CPSFUNC_ADD_HPROPSHEETPAGE = 0;
constexpr UINT CPSFUNC_ADD_PROPSHEETPAGEW = 1;
constexpr UINT CPSFUNC_ADD_PCOMPROPSHEETUIA = 2;
constexpr UINT CPSFUNC_ADD_PCOMPROPSHEETUIW = 3;
constexpr UINT CPSFUNC_ADD_PFNPROPSHEETUIA = 4;
constexpr UINT CPSFUNC_ADD_PFNPROPSHEETUIW = 5;
constexpr UINT CPSFUNC_DELETE_HCOMPROPSHEET = 6;
constexpr UINT CPSFUNC_SET_HSTARTPAGE = 7;
constexpr UINT CPSFUNC_GET_PAGECOUNT = 8;
constexpr UINT CPSFUNC_SET_RESULT = 9;
constexpr UINT CPSFUNC_GET_HPSUIPAGES = 10;
constexpr UINT CPSFUNC_LOAD_CPSUI_STRINGA = 11;
constexpr UINT CPSFUNC_LOAD_CPSUI_STRINGW = 12;
constexpr UINT CPSFUNC_LOAD_CPSUI_ICON = 13;
constexpr UINT CPSFUNC_GET_PFNPROPSHEETUI_ICON = 14;
constexpr UINT CPSFUNC_ADD_PROPSHEETPAGEA = 15;

// Found at run time in "compstui.dll".
extern "C" {
LONG WINAPI CommonPropertySheetUIW(HWND hWndOwner, PFNPROPSHEETUI pfnPropSheetUI, LPARAM lParam,
                                   LPDWORD pResult);
}
