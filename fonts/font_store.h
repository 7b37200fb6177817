// The registered fonts of a printer: loaded into a session, written back, and the rules for their
// names.
#pragma once

#include <windows.h>

#include "fonts/font_record.h"

namespace kestrel {

// Fills a store from printer data "CreateFont Number" and "CreateFont Data". Reads both again, a
// few times, while they do not match, since another session may be saving. Anything missing or
// damaged gives an empty store. False only when the lists cannot be allocated from heap.
bool LoadFontStore(FontStore& store, HANDLE printer, HANDLE heap);
// Releases both lists.
void FreeFontStore(FontStore& store, HANDLE heap);
// How many decorative fonts are listed and saved: those that leave room for all barcode fonts
// within the limit.
int ShownDecoFonts(const FontStore& store);
// Writes both values, decorative fonts first. A store that was not loaded in this session is never
// written (false).
bool SaveFontStore(HANDLE printer, const FontStore& store);
// A copy of a stored record whose names are terminated, as a dialog needs it.
FontRecord CopyForEditing(const FontRecord& record);
// Whether one more font can be registered.
bool CanRegisterMore(const FontStore& store);

}  // namespace kestrel
