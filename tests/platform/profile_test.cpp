// Profile files: reading every encoding, writing without changing other lines, and damage.
#include <filesystem>
#include <fstream>

#include "platform/machine/text.h"
#include "tests/support/test_machine.h"

namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
using platform::ToCp932;

constexpr char kPath[] = "C:\\settings.ini";
constexpr char16_t kWidePath[] = u"C:\\settings.ini";
constexpr DWORD kLarge = 1 << 12;

class Profile : public support::MachineTest {
 protected:
  void WriteFile(const std::string& bytes) { machine_->WriteFile(kWidePath, bytes); }
  std::string ReadFile() { return machine_->ReadFile(kWidePath).value_or("(no file)"); }
  static std::string Get(const char* section, const char* key, DWORD size = kLarge) {
    std::string out(size + 1, '#');
    const DWORD count = GetPrivateProfileStringA(section, key, "(none)  ", out.data(), size, kPath);
    EXPECT_EQ(out[count], 0);
    EXPECT_EQ(out[size], '#') << "nothing after the buffer";
    EXPECT_TRUE(key != nullptr || count + 2 != size || out[count + 1] == 0)
        << "a truncated list ends with two terminators";
    return out.substr(0, count);
  }
  static std::u16string GetWide(const char16_t* section, const char16_t* key) {
    char16_t out[200];
    return {out, GetPrivateProfileStringW(section, key, u"(none)", out, 200, kWidePath)};
  }
  static bool Set(const char* section, const char* key, const char* value) {
    return WritePrivateProfileStringA(section, key, value, kPath);
  }

  fs::path file_ = machine_->HostPath(kWidePath);
};

TEST_F(Profile, BothFormsReadEveryEncoding) {
  const std::u16string text = u"; 注釈\r\n[ﾊﾞｰｼﾞｮﾝ情報]\r\nDriverName=ゾ倉庫\r\n[ゾ]\r\nｷｰ=ソ\r\n";
  const std::string wide(reinterpret_cast<const char*>(text.data()), text.size() * 2);
  for (const auto& [file, odd] : {std::pair(ToCp932(text), ""), {"\xFF\xFE" + wide, "x"}}) {
    WriteFile(file + odd);
    EXPECT_EQ(GetWide(u"ﾊﾞｰｼﾞｮﾝ情報", u"DriverName"), u"ゾ倉庫");
    EXPECT_EQ(GetWide(u"ゾ", u"ｷｰ"), u"ソ") << "a second byte that looks like a bracket";
    EXPECT_EQ(GetWide(u"ゾ", u"ｷｰ\xD83D"), u"(none)") << "a name without a form in the file";
    EXPECT_EQ(Get(ToCp932(u"ゾ").c_str(), ToCp932(u"ｷｰ").c_str()), ToCp932(u"ソ"));
    // A write preserves the encoding and all other text.
    ASSERT_TRUE(Set(ToCp932(u"ゾ").c_str(), "x", ToCp932(u"表").c_str()));
    EXPECT_TRUE(ReadFile().starts_with(file) && ReadFile().ends_with(odd));
    EXPECT_EQ(GetWide(u"ゾ", u"x"), u"表");
  }
}

TEST_F(Profile, NamesMatchExactlyAndValuesAreTrimmed) {
  WriteFile(
      " [ one ] comment\r\n key = \" a b \" \r\nKEY='x'\r\nempty=\r\nhalf=\"x\r\nq=\"\r\n"
      "key=second\r\n;off=1\r\n=nameless\r\nnul=a\0b\r\n[two]\r\nlong=2\r\nk=\r\n[one]\r\nlate="s);
  const struct {
    const char *section, *key, *value;
  } values[] = {{"one", "key", " a b "},   {"one", "KEY", "x"},       {"one", "empty", ""},
                {"one", "half", "\"x"},    {"one", "q", "\""},        {"one", "Key", "(none)"},
                {"One", "key", "(none)"},  {"one", ";off", "(none)"}, {"one", "", "(none)"},
                {"one", "late", "(none)"}, {"one", "nul", "a"}};
  for (const auto& row : values) EXPECT_EQ(Get(row.section, row.key), row.value) << row.key;
  EXPECT_EQ(Get("two", nullptr), "long\0k\0"s);
}

TEST_F(Profile, LongResultIsTruncatedWithTerminators) {
  WriteFile("[one]\r\nwide=" + ToCp932(u"aソソ") + "\r\n");
  EXPECT_EQ(Get("one", "wide", 6), ToCp932(u"aソソ"));
  EXPECT_EQ(Get("one", "wide", 5), "a\x83\x5C\x83") << "half a character, as documented";
  EXPECT_EQ(Get("one", "wide", 1), "");
  EXPECT_EQ(Get("one", nullptr, 6), "wide\0"s);
  EXPECT_EQ(Get("one", nullptr, 5), "wid");
  EXPECT_EQ(Get("one", nullptr, 1), "");
}

TEST_F(Profile, WriteChangesOnlyItsLine) {
  const std::string top = "; top\n\n", start = "[a]\r\n; note\r\n",
                    rest = "foreign line\r\ny=2\r\n", end = "\r\n[b]\r\nz=3";
  const std::string before = top + start + "x = 1\n" + rest + end;
  const struct {
    const char *section, *key, *value;
    std::string after;
  } rows[] = {{"a", "x", "9", top + start + "x=9\n" + rest + end},
              {"a", "n", "", top + start + "x = 1\n" + rest + "n=\r\n" + end},
              {"b", "n", "5", before + "\r\nn=5\r\n"},
              {"c", "n", " 5 ", before + "\r\n[c]\r\nn= 5 \r\n"},
              {"a", nullptr, nullptr, top + end.substr(2)},
              {"none", nullptr, nullptr, before}};
  for (const auto& row : rows) {
    WriteFile(before);
    ASSERT_TRUE(Set(row.section, row.key, row.value));
    EXPECT_EQ(ReadFile(), row.after);
  }
}

TEST_F(Profile, FailedWriteLeavesFileUnchanged) {
  const std::string text = "[s]\r\nk=1\r\n";
  WriteFile(text);
  const auto count = [&] { return std::distance(fs::directory_iterator(file_.parent_path()), {}); };
  const auto entries = count();
  machine_->faults.FailNth(platform::Fault::kFile, 1);
  EXPECT_FALSE(Set("s", "k", "2"));
  fs::permissions(file_, fs::perms{0444});
  EXPECT_FALSE(Set("s", "k", "2"));
  EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
  EXPECT_EQ(Get("s", "k"), "1") << "the cache forgets the failed write";
  EXPECT_EQ(ReadFile(), text);
  EXPECT_EQ(count(), entries);
  EXPECT_FALSE(WritePrivateProfileStringA("s", "k", "v", "C:\\missing\\x.ini"));
  EXPECT_EQ(GetLastError(), ERROR_PATH_NOT_FOUND);
}

TEST_F(Profile, ReplacedFileIsReadAgain) {
  WriteFile("[s]\r\nk=1\r\n");
  EXPECT_EQ(Get("s", "k"), "1");
  const auto other = file_.parent_path() / "other.ini";
  std::ofstream(other) << "[s]\r\nk=2\r\n";
  fs::last_write_time(other, fs::last_write_time(file_));
  fs::rename(other, file_);
  EXPECT_EQ(Get("s", "k"), "2") << "same size, same time, another file";
}

}  // namespace
