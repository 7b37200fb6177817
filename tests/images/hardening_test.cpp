// The hardening of an image, as the loader and the image itself implement it.
#include <ucontext.h>

#include <csignal>
#include <set>

#include "platform/loader/image_map.h"
#include "platform/loader/resource_table.h"
#include "tests/images/image_fixture.h"
#include "tests/support/settings.h"

namespace {

using platform::ImageFile;
using platform::LoaderFeatures;
using platform::MappedImage;

constexpr auto kDefaultCookie =
    static_cast<uintptr_t>(platform::DefaultSecurityCookie(sizeof(void*) == 8));

int WINAPI LastArgument(int, double, int, double, int last) { return last; }

class Hardening : public support::ImageTest {
 protected:
  uintptr_t Cookie(const MappedImage& mapped) const {
    return support::At<uintptr_t>(mapped.handle(), image_.loadConfiguration->securityCookie);
  }

  std::vector<std::byte> file_ = platform::ReadWhole(support::Built(support::kHardened));
  ImageFile image_{file_};
};

TEST_F(Hardening, CookieIsFilledByLoaderOrAtProcessAttach) {
  std::set<uintptr_t> cookies = {kDefaultCookie};
  for (const bool fills : {true, true, false, false}) {
    const MappedImage mapped(file_, {.fillsCookie = fills});
    const uintptr_t mappedCookie = Cookie(mapped);
    EXPECT_EQ(mappedCookie == kDefaultCookie, !fills);
    EXPECT_TRUE(mapped.CallMain(DLL_PROCESS_ATTACH));
    EXPECT_EQ(Cookie(mapped) == mappedCookie, fills);
    EXPECT_EQ(uint64_t{Cookie(mapped)} >> 48, 0u);
    EXPECT_TRUE(cookies.insert(Cookie(mapped)).second) << "each load has another cookie";
  }
}

TEST_F(Hardening, IndirectCallOutsideTheTableEndsTheProcess) {
  using Sum = int WINAPI(int, double, int, double, int);
  const HMODULE module = Load(support::kHardened);
  ASSERT_NE(module, nullptr);
  const auto call = Entry<int WINAPI(Sum*)>(module, "Call");
  const auto add = Entry<Sum>(module, "Add");
  EXPECT_EQ(call(add), 54321);
  EXPECT_EQ(call(LastArgument), 50000);
  const auto inside = reinterpret_cast<Sum*>(reinterpret_cast<uintptr_t>(add) + 1);
  // Unmapping another image leaves this one's table.
  std::make_unique<MappedImage>(file_).reset();
  EXPECT_DEATH(call(inside), "indirect call to 0x[0-9A-F]+ of an image");
  FreeLibrary(module);
}

// Ends the process; prints the code of the fail-fast instruction that the processor refused.
void ReportFailFast(int, siginfo_t*, void* context) {
#if defined(__x86_64__)
  constexpr int kInstruction = REG_RIP, kCode = REG_RCX;
#else
  constexpr int kInstruction = REG_EIP, kCode = REG_ECX;
#endif
  const auto& registers = static_cast<const ucontext_t*>(context)->uc_mcontext.gregs;
  const auto* instruction = reinterpret_cast<const uint8_t*>(registers[kInstruction]);
  if (instruction[0] == 0xCD && instruction[1] == 0x29)  // int 0x29
    std::fprintf(stderr, "fail-fast code %d\n", static_cast<int>(registers[kCode]));
  std::_Exit(1);
}

TEST_F(Hardening, OverrunEndsTheProcess) {
  struct sigaction action = {};
  action.sa_sigaction = ReportFailFast;
  action.sa_flags = SA_SIGINFO;
  // Windows 8 (6.2) introduced fail-fast exceptions.
  for (const auto& [version, end] :
       {std::pair(DWORD{5}, "exit code 0xC0000409"), {DWORD{10}, "fail-fast code 2"}}) {
    machine_->SetOs({.major = version});
    const HMODULE module = Load(support::kHardened);
    ASSERT_NE(module, nullptr);
    const auto fill = Entry<int WINAPI(int)>(module, "Fill");
    EXPECT_EQ(fill(16), 'x');
    EXPECT_DEATH((sigaction(SIGSEGV, &action, nullptr), fill(64)), end);
    FreeLibrary(module);
  }
}

TEST_F(Hardening, TableOutsideTheImageIsRejected) {
  constexpr bool wide = sizeof(void*) == 8;
  const auto placeOf = [this](uint32_t address) {
    return static_cast<size_t>(image_.At(address, 4).data() - file_.data());
  };
  const uint32_t header = support::At<uint32_t>(file_.data(), 0x3C);
  const auto address = support::At<uint32_t>(file_.data(), header + (wide ? 216 : 200));
  const size_t config = placeOf(address);
  // Its members (IMAGE_LOAD_CONFIG_DIRECTORY).
  const size_t cookie = config + (wide ? 88 : 60), check = config + (wide ? 112 : 72),
               table = config + (wide ? 128 : 80), count = config + (wide ? 136 : 84);
  const auto linked = support::At<uintptr_t>(file_.data(), table);
  const size_t firstTarget = placeOf(static_cast<uint32_t>(linked - image_.base));

  constexpr size_t kWord = sizeof(uintptr_t), kEntry = 4;
  const auto start = static_cast<uintptr_t>(image_.base), end = start + image_.size;
  const std::tuple<const char*, size_t, size_t, uintptr_t> kDamages[] = {
      {"cookie after the image", cookie, kWord, end},
      {"cookie that cannot be written", cookie, kWord, start + address},
      {"check function after the image", check, kWord, end},
      {"table that ends after its section", count, kWord, 4096},
      {"table whose size does not fit a word", count, kWord, uintptr_t{1} << (8 * kWord - 2)},
      {"call target after the image", firstTarget, kEntry, image_.size},
      {"call target in data", firstTarget, kEntry, image_.loadConfiguration->securityCookie},
      {"call targets out of order", firstTarget, kEntry,
       image_.loadConfiguration->callTargets->back()}};
  for (const auto& [what, place, size, value] : kDamages) {
    std::vector<std::byte> damaged = file_;
    std::memcpy(damaged.data() + place, &value, size);
    EXPECT_THROW(MappedImage{damaged}, platform::ImageError) << what;
  }
}

}  // namespace
