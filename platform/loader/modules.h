// The table of loaded modules, and the functions of the system libraries.
#pragma once

#include <windef.h>

#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "platform/loader/image_map.h"
#include "platform/loader/resource_table.h"
#include "platform/machine/machine.h"

namespace platform {

// Adds functions to a system library ("comdlg32.dll"), which every computer has. Meant for static
// initialisation: const bool registered = RegisterBuiltIn(u"...", {...});
bool RegisterBuiltIn(std::u16string_view fileName, Machine::EntryPoints entries);
// Returns the exports of a system library; null when there is no such library.
const Machine::EntryPoints* FindBuiltIn(std::u16string_view fileName);

// Returns the loader features of the system version of the current computer.
LoaderFeatures SystemLoaderFeatures();

struct LoadedModule {
  LoadedModule() = default;
  LoadedModule(const LoadedModule&) = delete;
  ~LoadedModule();

  HMODULE handle = nullptr;
  std::u16string path;                       // as GetModuleFileNameW returns it
  std::filesystem::path file;                // empty for registered modules
  std::unique_ptr<MappedImage> image;        // of a Windows image
  void* library = nullptr;                   // of a shared object, from dlopen
  Machine::EntryPoints entries;              // of registered modules
  int references = 0;                        // loads without a matching free
  std::unique_ptr<ResourceTable> resources;  // read on first use
};

class ModuleTable {
 public:
  // Detaches and closes all loaded modules.
  void UnloadAll();
  void Register(std::u16string_view fileName, Machine::EntryPoints entries);
  void Unregister(std::u16string_view fileName);
  // Returns null and sets the last error when the module cannot be loaded.
  HMODULE Load(std::u16string_view name);
  bool Free(HMODULE module);
  FARPROC Entry(HMODULE module, LPCSTR name) const;
  // Returns the path of a module; empty for an invalid handle.
  std::u16string Path(HMODULE module) const;
  // Returns the resources of a module, valid until it is freed; null for a module without a file.
  const ResourceTable* Resources(HMODULE module) const;
  int References() const;

 private:
  LoadedModule* Get(HMODULE module) const;
  const Machine::EntryPoints* Find(std::u16string_view name, LoadedModule& module) const;
  void Remove(const LoadedModule* module);

  // Recursive, because DllMain runs under this lock and may call the loader.
  mutable std::recursive_mutex mutex_;
  std::map<std::u16string, Machine::EntryPoints> registered_;  // by folded file name
  std::vector<std::unique_ptr<LoadedModule>> modules_;
};

}  // namespace platform
