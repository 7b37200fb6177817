#include <windows.h>
#include <commctrl.h>
#include <winddiui.h>

#include "driver/instance.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) {
    kestrel::SetModuleInstance(instance);
    InitCommonControls();
    const INITCOMMONCONTROLSEX controls{sizeof(INITCOMMONCONTROLSEX), ICC_STANDARD_CLASSES};
    InitCommonControlsEx(&controls);
  }
  return TRUE;
}
