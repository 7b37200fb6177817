// Windows, dialogs, controls and messages, as the platform documentation's reference of the window
// manager gives them.
#pragma once

#include <windef.h>

// Only the x64 library exports the two under these names.
#if defined(_WIN32) && !defined(_WIN64)
#define GetWindowLongPtrW GetWindowLongW
#define SetWindowLongPtrW SetWindowLongW
#endif

// ---- messages of every window ----
constexpr UINT WM_CREATE = 0x0001;
constexpr UINT WM_DESTROY = 0x0002;
constexpr UINT WM_SIZE = 0x0005;
constexpr UINT WM_ACTIVATE = 0x0006;
constexpr UINT WM_SETFOCUS = 0x0007;
constexpr UINT WM_KILLFOCUS = 0x0008;
constexpr UINT WM_ENABLE = 0x000A;
constexpr UINT WM_SETREDRAW = 0x000B;
constexpr UINT WM_SETTEXT = 0x000C;
constexpr UINT WM_GETTEXT = 0x000D;
constexpr UINT WM_GETTEXTLENGTH = 0x000E;
constexpr UINT WM_PAINT = 0x000F;
constexpr UINT WM_CLOSE = 0x0010;
constexpr UINT WM_SHOWWINDOW = 0x0018;
constexpr UINT WM_DEVMODECHANGE = 0x001B;
constexpr UINT WM_NEXTDLGCTL = 0x0028;
constexpr UINT WM_DRAWITEM = 0x002B;
constexpr UINT WM_SETFONT = 0x0030;
constexpr UINT WM_GETFONT = 0x0031;
constexpr UINT WM_NOTIFY = 0x004E;
constexpr UINT WM_NCDESTROY = 0x0082;
constexpr UINT WM_KEYDOWN = 0x0100;
constexpr UINT WM_CHAR = 0x0102;
constexpr UINT WM_INITDIALOG = 0x0110;
constexpr UINT WM_COMMAND = 0x0111;
constexpr UINT WM_HSCROLL = 0x0114;
constexpr UINT WM_VSCROLL = 0x0115;
constexpr UINT WM_CTLCOLORMSGBOX = 0x0132;
constexpr UINT WM_CTLCOLOREDIT = 0x0133;
constexpr UINT WM_CTLCOLORLISTBOX = 0x0134;
constexpr UINT WM_CTLCOLORBTN = 0x0135;
constexpr UINT WM_CTLCOLORDLG = 0x0136;
constexpr UINT WM_CTLCOLORSTATIC = 0x0138;
constexpr UINT WM_CLEAR = 0x0303;
constexpr UINT WM_USER = 0x0400;
constexpr UINT WM_APP = 0x8000;
constexpr UINT DM_GETDEFID = WM_USER + 0;
constexpr UINT DM_SETDEFID = WM_USER + 1;
constexpr DWORD DC_HASDEFID = 0x534B;

// ---- window styles ----
constexpr DWORD WS_POPUP = 0x80000000;
constexpr DWORD WS_CHILD = 0x40000000;
constexpr DWORD WS_VISIBLE = 0x10000000;
constexpr DWORD WS_DISABLED = 0x08000000;
constexpr DWORD WS_CLIPCHILDREN = 0x02000000;
constexpr DWORD WS_CAPTION = 0x00C00000;
constexpr DWORD WS_BORDER = 0x00800000;
constexpr DWORD WS_VSCROLL = 0x00200000;
constexpr DWORD WS_SYSMENU = 0x00080000;
constexpr DWORD WS_GROUP = 0x00020000;
constexpr DWORD WS_TABSTOP = 0x00010000;
constexpr DWORD WS_EX_CONTEXTHELP = 0x00000400;
constexpr DWORD WS_EX_CONTROLPARENT = 0x00010000;

constexpr DWORD DS_SETFONT = 0x40;
constexpr DWORD DS_MODALFRAME = 0x80;
constexpr DWORD DS_CONTROL = 0x0400;
constexpr DWORD DS_CENTER = 0x0800;

