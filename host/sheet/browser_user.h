// The person at the browser: what the page reports is done at the desk, on the desk's own thread.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "host/sheet/exchange.h"
#include "platform/machine/desk.h"
#include "platform/machine/machine.h"

namespace printhost {

class BrowserUser : public platform::User {
 public:
  // What is told about the sheet goes with every picture. mayConfirm is asked before the person
  // confirms a sheet; it tells what stands against it.
  BrowserUser(Exchange& exchange, platform::Machine& machine, Json about,
              std::function<bool()> mayConfirm)
      : exchange_(exchange),
        machine_(machine),
        about_(std::move(about)),
        mayConfirm_(std::move(mayConfirm)) {}

  // Shows the desk, waits for the next action and does it. False when nobody is there any more.
  bool Act(platform::Desk& desk) override;
  // Shows the desk as it is, busy.
  void Wait(platform::Desk& desk) override;

  // Whether any window has ever been shown.
  bool asked() const { return asked_; }

 private:
  void Publish(platform::Desk& desk, bool busy);
  void Count(const Json& action);

  Exchange& exchange_;
  platform::Machine& machine_;
  Json about_;
  std::function<bool()> mayConfirm_;
  // Each page's number of its last action done; the pages that acted last.
  std::vector<std::pair<std::string, std::int64_t>> handled_;
  bool asked_ = false;
};

}  // namespace printhost
