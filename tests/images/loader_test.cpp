// Windows images as the loader takes and refuses them: the sample library, whole and damaged.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "platform/machine.h"
#include "platform/system/image_map.h"
#include "platform/system/resources.h"
#include "tests/support/bin_dir.h"
#include "tests/support/settings.h"

namespace {

using Image = std::vector<std::byte>;

constexpr char16_t kPath[] = u"C:\\drivers\\Sample.dll";
// Places in the file: of the new header, from there of the optional header, of its directories and
// of the section headers; the widths of the latter two.
constexpr size_t kNewHeaderAt = 0x3C, kOptionalAt = 24, kDirectoriesAt = kOptionalAt + 112;
constexpr size_t kSize = 6 * 4096;  // in memory
constexpr size_t kSectionsAt = kDirectoriesAt + 128, kDirectory = 8, kSection = 40;

// How the process has mapped a range of addresses, page by page, as /proc/self/maps tells it.
std::string Pages(uintptr_t from, size_t size) {
  std::string pages;
  std::ifstream maps("/proc/self/maps");
  for (std::string line; std::getline(maps, line);) {
    uintptr_t start = 0, end = 0;
    char dash = 0;
    std::string protection;
    std::istringstream(line) >> std::hex >> start >> dash >> end >> protection;
    for (; start < end && start >= from && start - from < size; start += 4096) {
      pages += protection.substr(0, 3) + ' ';
    }
  }
  return pages;
}

class Loader : public testing::Test {
 protected:
  HMODULE Load(const Image& image) {
    machine_->WriteFile(kPath, {reinterpret_cast<const char*>(image.data()), image.size()});
    SetLastError(0);
    return LoadLibraryW(kPath);
  }
  template <typename Function>
  Function* Entry(const char* name) {
    return reinterpret_cast<Function*>(reinterpret_cast<void (*)()>(GetProcAddress(module_, name)));
  }
  // Where a text of the image lies in the file.
  size_t Find(std::string_view text) const {
    const std::string_view all(reinterpret_cast<const char*>(sample_.data()), sample_.size());
    EXPECT_EQ(all.find(text), all.rfind(text)) << text;
    return all.find(text);
  }

