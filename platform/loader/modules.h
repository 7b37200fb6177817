// Loaded modules.
#pragma once

#include <windows.h>

#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "platform/loader/image_map.h"
#include "platform/loader/resource_table.h"
#include "platform/machine/machine.h"

namespace platform {

// Adds functions to a module of the system's own ("comdlg32.dll") that every computer has. Meant
// for static initialisation: const bool registered = RegisterBuiltIn(u"...", {...});
bool RegisterBuiltIn(std::u16string_view fileName, Machine::EntryPoints entries);
// What such a module exports; null when there is none of that name.
const Machine::EntryPoints* FindBuiltIn(std::u16string_view fileName);

// What the loader of the current machine's system does with images.
LoaderFeatures SystemLoaderFeatures();

struct LoadedModule {
  LoadedModule() = default;
  LoadedModule(const LoadedModule&) = delete;
  ~LoadedModule();

  HMODULE handle = nullptr;
  std::u16string path;                       // as GetModuleFileNameW answers it
  std::filesystem::path file;                // empty for registered modules
  std::unique_ptr<MappedImage> image;        // of a Windows image
  void* library = nullptr;                   // of a shared object, as dlopen answered it
  Machine::EntryPoints entries;              // of registered modules
  int references = 0;                        // loads not yet given back
  std::unique_ptr<ResourceTable> resources;  // read on first use
};

class ModuleTable {
 public:
  // Detaches and closes what is still loaded.
  void UnloadAll();
  void Register(std::u16string_view fileName, Machine::EntryPoints entries);
  void Unregister(std::u16string_view fileName);
  HMODULE Load(std::u16string_view name);  // null with the last error set
  bool Free(HMODULE module);
  FARPROC Entry(HMODULE module, LPCSTR name) const;
  // Empty for no module.
  std::u16string Path(HMODULE module) const;
  // Of a module with a file; null for others. Lives until the module is freed.
  const ResourceTable* Resources(HMODULE module) const;
  int References() const;

 private:
  LoadedModule* Get(HMODULE module) const;
  const Machine::EntryPoints* Find(std::u16string_view name, LoadedModule& module) const;
  void Drop(const LoadedModule* module);

  // The loader's lock is held while DllMain runs, which may call the loader again.
  mutable std::recursive_mutex mutex_;
  std::map<std::u16string, Machine::EntryPoints> registered_;  // by folded file name
  std::vector<std::unique_ptr<LoadedModule>> modules_;
};

}  // namespace platform
