// kestrel-try: tries a printer driver's user-interface module on a real system and writes what its
// exports return as JSON, for comparison with recorded results.
#pragma once

#include <windows.h>

// The program's entry point, called by the system without a C runtime. Ends the process.
extern "C" void WINAPI KestrelTryMain();
