#include "fonts/barcode_param.h"

namespace kestrel {
namespace {

constexpr BarcodeField Word(const char* name, uint8_t offset) {
  return {name, offset, 2, BarcodeFieldType::kWord};
}

// Every layout begins with these; the three words between Rotate and Unit have no name.
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

}  // namespace

std::span<const BarcodeField> BarcodeFields(int kind) {
  switch (kind) {
    case 100:
    case 300:
    case 400:
      return kGuided;
    case 200:
    case 600:
    case 700:
      return kPlain;
    case 800:
      return kCommented;
    case 500:
    case 900:
    case 1000:
    case 1100:
    case 1200:
      return kTwoWidths;
    case 1300:
      return kCustomer;
    case 1400:
    case 1500:
    case 1600:
      return kQr;
    case 1700:
      return kPdf417;
    case 1900:
      return kMaxiCode;
    case 2000:
      return kDataMatrix;
    case 2100:
      return kMicroPdf417;
    case 2500:
      return kRss;
    default:
      return {};
  }
}

}  // namespace kestrel
