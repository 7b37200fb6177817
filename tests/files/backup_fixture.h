// A block and font lists of their own, saved to and loaded from files of the test machine.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "files/backup_file.h"
#include "fonts/barcode_kinds.h"
#include "fonts/barcode_param.h"
#include "platform/system/text.h"
#include "tests/support/bin_dir.h"
#include "tests/support/settings.h"
#include "tests/support/test_machine.h"

namespace kestrel::test {

using support::At;
using support::kPrinter;

inline std::string Cp932(std::u16string_view text) { return platform::ToCp932(text); }

inline bool Contains(const std::string& text, std::string_view part) {
  return text.find(part) != std::string::npos;
}

template <size_t N>
void SetName(char16_t (&field)[N], std::u16string_view name) {
  std::fill_n(field, N, u'\0');
  name.copy(field, N - 1);
}

// A printer's properties, as a session holds them.
struct Properties {
  DriverSettingsBlock block = support::DefaultBlock();
  std::vector<FontRecord> deco = std::vector<FontRecord>(kFontCapacity);
  std::vector<FontRecord> bar = std::vector<FontRecord>(kFontCapacity);
  FontStore fonts = {};

  Properties() {
    fonts.Loaded = true;
    fonts.DecoFonts = deco.data();
    fonts.BarFonts = bar.data();
  }
  Properties(const Properties&) = delete;
};

class BackupTest : public support::MachineTest {
 protected:
  static constexpr char16_t kFile[] = u"C:\\data\\a.ini";

  bool Transfer(TransferDirection direction, const char16_t* file = kFile,
                unsigned sections = BACKUP_ALL) {
    desk().ClearShown();
    return BackupFileTransfer(nullptr, file, {my_.block, my_.fonts, kPrinter}, direction, sections);
  }
  bool Save(const char16_t* file = kFile) { return Transfer(TransferDirection::kSave, file); }
  bool Load(const char16_t* file = kFile) { return Transfer(TransferDirection::kLoad, file); }

  // The texts of the messages shown by the last transfer begin like this, in this order.
  std::u16string Shown() {
    std::u16string beginnings;
    for (const auto& shown : desk().History()) beginnings += shown.text.substr(0, 7) + u'|';
    return beginnings;
  }
  void Write(std::u16string_view text) { machine().WriteFile(kFile, Cp932(text)); }
  std::string Bytes(std::u16string_view file = kFile) {
    return machine().ReadFile(file).value_or("");
  }
  // The file as an independent reader sees it, "section|key|value" a line.
  std::string ReadElsewhere() {
    const std::string command = "python3 '" + support::Built("golden/read_profile.py") + "' '" +
                                machine().HostPath(kFile).string() + "'";
    std::string output;
    std::FILE* pipe = popen(command.c_str(), "r");
    char buffer[4096];
    while (const size_t got = std::fread(buffer, 1, sizeof buffer, pipe))
      output.append(buffer, got);
    EXPECT_EQ(pclose(pipe), 0);
    return output;
  }
  // A backup of the defaults with one line put in place of another.
  void WriteDefaultsWith(std::u16string_view line, std::u16string_view replacement) {
    std::string text = Golden();
    const std::string old = Cp932(line) + "\r\n";
    const size_t place = text.find(old);
    ASSERT_NE(place, std::string::npos);
    machine().WriteFile(kFile, text.replace(place, old.size(), Cp932(replacement)));
  }
  static std::string Golden() { return support::Golden("defaults.ini"); }
  void SetUp() override {
    MachineTest::SetUp();
    std::filesystem::create_directories(machine().HostPath(u"C:\\data"));
  }

  Properties my_;
};

}  // namespace kestrel::test
