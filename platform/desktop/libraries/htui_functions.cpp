// The halftone library's two dialogs: COLORADJUSTMENT and DEVHTINFO as forms.
#include <windows.h>
#include <winddi.h>

#include <algorithm>
#include <cstring>

#include "platform/desktop/libraries/htui_dialog.h"
#include "platform/system/guard.h"
#include "platform/system/modules.h"

namespace platform::halftone {
namespace {

constexpr LONG kInvalidArgument = -1;
constexpr LONG kNoDialog = -2;

std::u16string TitleFor(LPCWSTR name, std::u16string_view what) {
  std::u16string title = name ? name : u"";
  if (!title.empty()) title += u" - ";
  return title += what;
}

// ---- COLORADJUSTMENT ----

struct AdjustmentRow {
  const char16_t* label;
  int minimum, maximum, standard;
  bool colourOnly;
  // One of the two: gammas and references are unsigned, the others signed.
  WORD COLORADJUSTMENT::*word;
  SHORT COLORADJUSTMENT::*number;
};

constexpr AdjustmentRow kAdjustments[] = {
    {u"ｺﾝﾄﾗｽﾄ(&C):", COLOR_ADJ_MIN, COLOR_ADJ_MAX, 0, false, nullptr, &COLORADJUSTMENT::caContrast},
    {u"明るさ(&B):", COLOR_ADJ_MIN, COLOR_ADJ_MAX, 0, false, nullptr,
     &COLORADJUSTMENT::caBrightness},
    {u"色の濃さ(&S):", COLOR_ADJ_MIN, COLOR_ADJ_MAX, 0, true, nullptr,
     &COLORADJUSTMENT::caColorfulness},
    {u"色合い(&T):", COLOR_ADJ_MIN, COLOR_ADJ_MAX, 0, true, nullptr,
     &COLORADJUSTMENT::caRedGreenTint},
    {u"ｶﾞﾝﾏ補正 赤(&R):", RGB_GAMMA_MIN, RGB_GAMMA_MAX, 10000, false, &COLORADJUSTMENT::caRedGamma,
     nullptr},
    {u"ｶﾞﾝﾏ補正 緑(&G):", RGB_GAMMA_MIN, RGB_GAMMA_MAX, 10000, false,
     &COLORADJUSTMENT::caGreenGamma, nullptr},
    {u"ｶﾞﾝﾏ補正 青(&U):", RGB_GAMMA_MIN, RGB_GAMMA_MAX, 10000, false, &COLORADJUSTMENT::caBlueGamma,
     nullptr},
    {u"基準黒(&K):", REFERENCE_BLACK_MIN, REFERENCE_BLACK_MAX, 0, false,
     &COLORADJUSTMENT::caReferenceBlack, nullptr},
    {u"基準白(&W):", REFERENCE_WHITE_MIN, REFERENCE_WHITE_MAX, 10000, false,
     &COLORADJUSTMENT::caReferenceWhite, nullptr}};

struct FlagRow {
  const char16_t* label;
  WORD flag;
};
constexpr FlagRow kFlags[] = {{u"ﾈｶﾞ(&N)", CA_NEGATIVE}, {u"ﾛｸﾞ ﾌｨﾙﾀ(&L)", CA_LOG_FILTER}};

std::vector<std::u16string> Illuminants() {
  return {u"標準",       u"A (電球)", u"B (正午の太陽光)", u"C (北窓の光)", u"D50", u"D55",
          u"D65 (昼光)", u"D75",      u"F2 (蛍光灯)"};
}

Form FormOf(const COLORADJUSTMENT& adjustment, bool monochrome) {
  Form form;
  for (const AdjustmentRow& row : kAdjustments) {
    const int value = row.word ? adjustment.*row.word : adjustment.*row.number;
    form.sliders.push_back({row.label, row.minimum, row.maximum, value, row.standard,
                            !(row.colourOnly && monochrome)});
  }
  const int illuminant = std::min<int>(adjustment.caIlluminantIndex, ILLUMINANT_MAX_INDEX);
  form.lists.push_back({u"光源(&I):", Illuminants(), illuminant, 0});
  for (const FlagRow& row : kFlags)
    form.boxes.push_back({row.label, (adjustment.caFlags & row.flag) != 0});
  return form;
}

// Only what the user set is taken; a size that is not this structure's is put right.
void Take(const Form& form, COLORADJUSTMENT& adjustment) {
  adjustment.caSize = sizeof adjustment;
  for (size_t i = 0; i < std::size(kAdjustments); ++i) {
    const AdjustmentRow& row = kAdjustments[i];
    const Slider& slider = form.sliders[i];
    if (!slider.touched) continue;
    if (row.word)
      adjustment.*row.word = static_cast<WORD>(slider.value);
    else
      adjustment.*row.number = static_cast<SHORT>(slider.value);
  }
  if (form.lists[0].touched)
    adjustment.caIlluminantIndex = static_cast<WORD>(std::max(0, form.lists[0].selection));
  for (size_t i = 0; i < std::size(kFlags); ++i) {
    if (!form.boxes[i].touched) continue;
    const WORD others = adjustment.caFlags & static_cast<WORD>(~kFlags[i].flag);
    adjustment.caFlags = static_cast<WORD>(others | (form.boxes[i].checked ? kFlags[i].flag : 0));
  }
}

// ---- DEVHTINFO ----

struct DeviceRow {
  const char16_t* label;
  int minimum, maximum;
  bool colourOnly;
  LDECI4 COLORINFO::*value;
};
constexpr DeviceRow kDevice[] = {
    {u"ｶﾞﾝﾏ 赤(&R):", RGB_GAMMA_MIN, RGB_GAMMA_MAX, false, &COLORINFO::RedGamma},
    {u"ｶﾞﾝﾏ 緑(&G):", RGB_GAMMA_MIN, RGB_GAMMA_MAX, false, &COLORINFO::GreenGamma},
    {u"ｶﾞﾝﾏ 青(&B):", RGB_GAMMA_MIN, RGB_GAMMA_MAX, false, &COLORINFO::BlueGamma},
    {u"ｼｱﾝ中のﾏｾﾞﾝﾀ:", 0, 10000, true, &COLORINFO::MagentaInCyanDye},
    {u"ｼｱﾝ中のｲｴﾛｰ:", 0, 10000, true, &COLORINFO::YellowInCyanDye},
    {u"ﾏｾﾞﾝﾀ中のｼｱﾝ:", 0, 10000, true, &COLORINFO::CyanInMagentaDye},
    {u"ﾏｾﾞﾝﾀ中のｲｴﾛｰ:", 0, 10000, true, &COLORINFO::YellowInMagentaDye},
    {u"ｲｴﾛｰ中のｼｱﾝ:", 0, 10000, true, &COLORINFO::CyanInYellowDye},
    {u"ｲｴﾛｰ中のﾏｾﾞﾝﾀ:", 0, 10000, true, &COLORINFO::MagentaInYellowDye}};

// Sizes 2 x 2 to 16 x 16, each plain and enhanced.
std::vector<std::u16string> Patterns() {
  std::vector<std::u16string> texts;
  for (DWORD size = HT_PATSIZE_2x2; size <= HT_PATSIZE_16x16_M; ++size) {
    WCHAR text[32];
    const int side = static_cast<int>(size / 2 + 1) * 2;
    wsprintfW(text, size % 2 ? u"%d x %d (拡張)" : u"%d x %d", side, side);
    texts.emplace_back(text);
  }
  for (const auto* text : {u"ｽｰﾊﾟｰｾﾙ", u"ｽｰﾊﾟｰｾﾙ (拡張)", u"ﾕｰｻﾞｰ定義"}) texts.emplace_back(text);
  return texts;
}

Form FormOf(const DEVHTINFO& shown, const DEVHTINFO& standard, const DEVHTADJDATA& device) {
  const bool colour = (device.DeviceFlags & DEVHTADJF_COLOR_DEVICE) != 0;
  const auto pattern = [](const DEVHTINFO& info) {
    return static_cast<int>(std::min(info.HTPatternSize, HT_PATSIZE_MAX_INDEX));
  };
  const auto number = [](DWORD value) { return static_cast<int>(std::min<DWORD>(value, 32767)); };
  Form form;
  form.lists.push_back({u"ﾊﾟﾀｰﾝ(&P):", Patterns(), pattern(shown), pattern(standard)});
  form.sliders.push_back({u"ﾋﾟｸｾﾙ密度 (0=装置)(&D):", 0,
                          number(std::max(device.DeviceXDPI, device.DeviceYDPI)),
                          number(shown.DevPelsDPI), number(standard.DevPelsDPI)});
  for (const DeviceRow& row : kDevice)
    form.sliders.push_back({row.label, row.minimum, row.maximum, shown.ColorInfo.*row.value,
                            standard.ColorInfo.*row.value, !row.colourOnly || colour});
  return form;
}

void Take(const Form& form, DEVHTINFO& info) {
  if (form.lists[0].touched)
    info.HTPatternSize = static_cast<DWORD>(std::max(0, form.lists[0].selection));
  if (form.sliders[0].touched) info.DevPelsDPI = static_cast<DWORD>(form.sliders[0].value);
  for (size_t i = 0; i < std::size(kDevice); ++i)
    if (form.sliders[i + 1].touched) info.ColorInfo.*kDevice[i].value = form.sliders[i + 1].value;
}

// Shows the form and brings a confirmed change home: above 0 changed, 0 not, below 0 no dialog.
template <typename Record>
LONG Edit(Form& form, Record* record) {
  const Outcome outcome = ShowForm(form);
  if (outcome == Outcome::kFailed) return kNoDialog;
  if (outcome == Outcome::kCancelled || form.readOnly || !record) return 0;
  const Record before = *record;
  Take(form, *record);
  return std::memcmp(&before, record, sizeof before) != 0 ? 1 : 0;
}

}  // namespace
}  // namespace platform::halftone

