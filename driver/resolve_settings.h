// Loading, merging, copying and storing of a printer's settings.
#pragma once

#include <windows.h>

#include "driver/record_view.h"
#include "driver/settings_block.h"

namespace kestrel {

// Fills a block with the printer's stored settings, or with the defaults when there are none, and
// merges input when it is given. block must be zero-filled: a set-up file leaves the fields that it
// does not name unchanged.
void ResolveBlock(DriverSettingsBlock& block, const RecordView& input, HANDLE printer,
                  const WCHAR* name);

// Modes of ResolveSettings besides DM_COPY and DM_IN_BUFFER (DocumentProperties).
constexpr DWORD kCopyWholeBlock = 0x1000;
constexpr DWORD kMergeInput = 0x2000;

// Resolves a block of its own (ResolveBlock) and copies it to output, which may be null.
// DM_IN_BUFFER and kMergeInput merge input; DM_COPY copies the settings record (SettingsRecordSize
// bytes), kCopyWholeBlock the whole block (kBlockSize bytes). Returns false only when the block
// cannot be allocated.
bool ResolveSettings(void* output, const RecordView& input, HANDLE printer, const WCHAR* name,
                     DWORD mode);

// Returns the number of bytes that DM_COPY with DM_IN_BUFFER writes: kRecordSize, or, for an input
// record whose dmSize is below kPublicSize, its dmSize plus at most kPrivateSize private bytes.
size_t SettingsRecordSize(const RecordView& input);

// Fills a block with the stored settings, or with the defaults when any part is missing or foreign.
// Always leaves a complete, signed block; returns true when it holds the stored settings.
bool LoadPrinterSettings(DriverSettingsBlock& block, HANDLE printer, const WCHAR* name);

// Stores the printer-level part as the printer data value "Private DevMode". Returns false on
// failure.
bool SavePrinterSettings(const DriverSettingsBlock& block, HANDLE printer, const WCHAR* name);

// Broadcasts WM_DEVMODECHANGE with the printer's name to all top-level windows. Waits at most 300
// ms for each.
void BroadcastDefaultChanged(const WCHAR* name);

// Copies a block's settings record (kRecordSize bytes).
void CopySettingsRecord(void* output, const DriverSettingsBlock& block);

}  // namespace kestrel
