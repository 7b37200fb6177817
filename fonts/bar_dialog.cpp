#include "fonts/bar_dialog.h"

#include <algorithm>
#include <cstring>

#include "driver/instance.h"
#include "fonts/barcode_kinds.h"
#include "fonts/barcode_library.h"
#include "fonts/font_names.h"
#include "fonts/serial_fields.h"
#include "paper/fields/controls.h"
#include "paper/fields/help_text.h"
#include "paper/paper_info.h"
#include "resources/resource.h"

namespace kestrel {
namespace {

constexpr INT_PTR kConfirmed = 1;
constexpr INT_PTR kCancelled = 2;

constexpr SerialControls kSerial = {
    IDC_BAR_FONT_SERIAL_ON,
    IDC_BAR_FONT_SERIAL_OFF,
    IDC_BAR_FONT_HEXADECIMAL,
    IDC_BAR_FONT_DECIMAL,
    {IDC_BAR_FONT_PRINT_NUM, IDC_BAR_FONT_INCREMENT, IDC_BAR_FONT_ACTIVE_DIGITS,
     IDC_BAR_FONT_LOW_DIGITS},
    {IDC_BAR_FONT_PRINT_NUM_SPIN, IDC_BAR_FONT_INCREMENT_SPIN, IDC_BAR_FONT_ACTIVE_DIGITS_SPIN,
     IDC_BAR_FONT_LOW_DIGITS_SPIN}};

constexpr HelpRow kHelp[] = {
    Plain(IDC_BAR_FONT_NAME, IDS_HELP_BAR_FONT_NAME),
    Plain(IDC_BAR_FONT_STRING_FONT, IDS_HELP_BAR_FONT_STRING_FONT),
    Plain(IDC_BAR_FONT_FILE_FONT, IDS_HELP_BAR_FONT_FILE_FONT),
    Plain(IDC_BAR_FONT_KIND, IDS_HELP_BAR_FONT_KIND),
    Plain(IDC_BAR_FONT_DETAIL, IDS_HELP_BAR_FONT_DETAIL),
    Plain(IDC_BAR_FONT_SERIAL_ON, IDS_HELP_BAR_FONT_SERIAL_ON),
    Plain(IDC_BAR_FONT_SERIAL_OFF, IDS_HELP_BAR_FONT_SERIAL_OFF),
    Plain(IDC_BAR_FONT_HEXADECIMAL, IDS_HELP_BAR_FONT_HEXADECIMAL),
    Plain(IDC_BAR_FONT_DECIMAL, IDS_HELP_BAR_FONT_DECIMAL),
    Ranged(IDC_BAR_FONT_PRINT_NUM, IDS_HELP_BAR_FONT_PRINT_NUM, kHelpDotRange, 1, 9999),
    Ranged(IDC_BAR_FONT_INCREMENT, IDS_HELP_BAR_FONT_INCREMENT, kHelpDotRange, -9999, 9999),
    Ranged(IDC_BAR_FONT_ACTIVE_DIGITS, IDS_HELP_BAR_FONT_ACTIVE_DIGITS, kHelpDotRange, 1, 99),
    Ranged(IDC_BAR_FONT_LOW_DIGITS, IDS_HELP_BAR_FONT_LOW_DIGITS, kHelpDotRange, 0, 99),
};

constexpr NumericField kFields[] = {
    {IDC_BAR_FONT_PRINT_NUM, IDC_BAR_FONT_PRINT_NUM_SPIN, 1, 9999, kPlain},
    {IDC_BAR_FONT_INCREMENT, IDC_BAR_FONT_INCREMENT_SPIN, -9999, 9999, kPlain},
    {IDC_BAR_FONT_ACTIVE_DIGITS, IDC_BAR_FONT_ACTIVE_DIGITS_SPIN, 1, 99, kPlain},
    {IDC_BAR_FONT_LOW_DIGITS, IDC_BAR_FONT_LOW_DIGITS_SPIN, 0, 99, kPlain},
};

struct BarDialog {
  HWND window;
  FontStore* store;
  BarcodeLibrary library;

