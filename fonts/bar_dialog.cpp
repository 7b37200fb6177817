#include "fonts/bar_dialog.h"

#include <algorithm>
#include <cstring>

#include "driver/text.h"
#include "fonts/barcode_kinds.h"
#include "fonts/barcode_library.h"
#include "fonts/font_names.h"
#include "fonts/serial_fields.h"
#include "paper/fields/help_text.h"
#include "resources/resource.h"
#include "sheets/dialog_handlers.h"

namespace kestrel {
namespace {

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
    SerialHelp(kSameIssue, IDC_BAR_FONT_PRINT_NUM, IDS_HELP_BAR_FONT_PRINT_NUM),
    SerialHelp(kStep, IDC_BAR_FONT_INCREMENT, IDS_HELP_BAR_FONT_INCREMENT),
    SerialHelp(kActiveDigits, IDC_BAR_FONT_ACTIVE_DIGITS, IDS_HELP_BAR_FONT_ACTIVE_DIGITS),
    SerialHelp(kLowDigits, IDC_BAR_FONT_LOW_DIGITS, IDS_HELP_BAR_FONT_LOW_DIGITS),
};

constexpr NumericField kFields[] = {
    SerialField(kSameIssue, IDC_BAR_FONT_PRINT_NUM, IDC_BAR_FONT_PRINT_NUM_SPIN),
    SerialField(kStep, IDC_BAR_FONT_INCREMENT, IDC_BAR_FONT_INCREMENT_SPIN),
    SerialField(kActiveDigits, IDC_BAR_FONT_ACTIVE_DIGITS, IDC_BAR_FONT_ACTIVE_DIGITS_SPIN),
    SerialField(kLowDigits, IDC_BAR_FONT_LOW_DIGITS, IDC_BAR_FONT_LOW_DIGITS_SPIN),
};

constexpr SerialControls kSerial = {IDC_BAR_FONT_SERIAL_ON, IDC_BAR_FONT_SERIAL_OFF,
                                    IDC_BAR_FONT_HEXADECIMAL, IDC_BAR_FONT_DECIMAL, kFields};

struct BarDialog {
  FontStore& store;
  BarcodeLibrary library;

