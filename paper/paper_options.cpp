#include "paper/paper_options.h"

namespace kestrel {
namespace {

constexpr OptionEntry kGradeEntries[] = {
    {TEXT("A"), 0, TEXT('A'), {}}, {TEXT("B"), 1, TEXT('B'), {}},
    {TEXT("C"), 2, TEXT('C'), {}}, {TEXT("プリンタ設定に従う"), kFollowPrinter, TEXT(' '), {}},
    {TEXT(""), kOptionEnd, 0, {}},
};

constexpr OptionEntry kDarknessEntries[] = {
    {TEXT("濃度1 薄い"), 1, TEXT('1'), {}}, {TEXT("濃度2 やや薄い"), 2, TEXT('2'), {}},
    {TEXT("濃度3 普通"), 3, TEXT('3'), {}}, {TEXT("濃度4 やや濃い"), 4, TEXT('4'), {}},
    {TEXT("濃度5 濃い"), 5, TEXT('5'), {}}, {TEXT(""), kOptionEnd, 0, {}},
};

constexpr OptionTable kGrades = OptionTableOf(kGradeEntries);
constexpr OptionTable kDarkness = OptionTableOf(kDarknessEntries);

}  // namespace

const OptionTable& PaperGradeOptions() { return kGrades; }
const OptionTable& PaperDarknessOptions() { return kDarkness; }

}  // namespace kestrel
