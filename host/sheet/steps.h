// What a script says that a person does at a sheet, one JSON object a step:
//   {"page": 1}                                  a tab, counted from 0
//   {"click": 1046}                              a button, check box or radio button
//   {"type": 1099, "text": "-12"}                over what a field holds, letter by letter
//   {"select": 1005, "item": "…"}                of a list; or "index", counted from 0
//   {"spin": 1101, "steps": -3}                  an up-down's arrows
//   {"key": "enter"}                             enter, escape, tab, backtab, up,
//                                              down, delete, back
//   {"button": "ok"}                             of the sheet: ok, cancel
//   {"close": true}                              the close box of the window on top
//   {"expect": 1099, "text": "-12"}              also enabled, checked, items, item
//   {"expect": "window", "title": "…"}           also message
//   {"read": 1099}, {"read": "window"}           what is there
//   {"shot": "page.svg"}                         a picture of the window on top
// Ids are those of the window on top, or of the page that the sheet shows.
#pragma once

#include <windows.h>

#include "host/record_json.h"
#include "platform/machine/desk.h"

namespace printhost {

// Does one step. Answers what a step of reading read, else an empty object. Throws Failure with the
// reason when the step is none, when a person could not do it, or when an expectation does not
// hold. module: whose pictures a shot shows.
Json DoStep(platform::Desk& desk, HMODULE module, const Json& step);

// Whether a step presses what may confirm a sheet.
bool MayConfirm(platform::Desk& desk, const Json& step);

}  // namespace printhost
