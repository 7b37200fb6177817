#include "platform/loader/modules.h"

#include <dlfcn.h>
#include <winbase.h>

#include <algorithm>

#include "platform/machine/machine_impl.h"
#include "platform/machine/text.h"

namespace platform {
namespace {

std::map<std::u16string, Machine::EntryPoints>& BuiltIns() {
  static std::map<std::u16string, Machine::EntryPoints> modules;
  return modules;
}

std::u16string_view FileNameOf(std::u16string_view path) {
  const size_t cut = path.find_last_of(u"\\/:");
  return cut == std::u16string_view::npos ? path : path.substr(cut + 1);
}

// Appends ".dll" to a name without an extension. A trailing dot says that the name has none.
std::u16string AddExtension(std::u16string_view name) {
  std::u16string completed(name);
  if (FileNameOf(name).find(u'.') == std::u16string_view::npos) completed += u".dll";
  if (completed.back() == u'.') completed.pop_back();
  return completed;
}

// Returns the candidate files of a name: the file itself when the name has a folder, else one in
// each folder of the search order.
std::vector<std::filesystem::path> CandidateFiles(const std::u16string& name) {
  const Machine& machine = Machine::Current();
  if (FileNameOf(name).size() != name.size()) return {machine.HostPath(name)};
  std::vector<std::filesystem::path> places;
  for (const std::u16string& folder :
       {machine.driverDirectory() + u"\\3", machine.driverDirectory(), machine.systemDirectory(),
        machine.windowsDirectory()}) {
    places.push_back(machine.HostPath(folder + u'\\' + name));
  }
  return places;
}

// Opens the file of a module as an image or a shared object; sets the last error when it is
// neither.
bool Open(LoadedModule& module) {
  try {
    const std::vector<std::byte> bytes = ReadWhole(module.file);
    if (IsImage(bytes)) {
      module.image = std::make_unique<MappedImage>(bytes, SystemLoaderFeatures());
      module.handle = module.image->handle();
      return true;
    }
  } catch (const ImageError& error) {
    SetLastError(error.code);
    return false;
  }
  module.library = dlopen(module.file.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (module.library == nullptr) SetLastError(ERROR_BAD_EXE_FORMAT);
  return module.library != nullptr;
}

BOOL CallMain(const LoadedModule& module, DWORD reason) {
  if (module.image != nullptr) return module.image->CallMain(reason);
  using DllMainProc = BOOL(WINAPI*)(HINSTANCE, DWORD, LPVOID);
  const auto main = module.library == nullptr
                        ? nullptr
                        : reinterpret_cast<DllMainProc>(dlsym(module.library, "DllMain"));
  return main == nullptr || main(module.handle, reason, nullptr);
}

}  // namespace

LoadedModule::~LoadedModule() {
  if (library != nullptr) dlclose(library);
}

bool RegisterBuiltIn(std::u16string_view fileName, Machine::EntryPoints entries) {
  BuiltIns()[FoldCase(fileName)].merge(entries);
  return true;
}

const Machine::EntryPoints* FindBuiltIn(std::u16string_view fileName) {
  const auto found = BuiltIns().find(FoldCase(fileName));
  return found == BuiltIns().end() ? nullptr : &found->second;
}

LoaderFeatures SystemLoaderFeatures() {
  const OsVersion os = Machine::Current().os();
  return {.fillsCookie = os.IsAtLeast(6, 2), .guardsCalls = os.IsAtLeast(6, 3)};
}

void ModuleTable::UnloadAll() {
  const std::lock_guard lock(mutex_);
  while (!modules_.empty()) Remove(modules_.back().get());
}

// Detaches, removes and closes a module.
void ModuleTable::Remove(const LoadedModule* module) {
  const auto found = std::find_if(modules_.begin(), modules_.end(),
                                  [&](const auto& each) { return each.get() == module; });
  const std::unique_ptr<LoadedModule> last = std::move(*found);
  modules_.erase(found);
  CallMain(*last, DLL_PROCESS_DETACH);
}

void ModuleTable::Register(std::u16string_view fileName, Machine::EntryPoints entries) {
  const std::lock_guard lock(mutex_);
  registered_[FoldCase(FileNameOf(fileName))] = std::move(entries);
}

void ModuleTable::Unregister(std::u16string_view fileName) {
  const std::lock_guard lock(mutex_);
  registered_.erase(FoldCase(FileNameOf(fileName)));
}

// Finds a module by name. Returns the functions of a registered module or a system library;
// otherwise sets module.file when a file exists.
const Machine::EntryPoints* ModuleTable::Find(std::u16string_view name,
                                              LoadedModule& module) const {
  const std::u16string fileName = FoldCase(FileNameOf(name));
  const auto found = registered_.find(fileName);
  if (found != registered_.end()) return &found->second;
  for (const std::filesystem::path& place : CandidateFiles(std::u16string(name))) {
    std::error_code failed;
    if (!std::filesystem::is_regular_file(place, failed)) continue;
    module.file = place;
    return nullptr;
  }
  // The system libraries are in the system directory only.
  const std::u16string_view folder = name.substr(0, name.size() - fileName.size());
  const std::u16string system = Machine::Current().systemDirectory() + u'\\';
  return folder.empty() || EqualIgnoringCase(folder, system) ? FindBuiltIn(fileName) : nullptr;
}

HMODULE ModuleTable::Load(std::u16string_view given) {
  const std::lock_guard lock(mutex_);
  const std::u16string name = AddExtension(given);
  const Machine& machine = Machine::Current();
  auto module = std::make_unique<LoadedModule>();
  const Machine::EntryPoints* entries = Find(name, *module);
  if (entries == nullptr && module->file.empty()) {
    SetLastError(ERROR_MOD_NOT_FOUND);
    return nullptr;
  }
  const bool bare = FileNameOf(name).size() == name.size();
  module->path = entries == nullptr ? machine.WindowsPath(module->file)
                 : bare             ? machine.systemDirectory() + u'\\' + name
                                    : name;
  for (const auto& loaded : modules_) {
    if (loaded->file == module->file && EqualIgnoringCase(loaded->path, module->path)) {
      ++loaded->references;
      return loaded->handle;
    }
  }
  if (entries != nullptr) {
    module->entries = *entries;
  } else if (!Open(*module)) {
    return nullptr;
  }
  if (module->handle == nullptr) module->handle = reinterpret_cast<HMODULE>(module.get());
  module->references = 1;
  const LoadedModule* const added = modules_.emplace_back(std::move(module)).get();
  if (CallMain(*added, DLL_PROCESS_ATTACH)) return added->handle;
  Remove(added);
  SetLastError(ERROR_DLL_INIT_FAILED);
  return nullptr;
}

bool ModuleTable::Free(HMODULE handle) {
  const std::lock_guard lock(mutex_);
  LoadedModule* module = Get(handle);
  if (module != nullptr && --module->references == 0) Remove(module);
  return module != nullptr;
}

LoadedModule* ModuleTable::Get(HMODULE handle) const {
  const auto found = std::find_if(modules_.begin(), modules_.end(), [handle](const auto& module) {
    return module->handle == handle;
  });
  return found == modules_.end() ? nullptr : found->get();
}

FARPROC ModuleTable::Entry(HMODULE handle, LPCSTR name) const {
  const std::lock_guard lock(mutex_);
  const LoadedModule* module = Get(handle);
  if (module == nullptr || IS_INTRESOURCE(name)) return nullptr;
  if (module->image != nullptr) return module->image->Entry(name);
  if (module->library != nullptr) return reinterpret_cast<FARPROC>(dlsym(module->library, name));
  const auto found = module->entries.find(name);
  return found == module->entries.end() ? nullptr : found->second;
}

std::u16string ModuleTable::Path(HMODULE handle) const {
  const std::lock_guard lock(mutex_);
  const LoadedModule* module = Get(handle);
  return module == nullptr ? std::u16string() : module->path;
}

const ResourceTable* ModuleTable::Resources(HMODULE handle) const {
  const std::lock_guard lock(mutex_);
  LoadedModule* module = Get(handle);
  if (module == nullptr || module->file.empty()) return nullptr;
  if (module->resources == nullptr) {
    module->resources = module->image != nullptr
                            ? std::make_unique<ResourceTable>(module->image->Resources())
                            : std::make_unique<ResourceTable>(module->file);
  }
  return module->resources.get();
}

int ModuleTable::References() const {
  const std::lock_guard lock(mutex_);
  int sum = 0;
  for (const auto& module : modules_) sum += module->references;
  return sum;
}

}  // namespace platform
