// What outlives a process: the state directory, shared by several and by killed ones.
#include <windows.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <winspool.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "platform/machine.h"
#include "tests/support/test_machine.h"

namespace {

namespace fs = std::filesystem;
using platform::Machine;

constexpr char kStateVariable[] = "PLATFORM_WRITER_STATE";
constexpr char16_t kValue[] = u"Private DevMode";
constexpr DWORD kValueSize = 3338;
constexpr int kWrites = 200;

class State : public testing::Test {
 protected:
  void SetUp() override {
    std::string name = (fs::temp_directory_path() / "state-XXXXXX").string();
    ASSERT_NE(mkdtemp(name.data()), nullptr);
    directory_ = name;
  }
  void TearDown() override { fs::remove_all(directory_); }
  fs::path directory_;
};

TEST_F(State, EverythingIsThereForTheNextProcess) {
  platform::PrinterSetup setup;
  setup.name = u"倉庫 1F,LPT1:";
  setup.attributes = 0x48;
  {
    const auto machine = Machine::Open(directory_ / "made" / "when missing");
    setup.writable = false;
    machine->AddPrinter(setup);
    machine->SetDefaultRecord(setup.name, {std::byte{1}, std::byte{0}});
    machine->SetData(setup.name, u"Name\xD800", {REG_SZ, {std::byte{9}}});
    machine->SetRegistry(u"A\\B", u"v", {REG_DWORD, {}});
    machine->SetOs({5, 2, 1, 2, 3, false});
    machine->SetAdministrator(false);
    machine->SetExecutablePath(u"C:\\x.exe");
    machine->SetRegistryAccess(false, true);
    machine->WriteFile(u"C:\\WINDOWS\\a.ini", "text");
  }
  const auto machine = Machine::Open(directory_ / "made" / "when missing");
  ASSERT_EQ(machine->Printers().size(), 1u);
  EXPECT_EQ(machine->Printers()[0].attributes, 0x48u);
  EXPECT_FALSE(machine->Printers()[0].writable);
  EXPECT_EQ(machine->DefaultRecord(u"倉庫 1f,LPT1:").size(), 2u);
  EXPECT_EQ(machine->Data(setup.name, u"name\xD800")->type, REG_SZ);
  EXPECT_TRUE(machine->Registry(u"a\\b", u"V"));
  EXPECT_EQ(machine->os().productType, 3);
  EXPECT_FALSE(machine->os().verifies);
  EXPECT_FALSE(machine->administrator());
  EXPECT_EQ(machine->executablePath(), u"C:\\x.exe");
  EXPECT_EQ(machine->ReadFile(u"c:\\windows\\A.INI"), "text");
  HKEY key = nullptr;
  EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, u"A\\B", 0, KEY_READ, &key),
            LSTATUS{ERROR_ACCESS_DENIED});
}

TEST_F(State, TwoComputersOfOneDirectorySeeEachOther) {
  const auto writer = Machine::Open(directory_);
  const auto reader = Machine::Open(directory_);
  EXPECT_EQ(reader->os().major, 10u);
  writer->SetOs({6, 1, 0, 2, 1});
  writer->AddPrinter({.name = u"P"});
  EXPECT_EQ(reader->os().major, 6u) << "no stale fact";
  EXPECT_TRUE(reader->FindPrinter(u"p"));
}

// What a body does together is kept whole or not at all, and is nobody else's before its end.
TEST_F(State, WhatIsDoneTogetherIsKeptTogether) {
  const auto other = Machine::Open(directory_);
  const auto machine = Machine::Open(directory_);
  const auto install = [&machine](const std::function<void()>& last) {
    machine->Together([&] {
      machine->AddPrinter({.name = u"P"});
      machine->SetRegistry(u"A", u"v", {REG_DWORD, {}});
      machine->SetAdministrator(false);
      last();
    });
  };
  EXPECT_THROW(install([] { throw 1; }), int);
  EXPECT_FALSE(machine->FindPrinter(u"P"));
  EXPECT_FALSE(machine->Registry(u"A", u"v"));
  EXPECT_TRUE(machine->administrator()) << "no fact of what was undone";
  // No room for more: what fails inside undoes all, though a caller of the spooler hides it.
  signal(SIGXFSZ, SIG_IGN);
  rlimit old = {};
  getrlimit(RLIMIT_FSIZE, &old);
  const rlimit tight = {1 << 20, old.rlim_max};
  setrlimit(RLIMIT_FSIZE, &tight);
  EXPECT_THROW(install([] {
                 std::vector<BYTE> large(8 << 20);
                 const support::OpenedPrinter printer(u"P");
                 EXPECT_EQ(SetPrinterDataW(printer, const_cast<LPWSTR>(kValue), REG_BINARY,
                                           large.data(), static_cast<DWORD>(large.size())),
                           ERROR_GEN_FAILURE);
               }),
               std::runtime_error);
  setrlimit(RLIMIT_FSIZE, &old);
  EXPECT_FALSE(machine->FindPrinter(u"P"));
  EXPECT_FALSE(other->FindPrinter(u"P"));
  install([&] { EXPECT_FALSE(other->FindPrinter(u"P")); });
  EXPECT_TRUE(other->FindPrinter(u"P"));
  EXPECT_FALSE(other->administrator());
  other->AddPrinter({.name = u"Q"});
  machine->RemoveRegistryKey(u"a");
  EXPECT_FALSE(other->Registry(u"A", u"v"));
}

