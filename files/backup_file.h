// Saves all driver properties of a printer to a backup file and loads them from one.
#pragma once

#include <windows.h>

#include "driver/settings_block.h"
#include "files/profile_io.h"
#include "fonts/font_record.h"

namespace kestrel {

// BackupSections: a bit mask of the sections that a transfer includes.
constexpr unsigned BACKUP_PAPERS = 1;
constexpr unsigned BACKUP_FONTS = 2;
constexpr unsigned BACKUP_DRIVER_INFO = 4;
constexpr unsigned BACKUP_ALL = 7;

// The settings that a save reads and a load writes.
struct BackupSubject {
  DriverSettingsBlock& block;
  FontStore& fonts;  // its lists may be null
  const WCHAR* printerName;
};

// Saves to or loads from a file. Returns false on failure; shows messages over owner.
// The platform converts the bytes of path and section names by the process's ANSI code page. Where
// that conversion changes them, the function fails before it accesses a file, because it would
// access another file or write one that no machine can read. Single-byte code pages change none.
// After a failed load the caller restores the block from its own copy. A load changes the fonts and
// nTSMode only when it can no longer fail.
bool BackupFileTransfer(HWND owner, const WCHAR* fileName, const BackupSubject& subject,
                        TransferDirection direction, unsigned sections);

}  // namespace kestrel
