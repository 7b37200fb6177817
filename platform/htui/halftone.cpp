// The two dialogs of the halftone library: a row for each member of COLORADJUSTMENT and DEVHTINFO.
#include <windows.h>
#include <winddi.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <limits>

#include "platform/user32/numbers.h"
#include "platform/user32/window.h"

namespace platform::halftone {
namespace {

constexpr LONG kInvalidArgument = -1;
constexpr LONG kNoDialog = -2;

constexpr int kFirstField = 2101;  // the edit or list of the first row, its label 100 above
constexpr int kResetButton = 2400;

using Choices = std::vector<std::u16string>;

struct Row {
  const char16_t* label;
  int value, minimum, maximum;
  int standard;  // set by the reset button
  bool enabled;
  Choices choices;  // one for each value; empty: a number is typed
  std::function<void(int)> store;
};

struct Form : WindowState {
  std::vector<Row> rows;
  bool confirmed = false;
};

template <typename Field>
Row Number(const char16_t* label, Field& field, int minimum, int maximum, int standard,
           bool enabled = true, Choices choices = {}) {
  constexpr int64_t kMost = std::numeric_limits<int>::max();
  return {label,
          static_cast<int>(std::min<int64_t>(field, kMost)),
          minimum,
          maximum,
          standard,
          enabled,
          std::move(choices),
          [&field](int value) { field = static_cast<Field>(value); }};
}

Row Flag(const char16_t* label, WORD& flags, WORD flag) {
  return {label, (flags & flag) != 0, 0, 1, 0, true, {u"無し", u"有り"}, [&flags, flag](int value) {
            flags = static_cast<WORD>(value != 0 ? flags | flag : flags & ~flag);
          }};
}

int Shown(const Row& row, int value) {
  return row.choices.empty() ? value : std::clamp(value, row.minimum, row.maximum);
}

void Show(HWND window, const Row& row, int id, int value) {
  if (row.choices.empty())
    SetDlgItemTextW(window, id, DecimalText(value).c_str());
  else
    SendDlgItemMessageW(window, id, CB_SETCURSEL, static_cast<WPARAM>(Shown(row, value)), 0);
}

// Returns the value of a field, clamped to its bounds. An unchanged field leaves a stored value
// outside the bounds; so does a text that is not a number.
int Read(HWND window, const Row& row, int id) {
  const WindowPtr field = FindWindowOf(GetDlgItem(window, id));
  const auto value = row.choices.empty() ? ReadDecimal(field->text) : field->list.selected;
  if (!value || *value == Shown(row, row.value)) return row.value;
  return static_cast<int>(std::clamp<int64_t>(*value, row.minimum, row.maximum));
}

void Command(HWND window, Form& form, int id, UINT code) {
  const auto count = static_cast<int>(form.rows.size());
  const auto row = [&](int i) -> Row& { return form.rows[static_cast<size_t>(i)]; };
  if (id == kResetButton) {
    for (int i = 0; i < count; ++i)
      if (row(i).enabled) Show(window, row(i), kFirstField + i, row(i).standard);
  } else if (id == IDOK || id == IDCANCEL) {
    for (int i = 0; id == IDOK && i < count; ++i) {
      const int value = Read(window, row(i), kFirstField + i);
      if (value != row(i).value) row(i).store(value);
    }
    EndModal(window, id);
  } else if (code == EN_KILLFOCUS && id >= kFirstField && id < kFirstField + count) {
    Show(window, row(id - kFirstField), id, Read(window, row(id - kFirstField), id));
  }
}

INT_PTR CALLBACK FormProc(HWND window, UINT message, WPARAM wParam, LPARAM) {
  const auto found = FindWindowOf(window);
  auto* form = found ? StateOf<Form>(*found) : nullptr;
  if (form == nullptr) return FALSE;
  if (message == WM_CLOSE) return EndModal(window, IDCANCEL);
  if (message == WM_COMMAND) Command(window, *form, LOWORD(wParam), HIWORD(wParam));
  return message == WM_COMMAND;
}

std::vector<ControlRequest> PartsOf(const std::vector<Row>& rows, bool readOnly) {
  const DWORD locked = readOnly ? WS_DISABLED : 0;
  std::vector<ControlRequest> parts;
  int y = 12;
  int id = kFirstField;
  for (const Row& row : rows) {
    const DWORD style = WS_TABSTOP | (row.enabled ? locked : WS_DISABLED);
    parts.push_back(MakeControl(u"static", id + 100, row.label, SS_LEFT, 12, y + 3, 150, 14));
    parts.push_back(MakeControl(row.choices.empty() ? u"edit" : u"combobox", id++, u"", style, 170,
                                y, row.choices.empty() ? 60 : 130, 20));
    y += 26;
  }
  y += 8;
  parts.push_back(
      MakeControl(u"button", kResetButton, u"標準に戻す(&E)", WS_TABSTOP | locked, 12, y, 110, 22));
  parts.push_back(
      MakeControl(u"button", IDOK, u"OK", BS_DEFPUSHBUTTON | WS_TABSTOP | locked, 136, y, 80, 22));
  parts.push_back(MakeControl(u"button", IDCANCEL, u"ｷｬﾝｾﾙ", WS_TABSTOP, 222, y, 80, 22));
  return parts;
}

// Shows the rows in a modal dialog above the active window. Returns true when the user confirmed,
// nullopt when the dialog cannot open.
std::optional<bool> ShowForm(std::u16string title, std::vector<Row> rows, bool readOnly) {
  TopWindowRequest top;
  top.title = std::move(title);
  top.width = 314;
  top.controls = PartsOf(rows, readOnly);
  top.height = top.controls.back().rect.bottom + 12;
  top.owner = ActiveTop();
  top.proc = FormProc;
  auto state = std::make_unique<Form>();
  state->rows = std::move(rows);
  const Form& form = *state;
  top.state = std::move(state);
  const HWND window = CreateTopWindow(std::move(top));
  if (window == nullptr) return std::nullopt;
  int id = kFirstField;
  for (const Row& row : form.rows) {
    FindWindowOf(GetDlgItem(window, id))->list.texts = row.choices;
    Show(window, row, id++, row.value);
  }
  return RunModal(window) == IDOK;
}

std::u16string TitleFor(LPCWSTR name, std::u16string_view what) {
  std::u16string title = name ? name : u"";
  if (!title.empty()) title += u" - ";
  return title += what;
}

std::vector<Row> RowsOf(COLORADJUSTMENT& of, bool colour) {
  const auto adjustment = [](const char16_t* label, SHORT& field, bool enabled) {
    return Number(label, field, COLOR_ADJ_MIN, COLOR_ADJ_MAX, 0, enabled);
  };
  const auto gamma = [](const char16_t* label, WORD& field) {
    return Number(label, field, RGB_GAMMA_MIN, RGB_GAMMA_MAX, 10000);
  };
  return {
      adjustment(u"ｺﾝﾄﾗｽﾄ(&C):", of.caContrast, true),
      adjustment(u"明るさ(&B):", of.caBrightness, true),
      adjustment(u"色の濃さ(&S):", of.caColorfulness, colour),
      adjustment(u"色合い(&T):", of.caRedGreenTint, colour),
      gamma(u"ｶﾞﾝﾏ補正 赤(&R):", of.caRedGamma),
      gamma(u"ｶﾞﾝﾏ補正 緑(&G):", of.caGreenGamma),
      gamma(u"ｶﾞﾝﾏ補正 青(&U):", of.caBlueGamma),
      Number(u"基準黒(&K):", of.caReferenceBlack, REFERENCE_BLACK_MIN, REFERENCE_BLACK_MAX, 0),
      Number(u"基準白(&W):", of.caReferenceWhite, REFERENCE_WHITE_MIN, REFERENCE_WHITE_MAX, 10000),
      Number(u"光源(&I):", of.caIlluminantIndex, 0, ILLUMINANT_MAX_INDEX, 0, true,
             {u"標準", u"A (電球)", u"B (正午の太陽光)", u"C (北窓の光)", u"D50", u"D55",
              u"D65 (昼光)", u"D75", u"F2 (蛍光灯)"}),
      Flag(u"ﾈｶﾞ(&N):", of.caFlags, CA_NEGATIVE),
      Flag(u"ﾛｸﾞ ﾌｨﾙﾀ(&L):", of.caFlags, CA_LOG_FILTER)};
}

// Sizes 2 x 2 to 16 x 16, each plain and enhanced, and the further patterns.
Choices Patterns() {
  Choices texts;
  for (int side = 2; side <= 16; side += 2)
    for (const auto* format : {u"%d x %d", u"%d x %d (拡張)"}) {
      WCHAR text[32];
      wsprintfW(text, format, side, side);
      texts.emplace_back(text);
    }
  texts.insert(texts.end(), {u"ｽｰﾊﾟｰｾﾙ", u"ｽｰﾊﾟｰｾﾙ (拡張)", u"ﾕｰｻﾞｰ定義"});
  return texts;
}

// The dyes of a monochrome device, the only kind here, are shown but cannot be changed.
std::vector<Row> RowsOf(DEVHTINFO& of, const DEVHTADJDATA& device) {
  const DEVHTINFO& standard = *device.pDefHTInfo;
  const auto number = [](DWORD value) { return static_cast<int>(std::min<DWORD>(value, 32767)); };
  std::vector<Row> rows = {
      Number(u"ﾊﾟﾀｰﾝ(&P):", of.HTPatternSize, 0, HT_PATSIZE_MAX_INDEX,
             number(standard.HTPatternSize), true, Patterns()),
      Number(u"ﾋﾟｸｾﾙ密度 (0=装置)(&D):", of.DevPelsDPI, 0,
             number(std::max(device.DeviceXDPI, device.DeviceYDPI)), number(standard.DevPelsDPI))};
  const auto add = [&](const char16_t* label, LDECI4 COLORINFO::*field, bool gamma) {
    rows.push_back(Number(label, of.ColorInfo.*field, gamma ? RGB_GAMMA_MIN : 0,
                          gamma ? RGB_GAMMA_MAX : 10000, standard.ColorInfo.*field, gamma));
  };
  add(u"ｶﾞﾝﾏ 赤(&R):", &COLORINFO::RedGamma, true);
  add(u"ｶﾞﾝﾏ 緑(&G):", &COLORINFO::GreenGamma, true);
  add(u"ｶﾞﾝﾏ 青(&B):", &COLORINFO::BlueGamma, true);
  add(u"ｼｱﾝ中のﾏｾﾞﾝﾀ:", &COLORINFO::MagentaInCyanDye, false);
  add(u"ｼｱﾝ中のｲｴﾛｰ:", &COLORINFO::YellowInCyanDye, false);
  add(u"ﾏｾﾞﾝﾀ中のｼｱﾝ:", &COLORINFO::CyanInMagentaDye, false);
  add(u"ﾏｾﾞﾝﾀ中のｲｴﾛｰ:", &COLORINFO::YellowInMagentaDye, false);
  add(u"ｲｴﾛｰ中のｼｱﾝ:", &COLORINFO::CyanInYellowDye, false);
  add(u"ｲｴﾛｰ中のﾏｾﾞﾝﾀ:", &COLORINFO::MagentaInYellowDye, false);
  return rows;
}

// Stores a confirmed change. Returns 1 when the record changed, 0 when not, kNoDialog when there
// was no dialog.
template <typename Record>
LONG StoreResult(std::optional<bool> confirmed, const Record& edited, Record* record) {
  if (!confirmed) return kNoDialog;
  if (!*confirmed || std::memcmp(&edited, record, sizeof edited) == 0) return 0;
  *record = edited;
  return 1;
}

}  // namespace

}  // namespace platform::halftone

