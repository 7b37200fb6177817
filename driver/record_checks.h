// Whether a settings record is the driver's own, and for which printer it was made.
#pragma once

#include "driver/record_view.h"
#include "driver/settings_block.h"

namespace kestrel {

// RecordMismatch bits.
enum RecordMismatch : unsigned {
  kOtherSpecVersion = 1,
  kOtherDriverVersion = 2,
  kOtherSize = 4,
  kOtherExtra = 8,
  kNoSignature = 16,
  kOtherDevice = 32,
};

// What distinguishes a record from the driver's own; 0: nothing. Device names count as equal when
// the shorter begins the longer, both taken behind the last "\" and up to the first ",", and when
// the record's name is as long as it can be and begins the printer's. A record of other sizes
// counts as unsigned: its end is not read.
unsigned CheckSettingsRecord(const RecordView& record, const WCHAR* name);
// The same with the rule of the running system: from Windows Vista on a record may name another
// device.
unsigned MismatchOnThisSystem(const RecordView& record, const WCHAR* name);

// The strict test used on stored records.
bool IsOwnSettingsRecord(const SettingsRecord& record, const WCHAR* name);

}  // namespace kestrel
