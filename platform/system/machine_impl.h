// What stands behind Machine.
#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "platform/desk.h"
#include "platform/machine.h"
#include "platform/system/handle_table.h"
#include "platform/system/modules.h"
#include "platform/system/profile.h"
#include "platform/system/store.h"

namespace platform {

struct PrinterHandle {
  int64_t printer = 0;  // its number in the store
  ACCESS_MASK access = 0;
};

struct RegistryHandle {
  std::u16string key;  // below HKEY_LOCAL_MACHINE, without empty parts
  REGSAM access = 0;
};

struct Machine::Impl {
  // A temporary computer keeps its store in memory; its directory is removed with it.
  Impl(std::filesystem::path stateDirectory, bool isTemporary);
  ~Impl();

  std::filesystem::path state;  // the drives' folders lie in it
  bool temporary;
  Store store;
  HandleTable<HANDLE, PrinterHandle> printerHandles;
  HandleTable<HKEY, RegistryHandle> registryHandles;
  ModuleTable modules;
  ProfileCache profiles;

  std::mutex mutex;  // guards what follows
  std::vector<Broadcast> broadcasts;
  std::vector<ShellCall> shellCalls;
  bool fontsKnown = false;
  std::vector<std::u16string> fonts;
  std::unique_ptr<Desk> desk;

  // Process-wide counts when the computer was made.
  int heapsBefore = 0;
  int blocksBefore = 0;
};

// The folder that a drive of a computer lies in; Z: is the host's root.
std::filesystem::path DriveFolder(const std::filesystem::path& state, char16_t drive);

}  // namespace platform
