// Modules: LoadLibrary, GetProcAddress and their file names.
#include <algorithm>

#include "platform/machine/last_error.h"
#include "platform/machine/machine_impl.h"
#include "platform/machine/text.h"

using namespace platform;

HMODULE WINAPI LoadLibraryW(LPCWSTR fileName) { return LoadLibraryExW(fileName, nullptr, 0); }

// The altered search path makes no difference: the host's loader searches for the imports of a
// shared object beside it.
HMODULE WINAPI LoadLibraryExW(LPCWSTR fileName, HANDLE, DWORD) {
  Machine& machine = Machine::Current();
  if (machine.faults.ShouldFail(Fault::kModule) || fileName == nullptr || *fileName == 0) {
    SetLastError(ERROR_MOD_NOT_FOUND);
    return nullptr;
  }
  return machine.impl().modules.Load(fileName);
}

BOOL WINAPI FreeLibrary(HMODULE module) {
  return Succeeds(Machine::Current().impl().modules.Free(module) ? ERROR_SUCCESS
                                                                 : ERROR_INVALID_HANDLE);
}

FARPROC WINAPI GetProcAddress(HMODULE module, LPCSTR name) {
  Machine& machine = Machine::Current();
  const FARPROC entry = machine.faults.ShouldFail(Fault::kModule)
                            ? nullptr
                            : machine.impl().modules.Entry(module, name);
  if (entry == nullptr) SetLastError(ERROR_PROC_NOT_FOUND);
  return entry;
}

// Truncates a path that does not fit and returns `size`. Windows Vista and later add a terminator
// and set an error; earlier systems do neither.
DWORD WINAPI GetModuleFileNameW(HMODULE module, LPWSTR fileName, DWORD size) {
  constexpr DWORD kVista = 6;
  Machine& machine = Machine::Current();
  const std::u16string path =
      module == nullptr ? machine.executablePath() : machine.impl().modules.Path(module);
  if (path.empty() || fileName == nullptr || size == 0) {
    SetLastError(path.empty() ? ERROR_MOD_NOT_FOUND : ERROR_INSUFFICIENT_BUFFER);
    return 0;
  }
  if (path.size() < size) {
    CopyTerminated(path, fileName, size);
    return static_cast<DWORD>(path.size());
  }
  if (machine.os().major < kVista) {
    std::copy_n(path.data(), size, fileName);
    return size;
  }
  CopyTerminated(path, fileName, size);
  SetLastError(ERROR_INSUFFICIENT_BUFFER);
  return size;
}
