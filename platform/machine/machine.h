// The switchboard of the stand-in platform: what one computer is, has and allows. Hosts and tests
// use it; the module never does. All members may be used from any thread.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

// Throws what was kept on this thread while a module ran: nothing that a User, a callback or the
// platform throws passes through a module's frames, the call that met it answers 0, or as when
// nobody is at the desk. Callers of an export ask once it has returned.
void RethrowKept();

class Desk;   // platform/machine/desk.h
class Store;  // printers, printer data, registry and machine facts in one SQLite database

// Which calls a fault applies to. Each kind counts its own calls.
// kStore is each value written to what the computer keeps, as on a full disk. kSpoolerChange fails
// no call: when it strikes, another program changes the printer just before that call of the
// spooler. The information structures need more bytes from then on, and OnSpoolerChange's function
// runs.
enum class Fault {
  kAllocation,
  kSpooler,
  kSpoolerChange,
  kRegistry,
  kFile,
  kModule,
  kWindow,
  kStore,
  kCount
};

// Makes the n-th call of a kind fail as it would on a computer that runs out of something.
class Faults {
 public:
  // The n-th call from now (1 is the next) fails, once.
  void FailNth(Fault kind, int n);
  // Every call from the n-th on fails, until Clear.
  void FailFrom(Fault kind, int n);
  void Clear();
  // Calls of a kind since the last FailNth, FailFrom or Clear.
  int Calls(Fault kind) const;
  // Whether an armed fault has struck since it was armed, and how often.
  bool Struck(Fault kind) const { return Strikes(kind) > 0; }
  int Strikes(Fault kind) const;
  // Sets what else another program changes when kSpoolerChange strikes, until Clear.
  void OnSpoolerChange(std::function<void()> change);
  // Asked by the platform at the start of each call that can fail. Counts; true: fail now.
  bool Strike(Fault kind);
  // Runs OnSpoolerChange's function.
  void ChangeSpooler();

 private:
  struct Armed {
    int from = 0, to = 0;
    int calls = 0;
    int strikes = 0;
  };
  Armed At(Fault kind) const;
  void Arm(Fault kind, const Armed& armed);

  mutable std::mutex mutex_;
  Armed armed_[static_cast<int>(Fault::kCount)];
  std::function<void()> spoolerChange_;
};

struct OsVersion {
  DWORD major = 10;
  DWORD minor = 0;
  DWORD servicePack = 0;
  DWORD platformId = 2;  // VER_PLATFORM_WIN32_NT; 1 is VER_PLATFORM_WIN32_WINDOWS
  BYTE productType = 1;  // VER_NT_WORKSTATION; 2 domain controller, 3 server
  bool verifies = true;  // false: VerifyVersionInfoW fails, so that callers fall back

  // Returns true for this version of the NT family and newer ones.
  bool IsAtLeast(DWORD wantedMajor, DWORD wantedMinor) const {
    return platformId == VER_PLATFORM_WIN32_NT &&
           (major != wantedMajor ? major > wantedMajor : minor >= wantedMinor);
  }
};

// One printer as the spooler keeps it.
struct PrinterSetup {
  std::u16string name;
  std::u16string driverName = u"VELA QM610r";
  std::u16string portName = u"LPT1:";
  std::u16string printProcessor = u"winprint";
  std::u16string helpFile = u"QM610rDRV1.HLP";  // in the driver directory; empty: no help file
  std::u16string dataFile = u"QM610rDRV1.DLL";
  DWORD attributes = 0;
  bool administer = true;  // whether PRINTER_ALL_ACCESS may be opened
  bool writable = true;    // whether SetPrinterDataW is allowed
};

struct DataValue {
  DWORD type = 0;
  std::vector<std::byte> bytes;
};

// A broadcast or a started document that the computer has seen; the newest are kept for tests and
// hosts.
struct Broadcast {
  UINT message;
  WPARAM wParam;
  std::u16string text;
  UINT flags;
  UINT timeout;
};
struct ShellCall {
  std::u16string verb;
  std::u16string file;
  int show;
  int number = 0;  // counts the calls from 1 on
};

class Machine {
 public:
  // A fresh computer in memory with its drives in a folder of its own that is removed with it. It
  // becomes the current one.
  static std::unique_ptr<Machine> Create();
  // The computer kept in a state directory (created when missing). It becomes the current one.
  // Throws std::runtime_error with a sentence for the user when the directory or its database
  // cannot be used.
  static std::unique_ptr<Machine> Open(const std::filesystem::path& stateDirectory);
  // The computer that the API functions serve. There is always one: without Create or Open an empty
  // one.
  static Machine& Current();
  // Writes for a trial; throws std::runtime_error with a sentence for the user when nothing can be
  // kept now.
  void RequireWritable();
  // Keeps all of the store that the body writes on this thread, through the platform's functions
  // too, or nothing: when the body throws, when one of its writes fails (thrown then) and when the
  // process is killed. Other processes wait with their writes meanwhile.
  void Together(const std::function<void()>& body);
  ~Machine();
  Machine(const Machine&) = delete;
  Machine& operator=(const Machine&) = delete;

  Faults faults;

