// The detail dialog of a barcode kind.
#include <windows.h>
#include <commctrl.h>

#include <algorithm>
#include <string>
#include <utility>

#include "companions/barcode_parameters.h"
#include "companions/template_builder.h"
#include "paper/fields/measured_value.h"
#include "platform/machine/text.h"

namespace companions {
namespace {

// Control ids are these plus the row of the field.
constexpr int kFirstControl = 1000;
constexpr int kFirstSpin = 1100;
constexpr int kFirstRange = 1200;

constexpr int kRowHeight = 17;
constexpr int kTextCapacity = 64;
using Text = WCHAR[kTextCapacity];

bool IsList(const Field& field) { return !field.choices.empty(); }

// The dialog that edits a block: one row for each field of its kind.
class Detail {
 public:
  Detail(const BarcodeKind& kind, int dpi, std::span<BYTE> block)
      : kind_(kind),
        dpi_(dpi),
        block_(block),
        unit_(std::min<int>(ReadWord(block, kUnitField.offset), kestrel::kDot)) {}

  bool Run(HWND owner);

 private:
  static INT_PTR CALLBACK Proc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  int Count() const { return 2 + static_cast<int>(kind_.own.size()); }
  const Field& At(int row) const {
    if (row < 2) return row == 0 ? kRotateField : kUnitField;
    return kind_.own[static_cast<std::size_t>(row - 2)];
  }
  LRESULT Send(int id, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return SendDlgItemMessageW(window_, id, message, wParam, lParam);
  }
  // Sends a message without wParam.
  LRESULT SendParam(int id, UINT message, LPARAM lParam) const {
    return Send(id, message, {}, lParam);
  }

  void Show(int row);
  void ShowNumber(int row, int value);
  void OnCommand(int id, UINT code);
  void ChangeUnit(int unit);
  void OnSpin(int spin);

  int UnitOf(int row) const {
    return At(row).kind == FieldKind::kMeasure ? unit_ : kestrel::kPlain;
  }
  std::pair<int, int> RangeOf(int row) const;  // minimum and maximum
  bool ReadNumber(int row, int& value) const;
  int Selected(int row) const;
  // Shows a message about a row and moves the focus to it. The format starts with the row's label;
  // parts are its other arguments. Returns false.
  template <typename... Parts>
  bool Reject(int row, const WCHAR* format, Parts... parts) const;
  bool Store(int row, std::span<BYTE> block) const;
  bool StoreText(int row, std::span<BYTE> block) const;
  bool StoreAll();

