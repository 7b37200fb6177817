// Being asked to end: SIGTERM, SIGINT and SIGHUP are told to a function on a thread of its own
// instead of ending the process, as long as this object lives. Made before any other thread is.
#pragma once

#include <csignal>
#include <functional>
#include <stop_token>
#include <thread>

namespace printhost {

class Termination {
 public:
  explicit Termination(std::function<void()> asked);
  ~Termination();
  Termination(const Termination&) = delete;
  Termination& operator=(const Termination&) = delete;

 private:
  sigset_t signals_, before_;
  std::jthread watcher_;
};

}  // namespace printhost
