// The simulated computer: its settings, drives, printers, registry and modules. Hosts and tests use
// it; the module never does. Every member may be called from any thread.
#pragma once

#include <windef.h>

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/machine/data_value.h"
#include "platform/machine/faults.h"
#include "platform/machine/os_version.h"
#include "platform/machine/printer_setup.h"
#include "platform/machine/recorded_calls.h"

namespace platform {

class Desk;  // platform/machine/desk.h

class Machine {
 public:
  // Creates a computer in memory. Its drives are in a temporary folder, which is removed with the
  // computer. The new computer becomes the current one.
  static std::unique_ptr<Machine> Create();
  // Opens the computer stored in a state directory, which is created when missing. The computer
  // becomes the current one. Throws std::runtime_error, with a sentence for the user, when the
  // directory or its database cannot be used.
  static std::unique_ptr<Machine> Open(const std::filesystem::path& stateDirectory);
  // Returns the computer that the API functions serve: the one opened last, or an empty one when
  // none is open.
  static Machine& Current();
  // Throws std::runtime_error, with a sentence for the user, when the store cannot be written now.
  void RequireWritable();
  // Runs `body` as one transaction of the store, which includes the writes that the API functions
  // make on this thread. Nothing is stored when `body` throws, when one of its writes fails (which
  // is thrown at the end) or when the process is killed. Other processes read the old values
  // meanwhile, and their writes wait.
  void Transaction(const std::function<void()>& body);
  ~Machine();
  Machine(const Machine&) = delete;
  Machine& operator=(const Machine&) = delete;

  Faults faults;

  // ---- settings ----
  OsVersion os() const;
  void SetOs(const OsVersion& os);
  // Returns true when the calling token is a member of the built-in Administrators group.
  bool administrator() const;
  void SetAdministrator(bool yes);
  // The ANSI code page (932, 936, 949, 1252 or 65001), and whether code page 932 is installed; it
  // always is when it is the ANSI page. A change reaches this process at once and other processes
  // when they open the computer again. SetAnsiPage throws std::invalid_argument for any other page.
  UINT ansiPage() const;
  void SetAnsiPage(UINT page);
  bool codePage932() const;
  void SetCodePage932(bool installed);
  // True when the user hides the extensions of file names.
  bool hidesExtensions() const;
  void SetHidesExtensions(bool yes);
  // GetModuleFileNameW(NULL). Default: C:\WINDOWS\system32\app.exe.
  std::u16string executablePath() const;
  void SetExecutablePath(std::u16string path);
  // True when the user's colours are light text on black. Default: black text on a light
  // background.
  bool highContrast() const;
  void SetHighContrast(bool yes);

  // ---- drives ----
  // Returns the host's file for a Windows path, ignoring the letter case of each part. C: is a
  // folder of the state directory, Z: the host's root. A path that begins with a separator is on
  // C:. A relative path starts at the current directory, initially that of the host's process; a
  // relative path with another drive starts at that drive's root. ".." stops at the root. Parts
  // that do not exist have the letter case given.
  std::filesystem::path HostPath(std::u16string_view windowsPath) const;
  // Returns the Windows path of a host file: on C: when the file is below its folder, else on Z:.
  std::u16string WindowsPath(const std::filesystem::path& hostPath) const;
  std::u16string windowsDirectory() const;  // C:\WINDOWS
  std::u16string systemDirectory() const;   // C:\WINDOWS\system32
  // C:\WINDOWS\system32\spool\drivers\w32x86, without the version folder.
  std::u16string driverDirectory() const;
  // Creates missing folders. Throws std::runtime_error when the file cannot be written.
  void WriteFile(std::u16string_view windowsPath, std::string_view bytes);
  std::optional<std::string> ReadFile(std::u16string_view windowsPath) const;
  // Replaces a profile file, which callers name by this full path, with one in memory that holds
  // these bytes. MemoryProfile returns its current bytes.
  void SetMemoryProfile(std::u16string_view path, std::string_view bytes);
  std::string MemoryProfile(std::u16string_view path);

  // ---- the spooler ----
  void AddPrinter(const PrinterSetup& setup);    // replaces a printer of the same name
  bool RemovePrinter(std::u16string_view name);  // with its data and default record
  std::vector<PrinterSetup> Printers() const;    // in the order they were added
  std::optional<PrinterSetup> FindPrinter(std::u16string_view name) const;
  void SetPermission(std::u16string_view name, bool administer, bool writable);
  // The printer's default settings record (PRINTER_INFO_2 pDevMode); empty when it has none. Any
  // bytes are stored; callers of the spooler get no record that is shorter than its own dmSize +
  // dmDriverExtra. Setting throws std::runtime_error when the printer does not exist.
  void SetDefaultRecord(std::u16string_view name, const std::vector<std::byte>& record);
  std::vector<std::byte> DefaultRecord(std::u16string_view name) const;
  // Printer data by printer and value name. Names ignore letter case, as the spooler does.
  void SetData(std::u16string_view printer, std::u16string_view value, DataValue data);
  std::optional<DataValue> Data(std::u16string_view printer, std::u16string_view value) const;
  std::map<std::u16string, DataValue> AllData(std::u16string_view printer) const;
  bool RemoveData(std::u16string_view printer, std::u16string_view value);

  // ---- the registry (HKEY_LOCAL_MACHINE below the given key) ----
  void SetRegistry(std::u16string_view key, std::u16string_view value, DataValue data);
  std::optional<DataValue> Registry(std::u16string_view key, std::u16string_view value) const;
  // Returns all values at and below a key as "key\value" and data; those of all keys when the key
  // is empty.
  std::map<std::u16string, DataValue> AllRegistry(std::u16string_view key) const;
  void RemoveRegistryKey(std::u16string_view key);  // with its values and subkeys
  void SetRegistryAccess(bool readable, bool writable);

  // ---- modules ----
  using EntryPoints = std::map<std::string, FARPROC>;
  // Registers a module that LoadLibraryW finds by its file name, in any folder and letter case,
  // before it searches for a file.
  void RegisterModule(std::u16string_view fileName, EntryPoints entries);
  void UnregisterModule(std::u16string_view fileName);
  // Links a host's file at a Windows path, replacing an existing link, so that LoadLibraryW loads
  // it.
  void InstallModule(std::u16string_view windowsPath, const std::filesystem::path& sharedObject);
  // Returns the number of LoadLibraryW calls without a matching FreeLibrary.
  int OpenModules() const;

  // ---- state that tests and hosts inspect ----
  int OpenPrinterHandles() const;
  int OpenRegistryKeys() const;
  int LiveHeaps() const;        // private heaps created and not destroyed
  int LiveAllocations() const;  // blocks of all heaps that are not freed
  std::vector<Broadcast> Broadcasts() const;
  std::vector<ShellCall> ShellCalls() const;
  // The API functions record calls with these.
  void RecordBroadcast(Broadcast broadcast);
  void RecordShellCall(ShellCall call);
  // Replaces the host's own fonts (fontconfig).
  void SetInstalledFontFamilies(std::vector<std::u16string> families);
  std::vector<std::u16string> InstalledFontFamilies() const;

  // Returns the desk of the calling thread, created on first use. Each thread that shows sheets has
  // its own windows and user.
  Desk& desk();

  // Writes a small file whose version resource GetFileVersionInfoW reads.
  void WriteVersionedFile(std::u16string_view windowsPath, DWORD versionMs, DWORD versionLs);

  struct Impl;
  Impl& impl() { return *impl_; }

 private:
  Machine();
  std::unique_ptr<Impl> impl_;
};

}  // namespace platform
