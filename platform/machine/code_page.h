// Code pages: 932, 936, 949, 1252 and UTF-8 (65001), converted as the system's tables do.
#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <string_view>

namespace platform {

class CodePage {
 public:
  // The page of a number; null for one that is not among those above.
  static const CodePage* Find(UINT number);

  // A unit without a form becomes the fallback byte, and *lossy (when given) true. With best fit
  // some units take the form of a similar one first, as the system does unless told otherwise.
  std::string Encode(std::u16string_view text, char fallback = '?', bool bestFit = true,
                     bool* lossy = nullptr) const;
  // Bytes without a meaning become the page's default unit.
  std::u16string Decode(std::string_view bytes) const;
  bool IsLead(unsigned char byte) const;
  // How many of the first limit bytes of a text form whole characters.
  size_t Whole(std::string_view bytes, size_t limit) const;
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

// The ANSI code page of the process that the current machine serves.
const CodePage& AnsiPage();

}  // namespace platform
