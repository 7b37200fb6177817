// The parameter block of a barcode font as named fields: which fields a barcode kind has and where
// they lie. The block itself belongs to the barcode detail library; the store and the backup file
// know no more of it than this.
#pragma once

#include <cstdint>
#include <span>

namespace kestrel {

enum class BarcodeFieldType : uint8_t {
  kWord,           // 16 bits
  kFixedText,      // code page 932, fills its width, no terminator needed
  kTerminatedText  // code page 932, terminated within its width
};

// The layouts of the block; the kinds of one layout have the same fields.
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

struct BarcodeField {
  const char* name;  // also its key in a backup file
  uint8_t offset;    // from the start of the block
  uint8_t width;     // bytes
  BarcodeFieldType type;
};

// The named fields of a kind, in the order in which a backup file carries them; empty for a kind
// without a layout.
std::span<const BarcodeField> BarcodeFields(int kind);

}  // namespace kestrel
