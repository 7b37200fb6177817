#include "operation/operation_options.h"

#include "driver/settings_block.h"

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
constexpr OptionEntry kModes[] = {{TEXT("ティアオフ"), kTearOffMode, 0, {}},
                                  {TEXT("連続"), kContinuousMode, 0, {}},
                                  {TEXT("ハクリ"), kPeelMode, 0, {}},
                                  kEnd};
constexpr OptionEntry kDensities[] = {{TEXT("203dpi(  8本/mm)"), 203, 0, {}}, kEnd};

constexpr OptionTable kSpeedTable = OptionTableOf(kSpeeds);
constexpr OptionTable kSensorTable = OptionTableOf(kSensors);
constexpr OptionTable kFeedTables[] = {OptionTableOf(kTearOffFeed), OptionTableOf(kContinuousFeed),
                                       OptionTableOf(kPeelFeed)};
constexpr OptionTable kModeTable = OptionTableOf(kModes);
constexpr OptionTable kDensityTable = OptionTableOf(kDensities);

}  // namespace

const OptionTable& SpeedOptions() { return kSpeedTable; }
const OptionTable& SensorOptions() { return kSensorTable; }
const OptionTable& FeedModeOptions(int printerMode) {
  return kFeedTables[printerMode >= kTearOffMode && printerMode <= kPeelMode ? printerMode
                                                                             : kTearOffMode];
}
const OptionTable& PrinterModeOptions() { return kModeTable; }
const OptionTable& DensityOptions() { return kDensityTable; }

}  // namespace kestrel
