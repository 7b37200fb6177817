// Device modes, capability indices and drawing.
#pragma once

#include <winnt.h>

// ---- device modes ----
constexpr int CCHDEVICENAME = 32;
constexpr int CCHFORMNAME = 32;

struct DEVMODEW {
  WCHAR dmDeviceName[CCHDEVICENAME];
  WORD dmSpecVersion;
  WORD dmDriverVersion;
  WORD dmSize;
  WORD dmDriverExtra;
  DWORD dmFields;
  SHORT dmOrientation;
  SHORT dmPaperSize;
  SHORT dmPaperLength;
  SHORT dmPaperWidth;
  SHORT dmScale;
  SHORT dmCopies;
  SHORT dmDefaultSource;
  SHORT dmPrintQuality;
  SHORT dmColor;
  SHORT dmDuplex;
  SHORT dmYResolution;
  SHORT dmTTOption;
  SHORT dmCollate;
  WCHAR dmFormName[CCHFORMNAME];
  WORD dmLogPixels;
  DWORD dmBitsPerPel;
  DWORD dmPelsWidth;
  DWORD dmPelsHeight;
  union {
    DWORD dmDisplayFlags;
    DWORD dmNup;
  };
  DWORD dmDisplayFrequency;
  DWORD dmICMMethod;
  DWORD dmICMIntent;
  DWORD dmMediaType;
  DWORD dmDitherType;
  DWORD dmReserved1;
  DWORD dmReserved2;
  DWORD dmPanningWidth;
  DWORD dmPanningHeight;
};
using PDEVMODEW = DEVMODEW*;
using LPDEVMODEW = DEVMODEW*;
static_assert(sizeof(DEVMODEW) == 220);

constexpr DWORD DM_ORIENTATION = 0x00000001;
constexpr DWORD DM_PAPERSIZE = 0x00000002;
constexpr DWORD DM_PAPERLENGTH = 0x00000004;
constexpr DWORD DM_PAPERWIDTH = 0x00000008;
constexpr DWORD DM_SCALE = 0x00000010;
constexpr DWORD DM_POSITION = 0x00000020;
constexpr DWORD DM_NUP = 0x00000040;
constexpr DWORD DM_DISPLAYORIENTATION = 0x00000080;
constexpr DWORD DM_COPIES = 0x00000100;
constexpr DWORD DM_DEFAULTSOURCE = 0x00000200;
constexpr DWORD DM_PRINTQUALITY = 0x00000400;
constexpr DWORD DM_COLOR = 0x00000800;
constexpr DWORD DM_DUPLEX = 0x00001000;
constexpr DWORD DM_YRESOLUTION = 0x00002000;
constexpr DWORD DM_TTOPTION = 0x00004000;
constexpr DWORD DM_COLLATE = 0x00008000;
constexpr DWORD DM_FORMNAME = 0x00010000;
constexpr DWORD DM_LOGPIXELS = 0x00020000;
constexpr DWORD DM_BITSPERPEL = 0x00040000;
constexpr DWORD DM_PELSWIDTH = 0x00080000;
constexpr DWORD DM_PELSHEIGHT = 0x00100000;
constexpr DWORD DM_DISPLAYFLAGS = 0x00200000;
constexpr DWORD DM_DISPLAYFREQUENCY = 0x00400000;
constexpr DWORD DM_ICMMETHOD = 0x00800000;
constexpr DWORD DM_ICMINTENT = 0x01000000;
constexpr DWORD DM_MEDIATYPE = 0x02000000;
constexpr DWORD DM_DITHERTYPE = 0x04000000;

// Modes of DocumentProperties.
constexpr DWORD DM_UPDATE = 1;
constexpr DWORD DM_COPY = 2;
constexpr DWORD DM_PROMPT = 4;
constexpr DWORD DM_MODIFY = 8;
constexpr DWORD DM_IN_BUFFER = DM_MODIFY;
constexpr DWORD DM_IN_PROMPT = DM_PROMPT;
constexpr DWORD DM_OUT_BUFFER = DM_COPY;
constexpr DWORD DM_OUT_DEFAULT = DM_UPDATE;

