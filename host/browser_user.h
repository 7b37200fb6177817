// The person at the browser: what the page reports is done at the desk, on the desk's own thread.
#pragma once

#include <cstdint>

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
  Exchange& exchange_;
  std::int64_t handled_ = 0;  // the page's number of the last action done
  bool asked_ = false;
};

}  // namespace printhost
