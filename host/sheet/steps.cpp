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

[[noreturn]] void Fail(const std::string& reason) { throw Failure{kFailed, reason}; }

std::string Quoted(const std::u16string& text) { return '"' + ToUtf8(text) + '"'; }

WindowView TopWindow(Desk& desk) {
  auto windows = desk.Windows();
  if (windows.empty()) Fail("no window is open");
  return std::move(windows.back());
}

// Returns the controls that ids refer to: those of the window, or of the sheet's active page.
const std::vector<ControlView>& ControlsOf(const WindowView& window) {
  return window.page ? window.page->controls : window.controls;
}

std::u16string TitleOf(const WindowView& window) {
  return window.page ? window.page->title : window.title;
}

int IntegerMember(const Json& step, const char* name) {
  const std::string error = FindNumberError(step, name);
  if (!error.empty()) Fail(error);
  return step[name].get<int>();
}

std::string StringMember(const Json& step, const char* name) {
  if (!HasString(step, name)) Fail('"' + std::string(name) + "\" has to be a text");
  return step[name].get<std::string>();
}

std::u16string TextMember(const Json& step, const char* name) {
  return FromUtf8(StringMember(step, name));
}

// Fails when the step has a member of another name.
void AllowMembers(const Json& step, std::initializer_list<std::string_view> names) {
  for (const auto& [name, value] : step.items()) {
    if (std::ranges::find(names, name) == names.end()) Fail("the step has no \"" + name + '"');
  }
}

// Returns the control of an id in the top window. Fails with the reason when there is none or, for
// a control that the step operates, when it is hidden or disabled.
ControlView FindControl(Desk& desk, int id, bool isOperated) {
  const auto windows = desk.Windows();
  if (windows.empty()) Fail("no window is open");
  const WindowView& top = windows.back();
  const auto has = [id](const ControlView& control) { return control.id == id; };
  const auto& controls = ControlsOf(top);
  const auto found = std::ranges::find_if(controls, has);
  const std::string name = std::to_string(id);
  if (found == controls.end()) {
    for (const WindowView& below : windows) {
      if (&below != &top && std::ranges::any_of(ControlsOf(below), has))
        Fail(name + " is under the window " + Quoted(top.title));
    }
    Fail("the window " + Quoted(TitleOf(top)) + " has no control " + name);
  }
  if (isOperated && !found->visible) Fail(name + " is hidden");
  if (isOperated && !found->enabled) Fail(name + " is disabled");
  return *found;
}

void RequireDone(bool done, int id, const char* what) {
  if (!done) Fail(std::to_string(id) + " cannot be " + what);
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
  const WindowView window = TopWindow(desk);
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
  AllowMembers(step, {"page"});
  const WindowView top = TopWindow(desk);
  const int page = IntegerMember(step, "page");
  if (top.kind != WindowView::Kind::kSheet)
    Fail("the sheet is under the window " + Quoted(top.title));
  if (page < 0 || static_cast<std::size_t>(page) >= top.tabs.size())
    Fail("the sheet has the pages 0 to " + std::to_string(top.tabs.size() - 1));
  if (!desk.Page(page)) Fail("the page " + std::to_string(page) + " cannot be shown");
}

void Click(Desk& desk, const Json& step) {
  AllowMembers(step, {"click"});
  const int id = IntegerMember(step, "click");
  FindControl(desk, id, true);
  RequireDone(desk.Click(id), id, "clicked");
}

void Type(Desk& desk, const Json& step) {
  AllowMembers(step, {"type", "text"});
  const int id = IntegerMember(step, "type");
  const std::u16string text = TextMember(step, "text");
  const ControlView control = FindControl(desk, id, true);
  if (control.kind != ControlKind::kEdit || control.readOnly)
    Fail(std::to_string(id) + " takes no text");
  RequireDone(desk.Replace(id, text), id, "typed into");
}

void Select(Desk& desk, const Json& step) {
  AllowMembers(step, {"select", "item", "index"});
  const int id = IntegerMember(step, "select");
  if (step.contains("item") == step.contains("index"))
    Fail("a selection has either \"item\" or \"index\"");
  const ControlView control = FindControl(desk, id, true);
  if (!IsList(control)) Fail(std::to_string(id) + " has no items");
  auto index = static_cast<std::ptrdiff_t>(control.items.size());
  if (step.contains("index"))
    index = IntegerMember(step, "index");
  else
    index = std::ranges::find(control.items, TextMember(step, "item")) - control.items.begin();
  if (index < 0 || index >= static_cast<std::ptrdiff_t>(control.items.size()))
    Fail(std::to_string(id) + " has no such item");
  RequireDone(desk.Select(id, static_cast<int>(index)), id, "selected from");
}

