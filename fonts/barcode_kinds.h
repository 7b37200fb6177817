// The barcode kinds in the order of the dialog's list, with the names of their entry points in the
// detail library.
#pragma once

#include <cstdint>
#include <span>

namespace kestrel {

struct BarcodeKindRow {
  uint16_t id;
  const char* getName;     // GetBarName…
  const char* init;        // Init…
  const char* showDialog;  // ShowDlg…
  bool serial;             // whether serial numbering may be switched
};

constexpr int kBarcodeKindCount = 19;
constexpr uint16_t kFirstBarcodeKind = 100;

std::span<const BarcodeKindRow, kBarcodeKindCount> BarcodeKinds();
// Row of a kind id; -1 when the table does not hold it.
int BarcodeKindRowOf(int id);

}  // namespace kestrel
