#include "host/server/request_head.h"

#include <algorithm>
#include <boost/asio/buffer.hpp>
#include <boost/beast/http/empty_body.hpp>
#include <boost/beast/http/parser.hpp>
#include <cstdint>
#include <limits>
#include <utility>

namespace printhost {
namespace {

namespace asio = boost::asio;
namespace http = boost::beast::http;
using boost::system::error_code;

bool IsNumber(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

// Returns the value of the header line at the start of a text, without blanks around it.
std::string_view FirstValue(std::string_view lines) {
  lines = lines.substr(0, lines.find('\r'));
  lines.remove_prefix(std::min(lines.find(':') + 1, lines.size()));
  const std::size_t first = lines.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return lines.substr(first, lines.find_last_not_of(" \t") - first + 1);
}

// Returns why a body must not be read: 415 for an encoded one, 411 for a chunked one or a POST
// without a length, 400 for several lengths, 413 for a long one; 0 when it may be read.
int BodyRefusal(const http::request_header<>& header, std::size_t length) {
  if (header.count(http::field::content_encoding) > 0) return 415;
  if (header.count(http::field::transfer_encoding) > 0) return 411;
  const std::size_t lengths = header.count(http::field::content_length);
  if (lengths == 0) return header.method() == http::verb::post ? 411 : 0;
  if (lengths > 1 || !IsNumber(View(header[http::field::content_length]))) return 400;
  return length > kMaxBody ? 413 : 0;
}

}  // namespace

RequestHead ParseHead(std::string_view head) {
  // The parser accepts folded lines, which RFC 9112 lets a server refuse.
  if (head.find("\r\n ") != std::string_view::npos || head.find("\r\n\t") != std::string_view::npos)
    return {.isMalformed = true};
  http::request_parser<http::empty_body> parser;
  parser.header_limit(static_cast<std::uint32_t>(kMaxHead));
  parser.body_limit(std::numeric_limits<std::uint64_t>::max());  // BodyRefusal checks the length
  error_code error;
  const std::size_t parsed = parser.put(asio::buffer(head), error);
  const bool isLengthBad = error == http::error::bad_content_length;
  const bool isBodyBad = isLengthBad || error == http::error::bad_transfer_encoding;
  if ((error && !isBodyBad) || (!error && !parser.is_header_done())) return {.isMalformed = true};
  RequestHead result{.header = parser.get().base()};
  if (!isBodyBad) {
    result.bodyLength = static_cast<std::size_t>(parser.content_length().value_or(0));
    result.refusal = BodyRefusal(result.header, result.bodyLength);
  } else if (!isLengthBad || result.header.count(http::field::transfer_encoding) > 0) {
    result.refusal = 411;
  } else {
    // The parser stops at the refused line; a length that is a number is too large for it.
    const bool isFirst = result.header.count(http::field::content_length) == 0;
    result.refusal = isFirst && IsNumber(FirstValue(head.substr(parsed))) ? 413 : 400;
  }
  return result;
}

}  // namespace printhost
