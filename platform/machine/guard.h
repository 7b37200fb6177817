// Exception guard between the stand-in and a module: no C++ exception unwinds through the frames of
// a module, which have no unwind data that this process understands.
#pragma once

#include <windef.h>

namespace platform {

// Stores the current exception for RethrowPendingException. Does nothing when this thread has a
// stored exception already.
void CaptureException() noexcept;

// Throws the exception that a User, a callback or the platform threw on this thread while a module
// ran, if there is one. The call that met the exception returned 0 to the module, or ended as
// cancelled. Callers of an export call this after the export returned.
void RethrowPendingException();

// Runs a callback on behalf of a module; returns 0 when it throws.
template <typename Body>
auto RunGuarded(Body body) noexcept -> decltype(body()) {
  try {
    return body();
  } catch (...) {
    CaptureException();
    return decltype(body())();
  }
}

// An API function with the exception guard around it.
template <auto Function>
struct Guarded;
template <typename Result, typename... Parameters, Result(WINAPI* Function)(Parameters...)>
struct Guarded<Function> {
  static Result WINAPI Call(Parameters... parameters) noexcept {
    return RunGuarded([&] { return Function(parameters...); });
  }
};

template <typename Function>
FARPROC AsEntryPoint(Function* function) {
  return reinterpret_cast<FARPROC>(reinterpret_cast<void (*)()>(function));
}
// Returns a guarded function as GetProcAddress returns it.
template <auto Function>
FARPROC EntryPoint() {
  return AsEntryPoint(Guarded<Function>::Call);
}

}  // namespace platform
