// The border between the stand-in and a module: no C++ exception passes through a module's frames,
// which know nothing of ours.
#pragma once

#include <windows.h>

namespace platform {

// Keeps the exception that is being handled for RethrowKept (platform/machine/machine.h); when one
// is kept already on this thread, the first stays.
void KeepThrown() noexcept;

// What a body answers that a module has called; 0 after it threw.
template <typename Body>
auto Keeping(Body body) noexcept -> decltype(body()) {
  try {
    return body();
  } catch (...) {
    KeepThrown();
    return decltype(body())();
  }
}

// A function of the platform as a module may call it.
template <auto Function>
struct Guarded;
template <typename Answer, typename... Parameters, Answer(WINAPI* Function)(Parameters...)>
struct Guarded<Function> {
  static Answer WINAPI Call(Parameters... parameters) noexcept {
    return Keeping([&] { return Function(parameters...); });
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
