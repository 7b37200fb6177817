// Which fields of the settings block the backup file and the set-up file carry, under which keys
// and where they lie. Both files share the tables; each reads and writes them by its own rules.
#pragma once

#include <winddi.h>

#include <cstddef>
#include <cstdint>

#include "driver/halftone_info.h"
#include "driver/settings_block.h"
#include "paper/paper_info.h"

namespace kestrel {

enum class FieldType : uint8_t {
  kInt16,
  kInt32,
  kTriple,  // three 32-bit numbers
  kName,    // UTF-16, terminated within its width
};

struct FieldKey {
  const char* key;  // ASCII, case counts
  FieldType type;
  uint16_t offset;  // from the start of the block, or of the record that the table is for
};

// Sections of both files; those of single papers are named "PAPER%02d".
constexpr WCHAR kVersionSection[] = TEXT("ﾊﾞｰｼﾞｮﾝ情報");
constexpr WCHAR kDriverSection[] = TEXT("ﾄﾞﾗｲﾊﾞ情報");
constexpr WCHAR kFreePaperSection[] = TEXT("ﾌﾘｰｻｲｽﾞ用紙");
constexpr WCHAR kDeviceSection[] = TEXT("ﾃﾞﾊﾞｲｽ情報");
constexpr WCHAR kHalftoneSection[] = TEXT("ﾊｰﾌﾄｰﾝ情報");
constexpr WCHAR kPaperCountSection[] = TEXT("用紙登録数");
constexpr WCHAR kSyncSection[] = TEXT("同期印刷");

constexpr size_t kPrinterOffset = offsetof(DriverSettingsBlock, Printer);
constexpr size_t kColorAdjustOffset = kPrivateOffset + offsetof(PrivateDevMode, ColorAdjust);

// Keys of the driver section which a backup file must have to be loaded, in the order of the file.
inline constexpr FieldKey kDriverKeys[] = {
    {"PaperID", FieldType::kInt16, kPrivateOffset + offsetof(PrivateDevMode, PaperID)},
    {"Copies", FieldType::kInt16, kPrivateOffset + offsetof(PrivateDevMode, Copies)},
    {"VerticalBase", FieldType::kInt16, kPrivateOffset + offsetof(PrivateDevMode, nVertBase)},
    {"HorizonBase", FieldType::kInt16, kPrivateOffset + offsetof(PrivateDevMode, nHorzBase)},
    {"Orient", FieldType::kInt16, kPrivateOffset + offsetof(PrivateDevMode, Orient)},
    {"Flip", FieldType::kInt16, kPrivateOffset + offsetof(PrivateDevMode, nFlip)},
    {"PeelOffset", FieldType::kInt16, kPrivateOffset + offsetof(PrivateDevMode, nPeelOffset)},
    {"TearOffset", FieldType::kInt16, kPrivateOffset + offsetof(PrivateDevMode, nTearOffset)},
    {"PitchOffset", FieldType::kInt16, kPrivateOffset + offsetof(PrivateDevMode, nPitchOffset)},
    {"PrintSpeed", FieldType::kInt16, kPrivateOffset + offsetof(PrivateDevMode, nPrintSpeed)},
    {"SensorKind", FieldType::kInt16, kPrivateOffset + offsetof(PrivateDevMode, nSensor)},
    {"MoveMode", FieldType::kInt16, kPrivateOffset + offsetof(PrivateDevMode, nMoveMode)},
    {"Dither", FieldType::kInt16, kPrivateOffset + offsetof(PrivateDevMode, Dither)},
    {"ColorText", FieldType::kInt16, kPrivateOffset + offsetof(PrivateDevMode, nColorText)},
};
// Those that it may lack.
inline constexpr FieldKey kCompulsoryKey = {"CompulsorySet", FieldType::kInt16,
                                            kPrivateOffset + offsetof(PrivateDevMode, nCompulsory)};
inline constexpr FieldKey kPositionKey = {"Position", FieldType::kInt16,
                                          kPrivateOffset + offsetof(PrivateDevMode, Position)};

// Keys of a paper; offsets count from its start.
inline constexpr FieldKey kPaperKeys[] = {
    {"PaperName", FieldType::kName, offsetof(PaperInfo, PaperName)},
    {"PaperKind", FieldType::kInt16, offsetof(PaperInfo, PaperKind)},
    {"Thickness", FieldType::kInt16, offsetof(PaperInfo, Thickness)},
    {"LabelWidth", FieldType::kInt16, offsetof(PaperInfo, LabelWidth)},
    {"LabelHeight", FieldType::kInt16, offsetof(PaperInfo, LabelHeight)},
    {"GapSize", FieldType::kInt16, offsetof(PaperInfo, GapSize)},
    {"EyeMarkSize", FieldType::kInt16, offsetof(PaperInfo, EyeMarkSize)},
    {"Unit", FieldType::kInt16, offsetof(PaperInfo, Unit)},
    {"PrintableLeft", FieldType::kInt16, offsetof(PaperInfo, PrintableLeft)},
    {"PrintableTop", FieldType::kInt16, offsetof(PaperInfo, PrintableTop)},
    {"PrintableWidth", FieldType::kInt16, offsetof(PaperInfo, PrintableWidth)},
    {"PrintableHeight", FieldType::kInt16, offsetof(PaperInfo, PrintableHeight)},
    {"Yoshi", FieldType::kInt16, offsetof(PaperInfo, Yoshi)},
    {"UserDef", FieldType::kInt16, offsetof(PaperInfo, UserDef)},
};

inline constexpr FieldKey kPaperCountKey = {
    "PaperNum", FieldType::kInt16, kPrinterOffset + offsetof(PrinterSettingsPart, PaperNum)};

inline constexpr FieldKey kDeviceKeys[] = {
    {"HeadDensity", FieldType::kInt16, kPrinterOffset + offsetof(PrinterSettingsPart, HeadDensity)},
    {"Mecha", FieldType::kInt16, kPrinterOffset + offsetof(PrinterSettingsPart, Mecha)},
};

inline constexpr FieldKey kHalftoneInfoKeys[] = {
    {"HTInfo.HalfToneFlags", FieldType::kInt32, kHalftoneOffset + offsetof(DEVHTINFO, HTFlags)},
    {"HTInfo.HalfTonePatternSize", FieldType::kInt32,
     kHalftoneOffset + offsetof(DEVHTINFO, HTPatternSize)},
    {"HTInfo.DevPelsDPI", FieldType::kInt32, kHalftoneOffset + offsetof(DEVHTINFO, DevPelsDPI)},
    {"HTInfo.ColorInfo.Red", FieldType::kTriple,
     kHalftoneOffset + offsetof(DEVHTINFO, ColorInfo.Red)},
    {"HTInfo.ColorInfo.Green", FieldType::kTriple,
     kHalftoneOffset + offsetof(DEVHTINFO, ColorInfo.Green)},
    {"HTInfo.ColorInfo.Blue", FieldType::kTriple,
     kHalftoneOffset + offsetof(DEVHTINFO, ColorInfo.Blue)},
    {"HTInfo.ColorInfo.Cyan", FieldType::kTriple,
     kHalftoneOffset + offsetof(DEVHTINFO, ColorInfo.Cyan)},
    {"HTInfo.ColorInfo.Magenta", FieldType::kTriple,
     kHalftoneOffset + offsetof(DEVHTINFO, ColorInfo.Magenta)},
    {"HTInfo.ColorInfo.Yellow", FieldType::kTriple,
     kHalftoneOffset + offsetof(DEVHTINFO, ColorInfo.Yellow)},
    {"HTInfo.ColorInfo.AlignmentWhite", FieldType::kTriple,
     kHalftoneOffset + offsetof(DEVHTINFO, ColorInfo.AlignmentWhite)},
    {"HTInfo.ColorInfo.RedGamma", FieldType::kInt32,
     kHalftoneOffset + offsetof(DEVHTINFO, ColorInfo.RedGamma)},
    {"HTInfo.ColorInfo.GreenGamma", FieldType::kInt32,
     kHalftoneOffset + offsetof(DEVHTINFO, ColorInfo.GreenGamma)},
    {"HTInfo.ColorInfo.BlueGamma", FieldType::kInt32,
     kHalftoneOffset + offsetof(DEVHTINFO, ColorInfo.BlueGamma)},
    {"HTInfo.ColorInfo.MagentaInCyanDye", FieldType::kInt32,
     kHalftoneOffset + offsetof(DEVHTINFO, ColorInfo.MagentaInCyanDye)},
    {"HTInfo.ColorInfo.YellowInCyanDye", FieldType::kInt32,
     kHalftoneOffset + offsetof(DEVHTINFO, ColorInfo.YellowInCyanDye)},
    {"HTInfo.ColorInfo.CyanInMagentaDye", FieldType::kInt32,
     kHalftoneOffset + offsetof(DEVHTINFO, ColorInfo.CyanInMagentaDye)},
    {"HTInfo.ColorInfo.YellowInMagentaDye", FieldType::kInt32,
     kHalftoneOffset + offsetof(DEVHTINFO, ColorInfo.YellowInMagentaDye)},
    {"HTInfo.ColorInfo.CyanInYellowDye", FieldType::kInt32,
     kHalftoneOffset + offsetof(DEVHTINFO, ColorInfo.CyanInYellowDye)},
    {"HTInfo.ColorInfo.MagentaInYellowDye", FieldType::kInt32,
     kHalftoneOffset + offsetof(DEVHTINFO, ColorInfo.MagentaInYellowDye)},
};

// The third key is the backup file's spelling; the set-up file has its own.
constexpr size_t kIlluminantKey = 2;
inline constexpr FieldKey kColorAdjustKeys[] = {
    {"ColorAdjust.Size", FieldType::kInt16, kColorAdjustOffset + offsetof(COLORADJUSTMENT, caSize)},
    {"ColorAdjust.Flags", FieldType::kInt16,
     kColorAdjustOffset + offsetof(COLORADJUSTMENT, caFlags)},
    {"ColorAdjust.IlluminantIndex", FieldType::kInt16,
     kColorAdjustOffset + offsetof(COLORADJUSTMENT, caIlluminantIndex)},
    {"ColorAdjust.RedGamma", FieldType::kInt16,
     kColorAdjustOffset + offsetof(COLORADJUSTMENT, caRedGamma)},
    {"ColorAdjust.GreenGamma", FieldType::kInt16,
     kColorAdjustOffset + offsetof(COLORADJUSTMENT, caGreenGamma)},
    {"ColorAdjust.BlueGamma", FieldType::kInt16,
     kColorAdjustOffset + offsetof(COLORADJUSTMENT, caBlueGamma)},
    {"ColorAdjust.ReferenceBlack", FieldType::kInt16,
     kColorAdjustOffset + offsetof(COLORADJUSTMENT, caReferenceBlack)},
    {"ColorAdjust.ReferenceWhite", FieldType::kInt16,
     kColorAdjustOffset + offsetof(COLORADJUSTMENT, caReferenceWhite)},
    {"ColorAdjust.Contrast", FieldType::kInt16,
     kColorAdjustOffset + offsetof(COLORADJUSTMENT, caContrast)},
    {"ColorAdjust.Brightness", FieldType::kInt16,
     kColorAdjustOffset + offsetof(COLORADJUSTMENT, caBrightness)},
    {"ColorAdjust.Colorfulness", FieldType::kInt16,
     kColorAdjustOffset + offsetof(COLORADJUSTMENT, caColorfulness)},
    {"ColorAdjust.RedGreenTint", FieldType::kInt16,
     kColorAdjustOffset + offsetof(COLORADJUSTMENT, caRedGreenTint)},
};

inline constexpr FieldKey kSyncKey = {"SYNC", FieldType::kInt16,
                                      kPrivateOffset + offsetof(PrivateDevMode, nTSMode)};

}  // namespace kestrel
