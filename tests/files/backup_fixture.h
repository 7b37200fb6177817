// Transfers between a settings block with font lists and files of the test machine.
#pragma once

#include <algorithm>
#include <array>

#include "files/backup_file.h"
#include "platform/machine/text.h"
#include "tests/support/open_sheet.h"

namespace kestrel::test {

using platform::FromCp932;
using platform::ToCp932;
using support::kPrinter;

constexpr char16_t kNotABackup[] = u"このファイルはこのプリンタのデータファイルではありません16|";
constexpr char16_t kWrongVersion[] = u"ファイルのバージョンが正しくありません48|";
constexpr char16_t kFontWarning[] =
    u"読み込んだクリエイトフォント名が現在の環境で\n使用されているフォント名と重複する可能性があ\n"
    u"ります48|";

class BackupTest : public support::SheetTest {
 protected:
  static constexpr char16_t kFile[] = u"C:\\data\\a.ini";

  BackupTest() {
    std::filesystem::create_directories(machine().HostPath(u"C:\\data"));
    fonts_.Loaded = true;
    fonts_.DecoFonts = deco_.data();
    fonts_.BarFonts = bar_.data();
  }

  bool Transfer(TransferDirection direction, const char16_t* file = kFile,
                unsigned sections = BACKUP_ALL) {
    desk().ClearShown();
    return BackupFileTransfer(nullptr, file, {block_, fonts_, kPrinter}, direction, sections);
  }
  bool Save(const char16_t* file = kFile) { return Transfer(TransferDirection::kSave, file); }
  bool Load(const char16_t* file = kFile) { return Transfer(TransferDirection::kLoad, file); }

  // Returns the first sentence and the style of each message since the last transfer.
  std::u16string Shown() {
    std::u16string messages;
    for (const auto& shown : desk().History()) {
      messages += shown.text.substr(0, shown.text.find(u'。')) +
                  FromCp932(std::to_string(shown.style)) + u'|';
    }
    return messages;
  }
  void Write(std::u16string_view text) { machine().WriteFile(kFile, ToCp932(text)); }
  std::string Bytes(std::u16string_view file = kFile) {
    return machine().ReadFile(file).value_or("");
  }
  static std::string Golden() { return support::Golden("defaults.ini"); }
  // Writes a backup of the default settings with some texts replaced.
  void WriteDefaultsWith(
      std::initializer_list<std::pair<std::u16string_view, std::u16string_view>> changes) {
    std::u16string text = FromCp932(Golden());
    for (const auto& [old, now] : changes) text.replace(text.find(old), old.size(), now);
    Write(text);
  }

  // The printer's properties, as in a session.
  DriverSettingsBlock block_ = support::DefaultBlock();
  std::array<FontRecord, kFontCapacity> deco_ = {}, bar_ = {};
  FontStore fonts_ = {};
};

}  // namespace kestrel::test
