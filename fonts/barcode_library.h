// Calls into the barcode detail library of the driver package. The library is loaded for each
// operation and freed before it returns; a library or an entry point that cannot be had is told in
// a message box over the dialog.
#pragma once

#include <windows.h>

#include <cstdint>

#include "fonts/font_record.h"

namespace kestrel {

// What Init and ShowDlg are told about the printer.
struct BarcodeLibInfo {
  uint16_t densityX;  // dots per inch
  uint16_t densityY;
  uint16_t reserved[2];
};
static_assert(sizeof(BarcodeLibInfo) == 8);

// Where the library is looked for, and for which printer.
struct BarcodeLibrary {
  HWND dialog;
  HANDLE printer;
  const WCHAR* printerName;
  uint16_t headDensity;
};

// Fills a list with the kinds' display names, one entry a row of the table of kinds, as far as the
// library names them.
void FillKindList(const BarcodeLibrary& library, int list);

// Lets the library write a kind's default parameters into the first 40 bytes of a block. An unknown
// kind changes nothing.
void InitParam(const BarcodeLibrary& library, uint8_t* block, int kind);

// Shows the kind's own dialog over a block of 40 bytes, after its defaults when initialise is set.
// Answers the result of the last library call, 2 when none was made; 1 means confirmed.
int16_t ShowDetail(const BarcodeLibrary& library, uint8_t* block, int kind, bool initialise);

}  // namespace kestrel
