#include "platform/machine/faults.h"

#include <limits>
#include <utility>

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
int Faults::Failures(Fault kind) const { return At(kind).failures; }

bool Faults::ShouldFail(Fault kind) {
  const std::lock_guard lock(mutex_);
  Armed& armed = armed_[static_cast<size_t>(kind)];
  ++armed.calls;
  const bool fails = armed.calls >= armed.from && armed.calls <= armed.to;
  armed.failures += fails;
  return fails;
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
