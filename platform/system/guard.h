// The border between the stand-in and a module: no C++ exception passes through a module's frames,
// which know nothing of ours.
#pragma once

#include <windows.h>

namespace platform {

// Keeps the exception that is being handled for RethrowKept (platform/machine.h); when one is kept
// already on this thread, the first stays.
void KeepThrown() noexcept;

// A function of the platform as a module may call it: answers 0 after it threw.
template <auto Function>
struct Guarded;
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

template <typename Function>
FARPROC AsEntryPoint(Function* function) {
  return reinterpret_cast<FARPROC>(reinterpret_cast<void (*)()>(function));
}
// A guarded function as GetProcAddress answers it.
template <auto Function>
FARPROC EntryPoint() {
  return AsEntryPoint(Guarded<Function>::Call);
}

}  // namespace platform
