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
