// Processor state that an API function has to preserve: the x87 control word, which sets the
// precision of computations, and the direction flag. Other processors have neither.
#pragma once

#include <cstdint>

namespace support {

// The control words for a precision of 24, 53 and 64 bits.
constexpr uint16_t kControlWords[] = {0x007F, 0x027F, 0x037F};

#if defined(__x86_64__) || defined(__i386__)
inline uint16_t ControlWord() {
  uint16_t word;
  __asm__ volatile("fnstcw %0" : "=m"(word));
  return word;
}
inline void SetControlWord(uint16_t word) { __asm__ volatile("fldcw %0" : : "m"(word)); }
inline bool DirectionFlag() {
  uintptr_t flags;
  __asm__ volatile("pushf\n\tpop %0" : "=r"(flags) : : "memory");
  return (flags & 0x400) != 0;
}
#else
inline uint16_t ControlWord() { return 0; }
inline void SetControlWord(uint16_t) {}
inline bool DirectionFlag() { return false; }
#endif

}  // namespace support
