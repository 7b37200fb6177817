#include "sheets/page_procs.h"
#include "sheets/page_services.h"

namespace kestrel {

INT_PTR CALLBACK DevicePageProc(HWND page, UINT message, WPARAM, LPARAM lParam) {
  PerformCommonSteps(page, message, lParam);
  return message == WM_INITDIALOG;
}

}  // namespace kestrel
