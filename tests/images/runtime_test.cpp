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

// Assertions in the source check the quotients; this checks how compiled code calls the functions.
TEST_F(Runtime, DivisionTakesArgumentsFromTheStack) {
  if constexpr (sizeof(void*) == 8) GTEST_SKIP() << "the processor divides 64 bits by itself";
  const auto divideSigned = Entry<int64_t WINAPI(int64_t, int64_t)>(module_, "_alldiv");
  const auto divideUnsigned = Entry<uint64_t WINAPI(uint64_t, uint64_t)>(module_, "_aulldiv");
  EXPECT_EQ(divideSigned(-7'000'000'000'000, 2'000'000'000), -3500);
  EXPECT_EQ(divideUnsigned(UINT64_MAX, uint64_t{1} << 33), 0x7FFFFFFFu);
}

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

TEST_F(Runtime, TextsAreComparedAsUnsignedBytes) {
  EXPECT_EQ(Entry<size_t WINAPIV(const char*)>(module_, "strlen")("ab"), 2u);
  const auto compare = Entry<int WINAPIV(const char*, const char*)>(module_, "strcmp");
  EXPECT_EQ(compare("ab", "ab"), 0);
  EXPECT_LT(compare("a", "ab"), 0);
  EXPECT_GT(compare("a\x80", "a\x7F"), 0);
}

}  // namespace