// ---- window words ----
constexpr int GWL_STYLE = -16;
constexpr int GWL_EXSTYLE = -20;
constexpr int GWLP_WNDPROC = -4;
constexpr int GWLP_HINSTANCE = -6;
constexpr int GWLP_HWNDPARENT = -8;
constexpr int GWLP_USERDATA = -21;
constexpr int GWLP_ID = -12;
constexpr int DWLP_MSGRESULT = 0;
constexpr int DWLP_DLGPROC = DWLP_MSGRESULT + static_cast<int>(sizeof(LRESULT));
constexpr int DWLP_USER = DWLP_DLGPROC + static_cast<int>(sizeof(DLGPROC));

constexpr int SW_HIDE = 0;
constexpr int SW_SHOW = 5;

constexpr UINT SWP_NOSIZE = 0x0001;
constexpr UINT SWP_NOMOVE = 0x0002;
constexpr UINT SWP_NOZORDER = 0x0004;
constexpr UINT SWP_NOACTIVATE = 0x0010;
constexpr UINT SWP_SHOWWINDOW = 0x0040;
constexpr UINT SWP_HIDEWINDOW = 0x0080;

#define HWND_TOP reinterpret_cast<HWND>(static_cast<LONG_PTR>(0))
#define HWND_BOTTOM reinterpret_cast<HWND>(static_cast<LONG_PTR>(1))
#define HWND_BROADCAST reinterpret_cast<HWND>(static_cast<LONG_PTR>(0xFFFF))

constexpr UINT GW_HWNDNEXT = 2;
constexpr UINT GW_CHILD = 5;

// ---- keys ----
constexpr int VK_BACK = 0x08;
constexpr int VK_UP = 0x26;
constexpr int VK_DOWN = 0x28;
constexpr int VK_DELETE = 0x2E;

// ---- identifiers ----
constexpr int IDOK = 1;
constexpr int IDCANCEL = 2;
constexpr int IDABORT = 3;
constexpr int IDRETRY = 4;
constexpr int IDIGNORE = 5;
constexpr int IDYES = 6;
constexpr int IDNO = 7;
constexpr int IDC_STATIC = -1;

constexpr UINT MB_OK = 0x00000000;
constexpr UINT MB_OKCANCEL = 0x00000001;
constexpr UINT MB_ABORTRETRYIGNORE = 0x00000002;
constexpr UINT MB_YESNOCANCEL = 0x00000003;
constexpr UINT MB_YESNO = 0x00000004;
constexpr UINT MB_RETRYCANCEL = 0x00000005;
constexpr UINT MB_TYPEMASK = 0x0000000F;
constexpr UINT MB_ICONHAND = 0x00000010;
constexpr UINT MB_ICONEXCLAMATION = 0x00000030;
constexpr UINT MB_ICONASTERISK = 0x00000040;
constexpr UINT MB_ICONMASK = 0x000000F0;
constexpr UINT MB_DEFBUTTON2 = 0x00000100;
constexpr UINT MB_DEFBUTTON3 = 0x00000200;
constexpr UINT MB_DEFMASK = 0x00000F00;
constexpr UINT MB_SETFOREGROUND = 0x00010000;

#define IDC_ARROW MAKEINTRESOURCEW(32512)
#define IDC_WAIT MAKEINTRESOURCEW(32514)

// ---- buttons ----
constexpr DWORD BS_PUSHBUTTON = 0x0;
constexpr DWORD BS_DEFPUSHBUTTON = 0x1;
constexpr DWORD BS_CHECKBOX = 0x2;
constexpr DWORD BS_AUTOCHECKBOX = 0x3;
constexpr DWORD BS_RADIOBUTTON = 0x4;
constexpr DWORD BS_3STATE = 0x5;
constexpr DWORD BS_AUTO3STATE = 0x6;
constexpr DWORD BS_GROUPBOX = 0x7;
constexpr DWORD BS_AUTORADIOBUTTON = 0x9;
constexpr DWORD BS_OWNERDRAW = 0xB;
constexpr DWORD BS_TYPEMASK = 0xF;
constexpr DWORD BS_NOTIFY = 0x4000;
constexpr UINT BM_GETCHECK = 0x00F0;
constexpr UINT BM_SETCHECK = 0x00F1;
constexpr UINT BM_SETSTYLE = 0x00F4;
constexpr UINT BM_CLICK = 0x00F5;
constexpr UINT BM_GETIMAGE = 0x00F6;
constexpr UINT BM_SETIMAGE = 0x00F7;
constexpr UINT BST_UNCHECKED = 0;
constexpr UINT BST_CHECKED = 1;
constexpr UINT BST_INDETERMINATE = 2;
constexpr UINT BN_CLICKED = 0;
constexpr UINT BN_SETFOCUS = 6;
constexpr UINT BN_KILLFOCUS = 7;

