// Serves one sheet to a browser on this computer: the page's files, the pictures of the module, the
// stream of snapshots and the user's actions.
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

  // Returns the address to open in a browser.
  std::string address() const;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace printhost
