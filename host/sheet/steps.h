// The steps of a script that drives a sheet, one JSON object each:
//   {"page": 1}                                  a tab, from 0
//   {"click": 1046}                              a button, check box or radio button
//   {"type": 1099, "text": "-12"}                replaces a field's text, letter by letter
//   {"select": 1005, "item": "…"}                an item of a list; or "index", from 0
//   {"spin": 1101, "steps": -3}                  an up-down's arrows
//   {"key": "enter"}                             enter, escape, tab, backtab, up,
//                                              down, delete, back
//   {"button": "ok"}                             of the sheet: ok or cancel
//   {"close": true}                              the close box of the top window
//   {"expect": 1099, "text": "-12"}              also enabled, checked, items, item
//   {"expect": "window", "title": "…"}           also message
//   {"read": 1099}, {"read": "window"}           returns the control or window
//   {"shot": "page.svg"}                         saves a picture of the top window
// Ids are those of the top window or, for a sheet, of its active page.
#pragma once

#include <windows.h>

#include "host/record_json.h"
#include "platform/machine/desk.h"

namespace printhost {

// Performs one step. Returns what a "read" step has read, otherwise an empty object. Throws Failure
// with the reason when the step is invalid, when no user could do it, or when an expectation fails.
// The module provides the bitmaps for "shot".
Json PerformStep(platform::Desk& desk, HMODULE module, const Json& step);

// Returns true when the step may confirm a sheet: its OK button or the Enter key.
bool MayConfirm(platform::Desk& desk, const Json& step);

}  // namespace printhost
