// The set-up file in the Windows directory, through the import and through the spooler's event.
#include "files/setup_file.h"

#include <sstream>

#include "platform/system/text.h"
#include "tests/support/bin_dir.h"
#include "tests/support/test_machine.h"

namespace kestrel {
namespace {

using support::At;
using support::Put;

constexpr char16_t kFile[] = u"C:\\WINDOWS\\SetupKit_QM6_1R.INI";

class SetupFile : public support::MachineTest {};

TEST_F(SetupFile, IsTakenOrRefusedAndReadByItsRules) {
  for (std::string row : support::GoldenRows("setup.txt")) {
    SCOPED_TRACE(row);
    if (row[0] == '+') row.replace(0, 1, "[ﾊﾞｰｼﾞｮﾝ情報]/DriverName=x/[用紙登録数]/PaperNum=0/");
    const size_t bar = row.find(" |");
    std::string text = row.substr(0, bar);
    for (size_t at; (at = text.find('/')) != std::string::npos;) text.replace(at, 1, "\r\n");
    machine().WriteFile(kFile, platform::ToCp932(platform::ToUtf16(text)));
    DriverSettingsBlock block, expected;
    std::memset(static_cast<void*>(&block), 0x11, sizeof block);
    expected = block;
    const bool taken = row.substr(bar) != " | refused";
    EXPECT_EQ(ImportSetupFile(block, nullptr, nullptr), taken);
    if (taken) {
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

TEST_F(SetupFile, InitialisesAPrinterInEachEncoding) {
  std::u16string name = support::kPrinter;
  const std::u16string text =
      u"\uFEFF[ﾊﾞｰｼﾞｮﾝ情報]\r\nDriverName=x\r\n[用紙登録数]\r\nPaperNum=0\r\n[ﾄﾞﾗｲﾊﾞ情報]\r\n"
      u"PrintSpeed=4\r\n[ﾃﾞﾊﾞｲｽ情報]\r\nMecha=2\r\n[ﾌﾘｰｻｲｽﾞ用紙]\r\nPaperName=髙表示\r\n";
  for (const bool wide : {false, true}) {
    SCOPED_TRACE(wide ? "UTF-16" : "code page 932");
    machine().WriteFile(
        kFile, wide ? std::string(reinterpret_cast<const char*>(text.data()), text.size() * 2)
                    : platform::ToCp932(text.substr(1)));
    machine().RemoveData(support::kPrinter, u"Private DevMode");
    EXPECT_TRUE(exports_.DrvPrinterEvent(name.data(), PRINTER_EVENT_INITIALIZE, 0, 0));
    const PrinterSettingsPart part = support::KeptPrinterPart(machine());
    EXPECT_EQ(part.HeadDensity, 0) << "no density in the file, and no default";
    EXPECT_EQ(part.Mecha, 2);
    // Without a default record every caller gets the file's settings, signed.
    SettingsRecord record{};
    LONG size = 452;
    EXPECT_TRUE(exports_.DrvConvertDevMode(name.data(), nullptr, &record.Public, &size,
                                           CDM_DRIVER_DEFAULT));
    EXPECT_EQ(record.Private.nPrintSpeed, 4);
    EXPECT_EQ(record.Private.FreePaper.PaperName, std::u16string(u"髙表示"));
    EXPECT_EQ(record.Private.Signature, SETTINGS_SIGNATURE);
    EXPECT_EQ(record.Public.dmPaperSize, 0) << "the public fields follow";
  }
}

}  // namespace
}  // namespace kestrel
