// Windows, dialogs, controls and messages, as the platform documentation of the window manager
// declares them.
#pragma once

#include <windef.h>

// Only the x64 library exports the two under these names.
#if (defined(_WIN32) && !defined(_WIN64)) || (!defined(_WIN32) && defined(__i386__))
#define GetWindowLongPtrW GetWindowLongW
#define SetWindowLongPtrW SetWindowLongW
#endif

// ---- messages of every window ----
constexpr UINT WM_SETFOCUS = 0x0007;
constexpr UINT WM_KILLFOCUS = 0x0008;
constexpr UINT WM_SETTEXT = 0x000C;
constexpr UINT WM_GETTEXT = 0x000D;
constexpr UINT WM_CLOSE = 0x0010;
constexpr UINT WM_DEVMODECHANGE = 0x001B;
constexpr UINT WM_NEXTDLGCTL = 0x0028;
constexpr UINT WM_DRAWITEM = 0x002B;
constexpr UINT WM_NOTIFY = 0x004E;
constexpr UINT WM_INITDIALOG = 0x0110;
constexpr UINT WM_COMMAND = 0x0111;
constexpr UINT WM_VSCROLL = 0x0115;
constexpr UINT WM_CTLCOLORSTATIC = 0x0138;
constexpr UINT WM_USER = 0x0400;

// ---- window styles ----
constexpr DWORD WS_POPUP = 0x80000000;
constexpr DWORD WS_CHILD = 0x40000000;
constexpr DWORD WS_VISIBLE = 0x10000000;
constexpr DWORD WS_DISABLED = 0x08000000;
constexpr DWORD WS_CAPTION = 0x00C00000;
constexpr DWORD WS_BORDER = 0x00800000;
constexpr DWORD WS_VSCROLL = 0x00200000;
constexpr DWORD WS_SYSMENU = 0x00080000;
constexpr DWORD WS_GROUP = 0x00020000;
constexpr DWORD WS_TABSTOP = 0x00010000;

constexpr DWORD DS_SETFONT = 0x40;
constexpr DWORD DS_MODALFRAME = 0x80;
constexpr DWORD DS_CONTROL = 0x0400;
constexpr DWORD DS_CENTER = 0x0800;

// ---- window words ----
constexpr int GWLP_USERDATA = -21;  // of any window, for the application that created it
constexpr int DWLP_MSGRESULT = 0;
constexpr int DWLP_USER = static_cast<int>(sizeof(LRESULT) + sizeof(DLGPROC));

constexpr int SW_SHOW = 5;

constexpr UINT SWP_NOMOVE = 0x0002;
constexpr UINT SWP_NOZORDER = 0x0004;
constexpr UINT SWP_NOACTIVATE = 0x0010;

#define HWND_BROADCAST reinterpret_cast<HWND>(static_cast<LONG_PTR>(0xFFFF))

// ---- keys ----
constexpr int VK_BACK = 0x08;
constexpr int VK_UP = 0x26;
constexpr int VK_DOWN = 0x28;
constexpr int VK_DELETE = 0x2E;
constexpr int VK_F4 = 0x73;

// ---- identifiers ----
constexpr int IDOK = 1;
constexpr int IDCANCEL = 2;
constexpr int IDYES = 6;
constexpr int IDNO = 7;
constexpr int IDC_STATIC = -1;

constexpr UINT MB_OK = 0x00000000;
constexpr UINT MB_OKCANCEL = 0x00000001;
constexpr UINT MB_YESNO = 0x00000004;
constexpr UINT MB_TYPEMASK = 0x0000000F;
constexpr UINT MB_ICONHAND = 0x00000010;
constexpr UINT MB_ICONEXCLAMATION = 0x00000030;
constexpr UINT MB_ICONASTERISK = 0x00000040;
constexpr UINT MB_ICONMASK = 0x000000F0;
constexpr UINT MB_DEFBUTTON2 = 0x00000100;
constexpr UINT MB_SETFOREGROUND = 0x00010000;

#define IDC_ARROW MAKEINTRESOURCEW(32512)
#define IDC_WAIT MAKEINTRESOURCEW(32514)

// ---- buttons ----
constexpr DWORD BS_PUSHBUTTON = 0x0;
constexpr DWORD BS_DEFPUSHBUTTON = 0x1;
constexpr DWORD BS_AUTOCHECKBOX = 0x3;
constexpr DWORD BS_GROUPBOX = 0x7;
constexpr DWORD BS_AUTORADIOBUTTON = 0x9;
constexpr DWORD BS_OWNERDRAW = 0xB;
constexpr DWORD BS_TYPEMASK = 0xF;
constexpr UINT BST_UNCHECKED = 0;
constexpr UINT BST_CHECKED = 1;
constexpr UINT BN_CLICKED = 0;

// ---- statics ----
constexpr DWORD SS_LEFT = 0x00;
constexpr DWORD SS_CENTER = 0x01;
constexpr DWORD SS_OWNERDRAW = 0x0D;
constexpr DWORD SS_TYPEMASK = 0x1F;
constexpr DWORD SS_NOPREFIX = 0x80;

// ---- edits ----
constexpr DWORD ES_AUTOHSCROLL = 0x0080;
constexpr DWORD ES_READONLY = 0x0800;
constexpr UINT EM_GETSEL = 0x00B0;
constexpr UINT EM_SETSEL = 0x00B1;
constexpr UINT EM_LIMITTEXT = 0x00C5;
constexpr UINT EN_SETFOCUS = 0x0100;
constexpr UINT EN_KILLFOCUS = 0x0200;
constexpr UINT EN_CHANGE = 0x0300;
constexpr UINT EN_UPDATE = 0x0400;

