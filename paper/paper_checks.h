// The checks of a paper before it is stored or deleted. They work on plain data and return a
// result; the dialogs show its message.
#pragma once

#include <windows.h>

#include "driver/settings_block.h"
#include "paper/paper_info.h"
#include "paper/paper_records.h"

namespace kestrel {

// The input that a check has rejected.
enum class PaperInput { kName, kWidth, kLength, kEyeMark, kGap };

struct PaperCheckResult {
  UINT message = 0;  // string id; 0: passed
  PaperInput input = PaperInput::kName;
  int bound = 0;  // the limit for the message, in the unit of the checked value

  bool Passed() const { return message == 0; }
};

// Checks a terminated name for the paper in slot edited, or for a new paper (-1). Rejects, in this
// order, a blank name, the name of the free-size paper, the name of another paper (the comparison
// is case-sensitive), characters outside code page 932, and 64 bytes or more in that code page.
PaperCheckResult CheckPaperName(const DriverSettingsBlock& block, const WCHAR* name, int edited);

// The typed sizes, before they are truncated to 16 bits.
struct PaperSizes {
  int width, length, eyeMark, gap;
};
// Checks width, length, eye-mark and gap, in this order, against their limits. sizes and limits are
// in unit, which is kMillimetre or kInch.
PaperCheckResult CheckPaperSizes(const PaperSizes& sizes, const PaperLimits& limits, int unit);

// Sets the printable area to the whole length of the label and to its width, at most that of the
// print head, in the centre of the label.
void DerivePrintableArea(PaperInfo& paper);
// Checks that the printable area is within the width and length of the label.
PaperCheckResult CheckPrintableArea(const PaperInfo& paper);

// Rejects the deletion of the free-size paper, of a paper that the driver fixes and of the last
// registered paper.
PaperCheckResult CheckPaperDeletion(const DriverSettingsBlock& block, int entry);

constexpr size_t kDeleteQuestionLength = 256;
// Formats the question before a deletion: the name of the paper and the confirmation text.
void FormatDeleteQuestion(const DriverSettingsBlock& block, int entry,
                          WCHAR (&question)[kDeleteQuestionLength]);

}  // namespace kestrel
