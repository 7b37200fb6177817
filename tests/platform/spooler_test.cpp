// Printers, printer data and the registry as the spooler's and the registry's callers see them.
#include <windows.h>
#include <gtest/gtest.h>
#include <winspool.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "platform/machine.h"
#include "tests/support/guarded_buffer.h"
#include "tests/support/test_machine.h"

namespace {

using platform::Fault;
using platform::Machine;
using support::GuardedBuffer;
using support::OpenedPrinter;

class Spooler : public testing::Test {
 protected:
  void SetUp() override {
    platform::PrinterSetup setup;
    setup.name = u"倉庫 1F,LPT1:";
    setup.attributes = PRINTER_ATTRIBUTE_SHARED;
    setup.helpFile.clear();
    machine_->AddPrinter(setup);
  }
  static DWORD OpenError(std::u16string name, ACCESS_MASK access) {
    SetLastError(0);
    const OpenedPrinter printer(std::move(name), access);
    return printer == nullptr ? GetLastError() : 0;
  }
  std::unique_ptr<Machine> machine_ = Machine::Create();
};

TEST_F(Spooler, OpensByNameAndRight) {
  EXPECT_EQ(OpenError(u"倉庫 1f,lpt1:", 0), 0u) << "letter case does not matter";
  EXPECT_EQ(OpenError(u"倉庫 1F", 0), ERROR_INVALID_PRINTER_NAME);
  EXPECT_EQ(OpenError(u"倉庫 1F,LPT1:", PRINTER_ALL_ACCESS), 0u);
  machine_->SetPermission(u"倉庫 1F,LPT1:", false, true);
  EXPECT_EQ(OpenError(u"倉庫 1F,LPT1:", PRINTER_ALL_ACCESS), ERROR_ACCESS_DENIED);
  EXPECT_EQ(OpenError(u"倉庫 1F,LPT1:", PRINTER_ACCESS_USE), 0u);
  HANDLE handle = &handle;
  EXPECT_FALSE(OpenPrinterW(nullptr, &handle, nullptr));
  EXPECT_EQ(handle, nullptr);
  EXPECT_EQ(machine_->OpenPrinterHandles(), 0);
  EXPECT_FALSE(ClosePrinter(&handle));
}

TEST_F(Spooler, EachLevelTellsItsSizeAndFitsIt) {
  const std::vector<std::byte> record = [] {
    std::vector<std::byte> bytes(452, std::byte{7});
    DEVMODEW header = {};
    header.dmSize = 220;
    header.dmDriverExtra = 232;
    std::memcpy(bytes.data(), &header, sizeof(header));
    return bytes;
  }();
  machine_->SetDefaultRecord(u"倉庫 1F,LPT1:", record);
  const OpenedPrinter printer(u"倉庫 1F,LPT1:");
  for (const DWORD level : {1u, 2u, 4u, 5u}) {
    DWORD needed = 0;
    SetLastError(0);
    EXPECT_FALSE(GetPrinterW(printer, level, nullptr, 0, &needed));
    EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
    const GuardedBuffer room((needed + 15) / 16 * 16);
    EXPECT_FALSE(GetPrinterW(printer, level, room.As<BYTE>(), needed - 1, &needed));
    ASSERT_TRUE(GetPrinterW(printer, level, room.As<BYTE>(), needed, &needed));
    if (level == 1) {
      EXPECT_EQ(std::u16string(room.As<PRINTER_INFO_1W>()->pName), u"倉庫 1F,LPT1:");
    } else if (level == 2) {
      const auto& info = *room.As<PRINTER_INFO_2W>();
      EXPECT_EQ(std::u16string(info.pDriverName), u"VELA QM610r");
      EXPECT_EQ(std::u16string(info.pPortName), u"LPT1:");
      EXPECT_EQ(std::u16string(info.pPrintProcessor), u"winprint");
      EXPECT_EQ(info.Attributes, PRINTER_ATTRIBUTE_SHARED);
      EXPECT_EQ(std::memcmp(info.pDevMode, record.data(), record.size()), 0);
    }
  }
  DWORD needed = 0;
  EXPECT_FALSE(GetPrinterW(printer, 3, nullptr, 0, &needed));
  EXPECT_EQ(GetLastError(), ERROR_INVALID_LEVEL);
  EXPECT_FALSE(GetPrinterW(nullptr, 2, nullptr, 0, &needed));
  EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
}

TEST_F(Spooler, ARecordThatClaimsMoreThanItHasIsNotHandedOut) {
  const struct {
    WORD size, extra;
    size_t bytes;
    bool given;
  } rows[] = {{220, 0, 220, true}, {220, 1, 220, false}, {65535, 65535, 452, false},
              {0, 0, 452, false},  {72, 0, 72, true},    {72, 0, 71, false}};
  for (const auto& row : rows) {
    DEVMODEW header = {};
    header.dmSize = row.size;
    header.dmDriverExtra = row.extra;
    std::vector<std::byte> record(452);
    std::memcpy(record.data(), &header, sizeof(header));
    record.resize(row.bytes);
    machine_->SetDefaultRecord(u"倉庫 1F,LPT1:", record);
    const OpenedPrinter printer(u"倉庫 1F,LPT1:");
    alignas(16) BYTE room[2048];
    DWORD needed = 0;
    ASSERT_TRUE(GetPrinterW(printer, 2, room, sizeof(room), &needed));
    EXPECT_EQ(reinterpret_cast<PRINTER_INFO_2W*>(room)->pDevMode != nullptr, row.given)
        << row.size << " " << row.extra << " " << row.bytes;
    EXPECT_EQ(machine_->DefaultRecord(u"倉庫 1F,LPT1:"), record);
  }
}

TEST_F(Spooler, DriverFilesLieInTheVersionFolder) {
  const OpenedPrinter printer(u"倉庫 1F,LPT1:");
  alignas(16) BYTE room[2048];
  DWORD needed = 0;
  ASSERT_TRUE(GetPrinterDriverW(printer, nullptr, 3, room, sizeof(room), &needed));
  const auto& driver = *reinterpret_cast<DRIVER_INFO_3W*>(room);
  EXPECT_EQ(std::u16string(driver.pDataFile), machine_->driverDirectory() + u"\\3\\QM610rDRV1.DLL");
  EXPECT_EQ(driver.pHelpFile, nullptr);
  EXPECT_FALSE(GetPrinterDriverW(printer, const_cast<LPWSTR>(u"Other"), 3, room, 9, &needed));
  EXPECT_EQ(GetLastError(), ERROR_INVALID_ENVIRONMENT);
  const auto bytes = static_cast<DWORD>((machine_->driverDirectory().size() + 1) * 2);
  EXPECT_FALSE(GetPrinterDriverDirectoryW(nullptr, nullptr, 1, room, bytes - 1, &needed));
  EXPECT_EQ(needed, bytes);
  EXPECT_TRUE(GetPrinterDriverDirectoryW(nullptr, nullptr, 1, room, bytes, &needed));
}

TEST_F(Spooler, DataKeepsTypeSizeAndRight) {
  const OpenedPrinter printer(u"倉庫 1F,LPT1:");
  const auto name = const_cast<LPWSTR>(u"Private DevMode");
  BYTE bytes[4] = {1, 2, 3, 4};
  DWORD type = 9, needed = 9;
  EXPECT_EQ(GetPrinterDataW(printer, name, &type, bytes, 4, &needed), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(needed, 0u);
  EXPECT_EQ(SetPrinterDataW(printer, name, REG_BINARY, bytes, 4), ERROR_SUCCESS);
  BYTE out[5] = {9, 9, 9, 9, 9};
  EXPECT_EQ(GetPrinterDataW(printer, name, &type, out, 3, &needed), ERROR_MORE_DATA);
  EXPECT_EQ(needed, 4u);
  EXPECT_EQ(out[0], 9) << "nothing is copied in part";
  const auto lower = const_cast<LPWSTR>(u"private devmode");
  EXPECT_EQ(GetPrinterDataW(printer, lower, &type, out, 5, &needed), ERROR_SUCCESS);
  EXPECT_EQ(type, REG_BINARY);
  EXPECT_EQ(out[4], 9);
  EXPECT_EQ(SetPrinterDataW(printer, lower, REG_SZ, nullptr, 0), ERROR_SUCCESS);
  EXPECT_EQ(GetPrinterDataW(printer, name, &type, nullptr, 0, &needed), ERROR_SUCCESS);
  EXPECT_EQ(machine_->AllData(u"倉庫 1F,LPT1:").size(), 1u) << "one value under both spellings";
  for (const ACCESS_MASK access : {ACCESS_MASK{0}, ACCESS_MASK{PRINTER_ACCESS_USE}}) {
    const OpenedPrinter used(u"倉庫 1F,LPT1:", access);
    EXPECT_EQ(SetPrinterDataW(used, name, REG_BINARY, bytes, 4), ERROR_ACCESS_DENIED) << access;
    EXPECT_EQ(GetPrinterDataW(used, name, &type, bytes, 4, &needed), ERROR_SUCCESS) << access;
  }
  machine_->SetPermission(u"倉庫 1F,LPT1:", true, false);
  EXPECT_EQ(SetPrinterDataW(printer, name, REG_BINARY, bytes, 4), ERROR_ACCESS_DENIED);
  EXPECT_EQ(machine_->Data(u"倉庫 1F,LPT1:", u"Private DevMode")->bytes.size(), 0u);
  machine_->RemovePrinter(u"倉庫 1F,LPT1:");
  EXPECT_EQ(SetPrinterDataW(printer, name, REG_BINARY, bytes, 4), ERROR_PRINTER_DELETED);
  EXPECT_EQ(GetPrinterDataW(printer, name, &type, bytes, 4, &needed), ERROR_FILE_NOT_FOUND);
}

TEST_F(Spooler, EveryCallCanFailOnce) {
  DWORD needed = 0;
  BYTE room[4] = {};
  const OpenedPrinter printer(u"倉庫 1F,LPT1:");
  const auto name = const_cast<LPWSTR>(u"x");
  machine_->faults.FailFrom(Fault::kSpooler, 1);
  EXPECT_EQ(OpenError(u"倉庫 1F,LPT1:", 0), RPC_S_SERVER_UNAVAILABLE);
  EXPECT_FALSE(GetPrinterW(printer, 2, nullptr, 0, &needed));
  EXPECT_FALSE(GetPrinterDriverW(printer, nullptr, 3, nullptr, 0, &needed));
  EXPECT_FALSE(GetPrinterDriverDirectoryW(nullptr, nullptr, 1, room, 4, &needed));
  EXPECT_NE(GetPrinterDataW(printer, name, nullptr, room, 4, &needed), ERROR_SUCCESS);
  EXPECT_NE(SetPrinterDataW(printer, name, REG_BINARY, room, 4), ERROR_SUCCESS);
  EXPECT_EQ(machine_->faults.Calls(Fault::kSpooler), 6);
  machine_->faults.FailNth(Fault::kSpooler, 2);
  EXPECT_EQ(SetPrinterDataW(printer, name, REG_BINARY, room, 4), ERROR_SUCCESS);
  EXPECT_FALSE(machine_->faults.Struck(Fault::kSpooler));
  EXPECT_NE(SetPrinterDataW(printer, name, REG_BINARY, room, 4), ERROR_SUCCESS);
  EXPECT_TRUE(machine_->faults.Struck(Fault::kSpooler));
  EXPECT_EQ(SetPrinterDataW(printer, name, REG_BINARY, room, 4), ERROR_SUCCESS);
}

// ---- the registry ----

constexpr char16_t kKey[] =
    u"SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\倉庫 1F,LPT1:\\Data";

TEST_F(Spooler, RegistryKeysFollowTheirRights) {
  HKEY key = nullptr;
  EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, kKey, 0, KEY_READ, &key),
            LSTATUS{ERROR_FILE_NOT_FOUND});
  EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, kKey, 0, KEY_READ, &key),
            LSTATUS{ERROR_INVALID_HANDLE});
  const auto create = [&key](REGSAM access) {
    return RegCreateKeyExW(HKEY_LOCAL_MACHINE, kKey, 0, nullptr, 0, access, nullptr, &key, nullptr);
  };
  machine_->SetRegistryAccess(true, false);
  EXPECT_EQ(create(KEY_READ), LSTATUS{ERROR_ACCESS_DENIED}) << "nothing can be created";
  machine_->SetRegistryAccess(true, true);
  ASSERT_EQ(create(KEY_READ | KEY_WRITE), 0);
  DWORD value = 0x01020304, type = 0, size = 3;
  const auto data = reinterpret_cast<BYTE*>(&value);
  EXPECT_EQ(RegQueryValueExW(key, u"SyncPrint", nullptr, &type, data, &size),
            LSTATUS{ERROR_FILE_NOT_FOUND});
  EXPECT_EQ(RegSetValueExW(key, u"SyncPrint", 0, REG_DWORD, data, 4), 0);
  EXPECT_EQ(RegQueryValueExW(key, u"syncprint", nullptr, &type, data, &size),
            LSTATUS{ERROR_MORE_DATA});
  EXPECT_EQ(size, 4u);
  EXPECT_EQ(type, REG_DWORD);
  EXPECT_EQ(RegCloseKey(key), 0);
  EXPECT_EQ(RegCloseKey(key), LSTATUS{ERROR_INVALID_HANDLE});

  machine_->SetRegistryAccess(true, false);
  EXPECT_EQ(create(KEY_READ | KEY_WRITE), LSTATUS{ERROR_ACCESS_DENIED});
  ASSERT_EQ(create(KEY_READ), 0) << "an existing key opens for reading";
  EXPECT_EQ(RegSetValueExW(key, u"SyncPrint", 0, REG_DWORD, data, 4), LSTATUS{ERROR_ACCESS_DENIED});
  EXPECT_EQ(RegQueryValueExW(key, u"SyncPrint", nullptr, nullptr, nullptr, &size), 0);
  RegCloseKey(key);
  machine_->SetRegistryAccess(false, true);
  EXPECT_EQ(create(KEY_READ), LSTATUS{ERROR_ACCESS_DENIED});
  ASSERT_EQ(create(KEY_SET_VALUE), 0);
  EXPECT_EQ(RegQueryValueExW(key, u"SyncPrint", nullptr, &type, data, &size),
            LSTATUS{ERROR_ACCESS_DENIED});
  RegCloseKey(key);
  EXPECT_EQ(machine_->OpenRegistryKeys(), 0);
}

TEST_F(Spooler, RegistryValuesGoWithTheirPrinter) {
  const std::u16string other =
      u"SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\倉庫 1F,LPT1:2";
  machine_->SetRegistry(kKey, u"SyncPrint", {REG_DWORD, {std::byte{1}}});
  machine_->SetRegistry(other, u"SyncPrint", {REG_DWORD, {std::byte{2}}});
  EXPECT_EQ(machine_->AllRegistry(u"system\\currentcontrolset").size(), 2u);
  EXPECT_EQ(machine_->AllRegistry(kKey).begin()->first, std::u16string(kKey) + u"\\SyncPrint");
  machine_->RemovePrinter(u"倉庫 1F,LPT1:");
  EXPECT_FALSE(machine_->Registry(kKey, u"SyncPrint"));
  EXPECT_TRUE(machine_->Registry(other, u"syncprint"));
}

}  // namespace
