// Code page 932, letter case, paths and formatted texts.
#include "platform/system/text.h"

#include <windows.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "platform/machine.h"

namespace {

using platform::Machine;

TEST(CodePage, HasTheFormsOfTheSystem) {
  const struct {
    WCHAR unit;
    const char* bytes;
  } rows[] = {
      {u'A', "A"},          {u'\\', "\\"},        {u'~', "~"},          {0xFF8A, "\xCA"},
      {0x3042, "\x82\xA0"}, {0x30BD, "\x83\x5C"}, {0xFF5E, "\x81\x60"}, {0x2225, "\x81\x61"},
      {0x2460, "\x87\x40"}, {0x2160, "\x87\x54"}, {0x2252, "\x81\xE0"}, {0xFFE2, "\x81\xCA"},
      {0x2235, "\x81\xE6"}, {0x7E8A, "\xFA\x5C"}, {0x9AD9, "\xFB\xFC"}, {0xFA11, "\xFA\xB1"},
      {0x2170, "\xFA\x40"}, {0xE000, "\xF0\x40"}, {0xE757, "\xF9\xFC"}, {0x80, "\x80"},
      {0x00A5, "?"},        {0x301C, "?"},        {0x00E9, "?"},        {0x20AC, "?"},
      {0xD842, "?"},        {0xFFFF, "?"}};
  for (const auto& row : rows) {
    EXPECT_EQ(platform::ToCp932({&row.unit, 1}), row.bytes) << std::hex << unsigned{row.unit};
  }
  // The NEC and IBM doubles are read as the characters that they double.
  EXPECT_EQ(platform::FromCp932("\x87\x90\xEE\xEF\xED\x40"), u"\x2252\x2170\x7E8A");
}

TEST(CodePage, EveryFormConvertsBackToItsUnit) {
  int forms = 0;
  for (unsigned unit = 1; unit < 0x10000; ++unit) {
    const auto text = static_cast<WCHAR>(unit);
    bool lossless = false;
    const std::string bytes = platform::ToCp932({&text, 1}, &lossless);
    if (!lossless) {
      ASSERT_EQ(bytes, "?");
      continue;
    }
    ++forms;
    ASSERT_EQ(platform::FromCp932(bytes), std::u16string(1, text)) << std::hex << unit;
  }
  EXPECT_GT(forms, 9000);
}

TEST(CodePage, ConversionsCountCutAndRefuse) {
  char out[8];
  const auto wide = [&out](const char16_t* text, int units, int size) {
    std::fill(std::begin(out), std::end(out), '#');
    SetLastError(0);
    return WideCharToMultiByte(932, 0, text, units, out, size, nullptr, nullptr);
  };
  EXPECT_EQ(WideCharToMultiByte(932, 0, u"aソ", -1, nullptr, 0, nullptr, nullptr), 4);
  EXPECT_EQ(wide(u"aソ", 2, 3), 3);
  EXPECT_EQ(out[3], '#');
  EXPECT_EQ(wide(u"aソ", -1, 4), 4);
  EXPECT_EQ(wide(u"aソ", -1, 2), 0);
  EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
  EXPECT_EQ(std::string(out, 2), "a#") << "no half of a character";
  EXPECT_EQ(wide(nullptr, 1, 4), 0);
  EXPECT_EQ(wide(u"a", 0, 4), 0);
  EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
  BOOL used = FALSE;
  EXPECT_EQ(WideCharToMultiByte(CP_ACP, 0, u"\xD83D\xDE00", 2, out, 8, "_", &used), 2);
  EXPECT_EQ(std::string(out, 2), "__");
  EXPECT_TRUE(used);
  EXPECT_EQ(WideCharToMultiByte(1252, 0, u"a", 1, out, 8, nullptr, nullptr), 0);

  WCHAR units[4];
  EXPECT_EQ(MultiByteToWideChar(932, 0, "a\x83\x5C", -1, nullptr, 0), 3);
  EXPECT_EQ(MultiByteToWideChar(932, 0, "a\x83\x5C", 3, units, 2), 2);
  EXPECT_EQ(MultiByteToWideChar(932, 0, "abc", 3, units, 2), 0);
  EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
}

TEST(CodePage, BadBytesNeverFail) {
  const struct {
    std::string bytes;
    std::u16string text;
  } rows[] = {{"\x83", u"\x30FB"},
              {"\x83 x", u"\x30FB x"},
              {"a\x81\xFF", u"a\x30FB\xF8F3"},
              {"\x85\x40z", u"\x30FBz"},
              {std::string("\x83\0", 2), std::u16string(u"\x30FB\0", 2)},
              {"\xFD\xFE\xFF\xA0", u"\xF8F1\xF8F2\xF8F3\xA0"}};
  for (const auto& row : rows) {
    WCHAR out[8] = {};
    const int count =
        MultiByteToWideChar(932, 0, row.bytes.data(), static_cast<int>(row.bytes.size()), out, 8);
    EXPECT_EQ(std::u16string(out, static_cast<size_t>(count)), row.text);
  }
}

TEST(Text, UnpairedSurrogatesPassThroughUtf8) {
  for (const std::u16string text : {u"\xD83D\xDE00x", u"\xD83Dx", u"\xDE00\xD83D", u"倉庫 é"}) {
    EXPECT_EQ(platform::ToUtf16(platform::ToUtf8(text)), text);
  }
  EXPECT_EQ(platform::ToUtf16("a\xC0\x80\xFF\xE3\x81"), u"a\xFFFD\xFFFD\xFFFD\xFFFD\xFFFD");
  EXPECT_TRUE(platform::EqualIgnoringCase(u"Ａéжω", u"ａÉЖΩ"));
  EXPECT_FALSE(platform::EqualIgnoringCase(u"÷", u"×"));
}

TEST(Text, FormatsWhatTheTextsHold) {
  WCHAR out[1100];
  const auto format = [&out](const char16_t* text, auto... arguments) {
    const int count = wsprintfW(out, text, arguments...);
    return std::u16string(out, static_cast<size_t>(count));
  };
  EXPECT_EQ(format(u"%d %d %u|%s%s%%|%", INT_MIN, 0, -1, u"倉", u""),
            u"-2147483648 0 4294967295|倉%|");
  EXPECT_EQ(format(u"%s", static_cast<const char16_t*>(nullptr)), u"(null)");
  const std::u16string text(2000, u'a');
  EXPECT_EQ(format(u"x%s", text.c_str()), u"x" + text.substr(0, 1022));
}

TEST(Drives, PathsFindFilesWhateverTheirCase) {
  const auto machine = Machine::Create();
  machine->WriteFile(u"C:\\Data\\倉庫\\File.ini", "1");
  const auto file = machine->HostPath(u"C:\\Data\\倉庫\\File.ini");
  for (const char16_t* path : {u"c:/DATA/倉庫/FILE.INI", u"\\data\\.\\x\\..\\倉庫\\file.ini",
                               u"C:\\..\\..\\data\\倉庫\\file.ini", u"c:data\\倉庫\\file.ini"}) {
    EXPECT_EQ(machine->HostPath(path), file);
  }
  EXPECT_EQ(machine->WindowsPath(file), u"C:\\Data\\倉庫\\File.ini");
  EXPECT_EQ(machine->HostPath(u"C:\\data\\New.TXT"), file.parent_path().parent_path() / "New.TXT");
  EXPECT_EQ(machine->HostPath(u"Z:\\tmp"), "/tmp");
  EXPECT_EQ(machine->HostPath(u"C:"), machine->HostPath(u"C:\\"));
  EXPECT_EQ(machine->WindowsPath("/nowhere/x"), u"Z:\\nowhere\\x");
  EXPECT_EQ(machine->HostPath(u"x.ini"), std::filesystem::current_path() / "x.ini");
  WCHAR out[32];
  EXPECT_EQ(GetSystemDirectoryW(out, 20), 19u);
  EXPECT_EQ(GetSystemDirectoryW(out, 19), 20u) << "the size needed, with the terminator";
}

}  // namespace