using namespace platform::halftone;

LONG APIENTRY HTUI_ColorAdjustmentW(LPWSTR callerTitle, HANDLE, LPWSTR, COLORADJUSTMENT* adjustment,
                                    BOOL showMonochromeOnly, BOOL updatePermission) {
  if (!adjustment) return kInvalidArgument;
  Form form = FormOf(*adjustment, showMonochromeOnly != FALSE);
  form.title = TitleFor(callerTitle, u"ｶﾗｰ調整");
  form.readOnly = !updatePermission;
  return Edit(form, adjustment);
}

// Without an adjusted description the default one is shown and nothing can be changed.
LONG APIENTRY HTUI_DeviceColorAdjustmentW(LPWSTR deviceName, PDEVHTADJDATA device) {
  if (!device || !device->pDefHTInfo) return kInvalidArgument;
  const DEVHTINFO& shown = device->pAdjHTInfo ? *device->pAdjHTInfo : *device->pDefHTInfo;
  Form form = FormOf(shown, *device->pDefHTInfo, *device);
  form.title = TitleFor(deviceName, u"ﾊｰﾌﾄｰﾝ調整");
  form.readOnly = !device->pAdjHTInfo;
  return Edit(form, device->pAdjHTInfo);
}

namespace platform::halftone {

const Machine::EntryPoints kEntries = {
    {"HTUI_ColorAdjustmentW", EntryPoint<HTUI_ColorAdjustmentW>()},
    {"HTUI_DeviceColorAdjustmentW", EntryPoint<HTUI_DeviceColorAdjustmentW>()}};
const bool registered = RegisterBuiltIn(u"htui.dll", kEntries);

}  // namespace platform::halftone
