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

// A reply of the spooler: size bytes that start with a structure, followed by the data to which it
// points. Empty when the query failed.
struct SpoolerReply {
  HeapBlock<BYTE> bytes;
  DWORD size = 0;
};

// Queries the size and then the content, as documented for GetPrinterW and GetPrinterDriverW.
// query(out, size, needed) makes one call. Because the printer may change between two calls, a
// reply that no longer fits is queried again with its new size, at most kContentQueries times.
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

bool WriteText(void* buffer, DWORD size, const WCHAR* text) {
  if (text == nullptr) return false;
  CopyText(static_cast<WCHAR*>(buffer), size / sizeof(WCHAR), text);
  return true;
}

bool WriteNumber(void* buffer, DWORD size, DWORD number) {
  if (size < sizeof number) return false;
  std::memcpy(buffer, &number, sizeof number);
  return true;
}

// Copies no byte beyond the end of the spooler's reply, whatever the sizes in the record are.
bool WriteRecord(void* buffer, DWORD size, const SpoolerReply& reply, const DEVMODEW* record) {
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

bool QueryPrinterInfo2(HANDLE printer, void* buffer, DWORD size, int selector) {
  const SpoolerReply reply = QueryPrinter(printer, 2);
  const auto* info = InfoOf<PRINTER_INFO_2W>(reply);
  if (info == nullptr) return false;
  switch (selector) {
    case kInfoPrintProcessor:
      return WriteText(buffer, size, info->pPrintProcessor);
    case kInfoDevMode:
      return WriteRecord(buffer, size, reply, info->pDevMode);
    case kInfoPortName:
      return WriteText(buffer, size, info->pPortName);
    case kInfoAttributes2:
      return WriteNumber(buffer, size, info->Attributes);
    case kInfoPrinterName:
      return WriteText(buffer, size, info->pPrinterName);
    default:
      return WriteText(buffer, size, info->pDriverName);
  }
}

template <typename Info>
bool QueryAttributes(HANDLE printer, DWORD level, void* buffer, DWORD size) {
  const SpoolerReply reply = QueryPrinter(printer, level);
  const auto* info = InfoOf<Info>(reply);
  return info != nullptr && WriteNumber(buffer, size, info->Attributes);
}

bool QueryDriverInfo(HANDLE printer, void* buffer, DWORD size, int selector) {
  const SpoolerReply reply = QueryDriver(printer);
  const auto* info = InfoOf<DRIVER_INFO_3W>(reply);
  if (info == nullptr) return false;
  return WriteText(buffer, size, selector == kInfoHelpFile ? info->pHelpFile : info->pDataFile);
}

bool QueryDirectory(void* buffer, DWORD size, bool withVersion) {
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
  // OpenPrinterW without a name would open the print server.
  if (name == nullptr || *name == 0) return false;
  PRINTER_DEFAULTSW allAccess{nullptr, nullptr, PRINTER_ALL_ACCESS};
  LPPRINTER_DEFAULTSW defaults = nullptr;
  switch (mode) {
    case 1:
    case 4:
      defaults = &allAccess;
      break;
    case 2:
    case 3:
      break;
    default:
      return false;
  }
  // The parameter is not const, but OpenPrinterW only reads the name.
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
      return QueryPrinterInfo2(printer, buffer, size, selector);
    case kInfoAttributes4:
      return QueryAttributes<PRINTER_INFO_4W>(printer, 4, buffer, size);
    case kInfoAttributes5:
      return QueryAttributes<PRINTER_INFO_5W>(printer, 5, buffer, size);
    case kInfoDriverDirectory:
      return QueryDirectory(buffer, size, false);
    case kInfoVersionDirectory:
    case kInfoVersionDirectory3:
    case kInfoVersionDirectory100:
      return QueryDirectory(buffer, size, true);
    case kInfoHelpFile:
    case kInfoDataFile:
      return QueryDriverInfo(printer, buffer, size, selector);
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
