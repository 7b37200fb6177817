// Conversions between code pages and UTF-16.
#include <winnls.h>

#include <algorithm>
#include <string>

#include "platform/machine/code_page.h"
#include "platform/machine/last_error.h"
#include "platform/machine/machine_impl.h"
#include "platform/machine/text.h"

using namespace platform;

namespace {

// Returns the code page of a call; null when it is not installed. The ANSI page always is.
const CodePage* Named(UINT number) {
  const Machine::Impl& impl = Machine::Current().impl();
  const UINT ansi = impl.ansiPage;
  if (number == CP_ACP) number = ansi;
  if (number == 932 && ansi != 932 && !impl.codePage932) return nullptr;
  return CodePage::Find(number);
}

bool AreValid(const void* text, int length, const void* out, int size) {
  return text != nullptr && length != 0 && length >= -1 && size >= 0 &&
         (size == 0 || (out != nullptr && out != text));
}

// Copies the `fitting` first units and returns the length of the whole text; returns 0 and sets
// ERROR_INSUFFICIENT_BUFFER when it does not fit. The copied units stay in the buffer.
template <typename Text, typename Char>
int CopyResult(const Text& result, size_t fitting, Char* out, int size) {
  if (size > 0) result.copy(out, fitting);
  const bool fits = size == 0 || fitting == result.size();
  return fits ? static_cast<int>(result.size()) : Fail(ERROR_INSUFFICIENT_BUFFER);
}

}  // namespace

BOOL WINAPI IsDBCSLeadByteEx(UINT codePage, BYTE byte) {
  const CodePage* page = Named(codePage);
  return page != nullptr && page->IsLead(byte);
}

// As documented, UTF-8 allows neither flags nor a default character.
int WINAPI WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR text, int units, LPSTR out,
                               int size, LPCSTR defaultCharacter, LPBOOL usedDefault) {
  const CodePage* page = Named(codePage);
  if (page == nullptr || !AreValid(text, units, out, size) ||
      (page->IsUtf8() && (defaultCharacter != nullptr || usedDefault != nullptr))) {
    return Fail(ERROR_INVALID_PARAMETER);
  }
  if ((flags & ~(page->IsUtf8() ? 0 : WC_NO_BEST_FIT_CHARS)) != 0) return Fail(ERROR_INVALID_FLAGS);
  const size_t count = units < 0 ? View(text).size() + 1 : static_cast<size_t>(units);
  bool used = false;
  const std::string bytes =
      page->Encode({text, count}, defaultCharacter == nullptr ? '?' : *defaultCharacter,
                   (flags & WC_NO_BEST_FIT_CHARS) == 0, &used);
  if (usedDefault != nullptr) *usedDefault = used;
  return CopyResult(bytes, page->CompleteLength(bytes, static_cast<size_t>(size)), out, size);
}

int WINAPI MultiByteToWideChar(UINT codePage, DWORD flags, LPCSTR text, int bytes, LPWSTR out,
                               int size) {
  const CodePage* page = Named(codePage);
  if (page == nullptr || !AreValid(text, bytes, out, size)) return Fail(ERROR_INVALID_PARAMETER);
  if (flags != 0) return Fail(ERROR_INVALID_FLAGS);
  const size_t count = bytes < 0 ? std::string_view(text).size() + 1 : static_cast<size_t>(bytes);
  const std::u16string units = page->Decode({text, count});
  return CopyResult(units, std::min(units.size(), static_cast<size_t>(size)), out, size);
}
