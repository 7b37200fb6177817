// Where the desk's thread and the server's threads meet: actions go one way, pictures of the desk
// the other.
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
  // ---- the server's side ----
  // Queues what a person did; false when far too much waits already.
  bool Put(Json action);
  // A page opened or closed its stream; told: with the sheet's last picture.
  void Joined();
  void Left(bool told);
  // Whether there is a picture newer than the one seen; then both become the newest. Last: the
  // sheet is over, its last words are in the picture.
  bool Newer(std::uint64_t& seen, std::string& picture, bool& last) const;
  // Called with every new picture, on the desk's thread; it must be quick. Null: nobody.
  void OnPicture(std::function<void()> call);

  // ---- the desk's side ----
  // The next action; nothing when nobody is there any more: cancelled, or every page closed for
  // longer than the grace. Before the first page has come it waits without end.
  std::optional<Json> Take();
  void Publish(std::string picture);

  // ---- everybody's ----
  void Cancel();
  // The last picture; waits a moment until the pages have it and are gone, or come back for it.
  void End(std::string picture);

 private:
  using Clock = std::chrono::steady_clock;

  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::function<void()> onPicture_;
  std::deque<Json> actions_;
  std::string picture_;
  std::uint64_t version_ = 0;
  int pages_ = 0;
  bool visited_ = false;
  bool cancelled_ = false;
  bool ended_ = false;
  bool told_ = false;  // some page has the last picture
  Clock::time_point leftAt_;

  void Show(std::string picture);
};

}  // namespace printhost
