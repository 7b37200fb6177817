// Access to the system: its version, the spooler's information about printers, and texts.
#include "driver/os_version.h"
#include "driver/printer_access.h"
#include "driver/text.h"
#include "tests/support/test_machine.h"

namespace kestrel {
namespace {

using std::u16string;
using support::kPrinter;

TEST(OsVersion, CodeDependsOnVersionAndProductType) {
  const auto machine = platform::Machine::Create();
  constexpr DWORD kNt = VER_PLATFORM_WIN32_NT;
  const struct {
    DWORD major, minor, platformId;
    OsVersionCode workstation, server;                  // by VerifyVersionInfoW
    OsVersionCode fallbackWorkstation, fallbackServer;  // by GetVersionExW
  } kCases[] = {
      {10, 0, kNt, kOsWindows81, kOsServer2012R2, kOsUnknown, kOsUnknown},
      {6, 0, kNt, kOsVista, kOsServer2008, kOsVista, kOsServer2008},
      {5, 2, kNt, kOsXp, kOsServer2003, kOsXp64Fallback, kOsServer2003},
      {5, 1, kNt, kOsXp, kOsServer2003, kOsXp, kOsXp},
      {5, 0, kNt, kOsWindows2000, kOsWindows2000, kOsWindows2000, kOsWindows2000},
      {4, 0, kNt, kOsNt4, kOsNt4, kOsNt4, kOsNt4},
  };
  for (const auto& row : kCases) {
    SCOPED_TRACE(testing::Message() << row.major << '.' << row.minor);
    const auto code = [&](BYTE productType, bool verifies) {
      machine->SetOs({row.major, row.minor, 0, row.platformId, productType, verifies});
      return GetOsVersionCode();
    };
    EXPECT_EQ(code(VER_NT_WORKSTATION, true), row.workstation);
    EXPECT_EQ(code(VER_NT_WORKSTATION, false), row.fallbackWorkstation);
    EXPECT_EQ(code(VER_NT_SERVER, true), row.server);
    EXPECT_EQ(code(VER_NT_DOMAIN_CONTROLLER, false), row.fallbackServer);
  }
}

class PrinterAccess : public support::MachineTest {};

TEST_F(PrinterAccess, InfoValueIsSelectedAndTheRestOfTheBufferCleared) {
  machine().AddPrinter({.name = u16string(40, u'x'), .portName = u"LPT2:", .attributes = u'@'});
  const support::OpenedPrinter printer(u16string(40, u'x'));
  const u16string directory = u"C:\\WINDOWS\\system32\\spool\\drivers\\w32x86";
  const std::pair<int, u16string> expected[] = {
      {kInfoDriverName, u"VELA QM610r"},
      {kInfoPrintProcessor, u"winprint"},
      {kInfoPortName, u"LPT2:"},
      {kInfoPrinterName, u16string(40, u'x')},
      {kInfoAttributes2, u"@"},
      {kInfoAttributes4, u"@"},
      {kInfoAttributes5, u"@"},
      {kInfoDriverDirectory, directory},
      {kInfoVersionDirectory, directory + u"\\3"},
      {kInfoHelpFile, directory + u"\\3\\QM610rDRV1.HLP"},
      {kInfoDataFile, directory + u"\\3\\QM610rDRV1.DLL"},
  };
  for (auto [selector, value] : expected) {
    u16string buffer(260, u'x');
    EXPECT_TRUE(GetPrinterInfoValue(printer, nullptr, buffer.data(), 520, selector));
    value.resize(260);
    EXPECT_EQ(buffer, value) << selector;
  }
}

TEST_F(PrinterAccess, InfoValueIsTruncatedOrRejectedWhereItDoesNotFit) {
  machine().AddPrinter({.name = u16string(40, u'x'), .helpFile = u""});
  const support::OpenedPrinter printer(u16string(40, u'x'));
  WCHAR buffer[260];
  EXPECT_TRUE(GetPrinterInfoValue(printer, nullptr, buffer, 64, kInfoPrinterName));
  EXPECT_EQ(buffer, u16string(31, u'x'));
  EXPECT_TRUE(GetPrinterNameOfHandle(printer, buffer, 16));
  EXPECT_EQ(buffer, u16string(15, u'x'));
  HANDLE handle = nullptr;
  EXPECT_FALSE(OpenPrinterForDriver(u"", kDefaultAccess, &handle)) << "the print server";
  for (const int selector : {kInfoAttributes2, kInfoAttributes4, kInfoAttributes5})
    EXPECT_FALSE(GetPrinterInfoValue(printer, nullptr, buffer, 2, selector));
  EXPECT_FALSE(GetPrinterInfoValue(printer, nullptr, buffer, 520, kInfoHelpFile)) << "has none";
  EXPECT_FALSE(GetPrinterInfoValue(printer, nullptr, buffer, 520, 5)) << "no selector";
  // A directory has to fit with "\3" and its terminator.
  const DWORD size = 2 * static_cast<DWORD>(machine().driverDirectory().size());
  EXPECT_TRUE(GetPrinterInfoValue(printer, nullptr, buffer, size + 6, kInfoVersionDirectory));
  EXPECT_FALSE(GetPrinterInfoValue(printer, nullptr, buffer, size + 4, kInfoVersionDirectory));
}

TEST_F(PrinterAccess, CopiesNoMoreThanRecordAndBufferHold) {
  const struct {
    WORD size, extra;  // dmSize and dmDriverExtra
    size_t stored;     // bytes that the spooler has
    DWORD capacity;    // of the buffer
    size_t copied;
  } kCases[] = {{220, 10, 460, 452, 230},  {220, 10, 460, 100, 100}, {220, 232, 452, 452, 452},
                {220, 232, 460, 452, 452}, {65535, 9, 100, 452, 0},  {0, 0, 71, 452, 0}};
  for (const auto& [size, extra, stored, capacity, copied] : kCases) {
    std::vector<std::byte> bytes(stored, std::byte{7}), buffer(capacity, std::byte{1});
    support::Put(bytes.data(), offsetof(DEVMODEW, dmSize), size);
    if (stored >= 72) support::Put(bytes.data(), offsetof(DEVMODEW, dmDriverExtra), extra);
    machine().SetDefaultRecord(kPrinter, bytes);
    const support::OpenedPrinter printer;
    EXPECT_EQ(GetPrinterInfoValue(printer, kPrinter, buffer.data(), capacity, kInfoDevMode),
              copied > 0);
    bytes.resize(copied);
    bytes.resize(capacity);
    EXPECT_EQ(buffer, bytes) << stored;
  }
}

TEST(CodePageText, IsTruncatedAtWholeCharacters) {
  platform::Machine::Create();
  const struct {
    const WCHAR* text;
    int size;  // of the output
    std::string converted;
  } kToCodePage[] = {
      {u"表A", 4, "\x95\x5c\x41"}, {u"A表", 3, "A"}, {u"表A", 2, ""}, {u"ｱ¥\\", 9, "\xb1?\\"}};
  for (const auto& [text, size, converted] : kToCodePage) {
    std::string out(16, 'x');
    EXPECT_EQ(ToCodePage(text, -1, out.data(), size), static_cast<int>(converted.size()));
    EXPECT_EQ(out,
              converted + std::string(size - converted.size(), 0) + std::string(16 - size, 'x'));
  }
  const struct {
    const char* text;
    int length, size;  // bytes of the text, of the output
    u16string converted;
  } kFromCodePage[] = {
      {"\x95\\\x95\\", -1, 4, u"表"},  // holds one unit
      {"A\x95\\", 2, 6, u"A"},         // ends within a character
      {"ABCD", 4, 6, u"AB"},
      {"AB", 0, 6, u""},
  };
  for (const auto& [text, length, size, converted] : kFromCodePage) {
    WCHAR out[3] = {};
    EXPECT_EQ(FromCodePage(text, length, out, size), static_cast<int>(converted.size()));
    EXPECT_EQ(out, converted);
  }
}

TEST(CodePageText, UnitsWithoutAFormAreFound) {
  int index = -1;
  EXPECT_TRUE(IsCp932Representable(u"髙ｱ?é", 3, &index));
  EXPECT_FALSE(IsCp932Representable(u"髙ｱ?é", 4, &index));
  EXPECT_EQ(index, 3);
  EXPECT_TRUE(IsCp932Representable(u"A\0é", 3, nullptr)) << "ends at the terminator";
}

TEST(Texts, IntegerEndsAtTheFirstOtherCharacterAndSaturates) {
  const std::pair<std::string, LONG> kCases[] = {
      {"", 0}, {"  +12x9", 12}, {"4294967297", INT32_MAX}, {"-4294967297", INT32_MIN}};
  for (const auto& [text, value] : kCases) {
    EXPECT_EQ(IntegerFromText(text.c_str()), value) << text;
    EXPECT_EQ(IntegerFromText(u16string(text.begin(), text.end()).c_str()), value) << text;
  }
  EXPECT_EQ(IntegerFromText("\t5"), 0) << "8-bit text skips spaces only";
  EXPECT_EQ(IntegerFromText(u"\t\r5"), 5);
}

TEST(Texts, StayWithinTheirBuffers) {
  WCHAR buffer[6] = u"ab";
  EXPECT_EQ(AppendText(buffer, u"cdefgh"), 3);
  EXPECT_EQ(buffer, u16string(u"abcde"));
  EXPECT_EQ(CopyText(buffer, 1, u"y"), 0);
  EXPECT_EQ(u16string(buffer, 6), u16string(u"\0bcde\0", 6));
  EXPECT_EQ(CopyField(buffer, 6, u"xyz", 2), 2);
  EXPECT_EQ(buffer, u16string(u"xy"));
  EXPECT_EQ(CopyText(buffer, nullptr), 0);
  EXPECT_EQ(u16string(buffer, 6), u16string(6, 0)) << "the rest of the array is cleared";
  EXPECT_FALSE(CutPrinterName(buffer, 6, u"Label", 3));
}

}  // namespace
}  // namespace kestrel
