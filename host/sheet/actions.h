// What a page may say that its person did, one JSON object each:
//   {"action": "click", "id": 1046, "window": "10010", "page": "…", "number": 7}
// The window is the handle of the one on top, as the picture names it. The page's name and its own
// number of the action may be missing; the picture tells the last number of each page.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "host/record_json.h"
#include "platform/machine/desk.h"

namespace printhost {

// Whether an object has a text of this name.
bool IsText(const Json& object, const char* name);
// What is wrong with the integer of this name, as long as a control's id or as many as a person's
// steps; empty: nothing.
std::string NumberProblem(const Json& object, const char* name);
// "ok" or "cancel".
std::optional<platform::SheetButton> SheetButtonNamed(std::string_view name);

// What is wrong with an action: an unknown one, a member that is missing, of another type or out of
// bounds. A sentence; empty: nothing.
std::string ActionProblem(const Json& action);

// Does an action without a problem. One meant for a window that is no longer on top is dropped: a
// second click on OK must not press the button of what lies below. Before one that may confirm a
// sheet canConfirm is asked; when it says no nothing is done.
void DoAction(platform::Desk& desk, const Json& action, const std::function<bool()>& canConfirm);

}  // namespace printhost
