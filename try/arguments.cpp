#include "try/arguments.h"

namespace kestrel_try {
namespace {

constexpr WCHAR kQuote = TEXT('"');
constexpr WCHAR kBackslash = TEXT('\\');

bool IsBlank(WCHAR unit) { return unit == TEXT(' ') || unit == TEXT('\t'); }

// Returns the start of the arguments, after the program's name.
const WCHAR* SkipProgramName(const WCHAR* line) {
  bool quoted = false;
  for (; *line != 0 && (quoted || !IsBlank(*line)); ++line) {
    if (*line == kQuote) quoted = !quoted;
  }
  return line;
}

// Copies one argument to out, with its terminator; advances both.
void CopyArgument(const WCHAR*& line, WCHAR*& out) {
  bool quoted = false;
  while (*line != 0 && (quoted || !IsBlank(*line))) {
    size_t backslashes = 0;
    for (; *line == kBackslash; ++line) ++backslashes;
    const bool beforeQuote = *line == kQuote;
    for (size_t i = beforeQuote ? backslashes / 2 : backslashes; i > 0; --i) *out++ = kBackslash;
    if (!beforeQuote) {
      if (backslashes == 0) *out++ = *line++;
    } else if (backslashes % 2 != 0 || (quoted && line[1] == kQuote)) {
      line += backslashes % 2 != 0 ? 1 : 2;
      *out++ = kQuote;
    } else {
      ++line;
      quoted = !quoted;
    }
  }
  *out++ = 0;
}

bool SameWord(const WCHAR* word, const char* other) {
  for (; *word != 0 && *word == static_cast<WCHAR>(*other); ++word) ++other;
  return *word == 0 && *other == 0;
}

struct SheetName {
  const char* name;
  Sheet sheet;
};
constexpr SheetName kSheetNames[] = {{"document", Sheet::kDocument},
                                     {"advanced", Sheet::kAdvanced},
                                     {"user-default", Sheet::kUserDefault},
                                     {"printer", Sheet::kPrinter}};

Sheet FindSheet(const WCHAR* word) {
  for (const SheetName& each : kSheetNames) {
    if (SameWord(word, each.name)) return each.sheet;
  }
  return Sheet::kNone;
}

}  // namespace

size_t SplitCommandLine(const WCHAR* line, WCHAR* storage, const WCHAR** words, size_t capacity) {
  size_t count = 0;
  line = SkipProgramName(line);
  while (true) {
    while (IsBlank(*line)) ++line;
    if (*line == 0) return count;
    if (count < capacity) words[count] = storage;
    ++count;
    CopyArgument(line, storage);
  }
}

const char* ReadArguments(const WCHAR* const* words, size_t count, Arguments& arguments) {
  for (size_t i = 0; i < count; ++i) {
    const WCHAR* const word = words[i];
    if (SameWord(word, "--help")) {
      arguments.help = true;
    } else if (SameWord(word, "--sheet")) {
      if (++i < count) arguments.sheet = FindSheet(words[i]);
      if (i >= count || arguments.sheet == Sheet::kNone)
        return "--sheet needs document, advanced, user-default or printer";
    } else if (word[0] == TEXT('-') && word[1] == TEXT('-')) {
      return "there is no such option";
    } else if (arguments.module == nullptr) {
      arguments.module = word;
    } else if (arguments.printer == nullptr) {
      arguments.printer = word;
    } else {
      return "there are too many arguments; put quotation marks around a name with spaces";
    }
  }
  if (arguments.help || arguments.printer != nullptr) return nullptr;
  return arguments.module == nullptr ? "the module's file and the printer's name are missing"
                                     : "the printer's name is missing";
}

}  // namespace kestrel_try
