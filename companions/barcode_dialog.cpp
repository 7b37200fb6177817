#include "companions/barcode_dialog.h"

#include <windows.h>
#include <commctrl.h>

#include <algorithm>
#include <cstring>

#include "companions/template_builder.h"
#include "paper/fields/measured_value.h"

namespace companions {
namespace {

constexpr UINT kCodePage = 932;

// Controls by the index of their field.
constexpr int kFirstControl = 1000;
constexpr int kFirstSpin = 1100;
constexpr int kFirstRange = 1200;
constexpr int kFirstLabel = 1300;

constexpr int kRowHeight = 17;
constexpr int kWidth = 250;
constexpr int kTextCapacity = 64;

struct Session {
  const BarcodeKind& kind;
  int dpi;
  std::span<BYTE> block;
  int unit;  // that the measures are shown in
};

struct Range {
  int min, max;
};

int ControlId(std::size_t field) { return kFirstControl + static_cast<int>(field); }

// A unit that no choice names counts as dots.
uint16_t KnownUnit(uint16_t unit) {
  constexpr uint16_t kDots = kestrel::kDot;
  return std::min(unit, kDots);
}

// The bounds of a number, or of a measure in the unit shown.
Range RangeOf(const Field& field, const Session& session) {
  if (field.kind != FieldKind::kMeasure) return {field.min, field.max};
  return {kestrel::ConvertMeasure(field.min, kestrel::kDot, session.unit, session.dpi),
          kestrel::ConvertMeasure(field.max, kestrel::kDot, session.unit, session.dpi)};
}

int UnitOf(const Field& field, const Session& session) {
  return field.kind == FieldKind::kMeasure ? session.unit : kestrel::kPlain;
}

bool IsNumeric(const Field& field) {
  return field.kind == FieldKind::kNumber || field.kind == FieldKind::kMeasure;
}

bool IsList(const Field& field) {
  return field.kind == FieldKind::kChoice || field.kind == FieldKind::kUnit;
}

// ---- the template ----

void AddRow(TemplateBuilder& dialog, const Field& field, std::size_t index) {
  const int i = static_cast<int>(index);
  const int y = 8 + i * kRowHeight;
  dialog.Label(field.label, kFirstLabel + i, {10, y + 2, 84, 8});
  if (IsList(field)) {
    dialog.DropDown(kFirstControl + i, {98, y, 140, 120});
  } else if (field.kind == FieldKind::kText) {
    dialog.Edit(kFirstControl + i, {98, y, 140, 12}, 0);
  } else if (field.kind == FieldKind::kFixed) {
    dialog.Edit(kFirstControl + i, {98, y, 50, 12}, ES_READONLY | WS_DISABLED);
  } else {
    const DWORD buddy = field.kind == FieldKind::kNumber ? UDS_SETBUDDYINT : 0;
    dialog.Edit(kFirstControl + i, {98, y, 50, 12}, 0);
    dialog.Spin(kFirstSpin + i, {148, y, 9, 12}, buddy);
    dialog.Label(TEXT(""), kFirstRange + i, {162, y + 2, 80, 8});
  }
}

// ---- showing ----

void ShowRange(HWND window, const Field& field, std::size_t index, const Session& session) {
  const auto [min, max] = RangeOf(field, session);
  WCHAR from[kestrel::kMeasureTextLength], to[kestrel::kMeasureTextLength], text[kTextCapacity];
  kestrel::FormatMeasure(from, min, UnitOf(field, session));
  kestrel::FormatMeasure(to, max, UnitOf(field, session));
  wsprintfW(text, TEXT("%s ～ %s %s"), from, to, kestrel::UnitName(UnitOf(field, session)));
  SetDlgItemTextW(window, kFirstRange + static_cast<int>(index), text);
}

// The spin follows the field's range; the edit shows the value with the decimals of its unit, also
// one outside the range.
void ShowNumber(HWND window, const Field& field, std::size_t index, int value,
                const Session& session) {
  const int spin = kFirstSpin + static_cast<int>(index);
  const auto [min, max] = RangeOf(field, session);
  SendDlgItemMessageW(window, spin, UDM_SETRANGE32, static_cast<WPARAM>(min), max);
  SendDlgItemMessageW(window, spin, UDM_SETPOS32, 0, value);
  WCHAR text[kestrel::kMeasureTextLength];
  kestrel::FormatMeasure(text, value, UnitOf(field, session));
  SetDlgItemTextW(window, ControlId(index), text);
  ShowRange(window, field, index, session);
}

void ShowChoices(HWND window, const Field& field, std::size_t index, uint16_t value) {
  WPARAM selected = 0;
  for (std::size_t i = 0; i < field.choices.size(); ++i) {
    SendDlgItemMessageW(window, ControlId(index), CB_ADDSTRING, 0,
                        reinterpret_cast<LPARAM>(field.choices[i].text));
    if (field.choices[i].value == value) selected = i;
  }
  SendDlgItemMessageW(window, ControlId(index), CB_SETCURSEL, selected, 0);
}

void ShowText(HWND window, const Field& field, std::size_t index, const Session& session) {
  char bytes[kBlockSize] = {};
  std::memcpy(bytes, session.block.data() + field.offset, field.max);
  WCHAR text[kTextCapacity] = {};
  MultiByteToWideChar(kCodePage, 0, bytes, -1, text, kTextCapacity);
  SendDlgItemMessageW(window, ControlId(index), EM_LIMITTEXT, field.max, 0);
  SetDlgItemTextW(window, ControlId(index), text);
}

void ShowField(HWND window, std::size_t index, const Session& session) {
  const Field& field = session.kind.fields[index];
  if (field.kind == FieldKind::kText) {
    ShowText(window, field, index, session);
    return;
  }
  const uint16_t value = ReadWord(session.block, field.offset);
  if (IsList(field)) {
    ShowChoices(window, field, index, field.kind == FieldKind::kUnit ? KnownUnit(value) : value);
  } else if (field.kind == FieldKind::kFixed) {
    SetDlgItemInt(window, ControlId(index), session.kind.id, FALSE);
  } else {
    SendDlgItemMessageW(window, kFirstSpin + static_cast<int>(index), UDM_SETBUDDY,
                        reinterpret_cast<WPARAM>(GetDlgItem(window, ControlId(index))), 0);
    SendDlgItemMessageW(window, ControlId(index), EM_LIMITTEXT, 7, 0);
    ShowNumber(window, field, index, value, session);
  }
}

// ---- reading ----

// The field's number in the unit shown; false when the text is none, or one that no block holds.
bool ReadNumber(HWND window, const Field& field, std::size_t index, const Session& session,
                int& value) {
  WCHAR text[kTextCapacity];
  GetDlgItemTextW(window, ControlId(index), text, kTextCapacity);
  const int decimals = kestrel::DecimalsOf(UnitOf(field, session));
  constexpr int kTooLarge = 0x10000;
  bool digit = false, point = false;
  int whole = 0;
  for (const WCHAR* c = text; *c; ++c) {
    if (*c >= TEXT('0') && *c <= TEXT('9')) {
      digit = true;
      if (!point) whole = std::min(whole * 10 + (*c - TEXT('0')), kTooLarge);
    } else if (*c != TEXT('.') || point || decimals == 0) {
      return false;
    } else {
      point = true;
    }
  }
  if (!digit || whole == kTooLarge) return false;
  value = kestrel::ParseMeasure(text, decimals);
  return true;
}

void Refuse(HWND window, std::size_t index, const WCHAR* text) {
  WCHAR caption[kTextCapacity];
  GetWindowTextW(window, caption, kTextCapacity);
  MessageBoxW(window, text, caption, MB_OK | MB_ICONEXCLAMATION);
  SetFocus(GetDlgItem(window, ControlId(index)));
  SendDlgItemMessageW(window, ControlId(index), EM_SETSEL, 0, -1);
}

void RefuseNumber(HWND window, std::size_t index, const Session& session) {
  const Field& field = session.kind.fields[index];
  const int unit = UnitOf(field, session);
  const auto [min, max] = RangeOf(field, session);
  WCHAR from[kestrel::kMeasureTextLength], to[kestrel::kMeasureTextLength], text[3 * kTextCapacity];
  kestrel::FormatMeasure(from, min, unit);
  kestrel::FormatMeasure(to, max, unit);
  wsprintfW(text, TEXT("%s\n%s%s から %s%s の範囲で入力して下さい。"), field.label, from,
            kestrel::UnitName(unit), to, kestrel::UnitName(unit));
  Refuse(window, index, text);
}

bool TakeNumber(HWND window, std::size_t index, const Session& session, std::span<BYTE> block) {
  const Field& field = session.kind.fields[index];
  const auto [min, max] = RangeOf(field, session);
  int value = 0;
  if (!ReadNumber(window, field, index, session, value) || value < min || value > max) {
    RefuseNumber(window, index, session);
    return false;
  }
  WriteWord(block, field.offset, static_cast<uint16_t>(value));
  return true;
}

bool TakeText(HWND window, std::size_t index, const Session& session, std::span<BYTE> block) {
  const Field& field = session.kind.fields[index];
  WCHAR text[kTextCapacity], message[3 * kTextCapacity];
  const int units =
      static_cast<int>(GetDlgItemTextW(window, ControlId(index), text, kTextCapacity));
  char bytes[2 * kTextCapacity] = {};
  BOOL unknown = FALSE;
  const int size = units == 0 ? 0
                              : WideCharToMultiByte(kCodePage, WC_NO_BEST_FIT_CHARS, text, units,
                                                    bytes, sizeof bytes, nullptr, &unknown);
  if (unknown) {
    wsprintfW(message, TEXT("%s\n不正な文字が使用されています。"), field.label);
    Refuse(window, index, message);
    return false;
  }
  if (size > field.max) {
    wsprintfW(message, TEXT("%s\n%d バイト以内で入力して下さい。"), field.label,
              static_cast<int>(field.max));
    Refuse(window, index, message);
    return false;
  }
  std::fill_n(block.data() + field.offset, field.max + (field.terminated ? 1 : 0), BYTE{0});
  std::memcpy(block.data() + field.offset, bytes, static_cast<std::size_t>(size));
  return true;
}

uint16_t SelectedValue(HWND window, const Field& field, std::size_t index) {
  const LRESULT selected = SendDlgItemMessageW(window, ControlId(index), CB_GETCURSEL, 0, 0);
  const std::size_t last = field.choices.size() - 1;
  return field.choices[std::min(static_cast<std::size_t>(std::max<LRESULT>(selected, 0)), last)]
      .value;
}

// Takes every field into the session's block; the first that is refused leaves the block as it was.
bool TakeAll(HWND window, const Session& session) {
  std::array<BYTE, kBlockSize> block;
  std::ranges::copy(session.block, block.begin());
  for (std::size_t i = 0; i < session.kind.fields.size(); ++i) {
    const Field& field = session.kind.fields[i];
    if (IsNumeric(field)) {
      if (!TakeNumber(window, i, session, block)) return false;
    } else if (field.kind == FieldKind::kText) {
      if (!TakeText(window, i, session, block)) return false;
    } else {
      const uint16_t value = IsList(field) ? SelectedValue(window, field, i) : session.kind.id;
      WriteWord(block, field.offset, value);
    }
  }
  std::ranges::copy(block, session.block.begin());
  return true;
}

// ---- reacting ----

// Another unit: every measure keeps its length. A text that is no number counts as 0 and is refused
// later.
void ChangeUnit(HWND window, Session& session, int unit) {
  const Session before = session;
  session.unit = unit;
  for (std::size_t i = 0; i < session.kind.fields.size(); ++i) {
    const Field& field = session.kind.fields[i];
    if (field.kind != FieldKind::kMeasure) continue;
    int value = 0;
    ReadNumber(window, field, i, before, value);
    ShowNumber(window, field, i, kestrel::ConvertMeasure(value, before.unit, unit, session.dpi),
               session);
  }
}

void OnCommand(HWND window, Session& session, WPARAM wParam) {
  const int id = LOWORD(wParam);
  const UINT code = HIWORD(wParam);
  if (id == IDCANCEL) {
    EndDialog(window, IDCANCEL);
  } else if (id == IDOK) {
    if (TakeAll(window, session)) EndDialog(window, IDOK);
  } else if (id >= kFirstControl &&
             id < kFirstControl + static_cast<int>(session.kind.fields.size())) {
    const auto index = static_cast<std::size_t>(id - kFirstControl);
    const Field& field = session.kind.fields[index];
    if (field.kind == FieldKind::kUnit && code == CBN_SELCHANGE) {
      const int unit = SelectedValue(window, field, index);
      if (unit != session.unit) ChangeUnit(window, session, unit);
    } else if (field.kind == FieldKind::kMeasure && code == EN_CHANGE) {
      int value = 0;  // so that the arrows go on from what was typed
      if (ReadNumber(window, field, index, session, value))
        SendDlgItemMessageW(window, kFirstSpin + static_cast<int>(index), UDM_SETPOS32, 0, value);
    }
  }
}

// The arrows of a measure do not write its edit, which has decimals.
void OnSpin(HWND window, const Session& session, HWND spin) {
  const int index = GetDlgCtrlID(spin) - kFirstSpin;
  if (index < 0 || index >= static_cast<int>(session.kind.fields.size())) return;
  const Field& field = session.kind.fields[static_cast<std::size_t>(index)];
  if (field.kind != FieldKind::kMeasure) return;
  WCHAR text[kestrel::kMeasureTextLength];
  kestrel::FormatMeasure(text, static_cast<int>(SendMessageW(spin, UDM_GETPOS32, 0, 0)),
                         session.unit);
  SetDlgItemTextW(window, kFirstControl + index, text);
}

INT_PTR CALLBACK DetailDialog(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrW(window, DWLP_USER, lParam);
    const auto& session = *reinterpret_cast<Session*>(lParam);
    for (std::size_t i = 0; i < session.kind.fields.size(); ++i) ShowField(window, i, session);
    return TRUE;
  }
  auto* session = reinterpret_cast<Session*>(GetWindowLongPtrW(window, DWLP_USER));
  if (!session) return FALSE;
  if (message == WM_COMMAND) {
    OnCommand(window, *session, wParam);
  } else if (message == WM_VSCROLL) {
    OnSpin(window, *session, reinterpret_cast<HWND>(lParam));
  } else if (message == WM_CLOSE) {
    EndDialog(window, IDCANCEL);
  } else {
    return FALSE;
  }
  return TRUE;
}

}  // namespace

bool EditBarcodeDetail(const BarcodeKind& kind, const BarcodeLibInfo& info, std::span<BYTE> block,
                       HWND owner) {
  WCHAR caption[kTextCapacity];
  wsprintfW(caption, TEXT("%sの詳細設定"), kind.name);
  const int rows = static_cast<int>(kind.fields.size());
  const int buttons = 14 + rows * kRowHeight;
  TemplateBuilder dialog(caption, kWidth, buttons + 22);
  for (std::size_t i = 0; i < kind.fields.size(); ++i) AddRow(dialog, kind.fields[i], i);
  dialog.Button(TEXT("OK"), IDOK, {70, buttons, 52, 14}, true);
  dialog.Button(TEXT("ｷｬﾝｾﾙ"), IDCANCEL, {128, buttons, 52, 14}, false);
  if (!dialog.Get()) return false;
  Session session{kind, DensityOf(info), block, KnownUnit(ReadWord(block, kUnitOffset))};
  return DialogBoxIndirectParamW(nullptr, dialog.Get(), owner, DetailDialog,
                                 reinterpret_cast<LPARAM>(&session)) == IDOK;
}

}  // namespace companions
