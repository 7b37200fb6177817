// The settings of a printer on their way from the property sheets to applications' records, a
// backup and a second printer.
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
    // The spooler initialises a new printer through the driver and stores its default record.
    for (std::u16string name : {kPrinter, kSecond}) {
      EXPECT_TRUE(exports_.DrvPrinterEvent(name.data(), PRINTER_EVENT_INITIALIZE, 0, 0));
      machine().SetDefaultRecord(name, BytesOf(Resolve(name)));
    }
  }

  // Returns a printer's settings as an application queries them.
  SettingsRecord Resolve(std::u16string name) {
    const support::OpenedPrinter opened(name);
    SettingsRecord record = {};
    EXPECT_EQ(exports_.DrvDocumentProperties(nullptr, opened, name.data(), &record.Public, nullptr,
                                             DM_COPY),
              IDOK);
    return record;
  }
  std::vector<std::byte> Data(const char16_t* printer, const char16_t* value) {
    return machine().Data(printer, value).value().bytes;
  }
};

TEST_F(EndToEnd, OnePrintersSettingsReachApplicationsAndASecondPrinter) {
  machine().WriteFile(u"C:\\BACKUP\\readme.txt", "");  // creates the folder
  const auto saved =
      Ok(support::kPaperTab,
         {Click(IDC_PAPER_REGISTER), Replace(IDC_PAPER_REGISTER_NAME, u"棚札"), Click(IDOK),
          Select(IDC_PAPER_LIST, 1), GoTo(support::kDeviceTab), Select(IDC_DEVICE_MODE, kPeelMode),
          GoTo(support::kFontTab), Click(IDC_CREATE_FONT_DECO_NEW),
          Replace(IDC_DECO_FONT_NAME, u"飾り"), Click(IDOK), Click(IDC_CREATE_FONT_BAR_NEW),
          Replace(IDC_BAR_FONT_NAME, u"品番QR"), Select(IDC_BAR_FONT_KIND, 12), Click(IDOK),
          GoTo(support::kUtilityTab), Replace(IDC_UTILITY_SAVE_NAME, kBackup),
          Click(IDC_UTILITY_SAVE), Click(IDOK)});  // the message "saved"
  ASSERT_EQ(saved.result, CPSUI_OK);
  SettingsRecord first = Resolve(kPrinter);
  EXPECT_EQ(first.Private.PaperID, kFirstPaperId + 1);

  Show(
      {.kind = support::SheetKind::kUserDefault, .printer = kSecond},
      {GoTo(support::kUtilityTab), Replace(IDC_UTILITY_LOAD_NAME, kBackup), Click(IDC_UTILITY_LOAD),
       Click(IDOK),  // the warning about equal font names
       Click(IDOK),  // the message "loaded"
       PressOk()});
  CopyText(first.Public.dmDeviceName, kSecond);
  EXPECT_EQ(BytesOf(first), BytesOf(Resolve(kSecond)));

  // The printer's mode is not loaded.
  std::vector<std::byte> part = Data(kPrinter, u"Private DevMode");
  EXPECT_EQ(std::exchange(part.at(offsetof(PrinterSettingsPart, Mecha)), std::byte{kTearOffMode}),
            std::byte{kPeelMode});
  EXPECT_EQ(part, Data(kSecond, u"Private DevMode"));

  // The backup omits three words of a barcode block that have no key, and contains the rest of each
  // font.
  std::vector<std::byte> fonts = Data(kPrinter, u"CreateFont Data");
  ASSERT_EQ(fonts.size(), 2 * sizeof(FontRecord));
  const size_t block = sizeof(FontRecord) + 66 + offsetof(BarFontInfo, BarcodeParam);
  std::fill_n(fonts.begin() + static_cast<std::ptrdiff_t>(block + 4), 6, std::byte{0});
  EXPECT_EQ(fonts, Data(kSecond, u"CreateFont Data"));
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
