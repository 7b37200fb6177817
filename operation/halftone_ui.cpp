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

constexpr LONG kUnavailable = -1;
constexpr int kTitleLength = 260;

}  // namespace

LONG AdjustColor(DriverSettingsBlock& block, const WCHAR* printerName, bool permission) {
  const Module library = LoadSystemLibrary(TEXT("htui.dll"));
  if (!library) return kUnavailable;
  const auto adjust = EntryPoint<ColorAdjustmentProc>(library.get(), "HTUI_ColorAdjustmentW");
  if (adjust == nullptr) return kUnavailable;
  WCHAR title[kTitleLength];
  CopyText(title, printerName);
  COLORADJUSTMENT adjustment = block.Record.Private.ColorAdjust;
  // A backup may bring another size, which the dialog does not take.
  adjustment.caSize = sizeof(adjustment);
  const LONG result = adjust(title, nullptr, nullptr, &adjustment, TRUE, permission);
  if (result >= 1) block.Record.Private.ColorAdjust = adjustment;
  return result;
}

LONG AdjustHalftone(DriverSettingsBlock& block, const WCHAR* printerName, bool permission) {
  const Module library = LoadSystemLibrary(TEXT("htui.dll"));
  if (!library) return kUnavailable;
  const auto adjust =
      EntryPoint<DeviceAdjustmentProc>(library.get(), "HTUI_DeviceColorAdjustmentW");
  if (adjust == nullptr) return kUnavailable;
  WCHAR title[kTitleLength];
  CopyText(title, printerName);
  DEVHTINFO current = HalftoneInfo(block);
  DEVHTINFO factory = DefaultHalftoneInfo();
  DEVHTADJDATA data = {};
  const Resolution& resolution = ResolutionOf(block.Printer.HeadDensity);
  data.DeviceXDPI = static_cast<DWORD>(resolution.x);
  data.DeviceYDPI = static_cast<DWORD>(resolution.y);
  data.pDefHTInfo = permission ? &factory : &current;
  data.pAdjHTInfo = permission ? &current : nullptr;
  const LONG result = adjust(title, &data);
  if (permission && result >= 1) SetHalftoneInfo(block, current);
  return result;
}

}  // namespace kestrel
