// Profile files: what is read in every encoding, what a write leaves alone, what damage does.
#include <windows.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/machine.h"
#include "platform/system/text.h"

namespace {

using platform::Machine;
using platform::ToCp932;

constexpr char kPath[] = "C:\\settings.ini";
constexpr char16_t kWidePath[] = u"C:\\settings.ini";

std::string Utf16Bytes(std::u16string_view text) {
  return {reinterpret_cast<const char*>(text.data()), text.size() * 2};
}

class Profile : public testing::Test {
 protected:
  void Keep(const std::string& bytes) { machine_->WriteFile(kWidePath, bytes); }
  std::string Kept() { return machine_->ReadFile(kWidePath).value_or("(no file)"); }
  static std::string Get(const char* section, const char* key, const char* fallback = "(none)") {
    std::vector<char> out(1 << 21, 'x');
    const DWORD count = GetPrivateProfileStringA(section, key, fallback, out.data(),
                                                 static_cast<DWORD>(out.size()), kPath);
    EXPECT_EQ(out[count], 0);
    return {out.data(), count};
  }
  static std::u16string GetWide(const char16_t* section, const char16_t* key) {
    char16_t out[200];
    return {out, GetPrivateProfileStringW(section, key, u"(none)", out, 200, kWidePath)};
  }
  static bool Put(const char* section, const char* key, const char* value) {
    return WritePrivateProfileStringA(section, key, value, kPath);
  }

