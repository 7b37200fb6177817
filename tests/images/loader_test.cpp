// The loader of Windows images with the sample library, intact and damaged.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "platform/loader/image_map.h"
#include "platform/loader/resource_table.h"
#include "platform/machine/machine.h"
#include "tests/support/bin_dir.h"
#include "tests/support/settings.h"

namespace {

using Image = std::vector<std::byte>;

constexpr char16_t kPath[] = u"C:\\drivers\\Sample.dll";
constexpr size_t kNewHeaderAt = 0x3C, kSize = 6 * 4096;  // in the file, and in memory

// Returns the protection of a range of memory, page by page.
std::string Pages(uintptr_t from, size_t size) {
  std::ifstream maps("/proc/self/maps");
  std::string pages, protection;
  uintptr_t start = 0, end = 0;
  for (char dash; maps >> std::hex >> start >> dash >> end >> protection;) {
    for (; start < end && start >= from && start - from < size; start += 4096)
      pages += protection.substr(0, 3) + ' ';
    std::getline(maps, protection);
  }
  return pages;
}

class Loader : public testing::Test {
 protected:
  HMODULE Load(const Image& image, DWORD lastError = 0) {
    machine_->WriteFile(kPath, {reinterpret_cast<const char*>(image.data()), image.size()});
    SetLastError(lastError);
    return LoadLibraryW(kPath);
  }
  template <typename Function>
  Function* Entry(const char* name) {
    return reinterpret_cast<Function*>(reinterpret_cast<void (*)()>(GetProcAddress(module_, name)));
  }

