// Backup transfers and file dialogs of concurrent sheets in one process, one thread each.
#include <thread>

#include "resources/resource.h"
#include "tests/files/backup_fixture.h"

namespace kestrel::test {
namespace {

using support::Click;
using support::Replace;
using support::Steps;

constexpr char16_t kFirst[] = u"C:\\data\\first.ini", kSecond[] = u"C:\\data\\second.ini";

class Transfers : public BackupTest {
 protected:
  // Shows the user defaults on the utility page on the calling thread; closes them with OK.
  support::SheetResult Sheet(Steps steps) { return Ok(support::kUtilityTab, std::move(steps)); }
  std::string Bytes(std::u16string_view file) { return machine().ReadFile(file).value_or(""); }
  // A step during which another sheet is shown and closed.
  Steps OtherSheet(Steps steps) {
    return {[=, this](platform::Desk&) { std::thread([=, this] { Sheet(steps); }).join(); }};
  }
};

TEST_F(Transfers, SaveDuringAnotherSheetsLoadTouchesOnlyItsOwnFile) {
  StoreDefaults(block_);
  ASSERT_TRUE(Save(kSecond));
  const std::string second = Bytes(kSecond);
  std::filesystem::remove(machine().HostPath(kSecond));
  fonts_.DecoFontNum = 1;
  block_.Record.Private.nTSMode = 1;
  ASSERT_TRUE(Save(kFirst));
  const std::string first = Bytes(kFirst);

  const Steps save = {Replace(IDC_UTILITY_SAVE_NAME, kSecond), Click(IDC_UTILITY_SAVE),
                      Click(IDOK)};
  const auto warned = [](platform::Desk& desk) {
    EXPECT_TRUE(desk.MessageText().starts_with(u"読み込んだクリエイトフォント名"));
  };
  const auto loaded = Sheet({Replace(IDC_UTILITY_LOAD_NAME, kFirst), Click(IDC_UTILITY_LOAD),
                             warned, OtherSheet(save), Click(IDOK), Click(IDOK)});
  EXPECT_EQ(loaded.record.Private.nTSMode, 1) << "SYNC is read after the message";
  EXPECT_EQ(Bytes(kFirst), first);
  EXPECT_EQ(Bytes(kSecond), second);
}

TEST_F(Transfers, ConcurrentSavesKeepTheirSettingsApart) {
  DriverSettingsBlock other = block_;
  other.Record.Private.nPrintSpeed = 2;
  const auto save = [](const char16_t* file, DriverSettingsBlock& block) {
    FontStore fonts = {};
    EXPECT_TRUE(BackupFileTransfer(nullptr, file, {block, fonts, kPrinter},
                                   TransferDirection::kSave, BACKUP_ALL));
  };
  save(kFirst, block_);
  save(kSecond, other);
  const std::string first = Bytes(kFirst), second = Bytes(kSecond);
  for (int round = 0; round < 3; ++round) {
    for (const auto* file : {kFirst, kSecond}) std::filesystem::remove(machine().HostPath(file));
    std::thread thread([&] { save(kSecond, other); });
    save(kFirst, block_);
    thread.join();
    EXPECT_EQ(Bytes(kFirst), first);
    EXPECT_EQ(Bytes(kSecond), second);
  }
}

}  // namespace
}  // namespace kestrel::test
