// The dialog of barcode fonts and its calls into the barcode detail library.
#include "font_fixture.h"

namespace fonts {
namespace {

constexpr int kKindList = IDC_BAR_FONT_KIND, kUpca = 0, kQr1 = 12;  // rows of the list
const std::vector<int> kSerialRadios = {IDC_BAR_FONT_SERIAL_ON, IDC_BAR_FONT_SERIAL_OFF};

constexpr char16_t kProduct[] = u"VELA Kestrel Graphics Mode Driver";
const Step kNoLibrary = CloseMessage(u"LoadLibrary Error!!", MB_OK, kProduct),
           kNoEntry = CloseMessage(u"GetProcAddress Error!!", MB_OK, kProduct);
Steps ExpectKinds(size_t count, int selected) {
  return {ExpectItems(kKindList, {count, u"種45678901234567890123456789012"}),
          ExpectSelected(kKindList, selected)};
}
Steps OpenDetail(int row) { return {Select(kKindList, row), Click(IDC_BAR_FONT_DETAIL)}; }

class BarDialogTest : public FontTest {
 protected:
  // Changes stored_ with the steps. Expects the font and the calls into the library.
  void ExpectCalls(const Font& font, const std::vector<std::string>& calls, const Steps& steps,
                   const Steps& atOk = {}) {
    FakeLibrary::calls.clear();
    ExpectChange(kBar, stored_, font, steps, atOk);
    EXPECT_EQ(FakeLibrary::calls, calls);
  }
  const Font stored_ = Bar(u"B", 100, 20);
  const Font newQr1_ = Bar(u"B", 1400);
};

TEST_F(BarDialogTest, NewFontHasFirstKindWithItsDefaults) {
  SetDensity(305);
  ExpectStored({Bar(u"A")}, New(kBar, u"A",
                                {ExpectKinds(19, kUpca), ExpectText(kBar.name, u""),
                                 ExpectChecked({IDC_BAR_FONT_STRING_FONT})}));
  EXPECT_EQ(FakeLibrary::calls, std::vector<std::string>{"Init"});
}

TEST_F(BarDialogTest, FileCategoryIsStoredAndShown) {
  Font file = stored_;
  file.Bar.FontCategory = kBarcodeFileFont;
  ExpectChange(kBar, stored_, file, Click(IDC_BAR_FONT_FILE_FONT));
  ExpectChange(kBar, file, file, ExpectChecked({IDC_BAR_FONT_FILE_FONT}));
}

// A kind that the user selects without opening its details gets the library's defaults.
TEST_F(BarDialogTest, SelectedKindIsStoredAndEnablesSerialNumbering) {
  constexpr int kKinds[] = {100,  200,  300,  400,  500,  600,  700,  800,  900, 1200,
                            1300, 2500, 1400, 1500, 1600, 1700, 1900, 2000, 2100};
  for (int row = 1; row < 19; ++row) {
    const Font font = Bar(u"B", kKinds[row]);
    ExpectChange(kBar, stored_, font,
                 {Select(kKindList, row), ExpectEnabled(kSerialRadios, row < kQr1)});
    ExpectChange(kBar, font, font, ExpectSelected(kKindList, row));
  }
}

TEST_F(BarDialogTest, DetailDialogChangesKindAndParametersOnlyWhenConfirmed) {
  ExpectCalls(Font(stored_).Parameter(kEdited, 9), {"ShowDlg"}, OpenDetail(kUpca));
  // Another kind starts with its defaults.
  ExpectCalls(Font(newQr1_).Parameter(kEdited, 9), {"Init", "ShowDlg"}, OpenDetail(kQr1));
  FakeLibrary::showResult = 2;
  ExpectCalls(stored_, {"ShowDlg"}, OpenDetail(kUpca));
  ExpectCalls(newQr1_, {"Init", "ShowDlg", "Init"}, OpenDetail(kQr1));
}

TEST_F(BarDialogTest, MissingEntryPointIsReported) {
  FakeLibrary::initResult = 1;
  FakeLibrary::Register(machine(), "GetBarNameUPCA");
  ExpectCalls(stored_, {}, {kNoEntry, ExpectKinds(0, -1), Click(IDC_BAR_FONT_DETAIL)});
  FakeLibrary::Register(machine(), "InitQR1");
  // OK stores the selected kind with the former parameters.
  ExpectCalls(Bar(u"B", 1400, 20), {}, Select(kKindList, kQr1), kNoEntry);
}

TEST_F(BarDialogTest, MissingLibraryLeavesKindListEmpty) {
  machine().UnregisterModule(u"QM610rBAR.DLL");
  Store({stored_});
  ExpectStored({stored_, Bar(u"N", 100, 0)},
               {Change(kBar, {kNoLibrary, ExpectKinds(0, -1)}),
                New(kBar, u"N", {kNoLibrary, kNoLibrary, Click(IDC_BAR_FONT_DETAIL)})});
}

TEST_F(BarDialogTest, UnknownKindBecomesFirstOneIfListed) {
  ExpectChange(kBar, Bar(u"B", 1000, 20), Bar(u"B"), ExpectKinds(19, kUpca));
}

}  // namespace
}  // namespace fonts
