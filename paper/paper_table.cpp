#include "paper/paper_table.h"

#include <algorithm>
#include <iterator>

#include "driver/text.h"
#include "paper/fields/measured_value.h"

namespace kestrel {

namespace {

constexpr PaperInfo kStandardPaper = {
    .PaperName = TEXT("Standard Label 58 x 68 mm"),
    .PaperKind = 0,
    .Thickness = 3,
    .LabelWidth = 580,
    .LabelHeight = 680,
    .GapSize = 30,
    .EyeMarkSize = 30,
    .Unit = kMillimetre,
    .PrintableLeft = 50,
    .PrintableTop = 0,
    .PrintableWidth = 480,
    .PrintableHeight = 650,
    .Yoshi = 0,
    .Reserved = {},
    .UserDef = 0,
};

bool IsRegistered(const DriverSettingsBlock& block, int entry) {
  return entry >= 0 && entry < PaperCount(block);
}

int16_t Tenths(int16_t value, uint16_t unit) {
  if (unit != kInch) return value;
  return static_cast<int16_t>(ConvertMeasure(value, kInch, kMillimetre, 0));
}

}  // namespace

int PaperCount(const DriverSettingsBlock& block) {
  return std::clamp<int>(block.Printer.PaperNum, 0, kPaperCapacity);
}

int PaperEntryCount(const DriverSettingsBlock& block) { return PaperCount(block) + 1; }

void PaperEntryName(const DriverSettingsBlock& block, int entry, WCHAR* name, size_t n) {
  if (IsRegistered(block, entry))
    CopyField(name, n, block.Printer.Papers[entry].PaperName, kPaperNameLength);
  else
    CopyText(name, n, kFreePaperName);
}

int16_t PaperEntryId(const DriverSettingsBlock& block, int entry) {
  return IsRegistered(block, entry) ? static_cast<int16_t>(kFirstPaperId + entry) : kFreePaperId;
}

int PaperEntryOfId(const DriverSettingsBlock& block, int id) {
  if (id == kFreePaperId) return PaperCount(block);
  const int entry = id - kFirstPaperId;
  return IsRegistered(block, entry) ? entry : -1;
}

int PaperEntryOrFree(const DriverSettingsBlock& block, int id) {
  const int entry = PaperEntryOfId(block, id);
  return entry >= 0 ? entry : PaperCount(block);
}

PaperInfo& PaperOfEntry(DriverSettingsBlock& block, int entry) {
  return IsRegistered(block, entry) ? block.Printer.Papers[entry] : block.Record.Private.FreePaper;
}

const PaperInfo& PaperOfEntry(const DriverSettingsBlock& block, int entry) {
  return PaperOfEntry(const_cast<DriverSettingsBlock&>(block), entry);
}

POINT PaperSizeTenths(const PaperInfo& paper) {
  return {Tenths(paper.LabelWidth, paper.Unit), Tenths(paper.LabelHeight, paper.Unit)};
}

bool AppendPaper(DriverSettingsBlock& block, const PaperInfo& paper) {
  const int count = PaperCount(block);
  if (count >= kPaperCapacity) return false;
  PaperInfo& slot = block.Printer.Papers[count];
  slot = paper;
  slot.UserDef = 1;
  block.Printer.PaperNum = static_cast<int16_t>(count + 1);
  return true;
}

void ReplacePaper(DriverSettingsBlock& block, int entry, const PaperInfo& paper) {
  PaperOfEntry(block, entry) = paper;
}

bool DeletePaper(DriverSettingsBlock& block, int entry) {
  if (!IsRegistered(block, entry)) return false;
  PaperInfo* papers = block.Printer.Papers;
  std::copy(papers + entry + 1, papers + kPaperCapacity, papers + entry);
  papers[kPaperCapacity - 1] = PaperInfo{};
  block.Printer.PaperNum = static_cast<int16_t>(PaperCount(block) - 1);
  return true;
}

void ConvertPaper(PaperInfo& paper, uint16_t unit, int dpi) {
  int16_t PaperInfo::*const measured[] = {
      &PaperInfo::LabelWidth,     &PaperInfo::LabelHeight,     &PaperInfo::GapSize,
      &PaperInfo::EyeMarkSize,    &PaperInfo::PrintableLeft,   &PaperInfo::PrintableTop,
      &PaperInfo::PrintableWidth, &PaperInfo::PrintableHeight,
  };
  for (const auto field : measured)
    paper.*field = static_cast<int16_t>(ConvertMeasure(paper.*field, paper.Unit, unit, dpi));
  paper.Unit = unit;
}

const PaperInfo& StandardPaper() { return kStandardPaper; }

PaperInfo NewPaper() {
  PaperInfo paper = kStandardPaper;
  std::fill(std::begin(paper.PaperName), std::end(paper.PaperName), WCHAR{});
  paper.PrintableLeft = 0;
  paper.PrintableWidth = paper.LabelWidth;
  paper.PrintableHeight = paper.LabelHeight;
  return paper;
}

}  // namespace kestrel
