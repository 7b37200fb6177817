// The barcode kinds of the detail library: the parameters of each layout with their places, ranges
// and labels, and the defaults of each kind.
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
  kMeasure,  // a length stored in the block's unit; min and max in dots
  kChoice,   // one of the choices
  kUnit,     // the block's unit: a choice that converts the measures
  kText,     // code page 932, at most max bytes
};

struct Choice {
  uint16_t value;
  const WCHAR* text = nullptr;  // null: the value itself
};

// A named parameter of a block: 16 bits, or a text.
struct Field {
  const WCHAR* label;
  uint16_t offset;
  FieldKind kind;
  uint16_t min;
  uint16_t max;
  std::span<const Choice> choices;
  bool terminated;  // texts: a zero byte follows within the block
};

constexpr std::size_t kMaxFields = 8;  // of the largest layout
constexpr uint16_t kIdOffset = 0;      // BarcodeID

struct BarcodeKind {
  uint16_t id;
  const WCHAR* name;                          // display name
  std::span<const Field> own;                 // its fields beside those of every kind
  std::array<uint16_t, kMaxFields> defaults;  // of its own fields; measures in 0.1 mm
};

// The fields of every kind, before its own.
extern const Field kRotateField, kUnitField;

// The kind at a row of kestrel::kBarcodeKinds; the row is not checked.
const BarcodeKind& KindAt(int index);

// Writes a kind's default parameters into the block; lengths are in dots of the given density.
void WriteDefaults(const BarcodeKind& kind, const BarcodeLibInfo& info, std::span<BYTE> block);

// Shows the kind's parameters in a modal dialog over the owner. True when the user confirmed: the
// block then holds the new values, otherwise it is untouched.
bool EditBarcodeDetail(const BarcodeKind& kind, const BarcodeLibInfo& info, std::span<BYTE> block,
                       HWND owner);

// The density to work with: 305 where the driver says so, otherwise 203.
int DensityOf(const BarcodeLibInfo& info);

// A 16-bit parameter of a block, little-endian.
uint16_t ReadWord(std::span<const BYTE> block, std::size_t offset);
void WriteWord(std::span<BYTE> block, std::size_t offset, uint16_t value);

}  // namespace companions
