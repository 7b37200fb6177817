// Console programs: a command line, two standard handles and an exit code.
#pragma once

#include <windef.h>

#include <string>

#include "platform/loader/image_map.h"

namespace platform {

// The exit code and output of a program. The output is bytes, as a file would receive them.
struct ProgramResult {
  UINT exitCode = 0;
  std::string output;
  std::string errors;
};

// Calls a program's entry point on this thread and returns when the program calls ExitProcess, or
// returns, which counts as exit code 0. ExitProcess abandons the frames of the program; what they
// own is leaked. A program cannot start another one on its own thread.
ProgramResult RunProgram(ProgramEntry entry, const std::u16string& commandLine);
// The same for a program's image. Throws ImageError when the image cannot be loaded.
ProgramResult RunProgram(Bytes image, const std::u16string& commandLine);

}  // namespace platform
