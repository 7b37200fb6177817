#include "paper/paper_checks.h"

#include <algorithm>
#include <iterator>

#include "driver/text.h"
#include "paper/fields/measured_value.h"
#include "paper/paper_records.h"
#include "paper/paper_table.h"
#include "resources/resource.h"
#include "sheets/messages.h"

namespace kestrel {
namespace {

constexpr int kNameBytes = 64;  // size of a name in code page 932 with its terminator

bool EqualsName(const WCHAR (&field)[kPaperNameLength], const WCHAR* name) {
  const int length = BoundedLength(field, kPaperNameLength);
  return length == TextLength(name) && std::equal(field, field + length, name);
}

struct SizeRule {
  PaperInput input;
  int PaperSizes::*size;
  SizeLimit PaperLimits::*limit;
  UINT belowMm, belowInch, aboveMm, aboveInch;
};

constexpr SizeRule kSizeRules[] = {
    {PaperInput::kWidth, &PaperSizes::width, &PaperLimits::width, IDS_WIDTH_BELOW_MM,
     IDS_WIDTH_BELOW_INCH, IDS_WIDTH_ABOVE_MM, IDS_WIDTH_ABOVE_INCH},
    {PaperInput::kLength, &PaperSizes::length, &PaperLimits::length, IDS_LENGTH_BELOW_MM,
     IDS_LENGTH_BELOW_INCH, IDS_LENGTH_ABOVE_MM, IDS_LENGTH_ABOVE_INCH},
    {PaperInput::kEyeMark, &PaperSizes::eyeMark, &PaperLimits::eyeMark, IDS_EYE_MARK_BELOW_MM,
     IDS_EYE_MARK_BELOW_INCH, IDS_EYE_MARK_ABOVE_MM, IDS_EYE_MARK_ABOVE_INCH},
    {PaperInput::kGap, &PaperSizes::gap, &PaperLimits::gap, IDS_GAP_BELOW_MM, IDS_GAP_BELOW_INCH,
     IDS_GAP_ABOVE_MM, IDS_GAP_ABOVE_INCH},
};

}  // namespace

PaperCheckResult CheckPaperName(const DriverSettingsBlock& block, const WCHAR* name, int edited) {
  if (IsBlankText(name)) return {IDS_PAPER_NAME_MISSING};
  if (SameText(name, kFreePaperName)) return {IDS_PAPER_NAME_TAKEN};
  const int count = PaperCount(block);
  for (int slot = 0; slot < count; ++slot) {
    if (slot != edited && EqualsName(block.Printer.Papers[slot].PaperName, name)) {
      return {IDS_PAPER_NAME_TAKEN};
    }
  }
  if (!IsCp932Representable(name, TextLength(name), nullptr)) return {IDS_BAD_CHARACTER};

  // A buffer for the longest name only would truncate a longer one to a valid length.
  char bytes[kNameBytes + 2];
  if (ToCodePage(name, -1, bytes, sizeof bytes) >= kNameBytes) return {IDS_NAME_TOO_LONG};
  return {};
}

PaperCheckResult CheckPaperSizes(const PaperSizes& sizes, const PaperLimits& limits, int unit) {
  const bool inch = unit == kInch;
  for (const SizeRule& rule : kSizeRules) {
    const int size = sizes.*rule.size;
    const SizeLimit limit = limits.*rule.limit;
    if (size < limit.minimum) {
      return {inch ? rule.belowInch : rule.belowMm, rule.input, limit.minimum};
    }
    if (size > limit.maximum) {
      return {inch ? rule.aboveInch : rule.aboveMm, rule.input, limit.maximum};
    }
  }
  return {};
}

void DerivePrintableArea(PaperInfo& paper) {
  const int widest = ConvertMeasure(kPrintableWidths.maximum, kMillimetre, paper.Unit, 0);
  paper.PrintableWidth = static_cast<int16_t>(std::min<int>(paper.LabelWidth, widest));
  paper.PrintableHeight = paper.LabelHeight;
  paper.PrintableLeft = static_cast<int16_t>((paper.LabelWidth - paper.PrintableWidth) / 2);
  paper.PrintableTop = 0;
}

PaperCheckResult CheckPrintableArea(const PaperInfo& paper) {
  if (paper.LabelWidth < paper.PrintableLeft + paper.PrintableWidth) {
    return {IDS_PRINTABLE_WIDTH_WRONG, PaperInput::kWidth};
  }
  if (paper.LabelHeight < paper.PrintableTop + paper.PrintableHeight) {
    return {IDS_PRINTABLE_HEIGHT_WRONG, PaperInput::kLength};
  }
  return {};
}

PaperCheckResult CheckPaperDeletion(const DriverSettingsBlock& block, int entry) {
  const int count = PaperCount(block);
  const bool registered = entry >= 0 && entry < count;
  if (!registered || count < 2 || block.Printer.Papers[entry].UserDef == 0) {
    return {IDS_PAPER_FIXED};
  }
  return {};
}

void FormatDeleteQuestion(const DriverSettingsBlock& block, int entry,
                          WCHAR (&question)[kDeleteQuestionLength]) {
  static_assert(kDeleteQuestionLength > kPaperNameLength);
  PaperEntryName(block, entry, question, kPaperNameLength);
  WCHAR confirmation[kDeleteQuestionLength - kPaperNameLength];
  LoadMessageText(IDS_CONFIRM_DELETE, confirmation, std::size(confirmation));
  AppendText(question, confirmation);
}

}  // namespace kestrel
