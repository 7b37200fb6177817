// Pictures of the module's resources as files.
#pragma once

#include <windows.h>

#include <string>

namespace printhost {

// A bitmap resource as a .bmp file's bytes; empty when the module has none of that id or it is
// malformed.
std::string BitmapFile(HMODULE module, int id);

}  // namespace printhost
