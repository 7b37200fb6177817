#include "files/backup_fonts.h"

#include <algorithm>
#include <cstring>

#include "driver/text.h"
#include "files/profile_io.h"
#include "files/settings_keys.h"
#include "fonts/barcode_kinds.h"

namespace kestrel {
namespace {

constexpr SettingsKey kDecoKeys[] = {
    {"Decorate", offsetof(DecoFontInfo, Decorate)},
    {"Size", offsetof(DecoFontInfo, Size)},
    {"SizeX", offsetof(DecoFontInfo, SizeX)},
    {"SizeY", offsetof(DecoFontInfo, SizeY)},
    {"ExpandX", offsetof(DecoFontInfo, ExpandX)},
    {"ExpandY", offsetof(DecoFontInfo, ExpandY)},
    {"Unit", offsetof(DecoFontInfo, Unit)},
    {"Pitch", offsetof(DecoFontInfo, Pitch)},
    {"Rotate", offsetof(DecoFontInfo, Rotate)},
    {"ColorRevolution", offsetof(DecoFontInfo, ColorRevolution)},
    {"Smoothing", offsetof(DecoFontInfo, Smoothing)},
    {"Bold", offsetof(DecoFontInfo, Bold)},
    {"OutlineStyle", offsetof(DecoFontInfo, OutlineStyle)},
    {"Range", offsetof(DecoFontInfo, Range)},
    {"Mode", offsetof(DecoFontInfo, Mode)},
    {"PrintNum", offsetof(DecoFontInfo, PrintNum)},
    {"Incriment", offsetof(DecoFontInfo, Incriment)},
    {"ActivateData", offsetof(DecoFontInfo, ActivateData)},
    {"NegativeData", offsetof(DecoFontInfo, NegativeData)},
};

constexpr SettingsKey kBarKeys[] = {
    {"FontCategory", offsetof(BarFontInfo, FontCategory)},
    {"BarcodeKind", offsetof(BarFontInfo, BarcodeKind)},
    {"Range", offsetof(BarFontInfo, Range)},
    {"Mode", offsetof(BarFontInfo, Mode)},
    {"PrintNum", offsetof(BarFontInfo, PrintNum)},
    {"Incriment", offsetof(BarFontInfo, Incriment)},
    {"ActiveData", offsetof(BarFontInfo, ActiveData)},
    {"NegativeData", offsetof(BarFontInfo, NegativeData)},
};

// Stops at the first key that is missing or cannot be written.
void TransferDecoFont(ProfileIo& io, DecoFontInfo& font) {
  if (io.NameField("DecoFontName", font.DecoFontName, kFontNameLength) == 0) return;
  if (io.NameField("ResiFontName", font.ResiFontName, kFontNameLength) == 0) return;
  for (const SettingsKey& key : kDecoKeys) {
    if (io.Int16Field(key.name, FieldOf(&font, key)) == 0) return;
  }
}

void TransferBarcodeField(ProfileIo& io, uint8_t* block, const BarcodeField& field) {
  if (field.type == BarcodeFieldType::kWord) {
    io.Int16Field(field.name, block + field.offset);
    return;
  }
  // A fixed text has no terminator in its field. The buffer has one, because each text follows
  // other fields and is therefore shorter than the library's bytes.
  char text[kBarcodeLibrarySize] = {};
  const int size = field.width + (field.type == BarcodeFieldType::kFixedText ? 1 : 0);
  std::memcpy(text, block + field.offset, static_cast<size_t>(size - 1));
  if (io.RawText(field.name, text, size) != 0) std::memcpy(block + field.offset, text, field.width);
}

void TransferBarFont(ProfileIo& io, BarFontInfo& font) {
  io.NameField("BarFontName", font.BarFontName, kFontNameLength);
  for (const SettingsKey& key : kBarKeys) io.Int16Field(key.name, FieldOf(&font, key));
  for (const BarcodeField& field : BarcodeFields(font.BarcodeKind)) {
    TransferBarcodeField(io, font.BarcodeParam, field);
  }
}

// The names of a kind's sections and of the key of its count.
struct FontSections {
  const WCHAR* countSection;
  const char* countKey;
  const WCHAR* prefix;
  FontKindCode kind;
};

constexpr FontSections kDecoSections = {kDecoNumSection, "DecoFontNum", TEXT("DECOFONT"),
                                        kDecorativeFont};
constexpr FontSections kBarSections = {kBarNumSection, "BarFontNum", TEXT("BARFONT"), kBarcodeFont};

void TransferFont(ProfileIo& io, FontRecord& font, FontKindCode kind) {
  io.ClearSection();
  const WCHAR* name = font.Bar.BarFontName;
  if (kind == kDecorativeFont) {
    TransferDecoFont(io, font.Deco);
    name = font.Deco.DecoFontName;
  } else {
    TransferBarFont(io, font.Bar);
  }
  if (io.Saving()) return;
  CopyText(font.FontName, name);
  font.FontKind = kind;
}

// Transfers the fonts of a kind and their count.
void TransferList(ProfileIo& io, const FontSections& sections, FontRecord* fonts, int16_t& stored) {
  io.BeginSection(sections.countSection);
  io.ClearSection();
  const int16_t capacity = fonts != nullptr ? int16_t{kFontCapacity} : int16_t{0};
  int16_t count = io.Saving() ? std::clamp(stored, int16_t{0}, capacity) : stored;
  io.Int16Field(sections.countKey, &count);
  count = std::clamp(count, int16_t{0}, capacity);
  for (int i = 0; i < count; ++i) {
    io.BeginSection(sections.prefix, i);
    TransferFont(io, fonts[i], sections.kind);
  }
  if (io.Saving()) return;
  stored = count;
  if (fonts != nullptr) std::fill(fonts + count, fonts + kFontCapacity, FontRecord{});
}

}  // namespace

void TransferFonts(ProfileIo& io, FontStore& fonts) {
  TransferList(io, kDecoSections, fonts.DecoFonts, fonts.DecoFontNum);
  TransferList(io, kBarSections, fonts.BarFonts, fonts.BarFontNum);
}

}  // namespace kestrel
