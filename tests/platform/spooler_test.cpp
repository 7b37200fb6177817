// Printer data as its callers see it, and what persists. Killed processes: tests/faults.
#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "tests/support/test_machine.h"

namespace {

namespace fs = std::filesystem;
using platform::Machine;
using support::OpenedPrinter;

constexpr char16_t kName[] = u"倉庫 1F,LPT1:";

class Spooler : public testing::Test {
 protected:
  void SetUp() override { machine_->AddPrinter({.name = kName}); }
  // Queries the value "Private DevMode" into `value_`. Returns the error.
  DWORD Get(HANDLE printer, DWORD size) {
    return GetPrinterDataW(printer, const_cast<LPWSTR>(u"private devmode"), nullptr,
                           reinterpret_cast<BYTE*>(&value_), size, &needed_);
  }
  static DWORD Set(HANDLE printer) {
    DWORD value = kValue;
    return SetPrinterDataW(printer, const_cast<LPWSTR>(u"Private DevMode"), REG_BINARY,
                           reinterpret_cast<BYTE*>(&value), sizeof value);
  }

  static constexpr DWORD kValue = 0x04030201;
  std::unique_ptr<Machine> machine_ = Machine::Create();
  DWORD value_ = 0, needed_ = 0;
};

TEST_F(Spooler, PrinterDataIsWrittenWithAdministerRightsOnly) {
  const OpenedPrinter printer(kName), used(kName, PRINTER_ACCESS_USE), withoutAccess(kName, 0);
  EXPECT_EQ(Set(printer), ERROR_SUCCESS);
  EXPECT_EQ(Get(printer, 3), ERROR_MORE_DATA);
  EXPECT_EQ(needed_, sizeof kValue);
  for (HANDLE each : {HANDLE(used), HANDLE(withoutAccess)}) {
    EXPECT_EQ(Set(each), ERROR_ACCESS_DENIED);
    EXPECT_EQ(Get(each, 4), ERROR_SUCCESS);
  }
  machine_->SetPermission(kName, true, false);
  EXPECT_EQ(Set(printer), ERROR_ACCESS_DENIED);
  machine_->AddPrinter({.name = kName});
  EXPECT_EQ(Set(printer), ERROR_PRINTER_DELETED) << "another printer of the same name";
  EXPECT_EQ(Get(printer, 4), ERROR_FILE_NOT_FOUND);
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
      machine->SetAdministrator(false);
      last();
    });
  };
  const auto expectInstalled = [&](bool installed) {
    for (const auto& each : {machine.get(), other.get()}) {
      EXPECT_EQ(each->FindPrinter(u"p").has_value(), installed);
      EXPECT_EQ(each->administrator(), !installed);
    }
  };
  const auto setData = [] {
    return SetPrinterDataW(OpenedPrinter(u"P"), const_cast<LPWSTR>(u"v"), REG_BINARY, nullptr, 0);
  };
  EXPECT_THROW(install([] { throw 1; }), int);
  expectInstalled(false);
  const auto failingWrite = [&] {
    machine->faults.FailNth(platform::Fault::kStore, 1);
    EXPECT_EQ(setData(), ERROR_GEN_FAILURE);
    EXPECT_EQ(setData(), ERROR_GEN_FAILURE) << "no write after a failure";
  };
  EXPECT_THROW(install(failingWrite), std::runtime_error) << "though the caller ignores it";
  expectInstalled(false);
  install([&] { EXPECT_FALSE(other->FindPrinter(u"P")); });
  expectInstalled(true);
  EXPECT_EQ(setData(), ERROR_SUCCESS);
  EXPECT_TRUE(other->RemoveData(u"P", u"V"));
  EXPECT_FALSE(machine->RemoveData(u"P", u"v"));
}

TEST_F(State, UnusableDirectoryIsRejectedByName) {
  std::ofstream(directory_ / "file") << "x";
  fs::create_directory(directory_ / "damaged");
  std::ofstream(directory_ / "damaged" / "computer.sqlite") << std::string(4096, 'x');
  fs::create_directory(directory_ / "shared");
  fs::permissions(directory_ / "shared", fs::perms::group_write, fs::perm_options::add);
  for (const fs::path& path : {directory_ / "file", directory_ / "file/below",
                               directory_ / "damaged", directory_ / "shared"}) {
    EXPECT_THAT([&] { Machine::Open(path); },
                testing::ThrowsMessage<std::runtime_error>(testing::HasSubstr(path)));
  }
}

// A process that can read the database can lock it.
TEST_F(State, DirectoryAndDatabaseArePrivate) {
  const fs::path fresh = directory_ / "a/fresh";
  const auto machine = Machine::Open(fresh);
  EXPECT_EQ(fs::status(fresh).permissions(), fs::perms::owner_all);
  constexpr fs::perms kOthers = fs::perms::group_all | fs::perms::others_all;
  for (const auto& entry : fs::directory_iterator(fresh))
    EXPECT_TRUE(entry.is_directory() || (entry.status().permissions() & kOthers) == fs::perms::none)
        << entry;
}

}  // namespace
