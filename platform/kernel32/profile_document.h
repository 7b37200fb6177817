// A profile file as lines. A change leaves all other bytes as they are: order, comments, blank
// lines, line ends, other sections, and text that is not a profile.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace platform {

class ProfileDocument {
 public:
  // The encoding of the file: the ANSI code page, or UTF-16 after a byte order mark. In this class
  // texts are bytes, of the ANSI code page or of UTF-8 respectively.
  enum class Encoding { kAnsi, kUtf16 };

  static ProfileDocument Parse(std::string_view fileBytes);
  std::string FileBytes() const;
  Encoding encoding() const { return encoding_; }

  // Returns the value without surrounding blanks and one pair of quotes, from the first section and
  // key of these names.
  std::optional<std::string> Value(std::string_view section, std::string_view key) const;
  // Returns the keys of a section, each followed by NUL.
  std::optional<std::string> Keys(std::string_view section) const;

  void Set(std::string_view section, std::string_view key, std::string_view value);
  void RemoveSection(std::string_view section);  // removes every section of that name

 private:
  struct Line {
    std::string text;  // without its line end
    std::string end;   // "\r\n", "\n", "\r" or nothing
  };
  struct Section {
    std::string name;
    std::vector<Line> lines;  // the heading first, except before the first section
    // The line of each key; the first one of a name.
    std::unordered_map<std::string, size_t> keys;
    // The bytes of all lines; empty: not up to date. A change invalidates its section only.
    mutable std::string bytes;
  };

  std::optional<std::string> SectionName(std::string_view text) const;
  void Append(Line line);
  const Section* Find(std::string_view name) const;
  Section& FindOrAdd(const std::string& name);

  Encoding encoding_ = Encoding::kAnsi;
  std::string oddByte_;  // an incomplete unit at the end of a UTF-16 file
  // The first one holds the lines before any section.
  std::vector<Section> sections_ = std::vector<Section>(1);
  std::unordered_map<std::string, size_t> byName_;
};

}  // namespace platform
