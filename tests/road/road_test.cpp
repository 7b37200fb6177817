// The whole road of one printer's settings, as its owner and an application walk it.
#include <algorithm>

#include "driver/text.h"
#include "fonts/font_record.h"
#include "paper/paper_table.h"
#include "resources/resource.h"
#include "tests/road/road_fixture.h"

namespace kestrel {
namespace {

using support::Click;
using support::CloseMessage;
using support::GoTo;
using support::PressOk;
using support::Replace;
using support::Select;
using support::Steps;

constexpr char16_t kBackup[] = u"C:\\BACKUP\\倉庫.ini";
constexpr char16_t kSyncKey[] =
    u"SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\倉庫 2F\\PrinterDriverData";

Steps ChangeEverything() {
  return {
      GoTo(support::kPaperTab),
      Click(IDC_PAPER_REGISTER),
      Replace(IDC_PAPER_REGISTER_NAME, u"棚札"),
      Replace(IDC_PAPER_REGISTER_WIDTH, u"40.0"),
      Replace(IDC_PAPER_REGISTER_LENGTH, u"30.0"),
      Click(IDOK),
      Select(IDC_PAPER_LIST, 1),
      Click(IDC_PAPER_LANDSCAPE),
      Replace(IDC_PAPER_VERT_BASE, u"-12"),
      GoTo(support::kOperationTab),
      Select(IDC_OPERATION_SPEED, 1),
      Select(IDC_OPERATION_SENSOR, 1),
      Click(IDC_OPERATION_COLOR_BLACK),
      Click(IDC_OPERATION_SYNC_PRINT),
      Click(IDC_OPERATION_COMPULSORY),
      GoTo(support::kDeviceTab),
      Select(IDC_DEVICE_MODE, 2),
      GoTo(support::kFontTab),
      Click(IDC_CREATE_FONT_DECO_NEW),
      Replace(IDC_DECO_FONT_NAME, u"飾り"),
      Select(IDC_DECO_FONT_RESIDENT, 8),
      Replace(IDC_DECO_FONT_EXPAND_Y, u"3"),
      Click(IDOK),
      Click(IDC_CREATE_FONT_BAR_NEW),
      Replace(IDC_BAR_FONT_NAME, u"品番QR"),
      Select(IDC_BAR_FONT_KIND, 12),
      Click(IDOK),
      GoTo(support::kUtilityTab),
      Replace(IDC_UTILITY_SAVE_NAME, kBackup),
      Click(IDC_UTILITY_SAVE),
      CloseMessage(u"データを保存しました。", MB_ICONASTERISK, u"ユーティリティ"),
      PressOk(),
  };
}

Steps LoadBackup() {
  return {
      GoTo(support::kUtilityTab),
      Replace(IDC_UTILITY_LOAD_NAME, kBackup),
      Click(IDC_UTILITY_LOAD),
      CloseMessage(
          u"読み込んだクリエイトフォント名が現在の環境で\n使用されているフォント名と重複する可能"
          u"性があ\nります。\n重複していないことを確認してください。",
          MB_ICONEXCLAMATION, u"ユーティリティ"),
      CloseMessage(u"データを読込みました。", MB_ICONASTERISK, u"ユーティリティ"),
      PressOk(),
  };
}

TEST_F(Road, OnePrintersSettingsReachApplicationsAndASecondPrinter) {
  machine().WriteFile(u"C:\\BACKUP\\readme.txt", "");
  ShowUserDefault(support::kPrinter, ChangeEverything());

  // The owner's precedence holds against an application's private fields, not against its public
  // ones.
  const SettingsRecord own = Resolve(support::kPrinter);
  EXPECT_EQ(own.Private.PaperID, 258);
  EXPECT_EQ(own.Private.nVertBase, -12);
  EXPECT_EQ(own.Private.nCompulsory, 1);
  SettingsRecord wish = own;
  wish.Public.dmFields = DM_COPIES | DM_PAPERSIZE;
  wish.Public.dmCopies = 7;
  wish.Public.dmPaperSize = kFreePaperId;
  wish.Private.nPrintSpeed = 1;
  const SettingsRecord merged = Resolve(support::kPrinter, &wish);
  EXPECT_EQ(merged.Private.Copies, 7);
  EXPECT_EQ(merged.Private.PaperID, kFreePaperId);
  EXPECT_EQ(merged.Private.nPrintSpeed, 2);

  // An application's document keeps the paper that its user picks.
  const support::SheetAnswer picked =
      Show({.input = &wish}, {GoTo(support::kPaperTab), Select(IDC_PAPER_LIST, 0), PressOk()});
  EXPECT_EQ(picked.result, CPSUI_OK);
  EXPECT_EQ(picked.record.Public.dmPaperSize, 257);
  EXPECT_EQ(picked.record.Public.dmCopies, 7);

  const support::OpenedPrinter opened;
  std::u16string name = support::kPrinter;
  std::vector<POINT> sizes(3);
  EXPECT_EQ(
      exports_.DrvDeviceCapabilities(opened, name.data(), DC_PAPERSIZE, sizes.data(), nullptr), 3);
  EXPECT_EQ(sizes[1].x, 400);
  EXPECT_EQ(sizes[1].y, 300);

  // A backup makes the second printer the first.
  ShowUserDefault(kSecond, LoadBackup());
  // The three words of a barcode block that have no name stay behind; the rest of each font
  // crosses.
  std::vector<std::byte> fonts = Data(support::kPrinter, u"CreateFont Data");
  ASSERT_EQ(fonts.size(), 2 * sizeof(FontRecord));
  const size_t block = sizeof(FontRecord) + 66 + offsetof(BarFontInfo, BarcodeParam);
  std::fill_n(fonts.begin() + static_cast<std::ptrdiff_t>(block + 4), 6, std::byte{0});
  EXPECT_EQ(fonts, Data(kSecond, u"CreateFont Data"));
  EXPECT_EQ(Data(support::kPrinter, u"CreateFont Number"), Data(kSecond, u"CreateFont Number"));

  // The printer's own mode and density stay; everything else is the same, byte for byte.
  const std::vector<std::byte> first = Data(support::kPrinter, u"Private DevMode");
  std::vector<std::byte> second = Data(kSecond, u"Private DevMode");
  ASSERT_EQ(first.size(), size_t{kPrinterPartSize});
  ASSERT_EQ(second.size(), size_t{kPrinterPartSize});
  constexpr size_t kMode = offsetof(PrinterSettingsPart, Mecha);
  EXPECT_EQ(first[kMode], std::byte{2});
  EXPECT_EQ(second[kMode], std::byte{0});
  second[kMode] = first[kMode];
  EXPECT_EQ(first, second);

  SettingsRecord firstRecord = Resolve(support::kPrinter);
  const SettingsRecord secondRecord = Resolve(kSecond);
  CopyText(firstRecord.Public.dmDeviceName, kSecond);
  EXPECT_EQ(support::BytesOf(firstRecord), support::BytesOf(secondRecord));

  const auto sync = machine().Registry(kSyncKey, u"SyncPrint");
  ASSERT_TRUE(sync);
  EXPECT_EQ(sync->bytes, (std::vector<std::byte>{std::byte{1}, {}, {}, {}}));
}

}  // namespace
}  // namespace kestrel
