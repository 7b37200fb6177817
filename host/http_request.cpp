#include "host/http_request.h"

#include <algorithm>
#include <charconv>

namespace printhost {
namespace {

constexpr std::string_view kLineEnd = "\r\n";

// What stands before a separator; the text is left behind it. All of it when there is none.
std::string_view Cut(std::string_view& text, std::string_view separator) {
  const std::size_t at = text.find(separator);
  const std::string_view piece = text.substr(0, at);
  text.remove_prefix(at == std::string_view::npos ? text.size() : at + separator.size());
  return piece;
}

bool IsControl(char byte) {
  return (static_cast<unsigned char>(byte) < 0x20 && byte != '\t') || byte == 0x7F;
}

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t");
  return first == std::string_view::npos
             ? std::string_view()
             : text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::string Lower(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  return lower;
}

}  // namespace

std::string_view HttpRequest::Header(const std::string& name) const {
  const auto found = headers.find(name);
  return found == headers.end() ? std::string_view() : std::string_view(found->second);
}

bool ParseHead(std::string_view head, HttpRequest& request) {
  std::string_view line = Cut(head, kLineEnd);
  if (std::ranges::any_of(line, IsControl)) return false;
  request.method = Cut(line, " ");
  std::string_view target = Cut(line, " ");
  request.path = Cut(target, "?");
  if (request.method.empty() || !request.path.starts_with('/')) return false;
  if (line != "HTTP/1.1" && line != "HTTP/1.0") return false;
  while (!head.empty()) {
    line = Cut(head, kLineEnd);
    if (std::ranges::any_of(line, IsControl) || line.find(':') == std::string_view::npos)
      return false;
    const std::string_view name = Cut(line, ":");
    if (name.empty() || name.find_first_of(" \t") != std::string_view::npos) return false;
    request.headers.emplace(Lower(name), Trimmed(line));
  }
  return true;
}

int ParseBodyLength(const HttpRequest& request, std::size_t most, std::size_t& length) {
  length = 0;
  if (request.Count("content-encoding") > 0) return 415;
  if (request.Count("transfer-encoding") > 0) return 411;
  if (request.Count("content-length") == 0) return request.method == "POST" ? 411 : 0;
  const std::string_view digits = request.Header("content-length");
  const char* end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, length);
  if (error == std::errc::result_out_of_range) return 413;
  if (error != std::errc() || stop != end || request.Count("content-length") > 1) return 400;
  return length > most ? 413 : 0;
}

}  // namespace printhost
