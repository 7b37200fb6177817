// Registered fonts as the printer data value "CreateFont Data" stores them: records of 232 bytes
// with a common head and a decorative or a barcode body.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

namespace kestrel {

constexpr int kFontCapacity = 70;    // CreateFontMax: fonts of both kinds together
constexpr int kFontNameLength = 32;  // UTF-16 units with the terminator
constexpr int kBarcodeParamSize = 86;
constexpr int kBarcodeLibrarySize = 40;  // bytes of the parameters that the detail library owns
constexpr uint16_t kFontDataVersion = 0x0E01;

enum FontKindCode : uint16_t { kDecorativeFont = 0, kBarcodeFont = 1 };

// One bit for each cell size; a resident font's row holds the OR of the codes that it supports.
enum FontSizeCode : uint16_t {
  kSize5x9 = 1,
  kSize17x17 = 2,
  kSize48x48 = 4,
  kSize15x22 = 8,
  kSize22x33 = 16,
  kSize20x24 = 32,
  kSize30x36 = 64,
  kSize16x16 = 128,
  kSize24x24 = 256,
  kSize22x22 = 512,
  kSizeScalable = 1024,
  kSize80x133 = 2048,
};

constexpr uint16_t kBarcodeStringFont = 0x2008;
constexpr uint16_t kBarcodeFileFont = 0x4008;

// The body of a decorative font; rows of the resident font table have the same shape.
struct DecoFontInfo {
  WCHAR DecoFontName[kFontNameLength];
  WCHAR ResiFontName[kFontNameLength];
  uint16_t Decorate;
  uint16_t Size;  // one FontSizeCode
  int16_t SizeX;  // in the unit of Unit
  int16_t SizeY;
  int16_t ExpandX;  // 1..6
  int16_t ExpandY;
  uint16_t Unit;    // MeasureUnit 0..2
  uint16_t Pitch;   // 1 fixed, 2 proportional
  uint16_t Rotate;  // degrees
  uint16_t ColorRevolution;
  uint16_t Smoothing;
  uint16_t Bold;
  uint16_t OutlineStyle;  // 0..9
  uint16_t Range;         // 1: serial numbering on
  uint16_t Mode;          // 1 hexadecimal, 0 decimal
  int16_t PrintNum;
  int16_t Incriment;
  int16_t ActivateData;
  int16_t NegativeData;
};

struct BarFontInfo {
  WCHAR BarFontName[kFontNameLength];
  uint16_t FontCategory;
  uint16_t BarcodeKind;
  uint16_t Range;
  uint16_t Mode;
  int16_t PrintNum;
  int16_t Incriment;
  int16_t ActiveData;
  int16_t NegativeData;
  uint8_t BarcodeParam[kBarcodeParamSize];
};

struct FontRecord {
  WCHAR FontName[kFontNameLength];
  uint16_t FontKind;  // FontKindCode
  union {
    DecoFontInfo Deco;
    BarFontInfo Bar;
  };
};

static_assert(sizeof(DecoFontInfo) == 166);
static_assert(sizeof(BarFontInfo) == 166);
static_assert(sizeof(FontRecord) == 232);
static_assert(offsetof(FontRecord, FontKind) == 64);
static_assert(offsetof(FontRecord, Deco) == 66);
static_assert(66 + offsetof(DecoFontInfo, ResiFontName) == 130);
static_assert(66 + offsetof(DecoFontInfo, Decorate) == 194);
static_assert(66 + offsetof(DecoFontInfo, Size) == 196);
static_assert(66 + offsetof(DecoFontInfo, SizeX) == 198);
static_assert(66 + offsetof(DecoFontInfo, SizeY) == 200);
static_assert(66 + offsetof(DecoFontInfo, ExpandX) == 202);
static_assert(66 + offsetof(DecoFontInfo, ExpandY) == 204);
static_assert(66 + offsetof(DecoFontInfo, Unit) == 206);
static_assert(66 + offsetof(DecoFontInfo, Pitch) == 208);
static_assert(66 + offsetof(DecoFontInfo, Rotate) == 210);
static_assert(66 + offsetof(DecoFontInfo, ColorRevolution) == 212);
static_assert(66 + offsetof(DecoFontInfo, Smoothing) == 214);
static_assert(66 + offsetof(DecoFontInfo, Bold) == 216);
static_assert(66 + offsetof(DecoFontInfo, OutlineStyle) == 218);
static_assert(66 + offsetof(DecoFontInfo, Range) == 220);
static_assert(66 + offsetof(DecoFontInfo, Mode) == 222);
static_assert(66 + offsetof(DecoFontInfo, PrintNum) == 224);
static_assert(66 + offsetof(DecoFontInfo, Incriment) == 226);
static_assert(66 + offsetof(DecoFontInfo, ActivateData) == 228);
static_assert(66 + offsetof(DecoFontInfo, NegativeData) == 230);
static_assert(66 + offsetof(BarFontInfo, FontCategory) == 130);
static_assert(66 + offsetof(BarFontInfo, BarcodeKind) == 132);
static_assert(66 + offsetof(BarFontInfo, Range) == 134);
static_assert(66 + offsetof(BarFontInfo, Mode) == 136);
static_assert(66 + offsetof(BarFontInfo, PrintNum) == 138);
static_assert(66 + offsetof(BarFontInfo, Incriment) == 140);
static_assert(66 + offsetof(BarFontInfo, ActiveData) == 142);
static_assert(66 + offsetof(BarFontInfo, NegativeData) == 144);
static_assert(66 + offsetof(BarFontInfo, BarcodeParam) == 146);

// Printer data "CreateFont Number": the number of records in "CreateFont Data".
struct FontNumber {
  uint16_t Total;
  uint16_t Version;  // kFontDataVersion
  uint16_t Zero;
};
static_assert(sizeof(FontNumber) == 6);

// The purpose of a registration dialog.
enum FontEditing : int { kRegisterFont = 0, kChangeFont = 1 };

// The registered fonts of a property-sheet session.
struct FontStore {
  bool Loaded;            // set by LoadFontStore; SaveFontStore refuses any other store
  FontRecord* DecoFonts;  // kFontCapacity records, or null
  int16_t DecoFontNum;
  FontRecord* BarFonts;
  int16_t BarFontNum;
  FontRecord WorkFont;  // the copy that a registration dialog edits
  FontEditing FontEditMode;
  int16_t FontEditIndex;  // index of the record that the dialog changes; -1 for a new font
  bool DecoReference;     // a new font starts as a copy of the selected font
  bool BarReference;
};

}  // namespace kestrel
