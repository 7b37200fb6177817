// A printer with papers, and the paper page in the sheet of the user's defaults.
#pragma once

#include <string>

#include "driver/text.h"
#include "paper/fields/help_text.h"
#include "paper/paper_table.h"
#include "platform/machine/text.h"
#include "resources/resource.h"
#include "tests/support/open_sheet.h"

namespace kestrel {

using namespace support;

inline constexpr char16_t kStandard[] = u"Standard Label 58 x 68 mm";
inline constexpr char16_t kFree[] = u"フリーサイズ";
inline constexpr char16_t kPage[] = u"用紙";

// Controls of the page and of the registration dialog.
inline constexpr int kList = IDC_PAPER_LIST, kPicture = IDC_PAPER_PICTURE,
                     kPortrait = IDC_PAPER_PORTRAIT, kLandscape = IDC_PAPER_LANDSCAPE,
                     kFlip = IDC_PAPER_FLIP, kPageWholeLabel = IDC_PAPER_WHOLE_LABEL,
                     kVert = IDC_PAPER_VERT_BASE, kHorz = IDC_PAPER_HORZ_BASE,
                     kPeel = IDC_PAPER_PEEL_OFFSET, kTear = IDC_PAPER_TEAR_OFFSET,
                     kPitch = IDC_PAPER_PITCH_OFFSET, kRegister = IDC_PAPER_REGISTER,
                     kEditButton = IDC_PAPER_EDIT, kFreeEdit = IDC_PAPER_FREE_EDIT,
                     kName = IDC_PAPER_REGISTER_NAME, kReference = IDC_PAPER_REGISTER_REFERENCE,
                     kGrade = IDC_PAPER_REGISTER_GRADE, kDarkness = IDC_PAPER_REGISTER_THICKNESS,
                     kWidth = IDC_PAPER_REGISTER_WIDTH, kWidthSpin = IDC_PAPER_REGISTER_WIDTH_SPIN,
                     kLength = IDC_PAPER_REGISTER_LENGTH, kGap = IDC_PAPER_REGISTER_GAP,
                     kMmButton = IDC_PAPER_REGISTER_MM, kInchButton = IDC_PAPER_REGISTER_INCH,
                     kWholeLabel = IDC_PAPER_REGISTER_WHOLE_LABEL,
                     kDialogPicture = IDC_PAPER_REGISTER_PICTURE,
                     kReferenceList = IDC_PAPER_REFERENCE_LIST;

inline std::u16string Number(int number) {
  const std::string text = std::to_string(number);
  return {text.begin(), text.end()};
}

// Formats a record: the name field up to its last used unit, then the 16-bit values of the other
// fields in stored order.
inline std::u16string Describe(const PaperInfo& paper) {
  std::u16string text(paper.PaperName, kPaperNameLength);
  text.resize(text.find_last_not_of(u'\0') + 1);
  for (size_t at = 128; at < 160; at += 2) text += u' ' + Number(At(&paper, at));
  return text;
}

// Returns a new paper with this name. values replace the first fields after the name, in stored
// order.
inline PaperInfo Paper(std::u16string name, std::initializer_list<int> values) {
  PaperInfo paper = NewPaper();
  CopyText(paper.PaperName, name.c_str());
  for (size_t at = 128; const int value : values)
    Put(&paper, std::exchange(at, at + 2), static_cast<int16_t>(value));
  return paper;
}

class PaperTest : public SheetTest {
 protected:
  // Returns the factory defaults with papers "P1", "P2" … after the standard one, 20.1, 20.2 … mm
  // wide.
  static DriverSettingsBlock With(int papers) {
    DriverSettingsBlock block = DefaultBlock();
    for (int i = 1; i <= papers; ++i) AppendPaper(block, Paper(u"P" + Number(i), {0, 3, 200 + i}));
    return block;
  }
  std::u16string Stored(int slot) { return Describe(StoredPrinterPart(machine()).Papers[slot]); }
  void ExpectGolden(const char* file) { EXPECT_EQ(platform::ToUtf8(log_), Golden(file)); }

  std::u16string log_;  // compared with a golden file
};

// Closes the message of a rejected input.
inline Steps CloseError(std::u16string text, std::u16string caption) {
  return CloseMessage(std::move(text), MB_ICONEXCLAMATION, std::move(caption));
}

// Types into the registration dialog. An empty text leaves its field unchanged.
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
