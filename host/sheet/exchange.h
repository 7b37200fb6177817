// The queue between the desk's thread and the server's thread: actions in one direction, snapshots
// of the desk in the other.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <string>

#include "host/record_json.h"

namespace printhost {

class Exchange {
 public:
  // ---- for the server ----
  // Queues an action of the user; returns false when the queue is full.
  bool Put(Json action);
  // A page opened or closed its event stream. Complete: it has received the last event.
  void OnStreamOpened();
  void OnStreamClosed(bool complete);
  // Returns true when there is a snapshot newer than number seen, and sets both to the newest.
  // Last: the sheet has ended and no snapshot follows.
  bool NextSnapshot(std::uint64_t& seen, std::string& snapshot, bool& last) const;
  // Sets the function to call after each new snapshot, on the desk's thread; it must not block.
  // Null: none.
  void SetSnapshotListener(std::function<void()> call);

  // ---- for the desk ----
  // Waits for the next action and returns it. Returns nothing after Cancel, or when all pages have
  // been closed for kReconnectTimeout; waits without a limit before the first page opens.
  std::optional<Json> Take();
  void Publish(std::string snapshot);

  // ---- for any thread ----
  void Cancel();
  // Publishes the last snapshot and waits at most kFinalSnapshotTimeout until a page has received
  // it and all streams are closed.
  void End(std::string snapshot);

 private:
  using Clock = std::chrono::steady_clock;

  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::function<void()> onSnapshot_;
  std::deque<Json> actions_;
  std::string snapshot_;
  std::uint64_t version_ = 0;
  int streams_ = 0;
  bool hadStream_ = false;
  bool cancelled_ = false;
  bool ended_ = false;
  bool finalSnapshotSent_ = false;  // to one page at least
  Clock::time_point lastClosedAt_;

  void SetSnapshot(std::string snapshot);
};

}  // namespace printhost
