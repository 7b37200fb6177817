#include "host/record_json.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "driver/settings_block.h"
#include "host/utf8.h"

namespace printhost {
namespace {

using kestrel::PaperInfo;
using kestrel::PrinterSettingsPart;
using kestrel::PrivateDevMode;

enum class Kind { kSigned16, kUnsigned16, kUnsigned32, kText };

struct Field {
  const char* name;
  std::size_t offset;
  std::size_t size;
  Kind kind;
};

template <typename Member>
constexpr Kind KindOf() {
  if constexpr (std::is_array_v<Member>) return Kind::kText;
  if constexpr (sizeof(Member) == 4) return Kind::kUnsigned32;
  return std::is_signed_v<Member> ? Kind::kSigned16 : Kind::kUnsigned16;
}

#define FIELD(structure, member)                                     \
  Field {                                                            \
#member, offsetof(structure, member), sizeof(structure::member), \
        KindOf < decltype(structure::member)>()                      \
  }

constexpr Field kPublicFields[] = {
    FIELD(DEVMODEW, dmDeviceName),    FIELD(DEVMODEW, dmSpecVersion),
    FIELD(DEVMODEW, dmDriverVersion), FIELD(DEVMODEW, dmSize),
    FIELD(DEVMODEW, dmDriverExtra),   FIELD(DEVMODEW, dmFields),
    FIELD(DEVMODEW, dmOrientation),   FIELD(DEVMODEW, dmPaperSize),
    FIELD(DEVMODEW, dmPaperLength),   FIELD(DEVMODEW, dmPaperWidth),
    FIELD(DEVMODEW, dmScale),         FIELD(DEVMODEW, dmCopies),
    FIELD(DEVMODEW, dmDefaultSource), FIELD(DEVMODEW, dmPrintQuality),
    FIELD(DEVMODEW, dmColor),         FIELD(DEVMODEW, dmDuplex),
    FIELD(DEVMODEW, dmYResolution),   FIELD(DEVMODEW, dmTTOption),
    FIELD(DEVMODEW, dmCollate),       FIELD(DEVMODEW, dmFormName),
    FIELD(DEVMODEW, dmLogPixels),     FIELD(DEVMODEW, dmBitsPerPel),
    FIELD(DEVMODEW, dmPelsWidth),     FIELD(DEVMODEW, dmPelsHeight),
    FIELD(DEVMODEW, dmDisplayFlags),  FIELD(DEVMODEW, dmDisplayFrequency),
    FIELD(DEVMODEW, dmICMMethod),     FIELD(DEVMODEW, dmICMIntent),
    FIELD(DEVMODEW, dmMediaType),     FIELD(DEVMODEW, dmDitherType),
    FIELD(DEVMODEW, dmReserved1),     FIELD(DEVMODEW, dmReserved2),
    FIELD(DEVMODEW, dmPanningWidth),  FIELD(DEVMODEW, dmPanningHeight),
};

constexpr Field kPaperFields[] = {
    FIELD(PaperInfo, PaperName),      FIELD(PaperInfo, PaperKind),
    FIELD(PaperInfo, Thickness),      FIELD(PaperInfo, LabelWidth),
    FIELD(PaperInfo, LabelHeight),    FIELD(PaperInfo, GapSize),
    FIELD(PaperInfo, EyeMarkSize),    FIELD(PaperInfo, Unit),
    FIELD(PaperInfo, PrintableLeft),  FIELD(PaperInfo, PrintableTop),
    FIELD(PaperInfo, PrintableWidth), FIELD(PaperInfo, PrintableHeight),
    FIELD(PaperInfo, Yoshi),          FIELD(PaperInfo, UserDef),
};

constexpr Field kColorFields[] = {
    FIELD(COLORADJUSTMENT, caSize),
    FIELD(COLORADJUSTMENT, caFlags),
    FIELD(COLORADJUSTMENT, caIlluminantIndex),
    FIELD(COLORADJUSTMENT, caRedGamma),
    FIELD(COLORADJUSTMENT, caGreenGamma),
    FIELD(COLORADJUSTMENT, caBlueGamma),
    FIELD(COLORADJUSTMENT, caReferenceBlack),
    FIELD(COLORADJUSTMENT, caReferenceWhite),
    FIELD(COLORADJUSTMENT, caContrast),
    FIELD(COLORADJUSTMENT, caBrightness),
    FIELD(COLORADJUSTMENT, caColorfulness),
    FIELD(COLORADJUSTMENT, caRedGreenTint),
};

constexpr Field kPrivateFields[] = {
    FIELD(PrivateDevMode, PaperID),      FIELD(PrivateDevMode, Copies),
    FIELD(PrivateDevMode, nVertBase),    FIELD(PrivateDevMode, nHorzBase),
    FIELD(PrivateDevMode, Orient),       FIELD(PrivateDevMode, nFlip),
    FIELD(PrivateDevMode, nPeelOffset),  FIELD(PrivateDevMode, nTearOffset),
    FIELD(PrivateDevMode, nPitchOffset), FIELD(PrivateDevMode, nPrintSpeed),
    FIELD(PrivateDevMode, nSensor),      FIELD(PrivateDevMode, nMoveMode),
    FIELD(PrivateDevMode, Dither),       FIELD(PrivateDevMode, nColorText),
    FIELD(PrivateDevMode, nTSMode),      FIELD(PrivateDevMode, Position),
    FIELD(PrivateDevMode, nCompulsory),  FIELD(PrivateDevMode, Signature),
};
#undef FIELD

template <typename Number>
Number Read(const std::byte* at) {
  Number number;
  std::memcpy(&number, at, sizeof number);
  return number;
}

Json Value(const Field& field, const std::byte* at) {
  switch (field.kind) {
    case Kind::kSigned16:
      return Read<int16_t>(at);
    case Kind::kUnsigned16:
      return Read<uint16_t>(at);
    case Kind::kUnsigned32:
      return Read<uint32_t>(at);
    case Kind::kText:
      break;
  }
  std::u16string text(field.size / sizeof(char16_t), u'\0');
  std::memcpy(text.data(), at, field.size);
  return ToUtf8(std::u16string_view(text).substr(0, text.find(u'\0')));
}

// The fields that lie whole inside the bytes given.
Json Fields(std::span<const Field> fields, std::span<const std::byte> bytes) {
  Json json = Json::object();
  for (const Field& field : fields) {
    if (field.offset + field.size <= bytes.size())
      json[field.name] = Value(field, bytes.data() + field.offset);
  }
  return json;
}

std::span<const std::byte> Inside(std::span<const std::byte> bytes, std::size_t offset,
                                  std::size_t size) {
  if (offset >= bytes.size()) return {};
  return bytes.subspan(offset, std::min(size, bytes.size() - offset));
}

}  // namespace

Json RecordJson(const Record& record) {
  const std::span<const std::byte> bytes = std::span(record).first(RecordExtent(record));
  const std::size_t publicSize = std::min(PublicSize(record), bytes.size());
  Json json = {{"public", Fields(kPublicFields, bytes.first(publicSize))}, {"private", nullptr}};
  const auto own = bytes.subspan(publicSize);
  if (publicSize != kestrel::kPublicSize || own.empty()) return json;
  Json& fields = json["private"] = Fields(kPrivateFields, own);
  fields["FreePaper"] =
      Fields(kPaperFields, Inside(own, offsetof(PrivateDevMode, FreePaper), sizeof(PaperInfo)));
  fields["ColorAdjust"] = Fields(
      kColorFields, Inside(own, offsetof(PrivateDevMode, ColorAdjust), sizeof(COLORADJUSTMENT)));
  return json;
}

Json PrinterPartJson(std::span<const std::byte> bytes) {
  if (bytes.size() != kestrel::kPrinterPartSize) return nullptr;
  const int stored = Read<int16_t>(bytes.data() + offsetof(PrinterSettingsPart, PaperNum));
  Json papers = Json::array();
  for (int i = 0; i < std::min(stored, kestrel::kPaperCapacity); ++i) {
    const std::size_t offset =
        offsetof(PrinterSettingsPart, Papers) + static_cast<std::size_t>(i) * sizeof(PaperInfo);
    papers.push_back(Fields(kPaperFields, bytes.subspan(offset, sizeof(PaperInfo))));
  }
  return {
      {"PaperNum", stored},
      {"Papers", papers},
      {"HeadDensity", Read<uint16_t>(bytes.data() + offsetof(PrinterSettingsPart, HeadDensity))},
      {"Mecha", Read<uint16_t>(bytes.data() + offsetof(PrinterSettingsPart, Mecha))}};
}

}  // namespace printhost
