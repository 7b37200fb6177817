#include "files/backup_fonts.h"

#include <algorithm>
#include <cstring>

#include "driver/text.h"
#include "files/profile_io.h"
#include "files/settings_keys.h"
#include "fonts/barcode_param.h"
#include "fonts/font_store.h"

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

// What saving and loading of one kind differ in.
struct FontSections {
  const WCHAR* countSection;
  const char* countKey;
  const WCHAR* prefix;
  FontKindCode kind;
};

constexpr FontSections kDecoSections = {kDecoNumSection, "DecoFontNum", TEXT("DECOFONT"),
                                        kDecorativeFont};
constexpr FontSections kBarSections = {kBarNumSection, "BarFontNum", TEXT("BARFONT"), kBarcodeFont};

void TransferBody(FontRecord& font, FontKindCode kind) {
  kind == kDecorativeFont ? TransferDecoFont(font.Deco) : TransferBarFont(font.Bar);
}

void SaveFonts(const FontSections& sections, FontRecord* fonts, int count) {
  BeginSection(sections.countSection);
  ClearSection();
  auto stored = static_cast<int16_t>(count);
  Int16Field(sections.countKey, &stored);
  for (int i = 0; i < count; ++i) {
    BeginSection(sections.prefix, i);
    ClearSection();
    TransferBody(fonts[i], sections.kind);
  }
}

void LoadFonts(const FontSections& sections, FontRecord* fonts, int16_t& count) {
  BeginSection(sections.countSection);
  Int16Field(sections.countKey, &count);
  count = static_cast<int16_t>(std::clamp<int>(count, 0, fonts != nullptr ? kFontCapacity : 0));
  for (int i = 0; i < count; ++i) {
    FontRecord& font = fonts[i];
    BeginSection(sections.prefix, i);
    TransferBody(font, sections.kind);
    CopyText(font.FontName,
             sections.kind == kDecorativeFont ? font.Deco.DecoFontName : font.Bar.BarFontName);
    font.FontKind = sections.kind;
  }
  if (fonts != nullptr) std::memset(fonts + count, 0, (kFontCapacity - count) * sizeof(FontRecord));
}

}  // namespace

void TransferDecoFonts(FontStore& fonts, TransferDirection direction) {
  if (direction == TransferDirection::kLoad) {
    LoadFonts(kDecoSections, fonts.DecoFonts, fonts.DecoFontNum);
  } else {
    SaveFonts(kDecoSections, fonts.DecoFonts, ShownDecoFonts(fonts));
  }
}

void TransferBarFonts(FontStore& fonts, TransferDirection direction) {
  if (direction == TransferDirection::kLoad) {
    LoadFonts(kBarSections, fonts.BarFonts, fonts.BarFontNum);
  } else {
    SaveFonts(kBarSections, fonts.BarFonts, std::clamp<int>(fonts.BarFontNum, 0, kFontCapacity));
  }
}

}  // namespace kestrel
