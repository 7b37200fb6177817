// Profile-file functions: reading in the ANSI and the wide form, writing in the ANSI form.
#include <winbase.h>

#include <algorithm>
#include <cstring>
#include <optional>

#include "platform/kernel32/profile_cache.h"
#include "platform/machine/code_page.h"
#include "platform/machine/machine_impl.h"
#include "platform/machine/text.h"

using namespace platform;

namespace {

using Encoding = ProfileDocument::Encoding;

// The two forms of the functions differ in how they convert the texts of a caller to those of a
// document and back.
struct ByteForm {
  using Char = char;
  static std::u16string Path(const char* path) { return AnsiPage().Decode(path); }
  // Texts are converted through UTF-16, which loses bytes that the ANSI code page leaves undefined.
  static std::string Converted(std::string text) {
    const bool ascii = std::all_of(text.begin(), text.end(),
                                   [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    return ascii ? text : AnsiPage().Encode(AnsiPage().Decode(text));
  }
  static std::optional<std::string> In(const char* text, Encoding encoding) {
    return encoding == Encoding::kAnsi ? Converted(text) : ToUtf8(AnsiPage().Decode(text));
  }
  static std::string Out(std::string text, Encoding encoding) {
    return encoding == Encoding::kAnsi ? Converted(std::move(text))
                                       : AnsiPage().Encode(ToUtf16(text));
  }
};

struct WideForm {
  using Char = WCHAR;
  static std::u16string Path(const WCHAR* path) { return path; }
  // Returns nullopt when the ANSI code page of a document lacks a character of the text.
  static std::optional<std::string> In(const WCHAR* text, Encoding encoding) {
    if (encoding != Encoding::kAnsi) return ToUtf8(text);
    bool lossy = false;
    std::string bytes = AnsiPage().Encode(text, '?', true, &lossy);
    if (lossy) return std::nullopt;
    return bytes;
  }
  static std::u16string Out(const std::string& text, Encoding encoding) {
    return encoding == Encoding::kAnsi ? AnsiPage().Decode(text) : ToUtf16(text);
  }
};

// A file name without a folder is in the Windows directory.
std::u16string FullPath(const Machine& machine, std::u16string path) {
  if (path.find_first_of(u"\\/:") != std::u16string::npos) return path;
  return machine.windowsDirectory() + u'\\' + path;
}

// Returns the value of a key, or, without a key, the keys of the section, each followed by NUL.
// Returns nullopt when the file, section or key does not exist.
template <typename Form>
auto ReadText(const typename Form::Char* section, const typename Form::Char* key,
              const typename Form::Char* fileName) {
  std::optional<std::basic_string<typename Form::Char>> result;
  Machine& machine = Machine::Current();
  if (machine.faults.ShouldFail(Fault::kFile)) return result;
  const std::u16string path = FullPath(machine, Form::Path(fileName));
  ProfileCache& cache = machine.impl().profiles;
  const std::lock_guard lock(cache.mutex);
  const auto inMemory = cache.inMemory.find(path);
  const ProfileDocument* document =
      inMemory != cache.inMemory.end() ? &inMemory->second : cache.Read(machine.HostPath(path));
  if (document == nullptr) return result;
  const Encoding encoding = document->encoding();
  const auto sectionName = Form::In(section, encoding);
  const auto keyName = key == nullptr ? std::string() : Form::In(key, encoding);
  if (!sectionName || !keyName) return result;
  auto found =
      key == nullptr ? document->Keys(*sectionName) : document->Value(*sectionName, *keyName);
  if (found) result = Form::Out(std::move(*found), encoding);
  return result;
}

template <typename Form>
DWORD Get(const typename Form::Char* section, const typename Form::Char* key,
          const typename Form::Char* fallback, typename Form::Char* out, DWORD size,
          const typename Form::Char* fileName) {
  if (out == nullptr || size == 0) return 0;
  *out = 0;
  if (section == nullptr || fileName == nullptr) return 0;
  auto text = ReadText<Form>(section, key, fileName);
  if (!text) {
    SetLastError(ERROR_FILE_NOT_FOUND);
    text.emplace();
    if (key != nullptr && fallback != nullptr) text = fallback;
    text->erase(text->find_last_not_of(' ') + 1);
  }
  // A value ends at its first NUL. A list ends with two, even when it is truncated.
  if (key != nullptr) text->resize(std::min(text->size(), text->find(typename Form::Char{0})));
  const DWORD ends = key == nullptr && text->size() >= size ? 2 : 1;
  // As documented, returns the size less 1 or 2 when truncated, even when that splits a character.
  const size_t count = size < ends ? 0 : std::min<size_t>(text->size(), size - ends);
  std::copy_n(text->data(), count, out);
  std::fill(out + count, out + std::min<size_t>(size, count + ends), typename Form::Char{0});
  return static_cast<DWORD>(count);
}

void Change(ProfileDocument& document, const char* section, const char* key, const char* value) {
  const auto in = [&](const char* text) { return *ByteForm::In(text, document.encoding()); };
  if (key == nullptr) {
    document.RemoveSection(in(section));
  } else {
    document.Set(in(section), in(key), in(value));
  }
}

}  // namespace

void Machine::SetMemoryProfile(std::u16string_view path, std::string_view bytes) {
  const std::lock_guard lock(impl_->profiles.mutex);
  impl_->profiles.inMemory[std::u16string(path)] = ProfileDocument::Parse(bytes);
}

std::string Machine::MemoryProfile(std::u16string_view path) {
  const std::lock_guard lock(impl_->profiles.mutex);
  return impl_->profiles.inMemory.at(std::u16string(path)).FileBytes();
}

DWORD WINAPI GetPrivateProfileStringW(LPCWSTR section, LPCWSTR key, LPCWSTR fallback,
                                      LPWSTR returned, DWORD size, LPCWSTR fileName) {
  return Get<WideForm>(section, key, fallback, returned, size, fileName);
}

DWORD WINAPI GetPrivateProfileStringA(LPCSTR section, LPCSTR key, LPCSTR fallback, LPSTR returned,
                                      DWORD size, LPCSTR fileName) {
  return Get<ByteForm>(section, key, fallback, returned, size, fileName);
}

BOOL WINAPI WritePrivateProfileStringA(LPCSTR section, LPCSTR key, LPCSTR value, LPCSTR fileName) {
  // Writes are not cached, so that there is nothing to flush. Removing a single key is not
  // supported.
  if (section == nullptr || fileName == nullptr || (key != nullptr && value == nullptr))
    return FALSE;
  Machine& machine = Machine::Current();
  DWORD error = ERROR_ACCESS_DENIED;
  if (!machine.faults.ShouldFail(Fault::kFile)) {
    const std::u16string path = FullPath(machine, ByteForm::Path(fileName));
    ProfileCache& cache = machine.impl().profiles;
    const std::lock_guard lock(cache.mutex);
    if (const auto inMemory = cache.inMemory.find(path); inMemory != cache.inMemory.end()) {
      Change(inMemory->second, section, key, value);
      return TRUE;
    }
    const std::filesystem::path file = machine.HostPath(path);
    std::error_code ignored;
    if (!std::filesystem::is_directory(file.parent_path(), ignored)) {
      error = ERROR_PATH_NOT_FOUND;
    } else if (ProfileDocument* document = cache.ReadOrNew(file)) {
      Change(*document, section, key, value);
      if (cache.Write(file)) return TRUE;
    }
  }
  SetLastError(error);
  return FALSE;
}
