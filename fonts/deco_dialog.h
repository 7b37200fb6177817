// The dialog that registers or changes a decorative font.
#pragma once

#include <windows.h>

#include "fonts/font_record.h"

namespace kestrel {

// Edits store.WorkFont as FontEditMode, FontEditIndex and DecoReference request. dpi is the
// printer's head density. Returns true when the user confirmed; the caller discards WorkFont
// otherwise.
bool RunDecoDialog(HWND owner, FontStore& store, int dpi);

}  // namespace kestrel
