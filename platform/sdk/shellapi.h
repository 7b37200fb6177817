// Shell calls.
#pragma once

#include <windows.h>

extern "C" HINSTANCE WINAPI ShellExecuteW(HWND owner, LPCWSTR verb, LPCWSTR file,
                                          LPCWSTR parameters, LPCWSTR directory, INT show);
