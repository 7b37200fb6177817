// The settings record that applications, the spooler and the rendering module exchange, and the
// block that appends the printer-level part. Both are stored formats: little-endian, with fixed
// offsets and sizes.
#pragma once

#include <windows.h>
#include <winddi.h>

#include <cstddef>
#include <cstdint>

#include "paper/paper_info.h"

namespace kestrel {

constexpr uint32_t SETTINGS_SIGNATURE = 0x28116119;
constexpr WORD kSpecVersion = 0x0401;    // dmSpecVersion of a DEVMODEW of 220 bytes
constexpr WORD kDriverVersion = 0x0E01;  // dmDriverVersion
constexpr WORD kPublicSize = 220;        // dmSize
constexpr WORD kPrivateSize = 232;       // dmDriverExtra
constexpr DWORD kRecordSize = 452;
constexpr DWORD kPrinterPartSize = 3338;
constexpr DWORD kBlockSize = 3792;

#pragma pack(push, 2)
// The private part of a settings record, at offset 220.
struct PrivateDevMode {
  int16_t PaperID;  // 256: the free-size paper; 257 + i: registered paper i
  PaperInfo FreePaper;
  int16_t Copies;
  int16_t nVertBase;  // base points and offsets are in dots
  int16_t nHorzBase;
  int16_t Orient;  // DMORIENT_PORTRAIT 1, DMORIENT_LANDSCAPE 2
  int16_t nFlip;   // 1: print rotated by 180 degrees
  int16_t nPeelOffset;
  int16_t nTearOffset;
  int16_t nPitchOffset;
  int16_t nPrintSpeed;
  int16_t nSensor;
  int16_t nMoveMode;
  int16_t Reserved0;  // always 0
  int16_t Dither;
  int16_t nColorText;
  COLORADJUSTMENT ColorAdjust;
  int16_t nTSMode;  // 1: confirm each page before issuing the next
  int16_t Position;
  int16_t nCompulsory;   // 1: the stored settings take precedence over an application's
  int16_t Reserved1[4];  // always 0
  uint32_t Signature;
};

// Has the alignment of its DEVMODEW in spite of the packing.
struct alignas(4) SettingsRecord {
  DEVMODEW Public;
  PrivateDevMode Private;
};

enum PrinterMode : uint16_t { kTearOffMode = 0, kContinuousMode = 1, kPeelMode = 2 };

// The printer-level part, stored byte for byte as the printer data value "Private DevMode".
struct PrinterSettingsPart {
  int16_t PaperNum;  // not validated; PaperCount returns it clamped
  PaperInfo Papers[kPaperCapacity];
  uint16_t HeadDensity;  // dots per inch, 203 or 305
  uint16_t Mecha;        // PrinterMode
  DEVHTINFO HTInfo;      // misaligned; access it through driver/halftone_info.h
};

struct alignas(4) DriverSettingsBlock {
  SettingsRecord Record;
  PrinterSettingsPart Printer;
  uint16_t Reserved;  // always 0
};
#pragma pack(pop)

static_assert(sizeof(DEVMODEW) == kPublicSize);
static_assert(sizeof(COLORADJUSTMENT) == 24);
static_assert(sizeof(DEVHTINFO) == 132);
static_assert(sizeof(PrivateDevMode) == kPrivateSize);
static_assert(sizeof(SettingsRecord) == kRecordSize);
static_assert(sizeof(PrinterSettingsPart) == kPrinterPartSize);
static_assert(sizeof(DriverSettingsBlock) == kBlockSize);

// Offsets within a settings record; records of other drivers and versions are read by offset.
constexpr size_t kPrivateOffset = offsetof(SettingsRecord, Private);
static_assert(kPrivateOffset == 220);
static_assert(kPrivateOffset + offsetof(PrivateDevMode, FreePaper) == 222);
static_assert(kPrivateOffset + offsetof(PrivateDevMode, Copies) == 382);
static_assert(kPrivateOffset + offsetof(PrivateDevMode, nVertBase) == 384);
static_assert(kPrivateOffset + offsetof(PrivateDevMode, nHorzBase) == 386);
static_assert(kPrivateOffset + offsetof(PrivateDevMode, Orient) == 388);
static_assert(kPrivateOffset + offsetof(PrivateDevMode, nFlip) == 390);
static_assert(kPrivateOffset + offsetof(PrivateDevMode, nPeelOffset) == 392);
static_assert(kPrivateOffset + offsetof(PrivateDevMode, nTearOffset) == 394);
static_assert(kPrivateOffset + offsetof(PrivateDevMode, nPitchOffset) == 396);
static_assert(kPrivateOffset + offsetof(PrivateDevMode, nPrintSpeed) == 398);
static_assert(kPrivateOffset + offsetof(PrivateDevMode, nSensor) == 400);
static_assert(kPrivateOffset + offsetof(PrivateDevMode, nMoveMode) == 402);
static_assert(kPrivateOffset + offsetof(PrivateDevMode, Reserved0) == 404);
static_assert(kPrivateOffset + offsetof(PrivateDevMode, Dither) == 406);
static_assert(kPrivateOffset + offsetof(PrivateDevMode, nColorText) == 408);
static_assert(kPrivateOffset + offsetof(PrivateDevMode, ColorAdjust) == 410);
static_assert(kPrivateOffset + offsetof(PrivateDevMode, nTSMode) == 434);
static_assert(kPrivateOffset + offsetof(PrivateDevMode, Position) == 436);
static_assert(kPrivateOffset + offsetof(PrivateDevMode, nCompulsory) == 438);
static_assert(kPrivateOffset + offsetof(PrivateDevMode, Reserved1) == 440);
static_assert(kPrivateOffset + offsetof(PrivateDevMode, Signature) == 448);
static_assert(offsetof(DriverSettingsBlock, Printer) == 452);
static_assert(452 + offsetof(PrinterSettingsPart, Papers) == 454);
static_assert(452 + offsetof(PrinterSettingsPart, HeadDensity) == 3654);
static_assert(452 + offsetof(PrinterSettingsPart, Mecha) == 3656);
static_assert(452 + offsetof(PrinterSettingsPart, HTInfo) == 3658);
static_assert(offsetof(DriverSettingsBlock, Reserved) == 3790);

}  // namespace kestrel
