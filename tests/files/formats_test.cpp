// Compares docs/formats.md with the code: defaults and lists of values. Sizes and offsets are
// asserted beside the records.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <regex>
#include <string>
#include <vector>

#include "files/settings_keys.h"
#include "fonts/barcode_kinds.h"
#include "fonts/resident_fonts.h"
#include "operation/operation_options.h"
#include "paper/paper_options.h"
#include "platform/machine/text.h"
#include "tests/support/settings.h"

namespace kestrel {
namespace {

// Returns the last group of each match.
std::vector<std::string> Matches(const std::string& text, const char* pattern) {
  const std::regex regex(pattern);
  std::vector<std::string> found;
  for (std::sregex_iterator match(text.begin(), text.end(), regex), end; match != end; ++match)
    found.push_back((*match)[match->size() - 1]);
  return found;
}

// The tables of a section of the document: the cells of each row.
struct Section {
  std::vector<std::vector<std::string>> rows;

  explicit Section(const std::string& name) {
    std::ifstream document(FORMATS_DOCUMENT);
    bool inside = false;
    for (std::string line; std::getline(document, line);) {
      if (line.starts_with("## ")) inside = line.starts_with("## " + name);
      if (inside && line.starts_with("|")) rows.push_back(Matches(line, "([^|]+)"));
    }
  }
  // Returns the cell after the last one that contains the name of a field.
  std::string CellOf(const std::string& field) const {
    std::string cell;
    for (const auto& row : rows) {
      for (size_t i = 0; i + 1 < row.size(); ++i)
        if (row[i].find("`" + field + "`") != std::string::npos) cell = row[i + 1];
    }
    return cell;
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

TEST(FormatsDocument, DefaultsMatchANewPrinter) {
  const auto machine = platform::Machine::Create();
  const DriverSettingsBlock block = support::DefaultBlock();
  int compared = 0;
  for (const auto& row : Section("Settings record").rows) {
    // The columns are offsets, type, fields, meaning and default.
    if (row.size() != 5 || row[1].find("i16") == std::string::npos) continue;
    for (const std::string& offset : Matches(row[0], "([0-9]+)")) {
      EXPECT_EQ(support::At(&block, std::stoul(offset)), std::stoi(row[4])) << row[2];
      ++compared;
    }
  }
  EXPECT_GE(compared, 19);
}

TEST(FormatsDocument, ListsMatchTheTables) {
  const Section record("Settings record"), font("Font record");
  EXPECT_EQ(Values(record.CellOf("nPrintSpeed")), Values(SpeedOptions()));
  EXPECT_EQ(Values(record.CellOf("nSensor")), Values(SensorOptions()));
  EXPECT_EQ(Values(Section("Paper record").CellOf("PaperKind")), Values(PaperGradeOptions()));

  std::string cells = ": ";
  for (int i = 0; const FontCell* cell = CellAt(0xFFFF, i); ++i) {
    cells += (i > 0 ? ", " : "") + std::to_string(cell->code) + " " + std::to_string(cell->width) +
             "×" + std::to_string(cell->height);
  }
  EXPECT_NE(font.CellOf("Size").find(cells + "; "), std::string::npos) << cells;

  std::vector<int> kinds;
  for (const BarcodeKindRow& kind : kBarcodeKinds) kinds.push_back(kind.id);
  std::ranges::sort(kinds);
  EXPECT_EQ(Values(font.CellOf("BarcodeKind")), kinds);

  std::string keys;
  for (const SettingsKey& key : RequiredDriverKeys()) keys += "`" + std::string(key.name) + "`, ";
  EXPECT_NE(Section("Backup file").CellOf(platform::ToUtf8(kDriverSection)).find(keys),
            std::string::npos)
      << keys;
}

}  // namespace
}  // namespace kestrel