void Spin(Desk& desk, const Json& step) {
  AllowMembers(step, {"spin", "steps"});
  const int id = IntegerMember(step, "spin"), steps = IntegerMember(step, "steps");
  if (FindControl(desk, id, true).kind != ControlKind::kUpDown)
    Fail(std::to_string(id) + " has no arrows");
  RequireDone(desk.Spin(id, steps), id, "stepped");
}

void Key(Desk& desk, const Json& step) {
  AllowMembers(step, {"key"});
  struct KeyName {
    std::string_view name;
    bool (*press)(Desk&);
  };
  static constexpr KeyName kKeys[] = {{"enter", [](Desk& on) { return on.Enter(); }},
                                      {"escape", [](Desk& on) { return on.Escape(); }},
                                      {"tab", [](Desk& on) { return on.Tab(); }},
                                      {"backtab", [](Desk& on) { return on.Tab(true); }},
                                      {"up", [](Desk& on) { return on.Key(VK_UP); }},
                                      {"down", [](Desk& on) { return on.Key(VK_DOWN); }},
                                      {"f4", [](Desk& on) { return on.Key(VK_F4); }},
                                      {"delete", [](Desk& on) { return on.Key(VK_DELETE); }},
                                      {"back", [](Desk& on) { return on.Key(VK_BACK); }}};
  const std::string name = StringMember(step, "key");
  const auto key = std::ranges::find(kKeys, std::string_view(name), &KeyName::name);
  if (key == std::end(kKeys)) Fail("there is no key \"" + name + '"');
  if (!key->press(desk)) Fail("the key \"" + name + "\" does nothing here");
}

void Button(Desk& desk, const Json& step) {
  AllowMembers(step, {"button"});
  const std::string name = StringMember(step, "button");
  const auto button = ParseSheetButton(name);
  if (!button) Fail("the sheet's buttons are ok and cancel");
  const WindowView top = TopWindow(desk);
  if (top.kind != WindowView::Kind::kSheet)
    Fail("the sheet is under the window " + Quoted(top.title) + "; click its buttons by their ids");
  if (!desk.Press(*button)) Fail("the button \"" + name + "\" is not there or disabled");
}

void Close(Desk& desk, const Json& step) {
  AllowMembers(step, {"close"});
  if (!step["close"].is_boolean() || !step["close"].get<bool>()) Fail("\"close\" has to be true");
  TopWindow(desk);
  if (!desk.Close()) Fail("the window cannot be closed");
}

void Expect(Desk& desk, const Json& step) {
  Json seen;
  std::string where = "the window";
  if (step["expect"] == "window") {
    AllowMembers(step, {"expect", "title", "message"});
    seen = ReadWindow(desk);
  } else {
    AllowMembers(step, {"expect", "text", "visible", "enabled", "checked", "items", "item"});
    const int id = IntegerMember(step, "expect");
    seen = ReadControl(FindControl(desk, id, false));
    where = std::to_string(id);
  }
  if (step.size() < 2) Fail("the step does not say what is expected");
  for (const auto& [name, wanted] : step.items()) {
    if (name == "expect") continue;
    if (!seen.contains(name)) Fail(where + " has no \"" + name + '"');
    if (seen[name] != wanted)
      Fail(where + ": \"" + name + "\" is " + seen[name].dump() + ", not " + wanted.dump());
  }
}

Json Read(Desk& desk, const Json& step) {
  AllowMembers(step, {"read"});
  if (step["read"] == "window") return ReadWindow(desk);
  return ReadControl(FindControl(desk, IntegerMember(step, "read"), false));
}

void Shot(Desk& desk, HMODULE module, const Json& step) {
  AllowMembers(step, {"shot"});
  const std::string path = StringMember(step, "shot");
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << WindowSvg(TopWindow(desk), module);
  file.close();
  if (!file) Fail("\"" + path + "\" cannot be written");
}

struct Verb {
  std::string_view name;
  void (*act)(Desk& desk, const Json& step);  // null: PerformStep calls it with other arguments
};
constexpr Verb kVerbs[] = {{"page", Page},     {"click", Click}, {"type", Type},
                           {"select", Select}, {"spin", Spin},   {"key", Key},
                           {"button", Button}, {"close", Close}, {"expect", Expect},
                           {"read", nullptr},  {"shot", nullptr}};

}  // namespace

Json PerformStep(Desk& desk, HMODULE module, const Json& step) {
  if (!step.is_object()) Fail("a step is a JSON object");
  const Verb* verb = nullptr;
  for (const Verb& each : kVerbs) {
    if (!step.contains(each.name)) continue;
    if (verb != nullptr)
      Fail("one step a line, not both \"" + std::string(verb->name) + "\" and \"" +
           std::string(each.name) + '"');
    verb = &each;
  }
  if (verb == nullptr) {
    std::string names;
    for (const Verb& each : kVerbs) names.append(names.empty() ? "" : ", ").append(each.name);
    Fail("there is no such step; there are " + names);
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
