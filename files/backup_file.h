// The backup file of all driver properties of one printer.
#pragma once

#include <windows.h>

#include "driver/settings_block.h"
#include "files/profile_io.h"
#include "fonts/font_record.h"

namespace kestrel {

// BackupSections, what a transfer takes in.
constexpr unsigned BACKUP_PAPERS = 1;
constexpr unsigned BACKUP_FONTS = 2;
constexpr unsigned BACKUP_DRIVER_INFO = 4;
constexpr unsigned BACKUP_ALL = 7;

// What a transfer reads or writes, besides the file.
struct BackupSubject {
  DriverSettingsBlock& block;
  FontStore& fonts;  // its lists may be absent
  const WCHAR* printerName;
};

// Saves to or loads from a file. Fails before it reads or writes anything where the process's ANSI
// code page, by which the platform converts all bytes that it gets, does not leave path and section
// names as they are: the file would be another one, or no machine could read it again. Pages of
// single bytes lose none, so that there the contents are those of page 932. Messages are shown over
// owner. On a failed load the caller puts the block back from a copy that it took; fonts and
// nTSMode are touched only once a load can no longer fail.
bool BackupFileTransfer(HWND owner, const WCHAR* fileName, const BackupSubject& subject,
                        TransferDirection direction, unsigned sections);

}  // namespace kestrel
