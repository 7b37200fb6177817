// The dialog that registers or changes a barcode font.
#pragma once

#include <windows.h>

#include "fonts/font_record.h"

namespace kestrel {

// Edits store.WorkFont as FontEditMode, FontEditIndex and BarReference request. printer is an open
// printer, headDensity its resolution in dots per inch. Returns true when the user confirmed; the
// caller discards WorkFont otherwise.
bool RunBarDialog(HWND owner, FontStore& store, HANDLE printer, const WCHAR* printerName,
                  uint16_t headDensity);

}  // namespace kestrel
