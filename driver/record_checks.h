// Checks whether a settings record was made by this driver and for which printer.
#pragma once

#include "driver/record_view.h"
#include "driver/settings_block.h"

namespace kestrel {

// The differences between a record and one of this driver; a bit mask.
enum RecordMismatch : unsigned {
  kOtherSpecVersion = 1,
  kOtherDriverVersion = 2,
  kOtherSize = 4,
  kOtherExtra = 8,
  kNoSignature = 16,
  kOtherDevice = 32,
};

// Returns the RecordMismatch bits of a record; 0 for a record of this driver. Device names are
// reduced to the text between the last "\" and the next ",", and match when the shorter one is a
// prefix of the longer. They also match when dmDeviceName has its maximum length and is a prefix of
// the printer's name. The signature of a record of other sizes is not read: it counts as missing.
unsigned CheckSettingsRecord(const RecordView& record, const WCHAR* name);
// As CheckSettingsRecord, but without kOtherDevice from Windows Vista on, where a record may name
// another device.
unsigned MismatchOnThisSystem(const RecordView& record, const WCHAR* name);

// Returns true when a stored record has the sizes of this driver's record and no mismatch on the
// running system.
bool IsOwnSettingsRecord(const SettingsRecord& record, const WCHAR* name);

}  // namespace kestrel
