// What a command ends with.
#pragma once

#include <string>

namespace printhost {

// Exit codes of the program.
enum Exit : int { kDone = 0, kCancelled = 1, kUsage = 2, kFailed = 3 };

// Thrown by a command that cannot go on: the exit code and one line that says what is wrong and
// what to do.
struct Failure {
  int exit;
  std::string message;
};

}  // namespace printhost
