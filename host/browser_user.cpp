#include "host/browser_user.h"

#include <algorithm>
#include <string>

#include "host/snapshot.h"
#include "host/utf8.h"

namespace printhost {
namespace {

using platform::Desk;
using platform::SheetButton;

// A member of an action; one that is missing or of another type counts as 0 or empty.
std::int64_t Number(const Json& action, const char* name) {
  const auto found = action.find(name);
  return found != action.end() && found->is_number_integer() ? found->get<std::int64_t>() : 0;
}
int Small(const Json& action, const char* name) { return static_cast<int>(Number(action, name)); }
std::string Text(const Json& action, const char* name) {
  const auto found = action.find(name);
  return found != action.end() && found->is_string() ? found->get<std::string>() : std::string();
}

void Press(Desk& desk, const std::string& button) {
  if (button == "ok") desk.Press(SheetButton::kOk);
  if (button == "cancel") desk.Press(SheetButton::kCancel);
  if (button == "apply") desk.Press(SheetButton::kApply);
  if (button == "help") desk.Press(SheetButton::kHelp);
}

struct Verb {
  const char* name;
  void (*act)(Desk& desk, const Json& action);
};

constexpr Verb kVerbs[] = {
    {"focus", [](Desk& desk, const Json& action) { desk.Focus(Small(action, "id")); }},
    {"click", [](Desk& desk, const Json& action) { desk.Click(Small(action, "id")); }},
    {"edit",
     [](Desk& desk, const Json& action) {
       desk.EditTo(Small(action, "id"), FromUtf8(Text(action, "text")));
     }},
    {"select",
     [](Desk& desk, const Json& action) {
       desk.Select(Small(action, "id"), Small(action, "index"));
     }},
    {"spin", [](Desk& desk,
                const Json& action) { desk.Spin(Small(action, "id"), Small(action, "steps")); }},
    {"slide",
     [](Desk& desk, const Json& action) {
       desk.Slide(Small(action, "id"), Small(action, "position"));
     }},
    {"enter", [](Desk& desk, const Json&) { desk.Enter(); }},
    {"escape", [](Desk& desk, const Json&) { desk.Escape(); }},
    {"close", [](Desk& desk, const Json&) { desk.Close(); }},
    {"page", [](Desk& desk, const Json& action) { desk.Page(Small(action, "index")); }},
    {"press", [](Desk& desk, const Json& action) { Press(desk, Text(action, "button")); }},
    {"access",
     [](Desk& desk, const Json& action) {
       const std::u16string letter = FromUtf8(Text(action, "text"));
       if (letter.size() == 1) desk.AccessKey(letter[0]);
     }},
};

// An action meant for a window that is no longer on top is dropped: a second click on OK must not
// press the button of what lies below. What makes no sense is dropped as well.
void Do(Desk& desk, const Json& action) {
  const auto windows = desk.Windows();
  if (windows.empty() || Text(action, "window") != HandleText(windows.back().handle)) return;
  const auto verb = std::ranges::find(kVerbs, Text(action, "action"), &Verb::name);
  if (verb != std::end(kVerbs)) verb->act(desk, action);
}

}  // namespace

bool BrowserUser::Act(platform::Desk& desk) {
  asked_ = true;
  exchange_.Publish(Json{{"handled", handled_}, {"windows", WindowsJson(desk)}}.dump());
  const std::optional<Json> action = exchange_.Take();
  if (!action) return false;
  // Counted before it is done: an action that opens a window ends only when that window closes.
  handled_ = std::max(handled_, Number(*action, "number"));
  Do(desk, *action);
  return true;
}

}  // namespace printhost
