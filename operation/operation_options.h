// The choices of the operation page and the device settings page.
#pragma once

#include "paper/fields/option_table.h"

namespace kestrel {

const OptionTable& SpeedOptions();
const OptionTable& SensorOptions();
// The feed modes of a printer mode; an unknown mode has those of tear-off.
const OptionTable& FeedModeOptions(int printerMode);
const OptionTable& PrinterModeOptions();
const OptionTable& DensityOptions();

}  // namespace kestrel
