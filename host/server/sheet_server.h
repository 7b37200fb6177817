// Serves one sheet to the browser of the person at this computer. It listens on a loopback address,
// and answers only requests that carry the random token of its address, name it as their host and
// come from no other origin.
#pragma once

#include <windows.h>

#include <memory>
#include <string>

#include "host/sheet/exchange.h"

namespace printhost {

class SheetServer {
 public:
  // listen is "address:port" with a loopback address, port 0 for any free one; pictures come from
  // the module. Throws Failure.
  SheetServer(Exchange& exchange, const std::string& listen, HMODULE pictures);
  // Stops serving at once.
  ~SheetServer();
  SheetServer(const SheetServer&) = delete;
  SheetServer& operator=(const SheetServer&) = delete;

  // What to open in a browser.
  std::string address() const;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace printhost
