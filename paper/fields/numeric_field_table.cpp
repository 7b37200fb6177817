#include "paper/fields/numeric_field.h"
#include "paper/paper_info.h"
#include "resources/resource.h"

namespace kestrel {
namespace {

constexpr NumericField Measured(uint32_t edit, uint32_t spin, int16_t minimum, int16_t maximum,
                                uint16_t unit) {
  return {edit, spin, 1, 0, minimum, maximum, unit};
}
constexpr NumericField Number(uint32_t edit, uint32_t spin, int16_t minimum, int16_t maximum) {
  return {edit, spin, 0, 0, minimum, maximum, kPlain};
}

constexpr NumericField kPaperRegisterFields[] = {
    Measured(IDC_PAPER_REGISTER_WIDTH, IDC_PAPER_REGISTER_WIDTH_SPIN, 100, 580, kMillimetre),
    Measured(IDC_PAPER_REGISTER_LENGTH, IDC_PAPER_REGISTER_LENGTH_SPIN, 100, 1630, kMillimetre),
    Measured(IDC_PAPER_REGISTER_GAP, IDC_PAPER_REGISTER_GAP_SPIN, 0, 80, kMillimetre),
    Measured(IDC_PAPER_REGISTER_PRINTABLE_LEFT, IDC_PAPER_REGISTER_PRINTABLE_LEFT_SPIN, 0, 580,
             kMillimetre),
    Measured(IDC_PAPER_REGISTER_PRINTABLE_TOP, IDC_PAPER_REGISTER_PRINTABLE_TOP_SPIN, 0, 1630,
             kMillimetre),
    Measured(IDC_PAPER_REGISTER_PRINTABLE_WIDTH, IDC_PAPER_REGISTER_PRINTABLE_WIDTH_SPIN, 284, 480,
             kMillimetre),
    Measured(IDC_PAPER_REGISTER_PRINTABLE_HEIGHT, IDC_PAPER_REGISTER_PRINTABLE_HEIGHT_SPIN, 160,
             1600, kMillimetre),
};

constexpr NumericField kPaperFields[] = {
    Number(IDC_PAPER_VERT_BASE, IDC_PAPER_VERT_BASE_SPIN, -999, 999),
    Number(IDC_PAPER_HORZ_BASE, IDC_PAPER_HORZ_BASE_SPIN, -800, 800),
    Number(IDC_PAPER_CUT_OFFSET, IDC_PAPER_CUT_OFFSET_SPIN, -99, 99),
    Number(IDC_PAPER_PEEL_OFFSET, IDC_PAPER_PEEL_OFFSET_SPIN, -40, 99),
    Number(IDC_PAPER_TEAR_OFFSET, IDC_PAPER_TEAR_OFFSET_SPIN, -99, 99),
    Number(IDC_PAPER_PITCH_OFFSET, IDC_PAPER_PITCH_OFFSET_SPIN, -40, 99),
};

constexpr NumericField kDecoFontFields[] = {
    Number(IDC_DECO_FONT_EXPAND_X, IDC_DECO_FONT_EXPAND_X_SPIN, 0, 12),
    Number(IDC_DECO_FONT_EXPAND_Y, IDC_DECO_FONT_EXPAND_Y_SPIN, 0, 12),
    Measured(IDC_DECO_FONT_WIDTH, IDC_DECO_FONT_WIDTH_SPIN, 27, 550, kDot),
    Measured(IDC_DECO_FONT_HEIGHT, IDC_DECO_FONT_HEIGHT_SPIN, 50, 999, kDot),
    Number(IDC_DECO_FONT_PRINT_NUM, IDC_DECO_FONT_PRINT_NUM_SPIN, 1, 9999),
    Number(IDC_DECO_FONT_INCREMENT, IDC_DECO_FONT_INCREMENT_SPIN, -9999, 9999),
    Number(IDC_DECO_FONT_ACTIVE_DIGITS, IDC_DECO_FONT_ACTIVE_DIGITS_SPIN, 1, 99),
    Number(IDC_DECO_FONT_LOW_DIGITS, IDC_DECO_FONT_LOW_DIGITS_SPIN, 0, 99),
};

constexpr NumericField kBarFontFields[] = {
    Number(IDC_BAR_FONT_PRINT_NUM, IDC_BAR_FONT_PRINT_NUM_SPIN, 1, 9999),
    Number(IDC_BAR_FONT_INCREMENT, IDC_BAR_FONT_INCREMENT_SPIN, -9999, 9999),
    Number(IDC_BAR_FONT_ACTIVE_DIGITS, IDC_BAR_FONT_ACTIVE_DIGITS_SPIN, 1, 99),
    Number(IDC_BAR_FONT_LOW_DIGITS, IDC_BAR_FONT_LOW_DIGITS_SPIN, 0, 99),
};

}  // namespace

std::span<const NumericField> NumericFieldTable(int dialogId) {
  switch (dialogId) {
    case IDD_PAPER_REGISTER:
      return kPaperRegisterFields;
    case IDD_PAPER:
      return kPaperFields;
    case IDD_DECO_FONT:
      return kDecoFontFields;
    case IDD_BAR_FONT:
      return kBarFontFields;
    default:
      return {};
  }
}

}  // namespace kestrel