// ---- statics ----
constexpr DWORD SS_LEFT = 0x00;
constexpr DWORD SS_CENTER = 0x01;
constexpr DWORD SS_OWNERDRAW = 0x0D;
constexpr DWORD SS_BITMAP = 0x0E;
constexpr DWORD SS_TYPEMASK = 0x1F;
constexpr DWORD SS_NOPREFIX = 0x80;
constexpr DWORD SS_NOTIFY = 0x100;
constexpr UINT STM_SETIMAGE = 0x0172;
constexpr UINT STM_GETIMAGE = 0x0173;
constexpr UINT STN_CLICKED = 0;

// ---- edits ----
constexpr DWORD ES_RIGHT = 0x0002;
constexpr DWORD ES_MULTILINE = 0x0004;
constexpr DWORD ES_UPPERCASE = 0x0008;
constexpr DWORD ES_LOWERCASE = 0x0010;
constexpr DWORD ES_AUTOHSCROLL = 0x0080;
constexpr DWORD ES_READONLY = 0x0800;
constexpr DWORD ES_WANTRETURN = 0x1000;
constexpr DWORD ES_NUMBER = 0x2000;
constexpr UINT EM_GETSEL = 0x00B0;
constexpr UINT EM_SETSEL = 0x00B1;
constexpr UINT EM_GETMODIFY = 0x00B8;
constexpr UINT EM_SETMODIFY = 0x00B9;
constexpr UINT EM_REPLACESEL = 0x00C2;
constexpr UINT EM_LIMITTEXT = 0x00C5;
constexpr UINT EM_SETREADONLY = 0x00CF;
constexpr UINT EM_GETLIMITTEXT = 0x00D5;
constexpr UINT EN_SETFOCUS = 0x0100;
constexpr UINT EN_KILLFOCUS = 0x0200;
constexpr UINT EN_CHANGE = 0x0300;
constexpr UINT EN_UPDATE = 0x0400;
constexpr UINT EN_MAXTEXT = 0x0501;

// ---- combo boxes ----
constexpr DWORD CBS_DROPDOWNLIST = 0x0003;
constexpr DWORD CBS_SORT = 0x0100;
constexpr UINT CB_ADDSTRING = 0x0143;
constexpr UINT CB_DELETESTRING = 0x0144;
constexpr UINT CB_GETCOUNT = 0x0146;
constexpr UINT CB_GETCURSEL = 0x0147;
constexpr UINT CB_GETLBTEXT = 0x0148;
constexpr UINT CB_GETLBTEXTLEN = 0x0149;
constexpr UINT CB_INSERTSTRING = 0x014A;
constexpr UINT CB_RESETCONTENT = 0x014B;
constexpr UINT CB_FINDSTRING = 0x014C;
constexpr UINT CB_SELECTSTRING = 0x014D;
constexpr UINT CB_SETCURSEL = 0x014E;
constexpr UINT CB_SHOWDROPDOWN = 0x014F;
constexpr UINT CB_GETITEMDATA = 0x0150;
constexpr UINT CB_SETITEMDATA = 0x0151;
constexpr UINT CB_GETDROPPEDSTATE = 0x0157;
constexpr UINT CB_FINDSTRINGEXACT = 0x0158;
constexpr UINT CB_INITSTORAGE = 0x0161;
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
constexpr DWORD LBS_SORT = 0x0002;
constexpr UINT LB_ADDSTRING = 0x0180;
constexpr UINT LB_INSERTSTRING = 0x0181;
constexpr UINT LB_DELETESTRING = 0x0182;
constexpr UINT LB_RESETCONTENT = 0x0184;
constexpr UINT LB_SETCURSEL = 0x0186;
constexpr UINT LB_GETCURSEL = 0x0188;
constexpr UINT LB_GETTEXT = 0x0189;
constexpr UINT LB_GETTEXTLEN = 0x018A;
constexpr UINT LB_GETCOUNT = 0x018B;
constexpr UINT LB_SELECTSTRING = 0x018C;
constexpr UINT LB_FINDSTRING = 0x018F;
constexpr UINT LB_GETITEMDATA = 0x0199;
constexpr UINT LB_SETITEMDATA = 0x019A;
constexpr UINT LB_FINDSTRINGEXACT = 0x01A2;
constexpr UINT LB_INITSTORAGE = 0x01A8;
constexpr UINT LBN_SELCHANGE = 1;
constexpr UINT LBN_DBLCLK = 2;
constexpr UINT LBN_SETFOCUS = 4;
constexpr UINT LBN_KILLFOCUS = 5;

