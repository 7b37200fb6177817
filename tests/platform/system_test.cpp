// Versions, tokens, modules, heaps and file versions.
#include <windows.h>
#include <gtest/gtest.h>
#include <shellapi.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "platform/machine.h"
#include "platform/system/resources.h"
#include "tests/support/bin_dir.h"

namespace {

using platform::Fault;
using platform::Machine;

class System : public testing::Test {
 protected:
  std::unique_ptr<Machine> machine_ = Machine::Create();
};

bool AtLeast(DWORD major, DWORD minor, WORD pack = 0) {
  OSVERSIONINFOEXW asked = {};
  asked.dwOSVersionInfoSize = sizeof(asked);
  asked.dwMajorVersion = major;
  asked.dwMinorVersion = minor;
  asked.wServicePackMajor = pack;
  ULONGLONG mask = 0;
  for (const DWORD type : {VER_MAJORVERSION, VER_MINORVERSION, VER_SERVICEPACKMAJOR}) {
    mask = VerSetConditionMask(mask, type, VER_GREATER_EQUAL);
  }
  return VerifyVersionInfoW(&asked, VER_MAJORVERSION | VER_MINORVERSION | VER_SERVICEPACKMAJOR,
                            mask);
}

bool IsProduct(BYTE product) {
  OSVERSIONINFOEXW asked = {};
  asked.dwOSVersionInfoSize = sizeof(asked);
  asked.wProductType = product;
  return VerifyVersionInfoW(&asked, VER_PRODUCT_TYPE,
                            VerSetConditionMask(0, VER_PRODUCT_TYPE, VER_EQUAL));
}

TEST_F(System, VersionsCompareAsOneNumberInParts) {
  const struct {
    platform::OsVersion os;
    DWORD major, minor;
    WORD pack;
    bool atLeast;
  } rows[] = {{{10, 0, 0, 2, 1}, 6, 3, 0, true},  {{6, 3, 0, 2, 1}, 6, 3, 0, true},
              {{6, 2, 0, 2, 1}, 6, 3, 0, false},  {{5, 2, 2, 2, 3}, 5, 1, 3, true},
              {{5, 1, 2, 2, 1}, 5, 1, 3, false},  {{5, 0, 4, 2, 1}, 5, 1, 0, false},
              {{4, 10, 0, 1, 1}, 5, 1, 0, false}, {{3, 51, 5, 2, 1}, 3, 51, 5, true}};
  for (const auto& row : rows) {
    machine_->SetOs(row.os);
    EXPECT_EQ(AtLeast(row.major, row.minor, row.pack), row.atLeast)
        << row.os.major << "." << row.os.minor << " against " << row.major << "." << row.minor;
  }
}

TEST_F(System, TellsProductTypeAndVersion) {
  for (const BYTE product : {VER_NT_WORKSTATION, VER_NT_DOMAIN_CONTROLLER, VER_NT_SERVER}) {
    machine_->SetOs({5, 2, 1, 2, product});
    EXPECT_EQ(IsProduct(VER_NT_WORKSTATION), product == VER_NT_WORKSTATION);
    OSVERSIONINFOEXW version = {};
    version.dwOSVersionInfoSize = sizeof(version);
    ASSERT_TRUE(GetVersionExW(reinterpret_cast<LPOSVERSIONINFOW>(&version)));
    EXPECT_EQ(version.dwMinorVersion, 2u);
    EXPECT_EQ(version.wProductType, product);
    EXPECT_EQ(std::u16string(version.szCSDVersion), u"Service Pack 1");
  }
  OSVERSIONINFOW version = {};
  EXPECT_FALSE(GetVersionExW(&version)) << "a structure that does not tell its size";
  machine_->SetOs({6, 1, 0, 2, 1, false});
  EXPECT_FALSE(AtLeast(5, 1)) << "a system whose check fails altogether";
}

TEST_F(System, OnlyAdministratorsAreMembers) {
  for (const bool administrator : {true, false}) {
    machine_->SetAdministrator(administrator);
    SID_IDENTIFIER_AUTHORITY authority = {SECURITY_NT_AUTHORITY};
    for (const DWORD group : {DOMAIN_ALIAS_RID_ADMINS, DOMAIN_ALIAS_RID_USERS}) {
      PSID sid = nullptr;
      ASSERT_TRUE(AllocateAndInitializeSid(&authority, 2, SECURITY_BUILTIN_DOMAIN_RID, group, 0, 0,
                                           0, 0, 0, 0, &sid));
      BOOL member = FALSE;
      EXPECT_TRUE(CheckTokenMembership(nullptr, sid, &member));
      EXPECT_EQ(member, administrator || group == DOMAIN_ALIAS_RID_USERS);
      FreeSid(sid);
    }
  }
  EXPECT_EQ(machine_->LiveAllocations(), 0);
}

INT_PTR WINAPI Answer() { return 7; }

TEST_F(System, RegisteredModulesComeFirstAndAreCounted) {
  machine_->RegisterModule(u"QM610rLIB.DLL", {{"Entry", Answer}});
  const HMODULE first = LoadLibraryW(u"C:\\anywhere\\qm610rlib.dll");
  const HMODULE again = LoadLibraryW(u"c:\\ANYWHERE\\QM610rLIB");
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(first, again);
  EXPECT_EQ(machine_->OpenModules(), 2);
  EXPECT_EQ(GetProcAddress(first, "Entry"), FARPROC{Answer});
  EXPECT_EQ(GetProcAddress(first, "entry"), nullptr) << "names of entries have their case";
  EXPECT_EQ(GetProcAddress(first, reinterpret_cast<LPCSTR>(1)), nullptr);
  EXPECT_TRUE(FreeLibrary(first));
  machine_->UnregisterModule(u"QM610rLIB.DLL");
  EXPECT_EQ(GetProcAddress(first, "Entry"), FARPROC{Answer}) << "still loaded";
  EXPECT_TRUE(FreeLibrary(first));
  EXPECT_FALSE(FreeLibrary(first));
  SetLastError(0);
  EXPECT_EQ(LoadLibraryW(u"QM610rLIB.DLL"), nullptr);
  EXPECT_EQ(GetLastError(), ERROR_MOD_NOT_FOUND);
}

TEST_F(System, SharedObjectsLoadByPathOrFromTheDriverDirectory) {
  const std::u16string path = machine_->driverDirectory() + u"\\3\\QM610rDRV1.DLL";
  machine_->InstallModule(path, support::Built("QM610rDRV1.so"));
  const HMODULE module = LoadLibraryW(u"qm610rdrv1");
  ASSERT_NE(module, nullptr);
  EXPECT_EQ(LoadLibraryW(path.c_str()), module);
  EXPECT_EQ(GetModuleHandleW(u"QM610RDRV1.dll"), module);
  EXPECT_NE(GetProcAddress(module, "DrvPrinterEvent"), nullptr);
  WCHAR name[MAX_PATH];
  EXPECT_EQ(GetModuleFileNameW(module, name, MAX_PATH), path.size());
  EXPECT_EQ(std::u16string(name), path);
  EXPECT_EQ(GetModuleFileNameW(module, name, 5), 5u);
  EXPECT_EQ(std::u16string(name), path.substr(0, 4));
  // A picture, and its size through each of the calls.
  const auto bytes = platform::FindResourceBytes(module, platform::kResourceDialog, 145);
  ASSERT_FALSE(bytes.empty());
  const HRSRC found = FindResourceW(module, u"#145", MAKEINTRESOURCEW(5));
  EXPECT_EQ(SizeofResource(module, found), bytes.size());
  EXPECT_EQ(LockResource(LoadResource(module, found)), bytes.data());
  EXPECT_EQ(FindResourceW(module, MAKEINTRESOURCEW(9999), MAKEINTRESOURCEW(5)), nullptr);
  WCHAR text[4] = {u'x', u'x', u'x', u'x'};
  EXPECT_EQ(LoadStringW(module, 1, text, 4), 0);
  EXPECT_EQ(text[0], 0);
  FreeLibrary(module);
  FreeLibrary(module);
  EXPECT_EQ(FindResourceW(module, MAKEINTRESOURCEW(145), MAKEINTRESOURCEW(5)), nullptr);
  machine_->WriteFile(u"C:\\WINDOWS\\broken.dll", "no library");
  EXPECT_EQ(LoadLibraryW(u"broken"), nullptr);
  machine_->faults.FailNth(Fault::kModule, 1);
  EXPECT_EQ(LoadLibraryW(path.c_str()), nullptr);
  EXPECT_EQ(machine_->OpenModules(), 0);
}

TEST_F(System, DamagedResourcesGiveWhatIsWhole) {
  machine_->WriteVersionedFile(u"C:\\v.dll", 0x00030001, 0x000000FF);
  const std::string whole = *machine_->ReadFile(u"C:\\v.dll");
  for (size_t size = 0; size <= whole.size(); ++size) {
    machine_->WriteFile(u"C:\\cut.dll", whole.substr(0, size));
    EXPECT_EQ(GetFileVersionInfoSizeW(u"C:\\cut.dll", nullptr) != 0, size == whole.size()) << size;
  }
  std::string elf = *machine_->ReadFile(machine_->WindowsPath(support::Built("QM610rDRV1.so")));
  for (const size_t size : {size_t{16}, size_t{63}, size_t{64}, elf.size() / 2, elf.size() - 1}) {
    machine_->WriteFile(u"C:\\cut.dll", elf.substr(0, size));
    EXPECT_EQ(GetFileVersionInfoSizeW(u"C:\\cut.dll", nullptr), 0u);
  }
}

TEST_F(System, FileVersionsAreRead) {
  machine_->WriteVersionedFile(u"C:\\WINDOWS\\system32\\m.dll", 0x00030001, 0x000000FF);
  const DWORD size = GetFileVersionInfoSizeW(u"C:\\windows\\SYSTEM32\\M.DLL", nullptr);
  ASSERT_NE(size, 0u);
  std::vector<DWORD> room(size / 4 + 1);
  EXPECT_FALSE(GetFileVersionInfoW(u"C:\\windows\\system32\\m.dll", 0, size - 1, room.data()));
  ASSERT_TRUE(GetFileVersionInfoW(u"C:\\windows\\system32\\m.dll", 0, size, room.data()));
  LPVOID value = nullptr;
  UINT length = 0;
  ASSERT_TRUE(VerQueryValueW(room.data(), u"\\", &value, &length));
  EXPECT_EQ(length, sizeof(VS_FIXEDFILEINFO));
  EXPECT_EQ(static_cast<VS_FIXEDFILEINFO*>(value)->dwFileVersionMS, 0x00030001u);
  EXPECT_EQ(static_cast<VS_FIXEDFILEINFO*>(value)->dwFileVersionLS, 0x000000FFu);
  EXPECT_FALSE(VerQueryValueW(room.data(), u"\\StringFileInfo", &value, &length));
  EXPECT_EQ(GetFileVersionInfoSizeW(u"C:\\none.dll", nullptr), 0u);
}

TEST_F(System, HeapsCountAndGoInOneStep) {
  const HANDLE heap = HeapCreate(0, 0, 0);
  auto* block = static_cast<BYTE*>(HeapAlloc(heap, HEAP_ZERO_MEMORY, 100));
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(block[99], 0);
  EXPECT_FALSE(HeapFree(GetProcessHeap(), 0, block)) << "a block of another heap";
  EXPECT_NE(HeapAlloc(heap, 0, 0), HeapAlloc(heap, 0, 0));
  EXPECT_EQ(machine_->LiveAllocations(), 3);
  EXPECT_TRUE(HeapFree(heap, 0, block));
  EXPECT_DEATH(HeapFree(heap, 0, block), "no heap holds");
  EXPECT_TRUE(HeapDestroy(heap));
  EXPECT_FALSE(HeapDestroy(heap));
  EXPECT_FALSE(HeapDestroy(GetProcessHeap()));
  EXPECT_EQ(HeapAlloc(heap, 0, 1), nullptr);
  EXPECT_TRUE(HeapFree(GetProcessHeap(), 0, nullptr));
  EXPECT_EQ(machine_->LiveHeaps(), 0);
  EXPECT_EQ(machine_->LiveAllocations(), 0);
  machine_->faults.FailNth(Fault::kAllocation, 1);
  EXPECT_EQ(HeapCreate(0, 0, 0), nullptr);
  EXPECT_EQ(HeapAlloc(GetProcessHeap(), 0, SIZE_MAX), nullptr);
}

TEST_F(System, ShellCallsAreKept) {
  EXPECT_GT(reinterpret_cast<INT_PTR>(
                ShellExecuteW(nullptr, u"open", u"https://x/", nullptr, nullptr, 5)),
            32);
  ASSERT_EQ(machine_->ShellCalls().size(), 1u);
  EXPECT_EQ(machine_->ShellCalls()[0].file, u"https://x/");
}

TEST_F(System, LastErrorsAndFaultsAreSafeOnThreads) {
  SetLastError(5);
  machine_->faults.FailNth(Fault::kAllocation, 700);
  std::vector<std::thread> threads;
  std::atomic<int> failures = 0;
  for (DWORD t = 0; t < 8; ++t) {
    threads.emplace_back([&failures, t] {
      for (int i = 0; i < 100; ++i) {
        SetLastError(t + 100);
        void* block = HeapAlloc(GetProcessHeap(), 0, 16);
        if (block == nullptr) ++failures;
        HeapFree(GetProcessHeap(), 0, block);
        if (GetLastError() != t + 100) failures += 100;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(failures, 1);
  EXPECT_EQ(machine_->faults.Calls(Fault::kAllocation), 800);
  EXPECT_EQ(GetLastError(), 5u);
}

}  // namespace
