// Libraries that are loaded at run time, by their full path: a file of the same name beside the
// running program never takes their place.
#pragma once

#include <windows.h>

#include "driver/handles.h"

namespace kestrel {

// A library of the system, from the system directory. Empty when it cannot be had.
Module LoadSystemLibrary(const WCHAR* fileName);

// A library of the driver package, from the directory of the printer's driver and its version
// ("\3"), which must fit into directoryBytes with its terminator. Libraries that it needs itself
// are looked for beside it. Empty when it cannot be had.
Module LoadCompanionLibrary(HANDLE printer, const WCHAR* printerName, const WCHAR* fileName,
                            DWORD directoryBytes = MAX_PATH * sizeof(WCHAR));

}  // namespace kestrel
