// Profile files: reading every encoding, writing without changing other lines, and damage.
#include <chrono>
#include <filesystem>
#include <fstream>
#include <tuple>

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
  void Keep(const std::string& bytes) { machine_->WriteFile(kWidePath, bytes); }
  std::string Kept() { return machine_->ReadFile(kWidePath).value_or("(no file)"); }
  // Shows the terminators of a list of keys as "|".
  static std::string Get(const char* section, const char* key, DWORD size = kLarge) {
    std::string out(size + 1, '#');
    const DWORD count = GetPrivateProfileStringA(section, key, "(none)  ", out.data(), size, kPath);
    EXPECT_EQ(out[count], 0);
    EXPECT_EQ(out[size], '#') << "nothing behind the buffer";
    EXPECT_TRUE(key != nullptr || count + 2 != size || out[count + 1] == 0) << "a cut list";
    for (char& c : out) c = c == 0 ? '|' : c;
    return out.substr(0, count);
  }
  static std::u16string GetWide(const char16_t* section, const char16_t* key) {
    char16_t out[200];
    return {out, GetPrivateProfileStringW(section, key, u"(none)", out, 200, kWidePath)};
  }
  static bool Put(const char* section, const char* key, const char* value) {
    return WritePrivateProfileStringA(section, key, value, kPath);
  }

  fs::path file_ = machine_->HostPath(kWidePath);
};

TEST_F(Profile, BothFormsReadEveryEncoding) {
  const std::u16string text = u"; 注釈\r\n[ﾊﾞｰｼﾞｮﾝ情報]\r\nDriverName=ゾ倉庫\r\n[ゾ]\r\nｷｰ=ソ\r\n";
  const std::string wide(reinterpret_cast<const char*>(text.data()), text.size() * 2);
  for (const auto& [file, odd] : {std::pair(ToCp932(text), ""), {"\xFF\xFE" + wide, "x"}}) {
    Keep(file + odd);
    EXPECT_EQ(GetWide(u"ﾊﾞｰｼﾞｮﾝ情報", u"DriverName"), u"ゾ倉庫");
    EXPECT_EQ(GetWide(u"ゾ", u"ｷｰ"), u"ソ") << "a second byte that looks like a bracket";
    EXPECT_EQ(GetWide(u"ゾ", u"ｷｰ\xD83D"), u"(none)") << "a name without a form in the file";
    EXPECT_EQ(Get(ToCp932(u"ゾ").c_str(), ToCp932(u"ｷｰ").c_str()), ToCp932(u"ソ"));
    // A write keeps the encoding and all other text.
    ASSERT_TRUE(Put(ToCp932(u"ゾ").c_str(), "x", ToCp932(u"表").c_str()));
    EXPECT_TRUE(Kept().starts_with(file) && Kept().ends_with(odd));
    EXPECT_EQ(GetWide(u"ゾ", u"x"), u"表");
  }
}

TEST_F(Profile, NamesMatchExactlyAndValuesAreTrimmed) {
  Keep(
      " [ one ] comment\r\n key = \" a b \" \r\nKEY='x'\r\nempty=\r\nhalf=\"x\r\nq=\"\r\n"
      "key=second\r\n;off=1\r\n=nameless\r\nwide=" +
      ToCp932(u"aソソ") + "\r\nnul=a\0b\r\n[two]\r\nlong=2\r\nk=\r\n[one]\r\nlate="s);
  const struct {
    const char *section, *key, *answer;
    DWORD size = kLarge;
  } rows[] = {{"one", "key", " a b "},      {"one", "KEY", "x"},
              {"one", "empty", ""},         {"one", "half", "\"x"},
              {"one", "q", "\""},           {"one", "Key", "(none)"},
              {"One", "key", "(none)"},     {"one", ";off", "(none)"},
              {"one", "", "(none)"},        {"one", "late", "(none)"},
              {"one", "nul", "a"},          {"three", "key", "(none)"},
              {"one", "key", " a b ", 6},   {"one", "key", " a b", 5},
              {"one", "key", "", 1},        {"one", "wide", "a\x83\x5C\x83", 5},
              {"two", nullptr, "long|k|"},  {"two", nullptr, "long|k|", 8},
              {"two", nullptr, "long|", 7}, {"two", nullptr, "", 1},
              {"none", nullptr, ""}};
  for (const auto& row : rows) {
    EXPECT_EQ(Get(row.section, row.key, row.size), row.answer)
        << row.section << "/" << (row.key == nullptr ? "keys" : row.key) << " " << row.size;
  }
}

