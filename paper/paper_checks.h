// What a paper must pass before it is stored or deleted. The checks are over plain data and answer
// a verdict; the dialogs show it.
#pragma once

#include <windows.h>

#include "driver/settings_block.h"
#include "paper/paper_info.h"
#include "paper/paper_records.h"

namespace kestrel {

// Which input a verdict is about.
enum class PaperInput { kName, kWidth, kLength, kEyeMark, kGap };

struct PaperCheckResult {
  UINT message = 0;  // string id of the refusal; 0: passed
  PaperInput input = PaperInput::kName;
  int bound = 0;  // the limit that the message names, in the unit that was checked

  bool Passed() const { return message == 0; }
};

// The name of a paper that is to be stored, terminated; edited is the slot of the paper that it is
// for, or -1 for a new one. In this order: not blank, not the free-size paper's, not another
// paper's (letter case counts), every unit in code page 932, fewer than 64 bytes there.
PaperCheckResult CheckPaperName(const DriverSettingsBlock& block, const WCHAR* name, int edited);

// The typed sizes, not yet cut to 16 bits.
struct PaperSizes {
  int width, length, eyeMark, gap;
};
// Width, length, eye-mark and gap, in this order, against their limits. unit is kMillimetre or
// kInch and that of sizes and limits alike.
PaperCheckResult CheckPaperSizes(const PaperSizes& sizes, const PaperLimits& limits, int unit);

// Derives the printable area from the label's sizes: as wide as the head prints, centred, over the
// whole length.
void DerivePrintableArea(PaperInfo& paper);
// Whether the printable area lies within the label's width and length.
PaperCheckResult CheckPrintableArea(const PaperInfo& paper);

// Whether a list entry may be deleted: not the free-size paper, not one fixed by the driver, not
// the last one.
PaperCheckResult CheckPaperDeletion(const DriverSettingsBlock& block, int entry);

// The question before a deletion: the paper's name and the confirmation text.
constexpr size_t kDeleteQuestionLength = 256;
void DeleteQuestion(const DriverSettingsBlock& block, int entry,
                    WCHAR (&question)[kDeleteQuestionLength]);

}  // namespace kestrel
