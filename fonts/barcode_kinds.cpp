#include "fonts/barcode_kinds.h"

namespace kestrel {
namespace {

constexpr BarcodeField Word(const char* name, uint8_t offset) {
  return {name, offset, 2, BarcodeFieldType::kWord};
}

// Every layout begins with BarcodeID, Rotate and Unit. The three words between Rotate and Unit have
// no name.
constexpr BarcodeField kId = Word("BarcodeID", 0);
constexpr BarcodeField kRotate = Word("Rotate", 2);
constexpr BarcodeField kUnit = Word("Unit", 10);
constexpr BarcodeField kExpand = Word("Expand", 12);
constexpr BarcodeField kHeight = Word("Height", 14);

constexpr BarcodeField kGuided[] = {kId, kRotate, kUnit, kExpand, kHeight, Word("Guide", 16)};
constexpr BarcodeField kPlain[] = {kId, kRotate, kUnit, kExpand, kHeight};
constexpr BarcodeField kCommented[] = {kId,     kRotate, kUnit,
                                       kExpand, kHeight, Word("CommentChar", 16)};
constexpr BarcodeField kTwoWidths[] = {kId,
                                       kRotate,
                                       kUnit,
                                       kExpand,
                                       kHeight,
                                       Word("Ratio", 16),
                                       Word("NarrowSpace", 18),
                                       Word("WideSpace", 20),
                                       Word("NarrowBar", 22),
                                       Word("WideBar", 24),
                                       Word("CharacterGap", 26)};
constexpr BarcodeField kCustomer[] = {
    kId, kRotate, kUnit, Word("ZipSize", 12), {"ZipCode", 14, 7, BarcodeFieldType::kFixedText}};
constexpr BarcodeField kQr[] = {kId,
                                kRotate,
                                kUnit,
                                Word("ErrCollectLebel", 12),
                                Word("CellSize", 14),
                                Word("EstablishMode", 16),
                                Word("ConnectMode", 18),
                                Word("ConnectNum", 20),
                                Word("ConnectCur", 22),
                                Word("ConnectParity", 24),
                                Word("DataMode", 26)};
constexpr BarcodeField kPdf417[] = {kId,
                                    kRotate,
                                    kUnit,
                                    Word("ModuleWidth", 12),
                                    Word("ModuleHeight", 14),
                                    Word("SecurityLevel", 16),
                                    Word("CodeWordNum", 18),
                                    Word("SymbolLineNum", 20),
                                    Word("CodeType", 22)};
constexpr BarcodeField kMaxiCode[] = {kId,
                                      kRotate,
                                      kUnit,
                                      Word("CodeType", 12),
                                      Word("ServiceCode", 14),
                                      Word("CountryCode", 16),
                                      Word("ZipSize", 18),
                                      {"ZipCode", 20, 20, BarcodeFieldType::kTerminatedText}};
constexpr BarcodeField kDataMatrix[] = {kId,
                                        kRotate,
                                        kUnit,
                                        Word("Width", 12),
                                        Word("height", 14),
                                        Word("Line", 16),
                                        Word("Linesu", 18)};
constexpr BarcodeField kMicroPdf417[] = {kId,
                                         kRotate,
                                         kUnit,
                                         Word("ModuleWidth", 12),
                                         Word("ModuleHeight", 14),
                                         Word("ColsWordNum", 16),
                                         Word("RowsLineNum", 18),
                                         Word("BynalyType", 20)};
constexpr BarcodeField kRss[] = {
    kId, kRotate, kUnit, kExpand, kHeight, Word("Segment", 16), Word("BarType", 18)};

std::span<const BarcodeField> FieldsOf(BarcodeLayout layout) {
  switch (layout) {
    case BarcodeLayout::kGuided:
      return kGuided;
    case BarcodeLayout::kPlain:
      return kPlain;
    case BarcodeLayout::kCommented:
      return kCommented;
    case BarcodeLayout::kTwoWidths:
      return kTwoWidths;
    case BarcodeLayout::kCustomer:
      return kCustomer;
    case BarcodeLayout::kQr:
      return kQr;
    case BarcodeLayout::kPdf417:
      return kPdf417;
    case BarcodeLayout::kMaxiCode:
      return kMaxiCode;
    case BarcodeLayout::kDataMatrix:
      return kDataMatrix;
    case BarcodeLayout::kMicroPdf417:
      return kMicroPdf417;
    case BarcodeLayout::kRss:
      return kRss;
  }
  return {};
}

}  // namespace

int FindBarcodeKindRow(int id) {
  for (int i = 0; i < kBarcodeKindCount; ++i) {
    if (kBarcodeKinds[i].id == id) return i;
  }
  return -1;
}

std::span<const BarcodeField> BarcodeFields(int kind) {
  const int row = FindBarcodeKindRow(kind);
  if (row >= 0) return FieldsOf(kBarcodeKinds[row].layout);
  // The dialog does not list these two kinds, but a backup file may contain them.
  if (kind == 1000 || kind == 1100) return kTwoWidths;
  return {};
}

}  // namespace kestrel
