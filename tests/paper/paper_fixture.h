// A printer with papers, and the paper page in the sheet of the user's defaults.
#pragma once

#include <string>

#include "driver/text.h"
#include "paper/fields/help_text.h"
#include "paper/paper_table.h"
#include "resources/resource.h"
#include "tests/support/open_sheet.h"

namespace kestrel {

using namespace support;

inline constexpr char16_t kStandard[] = u"Standard Label 58 x 68 mm";
inline constexpr char16_t kFree[] = u"フリーサイズ";
inline constexpr char16_t kPage[] = u"用紙";

// Controls of the page and of the registration dialog.
inline constexpr int kList = IDC_PAPER_LIST, kPicture = IDC_PAPER_PICTURE,
                     kVert = IDC_PAPER_VERT_BASE, kRegister = IDC_PAPER_REGISTER,
                     kFreeEdit = IDC_PAPER_FREE_EDIT, kName = IDC_PAPER_REGISTER_NAME,
                     kGrade = IDC_PAPER_REGISTER_GRADE, kDarkness = IDC_PAPER_REGISTER_THICKNESS,
                     kWidth = IDC_PAPER_REGISTER_WIDTH, kWidthSpin = IDC_PAPER_REGISTER_WIDTH_SPIN,
                     kLength = IDC_PAPER_REGISTER_LENGTH, kGap = IDC_PAPER_REGISTER_GAP,
                     kMmButton = IDC_PAPER_REGISTER_MM, kInchButton = IDC_PAPER_REGISTER_INCH,
                     kReference = IDC_PAPER_REGISTER_REFERENCE,
                     kReferenceList = IDC_PAPER_REFERENCE_LIST,
                     kDialogPicture = IDC_PAPER_REGISTER_PICTURE;

inline std::u16string Number(int number) {
  const std::string text = std::to_string(number);
  return {text.begin(), text.end()};
}

// Returns a new paper with a name and sizes in tenths of a millimetre.
inline PaperInfo Paper(const std::u16string& name, int width = 580, int length = 680) {
  PaperInfo paper = NewPaper();
  CopyText(paper.PaperName, name.c_str());
  paper.LabelWidth = paper.PrintableWidth = static_cast<int16_t>(width);
  paper.LabelHeight = paper.PrintableHeight = static_cast<int16_t>(length);
  return paper;
}

inline void ExpectSizes(const PaperInfo& paper, int width, int length, int gap, MeasureUnit unit) {
  EXPECT_EQ(paper.LabelWidth, width);
  EXPECT_EQ(paper.LabelHeight, length);
  EXPECT_EQ(paper.GapSize, gap);
  EXPECT_EQ(paper.Unit, unit);
}

class PaperTest : public SheetTest {
 protected:
  // Returns the factory defaults with papers "P1", "P2" … after the standard one, 20.1, 20.2 … mm
  // wide.
  static DriverSettingsBlock With(int papers) {
    DriverSettingsBlock block = DefaultBlock();
    for (int i = 1; i <= papers; ++i) AppendPaper(block, Paper(u"P" + Number(i), 200 + i));
    return block;
  }
  PaperInfo Stored(int slot) { return StoredPrinterPart(machine()).Papers[slot]; }
};

// Closes the message of a rejected input.
inline Step CloseError(std::u16string text, std::u16string caption) {
  return CloseMessage(std::move(text), MB_ICONEXCLAMATION, std::move(caption));
}

// Expects the width of the first label in a picture box.
inline Step ExpectLabelWidth(int box, int width) {
  return [=](Desk& desk) {
    const RECT label = desk.Control(box).drawing.at(1).rect;
    EXPECT_EQ(label.right - label.left, width);
  };
}

// Expects a part of the help text.
inline Step ExpectHelp(std::u16string part) {
  return [=](Desk& desk) {
    EXPECT_NE(desk.Text(IDC_HELP_TEXT).find(part), std::u16string::npos)
        << testing::PrintToString(part);
  };
}

}  // namespace kestrel
