// Papers that the printer has, and the paper page of its user's defaults.
#pragma once

#include <string>

#include "driver/text.h"
#include "paper/paper_table.h"
#include "resources/resource.h"
#include "tests/support/open_sheet.h"

namespace kestrel {

using namespace support;

inline constexpr char16_t kStandard[] = u"Standard Label 58 x 68 mm";
inline constexpr char16_t kFree[] = u"フリーサイズ";
inline constexpr char16_t kPage[] = u"用紙";

// Controls of the page and of the registration dialog.
inline constexpr int kList = IDC_PAPER_LIST, kPicture = IDC_PAPER_PICTURE;
inline constexpr int kPortrait = IDC_PAPER_PORTRAIT, kLandscape = IDC_PAPER_LANDSCAPE;
inline constexpr int kFlip = IDC_PAPER_FLIP, kPageWholeLabel = IDC_PAPER_WHOLE_LABEL;
inline constexpr int kVert = IDC_PAPER_VERT_BASE, kVertSpin = IDC_PAPER_VERT_BASE_SPIN;
inline constexpr int kHorz = IDC_PAPER_HORZ_BASE, kHorzSpin = IDC_PAPER_HORZ_BASE_SPIN;
inline constexpr int kPeel = IDC_PAPER_PEEL_OFFSET, kPeelSpin = IDC_PAPER_PEEL_OFFSET_SPIN;
inline constexpr int kTear = IDC_PAPER_TEAR_OFFSET, kTearSpin = IDC_PAPER_TEAR_OFFSET_SPIN;
inline constexpr int kPitch = IDC_PAPER_PITCH_OFFSET, kPitchSpin = IDC_PAPER_PITCH_OFFSET_SPIN;
inline constexpr int kRegister = IDC_PAPER_REGISTER, kEditButton = IDC_PAPER_EDIT;
inline constexpr int kFreeEdit = IDC_PAPER_FREE_EDIT, kName = IDC_PAPER_REGISTER_NAME;
inline constexpr int kGrade = IDC_PAPER_REGISTER_GRADE, kDarkness = IDC_PAPER_REGISTER_THICKNESS;
inline constexpr int kWidth = IDC_PAPER_REGISTER_WIDTH, kWidthSpin = IDC_PAPER_REGISTER_WIDTH_SPIN;
inline constexpr int kLength = IDC_PAPER_REGISTER_LENGTH, kGap = IDC_PAPER_REGISTER_GAP;
inline constexpr int kLengthSpin = IDC_PAPER_REGISTER_LENGTH_SPIN;
inline constexpr int kGapSpin = IDC_PAPER_REGISTER_GAP_SPIN;
inline constexpr int kMmButton = IDC_PAPER_REGISTER_MM, kInchButton = IDC_PAPER_REGISTER_INCH;
inline constexpr int kWholeLabel = IDC_PAPER_REGISTER_WHOLE_LABEL;
inline constexpr int kDialogPicture = IDC_PAPER_REGISTER_PICTURE;
inline constexpr int kReference = IDC_PAPER_REGISTER_REFERENCE;
inline constexpr int kReferenceList = IDC_PAPER_REFERENCE_LIST;

class PaperTest : public SheetTest {
 protected:
  // The factory defaults with papers "P1", "P2" … behind the standard one, 20.1, 20.2 … mm wide.
  static DriverSettingsBlock With(int papers) {
    DriverSettingsBlock block = DefaultBlock();
    for (int i = 1; i <= papers; ++i) {
      PaperInfo paper = NewPaper();
      const std::string number = std::to_string(i);
      CopyText(paper.PaperName, (u"P" + std::u16string(number.begin(), number.end())).c_str());
      paper.LabelWidth = static_cast<int16_t>(200 + i);
      AppendPaper(block, paper);
    }
    return block;
  }
  PrinterSettingsPart Stored() { return KeptPrinterPart(machine()); }
  std::u16string StoredName(int slot) { return Stored().Papers[slot].PaperName; }
};

// A refusal, closed.
inline Steps Refused(std::u16string text, std::u16string caption) {
  return CloseMessage(std::move(text), MB_ICONEXCLAMATION, std::move(caption));
}

// Types into the registration dialog; empty texts stay as they are.
inline Steps Fill(std::u16string name, std::u16string width = u"", std::u16string length = u"",
                  std::u16string gap = u"") {
  Steps steps;
  for (const auto& [id, text] :
       {std::pair{kName, name}, {kWidth, width}, {kLength, length}, {kGap, gap}}) {
    if (!text.empty()) steps += Replace(id, text);
  }
  return steps;
}

}  // namespace kestrel
