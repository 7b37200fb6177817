// The loader of Windows images with the sample library, intact and damaged.
#include <fstream>

#include "platform/loader/image_map.h"
#include "platform/loader/resource_table.h"
#include "tests/images/image_fixture.h"
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

class Loader : public support::ImageTest {
 protected:
  HMODULE LoadSample(const Image& image, DWORD lastError = 0) {
    machine_->WriteFile(kPath, {reinterpret_cast<const char*>(image.data()), image.size()});
    SetLastError(lastError);
    return LoadLibraryW(kPath);
  }

  Image sample_ = platform::ReadWhole(support::Built("sample.dll"));
  size_t header_ = support::At<uint32_t>(sample_.data(), kNewHeaderAt);
};

TEST_F(Loader, ImageRunsAtItsOwnAddress) {
  const HMODULE module = LoadSample(sample_);
  ASSERT_NE(module, nullptr) << GetLastError();
  EXPECT_EQ(LoadLibraryW(u"c:\\DRIVERS\\sample"), module);
  WCHAR text[40];
  const auto apply = Entry<int WINAPI(int, int)>(module, "Apply");
  EXPECT_EQ(apply(0, 21), 42);
  EXPECT_EQ(apply(1, 21), -21);
  const auto count = Entry<int WINAPI()>(module, "Count");
  EXPECT_EQ(count(), 42);
  EXPECT_EQ(Entry<int WINAPI(LPWSTR)>(module, "Text")(text), 5);
  EXPECT_EQ(text, std::u16string(u"three"));
  for (const char* name : {"Missing", "apply", "Forwarded", ""}) {
    EXPECT_EQ(GetProcAddress(module, name), nullptr) << name;
    EXPECT_EQ(GetLastError(), DWORD{ERROR_PROC_NOT_FOUND});
  }
  EXPECT_TRUE(FreeLibrary(module) && FreeLibrary(module));
  EXPECT_EQ(machine_->OpenModules(), 0);
}

TEST_F(Loader, SectionsAreMappedWithTheirProtectionUntilTheModuleIsFreed) {
  const HMODULE module = LoadSample(sample_);
  const auto base = reinterpret_cast<uintptr_t>(module);
  EXPECT_EQ(Pages(base, kSize), "r-- r-x r-- rw- r-- r-- ");
  const auto data = platform::FindResourceBytes(module, MAKEINTRESOURCEW(10), u"Label");
  ASSERT_EQ(data.size(), 17u);
  EXPECT_LT(reinterpret_cast<uintptr_t>(data.data()) - base, kSize);
  EXPECT_TRUE(platform::FindResourceBytes(module, u"Label", MAKEINTRESOURCEW(10)).empty())
      << "the type and the name exchanged";
  FreeLibrary(module);
  EXPECT_EQ(GetLastError(), 5678u) << "set by the detach";
  EXPECT_EQ(Pages(base, kSize), "");
}

TEST_F(Loader, RejectsDamagedAndUnsupportedImages) {
  // Offsets from the new header: 24 is the optional header, with its directories of 8 bytes; the
  // section headers of 40 bytes follow, that of the code first, then that of the data.
  constexpr bool kWide = sizeof(void*) == 8;
  constexpr size_t kDirectoriesAt = kWide ? 136 : 120, kCodeAt = kWide ? 264 : 248;
  const struct {
    const char* damage;
    size_t offset, width;
    uint32_t value;
  } rows[] = {{"another machine", 4, 2, 0xAA64},
              {"another width", 4, 2, kWide ? platform::kMachineX86 : platform::kMachineX64},
              {"too many sections", 6, 2, 97},
              {"a program", 22, 2, 0x0022},
              {"a fixed address", 22, 2, 0x2023},
              {"entry point in the data", 40, 4, 0x2000},
              {"more memory than its sections", 80, 4, 0x7000},
              {"headers longer than the file", 84, 4, 0x7FFFFFFF},
              {"exports outside the sections", kDirectoriesAt, 4, 0x5FF0},
              {"truncated relocations", kDirectoriesAt + 44, 4, 10},
              {"data for each thread", kDirectoriesAt + 76, 4, 40},
              {"writable code", kCodeAt + 36, 4, 0xE0000020},
              {"data section at the address of the code", kCodeAt + 52, 4, 0x1000},
              {"data section after the end of the file", kCodeAt + 60, 4, 0xFFFFF0}};
  for (const auto& row : rows) {
    Image damaged = sample_;
    std::memcpy(damaged.data() + header_ + row.offset, &row.value, row.width);
    EXPECT_EQ(LoadSample(damaged), nullptr) << row.damage;
    EXPECT_EQ(GetLastError(), DWORD{ERROR_BAD_EXE_FORMAT}) << row.damage;
  }
}

TEST_F(Loader, RejectsMissingImportsAndRefusedAttach) {
  const auto errorWith = [&](std::string_view name, std::string_view other) {
    std::string image(reinterpret_cast<const char*>(sample_.data()), sample_.size());
    image.replace(image.find(name), other.size() + 1, other.data(), other.size() + 1);
    EXPECT_EQ(LoadSample(support::BytesOf(image.data(), image.size())), nullptr);
    return GetLastError();
  };
  EXPECT_EQ(errorWith("kernel32.dll", "kernel33.dll"), DWORD{ERROR_MOD_NOT_FOUND});
  EXPECT_EQ(errorWith("user32.dll", "gdi32.dll"), DWORD{ERROR_PROC_NOT_FOUND});
  EXPECT_EQ(errorWith("SetLastError", "SetLastErroR"), DWORD{ERROR_PROC_NOT_FOUND});
  EXPECT_EQ(LoadSample(sample_, 1234), nullptr);
  EXPECT_EQ(GetLastError(), DWORD{ERROR_DLL_INIT_FAILED});
  EXPECT_EQ(machine_->OpenModules(), 0);
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
      EXPECT_TRUE(error.code == ERROR_BAD_EXE_FORMAT || error.code == ERROR_PROC_NOT_FOUND ||
                  error.code == ERROR_MOD_NOT_FOUND);
      return false;
    }
  };
  for (size_t size = 0; size < sample_.size(); ++size)
    EXPECT_FALSE(loads(Image(sample_.data(), sample_.data() + size)));
  for (std::byte& each : sample_) {
    for (const auto change : {std::byte{1}, std::byte{0x80}, std::byte{0xFF}}) {
      each ^= change;
      loads(sample_);
      each ^= change;
    }
  }
  EXPECT_TRUE(loads(sample_));
}

}  // namespace
