// The command line of kestrel-try.
#pragma once

#include <windows.h>

#include <cstddef>

namespace kestrel_try {

// Splits a command line by the rules that the platform documents for C programs: spaces and tabs
// separate arguments, quotation marks enclose them, a quotation mark after a backslash is part of
// its argument, backslashes before a quotation mark count half, and two quotation marks inside
// quotation marks are one. The program's name, in which a backslash has no such meaning, is left
// out. words receives the first of the arguments, terminated inside storage, which holds as many
// units as the command line with its terminator. Returns how many arguments there are.
size_t SplitCommandLine(const WCHAR* line, WCHAR* storage, const WCHAR** words, size_t capacity);

enum class Sheet { kNone, kDocument, kAdvanced, kUserDefault, kPrinter };

struct Arguments {
  const WCHAR* module = nullptr;   // file of the driver's user-interface module
  const WCHAR* printer = nullptr;  // name of an installed printer
  Sheet sheet = Sheet::kNone;
  bool help = false;
};

// Reads the arguments. Returns null, or a description of the first error.
const char* ReadArguments(const WCHAR* const* words, size_t count, Arguments& arguments);

}  // namespace kestrel_try
