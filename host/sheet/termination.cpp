#include "host/sheet/termination.h"

#include <ctime>
#include <utility>

namespace printhost {

Termination::Termination(std::function<void()> asked) {
  sigemptyset(&signals_);
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) sigaddset(&signals_, signal);
  // Threads inherit the mask, so that only the watcher takes these signals.
  pthread_sigmask(SIG_BLOCK, &signals_, &before_);
  watcher_ = std::jthread([this, asked = std::move(asked)](const std::stop_token& stop) {
    constexpr timespec kTurn = {0, 100'000'000};
    while (!stop.stop_requested()) {
      if (sigtimedwait(&signals_, nullptr, &kTurn) > 0) asked();
    }
  });
}

Termination::~Termination() {
  watcher_.request_stop();
  watcher_.join();
  pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

}  // namespace printhost
