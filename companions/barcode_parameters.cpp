#include "companions/barcode_parameters.h"

#include <algorithm>

#include "paper/fields/measured_value.h"

namespace companions {
namespace {

using enum FieldKind;

// ---- choices ----
constexpr Choice kRotations[] = {
    {TEXT("0度"), 0}, {TEXT("90度"), 90}, {TEXT("180度"), 180}, {TEXT("270度"), 270}};
constexpr Choice kUnits[] = {{TEXT("mm"), 0}, {TEXT("inch"), 1}, {TEXT("dot"), 2}};
constexpr Choice kNever[] = {{TEXT("無し"), 0}};
constexpr Choice kNoYes[] = {{TEXT("無し"), 0}, {TEXT("有り"), 1}};
constexpr Choice kRatios[] = {
    {TEXT("1：2"), 0}, {TEXT("1：3"), 1}, {TEXT("2：5"), 2}, {TEXT("任意指定"), 3}};
constexpr Choice kCorrections[] = {{TEXT("L（約 7%）"), 0},
                                   {TEXT("M（約15%）"), 1},
                                   {TEXT("Q（約25%）"), 2},
                                   {TEXT("H（約30%）"), 3}};
constexpr Choice kMicroCorrections[] = {{TEXT("誤り検出のみ"), 4},
                                        {TEXT("L（約 7%）"), 0},
                                        {TEXT("M（約15%）"), 1},
                                        {TEXT("Q（約25%）"), 2}};
constexpr Choice kEstablishModes[] = {{TEXT("自動設定"), 0}, {TEXT("手動設定"), 1}};
constexpr Choice kDataModes[] = {
    {TEXT("数字"), 0}, {TEXT("英数字"), 1}, {TEXT("漢字"), 2}, {TEXT("バイナリ"), 3}};
constexpr Choice kSecurityLevels[] = {
    {TEXT("自動"), 9},    {TEXT("レベル0"), 0}, {TEXT("レベル1"), 1}, {TEXT("レベル2"), 2},
    {TEXT("レベル3"), 3}, {TEXT("レベル4"), 4}, {TEXT("レベル5"), 5}, {TEXT("レベル6"), 6},
    {TEXT("レベル7"), 7}, {TEXT("レベル8"), 8}};
constexpr Choice kPdfTypes[] = {{TEXT("標準"), 0}, {TEXT("簡易（トランケート）"), 1}};
constexpr Choice kMaxiModes[] = {{TEXT("モード2（数字の郵便番号）"), 2},
                                 {TEXT("モード3（英数の郵便番号）"), 3},
                                 {TEXT("モード4（標準）"), 4},
                                 {TEXT("モード5（高い誤り訂正）"), 5},
                                 {TEXT("モード6（読取機の設定）"), 6}};
constexpr Choice kRssTypes[] = {{TEXT("RSS-14"), 0},
                                {TEXT("RSS-14 Truncated"), 1},
                                {TEXT("RSS-14 Stacked"), 2},
                                {TEXT("RSS-14 Stacked Omni"), 3},
                                {TEXT("RSS Limited"), 4},
                                {TEXT("RSS Expanded"), 5},
                                {TEXT("RSS Expanded Stacked"), 6}};
constexpr Choice kSegments[] = {{TEXT("2"), 2},   {TEXT("4"), 4},   {TEXT("6"), 6},
                                {TEXT("8"), 8},   {TEXT("10"), 10}, {TEXT("12"), 12},
                                {TEXT("14"), 14}, {TEXT("16"), 16}, {TEXT("18"), 18},
                                {TEXT("20"), 20}, {TEXT("22"), 22}};
constexpr Choice kMatrixSizes[] = {
    {TEXT("自動"), 0}, {TEXT("10"), 10},   {TEXT("12"), 12},   {TEXT("14"), 14},
    {TEXT("16"), 16},  {TEXT("18"), 18},   {TEXT("20"), 20},   {TEXT("22"), 22},
    {TEXT("24"), 24},  {TEXT("26"), 26},   {TEXT("32"), 32},   {TEXT("36"), 36},
    {TEXT("40"), 40},  {TEXT("44"), 44},   {TEXT("48"), 48},   {TEXT("52"), 52},
    {TEXT("64"), 64},  {TEXT("72"), 72},   {TEXT("80"), 80},   {TEXT("88"), 88},
    {TEXT("96"), 96},  {TEXT("104"), 104}, {TEXT("120"), 120}, {TEXT("132"), 132},
    {TEXT("144"), 144}};
constexpr Choice kMicroPdfColumns[] = {
    {TEXT("自動"), 0}, {TEXT("1"), 1}, {TEXT("2"), 2}, {TEXT("3"), 3}, {TEXT("4"), 4}};
constexpr Choice kMicroPdfRows[] = {
    {TEXT("自動"), 0}, {TEXT("4"), 4},   {TEXT("6"), 6},   {TEXT("7"), 7},   {TEXT("8"), 8},
    {TEXT("10"), 10},  {TEXT("11"), 11}, {TEXT("12"), 12}, {TEXT("14"), 14}, {TEXT("15"), 15},
    {TEXT("17"), 17},  {TEXT("20"), 20}, {TEXT("23"), 23}, {TEXT("24"), 24}, {TEXT("26"), 26},
    {TEXT("28"), 28},  {TEXT("32"), 32}, {TEXT("38"), 38}, {TEXT("44"), 44}};

// ---- fields ----
constexpr Field Fixed(const WCHAR* label, uint16_t offset) {
  return {label, offset, kFixed, 0, 0, {}, false};
}
constexpr Field Number(const WCHAR* label, uint16_t offset, uint16_t min, uint16_t max) {
  return {label, offset, kNumber, min, max, {}, false};
}
constexpr Field Height(uint16_t offset) {
  return {TEXT("バーの高さ"), offset, kMeasure, 8, 999, {}, false};
}
constexpr Field OneOf(const WCHAR* label, uint16_t offset, std::span<const Choice> choices) {
  return {label, offset, kChoice, 0, 0, choices, false};
}
constexpr Field Text(const WCHAR* label, uint16_t offset, uint16_t bytes, bool terminated) {
  return {label, offset, kText, 0, bytes, {}, terminated};
}

constexpr Field kBarcodeId = Fixed(TEXT("バーコードID"), kIdOffset);
constexpr Field kRotate = OneOf(TEXT("回転"), 2, kRotations);
constexpr Field kUnitField{TEXT("単位"), kUnitOffset, FieldKind::kUnit, 0, 0, kUnits, false};
constexpr Field kExpand = Number(TEXT("倍率"), 12, 1, 12);

constexpr Field kLayoutA[] = {kBarcodeId, kRotate,    kUnitField,
                              kExpand,    Height(14), OneOf(TEXT("ガイドバー"), 16, kNoYes)};
constexpr Field kLayoutB[] = {kBarcodeId, kRotate, kUnitField, kExpand, Height(14)};
constexpr Field kLayoutC[] = {kBarcodeId, kRotate,    kUnitField,
                              kExpand,    Height(14), OneOf(TEXT("コメント文字"), 16, kNoYes)};
constexpr Field kLayoutD[] = {kBarcodeId,
                              kRotate,
                              kUnitField,
                              kExpand,
                              Height(14),
                              OneOf(TEXT("細太比率"), 16, kRatios),
                              Number(TEXT("細スペース"), 18, 1, 99),
                              Number(TEXT("太スペース"), 20, 1, 99),
                              Number(TEXT("細バー"), 22, 1, 99),
                              Number(TEXT("太バー"), 24, 1, 99),
                              Number(TEXT("文字間ギャップ"), 26, 1, 99)};
constexpr Field kLayoutE[] = {kBarcodeId, kRotate, kUnitField,
                              Number(TEXT("サイズ（ポイント）"), 12, 8, 12),
                              Text(TEXT("郵便番号"), 14, 7, false)};
constexpr Field kLayoutF[] = {kBarcodeId,
                              kRotate,
                              kUnitField,
                              OneOf(TEXT("誤り訂正レベル"), 12, kCorrections),
                              Number(TEXT("セルサイズ"), 14, 1, 50),
                              OneOf(TEXT("設定モード"), 16, kEstablishModes),
                              OneOf(TEXT("連結"), 18, kNoYes),
                              Number(TEXT("連結数"), 20, 1, 16),
                              Number(TEXT("連結番号"), 22, 1, 16),
                              Number(TEXT("連結パリティ"), 24, 0, 255),
                              OneOf(TEXT("データモード"), 26, kDataModes)};
// A symbol of this kind is never one of several that are read together.
constexpr Field kLayoutFMicro[] = {kBarcodeId,
                                   kRotate,
                                   kUnitField,
                                   OneOf(TEXT("誤り訂正レベル"), 12, kMicroCorrections),
                                   Number(TEXT("セルサイズ"), 14, 1, 50),
                                   OneOf(TEXT("設定モード"), 16, kEstablishModes),
                                   OneOf(TEXT("連結"), 18, kNever),
                                   Number(TEXT("連結数"), 20, 1, 1),
                                   Number(TEXT("連結番号"), 22, 1, 1),
                                   Number(TEXT("連結パリティ"), 24, 0, 0),
                                   OneOf(TEXT("データモード"), 26, kDataModes)};
constexpr Field kLayoutG[] = {kBarcodeId,
                              kRotate,
                              kUnitField,
                              Number(TEXT("モジュール幅"), 12, 1, 10),
                              Number(TEXT("モジュール高さ"), 14, 1, 99),
                              OneOf(TEXT("セキュリティレベル"), 16, kSecurityLevels),
                              Number(TEXT("コードワード数"), 18, 1, 30),
                              Number(TEXT("行数"), 20, 3, 90),
                              OneOf(TEXT("コードタイプ"), 22, kPdfTypes)};
constexpr Field kLayoutH[] = {kBarcodeId,
                              kRotate,
                              kUnitField,
                              OneOf(TEXT("コードタイプ"), 12, kMaxiModes),
                              Number(TEXT("サービスコード"), 14, 0, 999),
                              Number(TEXT("国コード"), 16, 0, 999),
                              Number(TEXT("郵便番号の桁数"), 18, 0, 9),
                              Text(TEXT("郵便番号"), 20, 19, true)};
constexpr Field kLayoutI[] = {kBarcodeId,
                              kRotate,
                              kUnitField,
                              Number(TEXT("セルの幅"), 12, 1, 50),
                              Number(TEXT("セルの高さ"), 14, 1, 50),
                              OneOf(TEXT("列のセル数"), 16, kMatrixSizes),
                              OneOf(TEXT("行のセル数"), 18, kMatrixSizes)};
constexpr Field kLayoutJ[] = {kBarcodeId,
                              kRotate,
                              kUnitField,
                              Number(TEXT("モジュール幅"), 12, 1, 10),
                              Number(TEXT("モジュール高さ"), 14, 1, 99),
                              OneOf(TEXT("列のワード数"), 16, kMicroPdfColumns),
                              OneOf(TEXT("行数"), 18, kMicroPdfRows),
                              OneOf(TEXT("バイナリデータ"), 20, kNoYes)};
constexpr Field kLayoutK[] = {kBarcodeId,
                              kRotate,
                              kUnitField,
                              kExpand,
                              Height(14),
                              OneOf(TEXT("セグメント数"), 16, kSegments),
                              OneOf(TEXT("RSSの種類"), 18, kRssTypes)};

// Defaults follow the fields: id, rotation, unit, then the layout's own; a height of 10 mm for
// symbols read across, module sizes that a 203-dpi head prints safely.
constexpr BarcodeKind kKinds[kKindCount] = {
    {100, TEXT("UPC-A"), kLayoutA, {100, 0, 2, 2, 100, 1}},
    {200, TEXT("UPC-E"), kLayoutB, {200, 0, 2, 2, 100}},
    {300, TEXT("JAN-8"), kLayoutA, {300, 0, 2, 2, 100, 1}},
    {400, TEXT("JAN-13"), kLayoutA, {400, 0, 2, 2, 100, 1}},
    {500, TEXT("CODE39"), kLayoutD, {500, 0, 2, 1, 100, 2, 2, 5, 2, 5, 2}},
    {600, TEXT("CODE93"), kLayoutB, {600, 0, 2, 2, 100}},
    {700, TEXT("CODE128"), kLayoutB, {700, 0, 2, 2, 100}},
    {800, TEXT("UCC/EAN128"), kLayoutC, {800, 0, 2, 2, 127, 1}},
    {900, TEXT("ITF(Interleaved 2of5)"), kLayoutD, {900, 0, 2, 1, 127, 2, 2, 5, 2, 5, 2}},
    {1200, TEXT("NW-7"), kLayoutD, {1200, 0, 2, 1, 100, 2, 2, 5, 2, 5, 2}},
    {1300, TEXT("カスタマバーコード"), kLayoutE, {1300, 0, 2, 10}},
    {2500, TEXT("RSS(GS1 DataBar)"), kLayoutK, {2500, 0, 2, 2, 50, 22, 0}},
    {1400, TEXT("QRコード(モデル1)"), kLayoutF, {1400, 0, 2, 1, 4, 0, 0, 1, 1, 0, 3}},
    {1500, TEXT("QRコード(モデル2)"), kLayoutF, {1500, 0, 2, 1, 4, 0, 0, 1, 1, 0, 3}},
    {1600, TEXT("マイクロQRコード"), kLayoutFMicro, {1600, 0, 2, 0, 4, 0, 0, 1, 1, 0, 0}},
    {1700, TEXT("PDF417"), kLayoutG, {1700, 0, 2, 2, 6, 9, 4, 10, 0}},
    {1900, TEXT("MaxiCode"), kLayoutH, {1900, 0, 2, 4, 0, 392, 7}},
    {2000, TEXT("DataMatrix(ECC200)"), kLayoutI, {2000, 0, 2, 4, 4, 0, 0}},
    {2100, TEXT("マイクロPDF417"), kLayoutJ, {2100, 0, 2, 2, 4, 0, 0, 0}},
};

// Every parameter lies in the library's part of the block and has at least one value to choose.
constexpr bool IsSound(const BarcodeKind& kind) {
  return kind.fields.size() <= kMaxFields &&
         std::ranges::all_of(kind.fields, [](const Field& field) {
           const int size = field.kind == kText ? field.max + (field.terminated ? 1 : 0) : 2;
           const bool list = field.kind == kChoice || field.kind == FieldKind::kUnit;
           return field.offset + size <= kBlockSize && list == !field.choices.empty();
         });
}
static_assert(std::ranges::all_of(kKinds, IsSound));

}  // namespace

const BarcodeKind& KindAt(int index) { return kKinds[index]; }

int DensityOf(const BarcodeLibInfo& info) { return info.densityX == 305 ? 305 : 203; }

uint16_t ReadWord(std::span<const BYTE> block, std::size_t offset) {
  return static_cast<uint16_t>(block[offset] | block[offset + 1] << 8);
}

void WriteWord(std::span<BYTE> block, std::size_t offset, uint16_t value) {
  block[offset] = static_cast<BYTE>(value & 0xFF);
  block[offset + 1] = static_cast<BYTE>(value >> 8);
}

void WriteDefaults(const BarcodeKind& kind, const BarcodeLibInfo& info, std::span<BYTE> block) {
  std::ranges::fill(block, BYTE{0});
  WriteWord(block, kLibraryWords, info.densityX);
  WriteWord(block, kLibraryWords + 2, info.densityY);
  WriteWord(block, kLibraryWords + 4, kLibraryVersion);
  for (std::size_t i = 0; i < kind.fields.size(); ++i) {
    const Field& field = kind.fields[i];
    if (field.kind == kText) continue;
    int value = kind.defaults[i];
    if (field.kind == kMeasure) {
      value = kestrel::ConvertMeasure(value, kestrel::kMillimetre, kestrel::kDot, DensityOf(info));
    }
    WriteWord(block, field.offset, static_cast<uint16_t>(value));
  }
}

}  // namespace companions