constexpr SHORT DMORIENT_PORTRAIT = 1;
constexpr SHORT DMORIENT_LANDSCAPE = 2;
constexpr SHORT DMPAPER_A4 = 9;
constexpr SHORT DMPAPER_USER = 256;
constexpr SHORT DMBIN_USER = 256;
constexpr SHORT DMCOLOR_MONOCHROME = 1;
constexpr SHORT DMCOLOR_COLOR = 2;
constexpr SHORT DMDUP_SIMPLEX = 1;
constexpr SHORT DMTT_BITMAP = 1;
constexpr SHORT DMTT_DOWNLOAD = 2;
constexpr SHORT DMTT_SUBDEV = 3;
constexpr SHORT DMCOLLATE_FALSE = 0;
constexpr SHORT DMCOLLATE_TRUE = 1;
constexpr DWORD DMMEDIA_STANDARD = 1;
constexpr DWORD DMMEDIA_TRANSPARENCY = 2;
constexpr DWORD DMMEDIA_GLOSSY = 3;
constexpr DWORD DMMEDIA_USER = 256;

// Indices of DeviceCapabilities.
constexpr WORD DC_FIELDS = 1;
constexpr WORD DC_PAPERS = 2;
constexpr WORD DC_PAPERSIZE = 3;
constexpr WORD DC_MINEXTENT = 4;
constexpr WORD DC_MAXEXTENT = 5;
constexpr WORD DC_BINS = 6;
constexpr WORD DC_DUPLEX = 7;
constexpr WORD DC_SIZE = 8;
constexpr WORD DC_EXTRA = 9;
constexpr WORD DC_VERSION = 10;
constexpr WORD DC_DRIVER = 11;
constexpr WORD DC_BINNAMES = 12;
constexpr WORD DC_ENUMRESOLUTIONS = 13;
constexpr WORD DC_FILEDEPENDENCIES = 14;
constexpr WORD DC_TRUETYPE = 15;
constexpr WORD DC_PAPERNAMES = 16;
constexpr WORD DC_ORIENTATION = 17;
constexpr WORD DC_COPIES = 18;
constexpr WORD DC_BINADJUST = 19;
constexpr WORD DC_EMF_COMPLIANT = 20;
constexpr WORD DC_DATATYPE_PRODUCED = 21;
constexpr WORD DC_COLLATE = 22;
constexpr WORD DC_MANUFACTURER = 23;
constexpr WORD DC_MODEL = 24;
constexpr WORD DC_PERSONALITY = 25;
constexpr WORD DC_PRINTRATE = 26;
constexpr WORD DC_PRINTRATEUNIT = 27;
constexpr WORD DC_PRINTERMEM = 28;
constexpr WORD DC_MEDIAREADY = 29;
constexpr WORD DC_STAPLE = 30;
constexpr WORD DC_PRINTRATEPPM = 31;
constexpr WORD DC_COLORDEVICE = 32;
constexpr WORD DC_NUP = 33;
constexpr WORD DC_MEDIATYPENAMES = 34;
constexpr WORD DC_MEDIATYPES = 35;

constexpr DWORD DCTT_BITMAP = 0x00000001;
constexpr DWORD DCTT_DOWNLOAD = 0x00000002;
constexpr DWORD DCTT_SUBDEV = 0x00000004;

struct COLORADJUSTMENT {
  WORD caSize;
  WORD caFlags;
  WORD caIlluminantIndex;
  WORD caRedGamma;
  WORD caGreenGamma;
  WORD caBlueGamma;
  WORD caReferenceBlack;
  WORD caReferenceWhite;
  SHORT caContrast;
  SHORT caBrightness;
  SHORT caColorfulness;
  SHORT caRedGreenTint;
};
using PCOLORADJUSTMENT = COLORADJUSTMENT*;
static_assert(sizeof(COLORADJUSTMENT) == 24);

// Ranges of the members of a COLORADJUSTMENT and its flags (SetColorAdjustment).
constexpr WORD CA_NEGATIVE = 0x0001;
constexpr WORD CA_LOG_FILTER = 0x0002;
constexpr WORD ILLUMINANT_DEVICE_DEFAULT = 0;
constexpr WORD ILLUMINANT_MAX_INDEX = 8;
constexpr WORD RGB_GAMMA_MIN = 2500;
constexpr WORD RGB_GAMMA_MAX = 65000;
constexpr WORD REFERENCE_WHITE_MIN = 6000;
constexpr WORD REFERENCE_WHITE_MAX = 10000;
constexpr WORD REFERENCE_BLACK_MIN = 0;
constexpr WORD REFERENCE_BLACK_MAX = 4000;
constexpr SHORT COLOR_ADJ_MIN = -100;
constexpr SHORT COLOR_ADJ_MAX = 100;

