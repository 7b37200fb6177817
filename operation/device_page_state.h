// What the device page stores in the session while the sheet is open.
#pragma once

#include <cstdint>

#include "paper/fields/open_list_state.h"

namespace kestrel {

struct DevicePageState {
  OpenListState list;
  uint16_t modeBefore;  // the printer mode when the list was opened
};

}  // namespace kestrel
