// The barcode kinds in the order of the dialog's list: the names of their entry points in the
// detail library, and the named fields of their parameter blocks. The library owns the meaning of a
// block; the font store and the backup file know only these fields.
#pragma once

#include <cstdint>
#include <iterator>
#include <span>

namespace kestrel {

enum class BarcodeFieldType : uint8_t {
  kWord,           // 16 bits
  kFixedText,      // code page 932; may fill its width without a terminator
  kTerminatedText  // code page 932, terminated within its width
};

struct BarcodeField {
  const char* name;  // also its key in a backup file
  uint8_t offset;    // from the start of the block
  uint8_t width;     // bytes
  BarcodeFieldType type;
};

// Layouts of the parameter block. Kinds of one layout have the same fields.
enum class BarcodeLayout : uint8_t {
  kGuided,
  kPlain,
  kCommented,
  kTwoWidths,
  kCustomer,
  kQr,
  kPdf417,
  kMaxiCode,
  kDataMatrix,
  kMicroPdf417,
  kRss,
};

// KIND(id, suffix of the entry points, support of serial numbering, layout of the parameter block).
// The companion library and its tests generate their entry points from this list.
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
  bool serial;             // supports serial numbering
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

// Returns the row of a kind id, or -1 when the table does not contain it.
int FindBarcodeKindRow(int id);

// Returns the named fields of a kind in the order in which a backup file stores them; an empty span
// for a kind without a layout.
std::span<const BarcodeField> BarcodeFields(int kind);

}  // namespace kestrel