// ---- drawing ----
constexpr COLORREF RGB(int red, int green, int blue) {
  return static_cast<COLORREF>((red & 0xFF) | ((green & 0xFF) << 8) | ((blue & 0xFF) << 16));
}
constexpr BYTE GetRValue(COLORREF colour) { return static_cast<BYTE>(colour & 0xFF); }
constexpr BYTE GetGValue(COLORREF colour) { return static_cast<BYTE>((colour >> 8) & 0xFF); }
constexpr BYTE GetBValue(COLORREF colour) { return static_cast<BYTE>((colour >> 16) & 0xFF); }
constexpr COLORREF CLR_INVALID = 0xFFFFFFFF;
#define GDI_ERROR (0xFFFFFFFFU)
#define HGDI_ERROR reinterpret_cast<HGDIOBJ>(static_cast<LONG_PTR>(-1))

struct BITMAP {
  LONG bmType;
  LONG bmWidth;
  LONG bmHeight;
  LONG bmWidthBytes;
  WORD bmPlanes;
  WORD bmBitsPixel;
  LPVOID bmBits;
};
using PBITMAP = BITMAP*;
using LPBITMAP = BITMAP*;

struct BITMAPINFOHEADER {
  DWORD biSize;
  LONG biWidth;
  LONG biHeight;
  WORD biPlanes;
  WORD biBitCount;
  DWORD biCompression;
  DWORD biSizeImage;
  LONG biXPelsPerMeter;
  LONG biYPelsPerMeter;
  DWORD biClrUsed;
  DWORD biClrImportant;
};
static_assert(sizeof(BITMAPINFOHEADER) == 40);
constexpr DWORD BI_RGB = 0;

struct LOGPEN {
  UINT lopnStyle;
  POINT lopnWidth;
  COLORREF lopnColor;
};
struct LOGBRUSH {
  UINT lbStyle;
  COLORREF lbColor;
  ULONG_PTR lbHatch;
};

constexpr int LF_FACESIZE = 32;
constexpr int LF_FULLFACESIZE = 64;
struct LOGFONTW {
  LONG lfHeight;
  LONG lfWidth;
  LONG lfEscapement;
  LONG lfOrientation;
  LONG lfWeight;
  BYTE lfItalic;
  BYTE lfUnderline;
  BYTE lfStrikeOut;
  BYTE lfCharSet;
  BYTE lfOutPrecision;
  BYTE lfClipPrecision;
  BYTE lfQuality;
  BYTE lfPitchAndFamily;
  WCHAR lfFaceName[LF_FACESIZE];
};
using PLOGFONTW = LOGFONTW*;
using LPLOGFONTW = LOGFONTW*;
using LOGFONT = LOGFONTW;
static_assert(sizeof(LOGFONTW) == 92);

struct ENUMLOGFONTW {
  LOGFONTW elfLogFont;
  WCHAR elfFullName[LF_FULLFACESIZE];
  WCHAR elfStyle[LF_FACESIZE];
};

struct TEXTMETRICW {
  LONG tmHeight;
  LONG tmAscent;
  LONG tmDescent;
  LONG tmInternalLeading;
  LONG tmExternalLeading;
  LONG tmAveCharWidth;
  LONG tmMaxCharWidth;
  LONG tmWeight;
  LONG tmOverhang;
  LONG tmDigitizedAspectX;
  LONG tmDigitizedAspectY;
  WCHAR tmFirstChar;
  WCHAR tmLastChar;
  WCHAR tmDefaultChar;
  WCHAR tmBreakChar;
  BYTE tmItalic;
  BYTE tmUnderlined;
  BYTE tmStruckOut;
  BYTE tmPitchAndFamily;
  BYTE tmCharSet;
};
using LPTEXTMETRICW = TEXTMETRICW*;
using TEXTMETRIC = TEXTMETRICW;

using FONTENUMPROCW = int(CALLBACK*)(const LOGFONTW*, const TEXTMETRICW*, DWORD, LPARAM);
constexpr DWORD RASTER_FONTTYPE = 0x0001;
constexpr DWORD DEVICE_FONTTYPE = 0x0002;
constexpr DWORD TRUETYPE_FONTTYPE = 0x0004;

