#include "platform/machine/guard.h"

#include <exception>
#include <utility>

namespace platform {
namespace {
thread_local std::exception_ptr pending;
}

void CaptureException() noexcept {
  if (pending == nullptr) pending = std::current_exception();
}

void RethrowPendingException() {
  if (pending != nullptr) std::rethrow_exception(std::exchange(pending, nullptr));
}

}  // namespace platform
