// What stands behind Machine.
#pragma once

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

// What the computer is and who is asking.
struct Facts {
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

// One printer and the number that stays its own as long as it exists.
struct StoredPrinter {
  int64_t id = 0;
  PrinterSetup setup;
};

// Facts and printers as the store holds them in one of its states.
struct Known {
  uint64_t state = 0;
  Facts facts;
  std::map<std::u16string, StoredPrinter> printers;  // by folded name
};

// An open printer, or the print server, which OpenPrinterW opens where no name is given.
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
  // A temporary computer keeps its store in memory; its directory is removed with it.
  Impl(Faults& faults, std::filesystem::path stateDirectory, bool isTemporary);
  ~Impl();

  std::shared_ptr<const Known> ReadKnown();
  void ChangeFacts(const std::function<void(Facts&)>& change);
  // Null: there is none.
  std::shared_ptr<const StoredPrinter> FindPrinter(std::u16string_view name);
  std::shared_ptr<const StoredPrinter> FindPrinter(const PrinterHandle& handle);
  bool DropPrinter(std::u16string_view name);
  // Learns the code pages, as a process does when it starts.
  void LearnCodePages();
  std::filesystem::path CurrentFolder();

  std::filesystem::path state;  // the drives' folders lie in it
  bool temporary;
  Store store;
  HandleTable<HANDLE, PrinterHandle> printerHandles;
  HandleTable<HKEY, RegistryHandle> registryHandles;
  ModuleTable modules;
  ProfileCache profiles;
  std::atomic<UINT> ansiPage = 932;
  std::atomic<bool> codePage932 = true;

  std::mutex mutex;  // guards what follows
  std::shared_ptr<const Known> known;
  // What SetCurrentDirectoryW has chosen; empty: the directory of the host's process.
  std::filesystem::path currentFolder;
  std::vector<Broadcast> broadcasts;
  std::vector<ShellCall> shellCalls;
  std::optional<std::vector<std::u16string>> fonts;  // nothing: not asked for yet
  std::map<std::thread::id, std::unique_ptr<Desk>> desks;

  // Process-wide counts when the computer was made.
  int heapsBefore = 0;
  int blocksBefore = 0;
};

// Runs a call that a kind of fault strikes with an error of its own; a failure of the store is a
// general one.
template <typename Call>
DWORD Served(Fault kind, DWORD struck, const Call& call) {
  Machine& machine = Machine::Current();
  if (machine.faults.Strike(kind)) return struck;
  try {
    return call(machine.impl());
  } catch (const std::exception&) {
    return ERROR_GEN_FAILURE;
  }
}

// Where the store keeps a printer's data.
std::u16string DataPath(int64_t printer);
// The registry key of a printer, whose name is one key even when it is that of a connection.
std::u16string PrinterKey(std::u16string_view name);

// The folder that a drive of a computer lies in; Z: is the host's root.
std::filesystem::path DriveFolder(const std::filesystem::path& state, char16_t drive);

}  // namespace platform
