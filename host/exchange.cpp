#include "host/exchange.h"

#include <utility>

namespace printhost {
namespace {

constexpr std::size_t kMostWaiting = 1000;
constexpr std::chrono::milliseconds kGrace{2000};
constexpr std::chrono::milliseconds kFarewell{1500};

}  // namespace

bool Exchange::Put(Json action) {
  const std::lock_guard lock(mutex_);
  if (actions_.size() >= kMostWaiting) return false;
  actions_.push_back(std::move(action));
  changed_.notify_all();
  return true;
}

void Exchange::Joined() {
  const std::lock_guard lock(mutex_);
  ++pages_;
  visited_ = true;
  changed_.notify_all();
}

void Exchange::Left() {
  const std::lock_guard lock(mutex_);
  --pages_;
  leftAt_ = Clock::now();
  changed_.notify_all();
}

bool Exchange::Await(std::uint64_t& seen, std::string& picture, std::chrono::milliseconds time) {
  std::unique_lock lock(mutex_);
  if (!changed_.wait_for(lock, time, [&] { return version_ != seen; })) return false;
  seen = version_;
  picture = picture_;
  return true;
}

bool Exchange::ended() const {
  const std::lock_guard lock(mutex_);
  return ended_;
}

std::optional<Json> Exchange::Take() {
  std::unique_lock lock(mutex_);
  while (!cancelled_ && actions_.empty()) {
    if (!visited_ || pages_ > 0) {
      changed_.wait(lock);
    } else if (const auto end = leftAt_ + kGrace; Clock::now() < end) {
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

void Exchange::Publish(std::string picture) {
  const std::lock_guard lock(mutex_);
  picture_ = std::move(picture);
  ++version_;
  changed_.notify_all();
}

void Exchange::Cancel() {
  const std::lock_guard lock(mutex_);
  cancelled_ = true;
  changed_.notify_all();
}

void Exchange::End(std::string picture) {
  std::unique_lock lock(mutex_);
  picture_ = std::move(picture);
  ++version_;
  ended_ = true;
  changed_.notify_all();
  changed_.wait_for(lock, kFarewell, [&] { return pages_ == 0; });
}

}  // namespace printhost
