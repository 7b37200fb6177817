// The lists of the operation page and the device page.
#pragma once

#include "paper/fields/option_table.h"

namespace kestrel {

const OptionTable& SpeedOptions();
const OptionTable& SensorOptions();
// Returns the feed modes of a PrinterMode; those of tear-off for an unknown mode.
const OptionTable& FeedModeOptions(int printerMode);
const OptionTable& PrinterModeOptions();
const OptionTable& DensityOptions();

}  // namespace kestrel
