// The head of an HTTP request, as strictly as the sheet's server wants it.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>

namespace printhost {

struct HttpRequest {
  std::string method;
  std::string path;                                 // without a query
  std::multimap<std::string, std::string> headers;  // by names in lower case

  std::size_t Count(const std::string& name) const { return headers.count(name); }
  // The first value of a header; empty when there is none.
  std::string_view Header(const std::string& name) const;
};

// Reads a head without its closing empty line. False when it is malformed: any control byte, a
// folded line, a name with blanks, anything but HTTP/1.0 or 1.1.
bool ParseHead(std::string_view head, HttpRequest& request);

// Reads the length of the body that a head announces; answers 0, or the status to refuse it with:
// 400 for a senseless length, 411 for a body without one, 413 for more than the most, 415 for an
// encoded one.
int ParseBodyLength(const HttpRequest& request, std::size_t most, std::size_t& length);

}  // namespace printhost
