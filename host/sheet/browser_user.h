// The user at the browser: performs the actions that pages report, on the desk's thread.
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
  // About: members of every snapshot that describe the sheet. canConfirm is called before the user
  // confirms a sheet; when it returns false it has reported the reason.
  BrowserUser(Exchange& exchange, platform::Machine& machine, Json about,
              std::function<bool()> canConfirm)
      : exchange_(exchange),
        machine_(machine),
        about_(std::move(about)),
        canConfirm_(std::move(canConfirm)) {}

  // Publishes the desk, waits for the next action and performs it. Returns false when the sheet
  // is cancelled.
  bool Act(platform::Desk& desk) override;
  // Publishes the desk, marked busy.
  void Wait(platform::Desk& desk) override;

  // Returns true once a window has been published.
  bool wasShown() const { return wasShown_; }

 private:
  void Publish(platform::Desk& desk, bool busy);
  void Count(const Json& action);

  Exchange& exchange_;
  platform::Machine& machine_;
  Json about_;
  std::function<bool()> canConfirm_;
  // Pages and the number of the last action of each, the most recent page last; at most kMaxPages.
  std::vector<std::pair<std::string, std::int64_t>> handled_;
  bool wasShown_ = false;
};

}  // namespace printhost
