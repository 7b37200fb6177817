#include "driver/text.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/machine.h"

namespace kestrel {
namespace {

TEST(PrinterNames, AreCutByMode) {
  struct Case {
    const WCHAR* name;
    int mode;
    bool given;
    std::u16string part;
  };
  const Case cases[] = {
      {u"\\\\server\\Label,LPT1:", 0, true, u"\\\\server\\Label,LPT1:"},
      {u"\\\\server\\Label,LPT1:", 1, true, u"\\\\server\\Label"},
      {u"\\\\server\\Label,LPT1:", 2, true, u"Label"},
      {u"Label", 2, true, u"Label"},
      {u",LPT1:", 1, true, u""},
      {u"a,C:\\out", 2, true, u"out"},  // the last backslash counts, wherever it stands
      {u"a", 3, false, u""},
      {u"a", -1, false, u""},
      {nullptr, 0, false, u""},
  };
  for (const Case& c : cases) {
    WCHAR out[40] = u"before";
    EXPECT_EQ(CutPrinterName(out, 40, c.name, c.mode), c.given);
    EXPECT_EQ(out, c.part);
  }
  WCHAR narrow[4];
  EXPECT_TRUE(CutPrinterName(narrow, 4, u"Label", 2));
  EXPECT_EQ(narrow, std::u16string(u"Lab"));
  EXPECT_TRUE(CutPrinterName(narrow, 1, u"Label", 2));
  EXPECT_EQ(narrow[0], 0);
}

TEST(CodePageText, IsCutAtWholeCharacters) {
  platform::Machine::Create();
  struct Case {
    const WCHAR* text;
    int size;
    std::string bytes;
  };
  const Case cases[] = {
      {u"表A", 4, "\x95\x5c\x41"},
      {u"表A", 3, "\x95\x5c"},
      {u"表A", 2, ""},
      {u"A表", 3, "A"},
      {u"ｱ¥\\", 9, "\xb1?\\"},
      {u"", 4, ""},
  };
  for (const Case& c : cases) {
    char out[16];
    std::fill_n(out, 16, 'x');
    EXPECT_EQ(ToCodePage(c.text, -1, out, c.size), static_cast<int>(c.bytes.size()));
    EXPECT_EQ(std::string(out), c.bytes);
    EXPECT_EQ(out[c.size], 'x') << "wrote behind the buffer";
  }
  WCHAR wide[3];
  EXPECT_EQ(FromCodePage("\x95\x5c\x95\x5c\x95\x5c", -1, wide, sizeof wide), 2);
  EXPECT_EQ(wide, std::u16string(u"表表"));
  EXPECT_EQ(FromCodePage("A\x95", 2, wide, sizeof wide), 1) << "half a character counts as none";
  EXPECT_EQ(wide, std::u16string(u"A"));
  EXPECT_EQ(FromCodePage("AB", 1, wide, sizeof wide), 1);
  for (const int bytes : {0, 1, 2}) EXPECT_EQ(FromCodePage("AB", 2, wide, bytes), 0) << bytes;
  for (const char* bad : {"A\x81\x20\x81\x20", "\x81\x20\x81\x20\x81\x20", "\xff\xff\xff"}) {
    const int units = FromCodePage(bad, -1, wide, sizeof wide);
    EXPECT_TRUE(units == 1 || units == 2) << bad;
    EXPECT_EQ(std::u16string(wide).size(), static_cast<size_t>(units)) << bad;
  }
}

TEST(CodePageText, TellsTheFirstUnitWithoutAForm) {
  platform::Machine::Create();
  struct Case {
    const WCHAR* text;
    int maximum;
    int index;  // -1: all have one
  };
  const Case cases[] = {
      {u"a?b", 10, -1}, {u"aé", 10, 1},   {u"aé", 1, -1}, {u"é", 0, -1},
      {u"é", -5, -1},   {u"髙ｱ", 10, -1}, {u"x¥", 10, 1}, {u"\xD83D\xDE00", 10, 0},
  };
  for (const Case& c : cases) {
    int index = -1;
    EXPECT_EQ(IsCp932Representable(c.text, c.maximum, &index), c.index < 0);
    EXPECT_EQ(index, c.index);
    EXPECT_EQ(IsCp932Representable(c.text, c.maximum, nullptr), c.index < 0);
  }
}

TEST(Integers, AreReadUpToTheFirstOtherCharacter) {
  struct Case {
    const char* text;
    LONG value;
    bool positive;
  };
  const Case cases[] = {
      {"", 0, true},
      {"  +12x9", 12, true},
      {"-7", -7, false},
      {"--7", 0, false},
      {"+-7", 0, true},
      {"70000", 70000, true},
      {"4294967297", INT32_MAX, true},
      {"-99999999999999999999", INT32_MIN, false},
      {"2147483647", INT32_MAX, true},
      {"-2147483648", INT32_MIN, false},
  };
  for (const Case& c : cases) {
    bool positive = !c.positive;
    EXPECT_EQ(IntegerFromText(c.text, &positive), c.value) << c.text;
    EXPECT_EQ(positive, c.positive) << c.text;
    const std::u16string wide(c.text, c.text + std::char_traits<char>::length(c.text));
    EXPECT_EQ(IntegerFromText(wide.c_str()), c.value) << c.text;
  }
  EXPECT_EQ(IntegerFromText("\t5"), 0);
  EXPECT_EQ(IntegerFromText(u"\t\n5"), 5);
}

TEST(Texts, StayWithinTheirBuffers) {
  WCHAR buffer[6] = u"ab";
  EXPECT_EQ(AppendText(buffer, u"cdefgh"), 3);
  EXPECT_EQ(buffer, std::u16string(u"abcde"));
  EXPECT_EQ(AppendText(buffer, u"x"), 0);
  EXPECT_EQ(CopyText(buffer, nullptr), 0);
  EXPECT_EQ(std::u16string(buffer, 6), std::u16string(6, 0)) << "a tail is left";
  buffer[0] = u'x';
  EXPECT_EQ(CopyText(buffer, 1, u"y"), 0);
  EXPECT_EQ(buffer[0], 0);
  const WCHAR unterminated[3] = {'x', 'y', 'z'};
  EXPECT_EQ(CopyField(buffer, 6, unterminated, 3), 3);
  EXPECT_EQ(buffer, std::u16string(u"xyz"));
  EXPECT_TRUE(SameTextIgnoringCase(u"Explorer.EXE", u"explorer.exe"));
  EXPECT_FALSE(SameText(u"a", u"A"));
  EXPECT_TRUE(SameText(nullptr, u""));
}

}  // namespace
}  // namespace kestrel
