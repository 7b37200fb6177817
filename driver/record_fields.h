// The fields of a settings record by name, for programs that show or compare records. The reserved
// words of a record have no row.
#pragma once

#include <cstddef>
#include <cstdint>

#include "driver/settings_block.h"

namespace kestrel {

enum class FieldKind { kSigned16, kUnsigned16, kUnsigned32, kText };

// One field: its place counts bytes from the start of its structure. A text fills its field and
// ends at the first zero unit, if there is one.
struct RecordField {
  const char* name;
  size_t offset;
  size_t size;
  FieldKind kind;
};

template <typename Member>
struct FieldKindOf;
template <>
struct FieldKindOf<int16_t> {
  static constexpr FieldKind kValue = FieldKind::kSigned16;
};
template <>
struct FieldKindOf<uint16_t> {
  static constexpr FieldKind kValue = FieldKind::kUnsigned16;
};
template <>
struct FieldKindOf<uint32_t> {
  static constexpr FieldKind kValue = FieldKind::kUnsigned32;
};
template <size_t N>
struct FieldKindOf<WCHAR[N]> {
  static constexpr FieldKind kValue = FieldKind::kText;
};

#define KESTREL_FIELD(structure, member)                             \
  RecordField {                                                      \
#member, offsetof(structure, member), sizeof(structure::member), \
        FieldKindOf < decltype(structure::member)> ::kValue          \
  }

inline constexpr RecordField kPublicRecordFields[] = {
    KESTREL_FIELD(DEVMODEW, dmDeviceName),    KESTREL_FIELD(DEVMODEW, dmSpecVersion),
    KESTREL_FIELD(DEVMODEW, dmDriverVersion), KESTREL_FIELD(DEVMODEW, dmSize),
    KESTREL_FIELD(DEVMODEW, dmDriverExtra),   KESTREL_FIELD(DEVMODEW, dmFields),
    KESTREL_FIELD(DEVMODEW, dmOrientation),   KESTREL_FIELD(DEVMODEW, dmPaperSize),
    KESTREL_FIELD(DEVMODEW, dmPaperLength),   KESTREL_FIELD(DEVMODEW, dmPaperWidth),
    KESTREL_FIELD(DEVMODEW, dmScale),         KESTREL_FIELD(DEVMODEW, dmCopies),
    KESTREL_FIELD(DEVMODEW, dmDefaultSource), KESTREL_FIELD(DEVMODEW, dmPrintQuality),
    KESTREL_FIELD(DEVMODEW, dmColor),         KESTREL_FIELD(DEVMODEW, dmDuplex),
    KESTREL_FIELD(DEVMODEW, dmYResolution),   KESTREL_FIELD(DEVMODEW, dmTTOption),
    KESTREL_FIELD(DEVMODEW, dmCollate),       KESTREL_FIELD(DEVMODEW, dmFormName),
    KESTREL_FIELD(DEVMODEW, dmLogPixels),     KESTREL_FIELD(DEVMODEW, dmBitsPerPel),
    KESTREL_FIELD(DEVMODEW, dmPelsWidth),     KESTREL_FIELD(DEVMODEW, dmPelsHeight),
    KESTREL_FIELD(DEVMODEW, dmDisplayFlags),  KESTREL_FIELD(DEVMODEW, dmDisplayFrequency),
    KESTREL_FIELD(DEVMODEW, dmICMMethod),     KESTREL_FIELD(DEVMODEW, dmICMIntent),
    KESTREL_FIELD(DEVMODEW, dmMediaType),     KESTREL_FIELD(DEVMODEW, dmDitherType),
    KESTREL_FIELD(DEVMODEW, dmReserved1),     KESTREL_FIELD(DEVMODEW, dmReserved2),
    KESTREL_FIELD(DEVMODEW, dmPanningWidth),  KESTREL_FIELD(DEVMODEW, dmPanningHeight),
};

inline constexpr RecordField kPaperRecordFields[] = {
    KESTREL_FIELD(PaperInfo, PaperName),      KESTREL_FIELD(PaperInfo, PaperKind),
    KESTREL_FIELD(PaperInfo, Thickness),      KESTREL_FIELD(PaperInfo, LabelWidth),
    KESTREL_FIELD(PaperInfo, LabelHeight),    KESTREL_FIELD(PaperInfo, GapSize),
    KESTREL_FIELD(PaperInfo, EyeMarkSize),    KESTREL_FIELD(PaperInfo, Unit),
    KESTREL_FIELD(PaperInfo, PrintableLeft),  KESTREL_FIELD(PaperInfo, PrintableTop),
    KESTREL_FIELD(PaperInfo, PrintableWidth), KESTREL_FIELD(PaperInfo, PrintableHeight),
    KESTREL_FIELD(PaperInfo, Yoshi),          KESTREL_FIELD(PaperInfo, UserDef),
};

inline constexpr RecordField kColorRecordFields[] = {
    KESTREL_FIELD(COLORADJUSTMENT, caSize),
    KESTREL_FIELD(COLORADJUSTMENT, caFlags),
    KESTREL_FIELD(COLORADJUSTMENT, caIlluminantIndex),
    KESTREL_FIELD(COLORADJUSTMENT, caRedGamma),
    KESTREL_FIELD(COLORADJUSTMENT, caGreenGamma),
    KESTREL_FIELD(COLORADJUSTMENT, caBlueGamma),
    KESTREL_FIELD(COLORADJUSTMENT, caReferenceBlack),
    KESTREL_FIELD(COLORADJUSTMENT, caReferenceWhite),
    KESTREL_FIELD(COLORADJUSTMENT, caContrast),
    KESTREL_FIELD(COLORADJUSTMENT, caBrightness),
    KESTREL_FIELD(COLORADJUSTMENT, caColorfulness),
    KESTREL_FIELD(COLORADJUSTMENT, caRedGreenTint),
};

// Of the private part, but for FreePaper (kPaperRecordFields) and ColorAdjust (kColorRecordFields).
inline constexpr RecordField kPrivateRecordFields[] = {
    KESTREL_FIELD(PrivateDevMode, PaperID),      KESTREL_FIELD(PrivateDevMode, Copies),
    KESTREL_FIELD(PrivateDevMode, nVertBase),    KESTREL_FIELD(PrivateDevMode, nHorzBase),
    KESTREL_FIELD(PrivateDevMode, Orient),       KESTREL_FIELD(PrivateDevMode, nFlip),
    KESTREL_FIELD(PrivateDevMode, nPeelOffset),  KESTREL_FIELD(PrivateDevMode, nTearOffset),
    KESTREL_FIELD(PrivateDevMode, nPitchOffset), KESTREL_FIELD(PrivateDevMode, nPrintSpeed),
    KESTREL_FIELD(PrivateDevMode, nSensor),      KESTREL_FIELD(PrivateDevMode, nMoveMode),
    KESTREL_FIELD(PrivateDevMode, Dither),       KESTREL_FIELD(PrivateDevMode, nColorText),
    KESTREL_FIELD(PrivateDevMode, nTSMode),      KESTREL_FIELD(PrivateDevMode, Position),
    KESTREL_FIELD(PrivateDevMode, nCompulsory),  KESTREL_FIELD(PrivateDevMode, Signature),
};
#undef KESTREL_FIELD

}  // namespace kestrel
