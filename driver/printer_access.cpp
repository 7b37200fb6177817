#include "driver/printer_access.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <iterator>

#include "driver/handles.h"
#include "driver/record_view.h"
#include "driver/text.h"

namespace kestrel {

namespace {

// A structure that the spooler returned, at the start of size bytes, with what it points to behind
// it. Empty when the query failed.
struct SpoolerReply {
  HeapBlock<BYTE> bytes;
  DWORD size = 0;
};

// Queries the size, then the content, as GetPrinterW and GetPrinterDriverW document it.
// query(out, size, needed) makes one call. The printer may change between two calls: a reply that
// no longer fits is queried again with its new size, at most kContentQueries times.
template <typename Query>
SpoolerReply QueryReply(Query query) {
  constexpr int kContentQueries = 4;
  DWORD needed = 0;
  DWORD error = query(nullptr, 0, &needed) ? DWORD{ERROR_SUCCESS} : GetLastError();
  for (int i = 0; i < kContentQueries && error == ERROR_INSUFFICIENT_BUFFER; ++i) {
    SpoolerReply reply{HeapBlock<BYTE>(needed), needed};
    if (!reply.bytes) break;
    if (query(reply.bytes.get(), reply.size, &needed)) return reply;
    error = GetLastError();
  }
  return {};
}

SpoolerReply QueryPrinter(HANDLE printer, DWORD level) {
  return QueryReply([&](LPBYTE out, DWORD size, LPDWORD needed) {
    return GetPrinterW(printer, level, out, size, needed) != FALSE;
  });
}

SpoolerReply QueryDriver(HANDLE printer) {
  return QueryReply([&](LPBYTE out, DWORD size, LPDWORD needed) {
    return GetPrinterDriverW(printer, nullptr, 3, out, size, needed) != FALSE;
  });
}

template <typename Info>
const Info* InfoOf(const SpoolerReply& reply) {
  return reply.size < sizeof(Info) ? nullptr : reinterpret_cast<const Info*>(reply.bytes.get());
}

bool GiveText(void* buffer, DWORD size, const WCHAR* text) {
  if (text == nullptr) return false;
  CopyText(static_cast<WCHAR*>(buffer), size / sizeof(WCHAR), text);
  return true;
}

bool GiveNumber(void* buffer, DWORD size, DWORD number) {
  if (size < sizeof number) return false;
  std::memcpy(buffer, &number, sizeof number);
  return true;
}

// A record counts only as far as the spooler's reply reaches, whatever its own sizes claim.
bool GiveRecord(void* buffer, DWORD size, const SpoolerReply& reply, const DEVMODEW* record) {
  if (record == nullptr) return false;
  const BYTE* start = reinterpret_cast<const BYTE*>(record);
  const BYTE* replyStart = reply.bytes.get();
  const BYTE* replyEnd = replyStart + reply.size;
  if (start < replyStart || start > replyEnd) return false;
  const size_t readable = static_cast<size_t>(replyEnd - start);
  if (readable < offsetof(DEVMODEW, dmFields)) return false;
  std::memcpy(buffer, start, std::min(std::min(RecordView(start).size(), readable), size_t{size}));
  return true;
}

bool GivePrinterInfo2(HANDLE printer, void* buffer, DWORD size, int selector) {
  const SpoolerReply reply = QueryPrinter(printer, 2);
  const auto* info = InfoOf<PRINTER_INFO_2W>(reply);
  if (info == nullptr) return false;
  switch (selector) {
    case kInfoPrintProcessor:
      return GiveText(buffer, size, info->pPrintProcessor);
    case kInfoDevMode:
      return GiveRecord(buffer, size, reply, info->pDevMode);
    case kInfoPortName:
      return GiveText(buffer, size, info->pPortName);
    case kInfoAttributes2:
      return GiveNumber(buffer, size, info->Attributes);
    case kInfoPrinterName:
      return GiveText(buffer, size, info->pPrinterName);
    default:
      return GiveText(buffer, size, info->pDriverName);
  }
}

template <typename Info>
bool GiveAttributes(HANDLE printer, DWORD level, void* buffer, DWORD size) {
  const SpoolerReply reply = QueryPrinter(printer, level);
  const auto* info = InfoOf<Info>(reply);
  return info != nullptr && GiveNumber(buffer, size, info->Attributes);
}

bool GiveDriverInfo(HANDLE printer, void* buffer, DWORD size, int selector) {
  const SpoolerReply reply = QueryDriver(printer);
  const auto* info = InfoOf<DRIVER_INFO_3W>(reply);
  if (info == nullptr) return false;
  return GiveText(buffer, size, selector == kInfoHelpFile ? info->pHelpFile : info->pDataFile);
}

bool GiveDirectory(void* buffer, DWORD size, bool withVersion) {
  DWORD needed = 0;
  if (!GetPrinterDriverDirectoryW(nullptr, nullptr, 1, static_cast<LPBYTE>(buffer), size, &needed))
    return false;
  if (!withVersion) return true;
  constexpr WCHAR kVersion[] = TEXT("\\3");
  WCHAR* directory = static_cast<WCHAR*>(buffer);
  const size_t units = size / sizeof(WCHAR);
  const auto length = static_cast<size_t>(TextLength(directory));
  if (length + std::size(kVersion) > units) return false;
  std::copy(std::begin(kVersion), std::end(kVersion), directory + length);
  return true;
}

}  // namespace

bool OpenPrinterForDriver(const WCHAR* name, int mode, HANDLE* printer) {
  *printer = nullptr;
  // Without a name OpenPrinterW opens the print server.
  if (name == nullptr || *name == 0) return false;
  PRINTER_DEFAULTSW administering{nullptr, nullptr, PRINTER_ALL_ACCESS};
  LPPRINTER_DEFAULTSW defaults = nullptr;
  switch (mode) {
    case 1:
    case 4:
      defaults = &administering;
      break;
    case 2:
    case 3:
      break;
    default:
      return false;
  }
  // The platform's parameter is not const, but it only reads the name.
  return OpenPrinterW(const_cast<LPWSTR>(name), printer, defaults) != FALSE;
}

bool GetPrinterInfoValue(HANDLE printer, const WCHAR*, void* buffer, DWORD size, int selector) {
  std::memset(buffer, 0, size);
  switch (selector) {
    case kInfoDriverName:
    case kInfoDriverName2:
    case kInfoPrintProcessor:
    case kInfoDevMode:
    case kInfoPortName:
    case kInfoAttributes2:
    case kInfoPrinterName:
      return GivePrinterInfo2(printer, buffer, size, selector);
    case kInfoAttributes4:
      return GiveAttributes<PRINTER_INFO_4W>(printer, 4, buffer, size);
    case kInfoAttributes5:
      return GiveAttributes<PRINTER_INFO_5W>(printer, 5, buffer, size);
    case kInfoDriverDirectory:
      return GiveDirectory(buffer, size, false);
    case kInfoVersionDirectory:
    case kInfoVersionDirectory3:
    case kInfoVersionDirectory100:
      return GiveDirectory(buffer, size, true);
    case kInfoHelpFile:
    case kInfoDataFile:
      return GiveDriverInfo(printer, buffer, size, selector);
    default:
      return false;
  }
}

bool GetPrinterNameOfHandle(HANDLE printer, WCHAR* name, size_t n) {
  std::fill_n(name, n, WCHAR{});
  const SpoolerReply reply = QueryPrinter(printer, 1);
  const auto* info = InfoOf<PRINTER_INFO_1W>(reply);
  if (info == nullptr || info->pName == nullptr) return false;
  CopyText(name, n, info->pName);
  return true;
}

bool ReadPrinterData(HANDLE printer, const WCHAR* value, void* buffer, DWORD size, DWORD* needed) {
  *needed = 0;
  return GetPrinterDataW(printer, const_cast<LPWSTR>(value), nullptr, static_cast<LPBYTE>(buffer),
                         size, needed) == ERROR_SUCCESS;
}

bool WritePrinterData(HANDLE printer, const WCHAR* value, DWORD type, const void* data,
                      DWORD size) {
  return SetPrinterDataW(printer, const_cast<LPWSTR>(value), type,
                         static_cast<LPBYTE>(const_cast<void*>(data)), size) == ERROR_SUCCESS;
}

}  // namespace kestrel
