// Calls into the barcode detail library of the driver package. Each operation loads the library and
// frees it before it returns. A message box over the dialog reports a library or an entry point
// that is missing.
#pragma once

#include <windows.h>

#include <cstdint>

#include "fonts/font_record.h"

namespace kestrel {

// The printer's properties as Init and ShowDlg receive them.
struct BarcodeLibInfo {
  uint16_t densityX;  // dots per inch
  uint16_t densityY;
  uint16_t reserved[2];
};
static_assert(sizeof(BarcodeLibInfo) == 8);

// The arguments of every call: the printer, whose driver directory contains the library, and the
// dialog that owns the message boxes.
struct BarcodeLibrary {
  HWND dialog;
  HANDLE printer;
  const WCHAR* printerName;
  uint16_t headDensity;  // dots per inch
};

// Adds the display name of each kind to a list, in the order of kBarcodeKinds. Stops after a
// message at the first kind whose name the library cannot return.
void FillKindList(const BarcodeLibrary& library, int list);

// Writes a kind's default parameters into the first 40 bytes of a block. Does not change the block
// when the kind or the library's entry point is missing.
void InitParam(const BarcodeLibrary& library, uint8_t* block, int kind);

// Shows the kind's own dialog, which edits a block of 40 bytes; initialise writes the default
// parameters first. Returns the result of the last library call, or 2 when no call was made; 1
// means that the user confirmed.
int16_t ShowDetail(const BarcodeLibrary& library, uint8_t* block, int kind, bool initialise);

}  // namespace kestrel
