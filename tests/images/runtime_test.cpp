// windows/runtime.cpp, compiled as for the DLLs, compared with the functions of the compiler.
#include <windows.h>
#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "platform/machine/machine.h"
#include "tests/support/bin_dir.h"

namespace {

class Runtime : public testing::Test {
 protected:
  ~Runtime() override { FreeLibrary(module_); }
  template <typename Function>
  Function* Entry(const char* name) {
    const FARPROC entry = GetProcAddress(module_, name);
    if (entry == nullptr) throw std::runtime_error(name);
    return reinterpret_cast<Function*>(reinterpret_cast<void (*)()>(entry));
  }

  std::unique_ptr<platform::Machine> machine_ = platform::Machine::Create();
  HMODULE module_ = [this] {
    machine_->InstallModule(u"C:\\runtime.dll", support::Built("runtime.dll"));
    return LoadLibraryW(u"C:\\runtime.dll");
  }();
};

// Boundaries of 32 and 64 bits, and random numbers of every length.
std::vector<uint64_t> Operands() {
  std::vector<uint64_t> operands = {0,
                                    1,
                                    2,
                                    3,
                                    10,
                                    0x7FFFFFFF,
                                    0x80000000,
                                    0xFFFFFFFF,
                                    0x100000000,
                                    0x7FFFFFFFFFFFFFFF,
                                    0x8000000000000000,
                                    0x8000000000000001,
                                    0xFFFFFFFF00000000,
                                    0xFFFFFFFFFFFFFFFE,
                                    0xFFFFFFFFFFFFFFFF};
  std::mt19937_64 random(610);
  for (unsigned i = 0; i < 128; ++i) operands.push_back(random() >> i % 64);
  return operands;
}

TEST_F(Runtime, DivisionMatchesTheCompiler) {
  if constexpr (sizeof(void*) == 8) GTEST_SKIP() << "the processor divides 64 bits by itself";
  const auto divideSigned = Entry<int64_t WINAPI(int64_t, int64_t)>("_alldiv");
  const auto divideUnsigned = Entry<uint64_t WINAPI(uint64_t, uint64_t)>("_aulldiv");
  const auto operands = Operands();
  for (const uint64_t dividend : operands) {
    for (const uint64_t divisor : operands) {
      if (divisor == 0) continue;
      ASSERT_EQ(divideUnsigned(dividend, divisor), dividend / divisor)
          << dividend << " / " << divisor;
      const auto signedDividend = static_cast<int64_t>(dividend);
      const auto signedDivisor = static_cast<int64_t>(divisor);
      if (signedDividend == INT64_MIN && signedDivisor == -1) continue;  // does not fit
      ASSERT_EQ(divideSigned(signedDividend, signedDivisor), signedDividend / signedDivisor)
          << signedDividend << " / " << signedDivisor;
    }
  }
}

TEST_F(Runtime, CopyAndFillMatchTheLibrary) {
  using Copy = void* WINAPIV(void*, const void*, size_t);
  const auto copy = Entry<Copy>("memcpy");
  const auto move = Entry<Copy>("memmove");
  const auto fill = Entry<void * WINAPIV(void*, int, size_t)>("memset");
  std::array<uint8_t, 100> before;
  for (size_t i = 0; i < before.size(); ++i) before[i] = static_cast<uint8_t>(i * 7 + 1);
  for (size_t size = 0; size <= 33; ++size) {
    for (size_t to = 0; to <= 66; ++to) {
      auto expected = before, actual = before;
      std::memmove(&expected[to], &before[33], size);
      ASSERT_EQ(move(&actual[to], &actual[33], size), &actual[to]);
      ASSERT_EQ(actual, expected) << size << " bytes to " << to;
      if (to + size <= 33 || to >= 33 + size) {
        actual = before;
        ASSERT_EQ(copy(&actual[to], &actual[33], size), &actual[to]);
        ASSERT_EQ(actual, expected) << size << " bytes to " << to;
      }
      actual = expected = before;
      std::memset(&expected[to], 0x180 + 0x5A, size);
      ASSERT_EQ(fill(&actual[to], 0x180 + 0x5A, size), &actual[to]);
      ASSERT_EQ(actual, expected) << size << " bytes at " << to;
    }
  }
}

TEST_F(Runtime, TextFunctionsMatchTheLibrary) {
  const auto length = Entry<size_t WINAPIV(const char*)>("strlen");
  const auto compare = Entry<int WINAPIV(const char*, const char*)>("strcmp");
  const char* const texts[] = {"", "a", "b", "ab", "aB", "abc", "\x7F", "\x80", "\xFF", "a\xFF"};
  for (const char* one : texts) {
    EXPECT_EQ(length(one), std::strlen(one));
    for (const char* other : texts) {
      const int expected = std::strcmp(one, other), actual = compare(one, other);
      EXPECT_EQ((actual > 0) - (actual < 0), (expected > 0) - (expected < 0))
          << one << ' ' << other;
    }
  }
}

}  // namespace
