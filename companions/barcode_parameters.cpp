#include "companions/barcode_parameters.h"

#include <algorithm>

#include "paper/fields/measured_value.h"

namespace companions {
namespace {

using enum FieldKind;

// ---- choices ----
constexpr Choice kRotations[] = {{0, u"0度"}, {90, u"90度"}, {180, u"180度"}, {270, u"270度"}};
constexpr Choice kUnits[] = {{0, u"mm"}, {1, u"inch"}, {2, u"dot"}};
constexpr Choice kNever[] = {{0, u"無し"}};
constexpr Choice kNoYes[] = {{0, u"無し"}, {1, u"有り"}};
constexpr Choice kRatios[] = {{0, u"1：2"}, {1, u"1：3"}, {2, u"2：5"}, {3, u"任意指定"}};
constexpr Choice kCorrections[] = {
    {0, u"L（約 7%）"}, {1, u"M（約15%）"}, {2, u"Q（約25%）"}, {3, u"H（約30%）"}};
constexpr Choice kMicroCorrections[] = {
    {4, u"誤り検出のみ"}, {0, u"L（約 7%）"}, {1, u"M（約15%）"}, {2, u"Q（約25%）"}};
constexpr Choice kEstablishModes[] = {{0, u"自動設定"}, {1, u"手動設定"}};
constexpr Choice kDataModes[] = {{0, u"数字"}, {1, u"英数字"}, {2, u"漢字"}, {3, u"バイナリ"}};
constexpr Choice kSecurityLevels[] = {
    {9, u"自動"},    {0, u"レベル0"}, {1, u"レベル1"}, {2, u"レベル2"}, {3, u"レベル3"},
    {4, u"レベル4"}, {5, u"レベル5"}, {6, u"レベル6"}, {7, u"レベル7"}, {8, u"レベル8"}};
constexpr Choice kPdfTypes[] = {{0, u"標準"}, {1, u"簡易（トランケート）"}};
constexpr Choice kMaxiModes[] = {{2, u"モード2（数字の郵便番号）"},
                                 {3, u"モード3（英数の郵便番号）"},
                                 {4, u"モード4（標準）"},
                                 {5, u"モード5（高い誤り訂正）"},
                                 {6, u"モード6（読取機の設定）"}};
constexpr Choice kRssTypes[] = {{0, u"RSS-14"},
                                {1, u"RSS-14 Truncated"},
                                {2, u"RSS-14 Stacked"},
                                {3, u"RSS-14 Stacked Omni"},
                                {4, u"RSS Limited"},
                                {5, u"RSS Expanded"},
                                {6, u"RSS Expanded Stacked"}};
constexpr Choice kSegments[] = {{2}, {4}, {6}, {8}, {10}, {12}, {14}, {16}, {18}, {20}, {22}};
constexpr Choice kMatrixSizes[] = {{0, u"自動"}, {10}, {12}, {14},  {16},  {18},  {20}, {22}, {24},
                                   {26},         {32}, {36}, {40},  {44},  {48},  {52}, {64}, {72},
                                   {80},         {88}, {96}, {104}, {120}, {132}, {144}};
constexpr Choice kMicroPdfColumns[] = {{0, u"自動"}, {1}, {2}, {3}, {4}};
constexpr Choice kMicroPdfRows[] = {{0, u"自動"}, {4},  {6},  {7},  {8},  {10}, {11},
                                    {12},         {14}, {15}, {17}, {20}, {23}, {24},
                                    {26},         {28}, {32}, {38}, {44}};

// ---- fields ----
constexpr Field Number(const WCHAR* label, uint16_t offset, uint16_t min, uint16_t max) {
  return {label, offset, kNumber, min, max};
}
constexpr Field Height(uint16_t offset) { return {u"バーの高さ", offset, kMeasure, 8, 999}; }
constexpr Field OneOf(const WCHAR* label, uint16_t offset, std::span<const Choice> choices) {
  return {.label = label, .offset = offset, .kind = kChoice, .choices = choices};
}
constexpr Field Text(const WCHAR* label, uint16_t offset, uint16_t bytes, bool terminated) {
  return {.label = label, .offset = offset, .kind = kText, .max = bytes, .terminated = terminated};
}

constexpr Field kExpand = Number(u"倍率", 12, 1, 12);

constexpr Field kLayoutA[] = {kExpand, Height(14), OneOf(u"ガイドバー", 16, kNoYes)};
constexpr Field kLayoutB[] = {kExpand, Height(14)};
constexpr Field kLayoutC[] = {kExpand, Height(14), OneOf(u"コメント文字", 16, kNoYes)};
constexpr Field kLayoutD[] = {kExpand,
                              Height(14),
                              OneOf(u"細太比率", 16, kRatios),
                              Number(u"細スペース", 18, 1, 99),
                              Number(u"太スペース", 20, 1, 99),
                              Number(u"細バー", 22, 1, 99),
                              Number(u"太バー", 24, 1, 99),
                              Number(u"文字間ギャップ", 26, 1, 99)};
constexpr Field kLayoutE[] = {Number(u"サイズ（ポイント）", 12, 8, 12),
                              Text(u"郵便番号", 14, 7, false)};
constexpr std::array<Field, 8> QrLayout(std::span<const Choice> corrections,
                                        std::span<const Choice> joined, uint16_t parts,
                                        uint16_t parity) {
  return {OneOf(u"誤り訂正レベル", 12, corrections), Number(u"セルサイズ", 14, 1, 50),
          OneOf(u"設定モード", 16, kEstablishModes), OneOf(u"連結", 18, joined),
          Number(u"連結数", 20, 1, parts),           Number(u"連結番号", 22, 1, parts),
          Number(u"連結パリティ", 24, 0, parity),    OneOf(u"データモード", 26, kDataModes)};
}
constexpr auto kLayoutF = QrLayout(kCorrections, kNoYes, 16, 255);
// Micro QR has no structured append, that is no symbols that are read together.
constexpr auto kLayoutFMicro = QrLayout(kMicroCorrections, kNever, 1, 0);
constexpr Field kLayoutG[] = {Number(u"モジュール幅", 12, 1, 10),
                              Number(u"モジュール高さ", 14, 1, 99),
                              OneOf(u"セキュリティレベル", 16, kSecurityLevels),
                              Number(u"コードワード数", 18, 1, 30),
                              Number(u"行数", 20, 3, 90),
                              OneOf(u"コードタイプ", 22, kPdfTypes)};
constexpr Field kLayoutH[] = {OneOf(u"コードタイプ", 12, kMaxiModes),
                              Number(u"サービスコード", 14, 0, 999),
                              Number(u"国コード", 16, 0, 999), Number(u"郵便番号の桁数", 18, 0, 9),
                              Text(u"郵便番号", 20, 19, true)};
constexpr Field kLayoutI[] = {Number(u"セルの幅", 12, 1, 50), Number(u"セルの高さ", 14, 1, 50),
                              OneOf(u"列のセル数", 16, kMatrixSizes),
                              OneOf(u"行のセル数", 18, kMatrixSizes)};
constexpr Field kLayoutJ[] = {
    Number(u"モジュール幅", 12, 1, 10), Number(u"モジュール高さ", 14, 1, 99),
    OneOf(u"列のワード数", 16, kMicroPdfColumns), OneOf(u"行数", 18, kMicroPdfRows),
    OneOf(u"バイナリデータ", 20, kNoYes)};
constexpr Field kLayoutK[] = {kExpand, Height(14), OneOf(u"セグメント数", 16, kSegments),
                              OneOf(u"RSSの種類", 18, kRssTypes)};

// The defaults have the order of the fields: a height of 10 mm for linear symbols, and module sizes
// that a 203-dpi head prints reliably.
constexpr BarcodeKind kKinds[] = {
    {100, u"UPC-A", kLayoutA, {2, 100, 1}},
    {200, u"UPC-E", kLayoutB, {2, 100}},
    {300, u"JAN-8", kLayoutA, {2, 100, 1}},
    {400, u"JAN-13", kLayoutA, {2, 100, 1}},
    {500, u"CODE39", kLayoutD, {1, 100, 2, 2, 5, 2, 5, 2}},
    {600, u"CODE93", kLayoutB, {2, 100}},
    {700, u"CODE128", kLayoutB, {2, 100}},
    {800, u"UCC/EAN128", kLayoutC, {2, 127, 1}},
    {900, u"ITF(Interleaved 2of5)", kLayoutD, {1, 127, 2, 2, 5, 2, 5, 2}},
    {1200, u"NW-7", kLayoutD, {1, 100, 2, 2, 5, 2, 5, 2}},
    {1300, u"カスタマバーコード", kLayoutE, {10}},
    {2500, u"RSS(GS1 DataBar)", kLayoutK, {2, 50, 22, 0}},
    {1400, u"QRコード(モデル1)", kLayoutF, {1, 4, 0, 0, 1, 1, 0, 3}},
    {1500, u"QRコード(モデル2)", kLayoutF, {1, 4, 0, 0, 1, 1, 0, 3}},
    {1600, u"マイクロQRコード", kLayoutFMicro, {0, 4, 0, 0, 1, 1, 0, 0}},
    {1700, u"PDF417", kLayoutG, {2, 6, 9, 4, 10, 0}},
    {1900, u"MaxiCode", kLayoutH, {4, 0, 392, 7}},
    {2000, u"DataMatrix(ECC200)", kLayoutI, {4, 4, 0, 0}},
    {2100, u"マイクロPDF417", kLayoutJ, {2, 4, 0, 0, 0}},
};

static_assert(std::ranges::equal(kKinds, kestrel::kBarcodeKinds, {}, &BarcodeKind::id,
                                 &kestrel::BarcodeKindRow::id),
              "a row for each barcode kind, in the same order");

// Every parameter is within the library's part of the block.
static_assert(std::ranges::all_of(kKinds, [](const BarcodeKind& kind) {
  return std::ranges::all_of(kind.own, [](const Field& field) {
    return field.offset + (field.kind == kText ? field.max + field.terminated : 2) <= kBlockSize;
  });
}));

}  // namespace

const Field kRotateField = OneOf(u"回転", 2, kRotations);
const Field kUnitField{.label = u"単位", .offset = 10, .kind = FieldKind::kUnit, .choices = kUnits};

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
  WriteWord(block, kIdOffset, kind.id);
  WriteWord(block, 4, info.densityX);  // the library's own words; the third is its version
  WriteWord(block, 6, info.densityY);
  WriteWord(block, 8, 0x100);
  WriteWord(block, kUnitField.offset, kestrel::kDot);
  for (std::size_t i = 0; i < kind.own.size(); ++i) {
    const Field& field = kind.own[i];
    if (field.kind == kText) continue;
    int value = kind.defaults[i];
    if (field.kind == kMeasure) {
      value = kestrel::ConvertMeasure(value, kestrel::kMillimetre, kestrel::kDot, DensityOf(info));
    }
    WriteWord(block, field.offset, static_cast<uint16_t>(value));
  }
}

}  // namespace companions
