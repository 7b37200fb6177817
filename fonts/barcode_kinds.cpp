#include "fonts/barcode_kinds.h"

namespace kestrel {

int BarcodeKindRowOf(int id) {
  for (int i = 0; i < kBarcodeKindCount; ++i) {
    if (kBarcodeKinds[i].id == id) return i;
  }
  return -1;
}

}  // namespace kestrel
