#include "operation/halftone_ui.h"

#include <windows.h>
#include <winddi.h>

#include "driver/default_settings.h"
#include "driver/device_tables.h"
#include "driver/halftone_info.h"
#include "driver/libraries.h"
#include "driver/text.h"

namespace kestrel {
namespace {

using ColorAdjustmentProc = LONG(WINAPI*)(LPWSTR callerTitle, HANDLE defaultDib, LPWSTR dibTitle,
                                          COLORADJUSTMENT* adjustment, BOOL monochromeOnly,
                                          BOOL updatePermission);
using DeviceAdjustmentProc = LONG(WINAPI*)(LPWSTR deviceName, DEVHTADJDATA* data);

// Calls a function of htui.dll with a copy of the printer's name as its title. Returns -1 when the
// library or the function is missing.
template <typename Proc, typename Call>
LONG CallLibrary(const char* entry, const WCHAR* printerName, Call call) {
  const Module library = LoadSystemLibrary(TEXT("htui.dll"));
  const auto proc = library ? EntryPoint<Proc>(library.get(), entry) : nullptr;
  if (proc == nullptr) return -1;
  WCHAR title[260];
  CopyText(title, printerName);
  return call(proc, title);
}

}  // namespace

LONG AdjustColor(DriverSettingsBlock& block, const WCHAR* printerName, bool permission) {
  COLORADJUSTMENT adjustment = block.Record.Private.ColorAdjust;
  // A backup file may have set another size, which the dialog rejects.
  adjustment.caSize = sizeof(adjustment);
  const LONG result = CallLibrary<ColorAdjustmentProc>(
      "HTUI_ColorAdjustmentW", printerName, [&](ColorAdjustmentProc adjust, WCHAR* title) {
        return adjust(title, nullptr, nullptr, &adjustment, TRUE, permission);
      });
  if (result >= 1) block.Record.Private.ColorAdjust = adjustment;
  return result;
}

LONG AdjustHalftone(DriverSettingsBlock& block, const WCHAR* printerName, bool permission) {
  DEVHTINFO current = HalftoneInfo(block);
  DEVHTINFO factory = DefaultHalftoneInfo();
  DEVHTADJDATA data = {};
  const Resolution& resolution = ResolutionOf(block.Printer.HeadDensity);
  data.DeviceXDPI = static_cast<DWORD>(resolution.x);
  data.DeviceYDPI = static_cast<DWORD>(resolution.y);
  data.pDefHTInfo = permission ? &factory : &current;
  data.pAdjHTInfo = permission ? &current : nullptr;
  const LONG result = CallLibrary<DeviceAdjustmentProc>(
      "HTUI_DeviceColorAdjustmentW", printerName,
      [&](DeviceAdjustmentProc adjust, WCHAR* title) { return adjust(title, &data); });
  if (permission && result >= 1) SetHalftoneInfo(block, current);
  return result;
}

}  // namespace kestrel
