#include "operation/device_library.h"

#include <cstring>

#include "driver/libraries.h"
#include "driver/text.h"

namespace kestrel {
namespace {

// The type of RtlGetModeComW and RtlGetVersionComW. size points to the size of the reply; the
// caller ignores the value stored in status. The result is nonzero on success.
using DeviceProc = DWORD(WINAPI*)(const WCHAR* printerName, BYTE* reply, DWORD replySize,
                                  DWORD* size, DWORD* status);

constexpr int kDirectoryBytes = 260;
constexpr int kDensityByte = 1;
constexpr int kModeByte = 3;

DeviceQuery CallDeviceLibrary(HANDLE printer, const WCHAR* printerName, const char* entry,
                              BYTE* reply, DWORD replySize) {
  const Module library =
      LoadCompanionLibrary(printer, printerName, TEXT("QM610rLIB.DLL"), kDirectoryBytes);
  if (!library) return DeviceQuery::kNoLibrary;
  const auto query = EntryPoint<DeviceProc>(library.get(), entry);
  if (query == nullptr) return DeviceQuery::kNoEntryPoint;
  DWORD size = replySize;
  DWORD status = 0;
  return query(printerName, reply, replySize, &size, &status) != 0 ? DeviceQuery::kSucceeded
                                                                   : DeviceQuery::kFailed;
}

// Converts a text of at most maximum bytes that need not be terminated.
void ConvertText(WCHAR* out, int outUnits, const BYTE* bytes, int maximum) {
  char text[kVersionReplySize + 1] = {};
  std::memcpy(text, bytes, static_cast<size_t>(maximum));
  FromCodePage(text, -1, out, outUnits * static_cast<int>(sizeof(WCHAR)));
}

}  // namespace

DeviceQuery QueryDeviceMode(HANDLE printer, const WCHAR* printerName, DeviceMode& mode) {
  BYTE reply[kModeReplySize];
  std::memset(reply, 0xFF, sizeof(reply));
  const DeviceQuery result =
      CallDeviceLibrary(printer, printerName, "RtlGetModeComW", reply, kModeReplySize);
  mode = {reply[kDensityByte], reply[kModeByte]};
  return result;
}

DeviceQuery QueryDeviceVersions(HANDLE printer, const WCHAR* printerName,
                                DeviceVersions& versions) {
  BYTE reply[kVersionReplySize] = {};
  const DeviceQuery result =
      CallDeviceLibrary(printer, printerName, "RtlGetVersionComW", reply, kVersionReplySize);
  ConvertText(versions.firmware, kFirmwareLength + 1, reply, kFirmwareLength);
  ConvertText(versions.font, kFontVersionLength + 1, reply + kFirmwareLength, kFontVersionLength);
  return result;
}

}  // namespace kestrel
