// wsprintfW with the fields that the module uses; at most 1023 units.
#include <windows.h>

#include <cstdarg>
#include <string>

#include "platform/machine/text.h"

// Variable arguments follow the platform's calling convention.
#ifdef __x86_64__
using Arguments = __builtin_ms_va_list;
#define START_ARGUMENTS __builtin_ms_va_start
#define END_ARGUMENTS __builtin_ms_va_end
#else
using Arguments = va_list;
#define START_ARGUMENTS va_start
#define END_ARGUMENTS va_end
#endif

// Supports "%d", "%u" and "%s". Any other character after "%" is copied.
int WINAPIV wsprintfW(LPWSTR out, LPCWSTR format, ...) {
  constexpr size_t kLongest = 1023;
  std::u16string text;
  Arguments arguments;
  START_ARGUMENTS(arguments, format);
  for (const WCHAR* at = format; *at != 0 && text.size() < kLongest; ++at) {
    if (*at != '%') {
      text.push_back(*at);
      continue;
    }
    ++at;
    if (*at == 0) break;
    if (*at == 'd') {
      text += platform::ToUtf16(std::to_string(va_arg(arguments, int)));
    } else if (*at == 'u') {
      text += platform::ToUtf16(std::to_string(va_arg(arguments, unsigned)));
    } else if (*at == 's') {
      const WCHAR* part = va_arg(arguments, const WCHAR*);
      text += part == nullptr ? u"(null)" : part;
    } else {
      text.push_back(*at);
    }
  }
  END_ARGUMENTS(arguments);
  const size_t length = text.copy(out, kLongest);
  out[length] = 0;
  return static_cast<int>(length);
}
