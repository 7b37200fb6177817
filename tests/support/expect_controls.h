// Steps in which a person looks at controls of the window on top.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "platform/desk.h"

namespace support {

inline platform::ScriptedUser::Step ExpectEnabled(std::vector<int> ids, bool enabled) {
  return [ids = std::move(ids), enabled](platform::Desk& desk) {
    for (int id : ids) EXPECT_EQ(desk.Control(id).enabled, enabled) << "control " << id;
  };
}
inline platform::ScriptedUser::Step ExpectChecked(std::vector<int> ids, bool checked = true) {
  return [ids = std::move(ids), checked](platform::Desk& desk) {
    for (int id : ids) EXPECT_EQ(desk.Control(id).checked, checked) << "control " << id;
  };
}
inline platform::ScriptedUser::Step ExpectSelected(int id, int index) {
  return [=](platform::Desk& desk) {
    EXPECT_EQ(desk.Control(id).selection, index) << "control " << id;
  };
}
inline platform::ScriptedUser::Step ExpectItems(int id, std::vector<std::u16string> items) {
  return
      [=](platform::Desk& desk) { EXPECT_EQ(desk.Control(id).items, items) << "control " << id; };
}
inline platform::ScriptedUser::Step ExpectRange(int spin, int minimum, int maximum, int position) {
  return [=](platform::Desk& desk) {
    const platform::ControlView view = desk.Control(spin);
    EXPECT_EQ(view.minimum, minimum) << "control " << spin;
    EXPECT_EQ(view.maximum, maximum) << "control " << spin;
    EXPECT_EQ(view.position, position) << "control " << spin;
  };
}
inline platform::ScriptedUser::Step ExpectFocus(int id) {
  return [=](platform::Desk& desk) { EXPECT_EQ(desk.FocusedId(), id); };
}
inline platform::ScriptedUser::Step ExpectTitle(std::u16string title) {
  return [=](platform::Desk& desk) { EXPECT_EQ(desk.Title(), title); };
}

}  // namespace support
