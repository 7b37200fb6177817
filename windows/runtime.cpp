// What compilers expect of every program and what the module asks of the language's library, since
// the DLL is linked without any.
#include <cstdint>
#include <cstring>

namespace {

// Digit by digit, as a processor of 32 bits has no division of 64.
constexpr uint64_t Quotient(uint64_t dividend, uint64_t divisor) {
  uint64_t quotient = 0;
  uint64_t rest = 0;
  for (int bit = 63; bit >= 0; --bit) {
    const bool overflows = rest >> 63 != 0;
    rest = rest << 1 | (dividend >> bit & 1);
    if (!overflows && rest < divisor) continue;
    rest -= divisor;
    quotient |= uint64_t{1} << bit;
  }
  return quotient;
}

constexpr uint64_t Magnitude(int64_t value) {
  return value < 0 ? 0 - static_cast<uint64_t>(value) : static_cast<uint64_t>(value);
}
constexpr int64_t Quotient(int64_t dividend, int64_t divisor) {
  const uint64_t quotient = Quotient(Magnitude(dividend), Magnitude(divisor));
  return static_cast<int64_t>((dividend < 0) != (divisor < 0) ? 0 - quotient : quotient);
}

constexpr uint64_t kMost = ~uint64_t{0};
static_assert(Quotient(kMost, uint64_t{1}) == kMost && Quotient(kMost, kMost) == 1);
static_assert(Quotient(kMost - 1, kMost) == 0 && Quotient(kMost, kMost / 2) == 2);
static_assert(Quotient(uint64_t{1000000007000000049}, uint64_t{1000000007}) == 1000000000);
static_assert(Quotient(int64_t{-7}, int64_t{2}) == -3 && Quotient(int64_t{7}, int64_t{-2}) == -3);
static_assert(Quotient(int64_t{-8}, int64_t{-2}) == 4);
static_assert(Quotient(INT64_MIN, int64_t{3}) == -3074457345618258602);

}  // namespace

extern "C" {

#ifdef __i386__
// Compilers call these for 64-bit divisions; the called function removes its arguments.
int64_t __stdcall DivideSigned(int64_t dividend, int64_t divisor) __asm__("__alldiv");
int64_t __stdcall DivideSigned(int64_t dividend, int64_t divisor) {
  return Quotient(dividend, divisor);
}
uint64_t __stdcall DivideUnsigned(uint64_t dividend, uint64_t divisor) __asm__("__aulldiv");
uint64_t __stdcall DivideUnsigned(uint64_t dividend, uint64_t divisor) {
  return Quotient(dividend, divisor);
}
#endif

// Says to the linker that floating point is used.
int _fltused = 0x9875;

#if defined(__aarch64__)
void* memcpy(void* to, const void* from, size_t size) {
  auto* out = static_cast<unsigned char*>(to);
  const auto* in = static_cast<const unsigned char*>(from);
  while (size-- > 0) *out++ = *in++;
  return to;
}

void* memset(void* to, int value, size_t size) {
  auto* out = static_cast<unsigned char*>(to);
  while (size-- > 0) *out++ = static_cast<unsigned char>(value);
  return to;
}
#else
void* memcpy(void* to, const void* from, size_t size) {
  void* const start = to;
  __asm__ volatile("rep movsb" : "+D"(to), "+S"(from), "+c"(size) : : "memory");
  return start;
}

void* memset(void* to, int value, size_t size) {
  void* const start = to;
  __asm__ volatile("rep stosb" : "+D"(to), "+c"(size) : "a"(value) : "memory");
  return start;
}
#endif

void* memmove(void* to, const void* from, size_t size) {
  auto* out = static_cast<unsigned char*>(to);
  const auto* in = static_cast<const unsigned char*>(from);
  if (out <= in) return memcpy(to, from, size);
  while (size-- > 0) out[size] = in[size];
  return to;
}

size_t strlen(const char* text) {
  const char* end = text;
  while (*end != 0) ++end;
  return static_cast<size_t>(end - text);
}

int strcmp(const char* one, const char* other) {
  while (*one != 0 && *one == *other) ++one, ++other;
  return static_cast<unsigned char>(*one) - static_cast<unsigned char>(*other);
}

}  // extern "C"
