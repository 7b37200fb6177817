#include <limits>

#include "platform/machine.h"

namespace platform {
namespace {
size_t Index(Fault kind) { return static_cast<size_t>(kind); }
}  // namespace

void Faults::Arm(Fault kind, int from, int to) {
  const std::lock_guard lock(mutex_);
  calls_[Index(kind)] = 0;
  from_[Index(kind)] = from;
  to_[Index(kind)] = to;
  struck_[Index(kind)] = false;
}

void Faults::FailNth(Fault kind, int n) { Arm(kind, n, n); }

void Faults::FailFrom(Fault kind, int n) { Arm(kind, n, std::numeric_limits<int>::max()); }

void Faults::Clear() {
  for (int kind = 0; kind < kKinds; ++kind) Arm(static_cast<Fault>(kind), 0, -1);
}

int Faults::Calls(Fault kind) const {
  const std::lock_guard lock(mutex_);
  return calls_[Index(kind)];
}

bool Faults::Struck(Fault kind) const {
  const std::lock_guard lock(mutex_);
  return struck_[Index(kind)];
}

bool Faults::Strike(Fault kind) {
  const std::lock_guard lock(mutex_);
  const int call = ++calls_[Index(kind)];
  const bool strikes =
      from_[Index(kind)] > 0 && call >= from_[Index(kind)] && call <= to_[Index(kind)];
  struck_[Index(kind)] = struck_[Index(kind)] || strikes;
  return strikes;
}

}  // namespace platform
