// The table of registered papers with the free-size paper as its last entry. An entry index beyond
// the registered papers means the free-size paper.
#pragma once

#include <windows.h>

#include "driver/settings_block.h"
#include "paper/paper_info.h"

namespace kestrel {

// Number of registered papers, clamped to 0..20 whatever is stored.
int PaperCount(const DriverSettingsBlock& block);
// Number of list entries: the registered papers and the free-size paper.
int PaperEntryCount(const DriverSettingsBlock& block);
// Name of an entry, at most n - 1 units, terminated.
void PaperEntryName(const DriverSettingsBlock& block, int entry, WCHAR* name, size_t n);
// Id of an entry: 257 + slot, or 256.
int16_t PaperEntryId(const DriverSettingsBlock& block, int entry);
// Entry of an id, or -1 when the id names none.
int PaperEntryOfId(const DriverSettingsBlock& block, int id);
// Entry of an id; the free-size paper's when the id names none.
int PaperEntryOrFree(const DriverSettingsBlock& block, int id);
// The record of an entry.
PaperInfo& PaperOfEntry(DriverSettingsBlock& block, int entry);
const PaperInfo& PaperOfEntry(const DriverSettingsBlock& block, int entry);

// Width (x) and length (y) in tenths of a millimetre, kept to 16 bits; inches are converted, other
// units as stored.
POINT PaperSizeTenths(const PaperInfo& paper);

// Adds a record behind the others and marks it as the user's. False when 20 are registered.
bool AppendPaper(DriverSettingsBlock& block, const PaperInfo& paper);
void ReplacePaper(DriverSettingsBlock& block, int entry, const PaperInfo& paper);
// Removes a registered paper; those behind move down, the last slot is cleared. PaperID stays.
// False for no such paper.
bool DeletePaper(DriverSettingsBlock& block, int entry);

// Converts the eight measured fields to a unit at a head density in dots per inch and sets Unit.
void ConvertPaper(PaperInfo& paper, uint16_t unit, int dpi);

// The paper fixed by the driver, and what a newly registered paper starts as.
const PaperInfo& StandardPaper();
PaperInfo NewPaper();

}  // namespace kestrel
