// Transfers between a settings block with font lists and files of the test machine.
#pragma once

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "files/backup_file.h"
#include "platform/machine/text.h"
#include "resources/resource.h"
#include "tests/support/open_sheet.h"

namespace kestrel::test {

using platform::FromCp932;
using platform::ToCp932;
using support::kPrinter;

using Message = std::pair<UINT, UINT>;  // the string id of its text, and its icon
constexpr Message kNotABackup = {IDS_NOT_A_BACKUP, MB_ICONHAND};
constexpr Message kWrongVersion = {IDS_BACKUP_VERSION_WRONG, MB_ICONEXCLAMATION};
constexpr Message kFontWarning = {IDS_LOADED_FONTS_WARNING, MB_ICONEXCLAMATION};
using Messages = std::vector<Message>;

class BackupTest : public support::SheetTest {
 protected:
  static constexpr char16_t kFile[] = u"C:\\data\\a.ini";  // a file in memory

  BackupTest() {
    std::filesystem::create_directories(machine().HostPath(u"C:\\data"));
    fonts_.DecoFonts = deco_.data();
    fonts_.BarFonts = bar_.data();
    Write(u"");
    EXPECT_TRUE(Save());
    defaults_ = Text();
  }

  bool Transfer(TransferDirection direction, const char16_t* file) {
    desk().ClearShown();
    return BackupFileTransfer(nullptr, file, {block_, fonts_, kPrinter}, direction, BACKUP_ALL);
  }
  bool Save(const char16_t* file = kFile) { return Transfer(TransferDirection::kSave, file); }
  bool Load(const char16_t* file = kFile) { return Transfer(TransferDirection::kLoad, file); }

  // Returns the messages since the last transfer.
  Messages ShownMessages() {
    Messages messages;
    for (const auto& shown : desk().History()) {
      UINT id = IDS_FILE_NAME_WRONG;
      WCHAR text[512];
      while (id > 0 && (LoadStringW(module_, id, text, 512) == 0 || shown.text != text)) --id;
      messages.emplace_back(id, shown.style);
    }
    return messages;
  }

  void Write(std::u16string_view text) { machine().SetMemoryProfile(kFile, ToCp932(text)); }
  std::u16string Text() { return FromCp932(machine().MemoryProfile(kFile)); }
  // Writes a backup of the default settings in which each first text is replaced by the second.
  using Replacements = std::initializer_list<std::pair<std::u16string, std::u16string>>;
  void WriteDefaultsWith(Replacements replacements) {
    std::u16string text = defaults_;
    for (const auto& [old, replacement] : replacements) {
      const size_t position = text.find(old);
      ASSERT_NE(position, text.npos) << ToCp932(old);
      text.replace(position, old.size(), replacement);
    }
    Write(text);
  }
  bool LoadDefaultsWith(Replacements replacements) {
    WriteDefaultsWith(replacements);
    return Load();
  }

  // The printer's properties, as in a session.
  DriverSettingsBlock block_ = support::DefaultBlock();
  std::array<FontRecord, kFontCapacity> deco_ = {}, bar_ = {};
  FontStore fonts_ = {};
  std::u16string defaults_;  // a backup of the default settings
};

}  // namespace kestrel::test
