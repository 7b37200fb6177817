// While this object exists, SIGTERM, SIGINT and SIGHUP call a function on a thread of its own
// instead of ending the process. Construct it before any other thread.
#pragma once

#include <csignal>
#include <functional>
#include <stop_token>
#include <thread>

namespace printhost {

class Termination {
 public:
  explicit Termination(std::function<void()> onSignal);
  ~Termination();
  Termination(const Termination&) = delete;
  Termination& operator=(const Termination&) = delete;

 private:
  sigset_t signals_, before_;
  std::jthread watcher_;
};

}  // namespace printhost
