// The dialog procedures of the six pages. Each is defined with its page and listed in
// page_list.cpp.
#pragma once

#include <windows.h>

namespace kestrel {

INT_PTR CALLBACK VersionPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK PaperPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK OperationPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK DevicePageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK CreateFontPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK UtilityPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam);

}  // namespace kestrel
