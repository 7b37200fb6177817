// The font sections of a backup file.
#pragma once

#include "files/profile_io.h"
#include "fonts/font_record.h"

namespace kestrel {

// Saves or loads the sections of all fonts, decorative ones first. A load clears the records after
// the last font. Null lists are saved as no fonts and remain null after a load.
void TransferFonts(ProfileIo& io, FontStore& fonts);

}  // namespace kestrel
