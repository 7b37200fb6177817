#include "tests/support/steps.h"

namespace support {
namespace {

// A step that must succeed, told by the control it is about.
template <typename Does>
Step Must(const char* what, Does does) {
  return [=](Desk& desk) { EXPECT_TRUE(does(desk)) << what; };
}
template <typename Does>
Step MustAt(int id, const char* what, Does does) {
  return [=](Desk& desk) { EXPECT_TRUE(does(desk)) << what << ' ' << id; };
}
template <typename Looks>
Step LookAt(std::vector<int> ids, Looks looks) {
  return [ids = std::move(ids), looks](Desk& desk) {
    for (int id : ids) {
      SCOPED_TRACE("control " + std::to_string(id));
      looks(desk.Control(id));
    }
  };
}

}  // namespace

Seat::~Seat() {
  Desk& desk = platform::Machine::Current().desk();
  desk.Attach(nullptr);
  EXPECT_EQ(desk.ModalDepth(), 0);
}

Follower::~Follower() {
  EXPECT_EQ(user_.Problem(), "");
  EXPECT_TRUE(user_.Finished());
}

Step Click(int id) {
  return MustAt(id, "click", [=](Desk& desk) { return desk.Click(id); });
}
Step Select(int id, int index) {
  return MustAt(id, "select in", [=](Desk& desk) { return desk.Select(id, index); });
}
Step Select(int id, std::u16string item) {
  return MustAt(id, "select in", [=](Desk& desk) { return desk.Select(id, item); });
}
Step Replace(int id, std::u16string text) {
  return MustAt(id, "type over", [=](Desk& desk) { return desk.Replace(id, text); });
}
Step Type(int id, std::u16string text) {
  return MustAt(id, "type into", [=](Desk& desk) { return desk.Type(id, text); });
}
Step Paste(int id, std::u16string text) {
  return MustAt(id, "paste into", [=](Desk& desk) { return desk.Paste(id, text); });
}
Step Spin(int id, int steps) {
  return MustAt(id, "spin", [=](Desk& desk) { return desk.Spin(id, steps); });
}
Step Focus(int id) {
  return MustAt(id, "focus", [=](Desk& desk) { return desk.Focus(id); });
}
Step Key(int virtualKey) {
  return MustAt(virtualKey, "press", [=](Desk& desk) { return desk.Key(virtualKey); });
}
Step Tab(bool back) {
  return Must("tab", [=](Desk& desk) { return desk.Tab(back); });
}
Step Enter() {
  return Must("press Enter", [](Desk& desk) { return desk.Enter(); });
}
Step Escape() {
  return Must("press Esc", [](Desk& desk) { return desk.Escape(); });
}
Step AccessKey(char16_t letter) {
  return MustAt(letter, "press Alt and", [=](Desk& desk) { return desk.AccessKey(letter); });
}
Step Close() {
  return Must("close", [](Desk& desk) { return desk.Close(); });
}
Step GoTo(int tab) {
  return MustAt(tab, "go to tab", [=](Desk& desk) { return desk.Page(tab); });
}
Step PressOk() {
  return Must("press OK", [](Desk& desk) { return desk.Press(platform::SheetButton::kOk); });
}
Step PressCancel() {
  return Must("cancel", [](Desk& desk) { return desk.Press(platform::SheetButton::kCancel); });
}
Step CloseMessage(std::u16string text, UINT style, std::u16string caption, int button) {
  return [=](Desk& desk) {
    EXPECT_TRUE(desk.IsMessageBox());
    EXPECT_EQ(desk.MessageText(), text);
    EXPECT_EQ(desk.MessageStyle(), style);
    EXPECT_EQ(desk.Title(), caption);
    EXPECT_TRUE(desk.Click(button));
  };
}

Step ExpectText(int id, std::u16string text) {
  return [=](Desk& desk) { EXPECT_EQ(desk.Text(id), text) << "control " << id; };
}
Step ExpectEnabled(std::vector<int> ids, bool enabled) {
  return LookAt(ids, [=](const auto& control) { EXPECT_EQ(control.enabled, enabled); });
}
Step ExpectChecked(std::vector<int> ids, bool checked) {
  return LookAt(ids, [=](const auto& control) { EXPECT_EQ(control.checked, checked); });
}
Step ExpectSelected(int id, int index) {
  return LookAt({id}, [=](const auto& control) { EXPECT_EQ(control.selection, index); });
}
Step ExpectItems(int id, std::vector<std::u16string> items) {
  return LookAt({id}, [=](const auto& control) { EXPECT_EQ(control.items, items); });
}
Step ExpectRange(int spin, int minimum, int maximum, int position) {
  return LookAt({spin}, [=](const auto& control) {
    EXPECT_EQ(control.minimum, minimum);
    EXPECT_EQ(control.maximum, maximum);
    EXPECT_EQ(control.position, position);
  });
}
Step ExpectFocus(int id) {
  return [=](Desk& desk) { EXPECT_EQ(desk.FocusedId(), id); };
}
Step ExpectTitle(std::u16string title) {
  return [=](Desk& desk) { EXPECT_EQ(desk.Title(), title); };
}
Step ExpectChanged(bool changed) {
  return [=](Desk& desk) { EXPECT_EQ(desk.Windows().back().changed, changed); };
}

}  // namespace support