// ---- scrolling, as up-downs and trackbars notify it ----
constexpr int SB_THUMBPOSITION = 4;
constexpr int SB_ENDSCROLL = 8;

// ---- owner drawing ----
constexpr UINT ODT_BUTTON = 4;
constexpr UINT ODT_STATIC = 5;
constexpr UINT ODA_DRAWENTIRE = 0x0001;
constexpr UINT ODS_DISABLED = 0x0004;
constexpr UINT ODS_FOCUS = 0x0010;

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
using PDRAWITEMSTRUCT = DRAWITEMSTRUCT*;
using LPDRAWITEMSTRUCT = DRAWITEMSTRUCT*;

struct PAINTSTRUCT {
  HDC hdc;
  BOOL fErase;
  RECT rcPaint;
  BOOL fRestore;
  BOOL fIncUpdate;
  BYTE rgbReserved[32];
};
using LPPAINTSTRUCT = PAINTSTRUCT*;

struct NMHDR {
  HWND hwndFrom;
  UINT_PTR idFrom;
  UINT code;
};
using LPNMHDR = NMHDR*;

// The plain dialog template and its items; the extended form has no documented C structure. Both
// are packed to two bytes.
#pragma pack(push, 2)
struct DLGTEMPLATE {
  DWORD style;
  DWORD dwExtendedStyle;
  WORD cdit;
  SHORT x;
  SHORT y;
  SHORT cx;
  SHORT cy;
};
struct DLGITEMTEMPLATE {
  DWORD style;
  DWORD dwExtendedStyle;
  SHORT x;
  SHORT y;
  SHORT cx;
  SHORT cy;
  WORD id;
};
#pragma pack(pop)
static_assert(sizeof(DLGTEMPLATE) == 18 && sizeof(DLGITEMTEMPLATE) == 18);
using LPCDLGTEMPLATEW = const DLGTEMPLATE*;
using LPCDLGTEMPLATE = LPCDLGTEMPLATEW;

// ---- drawing helpers ----
constexpr UINT DT_CENTER = 0x0001;
constexpr UINT DT_RIGHT = 0x0002;
constexpr UINT DT_VCENTER = 0x0004;
constexpr UINT DT_BOTTOM = 0x0008;
constexpr UINT DT_WORDBREAK = 0x0010;
constexpr UINT DT_SINGLELINE = 0x0020;
constexpr UINT DT_NOCLIP = 0x0100;
constexpr UINT DT_CALCRECT = 0x0400;
constexpr UINT DT_NOPREFIX = 0x0800;

constexpr int COLOR_WINDOWTEXT = 8;
constexpr int COLOR_HIGHLIGHT = 13;
constexpr int COLOR_BTNFACE = 15;
constexpr int COLOR_GRAYTEXT = 17;
constexpr int COLOR_BTNTEXT = 18;

constexpr UINT SMTO_NORMAL = 0x0000;
constexpr UINT SMTO_ABORTIFHUNG = 0x0002;

