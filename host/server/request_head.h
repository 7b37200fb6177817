// The head of an HTTP request, as strictly as the sheet's server accepts it.
#pragma once

#include <boost/beast/http/fields.hpp>
#include <boost/beast/http/message.hpp>
#include <cstddef>
#include <string_view>

namespace printhost {

inline constexpr std::size_t kMaxHead = 8 << 10;  // bytes, with the empty line at its end
inline constexpr std::size_t kMaxBody = 64 << 10;
inline constexpr std::string_view kHeadEnd = "\r\n\r\n";

inline std::string_view View(boost::beast::string_view text) { return {text.data(), text.size()}; }

struct RequestHead {
  boost::beast::http::request_header<> header = {};
  std::size_t bodyLength = 0;
  bool isMalformed = false;
  int refusal = 0;  // status of the response when the body is not acceptable: 400, 411, 413 or 415
};

// Parses a head that ends with an empty line. Malformed: anything but HTTP/1.0 or 1.1, a control
// character, a folded line.
RequestHead ParseHead(std::string_view head);

}  // namespace printhost
