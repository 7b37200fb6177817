// The implementation of Machine: its store and the state of the API functions.
#pragma once

#include <winreg.h>

#include <atomic>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/kernel32/profile_cache.h"
#include "platform/loader/modules.h"
#include "platform/machine/desk.h"
#include "platform/machine/handle_table.h"
#include "platform/machine/machine.h"
#include "platform/machine/store.h"

namespace platform {

// The settings of a computer and of its user.
struct MachineSettings {
  OsVersion os;
  bool administrator = true;
  bool registryReadable = true;
  bool registryWritable = true;
  std::u16string executablePath = u"C:\\WINDOWS\\system32\\app.exe";
  bool highContrast = false;
  UINT ansiPage = 932;
  bool codePage932 = true;
  bool hideExtensions = true;
};

// A printer and its id, which is never reused.
struct StoredPrinter {
  int64_t id = 0;
  PrinterSetup setup;
};

// The settings and printers read from one version of the store.
struct CachedState {
  uint64_t version = 0;
  MachineSettings settings;
  std::map<std::u16string, StoredPrinter> printers;  // by folded name
};

// An open printer, or the print server, which OpenPrinterW opens when the name is empty.
struct PrinterHandle {
  std::u16string name;
  int64_t id = 0;  // 0: the server
  ACCESS_MASK access = 0;
  bool IsServer() const { return id == 0; }
};

struct RegistryHandle {
  std::u16string key;  // below HKEY_LOCAL_MACHINE, without empty parts
  REGSAM access = 0;
};

struct Machine::Impl {
  // A temporary computer stores its values in memory and removes its directory at the end.
  Impl(Faults& faults, std::filesystem::path stateDirectory, bool isTemporary);
  ~Impl();

  std::shared_ptr<const CachedState> ReadState();
  void ChangeSettings(const std::function<void(MachineSettings&)>& change);
  // Returns null when the printer does not exist.
  std::shared_ptr<const StoredPrinter> FindPrinter(std::u16string_view name);
  std::shared_ptr<const StoredPrinter> FindPrinter(const PrinterHandle& handle);
  bool DropPrinter(std::u16string_view name);
  // Reads the code pages of this process from the settings.
  void LoadCodePages();
  std::filesystem::path CurrentFolder();

  std::filesystem::path state;  // contains the drives' folders
  bool temporary;
  Store store;
  HandleTable<HANDLE, PrinterHandle> printerHandles;
  HandleTable<HKEY, RegistryHandle> registryHandles;
  ModuleTable modules;
  ProfileCache profiles;
  std::atomic<UINT> ansiPage = 932;
  std::atomic<bool> codePage932 = true;

  std::mutex mutex;  // guards the members below
  std::shared_ptr<const CachedState> cached;
  // The directory set by SetCurrentDirectoryW; empty: that of the host's process.
  std::filesystem::path currentFolder;
  std::vector<Broadcast> broadcasts;
  std::vector<ShellCall> shellCalls;
  std::optional<std::vector<std::u16string>> fonts;  // nullopt: not read yet
  std::map<std::thread::id, std::unique_ptr<Desk>> desks;

  // Counts of the whole process when the computer was created.
  int heapsBefore = 0;
  int blocksBefore = 0;
};

// Runs a call and returns its error code: `injected` when a fault of this kind applies,
// ERROR_GEN_FAILURE when the store fails.
template <typename Call>
DWORD Serve(Fault kind, DWORD injected, const Call& call) {
  Machine& machine = Machine::Current();
  if (machine.faults.ShouldFail(kind)) return injected;
  try {
    return call(machine.impl());
  } catch (const std::exception&) {
    return ERROR_GEN_FAILURE;
  }
}

// Returns the store path of a printer's data.
std::u16string DataPath(int64_t printer);
// Returns the registry key of a printer. Backslashes of a connection's name become commas, as the
// system writes them.
std::u16string PrinterKey(std::u16string_view name);

// Returns the host folder of a drive; Z: is the host's root.
std::filesystem::path DriveFolder(const std::filesystem::path& state, char16_t drive);

}  // namespace platform
