// Modules, heaps, code pages, texts and paths.
#include <windows.h>
#include <shellapi.h>

#include <climits>
#include <filesystem>

#include "platform/machine/text.h"
#include "tests/support/test_machine.h"

namespace {

using platform::Fault;
using platform::FromCp932;
using platform::ToCp932;

using System = support::MachineTest;

INT_PTR WINAPI Answer() { return 7; }

TEST_F(System, ModuleIsFoundByNameAndCounted) {
  machine().RegisterModule(u"QM610rLIB.DLL", {{"Entry", Answer}});
  const HMODULE module = LoadLibraryW(u"C:\\anywhere\\qm610rlib.dll");
  EXPECT_EQ(LoadLibraryW(u"c:\\ANYWHERE\\QM610rLib"), module);
  EXPECT_EQ(GetProcAddress(module, "entry"), nullptr) << "names of entries have their case";
  EXPECT_TRUE(FreeLibrary(module));
  EXPECT_EQ(GetProcAddress(module, "Entry"), FARPROC{Answer}) << "still loaded";
  EXPECT_TRUE(FreeLibrary(module) && !FreeLibrary(module));
  EXPECT_EQ(LoadLibraryW(u"C:\\anywhere\\comdlg32.dll"), nullptr);
  EXPECT_EQ(GetLastError(), ERROR_MOD_NOT_FOUND);
}

TEST_F(System, DestroyedHeapFreesItsBlocks) {
  const HANDLE heap = HeapCreate(0, 0, 0);
  void* const block = HeapAlloc(heap, 0, 0);
  EXPECT_NE(HeapAlloc(heap, 0, 0), block) << "even an empty block has its own address";
  EXPECT_FALSE(HeapFree(GetProcessHeap(), 0, block)) << "a block of another heap";
  EXPECT_EQ(machine_->LiveAllocations(), 2);
  EXPECT_TRUE(HeapFree(heap, 0, block));
  EXPECT_DEATH(HeapFree(heap, 0, block), "no heap holds");
  EXPECT_TRUE(HeapDestroy(heap) && !HeapDestroy(heap) && !HeapDestroy(GetProcessHeap()));
  EXPECT_EQ(HeapAlloc(heap, 0, 1), nullptr);
  EXPECT_EQ(machine_->LiveHeaps() + machine_->LiveAllocations(), 0);
}

TEST(CodePage, Page932MatchesTheSystem) {
  EXPECT_EQ(ToCp932(u"A\\~\xFF8A\x3042\x30BD\xFF5E\x2225\x2460\x2160\x2252\xFFE2\x2235\x7E8A\x9AD9"
                    u"\xFA11\x2170\xE000\xE757\x80"),
            "A\\~\xCA\x82\xA0\x83\x5C\x81\x60\x81\x61\x87\x40\x87\x54\x81\xE0\x81\xCA\x81\xE6"
            "\xFA\x5C\xFB\xFC\xFA\xB1\xFA\x40\xF0\x40\xF9\xFC\x80");
  EXPECT_EQ(ToCp932(u"\xA5\x301C\xE9\x20AC\xD842\xFFFF"), "??????");
  // The NEC and IBM duplicates decode to the characters that they duplicate.
  EXPECT_EQ(FromCp932("\x87\x90\xEE\xEF\xED\x40"), u"\x2252\x2170\x7E8A");
  // Undefined bytes.
  EXPECT_EQ(FromCp932("\x83 a\x81\xFF\x85\x40z\xFD\xFE\xFF\xA0\x83"),
            u"\x30FB a\x30FB\xF8F3\x30FBz\xF8F1\xF8F2\xF8F3\xA0\x30FB");
  EXPECT_EQ(FromCp932({"\x83\0", 2}), std::u16string(u"\x30FB\0", 2));
  int forms = 0;
  for (WCHAR unit = 1; unit != 0; ++unit) {
    bool lossless = false;
    const std::string bytes = ToCp932({&unit, 1}, &lossless);
    ASSERT_EQ(FromCp932(bytes), std::u16string(1, lossless ? unit : u'?')) << int{unit};
    forms += lossless;
  }
  EXPECT_EQ(forms, 9401);
}

TEST(CodePage, TruncatedConversionHasNoHalfCharacter) {
  std::string out = "####";
  const auto convert = [&out](int size) {
    return WideCharToMultiByte(932, 0, u"aソ", -1, out.data(), size, nullptr, nullptr);
  };
  EXPECT_EQ(convert(0), 4) << "the required size";
  EXPECT_EQ(convert(2), 0);
  EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
  EXPECT_EQ(out, "a###");
}

TEST_F(System, AnsiPageFollowsTheSetting) {
  const auto toAnsi = [&](UINT page, const char16_t* text, DWORD flags = 0) {
    char out[16] = {};
    machine_->SetAnsiPage(page);
    WideCharToMultiByte(CP_ACP, flags, text, -1, out, 16, nullptr, nullptr);
    return std::string(out);
  };
  EXPECT_EQ(toAnsi(932, u"\xA5\xE9"), "\\e") << "similar characters, unless they are refused";
  EXPECT_EQ(toAnsi(932, u"\xA5\xE9", WC_NO_BEST_FIT_CHARS), "??");
  EXPECT_EQ(toAnsi(949, u"한用"), "\xC7\xD1\xE9\xC4");
  EXPECT_EQ(toAnsi(CP_UTF8, u"用\xD83D"), "\xE7\x94\xA8\xEF\xBF\xBD");
  EXPECT_FALSE(IsDBCSLeadByteEx(CP_ACP, 0x83));
  EXPECT_TRUE(IsDBCSLeadByteEx(932, 0x83));
  machine_->SetCodePage932(false);
  EXPECT_FALSE(IsDBCSLeadByteEx(932, 0x83));
  machine_->SetAnsiPage(932);
  EXPECT_TRUE(IsDBCSLeadByteEx(932, 0x83)) << "the ANSI page is always installed";
}

TEST(Text, ConvertsFoldsAndFormats) {
  for (const std::u16string text :
       {u"\xD83D\xDE00x", u"\xD800\xDC00", u"\xD83Dx", u"\xDE00\xD83D", u"倉庫 é"}) {
    EXPECT_EQ(platform::ToUtf16(platform::ToUtf8(text)), text);
  }
  EXPECT_EQ(platform::ToUtf16("a\xC0\x80\xFF\xE3\x81"), u"a\xFFFD\xFFFD\xFFFD\xFFFD\xFFFD");
  EXPECT_TRUE(platform::EqualIgnoringCase(u"Ａéжωⅰāĺ", u"ａÉЖΩⅠĀĹ"));
  EXPECT_FALSE(platform::EqualIgnoringCase(u"÷", u"×"));
  std::u16string out(1100, u'#');
  EXPECT_EQ(wsprintfW(out.data(), u"%d %d %u|%s%s%%|%", INT_MIN, 0, -1, u"倉", u""), 28);
  EXPECT_STREQ(platform::ToUtf8(out.c_str()).c_str(), "-2147483648 0 4294967295|倉%|");
  EXPECT_EQ(wsprintfW(out.data(), u"x%s", std::u16string(2000, u'a').c_str()), 1023);
  EXPECT_EQ(out.substr(1022), std::u16string(u"a\0", 2) + std::u16string(76, u'#'));
}

TEST_F(System, PathsIgnoreLetterCase) {
  machine_->WriteFile(u"C:\\Data\\倉庫\\File.ini", "1");
  const auto file = machine_->HostPath(u"C:\\Data\\倉庫\\File.ini");
  for (const char16_t* path : {u"c:/DATA/倉庫/FILE.INI", u"\\data\\.\\x\\..\\倉庫\\file.ini",
                               u"C:\\..\\..\\data\\倉庫\\file.ini", u"c:data\\倉庫\\file.ini"}) {
    EXPECT_EQ(machine_->HostPath(path), file);
  }
  EXPECT_EQ(machine_->WindowsPath(file), u"C:\\Data\\倉庫\\File.ini");
}

TEST_F(System, RelativePathStartsAtCurrentDirectory) {
  machine_->WriteFile(u"C:\\data\\sub\\file", "");
  ASSERT_TRUE(SetCurrentDirectoryW(u"C:\\data\\sub\\"));
  const char16_t* const kRelative[][2] = {{u"..\\..\\..\\x.ini", u"C:\\x.ini"},
                                          {u"new\\..\\..\\x.ini", u"C:\\data\\x.ini"},
                                          {u"c:x.ini", u"C:\\data\\sub\\x.ini"},
                                          {u"z:x.ini", u"Z:\\x.ini"}};
  for (const auto& [relative, full] : kRelative)
    EXPECT_EQ(machine_->HostPath(relative), machine_->HostPath(full)) << ToCp932(relative);
  WCHAR path[20];
  EXPECT_EQ(GetCurrentDirectoryW(11, path), 12u) << "the required size";
  EXPECT_FALSE(SetCurrentDirectoryW(u"file"));
  EXPECT_EQ(GetLastError(), ERROR_DIRECTORY);
}

}  // namespace
