#include "host/browser_user.h"

#include <algorithm>

#include "host/actions.h"
#include "host/snapshot.h"

namespace printhost {
namespace {
constexpr std::size_t kMostPages = 16;
}  // namespace

bool BrowserUser::Act(platform::Desk& desk) {
  asked_ = true;
  Json handled = Json::object();
  for (const auto& [page, number] : handled_) handled[page] = number;
  exchange_.Publish(Json{{"handled", handled}, {"windows", WindowsJson(desk)}}.dump());
  const std::optional<Json> action = exchange_.Take();
  if (!action) return false;
  // Counted before it is done: an action that opens a window ends only when that window closes.
  Count(*action);
  DoAction(desk, *action);
  return true;
}

void BrowserUser::Count(const Json& action) {
  if (!action.contains("number")) return;
  std::pair<std::string, std::int64_t> last{action.value("page", ""), action["number"]};
  const auto page = std::ranges::find(handled_, last.first, &decltype(last)::first);
  if (page != handled_.end()) {
    last.second = std::max(last.second, page->second);
    handled_.erase(page);
  } else if (handled_.size() == kMostPages) {
    handled_.erase(handled_.begin());
  }
  handled_.push_back(std::move(last));
}

}  // namespace printhost
