// Faults that a test injects into the simulated computer.
#pragma once

#include <functional>
#include <mutex>

namespace platform {

// Kinds of calls that can fail; each kind counts its own calls. kStore is every write of a value,
// as on a full disk. kSpoolerChange fails no call: another program changes the printer just before
// the spooler call that it applies to. The information structures need more bytes from then on, and
// the function of OnSpoolerChange runs.
enum class Fault {
  kAllocation,
  kSpooler,
  kSpoolerChange,
  kRegistry,
  kFile,
  kModule,
  kWindow,
  kStore,
  kCount
};

// Makes the n-th call of a kind fail as it would on a computer that runs out of a resource.
class Faults {
 public:
  // Fails the n-th call from now, once; 1 is the next.
  void FailNth(Fault kind, int n);
  // Fails every call from the n-th on, until Clear.
  void FailFrom(Fault kind, int n);
  void Clear();
  // Returns the number of calls of a kind since the last FailNth, FailFrom or Clear.
  int Calls(Fault kind) const;
  // Return whether, and how often, a call of a kind has failed since its fault was set.
  bool HasFailed(Fault kind) const { return Failures(kind) > 0; }
  int Failures(Fault kind) const;
  // Sets the change that another program makes when kSpoolerChange applies, until Clear.
  void OnSpoolerChange(std::function<void()> change);
  // Counts a call and returns true when it has to fail. Every API function that can fail calls this
  // first.
  bool ShouldFail(Fault kind);
  // Runs the function of OnSpoolerChange.
  void ChangeSpooler();

 private:
  struct Armed {
    int from = 0, to = 0;
    int calls = 0;
    int failures = 0;
  };
  Armed At(Fault kind) const;
  void Arm(Fault kind, const Armed& armed);

  mutable std::mutex mutex_;
  Armed armed_[static_cast<int>(Fault::kCount)];
  std::function<void()> spoolerChange_;
};

}  // namespace platform
