#include "platform/system/profile_document.h"

#include <algorithm>

#include "platform/system/text.h"

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
  document.sections_.emplace_back();
  while (!bytes.empty()) {
    const size_t stop = std::min(bytes.find_first_of("\r\n"), bytes.size());
    const bool pair = bytes.substr(stop).starts_with(kLineEnd);
    const size_t endSize = stop == bytes.size() ? 0 : pair ? 2 : 1;
    Line line;
    line.text = bytes.substr(0, stop);
    line.end = bytes.substr(stop, endSize);
    bytes.remove_prefix(stop + endSize);
    document.Append(std::move(line));
  }
  for (Section& section : document.sections_) IndexKeys(section);
  document.IndexSections();
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

// The name in a line that opens a section: up to the "]" that is no second byte of a character, or
// the rest of the line.
std::optional<std::string> ProfileDocument::SectionName(std::string_view text) const {
  text = Trimmed(text);
  if (text.empty() || text.front() != '[') return std::nullopt;
  text.remove_prefix(1);
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == ']') return std::string(Trimmed(text.substr(0, i)));
    if (encoding_ == Encoding::kCp932 && IsCp932Lead(static_cast<unsigned char>(text[i]))) ++i;
  }
  return std::string(Trimmed(text));
}

void ProfileDocument::FindKey(Line& line) {
  const std::string_view text = line.text;
  const size_t equals = text.find('=');
  const std::string_view key = Trimmed(text.substr(0, std::min(equals, text.size())));
  line.hasKey = equals != std::string_view::npos && !key.empty() && key.front() != ';';
  if (!line.hasKey) return;
  line.keyStart = static_cast<size_t>(key.data() - text.data());
  line.keySize = key.size();
}

void ProfileDocument::Append(Line line) {
  if (auto name = SectionName(line.text)) {
    sections_.emplace_back();
    sections_.back().name = std::move(*name);
  } else {
    FindKey(line);
  }
  sections_.back().lines.push_back(std::move(line));
}

void ProfileDocument::IndexSections() {
  byName_.clear();
  for (size_t i = 1; i < sections_.size(); ++i) byName_.try_emplace(sections_[i].name, i);
}

void ProfileDocument::IndexKeys(Section& section) {
  section.keys.clear();
  for (size_t i = 0; i < section.lines.size(); ++i) {
    const Line& line = section.lines[i];
    if (line.hasKey) section.keys.try_emplace(std::string(line.Key()), i);
  }
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

std::vector<std::string> ProfileDocument::Sections() const {
  std::vector<std::string> names;
  for (size_t i = 1; i < sections_.size(); ++i) names.push_back(sections_[i].name);
  return names;
}

std::vector<std::string> ProfileDocument::Keys(std::string_view section) const {
  std::vector<std::string> keys;
  const Section* found = Find(section);
  if (found == nullptr) return keys;
  for (const Line& line : found->lines) {
    if (line.hasKey) keys.emplace_back(line.Key());
  }
  return keys;
}

// The section of a name, added at the file's end when there is none.
ProfileDocument::Section& ProfileDocument::Obtain(const std::string& name) {
  const auto [found, added] = byName_.try_emplace(name, std::max<size_t>(sections_.size(), 1));
  if (!added) return sections_[found->second];
  if (sections_.empty()) sections_.emplace_back();
  Section& last = sections_.back();
  if (!last.lines.empty() && last.lines.back().end.empty()) {
    last.lines.back().end = kLineEnd;
    last.bytes.clear();
  }
  Line line;
  line.text = "[" + name + "]";
  line.end = kLineEnd;
  sections_.emplace_back();
  sections_.back().name = name;
  sections_.back().lines.push_back(std::move(line));
  return sections_.back();
}

void ProfileDocument::Set(std::string_view name, std::string_view key, std::string_view value) {
  const std::string trimmedKey(Trimmed(key));
  Line line;
  line.text = trimmedKey + "=" + std::string(value);
  line.end = kLineEnd;
  FindKey(line);
  Section& section = Obtain(std::string(Trimmed(name)));
  section.bytes.clear();
  if (const auto found = section.keys.find(trimmedKey); found != section.keys.end()) {
    Line& old = section.lines[found->second];
    line.end = old.end;
    old = std::move(line);
    return;
  }
  // Blank lines at a section's end stay behind its last key.
  size_t place = section.lines.size();
  while (place > 1 && Trimmed(section.lines[place - 1].text).empty()) --place;
  Line& before = section.lines[place - 1];
  if (before.end.empty()) before.end = kLineEnd;
  if (line.hasKey) section.keys.try_emplace(trimmedKey, place);
  section.lines.insert(section.lines.begin() + static_cast<ptrdiff_t>(place), std::move(line));
}

void ProfileDocument::RemoveKey(std::string_view name, std::string_view key) {
  const auto found = byName_.find(std::string(Trimmed(name)));
  if (found == byName_.end()) return;
  Section& section = sections_[found->second];
  const auto line = section.keys.find(std::string(Trimmed(key)));
  if (line == section.keys.end()) return;
  const auto place = section.lines.begin() + static_cast<ptrdiff_t>(line->second);
  section.lines.erase(place);
  section.bytes.clear();
  IndexKeys(section);
}

void ProfileDocument::RemoveSection(std::string_view name) {
  const std::string trimmed(Trimmed(name));
  if (byName_.find(trimmed) == byName_.end()) return;
  sections_.erase(std::remove_if(sections_.begin() + 1, sections_.end(),
                                 [&](const Section& section) { return section.name == trimmed; }),
                  sections_.end());
  IndexSections();
}

}  // namespace platform