  // ---- what the computer is ----
  OsVersion os() const;
  void SetOs(const OsVersion& os);
  bool administrator()
      const;  // whether the calling token is a member of the built-in Administrators group
  void SetAdministrator(bool yes);
  // The ANSI code page of this process (932, 936, 949, 1252 or 65001) and whether code page 932 is
  // installed; when it is the ANSI page it always is. A process learns both when it starts: other
  // processes keep theirs. Throws std::invalid_argument for another page.
  UINT ansiPage() const;
  void SetAnsiPage(UINT page);
  bool codePage932() const;
  void SetCodePage932(bool installed);
  // Whether file names are displayed without their extensions, as the user prefers.
  bool hidesExtensions() const;
  void SetHidesExtensions(bool yes);
  std::u16string executablePath()
      const;  // GetModuleFileNameW(NULL); default C:\WINDOWS\system32\app.exe
  void SetExecutablePath(std::u16string path);
  // Whether the user's colours are light text on black. Default: black text on a light face.
  bool highContrast() const;
  void SetHighContrast(bool yes);

  // ---- drives ----
  // The host's file for a Windows path: letter case ignored part by part, C: below the state
  // directory, Z: the host's root. A path that begins with a separator is on C:. A relative path
  // starts at the current directory, at first that of the host's process; with a drive in front of
  // it at the drive's root, unless the current directory is on that drive. ".." stops at the root.
  // Missing parts keep the case given.
  std::filesystem::path HostPath(std::u16string_view windowsPath) const;
  // The Windows path of a host file (C: when below it, else Z:).
  std::u16string WindowsPath(const std::filesystem::path& hostPath) const;
  std::u16string windowsDirectory() const;  // C:\WINDOWS
  std::u16string systemDirectory() const;   // C:\WINDOWS\system32
  std::u16string driverDirectory()
      const;  // C:\WINDOWS\system32\spool\drivers\w32x86, without the version folder
  void WriteFile(std::u16string_view windowsPath, std::string_view bytes);  // folders are created
  std::optional<std::string> ReadFile(std::u16string_view windowsPath) const;
  // Has the profile file that calls name by a full path lie in memory alone, with these bytes. The
  // second answers them as they are now.
  void HoldProfile(std::u16string_view path, std::string_view bytes);
  std::string HeldProfile(std::u16string_view path);

  // ---- the spooler ----
  void AddPrinter(const PrinterSetup& setup);    // replaces a printer of the same name
  bool RemovePrinter(std::u16string_view name);  // with its data and default record
  std::vector<PrinterSetup> Printers() const;    // in the order they were added
  std::optional<PrinterSetup> FindPrinter(std::u16string_view name) const;
  void SetPermission(std::u16string_view name, bool administer, bool writable);
  // The printer's default settings record, as PRINTER_INFO_2 pDevMode gives it; empty: none. Kept
  // as given; a record shorter than its own dmSize + dmDriverExtra is not handed out to callers of
  // the spooler. Throws when there is no such printer.
  void SetDefaultRecord(std::u16string_view name, const std::vector<std::byte>& record);
  std::vector<std::byte> DefaultRecord(std::u16string_view name) const;
  // Printer data by printer and value name (letter case of value names is ignored, as the spooler
  // does).
  void SetData(std::u16string_view printer, std::u16string_view value, DataValue data);
  std::optional<DataValue> Data(std::u16string_view printer, std::u16string_view value) const;
  std::map<std::u16string, DataValue> AllData(std::u16string_view printer) const;
  bool RemoveData(std::u16string_view printer, std::u16string_view value);

  // ---- the registry (HKEY_LOCAL_MACHINE below the given key) ----
  void SetRegistry(std::u16string_view key, std::u16string_view value, DataValue data);
  std::optional<DataValue> Registry(std::u16string_view key, std::u16string_view value) const;
  // All values at and below a key: "key\value" -> data. An empty key gives all.
  std::map<std::u16string, DataValue> AllRegistry(std::u16string_view key) const;
  void RemoveRegistryKey(std::u16string_view key);  // with all at and below it
  void SetRegistryAccess(bool readable, bool writable);

  // ---- modules ----
  using EntryPoints = std::map<std::string, FARPROC>;
  // A module that LoadLibraryW finds by file name (any folder, letter case ignored) before it looks
  // for a shared object.
  void RegisterModule(std::u16string_view fileName, EntryPoints entries);
  void UnregisterModule(std::u16string_view fileName);
  // Puts a host's shared object at a Windows path (a link, replaced when it stands). LoadLibraryW
  // then loads it.
  void InstallModule(std::u16string_view windowsPath, const std::filesystem::path& sharedObject);
  // LoadLibraryW calls not yet matched by FreeLibrary, for tests of leaks.
  int OpenModules() const;

  // ---- what tests and hosts look at afterwards ----
  int OpenPrinterHandles() const;
  int OpenRegistryKeys() const;
  int LiveHeaps() const;        // private heaps created and not destroyed
  int LiveAllocations() const;  // blocks of all heaps and global memory not freed
  std::vector<Broadcast> Broadcasts() const;
  std::vector<ShellCall> ShellCalls() const;
  // Recording side, used by the API functions.
  void RecordBroadcast(Broadcast broadcast);
  void RecordShellCall(ShellCall call);
  void SetInstalledFontFamilies(
      std::vector<std::u16string> families);  // replaces the system's own (fontconfig)
  std::vector<std::u16string> InstalledFontFamilies() const;

  // The windows of the calling thread and its user; created on first use. Threads that show sheets
  // at the same time have one each.
  Desk& desk();

  // Version resource of a file made for the stand-in: writes a small file that GetFileVersionInfoW
  // understands.
  void WriteVersionedFile(std::u16string_view windowsPath, DWORD versionMs, DWORD versionLs);

  struct Impl;
  Impl& impl() { return *impl_; }

 private:
  Machine();
  std::unique_ptr<Impl> impl_;
};

}  // namespace platform
