// What a person does and sees, step by step: the one vocabulary of all tests that drive windows.
//
//   Follow({GoTo(kPaperTab), Select(IDC_PAPER_LIST, 1), Click(IDC_PAPER_EDIT),
//           ExpectTitle(u"用紙編集"), Replace(IDC_PAPER_REGISTER_WIDTH, u"40.0"), Click(IDOK),
//           CloseMessage(u"…", MB_ICONEXCLAMATION, u"用紙編集"), Click(IDCANCEL), PressOk()},
//          [&] { return exports_.DrvDocumentProperties(…); });
//
// A step acts on the window on top when its turn comes, in a sheet on the shown page. One that the
// person cannot do, or that sees something else, fails the test.
#pragma once

#include <gtest/gtest.h>

#include <concepts>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "platform/desk.h"
#include "platform/machine.h"

namespace support {

using platform::Desk;
using Step = platform::ScriptedUser::Step;

// Steps one after another. Lists of steps nest, so that a function may answer several.
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

// A user at the desk of the current machine for the time of a scope.
class Seat {
 public:
  explicit Seat(platform::User& user) { platform::Machine::Current().desk().Attach(&user); }
  ~Seat();
  Seat(const Seat&) = delete;
  Seat& operator=(const Seat&) = delete;
};

// A person who does steps, seated for the time of a scope; fails the test when one is left over, or
// when a window was still open after the last.
class Follower {
 public:
  explicit Follower(Steps steps) : user_(std::move(steps)) {}
  ~Follower();

 private:
  platform::ScriptedUser user_;
  Seat seat_{user_};
};

// Calls something while a person does the steps, and answers its result.
template <typename Call>
auto Follow(Steps steps, Call call) {
  const Follower follower(std::move(steps));
  return call();
}

// ---- doing ----
Step Click(int id);  // buttons, check boxes, radio buttons; the buttons of message boxes
Step Select(int id, int index);
Step Select(int id, std::u16string item);
Step Replace(int id, std::u16string text);  // types over what an edit holds
Step Type(int id, std::u16string text);     // behind what it holds; it may take some of it back
Step Paste(int id, std::u16string text);    // over what it holds, in one change
Step Spin(int id, int steps);
Step Focus(int id);
Step Key(int virtualKey);
Step Tab(bool back = false);
Step Enter();
Step Escape();
Step AccessKey(char16_t letter);
Step Close();  // by the window's close box
Step GoTo(int tab);
Step PressOk();
Step PressCancel();
// A message box with this text, style and caption is on top; one of its buttons closes it.
Step CloseMessage(std::u16string text, UINT style, std::u16string caption, int button = IDOK);

// ---- seeing ----
Step ExpectText(int id, std::u16string text);
Step ExpectEnabled(std::vector<int> ids, bool enabled = true);
Step ExpectChecked(std::vector<int> ids, bool checked = true);
Step ExpectSelected(int id, int index);
Step ExpectItems(int id, std::vector<std::u16string> items);
Step ExpectRange(int spin, int minimum, int maximum, int position);
Step ExpectFocus(int id);
Step ExpectTitle(std::u16string title);
Step ExpectChanged(bool changed);  // whether some page has marked the sheet changed

}  // namespace support
