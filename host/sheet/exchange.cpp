#include "host/sheet/exchange.h"

#include <algorithm>
#include <utility>

namespace printhost {
namespace {

constexpr std::size_t kMostWaiting = 1000;
constexpr std::chrono::milliseconds kGrace{3000};  // several tries of a page that lost its stream
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

void Exchange::Left(bool told) {
  const std::lock_guard lock(mutex_);
  --pages_;
  told_ = told_ || (told && ended_);
  leftAt_ = Clock::now();
  changed_.notify_all();
}

bool Exchange::Newer(std::uint64_t& seen, std::string& picture, bool& last) const {
  const std::lock_guard lock(mutex_);
  last = ended_;
  if (version_ == seen) return false;
  seen = version_;
  picture = picture_;
  return true;
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

void Exchange::OnPicture(std::function<void()> call) {
  const std::lock_guard lock(mutex_);
  onPicture_ = std::move(call);
}

void Exchange::Show(std::string picture) {
  picture_ = std::move(picture);
  ++version_;
  if (onPicture_) onPicture_();
}

void Exchange::Publish(std::string picture) {
  const std::lock_guard lock(mutex_);
  Show(std::move(picture));
}

void Exchange::Cancel() {
  const std::lock_guard lock(mutex_);
  cancelled_ = true;
  changed_.notify_all();
}

void Exchange::End(std::string picture) {
  std::unique_lock lock(mutex_);
  ended_ = true;
  Show(std::move(picture));
  if (!visited_) return;
  const auto end =
      std::min(Clock::now() + kFarewell, pages_ > 0 ? Clock::time_point::max() : leftAt_ + kGrace);
  changed_.wait_until(lock, end, [&] { return pages_ == 0 && told_; });
}

}  // namespace printhost
