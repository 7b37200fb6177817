// Heads of requests to the sheet's server as any bytes at all: what is taken says the same when it
// is written down again.
#include <algorithm>

#include "host/http_request.h"
#include "tests/fuzz/harness.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  constexpr size_t kMost = 1 << 20;
  printhost::HttpRequest request;
  if (!ParseHead({reinterpret_cast<const char*>(data), size}, request)) return 0;
  std::string head = request.method + ' ' + request.path + " HTTP/1.1\r\n";
  for (const auto& [name, value] : request.headers) head += name + ':' + value + "\r\n";
  Require(std::ranges::count(head, '\n') == 1 + std::ssize(request.headers));
  printhost::HttpRequest again;
  Require(ParseHead(head, again) && again.method == request.method && again.path == request.path &&
          again.headers == request.headers);
  size_t length = 0;
  const int refused = ParseBodyLength(request, kMost, length);
  Require(refused != 0 ? refused >= 400 && refused <= 415 : length <= kMost);
  return 0;
}
