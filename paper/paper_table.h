// The list of papers: the registered papers of the printer and, as the last entry, the free-size
// paper of the document. An entry index outside the registered papers means the free-size paper.
#pragma once

#include <windows.h>

#include "driver/settings_block.h"
#include "paper/paper_info.h"

namespace kestrel {

// Returns the number of registered papers. Clamps the stored number to 0..20.
int PaperCount(const DriverSettingsBlock& block);
// Returns the number of list entries: the registered papers and the free-size paper.
int PaperEntryCount(const DriverSettingsBlock& block);
// Copies the name of an entry, truncated to n - 1 UTF-16 units and terminated.
void PaperEntryName(const DriverSettingsBlock& block, int entry, WCHAR* name, size_t n);
// Returns the paper id of an entry: 257 + slot for a registered paper, 256 for the free-size paper.
int16_t PaperEntryId(const DriverSettingsBlock& block, int entry);
// Returns the entry of a paper id, or -1 for an unknown id.
int PaperEntryOfId(const DriverSettingsBlock& block, int id);
// Returns the entry of a paper id, or that of the free-size paper for an unknown id.
int PaperEntryOrFree(const DriverSettingsBlock& block, int id);
// Returns the record of an entry in the block.
PaperInfo& PaperOfEntry(DriverSettingsBlock& block, int entry);
const PaperInfo& PaperOfEntry(const DriverSettingsBlock& block, int entry);

// Returns width (x) and length (y) of a paper in tenths of a millimetre. Converts inches and
// truncates the result to 16 bits; returns the values of other units as stored.
POINT PaperSizeTenths(const PaperInfo& paper);

// Appends a record and marks it as registered by the user. Returns false when 20 papers are
// registered.
bool AppendPaper(DriverSettingsBlock& block, const PaperInfo& paper);
// Replaces the record of an entry.
void ReplacePaper(DriverSettingsBlock& block, int entry, const PaperInfo& paper);
// Removes a registered paper, moves the following papers down and clears the last slot. Does not
// change PaperID. Returns false for an entry that is no registered paper.
bool DeletePaper(DriverSettingsBlock& block, int entry);

// Converts the eight measured fields to a unit at a head density in dots per inch and sets Unit.
void ConvertPaper(PaperInfo& paper, uint16_t unit, int dpi);

// Returns the paper that the driver fixes.
const PaperInfo& StandardPaper();
// Returns the initial values of a newly registered paper; its name is empty.
PaperInfo NewPaper();

}  // namespace kestrel
