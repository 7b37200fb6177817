#include "operation/operation_options.h"

namespace kestrel {
namespace {

constexpr OptionEntry kEnd = {TEXT(""), kOptionEnd, 0, {}};
constexpr OptionEntry kAsPrinter = {TEXT("プリンタ設定に従う"), kFollowPrinter, ' ', {}};

constexpr OptionEntry kSpeeds[] = {
    {TEXT("3ｲﾝﾁ/S( 75㎜/S)"), 1, '1', {}}, {TEXT("4ｲﾝﾁ/S(103㎜/S)"), 2, '2', {}}, kAsPrinter, kEnd};
constexpr OptionEntry kSensors[] = {{TEXT("反射センサタイプ：アイマーク"), 0, '0', {}},
                                    {TEXT("透過センサタイプ：ギャップ"), 1, '1', {}},
                                    kAsPrinter,
                                    kEnd};
constexpr OptionEntry kTearOffFeed[] = {{TEXT("ティアオフ"), 1, '0', {}}, kAsPrinter, kEnd};
constexpr OptionEntry kContinuousFeed[] = {{TEXT("連続"), 0, '1', {}}, kAsPrinter, kEnd};
constexpr OptionEntry kPeelFeed[] = {{TEXT("ハクリ              "), 7, '2', {}}, kAsPrinter, kEnd};
constexpr OptionEntry kModes[] = {{TEXT("ティアオフ"), kTearOff, 0, {}},
                                  {TEXT("連続"), kContinuous, 0, {}},
                                  {TEXT("ハクリ"), kPeel, 0, {}},
                                  kEnd};
constexpr OptionEntry kDensities[] = {{TEXT("203dpi(  8本/mm)"), 203, 0, {}}, kEnd};

template <size_t N>
constexpr OptionTable TableOf(const OptionEntry (&entries)[N]) {
  return {entries, static_cast<int>(N) - 1};
}

constexpr OptionTable kSpeedTable = TableOf(kSpeeds);
constexpr OptionTable kSensorTable = TableOf(kSensors);
constexpr OptionTable kFeedTables[] = {TableOf(kTearOffFeed), TableOf(kContinuousFeed),
                                       TableOf(kPeelFeed)};
constexpr OptionTable kModeTable = TableOf(kModes);
constexpr OptionTable kDensityTable = TableOf(kDensities);

}  // namespace

const OptionTable& SpeedOptions() { return kSpeedTable; }
const OptionTable& SensorOptions() { return kSensorTable; }
const OptionTable& FeedModeOptions(int printerMode) {
  return kFeedTables[printerMode >= kTearOff && printerMode <= kPeel ? printerMode : kTearOff];
}
const OptionTable& PrinterModeOptions() { return kModeTable; }
const OptionTable& DensityOptions() { return kDensityTable; }

}  // namespace kestrel
