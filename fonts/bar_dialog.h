// The dialog that registers or changes a barcode font.
#pragma once

#include <windows.h>

#include "fonts/font_record.h"

namespace kestrel {

// Edits store.WorkFont, as FontEditMode, FontEditIndex and BarReference say, for an open printer
// and its head density in dots per inch. Whether the user confirmed; WorkFont is to be discarded
// otherwise.
bool RunBarDialog(HWND owner, FontStore& store, HANDLE printer, const WCHAR* printerName,
                  uint16_t headDensity);

}  // namespace kestrel
