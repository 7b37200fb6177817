// The font sections of a backup file.
#pragma once

#include "files/profile_io.h"
#include "fonts/font_record.h"

namespace kestrel {

// Write or read the sections of all fonts, a load clears the records behind the last
// that was read. Absent lists are saved as no fonts and stay absent on a load.
void TransferDecoFonts(FontStore& fonts, TransferDirection direction);
void TransferBarFonts(FontStore& fonts, TransferDirection direction);

}  // namespace kestrel
