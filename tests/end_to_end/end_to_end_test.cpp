// The settings of a printer from the property sheets to the records of applications, a backup and a
// second printer.
#include <algorithm>

#include "driver/text.h"
#include "fonts/font_record.h"
#include "host/record_json.h"
#include "paper/paper_table.h"
#include "resources/resource.h"
#include "tests/support/open_sheet.h"

namespace kestrel {
namespace {

using support::BytesOf;
using support::Click;
using support::CloseMessage;
using support::GoTo;
using support::kPrinter;
using support::PressOk;
using support::Replace;
using support::Select;

constexpr char16_t kSecond[] = u"倉庫 2F";
constexpr char16_t kBackup[] = u"C:\\BACKUP\\倉庫.ini";

// A computer with two printers of the driver and the companion libraries in place.
class EndToEnd : public support::SheetTest {
 protected:
  void SetUp() override {
    SheetTest::SetUp();
    machine().AddPrinter({.name = kSecond});
    const std::u16string directory = machine().driverDirectory() + u"\\3\\";
    machine().InstallModule(directory + u"QM610rLIB.DLL", support::Built("QM610rLIB.so"));
    machine().InstallModule(directory + u"QM610rBAR.DLL", support::Built("QM610rBAR.so"));
    // A system library of the same name in this directory is never loaded.
    machine().WriteFile(directory + u"comdlg32.dll", "");
    // The spooler initialises a new printer through the driver and then stores its default record.
    for (std::u16string name : {kPrinter, kSecond}) {
      EXPECT_TRUE(exports_.DrvPrinterEvent(name.data(), PRINTER_EVENT_INITIALIZE, 0, 0));
      SettingsRecord record = {};
      LONG size = sizeof(record);
      EXPECT_TRUE(exports_.DrvConvertDevMode(name.data(), nullptr, &record.Public, &size,
                                             CDM_DRIVER_DEFAULT));
      machine().SetDefaultRecord(name, BytesOf(record));
    }
  }

