#include "host/browser_user.h"

#include <algorithm>
#include <exception>
#include <string>

#include "host/snapshot.h"
#include "host/utf8.h"

namespace printhost {
namespace {

using platform::Desk;
using platform::SheetButton;

int Number(const Json& action, const char* name) { return action.value(name, 0); }
std::u16string Text(const Json& action) { return FromUtf8(action.value("text", std::string())); }

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
    {"focus", [](Desk& desk, const Json& action) { desk.Focus(Number(action, "id")); }},
    {"click", [](Desk& desk, const Json& action) { desk.Click(Number(action, "id")); }},
    {"edit",
     [](Desk& desk, const Json& action) { desk.EditTo(Number(action, "id"), Text(action)); }},
    {"select",
     [](Desk& desk, const Json& action) {
       desk.Select(Number(action, "id"), Number(action, "index"));
     }},
    {"spin", [](Desk& desk,
                const Json& action) { desk.Spin(Number(action, "id"), Number(action, "steps")); }},
    {"slide",
     [](Desk& desk, const Json& action) {
       desk.Slide(Number(action, "id"), Number(action, "position"));
     }},
    {"enter", [](Desk& desk, const Json&) { desk.Enter(); }},
    {"escape", [](Desk& desk, const Json&) { desk.Escape(); }},
    {"close", [](Desk& desk, const Json&) { desk.Close(); }},
    {"page", [](Desk& desk, const Json& action) { desk.Page(Number(action, "index")); }},
    {"press",
     [](Desk& desk, const Json& action) { Press(desk, action.value("button", std::string())); }},
    {"access",
     [](Desk& desk, const Json& action) {
       const std::u16string letter = Text(action);
       if (letter.size() == 1) desk.AccessKey(letter[0]);
     }},
};

// An action meant for a window that is no longer on top is dropped: a second click on OK must not
// press the button of what lies below. What makes no sense is dropped as well.
void Do(Desk& desk, const Json& action) {
  const auto windows = desk.Windows();
  if (windows.empty() || action.value("window", std::string()) != HandleText(windows.back().handle))
    return;
  const auto verb = std::ranges::find(kVerbs, action.value("action", std::string()), &Verb::name);
  if (verb != std::end(kVerbs)) verb->act(desk, action);
}

}  // namespace

bool BrowserUser::Act(platform::Desk& desk) {
  asked_ = true;
  exchange_.Publish(Json{{"handled", handled_}, {"windows", WindowsJson(desk)}}.dump());
  const std::optional<Json> action = exchange_.Take();
  if (!action) return false;
  // Counted before it is done: an action that opens a window ends only when that window closes.
  handled_ = std::max(handled_, action->value("number", std::uint64_t{0}));
  Do(desk, *action);
  return true;
}

}  // namespace printhost
