// The steps of a scripted user: actions and expectations, for all tests that drive windows. A step
// acts on the topmost window, in a property sheet on its active page. A step that cannot be done
// and an expectation that is not met fail the test.
#pragma once

#include <gtest/gtest.h>

#include <concepts>
#include <cstdlib>
#include <initializer_list>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "platform/machine/desk.h"
#include "platform/machine/machine.h"

namespace support {

using platform::Desk;
using Step = platform::ScriptedUser::Step;

// A sequence of steps. Sequences nest, so that a function may return several steps.
class Steps : public std::vector<Step> {
 public:
  Steps() = default;
  Steps(std::initializer_list<Steps> parts) {
    for (const Steps& part : parts) *this += part;
  }
  template <std::invocable<Desk&> Does>
  Steps(Does step) : vector{Step(std::move(step))} {}
  Steps& operator+=(const Steps& more) {
    insert(end(), more.begin(), more.end());
    return *this;
  }
};

// Attaches a user to the desk of the current machine for the time of a scope.
class AttachedUser {
 public:
  explicit AttachedUser(platform::User& user) { platform::Machine::Current().desk().Attach(&user); }
  ~AttachedUser() {
    Desk& desk = platform::Machine::Current().desk();
    desk.Attach(nullptr);
    EXPECT_EQ(desk.ModalDepth(), 0);
  }
  AttachedUser& operator=(AttachedUser&&) = delete;
};

// Returns the result of a call during which a user does the steps. The last step has to close the
// last window; a step that is left over fails the test.
template <typename Call>
auto RunSteps(Steps steps, Call call) {
  platform::ScriptedUser user(std::move(steps));
  const AttachedUser attached(user);
  auto result = call();
  EXPECT_EQ(user.Problem(), "");
  EXPECT_TRUE(user.Finished());
  return result;
}

// Returns a step that calls a function of Desk and expects it to succeed.
template <typename... Parameters, typename... Arguments>
Step Perform(const char* what, bool (Desk::*does)(Parameters...), Arguments... arguments) {
  return [=](Desk& desk) {
    EXPECT_TRUE((desk.*does)(arguments...))
        << what << testing::PrintToString(std::tuple(arguments...));
  };
}
// Clicks a button, check box, radio button or a button of a message box.
inline Step Click(int id) { return Perform("click", &Desk::Click, id); }
inline Step Select(int id, int index) {
  return Perform<int, int>("select", &Desk::Select, id, index);
}
inline Step Select(int id, std::u16string item) {
  return Perform<int, std::u16string_view>("select", &Desk::Select, id, item);
}
// Replace types over the text of an edit, Type appends to it, Paste replaces it in one change.
inline Step Replace(int id, std::u16string text) {
  return Perform("replace", &Desk::Replace, id, text);
}
inline Step Type(int id, std::u16string text) { return Perform("type", &Desk::Type, id, text); }
inline Step Paste(int id, std::u16string text) { return Perform("paste", &Desk::Paste, id, text); }
inline Step Spin(int id, int steps) { return Perform("spin", &Desk::Spin, id, steps); }
inline Step Focus(int id) { return Perform("focus", &Desk::Focus, id); }
inline Step Tab(bool back = false) { return Perform("tab", &Desk::Tab, back); }
inline Step Key(int key) { return Perform("key", &Desk::Key, key); }
inline Step Enter() { return Perform("Enter", &Desk::Enter); }
inline Step Escape() { return Perform("Esc", &Desk::Escape); }
inline Step Close() { return Perform("close", &Desk::Close); }
inline Step GoTo(int tab) { return Perform("go to tab", &Desk::Page, tab); }
inline Step PressOk() { return Perform("OK", &Desk::Press, platform::SheetButton::kOk); }
inline Step PressCancel() {
  return Perform("Cancel", &Desk::Press, platform::SheetButton::kCancel);
}

// Opens a drop-down list with F4 and moves the selection with arrow keys, down for positive
// entries. The list stays open.
inline Steps MoveInOpenList(int list, int entries) {
  Steps steps = {Focus(list), Key(VK_F4)};
  for (int i = 0; i < std::abs(entries); ++i) steps += Key(entries > 0 ? VK_DOWN : VK_UP);
  return steps;
}

// Expects a message box with this text, style and caption and closes it with a button.
inline Step CloseMessage(std::u16string text, UINT style, std::u16string caption,
                         int button = IDOK) {
  return [=](Desk& desk) {
    EXPECT_EQ(std::tuple(desk.Title(), desk.MessageText(), desk.MessageStyle()),
              std::tuple(caption, text, style));
    EXPECT_TRUE(desk.Click(button));
  };
}
inline Step ExpectText(int id, std::u16string text) {
  return [=](Desk& desk) { EXPECT_EQ(desk.Text(id), text) << "control " << id; };
}
inline Step ExpectFocus(int id) {
  return [=](Desk& desk) { EXPECT_EQ(desk.FocusedId(), id); };
}
inline Step ExpectTitle(std::u16string title) {
  return [=](Desk& desk) { EXPECT_EQ(desk.Title(), title); };
}
// Expects that a page has, or has not, marked the sheet changed.
inline Step ExpectChanged(bool changed) {
  return [=](Desk& desk) { EXPECT_EQ(desk.Windows().back().changed, changed); };
}
// Expects a value of a member in the view of each control.
template <typename Value>
Step ExpectEach(std::vector<int> ids, Value platform::ControlView::*member, Value value) {
  return [=](Desk& desk) {
    for (int id : ids) EXPECT_EQ(desk.Control(id).*member, value) << "control " << id;
  };
}
inline Step ExpectEnabled(std::vector<int> ids, bool enabled = true) {
  return ExpectEach(ids, &platform::ControlView::enabled, enabled);
}
inline Step ExpectChecked(std::vector<int> ids, bool checked = true) {
  return ExpectEach(ids, &platform::ControlView::checked, checked);
}
// Expects a control without width and height.
inline Step ExpectHidden(int id) {
  return [=](Desk& desk) {
    const RECT box = desk.Control(id).rect;
    EXPECT_TRUE(box.right == box.left && box.bottom == box.top) << "control " << id;
  };
}
inline Step ExpectSelected(int id, int index) {
  return ExpectEach({id}, &platform::ControlView::selection, index);
}
inline Step ExpectItems(int id, std::vector<std::u16string> items) {
  return ExpectEach({id}, &platform::ControlView::items, items);
}
inline Step ExpectRange(int spin, int minimum, int maximum, int position) {
  return [=](Desk& desk) {
    const auto control = desk.Control(spin);
    EXPECT_EQ(std::tuple(control.minimum, control.maximum, control.position),
              std::tuple(minimum, maximum, position))
        << "control " << spin;
  };
}

}  // namespace support
