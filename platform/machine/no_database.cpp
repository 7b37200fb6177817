#include <stdexcept>

#include "platform/machine/database.h"

namespace platform {

std::unique_ptr<Database> OpenDatabase(const std::filesystem::path&) {
  throw std::runtime_error("this build keeps computers in memory only");
}

}  // namespace platform
