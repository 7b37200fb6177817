// The person at the browser: what the page reports is done at the desk, on the desk's own thread.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "host/exchange.h"
#include "platform/desk.h"

namespace printhost {

class BrowserUser : public platform::User {
 public:
  explicit BrowserUser(Exchange& exchange) : exchange_(exchange) {}

  // Shows the desk, waits for the next action and does it. False when nobody is there any more.
  bool Act(platform::Desk& desk) override;

  // Whether any window has ever been shown.
  bool asked() const { return asked_; }

 private:
  void Count(const Json& action);

  Exchange& exchange_;
  // Each page's number of its last action done; the pages that acted last.
  std::vector<std::pair<std::string, std::int64_t>> handled_;
  bool asked_ = false;
};

}  // namespace printhost
