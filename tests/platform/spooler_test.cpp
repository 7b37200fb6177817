// Printers, printer data and the registry as their callers see them, and what persists. Killed
// processes: tests/host.
#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <tuple>

#include "tests/support/guarded_buffer.h"
#include "tests/support/test_machine.h"

namespace {

namespace fs = std::filesystem;
using platform::Machine;
using support::GuardedBuffer;
using support::OpenedPrinter;

constexpr char16_t kName[] = u"倉庫 1F,LPT1:";

class Spooler : public testing::Test {
 protected:
  void SetUp() override { machine_->AddPrinter({.name = kName, .helpFile = u"", .attributes = 8}); }
  static std::string Joined(std::initializer_list<DWORD> numbers) {
    std::string log;
    for (const DWORD number : numbers) log += (log.empty() ? "" : ",") + std::to_string(number);
    return log + " ";
  }
  std::unique_ptr<Machine> machine_ = Machine::Create();
  DWORD needed_ = 0, type_ = 0;
};

// The tests of the driver check the contents of the levels.
TEST_F(Spooler, EachLevelFitsTheSizeItRequires) {
  const OpenedPrinter printer(u"倉庫 1f,lpt1:");
  std::vector<std::byte> record(220);
  record[68] = std::byte{220};  // dmSize
  machine_->SetDefaultRecord(kName, record);
  for (const DWORD level : {1u, 2u, 3u, 4u, 5u, 6u}) {
    const auto get = [&](BYTE* out, DWORD size) {
      const bool answers =
          level == 3   ? GetPrinterDriverW(printer, nullptr, 3, out, size, &needed_)
          : level == 6 ? GetPrinterDriverDirectoryW(nullptr, nullptr, 1, out, size, &needed_)
                       : GetPrinterW(printer, level, out, size, &needed_);
      return answers ? 0 : GetLastError();
    };
    EXPECT_EQ(get(nullptr, 0), ERROR_INSUFFICIENT_BUFFER);
    const GuardedBuffer buffer((needed_ + 15) / 16 * 16);
    EXPECT_EQ(get(buffer.As<BYTE>(), needed_ - 1), ERROR_INSUFFICIENT_BUFFER);
    EXPECT_EQ(get(buffer.As<BYTE>(), needed_), 0u);
  }
}

// Logs errors (5 access denied, 6 invalid handle, 234 more data, 1905 printer deleted), the
// required size, and the first byte and type of the result.
TEST_F(Spooler, PrinterDataHasTypeSizeAndAccessRights) {
  std::string log;
  const auto get = [&](HANDLE from, DWORD size, const char16_t* name = u"Private DevMode") {
    BYTE out[] = {9, 9, 9, 9, 9};
    const DWORD error = GetPrinterDataW(from, const_cast<LPWSTR>(name), &type_,
                                        size == 0 ? nullptr : out, size, &needed_);
    EXPECT_EQ(out[4], 9);
    log += Joined({error, needed_, out[0], type_});
  };
  const auto set = [&](HANDLE to, DWORD size) {
    BYTE bytes[] = {1, 2, 3, 4};
    log += Joined({SetPrinterDataW(to, const_cast<LPWSTR>(u"PRIVATE devmode"), REG_BINARY,
                                   size == 0 ? nullptr : bytes, size)});
  };
  const OpenedPrinter printer(kName), used(kName, PRINTER_ACCESS_USE), withoutAccess(kName, 0);
  get(printer, 4);
  set(printer, 4);
  get(printer, 3);
  get(printer, 5, u"private devmode");
  set(printer, 0);
  get(printer, 0);
  EXPECT_EQ(log, "2,0,9,0 0 234,4,9,3 0,4,1,3 0 0,0,9,3 ");
  EXPECT_EQ(machine_->AllData(kName).size(), 1u) << "one value under every spelling";
  log.clear();
  for (HANDLE each : {HANDLE(used), HANDLE(withoutAccess)}) set(each, 4), get(each, 4);
  machine_->SetPermission(kName, true, false);
  set(printer, 4);
  machine_->AddPrinter({.name = kName});
  set(printer, 4);
  get(printer, 4);
  EXPECT_EQ(log, "5 0,0,9,3 5 0,0,9,3 5 1905 2,0,9,3 ")
      << "finally another printer of the same name";
}

TEST_F(Spooler, RegistryValuesHaveTypeSizeAndAccessRights) {
  HKEY key = nullptr;
  DWORD value = 0x01020304, size = 3;
  const auto data = reinterpret_cast<BYTE*>(&value);
  std::string log;
  const auto use = [&](REGSAM access) {
    RegCreateKeyExW(HKEY_LOCAL_MACHINE, u"A", 0, nullptr, 0, access, nullptr, &key, nullptr);
    const auto query = [&] {
      const LSTATUS error = RegQueryValueExW(key, u"syncPRINT", nullptr, &type_, data, &size);
      log += Joined({static_cast<DWORD>(error), size, type_});
    };
    query();
    log += Joined({static_cast<DWORD>(RegSetValueExW(key, u"SyncPrint", 0, REG_DWORD, data, 4))});
    for (int i = 0; i < 2; ++i) query();
    RegCloseKey(key);
  };
  EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, u"A", 0, KEY_READ, &key), ERROR_FILE_NOT_FOUND);
  use(KEY_READ | KEY_WRITE);
  EXPECT_EQ(log, "2,3,0 0 234,4,4 0,4,4 ");
  use(KEY_READ);
  use(KEY_SET_VALUE);
  EXPECT_EQ(log.substr(22), "0,4,4 5 0,4,4 0,4,4 5,4,4 0 5,4,4 5,4,4 ");
  EXPECT_EQ(RegCloseKey(key), ERROR_INVALID_HANDLE);
}

