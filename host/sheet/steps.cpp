#include "host/sheet/steps.h"

#include <algorithm>
#include <fstream>
#include <initializer_list>

#include "host/failure.h"
#include "host/sheet/actions.h"
#include "host/sheet/svg.h"
#include "host/utf8.h"

namespace printhost {
namespace {

using platform::ControlKind;
using platform::ControlView;
using platform::Desk;
using platform::WindowView;

[[noreturn]] void Refuse(const std::string& reason) { throw Failure{kFailed, reason}; }

std::string Quoted(const std::u16string& text) { return '"' + ToUtf8(text) + '"'; }

WindowView Top(Desk& desk) {
  auto windows = desk.Windows();
  if (windows.empty()) Refuse("no window is open");
  return std::move(windows.back());
}

// The controls that ids mean: of the window, or of the sheet's page.
const std::vector<ControlView>& ControlsOf(const WindowView& window) {
  return window.page ? window.page->controls : window.controls;
}

std::u16string TitleOf(const WindowView& window) {
  return window.page ? window.page->title : window.title;
}

// Members of a step.
int Number(const Json& step, const char* name) {
  const std::string problem = NumberProblem(step, name);
  if (!problem.empty()) Refuse(problem);
  return step[name].get<int>();
}

std::string Word(const Json& step, const char* name) {
  if (!IsText(step, name)) Refuse('"' + std::string(name) + "\" has to be a text");
  return step[name].get<std::string>();
}

std::u16string Text(const Json& step, const char* name) { return FromUtf8(Word(step, name)); }

void Allow(const Json& step, std::initializer_list<std::string_view> names) {
  for (const auto& [name, value] : step.items()) {
    if (std::ranges::find(names, name) == names.end()) Refuse("the step has no \"" + name + '"');
  }
}

// The control of an id in the window on top; says why there is none to be used.
ControlView Find(Desk& desk, int id, bool toUse) {
  const auto windows = desk.Windows();
  if (windows.empty()) Refuse("no window is open");
  const WindowView& top = windows.back();
  const auto has = [id](const ControlView& control) { return control.id == id; };
  const auto& controls = ControlsOf(top);
  const auto found = std::ranges::find_if(controls, has);
  const std::string name = std::to_string(id);
  if (found == controls.end()) {
    for (const WindowView& below : windows) {
      if (&below != &top && std::ranges::any_of(ControlsOf(below), has))
        Refuse(name + " is under the window " + Quoted(top.title));
    }
    Refuse("the window " + Quoted(TitleOf(top)) + " has no control " + name);
  }
  if (toUse && !found->visible) Refuse(name + " is hidden");
  if (toUse && !found->enabled) Refuse(name + " is disabled");
  return *found;
}

void Require(bool done, int id, const char* what) {
  if (!done) Refuse(std::to_string(id) + " cannot be " + what);
}

bool IsToggle(const ControlView& control) {
  return control.kind == ControlKind::kCheckBox || control.kind == ControlKind::kRadio;
}
bool IsList(const ControlView& control) {
  return control.kind == ControlKind::kComboBox || control.kind == ControlKind::kListBox;
}

Json ReadControl(const ControlView& control) {
  Json read = {
      {"text", ToUtf8(control.text)}, {"visible", control.visible}, {"enabled", control.enabled}};
  if (IsToggle(control)) read["checked"] = control.checked;
  if (!IsList(control)) return read;
  Json& items = read["items"] = Json::array();
  for (const auto& item : control.items) items.push_back(ToUtf8(item));
  const auto selection = static_cast<std::size_t>(control.selection);
  read["item"] = selection < control.items.size() ? items[selection] : Json();
  return read;
}

Json ReadWindow(Desk& desk) {
  const WindowView window = Top(desk);
  Json read = {
      {"title", ToUtf8(TitleOf(window))},
      {"message",
       window.kind == WindowView::Kind::kMessageBox ? Json(ToUtf8(desk.MessageText())) : Json()}};
  Json& controls = read["controls"] = Json::array();
  for (const ControlView& control : ControlsOf(window)) {
    if (!control.visible) continue;
    Json row = {{"id", control.id}};
    row.update(ReadControl(control));
    controls.push_back(std::move(row));
  }
  return read;
}

// ---- the steps ----
void Page(Desk& desk, const Json& step) {
  Allow(step, {"page"});
  const WindowView top = Top(desk);
  const int page = Number(step, "page");
  if (top.kind != WindowView::Kind::kSheet)
    Refuse("the sheet is under the window " + Quoted(top.title));
  if (page < 0 || static_cast<std::size_t>(page) >= top.tabs.size())
    Refuse("the sheet has the pages 0 to " + std::to_string(top.tabs.size() - 1));
  if (!desk.Page(page)) Refuse("the page " + std::to_string(page) + " cannot be shown");
}

void Click(Desk& desk, const Json& step) {
  Allow(step, {"click"});
  const int id = Number(step, "click");
  Find(desk, id, true);
  Require(desk.Click(id), id, "clicked");
}

void Type(Desk& desk, const Json& step) {
  Allow(step, {"type", "text"});
  const int id = Number(step, "type");
  const std::u16string text = Text(step, "text");
  const ControlView control = Find(desk, id, true);
  if (control.kind != ControlKind::kEdit || control.readOnly)
    Refuse(std::to_string(id) + " takes no text");
  Require(desk.Replace(id, text), id, "typed into");
}

void Select(Desk& desk, const Json& step) {
  Allow(step, {"select", "item", "index"});
  const int id = Number(step, "select");
  if (step.contains("item") == step.contains("index"))
    Refuse("a selection has either \"item\" or \"index\"");
  const ControlView control = Find(desk, id, true);
  if (!IsList(control)) Refuse(std::to_string(id) + " has no items");
  auto index = static_cast<std::ptrdiff_t>(control.items.size());
  if (step.contains("index"))
    index = Number(step, "index");
  else
    index = std::ranges::find(control.items, Text(step, "item")) - control.items.begin();
  if (index < 0 || index >= static_cast<std::ptrdiff_t>(control.items.size()))
    Refuse(std::to_string(id) + " has no such item");
  Require(desk.Select(id, static_cast<int>(index)), id, "selected from");
}

void Spin(Desk& desk, const Json& step) {
  Allow(step, {"spin", "steps"});
  const int id = Number(step, "spin"), steps = Number(step, "steps");
  if (Find(desk, id, true).kind != ControlKind::kUpDown)
    Refuse(std::to_string(id) + " has no arrows");
  Require(desk.Spin(id, steps), id, "stepped");
}

void Key(Desk& desk, const Json& step) {
  Allow(step, {"key"});
  struct Named {
    std::string_view name;
    bool (*press)(Desk&);
  };
  static constexpr Named kKeys[] = {{"enter", [](Desk& on) { return on.Enter(); }},
                                    {"escape", [](Desk& on) { return on.Escape(); }},
                                    {"tab", [](Desk& on) { return on.Tab(); }},
                                    {"backtab", [](Desk& on) { return on.Tab(true); }},
                                    {"up", [](Desk& on) { return on.Key(VK_UP); }},
                                    {"down", [](Desk& on) { return on.Key(VK_DOWN); }},
                                    {"f4", [](Desk& on) { return on.Key(VK_F4); }},
                                    {"delete", [](Desk& on) { return on.Key(VK_DELETE); }},
                                    {"back", [](Desk& on) { return on.Key(VK_BACK); }}};
  const std::string name = Word(step, "key");
  const auto key = std::ranges::find(kKeys, std::string_view(name), &Named::name);
  if (key == std::end(kKeys)) Refuse("there is no key \"" + name + '"');
  if (!key->press(desk)) Refuse("the key \"" + name + "\" does nothing here");
}

void Button(Desk& desk, const Json& step) {
  Allow(step, {"button"});
  const std::string name = Word(step, "button");
  const auto button = SheetButtonNamed(name);
  if (!button) Refuse("the sheet's buttons are ok and cancel");
  const WindowView top = Top(desk);
  if (top.kind != WindowView::Kind::kSheet)
    Refuse("the sheet is under the window " + Quoted(top.title) +
           "; click its buttons by their ids");
  if (!desk.Press(*button)) Refuse("the button \"" + name + "\" is not there or disabled");
}

void Close(Desk& desk, const Json& step) {
  Allow(step, {"close"});
  if (!step["close"].is_boolean() || !step["close"].get<bool>()) Refuse("\"close\" has to be true");
  Top(desk);
  if (!desk.Close()) Refuse("the window cannot be closed");
}

void Expect(Desk& desk, const Json& step) {
  Json seen;
  std::string where = "the window";
  if (step["expect"] == "window") {
    Allow(step, {"expect", "title", "message"});
    seen = ReadWindow(desk);
  } else {
    Allow(step, {"expect", "text", "visible", "enabled", "checked", "items", "item"});
    const int id = Number(step, "expect");
    seen = ReadControl(Find(desk, id, false));
    where = std::to_string(id);
  }
  if (step.size() < 2) Refuse("the step does not say what is expected");
  for (const auto& [name, wanted] : step.items()) {
    if (name == "expect") continue;
    if (!seen.contains(name)) Refuse(where + " has no \"" + name + '"');
    if (seen[name] != wanted)
      Refuse(where + ": \"" + name + "\" is " + seen[name].dump() + ", not " + wanted.dump());
  }
}

Json Read(Desk& desk, const Json& step) {
  Allow(step, {"read"});
  if (step["read"] == "window") return ReadWindow(desk);
  return ReadControl(Find(desk, Number(step, "read"), false));
}

void Shot(Desk& desk, HMODULE module, const Json& step) {
  Allow(step, {"shot"});
  const std::string path = Word(step, "shot");
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << WindowSvg(Top(desk), module);
  file.close();
  if (!file) Refuse("\"" + path + "\" cannot be written");
}

struct Verb {
  std::string_view name;
  void (*act)(Desk& desk, const Json& step);  // null: one of the two that need more
};
constexpr Verb kVerbs[] = {{"page", Page},     {"click", Click}, {"type", Type},
                           {"select", Select}, {"spin", Spin},   {"key", Key},
                           {"button", Button}, {"close", Close}, {"expect", Expect},
                           {"read", nullptr},  {"shot", nullptr}};

}  // namespace

Json DoStep(Desk& desk, HMODULE module, const Json& step) {
  if (!step.is_object()) Refuse("a step is a JSON object");
  const Verb* verb = nullptr;
  for (const Verb& one : kVerbs) {
    if (!step.contains(one.name)) continue;
    if (verb != nullptr)
      Refuse("one step a line, not both \"" + std::string(verb->name) + "\" and \"" +
             std::string(one.name) + '"');
    verb = &one;
  }
  if (verb == nullptr) {
    std::string names;
    for (const Verb& one : kVerbs) names.append(names.empty() ? "" : ", ").append(one.name);
    Refuse("there is no such step; there are " + names);
  }
  if (verb->name == "read") return Read(desk, step);
  if (verb->name == "shot")
    Shot(desk, module, step);
  else
    verb->act(desk, step);
  return Json::object();
}

bool MayConfirm(Desk& desk, const Json& step) {
  const auto windows = desk.Windows();
  if (windows.empty() || windows.back().kind != WindowView::Kind::kSheet || !step.is_object())
    return false;
  const auto is = [&step](const char* name, const char* value) {
    const auto found = step.find(name);
    return found != step.end() && *found == value;
  };
  return is("button", "ok") || is("key", "enter");
}

}  // namespace printhost
