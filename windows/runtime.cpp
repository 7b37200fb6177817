// What compilers expect of every program and what the module asks of the language's library, since
// the DLL is linked without any.
#include <cstdint>
#include <cstring>

extern "C" {

// Says to the linker that floating point is used.
int _fltused = 0x9875;

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
