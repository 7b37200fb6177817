// Exit codes, and the exception that a failing command throws.
#pragma once

#include <string>

namespace printhost {

// Exit codes of the program.
enum Exit : int { kDone = 0, kCancelled = 1, kUsage = 2, kFailed = 3 };

// Thrown by a command that cannot continue.
struct Failure {
  int exit;
  std::string message;        // one line: the reason and what to do
  std::string japanese = {};  // the same for the page of a sheet; may be empty
};

}  // namespace printhost