constexpr char16_t kPrinters[] = u"SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\";

TEST_F(Spooler, RemovedPrinterLosesItsRegistryValues) {
  machine_->AddPrinter({.name = u"\\\\server\\p"});
  const std::u16string keys[] = {u",,server,p\\Data", u"倉庫 1f,lpt1:", u"倉庫 1F,LPT1:2"};
  for (const auto& key : keys) {
    machine_->SetRegistry(kPrinters + key, u"SyncPrint", {REG_DWORD, {std::byte{1}}});
  }
  EXPECT_EQ(machine_->AllRegistry(u"system\\currentcontrolset").size(), 3u);
  EXPECT_TRUE(machine_->RemovePrinter(u"\\\\SERVER\\p") && machine_->RemovePrinter(kName));
  const auto left = machine_->AllRegistry(u"");
  ASSERT_EQ(left.size(), 1u);
  EXPECT_EQ(left.begin()->first, kPrinters + keys[2] + u"\\SyncPrint");
  EXPECT_TRUE(machine_->Registry(kPrinters + keys[2], u"syncprint"));
}

struct State : testing::Test {
  ~State() override { fs::remove_all(directory_); }
  std::string name_ = (fs::temp_directory_path() / "state-XXXXXX").string();
  fs::path directory_ = mkdtemp(name_.data());
};

TEST_F(State, TransactionStoresAllOrNothing) {
  const auto other = Machine::Open(directory_), machine = Machine::Open(directory_);
  const auto install = [&machine](const auto& last) {
    machine->Transaction([&] {
      machine->AddPrinter({.name = u"P"});
      machine->SetRegistry(u"A", u"v", {REG_DWORD, {}});
      machine->SetAdministrator(false);
      last();
    });
  };
  const auto nothingIsStored = [&] {
    for (const auto& each : {machine.get(), other.get()}) {
      EXPECT_FALSE(each->FindPrinter(u"P") || each->Registry(u"A", u"v"));
      EXPECT_TRUE(each->administrator());
    }
  };
  EXPECT_THROW(install([] { throw 1; }), int);
  nothingIsStored();
  // A failed write rolls everything back, even when a caller of the spooler ignores it.
  const auto set = [&] {
    const support::OpenedPrinter printer(u"P");
    return SetPrinterDataW(printer, const_cast<LPWSTR>(u"v"), REG_BINARY, nullptr, 0);
  };
  EXPECT_THROW(install([&] {
                 machine->faults.FailNth(platform::Fault::kStore, 1);
                 EXPECT_EQ(set(), ERROR_GEN_FAILURE);
                 EXPECT_EQ(set(), ERROR_GEN_FAILURE) << "no write after a failure";
               }),
               std::runtime_error);
  nothingIsStored();
  install([&] { EXPECT_FALSE(other->FindPrinter(u"P")); });
  EXPECT_EQ(set(), ERROR_SUCCESS);
  EXPECT_TRUE(other->FindPrinter(u"p") && !other->administrator());
  EXPECT_TRUE(other->RemoveData(u"P", u"V"));
  EXPECT_FALSE(machine->RemoveData(u"P", u"v"));
  machine->RemoveRegistryKey(u"a");
  EXPECT_FALSE(other->Registry(u"A", u"v"));
}

TEST_F(State, UnusableDirectoryIsRejectedByName) {
  std::ofstream(directory_ / "file") << "x";
  fs::create_directory(directory_ / "damaged");
  std::ofstream(directory_ / "damaged" / "computer.sqlite") << std::string(4096, 'x');
  fs::create_directory(directory_ / "shared");
  fs::permissions(directory_ / "shared", fs::perms::group_write, fs::perm_options::add);
  for (const fs::path& path :
       {directory_ / "file/below", directory_ / "damaged", directory_ / "shared"}) {
    const auto names = testing::ThrowsMessage<std::runtime_error>(testing::HasSubstr(path));
    EXPECT_THAT([&] { Machine::Open(path); }, names);
  }
}

// A process that can read the database can lock it.
TEST_F(State, DirectoryAndDatabaseArePrivate) {
  const auto mode = [](const fs::path& path) { return fs::status(path).permissions(); };
  constexpr fs::perms kOthers = fs::perms::group_all | fs::perms::others_all;
  const fs::path fresh = directory_ / "a/fresh", old = directory_ / "old";
  Machine::Open(fresh);
  EXPECT_EQ(mode(fresh), fs::perms::owner_all);
  // A directory of an earlier version, which other users can read.
  fs::create_directory(old);
  fs::permissions(old, fs::perms(0755));
  std::ofstream(old / "computer.sqlite");
  fs::permissions(old / "computer.sqlite", fs::perms(0644));
  const auto machine = Machine::Open(old);
  for (const fs::path& folder : {fresh, old})
    for (const auto& entry : fs::directory_iterator(folder))
      EXPECT_TRUE(entry.is_directory() || (mode(entry) & kOthers) == fs::perms::none) << entry;
}

TEST_F(State, DestroyedComputerRemovesItsFiles) {
  const auto outer = Machine::Create();
  auto inner = Machine::Create();
  inner->WriteFile(u"C:\\x", "1");
  const fs::path file = inner->HostPath(u"C:\\x");
  EXPECT_EQ(&Machine::Current(), inner.get());
  inner.reset();
  EXPECT_TRUE(!fs::exists(file) && &Machine::Current() == outer.get());
}

}  // namespace
