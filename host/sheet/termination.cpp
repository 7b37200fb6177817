#include "host/sheet/termination.h"

#include <ctime>
#include <utility>

namespace printhost {

Termination::Termination(std::function<void()> onSignal) {
  sigemptyset(&signals_);
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) sigaddset(&signals_, signal);
  // Threads inherit the mask, so that only the watcher receives these signals.
  pthread_sigmask(SIG_BLOCK, &signals_, &before_);
  watcher_ = std::jthread([this, onSignal = std::move(onSignal)](const std::stop_token& stop) {
    constexpr timespec kPollInterval = {0, 100'000'000};
    while (!stop.stop_requested()) {
      if (sigtimedwait(&signals_, nullptr, &kPollInterval) > 0) onSignal();
    }
  });
}

Termination::~Termination() {
  watcher_.request_stop();
  watcher_.join();
  pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

}  // namespace printhost