  const BarcodeKind& kind_;
  int dpi_;
  std::span<BYTE> block_;
  int unit_;  // unit in which the dialog shows measures; dots when the block's unit is unknown
  HWND window_ = nullptr;
};

bool Detail::Run(HWND owner) {
  Text caption;
  wsprintfW(caption, u"%sの詳細設定", kind_.name);
  const int bottom = 14 + Count() * kRowHeight;
  TemplateBuilder form(caption, 250, bottom + 22);
  for (int row = 0; row < Count(); ++row) {
    const Field& field = At(row);
    const int y = 8 + row * kRowHeight;
    const bool wide = field.kind == FieldKind::kText;
    form.Add(u"static", WS_GROUP, field.label, -1, {10, y + 2, 84, 8});
    if (IsList(field)) {
      form.Add(u"combobox", CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP, u"", kFirstControl + row,
               {98, y, 140, 120});
      continue;
    }
    form.Add(u"edit", ES_AUTOHSCROLL | WS_BORDER | WS_TABSTOP, u"", kFirstControl + row,
             {98, y, wide ? 140 : 50, 12});
    if (wide) continue;
    const DWORD writes = field.kind == FieldKind::kNumber ? UDS_SETBUDDYINT : 0;
    form.Add(UPDOWN_CLASSW, UDS_ALIGNRIGHT | UDS_ARROWKEYS | UDS_NOTHOUSANDS | writes, u"",
             kFirstSpin + row, {148, y, 9, 12});
    form.Add(u"static", SS_NOPREFIX, u"", kFirstRange + row, {162, y + 2, 80, 8});
  }
  form.Add(u"button", BS_DEFPUSHBUTTON | WS_TABSTOP, u"OK", IDOK, {70, bottom, 52, 14});
  form.Add(u"button", WS_TABSTOP, u"ｷｬﾝｾﾙ", IDCANCEL, {128, bottom, 52, 14});
  return DialogBoxIndirectParamW(nullptr, form.Get(), owner, Proc,
                                 reinterpret_cast<LPARAM>(this)) == IDOK;
}

// Returns the limits of a number, or of a measure in the shown unit.
std::pair<int, int> Detail::RangeOf(int row) const {
  const Field& field = At(row);
  if (field.kind != FieldKind::kMeasure) return {field.min, field.max};
  return {kestrel::ConvertMeasure(field.min, kestrel::kDot, unit_, dpi_),
          kestrel::ConvertMeasure(field.max, kestrel::kDot, unit_, dpi_)};
}

// ---- showing ----

// Sets the up-down's range, the range text and the edit, whose change sets the up-down's position.
// The edit shows a value outside the range unchanged.
void Detail::ShowNumber(int row, int value) {
  const auto [min, max] = RangeOf(row);
  Send(kFirstSpin + row, UDM_SETRANGE32, static_cast<WPARAM>(min), max);
  WCHAR text[kestrel::kMeasureTextLength], least[kestrel::kMeasureTextLength];
  kestrel::FormatMeasure(text, value, UnitOf(row));
  SetDlgItemTextW(window_, kFirstControl + row, text);
  kestrel::FormatMeasure(least, min, UnitOf(row));
  kestrel::FormatMeasure(text, max, UnitOf(row));
  const WCHAR* unit = kestrel::UnitName(UnitOf(row));
  Text range;
  wsprintfW(range, u"%s%s ～ %s%s", least, unit, text, unit);
  SetDlgItemTextW(window_, kFirstRange + row, range);
}

void Detail::Show(int row) {
  const Field& field = At(row);
  const int id = kFirstControl + row;
  if (field.kind == FieldKind::kText) {
    const std::string bytes(reinterpret_cast<char*>(block_.data()) + field.offset, field.max);
    Send(id, EM_LIMITTEXT, field.max);
    SetDlgItemTextW(window_, id, platform::FromCp932(bytes.c_str()).c_str());
    return;
  }
  const int stored = ReadWord(block_, field.offset);
  if (!IsList(field)) {
    Send(kFirstSpin + row, UDM_SETBUDDY, reinterpret_cast<WPARAM>(GetDlgItem(window_, id)));
    Send(id, EM_LIMITTEXT, 7);
    ShowNumber(row, stored);
    return;
  }
  const int value = field.kind == FieldKind::kUnit ? unit_ : stored;
  WPARAM selected = 0;
  for (std::size_t i = 0; i < field.choices.size(); ++i) {
    const Choice& choice = field.choices[i];
    Text number;
    wsprintfW(number, u"%d", static_cast<int>(choice.value));
    SendParam(id, CB_ADDSTRING,
              reinterpret_cast<LPARAM>(choice.text != nullptr ? choice.text : number));
    if (choice.value == value) selected = i;
  }
  Send(id, CB_SETCURSEL, selected);
}

// ---- reading ----

// Parses the number of a field in the shown unit, clamped to INT32_MAX. Returns false when the text
// is not a number.
bool Detail::ReadNumber(int row, int& value) const {
  Text text;
  GetDlgItemTextW(window_, kFirstControl + row, text, kTextCapacity);
  const int decimals = kestrel::DecimalsOf(UnitOf(row));
  bool digit = false, point = false;
  for (const WCHAR* c = text; *c; ++c) {
    if (*c >= u'0' && *c <= u'9') {
      digit = true;
    } else if (*c != u'.' || point || decimals == 0) {
      return false;
    } else {
      point = true;
    }
  }
  if (!digit) return false;
  value = kestrel::ParseMeasure(text, decimals);
  return true;
}

int Detail::Selected(int row) const {
  return At(row).choices[static_cast<std::size_t>(Send(kFirstControl + row, CB_GETCURSEL))].value;
}

template <typename... Parts>
bool Detail::Reject(int row, const WCHAR* format, Parts... parts) const {
  Text caption;
  WCHAR message[3 * kTextCapacity];
  GetWindowTextW(window_, caption, kTextCapacity);
  wsprintfW(message, format, At(row).label, parts...);
  MessageBoxW(window_, message, caption, MB_OK | MB_ICONEXCLAMATION);
  SendMessageW(window_, WM_NEXTDLGCTL,
               reinterpret_cast<WPARAM>(GetDlgItem(window_, kFirstControl + row)), TRUE);
  return false;
}

bool Detail::StoreText(int row, std::span<BYTE> block) const {
  const Field& field = At(row);
  Text text;
  GetDlgItemTextW(window_, kFirstControl + row, text, kTextCapacity);
  bool lossless = true;
  const std::string bytes = platform::ToCp932(text, &lossless);
  if (!lossless) return Reject(row, u"%s\n不正な文字が使用されています。");
  if (bytes.size() > field.max)
    return Reject(row, u"%s\n%d バイト以内で入力して下さい。", int{field.max});
  std::fill_n(block.data() + field.offset, field.max + (field.terminated ? 1 : 0), BYTE{0});
  std::ranges::copy(bytes, block.data() + field.offset);
  return true;
}

bool Detail::Store(int row, std::span<BYTE> block) const {
  const Field& field = At(row);
  if (field.kind == FieldKind::kText) return StoreText(row, block);
  int value = 0;
  const auto [min, max] = RangeOf(row);
  if (IsList(field)) {
    value = Selected(row);
  } else if (!ReadNumber(row, value) || value < min || value > max) {
    Text range;
    GetDlgItemTextW(window_, kFirstRange + row, range, kTextCapacity);
    return Reject(row, u"%s\n%s の範囲で入力して下さい。", range);
  }
  WriteWord(block, field.offset, static_cast<uint16_t>(value));
  return true;
}

// Stores every field in the block. Returns false without changing the block when a field is
// invalid.
bool Detail::StoreAll() {
  std::array<BYTE, kBlockSize> copy;
  std::ranges::copy(block_, copy.begin());
  WriteWord(copy, kIdOffset, kind_.id);
  for (int row = 0; row < Count(); ++row)
    if (!Store(row, copy)) return false;
  std::ranges::copy(copy, block_.begin());
  return true;
}

// ---- commands and notifications ----

// Converts every measure to another unit. A text that is not a number counts as 0, which OK
// rejects.
void Detail::ChangeUnit(int unit) {
  const int before = unit_;
  for (int row = 0; row < Count(); ++row) {
    if (At(row).kind != FieldKind::kMeasure) continue;
    int value = 0;
    unit_ = before;
    ReadNumber(row, value);
    unit_ = unit;
    ShowNumber(row, kestrel::ConvertMeasure(value, before, unit, dpi_));
  }
  unit_ = unit;
}

void Detail::OnCommand(int id, UINT code) {
  if (id == IDCANCEL || (id == IDOK && StoreAll())) EndDialog(window_, id);
  const int row = id - kFirstControl;
  if (row < 0 || row >= Count()) return;
  int value = 0;
  if (At(row).kind == FieldKind::kUnit && code == CBN_SELCHANGE) ChangeUnit(Selected(row));
  // The arrows continue from the typed value.
  if (At(row).kind == FieldKind::kMeasure && code == EN_CHANGE && ReadNumber(row, value))
    SendParam(kFirstSpin + row, UDM_SETPOS32, value);
}

// Writes the position of a measure's up-down to its edit, because the up-down cannot format
// decimals.
void Detail::OnSpin(int spin) {
  const int row = spin - kFirstSpin;
  if (At(row).kind != FieldKind::kMeasure) return;
  WCHAR text[kestrel::kMeasureTextLength];
  kestrel::FormatMeasure(text, static_cast<int>(Send(spin, UDM_GETPOS32)), unit_);
  SetDlgItemTextW(window_, kFirstControl + row, text);
}

INT_PTR CALLBACK Detail::Proc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    if (GetWindowLongPtrW(window, DWLP_USER) != 0) return FALSE;  // sent by an application
    SetWindowLongPtrW(window, DWLP_USER, lParam);
  }
  auto* detail = reinterpret_cast<Detail*>(GetWindowLongPtrW(window, DWLP_USER));
  if (detail == nullptr) return FALSE;
  if (message == WM_INITDIALOG) {
    detail->window_ = window;
    for (int row = 0; row < detail->Count(); ++row) detail->Show(row);
  } else if (message == WM_COMMAND || message == WM_CLOSE) {
    detail->OnCommand(message == WM_CLOSE ? IDCANCEL : LOWORD(wParam), HIWORD(wParam));
  } else if (message == WM_VSCROLL) {
    detail->OnSpin(GetDlgCtrlID(reinterpret_cast<HWND>(lParam)));
  } else {
    return FALSE;
  }
  return TRUE;
}

}  // namespace

bool EditBarcodeDetail(const BarcodeKind& kind, const BarcodeLibInfo& info, std::span<BYTE> block,
                       HWND owner) {
  return Detail(kind, DensityOf(info), block).Run(owner);
}

}  // namespace companions
