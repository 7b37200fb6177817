// windows/runtime.cpp, compiled as for the DLLs, compared with the functions of the compiler.
#include <array>
#include <cstring>

#include "tests/images/image_fixture.h"

namespace {

class Runtime : public support::ImageTest {
 protected:
  ~Runtime() override { FreeLibrary(module_); }
  HMODULE module_ = Load(support::kHardened);
};

TEST_F(Runtime, CopyAndFillMatchTheLibrary) {
  using Copy = void* WINAPIV(void*, const void*, size_t);
  const auto copy = Entry<Copy>(module_, "memcpy");
  const auto move = Entry<Copy>(module_, "memmove");
  const auto fill = Entry<void * WINAPIV(void*, int, size_t)>(module_, "memset");
  std::array<uint8_t, 100> before;
  for (size_t i = 0; i < before.size(); ++i) before[i] = static_cast<uint8_t>(i * 7 + 1);
  constexpr size_t kFrom = 33;
  for (size_t size = 0; size <= kFrom; ++size) {
    for (size_t to = 0; to <= 2 * kFrom; ++to) {
      auto expected = before, actual = before;
      std::memmove(&expected[to], &before[kFrom], size);
      ASSERT_EQ(move(&actual[to], &actual[kFrom], size), &actual[to]);
      ASSERT_EQ(actual, expected) << size << " bytes to " << to;
      const auto source = actual = before;
      ASSERT_EQ(copy(&actual[to], &source[kFrom], size), &actual[to]);
      ASSERT_EQ(actual, expected) << size << " bytes to " << to;
      actual = expected = before;
      std::memset(&expected[to], 0x180 + 0x5A, size);
      ASSERT_EQ(fill(&actual[to], 0x180 + 0x5A, size), &actual[to]);
      ASSERT_EQ(actual, expected) << size << " bytes at " << to;
    }
  }
}

}  // namespace
