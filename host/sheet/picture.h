// Bitmap resources of the module as files.
#pragma once

#include <windows.h>

#include <string>

namespace printhost {

// Returns a bitmap resource as the bytes of a .bmp file; empty when the module has no bitmap of
// that id or it is malformed.
std::string BitmapFile(HMODULE module, int id);

}  // namespace printhost