using namespace platform::halftone;

// A wrong caSize is accepted and corrected when the user confirms.
LONG APIENTRY HTUI_ColorAdjustmentW(LPWSTR callerTitle, HANDLE, LPWSTR, COLORADJUSTMENT* adjustment,
                                    BOOL showMonochromeOnly, BOOL updatePermission) {
  if (adjustment == nullptr) return kInvalidArgument;
  COLORADJUSTMENT edited = *adjustment;
  edited.caSize = sizeof edited;
  return StoreResult(ShowForm(TitleFor(callerTitle, u"ｶﾗｰ調整"),
                              RowsOf(edited, showMonochromeOnly == FALSE), !updatePermission),
                     edited, adjustment);
}

// Without an adjusted description, shows the default one read-only.
LONG APIENTRY HTUI_DeviceColorAdjustmentW(LPWSTR deviceName, PDEVHTADJDATA device) {
  if (device == nullptr || device->pDefHTInfo == nullptr) return kInvalidArgument;
  DEVHTINFO* target = device->pAdjHTInfo;
  DEVHTINFO edited = target != nullptr ? *target : *device->pDefHTInfo;
  const auto confirmed =
      ShowForm(TitleFor(deviceName, u"ﾊｰﾌﾄｰﾝ調整"), RowsOf(edited, *device), target == nullptr);
  return StoreResult(confirmed, edited, target != nullptr ? target : &edited);
}
