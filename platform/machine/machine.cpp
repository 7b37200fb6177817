#include "platform/machine/machine.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <stdexcept>
#include <utility>

#include "platform/kernel32/heap.h"
#include "platform/machine/desk.h"
#include "platform/machine/font_families.h"
#include "platform/machine/machine_impl.h"
#include "platform/machine/text.h"

namespace platform {

namespace {

namespace fs = std::filesystem;

constexpr char kDatabase[] = "computer.sqlite";

// The open computers, the newest last.
struct Computers {
  std::mutex mutex;
  std::vector<Machine*> alive;
  std::atomic<Machine*> current = nullptr;
};
Computers& All() {
  static Computers computers;
  return computers;
}

void Enter(Machine* machine) {
  const std::lock_guard lock(All().mutex);
  All().alive.push_back(machine);
  All().current = machine;
}

void Leave(Machine* machine) {
  const std::lock_guard lock(All().mutex);
  std::erase(All().alive, machine);
  All().current = All().alive.empty() ? nullptr : All().alive.back();
}

fs::path TemporaryDirectory() {
  std::string name = (fs::temp_directory_path() / "computer-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary directory");
  return name;
}

std::runtime_error Unusable(const fs::path& directory, const std::string& reason) {
  return std::runtime_error("The state directory " + directory.string() + " " + reason);
}

// Creates the database when it is missing, and removes the access of other users to it and to the
// files that SQLite creates beside it.
void MakeDatabasePrivate(const fs::path& database) {
  // Opening and closing an existing file would release this process's locks on it.
  const int made =
      open(database.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
  if (made >= 0) close(made);
  constexpr fs::perms kOthers = fs::perms::group_all | fs::perms::others_all;
  for (const char* suffix : {"", "-wal", "-shm"}) {
    std::error_code ignored;  // missing, or owned by another user
    fs::permissions(database.string() + suffix, kOthers, fs::perm_options::remove, ignored);
  }
}

// Creates the state directory when it is missing, accessible to its user only. Refuses a directory
// that other users can write: they could replace the driver file or the database. A directory that
// others can read is accepted; its database is made private, because a reader can lock it.
fs::path PrepareDirectory(const fs::path& directory) {
  std::error_code failed;
  fs::create_directories(directory.parent_path(), failed);
  if (mkdir(directory.c_str(), S_IRWXU) != 0 && errno != EEXIST)
    failed = {errno, std::generic_category()};
  struct stat status = {};
  if (stat(directory.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) {
    throw Unusable(directory, "cannot be created" +
                                  (failed ? ": " + failed.message() : std::string()) +
                                  "; name a directory that can be written.");
  }
  if ((status.st_mode & (S_IWGRP | S_IWOTH)) != 0) {
    throw Unusable(directory,
                   "can be written by other users; take that right away (chmod go-w), or "
                   "name another directory.");
  }
  const fs::path state = fs::canonical(directory);
  MakeDatabasePrivate(state / kDatabase);
  return state;
}

// Appends an item and drops the oldest beyond 64.
template <typename Item>
void AddRecent(std::vector<Item>& items, Item item) {
  constexpr size_t kMost = 64;
  if (items.size() == kMost) items.erase(items.begin());
  items.push_back(std::move(item));
}

}  // namespace

Machine::Impl::Impl(Faults& faults, fs::path stateDirectory, bool isTemporary)
    : state(std::move(stateDirectory)),
      temporary(isTemporary),
      store(isTemporary ? fs::path() : state / kDatabase, faults),
      heapsBefore(PrivateHeaps()),
      blocksBefore(HeapBlockCount()) {
  fs::create_directories(DriveFolder(state, u'C') / "WINDOWS/system32/spool/drivers/w32x86/3");
}

Machine::Impl::~Impl() {
  if (!temporary) return;
  std::error_code ignored;
  fs::remove_all(state, ignored);
}

Machine::Machine() = default;

Machine::~Machine() {
  if (impl_ != nullptr) {
    // The detach of a module and the end of a window still use this computer.
    std::exchange(impl_->desks, {}).clear();
    impl_->modules.UnloadAll();
  }
  Leave(this);
}

std::unique_ptr<Machine> Machine::Create() {
  std::unique_ptr<Machine> machine(new Machine);
  machine->impl_ = std::make_unique<Impl>(machine->faults, TemporaryDirectory(), true);
  Enter(machine.get());
  return machine;
}

std::unique_ptr<Machine> Machine::Open(const fs::path& stateDirectory) {
  const fs::path state = PrepareDirectory(stateDirectory);
  std::unique_ptr<Machine> machine(new Machine);
  try {
    machine->impl_ = std::make_unique<Impl>(machine->faults, state, false);
  } catch (const std::exception& reason) {
    throw Unusable(state, std::string("cannot be used: ") + reason.what());
  }
  machine->impl_->LoadCodePages();
  Enter(machine.get());
  return machine;
}

Machine& Machine::Current() {
  if (Machine* machine = All().current) return *machine;
  static const std::unique_ptr<Machine> fallback = [] {
    std::unique_ptr<Machine> machine(new Machine);
    machine->impl_ = std::make_unique<Impl>(machine->faults, TemporaryDirectory(), true);
    return machine;
  }();
  return *fallback;
}

// ---- modules ----

void Machine::RegisterModule(std::u16string_view fileName, EntryPoints entries) {
  impl_->modules.Register(fileName, std::move(entries));
}

void Machine::UnregisterModule(std::u16string_view fileName) {
  impl_->modules.Unregister(fileName);
}

void Machine::InstallModule(std::u16string_view windowsPath, const fs::path& sharedObject) {
  const fs::path link = HostPath(windowsPath);
  const fs::path target = fs::absolute(sharedObject);
  std::error_code none;
  if (fs::read_symlink(link, none) == target) return;
  // Other processes may load the module meanwhile: the link is replaced in one step.
  fs::path beside = link;
  beside += "." + std::to_string(getpid());
  fs::create_directories(link.parent_path());
  fs::remove(beside);
  fs::create_symlink(target, beside);
  fs::rename(beside, link);
}

int Machine::OpenModules() const { return impl_->modules.References(); }

// ---- state that tests and hosts inspect ----

int Machine::OpenPrinterHandles() const { return impl_->printerHandles.Size(); }
int Machine::OpenRegistryKeys() const { return impl_->registryHandles.Size(); }
int Machine::LiveHeaps() const { return PrivateHeaps() - impl_->heapsBefore; }
int Machine::LiveAllocations() const { return HeapBlockCount() - impl_->blocksBefore; }

std::vector<Broadcast> Machine::Broadcasts() const {
  const std::lock_guard lock(impl_->mutex);
  return impl_->broadcasts;
}

std::vector<ShellCall> Machine::ShellCalls() const {
  const std::lock_guard lock(impl_->mutex);
  return impl_->shellCalls;
}

void Machine::RecordBroadcast(Broadcast broadcast) {
  const std::lock_guard lock(impl_->mutex);
  AddRecent(impl_->broadcasts, std::move(broadcast));
}

void Machine::RecordShellCall(ShellCall call) {
  const std::lock_guard lock(impl_->mutex);
  call.number = impl_->shellCalls.empty() ? 1 : impl_->shellCalls.back().number + 1;
  AddRecent(impl_->shellCalls, std::move(call));
}

void Machine::SetInstalledFontFamilies(std::vector<std::u16string> families) {
  const std::lock_guard lock(impl_->mutex);
  impl_->fonts = std::move(families);
}

std::vector<std::u16string> Machine::InstalledFontFamilies() const {
  const std::lock_guard lock(impl_->mutex);
  if (!impl_->fonts) impl_->fonts = SystemFontFamilies();
  return *impl_->fonts;
}

Desk& Machine::desk() {
  const std::lock_guard lock(impl_->mutex);
  std::unique_ptr<Desk>& desk = impl_->desks[std::this_thread::get_id()];
  if (desk == nullptr) desk = std::make_unique<Desk>();
  return *desk;
}

}  // namespace platform
