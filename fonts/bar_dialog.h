// The dialog that registers or changes a barcode font.
#pragma once

#include <windows.h>

#include "fonts/font_record.h"

namespace kestrel {

// Edits store.WorkFont, as FontEditMode, FontEditIndex and BarReference say, for an open printer
// and its head density in dots per inch. 1 when the user confirmed; 2 otherwise, with WorkFont to
// be discarded. -1 when the dialog cannot be shown.
INT_PTR ShowBarDialog(HWND owner, FontStore& store, HANDLE printer, const WCHAR* printerName,
                      uint16_t headDensity);

}  // namespace kestrel
