// A dialog of sliders, lists and boxes: what both halftone dialogs are made of.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

namespace platform::halftone {

// Ids: the k-th slider has kFirstSlider + k and shows its value in the edit kFirstValue + k; lists
// and boxes are numbered alike.
constexpr int kFirstSlider = 2001;
constexpr int kFirstValue = 2101;
constexpr int kFirstList = 2201;
constexpr int kFirstBox = 2301;
constexpr int kResetButton = 2400;

// A number between two bounds. `touched` tells whether the user set it, so that a stored value
// outside the bounds is kept when nobody moved it.
struct Slider {
  const char16_t* label;
  int minimum, maximum;
  int value;
  int standard;  // what the reset button sets
  bool enabled = true;
  bool touched = false;
};
struct List {
  const char16_t* label;
  std::vector<std::u16string> items;
  int selection;
  int standard;
  bool enabled = true;
  bool touched = false;
};
struct Box {
  const char16_t* label;
  bool checked;
  bool standard = false;
  bool enabled = true;
  bool touched = false;
};

struct Form {
  std::u16string title;
  std::vector<Slider> sliders;
  std::vector<List> lists;
  std::vector<Box> boxes;
  bool readOnly = false;  // everything but closing is disabled
};

enum class Outcome { kFailed, kCancelled, kConfirmed };

// Shows the form as a modal dialog above the active window; on kConfirmed it holds what was set.
Outcome ShowForm(Form& form);

}  // namespace platform::halftone
