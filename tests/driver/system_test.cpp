// Access to the system: its version, the spooler's information about printers, and texts.
#include <sstream>
#include <tuple>

#include "driver/os_version.h"
#include "driver/printer_access.h"
#include "driver/text.h"
#include "platform/machine/text.h"
#include "tests/support/test_machine.h"

namespace kestrel {
namespace {

using support::kPrinter;

TEST(OsVersionCode, ReturnsTheCodeOfEachSystem) {
  const auto machine = platform::Machine::Create();
  for (const std::string& row : support::GoldenRows("os_versions.txt")) {
    std::istringstream words(row);
    DWORD major, minor, platformId;
    words >> major >> minor >> platformId;
    for (const bool verifies : {true, false}) {
      for (BYTE product = 1; product <= 3; ++product) {
        machine->SetOs({major, minor, 0, platformId, product, verifies});
        int expected = 0;
        words >> expected;
        EXPECT_EQ(GetOsVersionCode(), expected) << row;
      }
    }
  }
}

class PrinterAccess : public support::MachineTest {};

// golden/printer_info.txt: the value of each selector.
TEST_F(PrinterAccess, InfoValueIsWrittenBySelector) {
  const std::u16string longName(40, u'x');
  machine().AddPrinter({.name = longName, .portName = u"LPT2:", .attributes = '@'});
  machine().AddPrinter({.name = kPrinter, .helpFile = u""});
  const support::OpenedPrinter printer(longName), other;
  std::string actual;
  for (int selector = -1; selector < 130; ++selector) {
    std::u16string buffer(260, u'x');
    const bool found = GetPrinterInfoValue(printer, nullptr, buffer.data(), 520, selector);
    const std::u16string value = buffer.c_str();
    EXPECT_EQ(buffer.substr(value.size()), std::u16string(260 - value.size(), 0)) << selector;
    if (found || !value.empty())
      actual += std::to_string(selector) + (found ? ' ' : '?') + platform::ToUtf8(value) + '\n';
  }
  EXPECT_EQ(actual, support::Golden("printer_info.txt"));
  WCHAR name[32];
  for (const int selector : {13, 20, 30})
    EXPECT_FALSE(GetPrinterInfoValue(printer, nullptr, name, 2, selector)) << "needs 4 bytes";
  EXPECT_FALSE(GetPrinterInfoValue(other, nullptr, name, sizeof name, 110)) << "no help file";
  EXPECT_FALSE(GetPrinterNameOfHandle(nullptr, name, 32));
  EXPECT_TRUE(GetPrinterInfoValue(printer, nullptr, name, sizeof name, 14));
  EXPECT_EQ(name, longName.substr(0, 31));
  EXPECT_TRUE(GetPrinterNameOfHandle(printer, name, 32));
  EXPECT_EQ(name, longName.substr(0, 31));
  // A directory has to fit with "\3" and its terminator.
  const std::u16string path = machine().driverDirectory();
  const auto size = static_cast<DWORD>(2 * path.size());
  std::u16string buffer(300, 0);
  EXPECT_TRUE(GetPrinterInfoValue(printer, nullptr, buffer.data(), size + 6, 1));
  EXPECT_FALSE(GetPrinterInfoValue(printer, nullptr, buffer.data(), size + 4, 1));
  EXPECT_EQ(buffer.c_str(), path);
  EXPECT_FALSE(GetPrinterInfoValue(printer, nullptr, buffer.data(), size, 2));
}

TEST_F(PrinterAccess, CopiesNoMoreThanRecordAndBufferHold) {
  // The record's dmSize and dmDriverExtra, bytes that the spooler has, size of the buffer, bytes
  // copied.
  const std::tuple<WORD, WORD, size_t, DWORD, size_t> kCases[] = {
      {220, 10, 460, 452, 230},  {220, 10, 460, 100, 100}, {220, 232, 452, 452, 452},
      {220, 232, 460, 452, 452}, {65535, 9, 100, 452, 0},  {0, 0, 71, 452, 0}};
  for (const auto& [size, extra, length, capacity, copied] : kCases) {
    std::vector<std::byte> bytes(length, std::byte{7}), record(452, std::byte{1});
    support::Put(bytes.data(), 68, size);
    if (length >= 72) support::Put(bytes.data(), 70, extra);
    machine().SetDefaultRecord(kPrinter, bytes);
    const support::OpenedPrinter printer;
    EXPECT_EQ(GetPrinterInfoValue(printer, kPrinter, record.data(), capacity, 10), copied > 0);
    bytes.resize(copied);
    bytes.resize(capacity);
    record.resize(capacity);
    EXPECT_EQ(record, bytes) << length;
  }
}

TEST_F(PrinterAccess, OpensPrintersByMode) {
  std::string actual;
  const auto open = [&](const WCHAR* name, int mode) {
    HANDLE handle = module_;
    const bool opened = OpenPrinterForDriver(name, mode, &handle);
    actual += opened ? "open " : handle == nullptr ? "- " : "left ";
    if (opened) ClosePrinter(handle);
  };
  for (int mode = 0; mode < 6; ++mode) open(kPrinter, mode);
  machine().SetPermission(kPrinter, false, true);
  for (int mode = 0; mode < 6; ++mode) open(kPrinter, mode);
  open(u"No such printer", 2);
  EXPECT_EQ(actual, "- open open open open - - - open open - - - ");
}

TEST(PrinterNames, AreReducedByMode) {
  std::u16string actual;
  for (int mode = -1; mode < 4; ++mode) {
    WCHAR out[40] = u"before";
    actual += CutPrinterName(out, 40, u"\\\\s\\Label,C:", mode) ? u" yes " : u" no ";
    actual += out;
  }
  EXPECT_EQ(actual, u" no  yes \\\\s\\Label,C: yes \\\\s\\Label yes Label no ");
  WCHAR out[6] = u"abcde";
  EXPECT_TRUE(CutPrinterName(out, 4, u"Label", 2));
  EXPECT_EQ(std::u16string(out, 5), std::u16string(u"Lab\0e", 5));
  EXPECT_FALSE(CutPrinterName(out, 4, nullptr, 0));
  EXPECT_EQ(out[0], 0);
}

TEST(CodePageText, IsTruncatedAtWholeCharacters) {
  platform::Machine::Create();
  const std::tuple<const WCHAR*, int, std::string> kConversions[] = {
      {u"表A", 4, "\x95\x5c\x41"}, {u"A表", 3, "A"}, {u"表A", 3, "\x95\x5c"}, {u"表A", 2, ""},
      {u"ｱ¥\\", 9, "\xb1?\\"},     {u"", 4, ""}};
  for (const auto& [text, size, form] : kConversions) {
    std::string out(16, 'x');
    EXPECT_EQ(ToCodePage(text, -1, out.data(), size), static_cast<int>(form.size()));
    EXPECT_EQ(out, form + std::string(size - form.size(), 0) + std::string(16 - size, 'x'));
  }
  char none[4] = "abc";
  EXPECT_EQ(ToCodePage(u"A", 0, none, 4), 0);
  EXPECT_EQ(std::string(none, 4), std::string(4, 0));
  // Half a character is dropped; the number of units for invalid bytes depends on the platform.
  const std::tuple<const char*, int, int, std::u16string> kTexts[] = {
      {"\x95\\\x95\\", -1, 4, u"表"}, {"AB", 1, 6, u"A"},
      {"A\x95\\", 2, 6, u"A"},        {"AB", 2, 0, u""},
      {"ABCD", 4, 6, u"AB"},          {"AB", 2, 1, u""}};
  for (const auto& [text, length, size, units] : kTexts) {
    WCHAR out[3] = {};
    EXPECT_EQ(FromCodePage(text, length, out, size), static_cast<int>(units.size()));
    EXPECT_EQ(out, units);
  }
  for (const char* bad : {"A\x81\x20\x81\x20", "\x81\x20\x81\x20\x81\x20", "\xff\xff\xff"}) {
    WCHAR out[3];
    const int units = FromCodePage(bad, -1, out, sizeof out);
    EXPECT_TRUE(units == 1 || units == 2) << bad;
    EXPECT_EQ(std::u16string(out).size(), static_cast<size_t>(units)) << bad;
  }
  int index = -1;
  EXPECT_TRUE(IsCp932Representable(u"髙ｱ?é", 3, &index));
  EXPECT_EQ(index, -1);
  EXPECT_FALSE(IsCp932Representable(u"髙ｱ?é", 4, &index));
  EXPECT_EQ(index, 3);
  for (const WCHAR* bad : {u"¥", u"\xD83D\xDE00"})
    EXPECT_FALSE(IsCp932Representable(bad, 9, nullptr));
  EXPECT_TRUE(IsCp932Representable(u"é", -5, nullptr));
  EXPECT_TRUE(IsCp932Representable(nullptr, 9, nullptr));
}

TEST(Texts, IntegersEndAtTheFirstOtherCharacter) {
  const std::pair<std::string, LONG> kCases[] = {
      {"-4294967297", INT32_MIN}, {"", 0},    {"2147483646", 2147483646}, {"  +12x9", 12},
      {"4294967297", INT32_MAX},  {"-7", -7}, {"2147483647", INT32_MAX},  {"--7", 0},
      {"-2147483648", INT32_MIN}, {"+-7", 0}};
  for (const auto& [text, value] : kCases) {
    EXPECT_EQ(IntegerFromText(text.c_str()), value) << text;
    EXPECT_EQ(IntegerFromText(std::u16string(text.begin(), text.end()).c_str()), value) << text;
  }
  EXPECT_EQ(IntegerFromText("\t5"), 0);
  EXPECT_EQ(IntegerFromText(u"\t\r5"), 5);
}

TEST(Texts, StayWithinTheirBuffers) {
  WCHAR buffer[6] = u"ab";
  EXPECT_EQ(AppendText(buffer, u"cdefgh"), 3);
  EXPECT_EQ(buffer, std::u16string(u"abcde"));
  EXPECT_EQ(AppendText(buffer, u"x"), 0);
  EXPECT_EQ(CopyText(buffer, 1, u"y"), 0);
  EXPECT_EQ(std::u16string(buffer, 6), std::u16string(u"\0bcde\0", 6));
  EXPECT_EQ(CopyField(buffer, 6, u"xyz", 2), 2);
  EXPECT_EQ(buffer, std::u16string(u"xy"));
  EXPECT_EQ(CopyText(buffer, nullptr), 0);
  EXPECT_EQ(std::u16string(buffer, 6), std::u16string(6, 0)) << "the rest of the array is cleared";
  EXPECT_TRUE(SameTextIgnoringCase(u"Explorer.EXE", u"explorer.exe"));
  EXPECT_FALSE(SameText(u"a", u"A"));
  EXPECT_TRUE(SameText(nullptr, u""));
}

}  // namespace
}  // namespace kestrel