constexpr int FW_DONTCARE = 0;
constexpr int FW_NORMAL = 400;
constexpr int FW_BOLD = 700;
constexpr BYTE ANSI_CHARSET = 0;
constexpr BYTE DEFAULT_CHARSET = 1;
constexpr BYTE SHIFTJIS_CHARSET = 128;
constexpr BYTE OUT_DEFAULT_PRECIS = 0;
constexpr BYTE CLIP_DEFAULT_PRECIS = 0;
constexpr BYTE DEFAULT_QUALITY = 0;
constexpr BYTE PROOF_QUALITY = 2;
constexpr BYTE DEFAULT_PITCH = 0;
constexpr BYTE FIXED_PITCH = 1;
constexpr BYTE VARIABLE_PITCH = 2;
constexpr BYTE FF_DONTCARE = 0x00;
constexpr BYTE FF_ROMAN = 0x10;
constexpr BYTE FF_SWISS = 0x20;
constexpr BYTE FF_MODERN = 0x30;
constexpr BYTE TMPF_FIXED_PITCH = 0x01;  // set: the pitch is variable
constexpr BYTE TMPF_VECTOR = 0x02;
constexpr BYTE TMPF_TRUETYPE = 0x04;

constexpr int PS_SOLID = 0;
constexpr int PS_DASH = 1;
constexpr int PS_DOT = 2;
constexpr int PS_DASHDOT = 3;
constexpr int PS_DASHDOTDOT = 4;
constexpr int PS_NULL = 5;
constexpr int PS_INSIDEFRAME = 6;
constexpr UINT BS_SOLID = 0;
constexpr UINT BS_NULL = 1;
constexpr UINT BS_HOLLOW = BS_NULL;

constexpr int WHITE_BRUSH = 0;
constexpr int LTGRAY_BRUSH = 1;
constexpr int GRAY_BRUSH = 2;
constexpr int DKGRAY_BRUSH = 3;
constexpr int BLACK_BRUSH = 4;
constexpr int NULL_BRUSH = 5;
constexpr int HOLLOW_BRUSH = NULL_BRUSH;
constexpr int WHITE_PEN = 6;
constexpr int BLACK_PEN = 7;
constexpr int NULL_PEN = 8;
constexpr int ANSI_FIXED_FONT = 11;
constexpr int ANSI_VAR_FONT = 12;
constexpr int SYSTEM_FONT = 13;
constexpr int DEFAULT_GUI_FONT = 17;

constexpr int TRANSPARENT = 1;
constexpr int OPAQUE = 2;
constexpr int MM_TEXT = 1;
constexpr int BLACKONWHITE = 1;
constexpr int WHITEONBLACK = 2;
constexpr int COLORONCOLOR = 3;
constexpr int HALFTONE = 4;
constexpr int STRETCH_ANDSCANS = BLACKONWHITE;
constexpr int STRETCH_ORSCANS = WHITEONBLACK;
constexpr int STRETCH_DELETESCANS = COLORONCOLOR;
constexpr int STRETCH_HALFTONE = HALFTONE;

constexpr DWORD SRCCOPY = 0x00CC0020;
constexpr DWORD SRCPAINT = 0x00EE0086;
constexpr DWORD SRCAND = 0x008800C6;
constexpr DWORD PATCOPY = 0x00F00021;
constexpr DWORD BLACKNESS = 0x00000042;
constexpr DWORD WHITENESS = 0x00FF0062;

constexpr UINT ETO_OPAQUE = 0x0002;
constexpr UINT ETO_CLIPPED = 0x0004;
constexpr UINT TA_LEFT = 0;
constexpr UINT TA_TOP = 0;
constexpr UINT TA_RIGHT = 2;
constexpr UINT TA_CENTER = 6;
constexpr UINT TA_BOTTOM = 8;
constexpr UINT TA_BASELINE = 24;

constexpr int NULLREGION = 1;
constexpr int SIMPLEREGION = 2;

constexpr UINT OBJ_PEN = 1;
constexpr UINT OBJ_BRUSH = 2;
constexpr UINT OBJ_DC = 3;
constexpr UINT OBJ_FONT = 6;
constexpr UINT OBJ_BITMAP = 7;
constexpr UINT OBJ_REGION = 8;
constexpr UINT OBJ_MEMDC = 10;

constexpr int HORZRES = 8;
constexpr int VERTRES = 10;
constexpr int BITSPIXEL = 12;
constexpr int PLANES = 14;
constexpr int LOGPIXELSX = 88;
constexpr int LOGPIXELSY = 90;