extern "C" {

// ---- windows ----
HWND WINAPI CreateWindowExW(DWORD exStyle, LPCWSTR className, LPCWSTR windowName, DWORD style,
                            int x, int y, int width, int height, HWND parent, HMENU menu,
                            HINSTANCE instance, LPVOID param);
BOOL WINAPI DestroyWindow(HWND window);
BOOL WINAPI IsWindow(HWND window);
HWND WINAPI GetParent(HWND window);
HWND WINAPI GetActiveWindow();
HWND WINAPI GetWindow(HWND window, UINT command);
BOOL WINAPI EnableWindow(HWND window, BOOL enable);
BOOL WINAPI IsWindowEnabled(HWND window);
BOOL WINAPI ShowWindow(HWND window, int command);
BOOL WINAPI IsWindowVisible(HWND window);
BOOL WINAPI SetWindowPos(HWND window, HWND insertAfter, int x, int y, int cx, int cy, UINT flags);
BOOL WINAPI MoveWindow(HWND window, int x, int y, int width, int height, BOOL repaint);
BOOL WINAPI GetClientRect(HWND window, LPRECT rect);
BOOL WINAPI GetWindowRect(HWND window, LPRECT rect);
int WINAPI MapWindowPoints(HWND from, HWND to, LPPOINT points, UINT count);
HWND WINAPI SetFocus(HWND window);
HWND WINAPI GetFocus();
BOOL WINAPI InvalidateRect(HWND window, const RECT* rect, BOOL erase);
BOOL WINAPI UpdateWindow(HWND window);
HDC WINAPI BeginPaint(HWND window, LPPAINTSTRUCT paint);
BOOL WINAPI EndPaint(HWND window, const PAINTSTRUCT* paint);
BOOL WINAPI SetWindowTextW(HWND window, LPCWSTR text);
int WINAPI GetWindowTextW(HWND window, LPWSTR text, int size);
int WINAPI GetWindowTextLengthW(HWND window);
LONG_PTR WINAPI GetWindowLongPtrW(HWND window, int index);
LONG_PTR WINAPI SetWindowLongPtrW(HWND window, int index, LONG_PTR value);
LRESULT WINAPI DefWindowProcW(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
int WINAPI GetClassNameW(HWND window, LPWSTR name, int size);

// ---- messages ----
LRESULT WINAPI SendMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
BOOL WINAPI PostMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT WINAPI SendMessageTimeoutW(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                   UINT flags, UINT timeout, DWORD_PTR* result);

// ---- dialogs ----
INT_PTR WINAPI DialogBoxParamW(HINSTANCE instance, LPCWSTR name, HWND owner, DLGPROC proc,
                               LPARAM param);
INT_PTR WINAPI DialogBoxIndirectParamW(HINSTANCE instance, LPCDLGTEMPLATEW dialog, HWND owner,
                                       DLGPROC proc, LPARAM param);
HWND WINAPI CreateDialogParamW(HINSTANCE instance, LPCWSTR name, HWND parent, DLGPROC proc,
                               LPARAM param);
HWND WINAPI CreateDialogIndirectParamW(HINSTANCE instance, LPCDLGTEMPLATEW dialog, HWND parent,
                                       DLGPROC proc, LPARAM param);
BOOL WINAPI EndDialog(HWND dialog, INT_PTR result);
HWND WINAPI GetDlgItem(HWND dialog, int id);
int WINAPI GetDlgCtrlID(HWND window);
LRESULT WINAPI SendDlgItemMessageW(HWND dialog, int id, UINT message, WPARAM wParam, LPARAM lParam);
BOOL WINAPI SetDlgItemTextW(HWND dialog, int id, LPCWSTR text);
UINT WINAPI GetDlgItemTextW(HWND dialog, int id, LPWSTR text, int size);
BOOL WINAPI SetDlgItemInt(HWND dialog, int id, UINT value, BOOL isSigned);
UINT WINAPI GetDlgItemInt(HWND dialog, int id, BOOL* translated, BOOL isSigned);
BOOL WINAPI CheckDlgButton(HWND dialog, int id, UINT check);
BOOL WINAPI CheckRadioButton(HWND dialog, int first, int last, int check);
UINT WINAPI IsDlgButtonChecked(HWND dialog, int id);
HWND WINAPI GetNextDlgTabItem(HWND dialog, HWND control, BOOL previous);
HWND WINAPI GetNextDlgGroupItem(HWND dialog, HWND control, BOOL previous);
BOOL WINAPI MapDialogRect(HWND dialog, LPRECT rect);
LRESULT WINAPI DefDlgProcW(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
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
int WINAPI DrawTextW(HDC dc, LPCWSTR text, int length, LPRECT rect, UINT format);
int WINAPI FillRect(HDC dc, const RECT* rect, HBRUSH brush);
int WINAPI FrameRect(HDC dc, const RECT* rect, HBRUSH brush);
BOOL WINAPI DrawFocusRect(HDC dc, const RECT* rect);
DWORD WINAPI GetSysColor(int index);
HBRUSH WINAPI GetSysColorBrush(int index);
int WINAPI GetSystemMetrics(int index);

// ---- rectangles ----
BOOL WINAPI IsRectEmpty(const RECT* rect);
BOOL WINAPI IntersectRect(LPRECT rect, const RECT* a, const RECT* b);

}  // extern "C"