  BarFontInfo& font() { return store->WorkFont.Bar; }
  FieldDialog fields() const { return {window, kFields}; }
  bool checked(int control) const { return IsDlgButtonChecked(window, control) == BST_CHECKED; }
};

void CheckPair(HWND window, int first, int second, bool isFirst) {
  CheckDlgButton(window, first, isFirst ? BST_CHECKED : BST_UNCHECKED);
  CheckDlgButton(window, second, isFirst ? BST_UNCHECKED : BST_CHECKED);
}

// The selected row of the table of kinds; null while the list is empty.
const BarcodeKindRow* SelectedKind(const BarDialog& dialog) {
  const LRESULT row = SendDlgItemMessageW(dialog.window, IDC_BAR_FONT_KIND, CB_GETCURSEL, 0, 0);
  if (row < 0 || row >= kBarcodeKindCount) return nullptr;
  return &BarcodeKinds()[static_cast<size_t>(row)];
}

void StartNewFont(BarDialog& dialog) {
  dialog.store->WorkFont = {};
  BarFontInfo& font = dialog.font();
  std::memset(&font, 0, sizeof(font));
  font.FontCategory = kBarcodeStringFont;
  font.BarcodeKind = kFirstBarcodeKind;
  font.PrintNum = 1;
  font.Incriment = 1;
  font.ActiveData = 1;
  InitParam(dialog.library, font.BarcodeParam, kFirstBarcodeKind);
}

void ShowFont(BarDialog& dialog) {
  const BarFontInfo& font = dialog.font();
  HWND window = dialog.window;
  SetDlgItemTextW(window, IDC_BAR_FONT_NAME, font.BarFontName);
  CheckPair(window, IDC_BAR_FONT_FILE_FONT, IDC_BAR_FONT_STRING_FONT,
            font.FontCategory == kBarcodeFileFont);
  const int row = std::max(BarcodeKindRowOf(font.BarcodeKind), 0);
  SendDlgItemMessageW(window, IDC_BAR_FONT_KIND, CB_SETCURSEL, static_cast<WPARAM>(row), 0);
  CheckPair(window, kSerial.on, kSerial.off, font.Range == 1);
  FillSerialFields(
      window, kSerial,
      {font.Mode, {font.PrintNum, font.Incriment, font.ActiveData, font.NegativeData}});
  EnableSerialFields(window, kSerial, font.Range == 1);
}

void OpenBarDialog(BarDialog& dialog) {
  FontStore& store = *dialog.store;
  SetDlgItemTextW(dialog.window, IDC_HELP_TEXT, kFirstHelpFonts);
  SendDlgItemMessageW(dialog.window, IDC_BAR_FONT_NAME, EM_LIMITTEXT, kFontNameLength - 1, 0);
  const bool change = store.FontEditMode == 1;
  SetWindowTextW(dialog.window,
                 change ? TEXT("バーコードフォントの変更") : TEXT("バーコードフォントの登録"));
  if (!change && store.BarReference) {
    store.WorkFont.FontName[0] = 0;
    dialog.font().BarFontName[0] = 0;
  } else if (!change) {
    StartNewFont(dialog);
  }
  FillKindList(dialog.library, IDC_BAR_FONT_KIND);
  ShowFont(dialog);
}

// The kind decides whether serial numbering can be switched; what is chosen stays.
void FollowKind(const BarDialog& dialog) {
  const BarcodeKindRow* kind = SelectedKind(dialog);
  if (kind == nullptr) return;
  EnableWindow(GetDlgItem(dialog.window, kSerial.on), kind->serial);
  EnableWindow(GetDlgItem(dialog.window, kSerial.off), kind->serial);
}

void EditDetail(BarDialog& dialog) {
  const BarcodeKindRow* kind = SelectedKind(dialog);
  if (kind == nullptr) return;
  BarFontInfo& font = dialog.font();
  uint8_t block[kBarcodeLibrarySize] = {};
  const bool initialise = kind->id != font.BarcodeKind;
  if (!initialise) std::memcpy(block, font.BarcodeParam, sizeof(block));
  if (ShowDetail(dialog.library, block, kind->id, initialise) != 1) return;
  std::memcpy(font.BarcodeParam, block, sizeof(block));
  font.BarcodeKind = kind->id;
}

// Builds the work font from the controls when its name and numbers are good.
bool StoreBarFont(BarDialog& dialog) {
  FontStore& store = *dialog.store;
  HWND window = dialog.window;
  BarFontInfo& font = dialog.font();
  WCHAR name[kFontNameLength];
  GetDlgItemTextW(window, IDC_BAR_FONT_NAME, name, kFontNameLength);
  PutName(font.BarFontName, name);
  const int index = store.FontEditMode == 1 ? store.FontEditIndex : -1;
  if (!CheckFontName(window, store, font.BarFontName, index, kBarcodeFont)) {
    MoveFocus(window, IDC_BAR_FONT_NAME);
    return false;
  }
  if (!CheckSerialFields(dialog.fields(), kSerial)) return false;

  store.WorkFont.FontKind = kBarcodeFont;
  font.FontCategory =
      dialog.checked(IDC_BAR_FONT_STRING_FONT) ? kBarcodeStringFont : kBarcodeFileFont;
  const BarcodeKindRow* kind = SelectedKind(dialog);
  if (kind != nullptr && kind->id != font.BarcodeKind) {
    font.BarcodeKind = kind->id;
    InitParam(dialog.library, font.BarcodeParam, kind->id);
  }
  font.Range = dialog.checked(kSerial.on) ? 1 : 0;
  font.Mode = dialog.checked(kSerial.hexadecimal) ? 1 : 0;
  SerialValues serial = {};
  ReadSerialNumbers(window, kSerial, serial);
  font.PrintNum = serial.numbers[0];
  font.Incriment = serial.numbers[1];
  font.ActiveData = serial.numbers[2];
  font.NegativeData = serial.numbers[3];
  PutName(store.WorkFont.FontName, font.BarFontName);
  return true;
}

void ShowBarHelp(const BarDialog& dialog, int control) {
  ShowHelp(dialog.window, kHelp, control, IDC_HELP_TEXT, kPlain, dialog.library.headDensity);
}

void OnControl(BarDialog& dialog, int control, int notification) {
  if (control == IDC_BAR_FONT_KIND) {
    if (notification == CBN_SETFOCUS || notification == CBN_DROPDOWN) ShowBarHelp(dialog, control);
    FollowKind(dialog);
  } else if (control == IDC_BAR_FONT_NAME || SerialFieldOf(kSerial, control) >= 0) {
    if (notification == EN_SETFOCUS) ShowBarHelp(dialog, control);
    if (notification == EN_CHANGE && control != IDC_BAR_FONT_NAME) {
      OnPlainTyped(dialog.fields(), control);
    }
  } else if (notification == BN_CLICKED) {
    ShowBarHelp(dialog, control);
    if (control == kSerial.on || control == kSerial.off) {
      EnableSerialFields(dialog.window, kSerial, control == kSerial.on);
    }
    if (control == IDC_BAR_FONT_DETAIL) EditDetail(dialog);
  }
}

INT_PTR CALLBACK BarDialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    auto* opened = reinterpret_cast<BarDialog*>(lParam);
    opened->window = window;
    opened->library.dialog = window;
    SetWindowLongPtrW(window, DWLP_USER, lParam);
    OpenBarDialog(*opened);
    return TRUE;
  }
  auto* dialog = reinterpret_cast<BarDialog*>(GetWindowLongPtrW(window, DWLP_USER));
  if (dialog == nullptr) return FALSE;
  if (message == WM_CLOSE) {
    EndDialog(window, kCancelled);
    return TRUE;
  }
  if (message != WM_COMMAND) return FALSE;
  const int control = LOWORD(wParam);
  if (control == IDOK) {
    if (StoreBarFont(*dialog)) EndDialog(window, kConfirmed);
    return TRUE;
  }
  if (control == IDCANCEL) {
    EndDialog(window, kCancelled);
    return TRUE;
  }
  OnControl(*dialog, control, HIWORD(wParam));
  return FALSE;
}

}  // namespace

INT_PTR ShowBarDialog(HWND owner, FontStore& store, HANDLE printer, const WCHAR* printerName,
                      uint16_t headDensity) {
  BarDialog dialog = {};
  dialog.store = &store;
  dialog.library = {nullptr, printer, printerName, headDensity};
  return DialogBoxParamW(ModuleInstance(), MAKEINTRESOURCEW(IDD_BAR_FONT), owner, BarDialogProc,
                         reinterpret_cast<LPARAM>(&dialog));
}

}  // namespace kestrel
