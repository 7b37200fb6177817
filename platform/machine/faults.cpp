#include <limits>
#include <utility>

#include "platform/machine/machine.h"

namespace platform {

Faults::Armed Faults::At(Fault kind) const {
  const std::lock_guard lock(mutex_);
  return armed_[static_cast<size_t>(kind)];
}

void Faults::Arm(Fault kind, const Armed& armed) {
  const std::lock_guard lock(mutex_);
  armed_[static_cast<size_t>(kind)] = armed;
}

void Faults::FailNth(Fault kind, int n) { Arm(kind, {n, n}); }
void Faults::FailFrom(Fault kind, int n) { Arm(kind, {n, std::numeric_limits<int>::max()}); }
void Faults::Clear() {
  for (int kind = 0; kind < static_cast<int>(Fault::kCount); ++kind) Arm(Fault{kind}, {});
  OnSpoolerChange({});
}
int Faults::Calls(Fault kind) const { return At(kind).calls; }
int Faults::Strikes(Fault kind) const { return At(kind).strikes; }

bool Faults::Strike(Fault kind) {
  const std::lock_guard lock(mutex_);
  Armed& armed = armed_[static_cast<size_t>(kind)];
  ++armed.calls;
  const bool strikes = armed.calls >= armed.from && armed.calls <= armed.to;
  armed.strikes += strikes;
  return strikes;
}

void Faults::OnSpoolerChange(std::function<void()> change) {
  const std::lock_guard lock(mutex_);
  spoolerChange_ = std::move(change);
}

void Faults::ChangeSpooler() {
  std::unique_lock lock(mutex_);
  const auto change = spoolerChange_;
  lock.unlock();
  if (change) change();
}

}  // namespace platform