  std::unique_ptr<Machine> machine_ = Machine::Create();
};

TEST_F(Profile, BothFormsReadEveryEncoding) {
  const std::u16string text = u"; 注釈\r\n[ﾊﾞｰｼﾞｮﾝ情報]\r\nDriverName=ゾ倉庫\r\n[ゾ]\r\nｷｰ=ソ\r\n";
  const std::string bytes[] = {ToCp932(text), "\xFF\xFE" + Utf16Bytes(text)};
  for (const std::string& file : bytes) {
    Keep(file);
    EXPECT_EQ(GetWide(u"ﾊﾞｰｼﾞｮﾝ情報", u"DriverName"), u"ゾ倉庫");
    EXPECT_EQ(GetWide(u"ゾ", u"ｷｰ"), u"ソ") << "a second byte that looks like a bracket";
    EXPECT_EQ(GetWide(u"ゾ", u"ｷｰ\xD83D"), u"(none)") << "a name without a form in the file";
    EXPECT_EQ(Get(ToCp932(u"ゾ").c_str(), ToCp932(u"ｷｰ").c_str()), ToCp932(u"ソ"));
    // A write keeps the encoding and all that is there.
    ASSERT_TRUE(Put(ToCp932(u"ゾ").c_str(), "x", ToCp932(u"表").c_str()));
    EXPECT_EQ(Kept().substr(0, file.size()), file);
    EXPECT_EQ(GetWide(u"ゾ", u"x"), u"表");
  }
}

TEST_F(Profile, NamesMatchByteForByteAndValuesAreStripped) {
  Keep(
      " [ one ] comment\r\n key = \" a b \" "
      "\r\nKEY='x'\r\nempty=\r\nhalf=\"x\r\nq=\"\r\nkey=second\r\n"
      ";off=1\r\n=nameless\r\n[two]\r\nkey=2\r\n[one]\r\nlate=1\r\n");
  const struct {
    const char *section, *key, *value;
  } rows[] = {{"one", "key", " a b "},  {"one", "KEY", "x"},       {"one", "empty", ""},
              {"one", "half", "\"x"},   {"one", "q", "\""},        {"one", "Key", "(none)"},
              {"One", "key", "(none)"}, {"one", ";off", "(none)"}, {"one", "", "(none)"},
              {"two", "key", "2"},      {"one", "late", "(none)"}, {"three", "key", "(none)"}};
  for (const auto& row : rows) {
    EXPECT_EQ(Get(row.section, row.key), row.value) << row.section << "/" << row.key;
  }
  EXPECT_EQ(Get("one", "none", "text  "), "text") << "blanks behind a fallback are dropped";
}

TEST_F(Profile, CutsAnswersAsTheirSizeAsks) {
  Keep("[s]\r\nlong=abcdef\r\nk2=\r\nwide=" + ToCp932(u"aソソ") + "\r\n[t]\r\n");
  const struct {
    const char *section, *key;
    DWORD size, count;
    std::string bytes;
  } rows[] = {
      {"s", "long", 7, 6, std::string("abcdef\0", 7)},
      {"s", "long", 6, 5, std::string("abcde\0", 6)},
      {"s", "long", 1, 0, std::string("\0", 1)},
      {"s", "wide", 5, 3, ToCp932(u"aソ") + std::string(1, '\0')},
      {"s", nullptr, 20, 13, std::string("long\0k2\0wide\0\0", 14)},
      {"s", nullptr, 14, 13, std::string("long\0k2\0wide\0\0", 14)},
      {"s", nullptr, 13, 11, std::string("long\0k2\0wid\0\0", 13)},
      {"s", nullptr, 1, 0, std::string("\0", 1)},
      {nullptr, nullptr, 10, 4, std::string("s\0t\0\0", 5)},
      {"none", nullptr, 10, 0, std::string("\0", 1)},
  };
  for (const auto& row : rows) {
    std::string out(row.size + 1, '#');
    EXPECT_EQ(GetPrivateProfileStringA(row.section, row.key, "", out.data(), row.size, kPath),
              row.count);
    EXPECT_EQ(out.substr(0, row.bytes.size()), row.bytes);
    EXPECT_EQ(out.back(), '#') << "nothing behind the buffer";
  }
  EXPECT_EQ(GetPrivateProfileStringA("s", "long", "", nullptr, 0, kPath), 0u);
}

TEST_F(Profile, AWriteChangesItsLineAlone) {
  const std::string before =
      "; top\n\n[a]\r\n; note\r\nx = 1\nforeign line\r\ny=2\r\n\r\n[b]\r\nz=3";
  const struct {
    const char *section, *key, *value, *after;
  } rows[] = {
      {"a", "x", "9", "; top\n\n[a]\r\n; note\r\nx=9\nforeign line\r\ny=2\r\n\r\n[b]\r\nz=3"},
      {"a", "n", "",
       "; top\n\n[a]\r\n; note\r\nx = 1\nforeign line\r\ny=2\r\nn=\r\n\r\n[b]\r\nz=3"},
      {"b", "n", "5",
       "; top\n\n[a]\r\n; note\r\nx = 1\nforeign line\r\ny=2\r\n\r\n[b]\r\nz=3\r\nn=5\r\n"},
      {"c", "n", "5",
       "; top\n\n[a]\r\n; note\r\nx = 1\nforeign line\r\ny=2\r\n\r\n[b]\r\nz=3\r\n[c]\r\nn=5\r\n"},
      {"a", "x", nullptr, "; top\n\n[a]\r\n; note\r\nforeign line\r\ny=2\r\n\r\n[b]\r\nz=3"},
      {"a", nullptr, nullptr, "; top\n\n[b]\r\nz=3"},
      {"none", nullptr, nullptr, before.c_str()},
      {"none", "x", nullptr, before.c_str()},
  };
  for (const auto& row : rows) {
    Keep(before);
    ASSERT_TRUE(Put(row.section, row.key, row.value));
    EXPECT_EQ(Kept(), row.after);
  }
}

TEST_F(Profile, ANewFileHasCrlfAndNoBlankLines) {
  for (const char* key : {"b", "a"}) ASSERT_TRUE(Put("s", key, "1"));
  ASSERT_TRUE(Put("t", "c", " 2 "));
  EXPECT_EQ(Kept(), "[s]\r\nb=1\r\na=1\r\n[t]\r\nc= 2 \r\n");
  // A bare name lies in the Windows directory, in both forms.
  ASSERT_TRUE(WritePrivateProfileStringA("s", "k", "v", "bare.ini"));
  EXPECT_EQ(machine_->ReadFile(u"C:\\WINDOWS\\bare.ini"), "[s]\r\nk=v\r\n");
  char16_t out[8];
  EXPECT_EQ(GetPrivateProfileStringW(u"s", u"k", u"", out, 8, u"BARE.INI"), 1u);
}

TEST_F(Profile, DamageIsSurvivedAndKept) {
  const std::string files[] = {
      "",
      "[s]\r\nlong=" + std::string(1 << 20, 'a') + "\r\n",
      std::string("[s]\r\nn=a\0b\r\n\0\0=\0\r\n", 18),
      "[s]\rk=1\rl=2\r",
      "no equals sign\r\n====\r\n[never closed\r\nx\r\n",
      "\xFF\xFE[\0x",
      "\xFF\xFE\x3D\xD8=\0\r\0\n",
      "\xEF\xBB\xBF\xFF\xC0\x80=\xED\xA0\x80\r\n",
      "\x81",
      "[\x83",
  };
  for (const std::string& file : files) {
    Keep(file);
    Get(nullptr, nullptr);
    Get("s", "n");
    ASSERT_TRUE(Put("new", "key", "value"));
    EXPECT_EQ(Get("new", "key"), "value");
    // An odd byte at the end of a UTF-16 file stays its last.
    const bool odd = file.starts_with("\xFF\xFE") && file.size() % 2 == 1;
    const std::string head = file.substr(0, file.size() - odd);
    EXPECT_EQ(Kept().substr(0, head.size()), head);
    if (odd) {
      EXPECT_EQ(Kept().back(), file.back());
    }
  }
  Keep(std::string("[s]\r\nn=a\0b\r\n", 12));
  EXPECT_EQ(Get("s", "n"), "a") << "a text ends at its first NUL";
}

TEST_F(Profile, AFailedWriteLeavesTheFileAndNothingBeside) {
  const std::string text = "[s]\r\nk=1\r\n";
  Keep(text);
  const auto file = machine_->HostPath(kWidePath);
  const auto count = [&] {
    return std::distance(std::filesystem::directory_iterator(file.parent_path()), {});
  };
  const auto entries = count();
  machine_->faults.FailNth(platform::Fault::kFile, 1);
  EXPECT_FALSE(Put("s", "k", "2"));
  EXPECT_EQ(Get("s", "k"), "1");
  chmod(file.c_str(), 0444);
  EXPECT_FALSE(Put("s", "k", "2"));
  EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
  EXPECT_EQ(Get("s", "k"), "1") << "what was not written is not remembered";
  EXPECT_EQ(Kept(), text);
  EXPECT_EQ(count(), entries);
  for (const auto& [path, error] : {std::pair("C:\\missing\\x.ini", ERROR_PATH_NOT_FOUND),
                                    {"Q:\\x.ini", ERROR_PATH_NOT_FOUND},
                                    {"C:\\WINDOWS", ERROR_ACCESS_DENIED}}) {
    EXPECT_FALSE(WritePrivateProfileStringA("s", "k", "v", path));
    EXPECT_EQ(GetLastError(), DWORD{error}) << path;
  }
  EXPECT_FALSE(WritePrivateProfileStringA(nullptr, nullptr, nullptr, kPath));
}

TEST_F(Profile, WhatAKillLeftBesideGoesWithTheNextWrite) {
  Keep("");
  const auto folder = machine_->HostPath(kWidePath).parent_path();
  const auto old = std::filesystem::file_time_type::clock::now() - std::chrono::minutes(2);
  const struct {
    const char* name;
    bool aged, stays;
  } rows[] = {{".settings.ini.123.0", true, false}, {".settings.ini.123.1", false, true},
              {".settings.ini.123.x", true, true},  {".settings.ini.bak", true, true},
              {".settings.ini.a.1", true, true},    {".other.ini.123.0", true, true}};
  for (const auto& row : rows) {
    std::ofstream(folder / row.name) << "x";
    if (row.aged) std::filesystem::last_write_time(folder / row.name, old);
  }
  ASSERT_TRUE(Put("s", "k", "1"));
  for (const auto& row : rows) {
    EXPECT_EQ(std::filesystem::exists(folder / row.name), row.stays) << row.name;
  }
}

TEST_F(Profile, AReplacedFileIsReadAnewAndItsModeAndLinkStay) {
  Keep("[s]\r\nk=1\r\n");
  EXPECT_EQ(Get("s", "k"), "1");
  const auto file = machine_->HostPath(kWidePath);
  const auto other = file.parent_path() / "other.ini";
  std::ofstream(other) << "[s]\r\nk=2\r\n";
  std::filesystem::last_write_time(other, std::filesystem::last_write_time(file));
  std::filesystem::rename(other, file);
  EXPECT_EQ(Get("s", "k"), "2") << "same size, same time, another file";
  chmod(file.c_str(), 0640);
  const auto link = file.parent_path() / "link.ini";
  std::filesystem::create_symlink(file, link);
  ASSERT_TRUE(WritePrivateProfileStringA("s", "k", "3", "C:\\link.ini"));
  EXPECT_TRUE(std::filesystem::is_symlink(link));
  EXPECT_EQ(Get("s", "k"), "3");
  struct stat information;
  ASSERT_EQ(stat(file.c_str(), &information), 0);
  EXPECT_EQ(information.st_mode & 0777, 0640u);
}

}  // namespace
