// The registered fonts of a session: loaded when it opens, saved on Apply, freed when it closes.
#pragma once

#include "sheets/driver_ui_data.h"

namespace kestrel {

// Loads the printer's fonts into the session's heap. Returns false when out of memory.
bool LoadSessionFonts(DriverUiData& session);
void FreeSessionFonts(DriverUiData& session);

// Apply handlers of pages (PageHandlers::apply): save the fonts to the printer, before or after
// ConfirmSheetResult, and return its result.
bool SaveFontsThenConfirm(DriverUiData& session);
bool ConfirmThenSaveFonts(DriverUiData& session);

}  // namespace kestrel
