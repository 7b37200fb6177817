#include "host/sheet/actions.h"

#include <algorithm>
#include <limits>

#include "host/sheet/snapshot.h"
#include "host/utf8.h"

namespace printhost {
namespace {

using platform::Desk;
using platform::SheetButton;

constexpr std::int64_t kMaxSteps = 1000;
constexpr std::size_t kMaxPageName = 64;

int Number(const Json& action, const char* name) { return action.at(name).get<int>(); }
std::u16string Text(const Json& action, const char* name) {
  return FromUtf8(action.at(name).get_ref<const std::string&>());
}

struct Verb {
  const char* name;
  const char* numbers[2];  // its integer members; null: none
  const char* text;        // its string member; null: none
  void (*act)(Desk& desk, const Json& action);
};

constexpr Verb kVerbs[] = {
    {"focus",
     {"id"},
     nullptr,
     [](Desk& desk, const Json& action) { desk.Focus(Number(action, "id")); }},
    {"click",
     {"id"},
     nullptr,
     [](Desk& desk, const Json& action) { desk.Click(Number(action, "id")); }},
    {"edit",
     {"id"},
     "text",
     [](Desk& desk, const Json& action) {
       desk.Paste(Number(action, "id"), Text(action, "text"));
     }},
    {"select",
     {"id", "index"},
     nullptr,
     [](Desk& desk, const Json& action) {
       desk.Select(Number(action, "id"), Number(action, "index"));
     }},
    {"spin",
     {"id", "steps"},
     nullptr,
     [](Desk& desk, const Json& action) {
       desk.Spin(Number(action, "id"), Number(action, "steps"));
     }},
    {"page",
     {"index"},
     nullptr,
     [](Desk& desk, const Json& action) { desk.Page(Number(action, "index")); }},
    {"press",
     {},
     "button",
     [](Desk& desk, const Json& action) {
       desk.Press(*ParseSheetButton(action["button"].get_ref<const std::string&>()));
     }},
    {"access",
     {},
     "text",
     [](Desk& desk, const Json& action) {
       const std::u16string letter = Text(action, "text");
       if (letter.size() == 1) desk.AccessKey(letter[0]);
     }},
    {"drop", {}, nullptr, [](Desk& desk, const Json&) { desk.Key(VK_F4); }},
    {"move",
     {"steps"},
     nullptr,
     [](Desk& desk, const Json& action) {
       desk.Key(Number(action, "steps") > 0 ? VK_DOWN : VK_UP);
     }},
    {"enter", {}, nullptr, [](Desk& desk, const Json&) { desk.Enter(); }},
    {"escape", {}, nullptr, [](Desk& desk, const Json&) { desk.Escape(); }},
    {"close", {}, nullptr, [](Desk& desk, const Json&) { desk.Close(); }},
};

// Returns true when a drop-down list is open, which Enter closes.
bool HasOpenList(const platform::WindowView& window) {
  const auto& controls = window.page ? window.page->controls : window.controls;
  return std::ranges::any_of(controls, &platform::ControlView::open);
}

// Returns true when a member is an integer from least to most.
bool HasInteger(const Json& action, const char* name, std::int64_t least, std::int64_t most) {
  const auto found = action.find(name);
  if (found == action.end() || !found->is_number_integer()) return false;
  // A number above the range of int64_t is stored as unsigned.
  if (found->is_number_unsigned() && found->get<std::uint64_t>() > static_cast<std::uint64_t>(most))
    return false;
  return found->get<std::int64_t>() >= least && found->get<std::int64_t>() <= most;
}

}  // namespace

bool HasString(const Json& action, const char* name) {
  const auto found = action.find(name);
  return found != action.end() && found->is_string();
}

std::string FindNumberError(const Json& action, const char* name) {
  using Limits = std::numeric_limits<int>;
  const bool isSteps = std::string_view(name) == "steps";
  const std::int64_t least = isSteps ? -kMaxSteps : Limits::min();
  const std::int64_t most = isSteps ? kMaxSteps : Limits::max();
  if (HasInteger(action, name, least, most)) return {};
  return "\"" + std::string(name) + "\" has to be an integer between " + std::to_string(least) +
         " and " + std::to_string(most);
}

std::optional<SheetButton> ParseSheetButton(std::string_view name) {
  if (name == "ok") return SheetButton::kOk;
  if (name == "cancel") return SheetButton::kCancel;
  return std::nullopt;
}

std::string FindActionError(const Json& action) {
  if (!action.is_object()) return "An action is a JSON object.";
  for (const char* name : {"action", "window"}) {
    if (!HasString(action, name)) return "\"" + std::string(name) + "\" has to be a text.";
  }
  if (action.contains("page") &&
      (!HasString(action, "page") ||
       action["page"].get_ref<const std::string&>().size() > kMaxPageName))
    return "\"page\" has to be a text of at most " + std::to_string(kMaxPageName) + " bytes.";
  if (action.contains("number") && !HasInteger(action, "number", 1, std::int64_t{1} << 53))
    return "\"number\" has to be a positive integer.";
  const auto verb = std::ranges::find(kVerbs, action["action"].get<std::string>(), &Verb::name);
  if (verb == std::end(kVerbs)) {
    std::string names;
    for (const Verb& each : kVerbs) names.append(names.empty() ? "" : ", ").append(each.name);
    return "There is no such action; there are " + names + ".";
  }
  for (const char* name : verb->numbers) {
    if (name == nullptr) continue;
    if (std::string error = FindNumberError(action, name); !error.empty()) return error + ".";
  }
  if (verb->text != nullptr && !HasString(action, verb->text))
    return "\"" + std::string(verb->text) + "\" has to be a text.";
  if (action.contains("button") && std::string_view(verb->name) == "press" &&
      !ParseSheetButton(action["button"].get_ref<const std::string&>()))
    return "\"button\" has to be ok or cancel.";
  return {};
}

void PerformAction(Desk& desk, const Json& action, const std::function<bool()>& canConfirm) {
  const auto windows = desk.Windows();
  if (windows.empty() || action.at("window") != HandleText(windows.back().handle)) return;
  const Json& verb = action.at("action");
  const bool mayConfirm = (verb == "enter" && !HasOpenList(windows.back())) ||
                          (verb == "press" && action["button"] == "ok");
  if (mayConfirm && windows.back().kind == platform::WindowView::Kind::kSheet && !canConfirm())
    return;
  std::ranges::find(kVerbs, verb.get<std::string>(), &Verb::name)->act(desk, action);
}

}  // namespace printhost
