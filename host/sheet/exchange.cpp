#include "host/sheet/exchange.h"

#include <algorithm>
#include <utility>

namespace printhost {
namespace {

constexpr std::size_t kMaxQueuedActions = 1000;
constexpr std::chrono::milliseconds kReconnectTimeout{
    3000};  // a page that lost its stream retries each 500 ms
constexpr std::chrono::milliseconds kFinalSnapshotTimeout{1500};

}  // namespace

bool Exchange::Put(Json action) {
  const std::lock_guard lock(mutex_);
  if (actions_.size() >= kMaxQueuedActions) return false;
  actions_.push_back(std::move(action));
  changed_.notify_all();
  return true;
}

void Exchange::OnStreamOpened() {
  const std::lock_guard lock(mutex_);
  ++streams_;
  hadStream_ = true;
  changed_.notify_all();
}

void Exchange::OnStreamClosed(bool complete) {
  const std::lock_guard lock(mutex_);
  --streams_;
  finalSnapshotSent_ = finalSnapshotSent_ || (complete && ended_);
  lastClosedAt_ = Clock::now();
  changed_.notify_all();
}

bool Exchange::NextSnapshot(std::uint64_t& seen, std::string& snapshot, bool& last) const {
  const std::lock_guard lock(mutex_);
  last = ended_;
  if (version_ == seen) return false;
  seen = version_;
  snapshot = snapshot_;
  return true;
}

std::optional<Json> Exchange::Take() {
  std::unique_lock lock(mutex_);
  while (!cancelled_ && actions_.empty()) {
    if (!hadStream_ || streams_ > 0) {
      changed_.wait(lock);
    } else if (const auto end = lastClosedAt_ + kReconnectTimeout; Clock::now() < end) {
      changed_.wait_until(lock, end);
    } else {
      cancelled_ = true;
    }
  }
  if (cancelled_) return std::nullopt;
  Json action = std::move(actions_.front());
  actions_.pop_front();
  return action;
}

void Exchange::SetSnapshotListener(std::function<void()> call) {
  const std::lock_guard lock(mutex_);
  onSnapshot_ = std::move(call);
}

void Exchange::SetSnapshot(std::string snapshot) {
  snapshot_ = std::move(snapshot);
  ++version_;
  if (onSnapshot_) onSnapshot_();
}

void Exchange::Publish(std::string snapshot) {
  const std::lock_guard lock(mutex_);
  SetSnapshot(std::move(snapshot));
}

void Exchange::Cancel() {
  const std::lock_guard lock(mutex_);
  cancelled_ = true;
  changed_.notify_all();
}

void Exchange::End(std::string snapshot) {
  std::unique_lock lock(mutex_);
  ended_ = true;
  SetSnapshot(std::move(snapshot));
  if (!hadStream_) return;
  const auto end =
      std::min(Clock::now() + kFinalSnapshotTimeout,
               streams_ > 0 ? Clock::time_point::max() : lastClosedAt_ + kReconnectTimeout);
  changed_.wait_until(lock, end, [&] { return streams_ == 0 && finalSnapshotSent_; });
}

}  // namespace printhost
