// Factory defaults and public fields.
#include <gtest/gtest.h>

#include <string>

#include "driver/default_settings.h"
#include "driver/text.h"
#include "tests/support/bin_dir.h"
#include "tests/support/settings.h"

namespace kestrel {
namespace {

class Defaults : public testing::Test {
 protected:
  std::unique_ptr<platform::Machine> machine_ = platform::Machine::Create();
};

TEST_F(Defaults, AreTheGoldenBytes) {
  DriverSettingsBlock block;
  std::memset(static_cast<void*>(&block), 0xFF, sizeof block);
  FillDefaultSettings(block, nullptr, u"倉庫 1F,LPT1:");
  const std::string golden = support::Golden("defaults.bin");
  ASSERT_EQ(golden.size(), sizeof block);
  for (size_t offset = 0; offset < sizeof block; offset += 2) {
    EXPECT_EQ(support::At(&block, offset), support::At(golden.data(), offset)) << offset;
  }
}

TEST_F(Defaults, PublicFieldsFollowThePrivateOnes) {
  auto block = support::DefaultBlock();
  const DEVMODEW& record = block.Record.Public;
  PrivateDevMode& settings = block.Record.Private;
  const auto refill = [&](const char16_t* name = nullptr) {
    FillPublicFields(block, nullptr, name);
  };
  refill(std::u16string(40, u'n').c_str());
  EXPECT_EQ(record.dmDeviceName, std::u16string(31, u'n'));
  refill(u"\\\\server\\Label,LPT1:");
  EXPECT_EQ(record.dmDeviceName, std::u16string(u"\\\\server\\Label")) << "only the port goes";
  refill();
  EXPECT_EQ(record.dmDeviceName, std::u16string());

  PaperInfo& paper = block.Printer.Papers[0];
  paper.Unit = kInch;
  paper.LabelWidth = 2283;
  paper.LabelHeight = 1000;
  std::fill_n(paper.PaperName, kPaperNameLength, u'p');
  settings.Orient = 2;
  settings.Copies = 500;
  refill();
  EXPECT_EQ(record.dmPaperWidth, 580);
  EXPECT_EQ(record.dmPaperLength, 254);
  EXPECT_EQ(record.dmFormName, std::u16string(31, u'p'));
  EXPECT_EQ(record.dmOrientation, 2);
  EXPECT_EQ(record.dmCopies, 500);
  paper.Unit = kDot;
  refill();
  EXPECT_EQ(record.dmPaperWidth, 2283) << "dots are taken as stored";

  settings.FreePaper.LabelWidth = 333;
  CopyText(settings.FreePaper.PaperName, u"other");
  for (const int id : {256, 258, 0, -1}) {
    settings.PaperID = static_cast<int16_t>(id);
    refill();
    EXPECT_EQ(record.dmPaperSize, id);
    EXPECT_EQ(record.dmPaperWidth, 333);
    EXPECT_EQ(record.dmFormName, std::u16string(u"フリーサイズ"));
  }
  for (const auto& [density, quality] : {std::pair{305, 305}, {203, 203}, {300, 203}, {0, 203}}) {
    block.Printer.HeadDensity = static_cast<uint16_t>(density);
    refill();
    EXPECT_EQ(record.dmPrintQuality, quality);
    EXPECT_EQ(record.dmYResolution, quality);
  }
}

}  // namespace
}  // namespace kestrel
