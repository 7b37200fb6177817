// Libraries loaded at run time. They are loaded by full path, so that a file of the same name in
// the application's directory is never loaded instead.
#pragma once

#include <windows.h>

#include "driver/handles.h"

namespace kestrel {

// Loads a library from the system directory. Returns an empty owner on failure.
Module LoadSystemLibrary(const WCHAR* fileName);

// Loads a library of the driver package from the printer-driver directory with its version ("\3").
// That path must fit into directoryBytes bytes, terminator included. The library's own dependencies
// are searched in its directory. Returns an empty owner on failure.
Module LoadCompanionLibrary(HANDLE printer, const WCHAR* printerName, const WCHAR* fileName,
                            DWORD directoryBytes = MAX_PATH * sizeof(WCHAR));

}  // namespace kestrel
