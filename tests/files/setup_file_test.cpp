// The set-up file in the Windows directory, imported directly and by the spooler's event.
#include "files/setup_file.h"

#include <regex>
#include <sstream>

#include "platform/machine/text.h"
#include "tests/support/test_machine.h"

namespace kestrel {
namespace {

using support::At;
using support::Put;

constexpr char16_t kFile[] = u"C:\\WINDOWS\\SetupKit_QM6_1R.INI";

class SetupFileTest : public support::MachineTest {};

TEST_F(SetupFileTest, EachLineSetsItsFields) {
  for (std::string row : support::GoldenRows("setup.txt")) {
    SCOPED_TRACE(row);
    if (row[0] == '+') row.replace(0, 1, "[ﾊﾞｰｼﾞｮﾝ情報]/DriverName=x/[用紙登録数]/PaperNum=0/");
    const size_t bar = row.find(" |");
    const auto text = std::regex_replace(row.substr(0, bar), std::regex("/"), "\r\n");
    machine().WriteFile(kFile, platform::ToCp932(platform::ToUtf16(text)));
    DriverSettingsBlock block, expected;
    std::memset(static_cast<void*>(&block), 0x11, sizeof block);
    expected = block;
    const bool accepted = row.substr(bar) != " | refused";
    EXPECT_EQ(ImportSetupFile(block, nullptr, nullptr), accepted);
    if (accepted) {
      for (size_t at : {434, 436, 438, 440, 442, 444, 446, 452}) Put<int16_t>(&expected, at, 0);
      for (size_t at : {382, 398, 408}) Put<int16_t>(&expected, at, 1);
      Put<int16_t>(&expected, 406, 2);
      expected.Record.Public = block.Record.Public;
      std::istringstream fields(row.substr(bar + 2));
      for (std::string field; fields >> field;) {
        const size_t at = std::stoul(field);
        const std::string value = field.substr(field.find(':') + 1);
        if (value[0] == '"') {
          const auto name = platform::ToUtf16(value.substr(1, value.size() - 2));
          for (size_t i = 0; i < 64; ++i)
            Put(&expected, at + 2 * i, i < name.size() ? name[i] : u'\0');
        } else if (value.back() == 'L') {
          Put<int32_t>(&expected, at, std::stoi(value));
        } else {
          Put(&expected, at, static_cast<int16_t>(std::stoi(value)));
        }
      }
    }
    for (size_t at = 0; at < sizeof block; at += 2) {
      EXPECT_EQ(At(&block, at), At(&expected, at)) << "at " << at;
    }
  }
}

TEST_F(SetupFileTest, InitialiseEventStoresItsSettings) {
  std::u16string name = support::kPrinter;
  machine().WriteFile(
      kFile, platform::ToCp932(u"[ﾊﾞｰｼﾞｮﾝ情報]\r\nDriverName=x\r\n[用紙登録数]\r\nPaperNum=0\r\n"
                               u"[ﾄﾞﾗｲﾊﾞ情報]\r\nPrintSpeed=4\r\n[ﾃﾞﾊﾞｲｽ情報]\r\nMecha=2\r\n"
                               u"[ﾌﾘｰｻｲｽﾞ用紙]\r\nPaperName=髙表示\r\n"));
  EXPECT_TRUE(exports_.DrvPrinterEvent(name.data(), PRINTER_EVENT_INITIALIZE, 0, 0));
  const PrinterSettingsPart part = support::StoredPrinterPart(machine());
  EXPECT_EQ(support::Words(part.HeadDensity, part.Mecha), support::Words(0, 2))
      << "the file has no density, and there is no default";
  // A printer without a default record uses the file's settings and sets Signature.
  SettingsRecord record{};
  LONG size = 452;
  EXPECT_TRUE(
      exports_.DrvConvertDevMode(name.data(), nullptr, &record.Public, &size, CDM_DRIVER_DEFAULT));
  EXPECT_EQ(record.Private.FreePaper.PaperName, std::u16string(u"髙表示"));
  EXPECT_EQ(support::Words(record.Private.nPrintSpeed, record.Private.Signature),
            support::Words(4, SETTINGS_SIGNATURE));
  EXPECT_EQ(record.Public.dmPaperSize, 0) << "the public fields are derived";
}

}  // namespace
}  // namespace kestrel
