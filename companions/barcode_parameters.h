// The barcode kinds of the detail library: offsets, ranges and labels of their parameters, and the
// defaults of each kind.
#pragma once

#include <windows.h>

#include <array>
#include <cstdint>
#include <span>

#include "fonts/barcode_kinds.h"
#include "fonts/barcode_library.h"

namespace companions {

using kestrel::BarcodeLibInfo;

constexpr int kBlockSize = kestrel::kBarcodeLibrarySize;
constexpr int kNameCapacity = 32;  // bytes of a display name in code page 932, terminator included

enum class FieldKind : uint8_t {
  kNumber,   // a whole number from min to max
  kMeasure,  // a length in the block's unit; min and max are in dots
  kChoice,   // one of the choices
  kUnit,     // the unit of the block; choosing another one converts the measures
  kText,     // code page 932, at most max bytes
};

struct Choice {
  uint16_t value;
  const WCHAR* text = nullptr;  // null: the dialog shows the value
};

// A parameter of a block: 16 bits, or a text.
struct Field {
  const WCHAR* label;
  uint16_t offset;
  FieldKind kind;
  uint16_t min = 0;
  uint16_t max = 0;
  std::span<const Choice> choices = {};
  bool terminated = false;  // a text is followed by a zero byte
};

constexpr std::size_t kMaxFields = 8;  // of the largest layout
constexpr uint16_t kIdOffset = 0;      // BarcodeID

struct BarcodeKind {
  uint16_t id;
  const WCHAR* name;                          // display name
  std::span<const Field> own;                 // the fields besides kRotateField and kUnitField
  std::array<uint16_t, kMaxFields> defaults;  // of own; measures in 0.1 mm
};

// The fields of every kind. They precede the kind's own fields in the dialog.
extern const Field kRotateField, kUnitField;

// Returns the kind at a row of kestrel::kBarcodeKinds. Does not check the row.
const BarcodeKind& KindAt(int index);

// Writes a kind's default parameters to the block, with lengths in dots of the density of info.
void WriteDefaults(const BarcodeKind& kind, const BarcodeLibInfo& info, std::span<BYTE> block);

// Shows the kind's parameters in a modal dialog over owner. Returns true after it stored the new
// values in the block, false without changing the block when the user cancelled.
bool EditBarcodeDetail(const BarcodeKind& kind, const BarcodeLibInfo& info, std::span<BYTE> block,
                       HWND owner);

// Returns the printer's density in dots per inch: 305, or 203 for every other value of info.
int DensityOf(const BarcodeLibInfo& info);

// Read and write a 16-bit parameter of a block, little-endian.
uint16_t ReadWord(std::span<const BYTE> block, std::size_t offset);
void WriteWord(std::span<BYTE> block, std::size_t offset, uint16_t value);

}  // namespace companions
