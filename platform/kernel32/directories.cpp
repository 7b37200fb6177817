// The current directory and those of the system.
#include "platform/machine/last_error.h"
#include "platform/machine/machine_impl.h"
#include "platform/machine/text.h"

using namespace platform;

namespace {

UINT CopyDirectory(const std::u16string& directory, LPWSTR out, UINT size) {
  if (out == nullptr || size <= directory.size()) return static_cast<UINT>(directory.size() + 1);
  CopyTerminated(directory, out, size);
  return static_cast<UINT>(directory.size());
}

}  // namespace

// Returns the required size, terminator included, and writes nothing when the buffer is too small.
DWORD WINAPI GetCurrentDirectoryW(DWORD size, LPWSTR directory) {
  Machine& machine = Machine::Current();
  return CopyDirectory(machine.WindowsPath(machine.impl().CurrentFolder()), directory, size);
}

BOOL WINAPI SetCurrentDirectoryW(LPCWSTR directory) {
  if (View(directory).empty()) return Fail(ERROR_INVALID_PARAMETER);
  Machine& machine = Machine::Current();
  const std::filesystem::path folder = machine.HostPath(directory);
  std::error_code failed;
  if (!std::filesystem::exists(folder, failed)) return Fail(ERROR_FILE_NOT_FOUND);
  if (!std::filesystem::is_directory(folder, failed)) return Fail(ERROR_DIRECTORY);
  const std::lock_guard lock(machine.impl().mutex);
  machine.impl().currentFolder = folder;
  return TRUE;
}

UINT WINAPI GetSystemDirectoryW(LPWSTR directory, UINT size) {
  return CopyDirectory(Machine::Current().systemDirectory(), directory, size);
}
UINT WINAPI GetWindowsDirectoryW(LPWSTR directory, UINT size) {
  return CopyDirectory(Machine::Current().windowsDirectory(), directory, size);
}
