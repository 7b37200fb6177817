#include "sheets/session_fonts.h"

#include "fonts/font_store.h"
#include "sheets/page_services.h"

namespace kestrel {

bool LoadSessionFonts(DriverUiData& session) {
  return LoadFontStore(session.fonts, session.printer, session.sessionHeap);
}

void FreeSessionFonts(DriverUiData& session) { FreeFontStore(session.fonts, session.sessionHeap); }

bool SaveFontsThenConfirm(DriverUiData& session) {
  SaveFontStore(session.printer, session.fonts);
  return ConfirmSheetResult(session);
}

bool ConfirmThenSaveFonts(DriverUiData& session) {
  const bool accepted = ConfirmSheetResult(session);
  SaveFontStore(session.printer, session.fonts);
  return accepted;
}

}  // namespace kestrel
