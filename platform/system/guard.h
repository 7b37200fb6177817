// The border between the stand-in and a module: no C++ exception passes through a module's frames,
// which know nothing of ours.
#pragma once

#include <windows.h>

namespace platform {

// Keeps the exception that is being handled for RethrowKept (platform/machine.h); when one is kept
// already on this thread, the first stays.
void KeepThrown() noexcept;

// A function of the platform as a module may call it: answers 0 after it threw. Arguments without a
// type ("...") cannot be passed on: a function that takes them is called as it is and must not
// throw.
template <auto Function>
struct Guarded {
  static constexpr auto Call = Function;
};
template <typename Answer, typename... Parameters, Answer(WINAPI* Function)(Parameters...)>
struct Guarded<Function> {
  static Answer WINAPI Call(Parameters... parameters) noexcept {
    try {
      return Function(parameters...);
    } catch (...) {
      KeepThrown();
      return Answer();
    }
  }
};

// The same as GetProcAddress answers it.
template <auto Function>
FARPROC EntryPoint() {
  return reinterpret_cast<FARPROC>(reinterpret_cast<void (*)()>(+Guarded<Function>::Call));
}

}  // namespace platform
