// What a command ends with.
#pragma once

#include <string>

namespace printhost {

// Exit codes of the program.
enum Exit : int { kDone = 0, kCancelled = 1, kUsage = 2, kFailed = 3 };

// Thrown by a command that cannot continue: the exit code, one line that says what is wrong and
// what to do, and the same in Japanese where a sheet's page may show it.
struct Failure {
  int exit;
  std::string message;
  std::string japanese = {};
};

}  // namespace printhost