// ---- combo boxes ----
constexpr DWORD CBS_DROPDOWNLIST = 0x0003;
constexpr UINT CB_ADDSTRING = 0x0143;
constexpr UINT CB_GETCURSEL = 0x0147;
constexpr UINT CB_INSERTSTRING = 0x014A;
constexpr UINT CB_RESETCONTENT = 0x014B;
constexpr UINT CB_SETCURSEL = 0x014E;
constexpr int CB_ERR = -1;
constexpr UINT CBN_SELCHANGE = 1;
constexpr UINT CBN_SETFOCUS = 3;
constexpr UINT CBN_KILLFOCUS = 4;
constexpr UINT CBN_DROPDOWN = 7;
constexpr UINT CBN_CLOSEUP = 8;
constexpr UINT CBN_SELENDOK = 9;
constexpr UINT CBN_SELENDCANCEL = 10;

// ---- list boxes ----
constexpr DWORD LBS_NOTIFY = 0x0001;
constexpr UINT LB_INSERTSTRING = 0x0181;
constexpr UINT LB_RESETCONTENT = 0x0184;
constexpr UINT LB_SETCURSEL = 0x0186;
constexpr UINT LB_GETCURSEL = 0x0188;
constexpr UINT LBN_SELCHANGE = 1;
constexpr UINT LBN_SETFOCUS = 4;
constexpr UINT LBN_KILLFOCUS = 5;

// ---- scrolling, as up-downs notify it ----
constexpr int SB_THUMBPOSITION = 4;
constexpr int SB_ENDSCROLL = 8;

// ---- owner drawing ----
constexpr UINT ODA_DRAWENTIRE = 0x0001;

struct DRAWITEMSTRUCT {
  UINT CtlType;
  UINT CtlID;
  UINT itemID;
  UINT itemAction;
  UINT itemState;
  HWND hwndItem;
  HDC hDC;
  RECT rcItem;
  ULONG_PTR itemData;
};
static_assert(HasDocumentedSize<DRAWITEMSTRUCT>(48, 64));

struct NMHDR {
  HWND hwndFrom;
  UINT_PTR idFrom;
  UINT code;
};
static_assert(HasDocumentedSize<NMHDR>(12, 24));

using LPCDLGTEMPLATEW = const struct DLGTEMPLATE*;  // opaque here

constexpr UINT SMTO_ABORTIFHUNG = 0x0002;

extern "C" {

// ---- windows ----
HWND WINAPI GetParent(HWND window);
BOOL WINAPI EnableWindow(HWND window, BOOL enable);
BOOL WINAPI IsWindowEnabled(HWND window);
BOOL WINAPI SetWindowPos(HWND window, HWND insertAfter, int x, int y, int cx, int cy, UINT flags);
BOOL WINAPI GetClientRect(HWND window, LPRECT rect);
HWND WINAPI SetFocus(HWND window);
HWND WINAPI GetFocus();
BOOL WINAPI InvalidateRect(HWND window, const RECT* rect, BOOL erase);
BOOL WINAPI SetWindowTextW(HWND window, LPCWSTR text);
int WINAPI GetWindowTextW(HWND window, LPWSTR text, int size);
int WINAPI GetWindowTextLengthW(HWND window);
LONG_PTR WINAPI GetWindowLongPtrW(HWND window, int index);
LONG_PTR WINAPI SetWindowLongPtrW(HWND window, int index, LONG_PTR value);

// ---- messages ----
LRESULT WINAPI SendMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT WINAPI SendMessageTimeoutW(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                   UINT flags, UINT timeout, DWORD_PTR* result);

// ---- dialogs ----
INT_PTR WINAPI DialogBoxParamW(HINSTANCE instance, LPCWSTR name, HWND owner, DLGPROC proc,
                               LPARAM param);
INT_PTR WINAPI DialogBoxIndirectParamW(HINSTANCE instance, LPCDLGTEMPLATEW dialog, HWND owner,
                                       DLGPROC proc, LPARAM param);
BOOL WINAPI EndDialog(HWND dialog, INT_PTR result);
HWND WINAPI GetDlgItem(HWND dialog, int id);
int WINAPI GetDlgCtrlID(HWND window);
LRESULT WINAPI SendDlgItemMessageW(HWND dialog, int id, UINT message, WPARAM wParam, LPARAM lParam);
BOOL WINAPI SetDlgItemTextW(HWND dialog, int id, LPCWSTR text);
UINT WINAPI GetDlgItemTextW(HWND dialog, int id, LPWSTR text, int size);
BOOL WINAPI CheckDlgButton(HWND dialog, int id, UINT check);
BOOL WINAPI CheckRadioButton(HWND dialog, int first, int last, int check);
UINT WINAPI IsDlgButtonChecked(HWND dialog, int id);
int WINAPI MessageBoxW(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type);
BOOL WINAPI MessageBeep(UINT type);

// ---- cursor, pictures, texts ----
HCURSOR WINAPI LoadCursorW(HINSTANCE instance, LPCWSTR name);
HCURSOR WINAPI SetCursor(HCURSOR cursor);
HBITMAP WINAPI LoadBitmapW(HINSTANCE instance, LPCWSTR name);
int WINAPI LoadStringW(HINSTANCE instance, UINT id, LPWSTR buffer, int size);
int WINAPIV wsprintfW(LPWSTR out, LPCWSTR format, ...);

// ---- drawing ----
HDC WINAPI GetDC(HWND window);
int WINAPI ReleaseDC(HWND window, HDC dc);
int WINAPI FillRect(HDC dc, const RECT* rect, HBRUSH brush);

}  // extern "C"