extern "C" {
HDC WINAPI CreateCompatibleDC(HDC dc);
BOOL WINAPI DeleteDC(HDC dc);
int WINAPI SaveDC(HDC dc);
BOOL WINAPI RestoreDC(HDC dc, int state);
int WINAPI GetDeviceCaps(HDC dc, int index);
int WINAPI SetMapMode(HDC dc, int mode);
int WINAPI GetMapMode(HDC dc);

HGDIOBJ WINAPI GetStockObject(int index);
HGDIOBJ WINAPI SelectObject(HDC dc, HGDIOBJ object);
HGDIOBJ WINAPI GetCurrentObject(HDC dc, UINT type);
UINT WINAPI GetObjectType(HGDIOBJ object);
BOOL WINAPI DeleteObject(HGDIOBJ object);
int WINAPI GetObjectW(HGDIOBJ object, int size, LPVOID buffer);

HPEN WINAPI CreatePen(int style, int width, COLORREF colour);
HPEN WINAPI CreatePenIndirect(const LOGPEN* pen);
HBRUSH WINAPI CreateSolidBrush(COLORREF colour);
HBRUSH WINAPI CreateBrushIndirect(const LOGBRUSH* brush);
HBITMAP WINAPI CreateBitmap(int width, int height, UINT planes, UINT bitsPerPixel,
                            const void* bits);
HBITMAP WINAPI CreateCompatibleBitmap(HDC dc, int width, int height);
HFONT WINAPI CreateFontW(int height, int width, int escapement, int orientation, int weight,
                         DWORD italic, DWORD underline, DWORD strikeOut, DWORD charSet,
                         DWORD outPrecision, DWORD clipPrecision, DWORD quality,
                         DWORD pitchAndFamily, LPCWSTR faceName);
HFONT WINAPI CreateFontIndirectW(const LOGFONTW* font);

COLORREF WINAPI SetTextColor(HDC dc, COLORREF colour);
COLORREF WINAPI GetTextColor(HDC dc);
COLORREF WINAPI SetBkColor(HDC dc, COLORREF colour);
COLORREF WINAPI GetBkColor(HDC dc);
int WINAPI SetBkMode(HDC dc, int mode);
int WINAPI GetBkMode(HDC dc);
UINT WINAPI SetTextAlign(HDC dc, UINT align);
int WINAPI SetStretchBltMode(HDC dc, int mode);
int WINAPI GetStretchBltMode(HDC dc);

BOOL WINAPI Rectangle(HDC dc, int left, int top, int right, int bottom);
BOOL WINAPI MoveToEx(HDC dc, int x, int y, LPPOINT previous);
BOOL WINAPI LineTo(HDC dc, int x, int y);
BOOL WINAPI Polyline(HDC dc, const POINT* points, int count);
BOOL WINAPI PatBlt(HDC dc, int x, int y, int width, int height, DWORD rop);
BOOL WINAPI BitBlt(HDC dc, int x, int y, int width, int height, HDC source, int sourceX,
                   int sourceY, DWORD rop);
BOOL WINAPI StretchBlt(HDC dc, int x, int y, int width, int height, HDC source, int sourceX,
                       int sourceY, int sourceWidth, int sourceHeight, DWORD rop);

BOOL WINAPI TextOutW(HDC dc, int x, int y, LPCWSTR text, int length);
BOOL WINAPI ExtTextOutW(HDC dc, int x, int y, UINT options, const RECT* rect, LPCWSTR text,
                        UINT length, const INT* widths);
BOOL WINAPI GetTextMetricsW(HDC dc, LPTEXTMETRICW metrics);
BOOL WINAPI GetTextExtentPoint32W(HDC dc, LPCWSTR text, int length, LPSIZE size);
BOOL WINAPI GetCharWidth32W(HDC dc, UINT first, UINT last, LPINT widths);
int WINAPI GetTextFaceW(HDC dc, int size, LPWSTR name);
int WINAPI EnumFontFamiliesW(HDC dc, LPCWSTR family, FONTENUMPROCW callback, LPARAM param);

HRGN WINAPI CreateRectRgn(int left, int top, int right, int bottom);
HRGN WINAPI CreateRectRgnIndirect(const RECT* rect);
int WINAPI SelectClipRgn(HDC dc, HRGN region);
int WINAPI IntersectClipRect(HDC dc, int left, int top, int right, int bottom);
int WINAPI GetClipBox(HDC dc, LPRECT rect);
}
