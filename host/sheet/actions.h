// The user's actions as a page reports them, one JSON object each:
//   {"action": "click", "id": 1046, "window": "10010", "page": "…", "number": 7}
// "window" is the handle of the top window in the page's snapshot. "page", a name that the page
// chose, and "number", its count of actions, are optional; each snapshot has the last number of
// each page.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "host/record_json.h"
#include "platform/machine/desk.h"

namespace printhost {

// Returns true when an object has a string member of this name.
bool HasString(const Json& object, const char* name);
// Returns the reason why a member is not an int or, if its name is "steps", not a number of steps;
// empty when it is valid.
std::string FindNumberError(const Json& object, const char* name);
// Parses "ok" or "cancel".
std::optional<platform::SheetButton> ParseSheetButton(std::string_view name);

// Validates an action: its name, and presence, type and range of its members. Returns the first
// error as a sentence, or an empty text.
std::string FindActionError(const Json& action);

// Performs a valid action. Ignores one for a window that is no longer on top: a second click on OK
// must not press a button of the window below. Calls canConfirm before an action that may confirm a
// sheet and does nothing when it returns false.
void PerformAction(platform::Desk& desk, const Json& action,
                   const std::function<bool()>& canConfirm);

}  // namespace printhost
