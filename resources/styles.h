// The window, control and resource values that the script uses, as the platform's documentation
// gives them (window styles, dialog box styles, button, edit, static, combo box, list box and
// up-down styles, VERSIONINFO and resource type ids). Kept here so that the script needs no other
// header.
#pragma once

#define WS_POPUP 0x80000000L
#define WS_CHILD 0x40000000L
#define WS_VISIBLE 0x10000000L
#define WS_DISABLED 0x08000000L
#define WS_CAPTION 0x00C00000L
#define WS_BORDER 0x00800000L
#define WS_VSCROLL 0x00200000L
#define WS_SYSMENU 0x00080000L
#define WS_GROUP 0x00020000L
#define WS_TABSTOP 0x00010000L

#define DS_MODALFRAME 0x80L
#define DS_CONTROL 0x0400L
// DS_SETFONT | DS_FIXEDSYS; each template has a FONT statement.
#define DS_SHELLFONT 0x48L

#define BS_AUTOCHECKBOX 0x3L
#define BS_AUTORADIOBUTTON 0x9L
#define BS_OWNERDRAW 0xBL
#define ES_AUTOHSCROLL 0x80L
#define ES_READONLY 0x800L
#define SS_LEFT 0x0L
#define SS_OWNERDRAW 0xDL
#define SS_NOPREFIX 0x80L
#define CBS_DROPDOWNLIST 0x3L
#define LBS_NOTIFY 0x1L
#define UDS_SETBUDDYINT 0x2L
#define UDS_ALIGNRIGHT 0x4L
#define UDS_ARROWKEYS 0x20L
#define UDS_NOTHOUSANDS 0x80L

#define IDOK 1
#define IDCANCEL 2
#define IDC_STATIC -1

#define RT_MANIFEST 24
#define ISOLATIONAWARE_MANIFEST_RESOURCE_ID 2
#define VS_VERSION_INFO 1
#define VS_FFI_FILEFLAGSMASK 0x3FL
#define VOS_NT_WINDOWS32 0x40004L
#define VFT_DRV 3
#define VFT2_DRV_PRINTER 1

// ---- what the templates have in common ----
// Without DS_SHELLFONT a property sheet measures its pages by the font of its own frame
// (PROPSHEETPAGE), and controls can be cut off.
#define PAGE_STYLE DS_SHELLFONT | DS_CONTROL | WS_CHILD | WS_DISABLED | WS_CAPTION
#define DIALOG_STYLE DS_MODALFRAME | WS_POPUP | WS_VISIBLE | WS_CAPTION | WS_SYSMENU
#define DIALOG_FONT 9, "ＭＳ Ｐゴシック", 400, 0, 128
// A radio button; the first of a set carries FIRST_RADIO, and the control after the set WS_GROUP.
#define RADIO BS_AUTORADIOBUTTON
#define FIRST_RADIO BS_AUTORADIOBUTTON | WS_GROUP | WS_TABSTOP
#define CHECK BS_AUTOCHECKBOX | WS_GROUP | WS_TABSTOP
#define DROP_DOWN CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP | WS_GROUP
#define SCROLLING_EDIT ES_AUTOHSCROLL | WS_BORDER | WS_TABSTOP | WS_GROUP
#define VALUE_TEXT SS_LEFT | SS_NOPREFIX
// The arrows of a field: plain numbers follow and write their edit themselves, the text of a
// measured field (with its decimals) is written by the dialog.
#define SPIN UDS_ALIGNRIGHT | UDS_ARROWKEYS
#define NUMBER_SPIN UDS_SETBUDDYINT | UDS_NOTHOUSANDS | SPIN
