// Calls whose effect lies outside the computer, as the computer records them.
#pragma once

#include <windef.h>

#include <string>

namespace platform {

// A message broadcast to all top-level windows, and a call of ShellExecuteW. The computer records
// the newest 64 of each for tests and hosts.
struct Broadcast {
  UINT message;
  WPARAM wParam;
  std::u16string text;
  UINT flags;
  UINT timeout;
};
struct ShellCall {
  std::u16string verb;
  std::u16string file;
  int show;
  int number = 0;  // counts the calls from 1 on
};

}  // namespace platform
