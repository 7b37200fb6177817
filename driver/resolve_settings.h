// Settings of a printer: loaded, defaulted, merged with an application's record and copied out.
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

// Resolves a block of its own (ResolveBlock) and copies it to output, which may be null. DM_IN_BUFFER
// and kMergeInput merge input; DM_COPY copies the settings record (SettingsRecordSize bytes),
// kCopyWholeBlock the whole block (kBlockSize bytes). Returns false only when the block cannot be
// allocated.
bool ResolveSettings(void* output, const RecordView& input, HANDLE printer, const WCHAR* name,
                     DWORD mode);

// The bytes that DM_COPY with DM_IN_BUFFER writes: kRecordSize, fewer for an input record whose
// dmSize is below kPublicSize (its dmSize and at most kPrivateSize bytes behind it).
size_t SettingsRecordSize(const RecordView& input);

// Leaves a complete, signed block: the stored settings or the defaults.
void LoadPrinterSettings(DriverSettingsBlock& block, HANDLE printer, const WCHAR* name);

// Writes the printer-level part as "Private DevMode".
bool SavePrinterSettings(const DriverSettingsBlock& block, HANDLE printer, const WCHAR* name);

// Tells every window that the printer's defaults changed (WM_DEVMODECHANGE, 300 ms at most a
// window).
void AnnounceChangedDefault(const WCHAR* name);

// The 452 bytes of a block's settings record.
void CopySettingsRecord(void* output, const DriverSettingsBlock& block);

}  // namespace kestrel