  // Returns a printer's settings as an application queries them, merged with input when it is
  // given.
  SettingsRecord Resolve(std::u16string name, SettingsRecord* input = nullptr) {
    const support::OpenedPrinter opened(name);
    SettingsRecord record = {};
    EXPECT_EQ(exports_.DrvDocumentProperties(nullptr, opened, name.data(), &record.Public,
                                             input != nullptr ? &input->Public : nullptr,
                                             input != nullptr ? DM_COPY | DM_MODIFY : DM_COPY),
              IDOK);
    return record;
  }
  std::vector<std::byte> Data(const char16_t* printer, const char16_t* value) {
    return machine().Data(printer, value).value().bytes;
  }
};

TEST_F(EndToEnd, OnePrintersSettingsReachApplicationsAndASecondPrinter) {
  machine().WriteFile(u"C:\\BACKUP\\readme.txt", "");
  ASSERT_EQ(Ok(support::kPaperTab,
               {Click(IDC_PAPER_REGISTER),
                Replace(IDC_PAPER_REGISTER_NAME, u"棚札"),
                Replace(IDC_PAPER_REGISTER_WIDTH, u"40.0"),
                Click(IDOK),
                Select(IDC_PAPER_LIST, 1),
                Click(IDC_PAPER_LANDSCAPE),
                Replace(IDC_PAPER_VERT_BASE, u"-12"),
                GoTo(support::kOperationTab),
                Select(IDC_OPERATION_SPEED, 1),
                Click(IDC_OPERATION_SYNC_PRINT),
                Click(IDC_OPERATION_COMPULSORY),
                GoTo(support::kDeviceTab),
                Select(IDC_DEVICE_MODE, 2),
                GoTo(support::kFontTab),
                Click(IDC_CREATE_FONT_DECO_NEW),
                Replace(IDC_DECO_FONT_NAME, u"飾り"),
                Select(IDC_DECO_FONT_RESIDENT, 8),
                Click(IDOK),
                Click(IDC_CREATE_FONT_BAR_NEW),
                Replace(IDC_BAR_FONT_NAME, u"品番QR"),
                Select(IDC_BAR_FONT_KIND, 12),
                Click(IDOK),
                GoTo(support::kUtilityTab),
                Replace(IDC_UTILITY_SAVE_NAME, kBackup),
                Click(IDC_UTILITY_SAVE),
                CloseMessage(u"データを保存しました。", MB_ICONASTERISK, u"ユーティリティ")})
                .result,
            CPSUI_OK);

  // With precedence of the driver's settings, an application changes public fields only.
  const SettingsRecord own = Resolve(kPrinter);
  SettingsRecord wish = own;
  wish.Public.dmFields = DM_COPIES | DM_PAPERSIZE;
  wish.Public.dmCopies = 7;
  wish.Public.dmPaperSize = kFreePaperId;
  wish.Private.nPrintSpeed = 1;
  const SettingsRecord merged = Resolve(kPrinter, &wish);
  const auto fields = [](const PrivateDevMode& settings) {
    return std::array{settings.PaperID, settings.nVertBase, settings.nCompulsory, settings.Copies,
                      settings.nPrintSpeed};
  };
  EXPECT_EQ(fields(own.Private), (std::array<int16_t, 5>{258, -12, 1, 1, 2}));
  EXPECT_EQ(fields(merged.Private), (std::array<int16_t, 5>{kFreePaperId, -12, 1, 7, 2}));

  // The record of an application's document contains the paper that the user selects.
  const auto picked =
      Show({.input = &wish}, {GoTo(support::kPaperTab), Select(IDC_PAPER_LIST, 0), PressOk()});
  EXPECT_EQ(picked.record.Public.dmPaperSize, 257);
  EXPECT_EQ(picked.record.Public.dmCopies, 7);

  // Loading the backup copies the settings to the second printer.
  ASSERT_EQ(
      Show({.kind = support::SheetKind::kUserDefault, .printer = kSecond},
           {GoTo(support::kUtilityTab), Replace(IDC_UTILITY_LOAD_NAME, kBackup),
            Click(IDC_UTILITY_LOAD),
            CloseMessage(u"読み込んだクリエイトフォント名が現在の環境で\n使用されているフォント名と"
                         u"重複する可能"
                         u"性があ\nります。\n重複していないことを確認してください。",
                         MB_ICONEXCLAMATION, u"ユーティリティ"),
            CloseMessage(u"データを読込みました。", MB_ICONASTERISK, u"ユーティリティ"), PressOk()})
          .result,
      CPSUI_OK);
  // The backup omits three words of a barcode block that have no key, and contains the rest of each
  // font.
  std::vector<std::byte> fonts = Data(kPrinter, u"CreateFont Data");
  ASSERT_EQ(fonts.size(), 2 * sizeof(FontRecord));
  const size_t block = sizeof(FontRecord) + 66 + offsetof(BarFontInfo, BarcodeParam);
  std::fill_n(fonts.begin() + static_cast<std::ptrdiff_t>(block + 4), 6, std::byte{0});
  EXPECT_EQ(fonts, Data(kSecond, u"CreateFont Data"));
  EXPECT_EQ(Data(kPrinter, u"CreateFont Number"), Data(kSecond, u"CreateFont Number"));

  // Mode and density are not loaded; everything else is equal, byte for byte.
  auto first = Data(kPrinter, u"Private DevMode"), second = Data(kSecond, u"Private DevMode");
  constexpr size_t kMode = offsetof(PrinterSettingsPart, Mecha);
  EXPECT_EQ(std::exchange(first.at(kMode), std::byte{0}), std::byte{2});
  EXPECT_EQ(first, second);

  SettingsRecord firstRecord = Resolve(kPrinter);
  const SettingsRecord secondRecord = Resolve(kSecond);
  CopyText(firstRecord.Public.dmDeviceName, kSecond);
  EXPECT_EQ(BytesOf(firstRecord), BytesOf(secondRecord));
}

// Every byte of a settings record that is not reserved changes its JSON form.
TEST(RecordFields, AppearInTheJson) {
  const auto machine = platform::Machine::Create();
  auto block = support::DefaultBlock();
  // Names fill their fields, so that each of their units appears.
  std::fill_n(block.Record.Public.dmDeviceName, 32, u'n');
  std::fill_n(block.Record.Public.dmFormName, 32, u'n');
  std::fill_n(block.Record.Private.FreePaper.PaperName, kPaperNameLength, u'n');
  const printhost::Record record = BytesOf(block.Record);
  const printhost::Json before = printhost::RecordJson(record);
  for (size_t at = 0; at < record.size(); ++at) {
    if (at >= 68 && at < 72) continue;  // other sizes would move the private fields
    // Three reserved words of the free-size paper, and one and four of the private part.
    const bool reserved =
        (at >= 374 && at < 380) || at == 404 || at == 405 || (at >= 440 && at < 448);
    printhost::Record other = record;
    other[at] ^= std::byte{1};
    EXPECT_EQ(printhost::RecordJson(other) == before, reserved) << "byte " << at;
  }
}

}  // namespace
}  // namespace kestrel
