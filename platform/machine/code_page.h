// Code pages: 932, 936, 949, 1252 and UTF-8 (65001), converted as the system's tables do.
#pragma once

#include <windef.h>

#include <memory>
#include <string>
#include <string_view>

namespace platform {

class CodePage {
 public:
  // Returns the page of a number; null for a number that is not listed above.
  static const CodePage* Find(UINT number);

  // Replaces a unit that the page lacks with the fallback byte and sets *lossy, when given, to
  // true. With best fit, some units become a similar character instead, as the system does by
  // default.
  std::string Encode(std::u16string_view text, char fallback = '?', bool bestFit = true,
                     bool* lossy = nullptr) const;
  // Replaces bytes that the page leaves undefined with the page's default unit.
  std::u16string Decode(std::string_view bytes) const;
  bool IsLead(unsigned char byte) const;
  // Returns how many of the first `limit` bytes form complete characters.
  size_t CompleteLength(std::string_view bytes, size_t limit) const;
  bool IsUtf8() const;

 private:
  struct Traits;
  struct Tables;
  explicit CodePage(const Traits& traits);
  ~CodePage();
  bool IsTrail(unsigned char byte) const;
  template <size_t Index>
  static const CodePage* Get();

  static const Traits kPages[];
  const Traits& traits_;
  std::unique_ptr<const Tables> tables_;  // null for UTF-8
};

// Returns the ANSI code page of this process on the current computer.
const CodePage& AnsiPage();

}  // namespace platform
