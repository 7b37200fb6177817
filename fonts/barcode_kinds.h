// The barcode kinds in the order of the dialog's list, with the names of their entry points in the
// detail library.
#pragma once

#include <cstdint>
#include <iterator>

#include "fonts/barcode_param.h"

namespace kestrel {

// The one list of kinds: KIND(id, suffix of the entry points, whether serial numbering may be
// switched, layout of the parameter block). The library's entry points and their tests are made
// from it.
#define BARCODE_KINDS(KIND)           \
  KIND(100, UPCA, true, kGuided)      \
  KIND(200, UPCE, true, kPlain)       \
  KIND(300, JAN8, true, kGuided)      \
  KIND(400, JAN13, true, kGuided)     \
  KIND(500, CODE39, true, kTwoWidths) \
  KIND(600, CODE93, true, kPlain)     \
  KIND(700, CODE128, true, kPlain)    \
  KIND(800, UCC128, true, kCommented) \
  KIND(900, INT25, true, kTwoWidths)  \
  KIND(1200, NW7, true, kTwoWidths)   \
  KIND(1300, CUSTOM, true, kCustomer) \
  KIND(2500, RSS, true, kRss)         \
  KIND(1400, QR1, false, kQr)         \
  KIND(1500, QR2, false, kQr)         \
  KIND(1600, QRM, false, kQr)         \
  KIND(1700, PDF417, false, kPdf417)  \
  KIND(1900, MAXI, false, kMaxiCode)  \
  KIND(2000, ECC, false, kDataMatrix) \
  KIND(2100, MPDF417, false, kMicroPdf417)

struct BarcodeKindRow {
  uint16_t id;
  const char* getName;     // GetBarName…
  const char* init;        // Init…
  const char* showDialog;  // ShowDlg…
  bool serial;             // whether serial numbering may be switched
  BarcodeLayout layout;
};

inline constexpr BarcodeKindRow kBarcodeKinds[] = {
#define KIND(id, suffix, serial, layout) \
  {id, "GetBarName" #suffix, "Init" #suffix, "ShowDlg" #suffix, serial, BarcodeLayout::layout},
    BARCODE_KINDS(KIND)
#undef KIND
};
constexpr int kBarcodeKindCount = static_cast<int>(std::size(kBarcodeKinds));
constexpr uint16_t kFirstBarcodeKind = kBarcodeKinds[0].id;

// Row of a kind id; -1 when the table does not contain it.
int BarcodeKindRowOf(int id);

}  // namespace kestrel