  std::unique_ptr<platform::Machine> machine_ = platform::Machine::Create();
  Image sample_ = platform::ReadWhole(support::Built("sample.dll"));
  size_t header_ = support::At<uint32_t>(sample_.data(), kNewHeaderAt);
  HMODULE module_ = nullptr;
};

TEST_F(Loader, LoadRunAndFreeLeaveNothingMapped) {
  module_ = Load(sample_);
  ASSERT_NE(module_, nullptr) << GetLastError();
  const auto base = reinterpret_cast<uintptr_t>(module_);
  EXPECT_EQ(LoadLibraryW(u"c:\\DRIVERS\\sample"), module_);
  WCHAR path[40];
  EXPECT_EQ(GetModuleFileNameW(module_, path, 40), 21u);
  EXPECT_EQ(path, std::u16string(kPath));

  const auto apply = Entry<int WINAPI(int, int)>("Apply");
  const auto count = Entry<int WINAPI()>("Count");
  EXPECT_EQ((std::array{apply(0, 21), apply(1, 21), count(), count()}),
            (std::array{42, -21, 42, 43}));
  WCHAR text[20];
  EXPECT_EQ(Entry<int WINAPI(LPWSTR)>("Text")(text), 5);
  EXPECT_EQ(text, std::u16string(u"three"));
  Entry<int WINAPI(LPWSTR, int, LPCWSTR)>("Fill")(text, -7, u"seven");
  EXPECT_EQ(text, std::u16string(u"-7 seven"));
  for (const char* name : {"Missing", "apply", "Forwarded", ""}) {
    EXPECT_EQ(GetProcAddress(module_, name), nullptr) << name;
    EXPECT_EQ(GetLastError(), DWORD{ERROR_PROC_NOT_FOUND});
  }

  // The image has its own memory with the protection of each section; no page is writable and
  // executable.
  EXPECT_EQ(Pages(base, kSize), "r-- r-x r-- rw- r-- r-- ");
  const auto data = platform::FindResourceBytes(module_, MAKEINTRESOURCEW(10), u"Label");
  ASSERT_EQ(data.size(), 17u);
  EXPECT_LT(reinterpret_cast<uintptr_t>(data.data()) - base, kSize);
  // Type and name are distinguished.
  EXPECT_TRUE(platform::FindResourceBytes(module_, u"Label", MAKEINTRESOURCEW(10)).empty());

  EXPECT_TRUE(FreeLibrary(module_));
  EXPECT_EQ(apply(0, 1), 2);
  EXPECT_TRUE(FreeLibrary(module_));
  EXPECT_EQ(GetLastError(), 5678u);  // set by the detach
  EXPECT_EQ(Pages(base, kSize), "");
  EXPECT_EQ(machine_->OpenModules(), 0);
}

TEST_F(Loader, RejectsDamagedAndUnsupportedImages) {
  // Offsets from the new header: 24 is the optional header, with its directories of 8 bytes; the
  // section headers of 40 bytes follow, that of the code first, then that of the data.
  constexpr bool kWide = sizeof(void*) == 8;
  constexpr size_t kDirectoriesAt = kWide ? 136 : 120, kCodeAt = kWide ? 264 : 248;
  constexpr size_t kDataAt = kCodeAt + 40;
  constexpr WORD kOtherMachine = kWide ? platform::kMachineX86 : platform::kMachineX64;
  const std::tuple<const char*, size_t, size_t, uint32_t> kDamages[] = {
      {"another machine", 4, 2, 0xAA64},
      {"another width", 4, 2, kOtherMachine},
      {"without sections", 6, 2, 0},
      {"too many sections", 6, 2, 97},
      {"no full link", 22, 2, 0x2020},
      {"a program", 22, 2, 0x0022},
      {"a fixed address", 22, 2, 0x2023},
      {"wrong magic", 24, 2, kWide ? 0x010B : 0x020B},
      {"entry in data", 40, 4, 0x2000},
      {"sharing pages", 56, 4, 512},
      {"a page too many", 80, 4, 0x7000},
      {"a page too few", 80, 4, 0x5000},
      {"endless head", 84, 4, 0x7FFFFFFF},
      {"17 directories", kDirectoriesAt - 4, 4, 17},
      {"exports outside", kDirectoriesAt, 4, 0x5FF0},
      {"cut relocations", kDirectoriesAt + 44, 4, 10},
      {"thread data", kDirectoriesAt + 76, 4, 40},
      {"writable code", kCodeAt + 36, 4, 0xE0000020},
      {"turned round", kDataAt + 12, 4, 0x1000},
      {"behind the file", kDataAt + 20, 4, 0xFFFFF0}};
  const auto runnable = [] {
    std::ifstream maps("/proc/self/maps");
    return std::count(std::istream_iterator<std::string>(maps), {}, "r-xp");
  };
  const auto errorOf = [&](const Image& image) {
    EXPECT_EQ(Load(image), nullptr);
    return GetLastError();
  };
  errorOf({});
  const auto before = runnable();
  for (const auto& [what, at, width, value] : kDamages) {
    Image damaged = sample_;
    std::memcpy(damaged.data() + header_ + at, &value, width);
    EXPECT_EQ(errorOf(damaged), DWORD{ERROR_BAD_EXE_FORMAT}) << what;
  }
  const auto renamed = [&](std::string_view old, std::string_view name) {
    std::string image(reinterpret_cast<const char*>(sample_.data()), sample_.size());
    image.replace(image.find(old), name.size() + 1, name.data(), name.size() + 1);
    return support::BytesOf(image.data(), image.size());
  };
  EXPECT_EQ(errorOf(renamed("kernel32.dll", "kernel33.dll")), DWORD{ERROR_MOD_NOT_FOUND});
  EXPECT_EQ(errorOf(renamed("user32.dll", "gdi32.dll")), DWORD{ERROR_PROC_NOT_FOUND});
  EXPECT_EQ(errorOf(renamed("SetLastError", "SetLastErroR")), DWORD{ERROR_PROC_NOT_FOUND});
  EXPECT_EQ(Load(sample_, 1234), nullptr);
  EXPECT_EQ(GetLastError(), DWORD{ERROR_DLL_INIT_FAILED});
  EXPECT_EQ(machine_->OpenModules(), 0);
  EXPECT_EQ(runnable(), before);
}

// For every changed byte and every length the image loads or is rejected, without an access outside
// its memory.
TEST_F(Loader, ChangedByteOrLengthNeverCrashes) {
  const auto loads = [&](platform::Bytes image) {
    try {
      const platform::MappedImage mapped(image);
      ptrdiff_t read = 0;
      for (const auto& resource : mapped.Resources())
        read += std::ranges::count(resource.data, std::byte{'s'});
      return read >= 0;
    } catch (const platform::ImageError& error) {
      EXPECT_TRUE(error.code == 193 || error.code == 127 || error.code == 126) << error.code;
      return false;
    }
  };
  for (size_t size = 0; size < sample_.size(); ++size)
    EXPECT_FALSE(loads(Image(sample_.data(), sample_.data() + size)));
  size_t survivals = 0;
  for (std::byte& each : sample_) {
    for (const auto change : {std::byte{1}, std::byte{0x80}, std::byte{0xFF}}) {
      each ^= change;
      survivals += loads(sample_);
      each ^= change;
    }
  }
  EXPECT_GT(survivals, 0u);
  EXPECT_LT(survivals, 3 * sample_.size());
}

}  // namespace
