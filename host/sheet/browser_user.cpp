#include "host/sheet/browser_user.h"

#include <algorithm>

#include "host/sheet/actions.h"
#include "host/sheet/snapshot.h"
#include "host/utf8.h"

namespace printhost {
namespace {
constexpr std::size_t kMaxPages = 16;
}  // namespace

// The number of files opened so far is part of the snapshot, so that a page opens each file once.
void BrowserUser::Publish(platform::Desk& desk, bool busy) {
  Json handled = Json::object();
  for (const auto& [page, number] : handled_) handled[page] = number;
  const auto calls = machine_.ShellCalls();
  const platform::ShellCall last = calls.empty() ? platform::ShellCall() : calls.back();
  exchange_.Publish(Json{{"handled", handled},
                         {"about", about_},
                         {"busy", busy},
                         {"opened", {{"count", last.number}, {"file", ToUtf8(last.file)}}},
                         {"windows", WindowsJson(desk)}}
                        .dump());
}

void BrowserUser::Wait(platform::Desk& desk) { Publish(desk, true); }

bool BrowserUser::Act(platform::Desk& desk) {
  wasShown_ = true;
  Publish(desk, false);
  const std::optional<Json> action = exchange_.Take();
  if (!action) return false;
  // Count the action before it is performed: one that opens a window returns when that window
  // closes.
  Count(*action);
  PerformAction(desk, *action, canConfirm_);
  return true;
}

void BrowserUser::Count(const Json& action) {
  if (!action.contains("number")) return;
  std::pair<std::string, std::int64_t> last{action.value("page", ""), action["number"]};
  const auto page = std::ranges::find(handled_, last.first, &decltype(last)::first);
  if (page != handled_.end()) {
    last.second = std::max(last.second, page->second);
    handled_.erase(page);
  } else if (handled_.size() == kMaxPages) {
    handled_.erase(handled_.begin());
  }
  handled_.push_back(std::move(last));
}

}  // namespace printhost
