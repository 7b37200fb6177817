#include "files/backup_fonts.h"

#include <algorithm>
#include <cstring>

#include "driver/text.h"
#include "files/profile_io.h"
#include "files/settings_keys.h"
#include "fonts/barcode_param.h"

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

// Every key is needed: the first that fails ends the font.
void TransferDecoFont(DecoFontInfo& font) {
  if (NameField("DecoFontName", font.DecoFontName, kFontNameLength) == 0) return;
  if (NameField("ResiFontName", font.ResiFontName, kFontNameLength) == 0) return;
  for (const SettingsKey& key : kDecoKeys) {
    if (Int16Field(key.name, FieldOf(&font, key)) == 0) return;
  }
}

void TransferBarcodeField(uint8_t* block, const BarcodeField& field) {
  if (field.type == BarcodeFieldType::kWord) {
    Int16Field(field.name, block + field.offset);
    return;
  }
  // A field that fills its width takes one byte more than a terminated one.
  char text[kBarcodeLibrarySize + 1] = {};
  const int size = field.width + (field.type == BarcodeFieldType::kFixedText ? 1 : 0);
  std::memcpy(text, block + field.offset, static_cast<size_t>(size - 1));
  if (RawText(field.name, text, size) != 0) std::memcpy(block + field.offset, text, field.width);
}

void TransferBarFont(BarFontInfo& font) {
  NameField("BarFontName", font.BarFontName, kFontNameLength);
  for (const SettingsKey& key : kBarKeys) Int16Field(key.name, FieldOf(&font, key));
  for (const BarcodeField& field : BarcodeFields(font.BarcodeKind)) {
    TransferBarcodeField(font.BarcodeParam, field);
  }
}

// What the two kinds differ in.
struct FontSections {
  const WCHAR* countSection;
  const char* countKey;
  const WCHAR* prefix;
  FontKindCode kind;
};

constexpr FontSections kDecoSections = {kDecoNumSection, "DecoFontNum", TEXT("DECOFONT"),
                                        kDecorativeFont};
constexpr FontSections kBarSections = {kBarNumSection, "BarFontNum", TEXT("BARFONT"), kBarcodeFont};

void TransferFont(FontRecord& font, FontKindCode kind) {
  ClearSection();
  kind == kDecorativeFont ? TransferDecoFont(font.Deco) : TransferBarFont(font.Bar);
  if (Saving()) return;
  CopyText(font.FontName, kind == kDecorativeFont ? font.Deco.DecoFontName : font.Bar.BarFontName);
  font.FontKind = kind;
}

// One kind's list and its count, as the session holds them.
void TransferList(const FontSections& sections, FontRecord* fonts, int16_t& stored) {
  BeginSection(sections.countSection);
  ClearSection();
  const int16_t most = fonts != nullptr ? int16_t{kFontCapacity} : int16_t{0};
  int16_t count = Saving() ? std::clamp(stored, int16_t{0}, most) : stored;
  Int16Field(sections.countKey, &count);
  count = std::clamp(count, int16_t{0}, most);
  for (int i = 0; i < count; ++i) {
    BeginSection(sections.prefix, i);
    TransferFont(fonts[i], sections.kind);
  }
  if (Saving()) return;
  stored = count;
  if (fonts != nullptr) std::fill(fonts + count, fonts + kFontCapacity, FontRecord{});
}

}  // namespace

void TransferFonts(FontStore& fonts) {
  TransferList(kDecoSections, fonts.DecoFonts, fonts.DecoFontNum);
  TransferList(kBarSections, fonts.BarFonts, fonts.BarFontNum);
}

}  // namespace kestrel