TEST_F(State, ManyOpenANewDirectoryAtOnce) {
  std::vector<std::thread> threads;
  std::atomic<int> opened = 0;
  for (int i = 0; i < 8; ++i) {
    threads.emplace_back([&opened, i, this] {
      const auto machine = Machine::Open(directory_);
      machine->AddPrinter({.name = std::u16string(1, static_cast<char16_t>(u'A' + i))});
      ++opened;
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(opened, 8);
  EXPECT_EQ(Machine::Open(directory_)->Printers().size(), 8u);
}

TEST_F(State, UnusableDirectoriesAreRefusedWithASentence) {
  std::ofstream(directory_ / "file") << "x";
  fs::create_directory(directory_ / "damaged");
  std::ofstream(directory_ / "damaged" / "computer.sqlite") << std::string(4096, 'x');
  for (const char* name : {"file", "file/below", "damaged"}) {
    try {
      Machine::Open(directory_ / name);
      FAIL() << name;
    } catch (const std::runtime_error& refusal) {
      EXPECT_NE(std::string(refusal.what()).find((directory_ / name).string()), std::string::npos)
          << refusal.what();
    }
  }
  EXPECT_NE(&Machine::Current(), nullptr);
}

TEST_F(State, AComputerTakesItsFilesAlongAndGivesTheLastOneBack) {
  const auto outer = Machine::Create();
  fs::path file;
  {
    const auto inner = Machine::Create();
    inner->WriteFile(u"C:\\x", "1");
    file = inner->HostPath(u"C:\\x");
    EXPECT_EQ(&Machine::Current(), inner.get());
  }
  EXPECT_FALSE(fs::exists(file));
  EXPECT_EQ(&Machine::Current(), outer.get());
}

// Run in a process of its own by the test below: writes values whose bytes are all alike and tells
// each number once its value is kept.
TEST(StateWriter, DISABLED_Writes) {
  const char* directory = std::getenv(kStateVariable);
  if (directory == nullptr) GTEST_SKIP() << "runs as another test's second process";
  const auto machine = Machine::Open(directory);
  const support::OpenedPrinter printer;
  for (int i = 1; i <= kWrites; ++i) {
    std::vector<BYTE> bytes(kValueSize, static_cast<BYTE>(i));
    ASSERT_EQ(
        SetPrinterDataW(printer, const_cast<LPWSTR>(kValue), REG_BINARY, bytes.data(), kValueSize),
        ERROR_SUCCESS);
    const auto number = static_cast<BYTE>(i);
    ASSERT_EQ(write(STDERR_FILENO, &number, 1), 1);
  }
}

// Starts the writer; *output reads the numbers that it tells.
pid_t StartWriter(const fs::path& directory, int* output) {
  int ends[2] = {};
  EXPECT_EQ(pipe(ends), 0);
  const pid_t child = fork();
  if (child == 0) {
    dup2(ends[1], STDERR_FILENO);
    dup2(ends[1], STDOUT_FILENO);
    close(STDOUT_FILENO);
    close(ends[0]);
    setenv(kStateVariable, directory.c_str(), 1);
    execl("/proc/self/exe", "writer", "--gtest_also_run_disabled_tests",
          "--gtest_filter=StateWriter.DISABLED_Writes", nullptr);
    _exit(127);
  }
  close(ends[1]);
  *output = ends[0];
  return child;
}

TEST_F(State, AKilledWriterLeavesWholeValuesAndAllThatItKept) {
  const auto machine = Machine::Open(directory_);
  machine->AddPrinter({.name = support::kPrinter});
  int killedInside = 0;
  for (int round = 0; round < 12; ++round) {
    machine->RemoveData(support::kPrinter, kValue);
    int output = -1;
    const pid_t child = StartWriter(directory_, &output);
    // Killed after some of its writes, at a moment of its own within the next one.
    const int stopAfter = round * 15;
    BYTE last = 0;
    while (last < stopAfter && read(output, &last, 1) == 1) {
    }
    usleep(static_cast<useconds_t>(round * 37 % 300));
    kill(child, SIGKILL);
    while (read(output, &last, 1) == 1) {
    }
    int status = 0;
    waitpid(child, &status, 0);
    close(output);
    killedInside += WIFSIGNALED(status) && last > 0 && last < kWrites;
    const auto value = machine->Data(support::kPrinter, kValue);
    if (!value) {
      EXPECT_EQ(last, 0) << "a kept value is gone";
      continue;
    }
    ASSERT_EQ(value->bytes.size(), kValueSize);
    const auto first = static_cast<BYTE>(value->bytes[0]);
    EXPECT_TRUE(std::all_of(value->bytes.begin(), value->bytes.end(),
                            [&](std::byte b) { return static_cast<BYTE>(b) == first; }));
    EXPECT_GE(first, last) << "an older value than the last that was kept";
  }
  EXPECT_GE(killedInside, 6) << "the writer must have been killed at work";
}

}  // namespace