  BarFontInfo& font() { return store.WorkFont.Bar; }
};

// Returns the table row of the selected kind; null while the list is empty.
const BarcodeKindRow* SelectedKind(HWND window) {
  const LRESULT row = SendDlgItemMessageW(window, IDC_BAR_FONT_KIND, CB_GETCURSEL, 0, 0);
  if (row < 0 || row >= kBarcodeKindCount) return nullptr;
  return &kBarcodeKinds[row];
}

void StartNewFont(BarDialog& dialog) {
  dialog.store.WorkFont = {};
  BarFontInfo& font = dialog.font();
  font.FontCategory = kBarcodeStringFont;
  font.BarcodeKind = kFirstBarcodeKind;
  font.PrintNum = 1;
  font.Incriment = 1;
  font.ActiveData = 1;
  InitParam(dialog.library, font.BarcodeParam, kFirstBarcodeKind);
}

void ShowFont(HWND window, BarFontInfo& font) {
  SetDlgItemTextW(window, IDC_BAR_FONT_NAME, font.BarFontName);
  const bool file = font.FontCategory == kBarcodeFileFont;
  CheckDlgButton(window, IDC_BAR_FONT_FILE_FONT, file ? BST_CHECKED : BST_UNCHECKED);
  CheckDlgButton(window, IDC_BAR_FONT_STRING_FONT, file ? BST_UNCHECKED : BST_CHECKED);
  const int row = std::max(FindBarcodeKindRow(font.BarcodeKind), 0);
  SendDlgItemMessageW(window, IDC_BAR_FONT_KIND, CB_SETCURSEL, static_cast<WPARAM>(row), 0);
  InitSerialFields(window, kSerial, SerialNumberingOf(font));
}

void InitDialog(HWND window, BarDialog& dialog) {
  FontStore& store = dialog.store;
  dialog.library.dialog = window;
  SetDlgItemTextW(window, IDC_HELP_TEXT, kFirstHelpFonts);
  SendDlgItemMessageW(window, IDC_BAR_FONT_NAME, EM_LIMITTEXT, kFontNameLength - 1, 0);
  const bool change = store.FontEditMode == kChangeFont;
  SetWindowTextW(window,
                 change ? TEXT("バーコードフォントの変更") : TEXT("バーコードフォントの登録"));
  if (!change && store.BarReference) {
    CopyText(dialog.font().BarFontName, TEXT(""));
  } else if (!change) {
    StartNewFont(dialog);
  }
  FillKindList(dialog.library, IDC_BAR_FONT_KIND);
  ShowFont(window, dialog.font());
}

// Enables the serial numbering radios if the selected kind supports serial numbering, disables them
// otherwise. Their check state does not change.
void UpdateForKind(HWND window) {
  const BarcodeKindRow* kind = SelectedKind(window);
  if (kind == nullptr) return;
  EnableWindow(GetDlgItem(window, kSerial.on), kind->serial);
  EnableWindow(GetDlgItem(window, kSerial.off), kind->serial);
}

void EditDetail(HWND window, BarDialog& dialog) {
  const BarcodeKindRow* kind = SelectedKind(window);
  if (kind == nullptr) return;
  BarFontInfo& font = dialog.font();
  uint8_t block[kBarcodeLibrarySize] = {};
  // The stored block belongs to the stored kind; any other kind starts with its defaults.
  const bool initialise = kind->id != font.BarcodeKind;
  if (!initialise) std::memcpy(block, font.BarcodeParam, sizeof(block));
  if (ShowDetail(dialog.library, block, kind->id, initialise) != 1) return;
  std::memcpy(font.BarcodeParam, block, sizeof(block));
  font.BarcodeKind = kind->id;
}

// Builds the work font from the controls. Returns false after a message, with the focus on the
// field that failed, when the name or a number is invalid.
bool Accept(HWND window, BarDialog& dialog) {
  WCHAR name[kFontNameLength];
  if (!ReadFontName(window, IDC_BAR_FONT_NAME, dialog.store, kBarcodeFont, name)) return false;
  if (!CheckSerialFields(window, kSerial)) return false;

  BarFontInfo& font = dialog.font();
  dialog.store.WorkFont.FontKind = kBarcodeFont;
  CopyText(dialog.store.WorkFont.FontName, name);
  CopyText(font.BarFontName, name);
  const bool string = IsDlgButtonChecked(window, IDC_BAR_FONT_STRING_FONT) == BST_CHECKED;
  font.FontCategory = string ? kBarcodeStringFont : kBarcodeFileFont;
  const BarcodeKindRow* kind = SelectedKind(window);
  if (kind != nullptr && kind->id != font.BarcodeKind) {
    font.BarcodeKind = kind->id;
    InitParam(dialog.library, font.BarcodeParam, kind->id);
  }
  StoreSerialFields(window, kSerial, SerialNumberingOf(font));
  return true;
}

void OnCommand(HWND window, BarDialog& dialog, int control, int notification) {
  const bool clicked = notification == BN_CLICKED;
  bool showsHelp = clicked;
  if (control == IDC_BAR_FONT_KIND) {
    showsHelp = notification == CBN_SETFOCUS || notification == CBN_DROPDOWN;
    UpdateForKind(window);
  } else if (control == IDC_BAR_FONT_NAME || IsSerialField(kSerial, control)) {
    showsHelp = notification == EN_SETFOCUS;
    if (notification == EN_CHANGE && control != IDC_BAR_FONT_NAME) {
      OnPlainTyped({window, kFields}, control);
    }
  }
  if (showsHelp) {
    ShowHelp(window, kHelp, control, IDC_HELP_TEXT, kPlain, dialog.library.headDensity);
  }
  if (clicked && (control == kSerial.on || control == kSerial.off)) {
    EnableSerialFields(window, kSerial, control == kSerial.on);
  }
  if (clicked && control == IDC_BAR_FONT_DETAIL) EditDetail(window, dialog);
}

constexpr DialogHandlers<BarDialog> kDialog = {
    .templateId = IDD_BAR_FONT, .open = InitDialog, .accept = Accept, .command = OnCommand};

}  // namespace

bool RunBarDialog(HWND owner, FontStore& store, HANDLE printer, const WCHAR* printerName,
                  uint16_t headDensity) {
  BarDialog dialog = {store, {nullptr, printer, printerName, headDensity}};
  return ShowModalDialog(kDialog, owner, dialog) == IDOK;
}

}  // namespace kestrel
