// The dialog that registers or changes a decorative font.
#pragma once

#include <windows.h>

#include "fonts/font_record.h"

namespace kestrel {

// Edits store.WorkFont, as FontEditMode, FontEditIndex and DecoReference say, for a printer with a
// head density of dpi. Whether the user confirmed; WorkFont is to be discarded otherwise.
bool RunDecoDialog(HWND owner, FontStore& store, int dpi);

}  // namespace kestrel
