#include "platform/kernel32/profile_document.h"

#include <algorithm>

#include "platform/machine/code_page.h"
#include "platform/machine/text.h"

namespace platform {
namespace {

constexpr std::string_view kUtf16Mark = "\xFF\xFE";
constexpr std::string_view kLineEnd = "\r\n";

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

std::string_view Unquoted(std::string_view text) {
  const bool quoted = text.size() >= 2 && text.front() == text.back() &&
                      (text.front() == '"' || text.front() == '\'');
  return quoted ? text.substr(1, text.size() - 2) : text;
}

// Returns the key of a line; empty when it has none.
std::string_view KeyOf(std::string_view line) {
  const size_t equals = line.find('=');
  const std::string_view key = Trimmed(line.substr(0, equals));
  return equals == line.npos || key.starts_with(';') ? std::string_view() : key;
}

std::string FromUtf16Bytes(std::string_view bytes) {
  std::u16string text;
  text.reserve(bytes.size() / 2);
  for (size_t i = 0; i + 1 < bytes.size(); i += 2) {
    text.push_back(static_cast<char16_t>(
        MAKEWORD(static_cast<unsigned char>(bytes[i]), static_cast<unsigned char>(bytes[i + 1]))));
  }
  return ToUtf8(text);
}

void AppendUtf16Bytes(std::string& out, std::string_view utf8) {
  for (const char16_t unit : ToUtf16(utf8)) {
    out.push_back(static_cast<char>(LOBYTE(unit)));
    out.push_back(static_cast<char>(HIBYTE(unit)));
  }
}

}  // namespace

ProfileDocument ProfileDocument::Parse(std::string_view bytes) {
  ProfileDocument document;
  std::string converted;
  if (bytes.starts_with(kUtf16Mark)) {
    document.encoding_ = Encoding::kUtf16;
    if (bytes.size() % 2 == 1) document.oddByte_ = bytes.substr(bytes.size() - 1);
    converted = FromUtf16Bytes(bytes.substr(kUtf16Mark.size()));
    bytes = converted;
  }
  while (!bytes.empty()) {
    const size_t stop = std::min(bytes.find_first_of("\r\n"), bytes.size());
    const bool pair = bytes.substr(stop).starts_with(kLineEnd);
    const size_t endSize = stop == bytes.size() ? 0 : pair ? 2 : 1;
    document.Append({std::string(bytes.substr(0, stop)), std::string(bytes.substr(stop, endSize))});
    bytes.remove_prefix(stop + endSize);
  }
  return document;
}

std::string ProfileDocument::FileBytes() const {
  size_t size = 0;
  for (const Section& section : sections_) {
    if (section.bytes.empty()) {
      for (const Line& line : section.lines) (section.bytes += line.text) += line.end;
    }
    size += section.bytes.size();
  }
  std::string text;
  text.reserve(size);
  for (const Section& section : sections_) text += section.bytes;
  if (encoding_ != Encoding::kUtf16) return text;
  std::string bytes(kUtf16Mark);
  bytes.reserve(text.size() * 2 + kUtf16Mark.size() + 1);
  AppendUtf16Bytes(bytes, text);
  return bytes + oddByte_;
}

// Returns the name of a section heading: the text up to "]", which must not be a trail byte, or up
// to the end of the line. Returns nullopt for any other line.
std::optional<std::string> ProfileDocument::SectionName(std::string_view text) const {
  text = Trimmed(text);
  if (text.empty() || text.front() != '[') return std::nullopt;
  text.remove_prefix(1);
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == ']') return std::string(Trimmed(text.substr(0, i)));
    if (encoding_ == Encoding::kAnsi && AnsiPage().IsLead(static_cast<unsigned char>(text[i]))) ++i;
  }
  return std::string(Trimmed(text));
}

void ProfileDocument::Append(Line line) {
  if (auto name = SectionName(line.text)) {
    byName_.try_emplace(*name, sections_.size());
    sections_.emplace_back().name = std::move(*name);
  } else if (const std::string_view key = KeyOf(line.text); !key.empty()) {
    sections_.back().keys.try_emplace(std::string(key), sections_.back().lines.size());
  }
  sections_.back().lines.push_back(std::move(line));
}

const ProfileDocument::Section* ProfileDocument::Find(std::string_view name) const {
  const auto found = byName_.find(std::string(Trimmed(name)));
  return found == byName_.end() ? nullptr : &sections_[found->second];
}

std::optional<std::string> ProfileDocument::Value(std::string_view section,
                                                  std::string_view key) const {
  const Section* found = Find(section);
  if (found == nullptr) return std::nullopt;
  const auto line = found->keys.find(std::string(Trimmed(key)));
  if (line == found->keys.end()) return std::nullopt;
  const std::string_view text = found->lines[line->second].text;
  return std::string(Unquoted(Trimmed(text.substr(text.find('=') + 1))));
}

std::optional<std::string> ProfileDocument::Keys(std::string_view section) const {
  const Section* found = Find(section);
  if (found == nullptr) return std::nullopt;
  std::string keys;
  for (size_t i = 1; i < found->lines.size(); ++i) {
    const std::string_view key = KeyOf(found->lines[i].text);
    if (!key.empty()) keys.append(key).push_back('\0');
  }
  return keys;
}

// Returns the section of a name, which is added at the end of the file when it does not exist.
ProfileDocument::Section& ProfileDocument::FindOrAdd(const std::string& name) {
  const auto [found, added] = byName_.try_emplace(name, sections_.size());
  if (!added) return sections_[found->second];
  Section& last = sections_.back();
  if (!last.lines.empty() && last.lines.back().end.empty()) {
    last.lines.back().end = kLineEnd;
    last.bytes.clear();
  }
  return sections_.emplace_back(Section{name, {{"[" + name + "]", std::string(kLineEnd)}}, {}, {}});
}

void ProfileDocument::Set(std::string_view name, std::string_view key, std::string_view value) {
  const std::string trimmedKey(Trimmed(key));
  Line line = {trimmedKey + "=" + std::string(value), std::string(kLineEnd)};
  Section& section = FindOrAdd(std::string(Trimmed(name)));
  section.bytes.clear();
  if (const auto found = section.keys.find(trimmedKey); found != section.keys.end()) {
    section.lines[found->second].text = std::move(line.text);
    return;
  }
  // Blank lines at the end of a section stay after its last key.
  size_t place = section.lines.size();
  while (place > 1 && Trimmed(section.lines[place - 1].text).empty()) --place;
  Line& before = section.lines[place - 1];
  if (before.end.empty()) before.end = kLineEnd;
  if (!trimmedKey.empty() && KeyOf(line.text) == trimmedKey)
    section.keys.try_emplace(trimmedKey, place);
  section.lines.insert(section.lines.begin() + static_cast<ptrdiff_t>(place), std::move(line));
}

void ProfileDocument::RemoveSection(std::string_view name) {
  const std::string trimmed(Trimmed(name));
  if (byName_.erase(trimmed) == 0) return;
  std::erase_if(sections_, [&](const Section& section) {
    return &section != &sections_.front() && section.name == trimmed;
  });
  byName_.clear();
  for (size_t i = 1; i < sections_.size(); ++i) byName_.try_emplace(sections_[i].name, i);
}

}  // namespace platform
