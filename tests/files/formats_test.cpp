// Compares docs/formats.md with the code: offsets, defaults and lists of values.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "driver/record_fields.h"
#include "fonts/barcode_kinds.h"
#include "fonts/resident_fonts.h"
#include "operation/operation_options.h"
#include "paper/paper_options.h"
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

std::string Document() {
  std::stringstream text;
  text << std::ifstream(FORMATS_DOCUMENT).rdbuf();
  return text.str();
}

TEST(FormatsDocument, OffsetsAndDefaultsMatchTheRecord) {
  const auto machine = platform::Machine::Create();
  const DriverSettingsBlock block = support::DefaultBlock();
  std::map<std::string, size_t> fields;  // names and offsets
  fields["FreePaper"] = kPrivateOffset + offsetof(PrivateDevMode, FreePaper);
  fields["ColorAdjust"] = kPrivateOffset + offsetof(PrivateDevMode, ColorAdjust);
  for (const RecordField& field : kPaperRecordFields) fields[field.name] = field.offset;
  for (const RecordField& field : kPrivateRecordFields)
    fields[field.name] = kPrivateOffset + field.offset;
  // The columns are offsets, type, names, meaning and default; records of papers have no default.
  const std::regex row(
      "\\| ([0-9, ]+) \\| (i16|u16|u32|[0-9]+ \\w+) \\| ([^|]+) \\| [^|]*\\|(.*)\n");
  const std::string text = Document();
  for (std::sregex_iterator match(text.begin(), text.end(), row), end; match != end; ++match) {
    const std::vector<std::string> offsets = Matches((*match)[1], "([0-9]+)");
    const std::vector<std::string> names = Matches((*match)[3], "`(\\w+)`");
    for (size_t i = 0; i < names.size(); ++i) {
      EXPECT_EQ(offsets.at(i), std::to_string(fields[names[i]])) << names[i];
      if ((*match)[2] == "i16" && match->length(4) > 0) {
        EXPECT_EQ(support::At(&block, fields[names[i]]), std::stoi((*match)[4])) << names[i];
      }
      fields.erase(names[i]);
    }
  }
  EXPECT_TRUE(fields.empty()) << fields.begin()->first << " is missing";
}

TEST(FormatsDocument, ListsContainEveryValue) {
  const std::string document = Document();
  const auto expectListed = [&](const std::string& field, int value) {
    const std::string row = "`" + field + "` \\|.*[^0-9](" + std::to_string(value) + ")[^0-9]";
    EXPECT_FALSE(Matches(document, row.c_str()).empty()) << field << " " << value;
  };
  for (const auto& [field, options] : {std::pair("nPrintSpeed", SpeedOptions()),
                                       {"nSensor", SensorOptions()},
                                       {"PaperKind", PaperGradeOptions()}}) {
    for (int i = 0; i < options.count; ++i) expectListed(field, options.entries[i].value);
  }
  for (int i = 0; const FontCell* cell = CellAt(0xFFFF, i); ++i) expectListed("Size", cell->code);
  for (const BarcodeKindRow& kind : kBarcodeKinds) expectListed("BarcodeKind", kind.id);
}

}  // namespace
}  // namespace kestrel
