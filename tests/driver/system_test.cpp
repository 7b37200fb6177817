// The seam to the system: its version, and what the spooler tells of printers.
#include <gtest/gtest.h>

#include <string>

#include "driver/os_version.h"
#include "driver/printer_access.h"
#include "tests/support/settings.h"
#include "tests/support/test_machine.h"

namespace kestrel {
namespace {

using support::At;
using support::kPrinter;

TEST(OsVersionCode, IsToldBySystem) {
  const auto machine = platform::Machine::Create();
  struct Case {
    DWORD major, minor, platformId;
    BYTE product;
    bool verifies;
    int code;
  };
  const Case cases[] = {
      {10, 0, 2, 1, true, 110},
      {10, 0, 2, 3, true, 210},
      {6, 3, 2, 1, true, 110},
      {6, 3, 2, 2, true, 210},
      {6, 2, 2, 1, true, 109},
      {6, 2, 2, 3, true, 208},
      {6, 1, 2, 1, true, 108},
      {6, 1, 2, 3, true, 206},
      {6, 0, 2, 1, true, 106},
      {6, 0, 2, 3, true, 107},
      {5, 2, 2, 1, true, 104},
      {5, 2, 2, 3, true, 105},
      {5, 1, 2, 1, true, 104},
      {5, 0, 2, 1, true, 103},
      {5, 0, 2, 3, true, 103},
      {4, 0, 2, 1, true, 102},
      {4, 10, 1, 1, true, 2},
      {4, 0, 0, 1, true, -1},
      {3, 51, 2, 1, true, 101},
      // found by the version number alone
      {5, 1, 2, 1, false, 104},
      {5, 2, 2, 1, false, 201},
      {5, 2, 2, 2, false, 105},
      {5, 2, 2, 3, false, 105},
      {6, 0, 2, 1, false, 106},
      {6, 0, 2, 3, false, 107},
      {6, 1, 2, 1, false, 108},
      {6, 1, 2, 3, false, -1},
      {6, 2, 2, 1, false, 109},
      {6, 2, 2, 3, false, -1},
      {6, 3, 2, 1, false, -1},
      {10, 0, 2, 1, false, -1},
  };
  for (const Case& c : cases) {
    machine->SetOs({c.major, c.minor, 0, c.platformId, c.product, c.verifies});
    EXPECT_EQ(GetOsVersionCode(), c.code)
        << c.major << '.' << c.minor << " product " << int{c.product} << " verifies " << c.verifies;
  }
}

class PrinterAccess : public support::MachineTest {};

TEST_F(PrinterAccess, AnswersBySelector) {
  machine().AddPrinter({.name = kPrinter, .portName = u"LPT2:", .attributes = 0x40});
  const support::OpenedPrinter printer;
  const std::u16string directory = machine().driverDirectory();
  struct Case {
    int selector;
    std::u16string text;
  };
  const Case texts[] = {
      {0, u"VELA QM610r"},     {11, u"VELA QM610r"},    {4, u"winprint"},
      {12, u"LPT2:"},          {14, u"Label Printer"},  {2, directory},
      {1, directory + u"\\3"}, {3, directory + u"\\3"}, {100, directory + u"\\3"},
  };
  for (const Case& c : texts) {
    WCHAR buffer[260];
    EXPECT_TRUE(GetPrinterInfoValue(printer, kPrinter, buffer, sizeof buffer, c.selector));
    EXPECT_EQ(buffer, c.text) << c.selector;
  }
  for (const int selector : {13, 20, 30}) {
    DWORD attributes = 1;
    EXPECT_TRUE(GetPrinterInfoValue(printer, kPrinter, &attributes, 4, selector));
    EXPECT_EQ(attributes, 0x40u) << selector;
    EXPECT_FALSE(GetPrinterInfoValue(printer, kPrinter, &attributes, 2, selector));
  }
  WCHAR help[260];
  EXPECT_TRUE(GetPrinterInfoValue(printer, kPrinter, help, sizeof help, 110));
  EXPECT_TRUE(std::u16string_view(help).ends_with(u"QM610rDRV1.HLP"));
}

TEST_F(PrinterAccess, AnswersNothingItDoesNotKnow) {
  machine().AddPrinter({.name = kPrinter, .helpFile = u""});
  const support::OpenedPrinter printer;
  for (const int selector : {5, -1, 15, 99, 101, 110 /* no help file */, 10 /* no record */}) {
    WCHAR buffer[4] = {1, 2, 3, 4};
    EXPECT_FALSE(GetPrinterInfoValue(printer, kPrinter, buffer, sizeof buffer, selector));
    EXPECT_EQ(std::u16string(buffer, 4), std::u16string(4, 0)) << "not cleared: " << selector;
  }
  WCHAR name[32];
  EXPECT_FALSE(GetPrinterInfoValue(nullptr, kPrinter, name, sizeof name, 14));
  EXPECT_FALSE(GetPrinterNameOfHandle(nullptr, name, 32));
}

TEST_F(PrinterAccess, CutsTextsAndDirectories) {
  const std::u16string longName(40, u'x');
  machine().AddPrinter({.name = longName});
  const support::OpenedPrinter printer(longName);
  WCHAR name[32];
  EXPECT_TRUE(GetPrinterInfoValue(printer, nullptr, name, sizeof name, 14));
  EXPECT_EQ(name, longName.substr(0, 31));
  const size_t length = machine().driverDirectory().size();
  std::u16string buffer(300, 0);
  for (const size_t units : {length + 1, length + 2, length + 3}) {
    const auto size = static_cast<DWORD>(units * sizeof(WCHAR));
    const bool fits = units == length + 3;  // "\\3" and the terminator
    EXPECT_EQ(GetPrinterInfoValue(printer, nullptr, buffer.data(), size, 1), fits);
    EXPECT_EQ(buffer.c_str(), machine().driverDirectory() + (fits ? u"\\3" : u""));
    EXPECT_TRUE(GetPrinterInfoValue(printer, nullptr, buffer.data(), size, 2));
  }
}

TEST_F(PrinterAccess, TakesARecordNoFurtherThanItAndTheBufferReach) {
  auto bytes = std::vector<std::byte>(460, std::byte{7});
  support::Put<WORD>(bytes.data(), 68, 220);
  support::Put<WORD>(bytes.data(), 70, 10);
  machine().SetDefaultRecord(kPrinter, bytes);
  const support::OpenedPrinter printer;
  std::vector<std::byte> record(452, std::byte{1});
  EXPECT_TRUE(GetPrinterInfoValue(printer, kPrinter, record.data(), 452, 10));
  EXPECT_EQ(record[229], std::byte{7});
  EXPECT_EQ(record[230], std::byte{0});
  EXPECT_TRUE(GetPrinterInfoValue(printer, kPrinter, record.data(), 100, 10));
  // One that claims more than the spooler has of it is no record, or ends where that ends.
  bytes.resize(100);
  support::Put<WORD>(bytes.data(), 68, 65535);
  machine().SetDefaultRecord(kPrinter, bytes);
  GetPrinterInfoValue(printer, kPrinter, record.data(), 452, 10);
  EXPECT_EQ(record[200], std::byte{0});
}

TEST_F(PrinterAccess, OpensByMode) {
  HANDLE handle = module_;
  EXPECT_FALSE(OpenPrinterForDriver(kPrinter, 5, &handle));
  EXPECT_EQ(handle, nullptr);
  EXPECT_FALSE(OpenPrinterForDriver(kPrinter, 0, &handle));
  machine().SetPermission(kPrinter, false, true);
  for (const int mode : {1, 2, 3, 4}) {
    const bool administering = mode == 1 || mode == 4;
    EXPECT_NE(OpenPrinterForDriver(kPrinter, mode, &handle), administering) << mode;
    if (handle != nullptr) ClosePrinter(handle);
  }
  EXPECT_FALSE(OpenPrinterForDriver(u"No such printer", 2, &handle));
  EXPECT_EQ(handle, nullptr);
}

TEST_F(PrinterAccess, TellsTheSizeOfDataInEveryCase) {
  machine().SetData(kPrinter, u"Value", {REG_BINARY, std::vector<std::byte>(5)});
  const support::OpenedPrinter printer;
  BYTE buffer[8];
  DWORD needed = 0;
  EXPECT_TRUE(ReadPrinterData(printer, u"Value", buffer, sizeof buffer, &needed));
  EXPECT_EQ(needed, 5u);
  EXPECT_FALSE(ReadPrinterData(printer, u"Value", buffer, 4, &needed));
  EXPECT_EQ(needed, 5u);
  EXPECT_FALSE(ReadPrinterData(printer, u"Other", buffer, sizeof buffer, &needed));
  EXPECT_FALSE(ReadPrinterData(nullptr, u"Value", buffer, sizeof buffer, &needed));
  EXPECT_EQ(needed, 0u);
  EXPECT_FALSE(WritePrinterData(nullptr, u"Value", REG_BINARY, buffer, 1));
}

}  // namespace
}  // namespace kestrel
