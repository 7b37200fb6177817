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
using LPDEVMODEW = DEVMODEW*;
static_assert(sizeof(DEVMODEW) == 220);

constexpr DWORD DM_ORIENTATION = 0x00000001;
constexpr DWORD DM_PAPERSIZE = 0x00000002;
constexpr DWORD DM_PAPERLENGTH = 0x00000004;
constexpr DWORD DM_PAPERWIDTH = 0x00000008;
constexpr DWORD DM_COPIES = 0x00000100;
constexpr DWORD DM_DEFAULTSOURCE = 0x00000200;
constexpr DWORD DM_PRINTQUALITY = 0x00000400;
constexpr DWORD DM_YRESOLUTION = 0x00002000;

// Modes of DocumentProperties.
constexpr DWORD DM_UPDATE = 1;
constexpr DWORD DM_COPY = 2;
constexpr DWORD DM_PROMPT = 4;
constexpr DWORD DM_MODIFY = 8;
constexpr DWORD DM_IN_BUFFER = DM_MODIFY;

constexpr SHORT DMORIENT_PORTRAIT = 1;
constexpr SHORT DMORIENT_LANDSCAPE = 2;
constexpr SHORT DMBIN_USER = 256;
constexpr SHORT DMCOLOR_MONOCHROME = 1;
constexpr SHORT DMDUP_SIMPLEX = 1;
constexpr SHORT DMTT_BITMAP = 1;
constexpr SHORT DMCOLLATE_FALSE = 0;
constexpr DWORD DMMEDIA_STANDARD = 1;
constexpr DWORD DMMEDIA_TRANSPARENCY = 2;
constexpr DWORD DMMEDIA_GLOSSY = 3;

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
static_assert(sizeof(COLORADJUSTMENT) == 24);

// Ranges of the members of a COLORADJUSTMENT and its flags (SetColorAdjustment).
constexpr WORD CA_NEGATIVE = 0x0001;
constexpr WORD CA_LOG_FILTER = 0x0002;
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
constexpr COLORREF CLR_INVALID = 0xFFFFFFFF;

struct BITMAP {
  LONG bmType;
  LONG bmWidth;
  LONG bmHeight;
  LONG bmWidthBytes;
  WORD bmPlanes;
  WORD bmBitsPixel;
  LPVOID bmBits;
};
static_assert(HasDocumentedSize<BITMAP>(24, 32));

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

using FONTENUMPROCW = int(CALLBACK*)(const LOGFONTW*, const TEXTMETRICW*, DWORD, LPARAM);
constexpr DWORD TRUETYPE_FONTTYPE = 0x0004;

constexpr int FW_NORMAL = 400;
constexpr BYTE DEFAULT_CHARSET = 1;
constexpr BYTE SHIFTJIS_CHARSET = 128;
constexpr BYTE OUT_DEFAULT_PRECIS = 0;
constexpr BYTE CLIP_DEFAULT_PRECIS = 0;
constexpr BYTE DEFAULT_QUALITY = 0;
constexpr BYTE FIXED_PITCH = 1;
constexpr BYTE VARIABLE_PITCH = 2;
constexpr BYTE FF_DONTCARE = 0x00;

constexpr int PS_SOLID = 0;
constexpr int PS_DOT = 2;

constexpr int WHITE_BRUSH = 0;
constexpr int BLACK_BRUSH = 4;
constexpr int BLACK_PEN = 7;
constexpr int SYSTEM_FONT = 13;

constexpr int TRANSPARENT = 1;
constexpr int OPAQUE = 2;
constexpr int BLACKONWHITE = 1;

constexpr DWORD SRCCOPY = 0x00CC0020;

constexpr UINT ETO_OPAQUE = 0x0002;
constexpr UINT ETO_CLIPPED = 0x0004;

extern "C" {
HDC WINAPI CreateCompatibleDC(HDC dc);
BOOL WINAPI DeleteDC(HDC dc);
int WINAPI SaveDC(HDC dc);
BOOL WINAPI RestoreDC(HDC dc, int state);

HGDIOBJ WINAPI GetStockObject(int index);
HGDIOBJ WINAPI SelectObject(HDC dc, HGDIOBJ object);
BOOL WINAPI DeleteObject(HGDIOBJ object);
int WINAPI GetObjectW(HGDIOBJ object, int size, LPVOID buffer);

HPEN WINAPI CreatePen(int style, int width, COLORREF colour);
HFONT WINAPI CreateFontW(int height, int width, int escapement, int orientation, int weight,
                         DWORD italic, DWORD underline, DWORD strikeOut, DWORD charSet,
                         DWORD outPrecision, DWORD clipPrecision, DWORD quality,
                         DWORD pitchAndFamily, LPCWSTR faceName);

COLORREF WINAPI SetTextColor(HDC dc, COLORREF colour);
COLORREF WINAPI SetBkColor(HDC dc, COLORREF colour);
int WINAPI SetBkMode(HDC dc, int mode);
int WINAPI SetStretchBltMode(HDC dc, int mode);

BOOL WINAPI Rectangle(HDC dc, int left, int top, int right, int bottom);
BOOL WINAPI MoveToEx(HDC dc, int x, int y, LPPOINT previous);
BOOL WINAPI LineTo(HDC dc, int x, int y);
BOOL WINAPI BitBlt(HDC dc, int x, int y, int width, int height, HDC source, int sourceX,
                   int sourceY, DWORD rop);
BOOL WINAPI StretchBlt(HDC dc, int x, int y, int width, int height, HDC source, int sourceX,
                       int sourceY, int sourceWidth, int sourceHeight, DWORD rop);

BOOL WINAPI TextOutW(HDC dc, int x, int y, LPCWSTR text, int length);
BOOL WINAPI ExtTextOutW(HDC dc, int x, int y, UINT options, const RECT* rect, LPCWSTR text,
                        UINT length, const INT* widths);
BOOL WINAPI GetTextMetricsW(HDC dc, LPTEXTMETRICW metrics);
BOOL WINAPI GetTextExtentPoint32W(HDC dc, LPCWSTR text, int length, LPSIZE size);
int WINAPI EnumFontFamiliesW(HDC dc, LPCWSTR family, FONTENUMPROCW callback, LPARAM param);
}
