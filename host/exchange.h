// Where the desk's thread and the server's threads meet: actions go one way, pictures of the desk
// the other.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>
#include <string>

#include "host/record_json.h"

namespace printhost {

class Exchange {
 public:
  // ---- the server's side ----
  // Queues what a person did; false when far too much waits already.
  bool Put(Json action);
  // A page opened or closed its stream.
  void Joined();
  void Left();
  // Waits until there is a picture newer than the one seen, or the time is over. True: picture and
  // seen are the newest.
  bool Await(std::uint64_t& seen, std::string& picture, std::chrono::milliseconds time);
  // Whether the sheet is over; its last words are in the picture.
  bool ended() const;

  // ---- the desk's side ----
  // The next action; nothing when nobody is there any more: cancelled, or every page closed for
  // longer than the grace. Before the first page has come it waits without end.
  std::optional<Json> Take();
  void Publish(std::string picture);

  // ---- everybody's ----
  void Cancel();
  // The last picture; waits a moment until the pages have it and are gone.
  void End(std::string picture);

 private:
  using Clock = std::chrono::steady_clock;

  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Json> actions_;
  std::string picture_;
  std::uint64_t version_ = 0;
  int pages_ = 0;
  bool visited_ = false;
  bool cancelled_ = false;
  bool ended_ = false;
  Clock::time_point leftAt_;
};

}  // namespace printhost
