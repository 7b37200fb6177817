// A typed value of the registry or of a printer.
#pragma once

#include <windef.h>

#include <cstddef>
#include <vector>

namespace platform {

struct DataValue {
  DWORD type = 0;
  std::vector<std::byte> bytes;
};

}  // namespace platform
