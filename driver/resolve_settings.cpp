#include "driver/resolve_settings.h"

#include <algorithm>
#include <cstring>

#include "driver/default_settings.h"
#include "driver/handles.h"
#include "driver/merge_record.h"
#include "driver/printer_access.h"
#include "driver/record_checks.h"

namespace kestrel {

namespace {

constexpr WCHAR kPrivateDevModeValue[] = TEXT("Private DevMode");

bool LoadStoredSettings(DriverSettingsBlock& block, HANDLE printer, const WCHAR* name) {
  if (!GetPrinterInfoValue(printer, name, &block.Record, sizeof block.Record, kInfoDevMode))
    return false;
  if (!IsOwnSettingsRecord(block.Record, name)) return false;
  DWORD size;
  return ReadPrinterData(printer, kPrivateDevModeValue, &block.Printer, kPrinterPartSize, &size) &&
         size == kPrinterPartSize;
}

// Returns the number of private bytes copied from a short record.
WORD ShortPrivateSize(const RecordView& input) {
  return static_cast<WORD>(std::min(input.privateSize(), size_t{kPrivateSize}));
}

bool IsShort(const RecordView& input) {
  return input.hasFields() && input.publicSize() < kPublicSize;
}

// An application that uses an older, shorter DEVMODE receives its own record back, with the sizes
// that were copied. The record is assembled in a local copy because input and output may be the
// same.
void CopyShortRecord(void* output, const RecordView& input) {
  SettingsRecord record;
  const size_t size = SettingsRecordSize(input);
  std::memcpy(&record, input.bytes(), size);
  record.Public.dmSize = static_cast<WORD>(input.publicSize());
  record.Public.dmDriverExtra = ShortPrivateSize(input);
  std::memcpy(output, &record, size);
}

}  // namespace

bool LoadPrinterSettings(DriverSettingsBlock& block, HANDLE printer, const WCHAR* name) {
  if (LoadStoredSettings(block, printer, name)) return true;
  FillDefaultSettings(block, printer, name);
  block.Record.Private.Signature = SETTINGS_SIGNATURE;
  return false;
}

bool SavePrinterSettings(const DriverSettingsBlock& block, HANDLE printer, const WCHAR*) {
  return WritePrinterData(printer, kPrivateDevModeValue, REG_BINARY, &block.Printer,
                          kPrinterPartSize);
}

void BroadcastDefaultChanged(const WCHAR* name) {
  constexpr UINT kBroadcastTimeoutMs = 300;  // for each window
  DWORD_PTR result = 0;
  SendMessageTimeoutW(HWND_BROADCAST, WM_DEVMODECHANGE, 0, reinterpret_cast<LPARAM>(name),
                      SMTO_ABORTIFHUNG, kBroadcastTimeoutMs, &result);
}

void CopySettingsRecord(void* output, const DriverSettingsBlock& block) {
  std::memcpy(output, &block.Record, kRecordSize);
}

size_t SettingsRecordSize(const RecordView& input) {
  return IsShort(input) ? input.publicSize() + ShortPrivateSize(input) : kRecordSize;
}

void ResolveBlock(DriverSettingsBlock& block, const RecordView& input, HANDLE printer,
                  const WCHAR* name) {
  LoadPrinterSettings(block, printer, name);
  if (!input.hasFields()) return;
  _UdcMergeSelfDMode(block, input, MismatchOnThisSystem(input, name), printer, name);
}

bool ResolveSettings(void* output, const RecordView& input, HANDLE printer, const WCHAR* name,
                     DWORD mode) {
  const auto block = HeapBlock<DriverSettingsBlock>::One();
  if (!block) return false;
  const RecordView record = (mode & (DM_IN_BUFFER | kMergeInput)) != 0 ? input : RecordView();
  ResolveBlock(*block, record, printer, name);
  if (output == nullptr) return true;
  if ((mode & DM_COPY) != 0) {
    if (IsShort(record))
      CopyShortRecord(output, record);
    else
      CopySettingsRecord(output, *block);
  }
  if ((mode & kCopyWholeBlock) != 0) std::memcpy(output, block.get(), kBlockSize);
  return true;
}

}  // namespace kestrel
