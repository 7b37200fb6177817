#include "fonts/resident_fonts.h"

#include <algorithm>

#include "driver/text.h"
#include "paper/paper_info.h"

namespace kestrel {
namespace {

constexpr FontCell kCells[] = {
    {kSize5x9, TEXT("5*9"), 5, 9},          {kSize17x17, TEXT("17*17"), 17, 17},
    {kSize48x48, TEXT("48*48"), 48, 48},    {kSize15x22, TEXT("15*22"), 15, 22},
    {kSize22x33, TEXT("22*33"), 22, 33},    {kSize20x24, TEXT("20*24"), 20, 24},
    {kSize30x36, TEXT("30*36"), 30, 36},    {kSize16x16, TEXT("16*16"), 16, 16},
    {kSize24x24, TEXT("24*24"), 24, 24},    {kSize22x22, TEXT("22*22"), 22, 22},
    {kSize80x133, TEXT("80*133"), 80, 133},
};

constexpr const FontCell* FindCell(uint16_t code) {
  for (const FontCell& cell : kCells) {
    if (cell.code == code) return &cell;
  }
  return nullptr;
}

constexpr uint16_t LowestCode(uint16_t codes) { return static_cast<uint16_t>(codes & (0 - codes)); }

constexpr DecoFontInfo Row(const WCHAR* name, int codes, bool proportional, uint16_t emphasis) {
  DecoFontInfo row = {};
  for (int i = 0; i < kFontNameLength - 1 && name[i] != 0; ++i) row.ResiFontName[i] = name[i];
  const FontCell* cell = FindCell(LowestCode(static_cast<uint16_t>(codes)));
  row.Decorate = 1;
  row.Size = static_cast<uint16_t>(codes);
  row.SizeX = cell->width;
  row.SizeY = cell->height;
  row.ExpandX = 1;
  row.ExpandY = 1;
  row.Unit = kDot;
  row.Pitch = proportional ? 1 : 0;
  row.ColorRevolution = 1;
  row.Bold = emphasis;
  row.OutlineStyle = kFixedCells;
  row.Range = 1;
  row.PrintNum = 1;
  row.Incriment = 1;
  row.ActivateData = 1;
  return row;
}

struct Table {
  DecoFontInfo rows[kResidentFontCount];
};

// The tables of the two densities differ only in the cells of the OCR fonts.
constexpr Table MakeTable(int ocrA, int ocrB) {
  constexpr int kKanji = kSize16x16 | kSize24x24 | kSize22x22;
  return {{Row(TEXT("X20"), kSize5x9, false, 0), Row(TEXT("X21"), kSize17x17, true, 0),
           Row(TEXT("X22"), kSize24x24, true, 0), Row(TEXT("X23"), kSize48x48, true, 0),
           Row(TEXT("X24"), kSize48x48, true, 0), Row(TEXT("OCR-A"), ocrA, false, 0),
           Row(TEXT("OCR-B"), ocrB, false, 0), Row(TEXT("POP"), kSize80x133, true, 0),
           Row(TEXT("漢字(横書)"), kKanji, false, kUpToFive),
           Row(TEXT("漢字(縦書)"), kKanji, false, kUpToFive)}};
}

constexpr Table kTable203 = MakeTable(kSize15x22, kSize20x24);
constexpr Table kTable305 = MakeTable(kSize22x33, kSize30x36);

}  // namespace

std::span<const DecoFontInfo, kResidentFontCount> ResidentFontTable(int dpi) {
  return dpi == 305 ? kTable305.rows : kTable203.rows;
}

int FindResidentFont(std::span<const DecoFontInfo, kResidentFontCount> rows, const WCHAR* name) {
  for (int i = 0; i < kResidentFontCount; ++i) {
    if (SameText(rows[static_cast<size_t>(i)].ResiFontName, name)) return i;
  }
  return -1;
}

SupportedStyles StylesSupportedBy(const DecoFontInfo& row, const DecoFontInfo& font) {
  const int smaller = std::min(font.ExpandX, font.ExpandY);
  const int larger = std::max(font.ExpandX, font.ExpandY);
  return {
      .pitch = row.Pitch == 1,
      .reverse = row.ColorRevolution == 1,
      .emphasis = row.Bold == kUpToFive && larger <= 5,
      .smoothing = row.Smoothing == kAlways || (row.Smoothing == kFromThree && smaller >= 3),
      .fixedCells = row.OutlineStyle == kFixedCells,
  };
}

const FontCell* FindFontCell(uint16_t code) { return FindCell(code); }

const FontCell* CellAt(uint16_t codes, int entry) {
  for (; codes != 0; codes = static_cast<uint16_t>(codes & (codes - 1))) {
    const FontCell* cell = FindCell(LowestCode(codes));
    if (cell != nullptr && entry-- == 0) return cell;
  }
  return nullptr;
}

bool IsSizeSupported(const DecoFontInfo& row, uint16_t code) {
  const bool isOneCode = code == kSizeScalable || FindCell(code) != nullptr;
  return isOneCode && (row.Size & code) != 0;
}

int FindCellEntry(uint16_t codes, uint16_t code) {
  for (int entry = 0;; ++entry) {
    const FontCell* cell = CellAt(codes, entry);
    if (cell == nullptr) return 0;
    if (cell->code == code) return entry;
  }
}

}  // namespace kestrel
