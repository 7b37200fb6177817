// Handles are numbers that are never reused, so that a stale handle finds nothing.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>

namespace platform {

template <typename Handle, typename Object>
class HandleTable {
 public:
  Handle Add(Object object) {
    const std::lock_guard lock(mutex_);
    next_ += 4;
    objects_[next_] = std::make_shared<Object>(std::move(object));
    return reinterpret_cast<Handle>(next_);
  }
  std::shared_ptr<Object> Find(Handle handle) const {
    const std::lock_guard lock(mutex_);
    const auto found = objects_.find(reinterpret_cast<uintptr_t>(handle));
    return found == objects_.end() ? nullptr : found->second;
  }
  bool Remove(Handle handle) {
    const std::lock_guard lock(mutex_);
    return objects_.erase(reinterpret_cast<uintptr_t>(handle)) > 0;
  }
  int Size() const {
    const std::lock_guard lock(mutex_);
    return static_cast<int>(objects_.size());
  }

 private:
  mutable std::mutex mutex_;
  uintptr_t next_ = 0x10000;
  std::map<uintptr_t, std::shared_ptr<Object>> objects_;
};

}  // namespace platform
