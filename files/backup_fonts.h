// The font sections of a backup file.
#pragma once

#include "files/profile_io.h"
#include "fonts/font_record.h"

namespace kestrel {

// Writes or reads the sections of all fonts, decorative ones first. A load clears the records
// behind the last that was read. Absent lists are saved as no fonts and stay absent on a load.
void TransferFonts(ProfileIo& io, FontStore& fonts);

}  // namespace kestrel
