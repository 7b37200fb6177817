// Loads the registered fonts of a printer into a session and saves them.
#pragma once

#include <windows.h>

#include "fonts/font_record.h"

namespace kestrel {

// Fills a store from printer data "CreateFont Number" and "CreateFont Data". Missing or damaged
// data results in an empty store. Reads both values again, up to three times in all, while they do
// not match, because another session may be saving. Allocates the lists from heap; returns false
// only when an allocation fails. The caller releases them with FreeFontStore.
bool LoadFontStore(FontStore& store, HANDLE printer, HANDLE heap);
// Releases both lists and clears the store.
void FreeFontStore(FontStore& store, HANDLE heap);
// Writes both values, decorative fonts first. Drops the last decorative fonts when both kinds
// exceed the limit together. Returns false, without a write, for a store that LoadFontStore did not
// fill and when memory runs out. Does not report an error of the spooler.
bool SaveFontStore(HANDLE printer, const FontStore& store);
// Returns a copy of a stored record with terminated names.
FontRecord CopyForEditing(const FontRecord& record);
// Returns true while both kinds together have fewer than kFontCapacity fonts.
bool CanRegisterMore(const FontStore& store);

}  // namespace kestrel