  std::unique_ptr<platform::Machine> machine_ = platform::Machine::Create();
  Image sample_ = platform::ReadWhole(support::Built("sample.dll"));
  size_t header_ = support::At<uint32_t>(sample_.data(), kNewHeaderAt);
  HMODULE module_ = nullptr;
};

TEST_F(Loader, RunsAnImageAndTakesItAwayAgain) {
  module_ = Load(sample_);
  ASSERT_NE(module_, nullptr) << GetLastError();
  const auto base = reinterpret_cast<uintptr_t>(module_);
  EXPECT_EQ(LoadLibraryW(u"c:\\DRIVERS\\sample"), module_);
  WCHAR path[40];
  EXPECT_EQ(GetModuleFileNameW(module_, path, 40), 21u);
  EXPECT_EQ(path, std::u16string(kPath));

  const auto apply = Entry<int WINAPI(int, int)>("Apply");
  EXPECT_EQ(apply(0, 21), 42);
  EXPECT_EQ(apply(1, 21), -21);
  EXPECT_EQ((Entry<int WINAPI()>("Count")(), Entry<int WINAPI()>("Count")()), 43);
  WCHAR text[20];
  EXPECT_EQ(Entry<int WINAPI(LPWSTR)>("Text")(text), 5);
  EXPECT_EQ(text, std::u16string(u"three"));
  Entry<int WINAPI(LPWSTR, int, LPCWSTR)>("Fill")(text, -7, u"seven");
  EXPECT_EQ(text, std::u16string(u"-7 seven"));
  for (const char* name : {"Missing", "apply", "Forwarded", ""}) {
    EXPECT_EQ(GetProcAddress(module_, name), nullptr) << name;
    EXPECT_EQ(GetLastError(), DWORD{ERROR_PROC_NOT_FOUND});
  }

  // Its own memory, each section as it asks, and nothing that can be both written and run.
  EXPECT_EQ(Pages(base, kSize), "r-- r-x r-- rw- r-- r-- ");
  const platform::Bytes label =
      platform::FindResourceBytes(module_, u"Label", MAKEINTRESOURCEW(10));
  EXPECT_EQ(label.size(), 0u);  // type and name are told apart
  const platform::Bytes data = platform::FindResourceBytes(module_, MAKEINTRESOURCEW(10), u"Label");
  ASSERT_EQ(data.size(), 17u);
  EXPECT_LT(reinterpret_cast<uintptr_t>(data.data()) - base, kSize);

  VS_FIXEDFILEINFO* fixed = nullptr;
  UINT size = 0;
  std::vector<std::byte> info(GetFileVersionInfoSizeW(kPath, nullptr));
  ASSERT_TRUE(GetFileVersionInfoW(kPath, 0, static_cast<DWORD>(info.size()), info.data()));
  ASSERT_TRUE(VerQueryValueW(info.data(), u"\\", reinterpret_cast<void**>(&fixed), &size));
  EXPECT_EQ(fixed->dwFileVersionLS, 0x30004u);

  EXPECT_TRUE(FreeLibrary(module_));
  EXPECT_EQ(apply(0, 1), 2);
  EXPECT_TRUE(FreeLibrary(module_));
  EXPECT_EQ(GetLastError(), 5678u);  // it was detached
  EXPECT_EQ(Pages(base, kSize), "");
  EXPECT_EQ(machine_->OpenModules(), 0);
}

TEST_F(Loader, RefusesWhatItCannotRun) {
  using support::Put;
  const auto put16 = [&](size_t at, uint16_t value) { Put(sample_.data(), header_ + at, value); };
  const auto put32 = [&](size_t at, uint32_t value) { Put(sample_.data(), header_ + at, value); };
  const auto write = [&](std::string_view old, std::string_view text) {
    std::memcpy(sample_.data() + Find(old), text.data(), text.size() + 1);
  };
  constexpr size_t kText = kSectionsAt, kRdata = kText + kSection, kFlags = 36;
  const struct {
    const char* what;
    DWORD error;
    std::function<void()> damage;
  } kCases[] = {
      {"another machine", 193, [&] { put16(4, platform::kMachineArm64); }},
      {"an x86 image", 193, [&] { put16(4, platform::kMachineX86); }},
      {"no section", 193, [&] { put16(6, 0); }},
      {"too many sections", 193, [&] { put16(6, 97); }},
      {"not linked to its end", 193, [&] { put16(22, 0x2020); }},
      {"a program", 193, [&] { put16(22, 0x0022); }},
      {"a fixed address", 193, [&] { put16(22, 0x2023); }},
      {"32 bits", 193, [&] { put16(kOptionalAt, 0x010B); }},
      {"an entry point that is data", 193, [&] { put32(kOptionalAt + 16, 0x2000); }},
      {"sections that share pages", 193, [&] { put32(kOptionalAt + 32, 512); }},
      {"a page too many", 193, [&] { put32(kOptionalAt + 56, 0x7000); }},
      {"a page too few", 193, [&] { put32(kOptionalAt + 56, 0x5000); }},
      {"headers without end", 193, [&] { put32(kOptionalAt + 60, 0x7FFFFFFF); }},
      {"17 directories", 193, [&] { put32(kDirectoriesAt - 4, 17); }},
      {"thread data", 193, [&] { put32(kDirectoriesAt + 9 * kDirectory + 4, 40); }},
      {"code that can be written", 193, [&] { put32(kText + kFlags, 0xE0000020); }},
      {"sections upside down", 193, [&] { put32(kRdata + 12, 0x1000); }},
      {"a section behind the file", 193, [&] { put32(kRdata + 20, 0x00FFFFF0); }},
      {"exports outside", 193, [&] { put32(kDirectoriesAt, 0x5FF0); }},
      {"relocations cut off", 193, [&] { put32(kDirectoriesAt + 5 * kDirectory + 4, 10); }},
      {"an unknown library", 126, [&] { write("kernel32.dll", "kernel33.dll"); }},
      {"a library without it", 127, [&] { write("user32.dll", "gdi32.dll"); }},
      {"an unknown function", 127, [&] { write("SetLastError", "SetLastErroR"); }},
  };
  const Image whole = sample_;
  const auto runnable = [] {
    int count = 0;
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) count += line.find(" r-x") != line.npos;
    return count;
  };
  Load({});
  const auto before = runnable();
  for (const auto& [what, error, damage] : kCases) {
    sample_ = whole;
    damage();
    EXPECT_EQ(Load(sample_), nullptr) << what;
    EXPECT_EQ(GetLastError(), error) << what;
  }
  machine_->WriteFile(kPath, {reinterpret_cast<const char*>(whole.data()), whole.size()});
  SetLastError(1234);
  EXPECT_EQ(LoadLibraryW(kPath), nullptr);
  EXPECT_EQ(GetLastError(), DWORD{ERROR_DLL_INIT_FAILED});
  EXPECT_EQ(machine_->OpenModules(), 0);
  EXPECT_EQ(runnable(), before);
}

// Every byte of the file changed, and every length: taken or refused, never a read or a write
// outside.
TEST_F(Loader, OutlivesEveryDamage) {
  size_t taken = 0, refused = 0;
  const auto attempt = [&](platform::Bytes image) {
    try {
      const platform::MappedImage mapped(image);
      for (const auto& resource : mapped.Resources()) {
        taken += std::ranges::count(resource.data, std::byte{'s'}) >= 0;
      }
    } catch (const platform::ImageError& error) {
      EXPECT_TRUE(error.code == 193 || error.code == 127 || error.code == 126) << error.code;
      ++refused;
    }
  };
  for (size_t size = 0; size < sample_.size(); ++size) {
    attempt(Image(sample_.data(), sample_.data() + size));
  }
  EXPECT_EQ(taken, 0u);
  EXPECT_EQ(refused, sample_.size());
  for (std::byte& each : sample_) {
    for (const auto change : {std::byte{1}, std::byte{0x80}, std::byte{0xFF}}) {
      each ^= change;
      attempt(sample_);
      each ^= change;
    }
  }
  EXPECT_GT(taken, 0u);
  EXPECT_GT(refused, sample_.size());
}

}  // namespace