TEST_F(Profile, AnsiFormConvertsByTheAnsiPage) {
  const std::string section = ToCp932(u"印刷"), file = "[" + section + "]\r\nk=" + section + "\r\n";
  machine_->SetAnsiPage(1252);
  ASSERT_TRUE(Put(section.c_str(), "k", section.c_str()));
  EXPECT_EQ(Kept(), file);
  EXPECT_EQ(Get(section.c_str(), "k"), section);
  EXPECT_FALSE(WritePrivateProfileStringA("s", "k", "1", ToCp932(u"C:\\表.ini").c_str()))
      << "its second byte is a separator in that page";
  machine_->SetAnsiPage(CP_UTF8);
  EXPECT_EQ(Get(section.c_str(), "k"), "(none)");
  std::filesystem::remove(file_);
  ASSERT_TRUE(Put(section.c_str(), "k", "1"));
  EXPECT_TRUE(Kept().starts_with("[\xEF\xBF\xBD"));
}

TEST_F(Profile, WriteChangesOnlyItsLine) {
  const std::string a = "; top\n\n", b = "[a]\r\n; note\r\n", c = "foreign line\r\ny=2\r\n",
                    d = "\r\n[b]\r\nz=3";
  const std::string before = a + b + "x = 1\n" + c + d;
  const struct {
    const char *section, *key, *value;
    std::string after;
  } rows[] = {{"a", "x", "9", a + b + "x=9\n" + c + d},
              {"a", "n", "", a + b + "x = 1\n" + c + "n=\r\n" + d},
              {"b", "n", "5", before + "\r\nn=5\r\n"},
              {"c", "n", " 5 ", before + "\r\n[c]\r\nn= 5 \r\n"},
              {"a", nullptr, nullptr, a + d.substr(2)},
              {"none", nullptr, nullptr, before}};
  for (const auto& row : rows) {
    Keep(before);
    ASSERT_TRUE(Put(row.section, row.key, row.value));
    EXPECT_EQ(Kept(), row.after);
  }
  // A new file; a name without a folder is in the Windows directory.
  for (const char* key : {"b", "a"})
    ASSERT_TRUE(WritePrivateProfileStringA("s", key, "1", "n.ini"));
  ASSERT_TRUE(WritePrivateProfileStringA("t", "c", "2", "n.ini"));
  EXPECT_EQ(machine_->ReadFile(u"C:\\WINDOWS\\n.ini"), "[s]\r\nb=1\r\na=1\r\n[t]\r\nc=2\r\n");
}

TEST_F(Profile, FailedWriteLeavesFileUnchanged) {
  const std::string text = "[s]\r\nk=1\r\n";
  Keep(text);
  const auto count = [&] { return std::distance(fs::directory_iterator(file_.parent_path()), {}); };
  const auto entries = count();
  machine_->faults.FailNth(platform::Fault::kFile, 1);
  EXPECT_FALSE(Put("s", "k", "2"));
  fs::permissions(file_, fs::perms{0444});
  EXPECT_FALSE(Put("s", "k", "2"));
  EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
  EXPECT_EQ(Get("s", "k"), "1") << "what was not written is not remembered";
  EXPECT_EQ(Kept(), text);
  EXPECT_EQ(count(), entries);
  EXPECT_FALSE(WritePrivateProfileStringA("s", "k", "v", "C:\\missing\\x.ini"));
  EXPECT_EQ(GetLastError(), ERROR_PATH_NOT_FOUND);
  EXPECT_FALSE(WritePrivateProfileStringA("s", "k", "v", "C:\\WINDOWS"));
}

TEST_F(Profile, WriteRemovesFilesOfKilledProcesses) {
  Keep("");
  // Minutes since each file was written, and whether it stays.
  const std::tuple<const char*, int, bool> kNames[] = {
      {".settings.ini.123.0", 2, false}, {".settings.ini.123.1", 0, true},
      {".settings.ini.123.x", 2, true},  {".settings.ini.bak", 2, true},
      {".settings.ini.a.1", 2, true},    {".other.ini.123.0", 2, true}};
  const auto now = fs::file_time_type::clock::now();
  for (const auto& [name, age, stays] : kNames) {
    std::ofstream(file_.replace_filename(name)) << "x";
    fs::last_write_time(file_, now - std::chrono::minutes(age));
  }
  ASSERT_TRUE(Put("s", "k", "1"));
  for (const auto& [name, age, stays] : kNames)
    EXPECT_EQ(fs::exists(file_.replace_filename(name)), stays) << name;
}

TEST_F(Profile, ReplacedFileIsReadAgainAndKeepsModeAndLink) {
  Keep("[s]\r\nk=1\r\n");
  EXPECT_EQ(Get("s", "k"), "1");
  const auto other = file_.parent_path() / "other.ini", link = file_.parent_path() / "link.ini";
  std::ofstream(other) << "[s]\r\nk=2\r\n";
  fs::last_write_time(other, fs::last_write_time(file_));
  fs::rename(other, file_);
  EXPECT_EQ(Get("s", "k"), "2") << "same size, same time, another file";
  fs::permissions(file_, fs::perms{0640});
  fs::create_symlink(file_, link);
  ASSERT_TRUE(WritePrivateProfileStringA("s", "k", "3", "C:\\link.ini"));
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_EQ(Get("s", "k"), "3");
  EXPECT_EQ(fs::status(file_).permissions(), fs::perms{0640});
}

}  // namespace
