// The dialog that registers or changes a decorative font.
#pragma once

#include <windows.h>

#include "fonts/font_record.h"

namespace kestrel {

// Edits store.WorkFont, as FontEditMode, FontEditIndex and DecoReference say, for a printer with a
// head density of dpi. 1 when the user confirmed; 2 otherwise, with WorkFont to be discarded. -1
// when the dialog cannot be shown.
INT_PTR ShowDecoDialog(HWND owner, FontStore& store, int dpi);

}  // namespace kestrel
