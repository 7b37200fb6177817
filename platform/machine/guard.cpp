#include "platform/machine/guard.h"

#include <exception>
#include <utility>

#include "platform/machine/machine.h"

namespace platform {
namespace {
thread_local std::exception_ptr kept;
}

void KeepThrown() noexcept {
  if (kept == nullptr) kept = std::current_exception();
}

void RethrowKept() {
  if (kept != nullptr) std::rethrow_exception(std::exchange(kept, nullptr));
}

}  // namespace platform
