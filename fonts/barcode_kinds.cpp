#include "fonts/barcode_kinds.h"

namespace kestrel {
namespace {

#define KIND(id, suffix, serial) \
  { id, "GetBarName" suffix, "Init" suffix, "ShowDlg" suffix, serial }

constexpr BarcodeKindRow kKinds[kBarcodeKindCount] = {
    KIND(100, "UPCA", true),      KIND(200, "UPCE", true),    KIND(300, "JAN8", true),
    KIND(400, "JAN13", true),     KIND(500, "CODE39", true),  KIND(600, "CODE93", true),
    KIND(700, "CODE128", true),   KIND(800, "UCC128", true),  KIND(900, "INT25", true),
    KIND(1200, "NW7", true),      KIND(1300, "CUSTOM", true), KIND(2500, "RSS", true),
    KIND(1400, "QR1", false),     KIND(1500, "QR2", false),   KIND(1600, "QRM", false),
    KIND(1700, "PDF417", false),  KIND(1900, "MAXI", false),  KIND(2000, "ECC", false),
    KIND(2100, "MPDF417", false),
};

#undef KIND

}  // namespace

std::span<const BarcodeKindRow, kBarcodeKindCount> BarcodeKinds() { return kKinds; }

int BarcodeKindRowOf(int id) {
  for (int i = 0; i < kBarcodeKindCount; ++i) {
    if (kKinds[i].id == id) return i;
  }
  return -1;
}

}  // namespace kestrel
