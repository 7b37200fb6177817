// The record of a label paper in the settings block and in the printer data value "Private
// DevMode".
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

namespace kestrel {

constexpr int kPaperCapacity = 20;     // registered papers of one printer
constexpr int kPaperNameLength = 64;   // UTF-16 units with the terminator
constexpr int16_t kFreePaperId = 256;  // the free-size paper; DMPAPER_USER as DEVMODEW documents it
constexpr int16_t kFirstPaperId = 257;  // the registered paper in slot 0
constexpr WCHAR kFreePaperName[] = TEXT("フリーサイズ");

// Unit codes of measured values; kPlain stands for numbers without a unit.
enum MeasureUnit : uint16_t { kMillimetre = 0, kInch = 1, kDot = 2, kPlain = 3 };

#pragma pack(push, 2)
struct PaperInfo {
  WCHAR PaperName[kPaperNameLength];
  uint16_t PaperKind;   // print-darkness grade: 0 A, 1 B, 2 C, 255 the printer's own setting
  uint16_t Thickness;   // print-darkness level 1..5
  int16_t LabelWidth;   // the eight measured fields are in 0.1 mm, 0.001 in
  int16_t LabelHeight;  // or dots, as Unit says
  int16_t GapSize;
  int16_t EyeMarkSize;
  uint16_t Unit;  // MeasureUnit
  int16_t PrintableLeft;
  int16_t PrintableTop;
  int16_t PrintableWidth;
  int16_t PrintableHeight;
  uint16_t Yoshi;
  uint16_t Reserved[3];  // always 0
  uint16_t UserDef;      // 1 registered by the user, 0 fixed by the driver
};
#pragma pack(pop)

static_assert(sizeof(PaperInfo) == 160);
static_assert(offsetof(PaperInfo, PaperKind) == 128);
static_assert(offsetof(PaperInfo, Thickness) == 130);
static_assert(offsetof(PaperInfo, LabelWidth) == 132);
static_assert(offsetof(PaperInfo, LabelHeight) == 134);
static_assert(offsetof(PaperInfo, GapSize) == 136);
static_assert(offsetof(PaperInfo, EyeMarkSize) == 138);
static_assert(offsetof(PaperInfo, Unit) == 140);
static_assert(offsetof(PaperInfo, PrintableLeft) == 142);
static_assert(offsetof(PaperInfo, PrintableTop) == 144);
static_assert(offsetof(PaperInfo, PrintableWidth) == 146);
static_assert(offsetof(PaperInfo, PrintableHeight) == 148);
static_assert(offsetof(PaperInfo, Yoshi) == 150);
static_assert(offsetof(PaperInfo, Reserved) == 152);
static_assert(offsetof(PaperInfo, UserDef) == 158);

}  // namespace kestrel
