// Compares docs/formats.md with the code: offsets, sizes, defaults and lists of values.
#include <algorithm>
#include <fstream>
#include <map>
#include <regex>
#include <string>
#include <vector>

#include "driver/instance.h"
#include "files/settings_keys.h"
#include "fonts/barcode_kinds.h"
#include "fonts/font_record.h"
#include "fonts/resident_fonts.h"
#include "operation/operation_options.h"
#include "paper/paper_options.h"
#include "paper/paper_table.h"
#include "platform/machine/text.h"
#include "resources/resource.h"
#include "tests/support/test_machine.h"

namespace kestrel {
namespace {

using Row = std::vector<std::string>;  // the cells of one row of a table
using Offsets = std::map<std::string, size_t>;

std::vector<std::string> Matches(const std::string& text, const char* pattern) {
  const std::regex regex(pattern);
  std::vector<std::string> found;
  for (std::sregex_iterator match(text.begin(), text.end(), regex), end; match != end; ++match)
    found.push_back((*match)[match->size() - 1]);
  return found;
}

// A section of the document: its heading and the rows of its tables.
struct Section {
  std::string heading;
  std::vector<Row> rows;

  explicit Section(const std::string& name) {
    std::ifstream document(FORMATS_DOCUMENT);
    bool inside = false;
    for (std::string line; std::getline(document, line);) {
      if (line.starts_with("## ")) inside = line.starts_with("## " + name);
      if (inside && line.starts_with("## ")) heading = line;
      if (inside && line.starts_with("|")) rows.push_back(Matches(line, "([^|]+)"));
    }
  }
  // Returns the size in the heading.
  size_t Size() const { return std::stoul(Matches(heading, "([0-9]+) bytes").at(0)); }
  // Returns the cell after the last one that contains the name of a field.
  std::string CellOf(const std::string& field) const {
    std::string cell;
    for (const Row& row : rows) {
      for (size_t i = 0; i + 1 < row.size(); ++i)
        if (row[i].find("`" + field + "`") != std::string::npos) cell = row[i + 1];
    }
    return cell;
  }
  // Returns the fields of the name column with their offsets from the other column, which are
  // listed
  // ("392, 394") or given as a range ("132 … 138").
  Offsets OffsetsIn(size_t offsetColumn, size_t nameColumn) const {
    Offsets offsets;
    for (const Row& row : rows) {
      if (row.size() <= std::max(offsetColumn, nameColumn)) continue;
      const auto names = Matches(row[nameColumn], "`([A-Za-z]+)`");
      const auto numbers = Matches(row[offsetColumn], "([0-9]+)");
      if (names.empty() || numbers.empty()) continue;
      const bool isRange = row[offsetColumn].find("…") != std::string::npos;
      EXPECT_TRUE(isRange || names.size() == numbers.size()) << names[0];
      for (size_t i = 0; i < names.size(); ++i)
        offsets[names[i]] = isRange ? std::stoul(numbers[0]) + 2 * i : std::stoul(numbers[i]);
      if (isRange) {
        EXPECT_EQ(offsets[names.back()], std::stoul(numbers[1])) << names[0];
      }
    }
    return offsets;
  }
};

// Returns the number at the start of each item of a list such as "1: slow, 2 fast; or else".
std::vector<int> Values(const std::string& list) {
  std::vector<int> values;
  for (const std::string& number : Matches(list.substr(0, list.find(';')), "(^|, ) *([0-9]+)"))
    values.push_back(std::stoi(number));
  return values;
}
std::vector<int> Values(const OptionTable& options) {
  std::vector<int> values;
  for (int i = 0; i < options.count; ++i) values.push_back(options.entries[i].value);
  return values;
}

#define FIELD(record, base, name) \
  { #name, base + offsetof(record, name) }
#define PRIVATE(name) FIELD(PrivateDevMode, kPrivateOffset, name)
#define PAPER(name) FIELD(PaperInfo, 0, name)
#define PRINTER(name) FIELD(PrinterSettingsPart, 0, name)
#define DECO(name) FIELD(DecoFontInfo, offsetof(FontRecord, Deco), name)
#define BAR(name) FIELD(BarFontInfo, offsetof(FontRecord, Bar), name)

TEST(FormatsDocument, OffsetsAndSizesMatchTheRecords) {
  const Section record("Settings record"), paper("Paper record"), printer("\"Private DevMode\""),
      font("Font record");
  EXPECT_EQ(record.Size(), sizeof(SettingsRecord));
  EXPECT_EQ(paper.Size(), sizeof(PaperInfo));
  EXPECT_EQ(printer.Size(), sizeof(PrinterSettingsPart));
  EXPECT_EQ(font.Size(), sizeof(FontRecord));

  EXPECT_EQ(
      record.OffsetsIn(0, 2),
      (Offsets{
          PRIVATE(PaperID),     PRIVATE(FreePaper),    PRIVATE(Copies),      PRIVATE(nVertBase),
          PRIVATE(nHorzBase),   PRIVATE(Orient),       PRIVATE(nFlip),       PRIVATE(nPeelOffset),
          PRIVATE(nTearOffset), PRIVATE(nPitchOffset), PRIVATE(nPrintSpeed), PRIVATE(nSensor),
          PRIVATE(nMoveMode),   PRIVATE(Dither),       PRIVATE(nColorText),  PRIVATE(ColorAdjust),
          PRIVATE(nTSMode),     PRIVATE(Position),     PRIVATE(nCompulsory), PRIVATE(Signature)}));
  EXPECT_EQ(paper.OffsetsIn(0, 2),
            (Offsets{PAPER(PaperName), PAPER(PaperKind), PAPER(Thickness), PAPER(LabelWidth),
                     PAPER(LabelHeight), PAPER(GapSize), PAPER(EyeMarkSize), PAPER(Unit),
                     PAPER(PrintableLeft), PAPER(PrintableTop), PAPER(PrintableWidth),
                     PAPER(PrintableHeight), PAPER(Yoshi), PAPER(UserDef)}));
  EXPECT_EQ(printer.OffsetsIn(0, 2),
            (Offsets{PRINTER(PaperNum), PRINTER(HeadDensity), PRINTER(Mecha), PRINTER(HTInfo)}));
  EXPECT_EQ(
      font.OffsetsIn(0, 1),
      (Offsets{DECO(DecoFontName), DECO(ResiFontName), DECO(Decorate),     DECO(Size),
               DECO(SizeX),        DECO(SizeY),        DECO(ExpandX),      DECO(ExpandY),
               DECO(Unit),         DECO(Pitch),        DECO(Rotate),       DECO(ColorRevolution),
               DECO(Smoothing),    DECO(Bold),         DECO(OutlineStyle), DECO(Range),
               DECO(Mode),         DECO(PrintNum),     DECO(Incriment),    DECO(ActivateData),
               DECO(NegativeData)}));
  EXPECT_EQ(font.OffsetsIn(2, 3), (Offsets{BAR(BarFontName), BAR(FontCategory), BAR(BarcodeKind),
                                           BAR(Range), BAR(Mode), BAR(PrintNum), BAR(Incriment),
                                           BAR(ActiveData), BAR(NegativeData), BAR(BarcodeParam)}));
}

TEST(FormatsDocument, DefaultsMatchANewPrinter) {
  const auto machine = platform::Machine::Create();
  const DriverSettingsBlock block = support::DefaultBlock();
  size_t compared = 0;
  for (const Row& row : Section("Settings record").rows) {
    const auto numbers = row.size() == 5 ? Matches(row[4], "^ *(-?[0-9]+) *$") : Row();
    const auto offsets = numbers.empty() ? Row() : Matches(row[0], "([0-9]+)");
    if (row.size() == 5 && row[1].find("i16") == std::string::npos) continue;
    for (const std::string& offset : offsets) {
      EXPECT_EQ(support::At(&block, std::stoul(offset)), std::stoi(numbers[0])) << row[2];
      ++compared;
    }
  }
  EXPECT_GE(compared, 19u);
}

TEST(FormatsDocument, ListsMatchTheTables) {
  const Section record("Settings record"), paper("Paper record"), font("Font record"),
      backup("Backup file");
  EXPECT_EQ(Values(record.CellOf("nPrintSpeed")), Values(SpeedOptions()));
  EXPECT_EQ(Values(record.CellOf("nSensor")), Values(SensorOptions()));
  EXPECT_EQ(Values(paper.CellOf("PaperKind")), Values(PaperGradeOptions()));

  std::string cells;
  for (int i = 0; const FontCell* cell = CellAt(0xFFFF, i); ++i) {
    cells += std::to_string(cell->code) + " " + std::to_string(cell->width) + "×" +
             std::to_string(cell->height) + ", ";
  }
  cells.resize(cells.size() - 2);
  EXPECT_NE(font.CellOf("Size").find(": " + cells + "; "), std::string::npos) << cells;

  std::vector<int> kinds;
  for (const BarcodeKindRow& kind : kBarcodeKinds) kinds.push_back(kind.id);
  std::ranges::sort(kinds);
  EXPECT_EQ(Values(font.CellOf("BarcodeKind")), kinds);

  std::string keys;
  for (const SettingsKey& key : RequiredDriverKeys()) keys += "`" + std::string(key.name) + "`, ";
  keys += "`" + std::string(kCompulsoryKey.name) + "`, `" + kPositionKey.name + "`";
  EXPECT_NE(backup.CellOf(platform::ToUtf8(kDriverSection)).find(keys), std::string::npos) << keys;
}

using PaperHelpTest = support::MachineTest;

// The help texts of grade and level mention the default choice of a new paper.
TEST_F(PaperHelpTest, NamesDefaultGradeAndLevel) {
  const auto help = [](UINT id) {
    WCHAR text[512] = {};
    LoadStringW(ModuleInstance(), id, text, 512);
    return std::u16string(text);
  };
  const PaperInfo paper = NewPaper();
  const OptionTable& grades = PaperGradeOptions();
  const std::u16string grade = help(IDS_HELP_PAPER_REGISTER_GRADE);
  EXPECT_NE(grade.find(std::u16string(u"通常は ") +
                       grades.entries[OptionIndex(grades, paper.PaperKind)].text + u" と"),
            std::u16string::npos);
  EXPECT_NE(help(IDS_HELP_PAPER_REGISTER_THICKNESS)
                .find(u"通常は濃度 " + platform::ToUtf16(std::to_string(paper.Thickness)) + u" と"),
            std::u16string::npos);
  // Every grade that the help text explains is in the list.
  size_t explained = 0;
  for (size_t at = grade.find(u"の場合"); at != grade.npos; at = grade.find(u"の場合", at + 1)) {
    ++explained;
    EXPECT_TRUE(std::any_of(grades.entries, grades.entries + grades.count, [&](const auto& entry) {
      return grade.substr(at - 1, 1) == entry.text;
    }));
  }
  EXPECT_EQ(explained, 2u);
}

}  // namespace
}  // namespace kestrel
