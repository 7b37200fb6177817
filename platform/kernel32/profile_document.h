// A profile file as lines. Whatever a change does not name keeps its bytes: order, comments, blank
// lines, line ends, foreign sections and text that is no profile at all.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace platform {

class ProfileDocument {
 public:
  // How the file's text is stored: in the ANSI code page, or as UTF-16 behind its mark. Inside,
  // texts are bytes: of the ANSI code page for the first, of UTF-8 for the second.
  enum class Encoding { kAnsi, kUtf16 };

  static ProfileDocument Parse(std::string_view fileBytes);
  std::string FileBytes() const;
  Encoding encoding() const { return encoding_; }

  // The value as stored, without surrounding blanks and one pair of quotes. The first section and
  // the first key of a name count.
  std::optional<std::string> Value(std::string_view section, std::string_view key) const;
  // The keys of a section, each with a NUL behind it.
  std::optional<std::string> Keys(std::string_view section) const;

  void Set(std::string_view section, std::string_view key, std::string_view value);
  void RemoveSection(std::string_view section);  // every section of that name

 private:
  struct Line {
    std::string text;  // without its end
    std::string end;   // "\r\n", "\n", "\r" or nothing
  };
  struct Section {
    std::string name;
    std::vector<Line> lines;  // its own line first (not in the part before the first section)
    // Line of each key, the first of a name.
    std::unordered_map<std::string, size_t> keys;
    // All lines as the file holds them; empty: to be made anew. A change rewrites its section
    // alone.
    mutable std::string bytes;
  };

  std::optional<std::string> SectionName(std::string_view text) const;
  void Append(Line line);
  const Section* Find(std::string_view name) const;
  Section& Obtain(const std::string& name);

  Encoding encoding_ = Encoding::kAnsi;
  std::string oddByte_;  // half a unit at the end of a UTF-16 file
  // The first: what lies before any section.
  std::vector<Section> sections_ = std::vector<Section>(1);
  std::unordered_map<std::string, size_t> byName_;
};

}  // namespace platform
