// Text from a format, as wsprintf documents it: no floating point, at most 1024 units.
#include <windows.h>

#include <cstdarg>
#include <string>
#include <string_view>

#include "platform/system/text.h"

namespace {

// Further arguments are where the platform's own calling convention puts them.
#ifdef __x86_64__
using Arguments = __builtin_ms_va_list;
#define START_ARGUMENTS __builtin_ms_va_start
#define END_ARGUMENTS __builtin_ms_va_end
#else
using Arguments = va_list;
#define START_ARGUMENTS va_start
#define END_ARGUMENTS va_end
#endif

constexpr size_t kLongest = 1023;

struct Field {
  bool left = false, prefix = false, zeros = false;
  int width = 0, precision = -1;
  int size = 0;  // 1: "h", 2: "l" or "w", 3: "I64"
  WCHAR type = 0;
};

int Number(const WCHAR*& at) {
  int number = 0;
  for (; *at >= '0' && *at <= '9'; ++at) {
    if (number < 10000) number = number * 10 + static_cast<int>(*at - '0');
  }
  return number;
}

Field ReadField(const WCHAR*& at) {
  Field field;
  for (;; ++at) {
    if (*at == '-')
      field.left = true;
    else if (*at == '#')
      field.prefix = true;
    else if (*at == '0')
      field.zeros = true;
    else
      break;
  }
  field.width = Number(at);
  if (*at == '.') field.precision = Number(++at);
  if (*at == 'h')
    field.size = 1, ++at;
  else if (*at == 'l' || *at == 'w')
    field.size = 2, ++at;
  else if (at[0] == 'I' && at[1] == '6' && at[2] == '4')
    field.size = 3, at += 3;
  field.type = *at;
  if (*at != 0) ++at;
  return field;
}

std::string Digits(uint64_t value, unsigned base, bool upper) {
  std::string digits;
  do {
    const auto digit = static_cast<char>(value % base);
    digits.insert(digits.begin(),
                  static_cast<char>(digit < 10 ? '0' + digit : (upper ? 'A' : 'a') + digit - 10));
    value /= base;
  } while (value > 0);
  return digits;
}

// A number's sign or prefix and its digits, at least as many as the precision asks.
std::string NumberText(Field& field, Arguments& arguments, std::string& sign) {
  const bool wide = field.size == 3;
  std::string digits;
  if (field.type == 'd' || field.type == 'i') {
    int64_t value = wide ? va_arg(arguments, int64_t) : va_arg(arguments, int);
    if (field.size == 1) value = static_cast<int16_t>(value);
    if (value < 0) sign = "-";
    digits = Digits(value < 0 ? 0 - static_cast<uint64_t>(value) : static_cast<uint64_t>(value), 10,
                    false);
  } else if (field.type == 'p') {
    digits = Digits(reinterpret_cast<uintptr_t>(va_arg(arguments, void*)), 16, true);
    field.precision = static_cast<int>(sizeof(void*) * 2);
  } else {
    uint64_t value = wide ? va_arg(arguments, uint64_t) : va_arg(arguments, unsigned);
    if (field.size == 1) value = static_cast<uint16_t>(value);
    if (field.prefix && field.type != 'u') sign = field.type == 'X' ? "0X" : "0x";
    digits = Digits(value, field.type == 'u' ? 10 : 16, field.type == 'X');
  }
  const auto least = static_cast<size_t>(field.precision < 0 ? 0 : field.precision);
  if (digits.size() < least) digits.insert(0, least - digits.size(), '0');
  return digits;
}

// A text or a single character; an upper-case type means one in code page 932.
std::u16string TextOf(const Field& field, Arguments& arguments) {
  const bool own = field.type == 's' || field.type == 'c';
  const bool isWide = field.size == 2 || (field.size != 1 && own);
  if (field.type == 'c' || field.type == 'C') {
    const int unit = va_arg(arguments, int);
    const auto narrow = static_cast<char>(unit);
    return isWide ? std::u16string(1, static_cast<WCHAR>(unit)) : platform::FromCp932({&narrow, 1});
  }
  const void* text = va_arg(arguments, const void*);
  if (text == nullptr) return u"(null)";
  const auto most = static_cast<size_t>(field.precision);  // -1: all
  const auto read = [most](auto* units) {
    size_t length = 0;
    while (length < most && units[length] != 0) ++length;
    return std::basic_string_view(units, length);
  };
  return isWide ? std::u16string(read(static_cast<const WCHAR*>(text)))
                : platform::FromCp932(read(static_cast<const char*>(text)));
}

int Format(WCHAR* out, const WCHAR* format, Arguments& arguments) {
  std::u16string result;
  for (const WCHAR* at = format; *at != 0 && result.size() < kLongest;) {
    if (*at != '%') {
      result.push_back(*at++);
      continue;
    }
    Field field = ReadField(++at);
    std::u16string text;
    std::string sign;
    switch (field.type) {
      case 'd':
      case 'i':
      case 'u':
      case 'x':
      case 'X':
      case 'p': {
        const std::string digits = NumberText(field, arguments, sign);
        text.assign(digits.begin(), digits.end());
        break;
      }
      case 's':
      case 'S':
      case 'c':
      case 'C':
        text = TextOf(field, arguments);
        field.zeros = false;
        break;
      default:  // "%%" and whatever is no field stand for themselves
        if (field.type != 0) text.push_back(field.type);
        break;
    }
    const size_t shown = sign.size() + text.size();
    const size_t padding =
        static_cast<size_t>(field.width) > shown ? static_cast<size_t>(field.width) - shown : 0;
    if (!field.left && !field.zeros) result.append(padding, ' ');
    result.append(sign.begin(), sign.end());
    if (!field.left && field.zeros) result.append(padding, '0');
    result += text;
    if (field.left) result.append(padding, ' ');
  }
  if (result.size() > kLongest) result.resize(kLongest);
  result.copy(out, result.size());
  out[result.size()] = 0;
  return static_cast<int>(result.size());
}

}  // namespace

int WINAPIV wsprintfW(LPWSTR out, LPCWSTR format, ...) {
  Arguments arguments;
  START_ARGUMENTS(arguments, format);
  const int length = Format(out, format, arguments);
  END_ARGUMENTS(arguments);
  return length;
}
