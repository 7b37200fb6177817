// Code pages as tables, which the C library's iconv fills once.
#include "platform/machine/code_page.h"

#include <iconv.h>
#include <winnls.h>

#include <algorithm>
#include <array>

#include "platform/machine/machine_impl.h"
#include "platform/machine/text.h"

namespace platform {

struct CodePage::Traits {
  UINT number;
  const char* converter;  // iconv's name; null for UTF-8, which needs no tables
  WCHAR undefined;        // the unit for bytes that the page leaves undefined
};

constexpr CodePage::Traits CodePage::kPages[] = {{932, "CP932", 0x30FB},
                                                 {936, "GBK", u'?'},
                                                 {949, "CP949", u'?'},
                                                 {1252, "CP1252", u'?'},
                                                 {CP_UTF8, nullptr, 0xFFFD}};

namespace {

constexpr WCHAR kNone = 0xFFFF;

// Maps single bytes that iconv rejects as the system does: to a control code or a private-use unit,
// so that a round trip of any byte of a single-byte page loses nothing.
WCHAR WideOfByte(UINT page, unsigned byte) {
  if (byte < 0x80) return static_cast<WCHAR>(byte);
  switch (page) {
    case 932:
      if (byte == 0x80 || byte == 0xA0) return static_cast<WCHAR>(byte);
      if (byte >= 0xA1 && byte <= 0xDF) return static_cast<WCHAR>(0xFF61 + byte - 0xA1);
      return byte >= 0xFD ? static_cast<WCHAR>(0xF8F1 + byte - 0xFD) : kNone;
    case 936:
      return byte == 0x80 ? WCHAR{0x20AC} : byte == 0xFF ? WCHAR{0xF8F5} : kNone;
    case 949:
      return byte == 0x80 ? WCHAR{0x0080} : byte == 0xFF ? WCHAR{0xF8F7} : kNone;
    default:
      return static_cast<WCHAR>(byte);
  }
}

// Returns page 932's best fit for a unit that it lacks: for the yen sign, the overline, and the
// base letter of an accented one; "?" for any other.
char BestFit(WCHAR unit) {
  constexpr std::string_view kLetters =
      "AAAAAAACEEEEIIIIDNOOOOO?OUUUUYTsaaaaaaaceeeeiiiidnooooo?ouuuuyty";
  if (unit == 0xA5) return '\\';
  if (unit == 0x203E) return '~';
  return unit >= 0xC0 && unit <= 0xFF ? kLetters[unit - 0xC0] : '?';
}

bool IsHigh(WCHAR unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool IsLow(WCHAR unit) { return unit >= 0xDC00 && unit < 0xE000; }

// Replaces unpaired surrogates, which UTF-8 cannot represent. The terminator of the text is none.
std::u16string ReplaceUnpairedSurrogates(std::u16string text) {
  for (size_t i = 0; i < text.size(); ++i) {
    if (IsHigh(text[i]) && IsLow(text[i + 1])) {
      ++i;
    } else if (IsHigh(text[i]) || IsLow(text[i])) {
      text[i] = 0xFFFD;
    }
  }
  return text;
}

// Converts the bytes of one character; returns kNone when iconv rejects them.
WCHAR Convert(iconv_t converter, std::string_view character) {
  WCHAR out[2] = {};
  char *from = const_cast<char*>(character.data()), *to = reinterpret_cast<char*>(out);
  size_t left = character.size(), space = sizeof(out);
  iconv(converter, nullptr, nullptr, nullptr, nullptr);
  const bool whole = iconv(converter, &from, &left, &to, &space) == 0 && left == 0;
  return whole && space == sizeof(out) - sizeof(WCHAR) ? out[0] : kNone;
}

}  // namespace

// A code is a single byte, or lead byte * 256 + trail byte.
struct CodePage::Tables {
  std::array<WCHAR, 65536> wide;  // by code; kNone: undefined
  std::array<WORD, 65536> codes;  // by unit; 0: the page lacks it (unit 0 excepted)
};

CodePage::CodePage(const Traits& traits) : traits_(traits) {
  if (IsUtf8()) return;
  auto tables = std::make_unique<Tables>();
  tables->wide.fill(kNone);
  tables->codes.fill(0);
  const iconv_t converter = iconv_open("UTF-16LE", traits.converter);
  const bool known = converter != reinterpret_cast<iconv_t>(-1);
  for (unsigned byte = 0; byte < 256; ++byte) {
    const auto first = static_cast<unsigned char>(byte);
    const char character[] = {static_cast<char>(byte)};
    WCHAR& unit = tables->wide[byte];
    if (known && traits.number == 1252) unit = Convert(converter, {character, 1});
    if (unit == kNone) unit = WideOfByte(traits.number, byte);
    for (unsigned trail = 0; known && IsLead(first) && trail < 256; ++trail) {
      const char pair[] = {static_cast<char>(byte), static_cast<char>(trail)};
      if (!IsTrail(static_cast<unsigned char>(trail))) continue;
      tables->wide[byte << 8 | trail] = Convert(converter, {pair, 2});
    }
  }
  if (known) iconv_close(converter);
  // The first of several codes for a unit is used for encoding; rows 0xED and 0xEE of page 932,
  // which duplicate others, come last.
  const auto isDuplicateRow = [&](unsigned code) {
    return traits.number == 932 && (code >> 8 == 0xED || code >> 8 == 0xEE);
  };
  for (const bool late : {false, true}) {
    for (unsigned code = 1; code < 65536; ++code) {
      const WCHAR unit = tables->wide[code];
      if (unit == kNone || isDuplicateRow(code) != late || tables->codes[unit] != 0) continue;
      tables->codes[unit] = static_cast<WORD>(code);
    }
  }
  tables_ = std::move(tables);
}

CodePage::~CodePage() = default;

template <size_t Index>
const CodePage* CodePage::Get() {
  static const CodePage page(kPages[Index]);
  return &page;
}

const CodePage* CodePage::Find(UINT number) {
  constexpr const CodePage* (*kGet[])() = {Get<0>, Get<1>, Get<2>, Get<3>, Get<4>};
  static_assert(std::size(kGet) == std::size(kPages));
  const auto* page = std::find_if(std::begin(kPages), std::end(kPages),
                                  [=](const Traits& one) { return one.number == number; });
  return page == std::end(kPages) ? nullptr : kGet[page - kPages]();
}

bool CodePage::IsUtf8() const { return traits_.converter == nullptr; }

bool CodePage::IsLead(unsigned char byte) const {
  switch (traits_.number) {
    case 932:
      return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
    case 936:
    case 949:
      return byte >= 0x81 && byte <= 0xFE;
    default:
      return false;
  }
}

bool CodePage::IsTrail(unsigned char byte) const {
  return byte >= 0x40 && byte != 0x7F && byte <= (traits_.number == 932 ? 0xFC : 0xFE);
}

std::string CodePage::Encode(std::u16string_view text, char fallback, bool bestFit,
                             bool* lossy) const {
  if (IsUtf8()) return ToUtf8(ReplaceUnpairedSurrogates(std::u16string(text)));
  bool lost = false;
  std::string out;
  out.reserve(text.size() * 2);
  for (const WCHAR unit : text) {
    const WORD code = tables_->codes[unit];
    if (code >= 256) out.push_back(static_cast<char>(HIBYTE(code)));
    if (code != 0 || unit == 0) {
      out.push_back(static_cast<char>(LOBYTE(code)));
      continue;
    }
    const char similar = bestFit && traits_.number == 932 ? BestFit(unit) : '?';
    out.push_back(similar != '?' ? similar : fallback);
    lost = lost || similar == '?';
  }
  if (lossy != nullptr) *lossy = lost;
  return out;
}

std::u16string CodePage::Decode(std::string_view bytes) const {
  if (IsUtf8()) return ReplaceUnpairedSurrogates(ToUtf16(bytes));
  std::u16string out;
  out.reserve(bytes.size());
  for (size_t i = 0; i < bytes.size(); ++i) {
    unsigned code = static_cast<unsigned char>(bytes[i]);
    if (IsLead(static_cast<unsigned char>(code)) && i + 1 < bytes.size() &&
        IsTrail(static_cast<unsigned char>(bytes[i + 1]))) {
      code = code << 8 | static_cast<unsigned char>(bytes[++i]);
    }
    const WCHAR unit = tables_->wide[code];
    out.push_back(unit == kNone ? traits_.undefined : unit);
  }
  return out;
}

size_t CodePage::CompleteLength(std::string_view bytes, size_t limit) const {
  if (limit >= bytes.size()) return bytes.size();
  size_t complete = 0;
  if (IsUtf8()) {
    complete = limit;
    while (complete > 0 && (static_cast<unsigned char>(bytes[complete]) & 0xC0) == 0x80) --complete;
    return complete;
  }
  for (;;) {
    const bool pair = IsLead(static_cast<unsigned char>(bytes[complete])) &&
                      complete + 1 < bytes.size() && bytes[complete + 1] != 0;
    const size_t next = complete + (pair ? 2 : 1);
    if (next > limit) return complete;
    complete = next;
  }
}

const CodePage& AnsiPage() { return *CodePage::Find(Machine::Current().impl().ansiPage); }

std::string ToCp932(std::u16string_view text, bool* lossless) {
  bool lossy = false;
  std::string bytes = CodePage::Find(932)->Encode(text, '?', false, &lossy);
  if (lossless != nullptr) *lossless = !lossy;
  return bytes;
}

std::u16string FromCp932(std::string_view bytes) { return CodePage::Find(932)->Decode(bytes); }

}  // namespace platform
