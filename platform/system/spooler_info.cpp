// The information structures of printers and drivers, and the driver directory.
#include <windows.h>
#include <winspool.h>

#include <cstddef>
#include <cstring>

#include "platform/system/machine_impl.h"
#include "platform/system/text.h"

using namespace platform;

namespace {

constexpr std::u16string_view kEnvironment = u"Windows NT x86";

// Builds an information structure as the spooler does: the structure, behind it what its pointers
// name. Without a buffer that is large enough it only counts.
class Builder {
 public:
  Builder(LPBYTE out, DWORD size, size_t structure) : out_(out), size_(size), used_(structure) {}

  // Each answers the address of the copy; null while only counting, and for an empty text that the
  // structure leaves out.
  LPWSTR Text(std::u16string_view text) {
    return static_cast<LPWSTR>(Copy(text.data(), text.size() * sizeof(WCHAR), sizeof(WCHAR)));
  }
  LPWSTR TextOrNull(std::u16string_view text) { return text.empty() ? nullptr : Text(text); }
  LPDEVMODEW Record(const std::vector<std::byte>& record) {
    return record.empty() ? nullptr
                          : static_cast<LPDEVMODEW>(
                                Copy(record.data(), record.size(), alignof(std::max_align_t)));
  }
  DWORD Needed() const { return static_cast<DWORD>(used_); }

 private:
  // Copies bytes and two zero bytes behind them.
  void* Copy(const void* data, size_t bytes, size_t alignment) {
    used_ = (used_ + alignment - 1) / alignment * alignment;
    const size_t at = used_;
    used_ += bytes + sizeof(WCHAR);
    if (out_ == nullptr || used_ > size_) return nullptr;
    if (bytes > 0) std::memcpy(out_ + at, data, bytes);
    std::memset(out_ + at + bytes, 0, sizeof(WCHAR));
    return out_ + at;
  }
  LPBYTE out_;
  DWORD size_;
  size_t used_;
};

// Fills a structure and copies it to the front of the buffer when all of it fits.
template <typename Info, typename Fill>
DWORD Answer(LPBYTE out, DWORD size, LPDWORD needed, const Fill& fill) {
  Builder builder(out, size, sizeof(Info));
  Info info = {};
  fill(builder, info);
  *needed = builder.Needed();
  if (out == nullptr || builder.Needed() > size) return ERROR_INSUFFICIENT_BUFFER;
  std::memcpy(out, &info, sizeof(info));
  return ERROR_SUCCESS;
}

// The record as it may be handed out: a caller reads as many bytes as the record itself names.
std::vector<std::byte> WholeRecord(const std::vector<std::byte>& record) {
  constexpr size_t kSizesEnd = offsetof(DEVMODEW, dmDriverExtra) + sizeof(WORD);
  if (record.size() < kSizesEnd) return {};
  WORD size = 0, extra = 0;
  std::memcpy(&size, record.data() + offsetof(DEVMODEW, dmSize), sizeof(size));
  std::memcpy(&extra, record.data() + offsetof(DEVMODEW, dmDriverExtra), sizeof(extra));
  if (size < kSizesEnd || size_t{size} + extra > record.size()) return {};
  return record;
}

DWORD Level1(const StoredPrinter& printer, LPBYTE out, DWORD size, LPDWORD needed) {
  constexpr DWORD kPrinterIcon = 0x00800000;  // PRINTER_ENUM_ICON8
  const PrinterSetup& setup = printer.setup;
  return Answer<PRINTER_INFO_1W>(out, size, needed, [&](Builder& builder, PRINTER_INFO_1W& info) {
    info.Flags = kPrinterIcon;
    info.pDescription = builder.Text(setup.name + u"," + setup.driverName + u",");
    info.pName = builder.Text(setup.name);
    info.pComment = builder.Text(u"");
  });
}

DWORD Level2(const StoredPrinter& printer, LPBYTE out, DWORD size, LPDWORD needed) {
  const PrinterSetup& setup = printer.setup;
  return Answer<PRINTER_INFO_2W>(out, size, needed, [&](Builder& builder, PRINTER_INFO_2W& info) {
    info.pPrinterName = builder.Text(setup.name);
    info.pShareName = builder.Text(u"");
    info.pPortName = builder.Text(setup.portName);
    info.pDriverName = builder.Text(setup.driverName);
    info.pComment = builder.Text(u"");
    info.pLocation = builder.Text(u"");
    info.pDevMode = builder.Record(WholeRecord(printer.record));
    info.pSepFile = builder.Text(u"");
    info.pPrintProcessor = builder.Text(setup.printProcessor);
    info.pDatatype = builder.Text(u"RAW");
    info.pParameters = builder.Text(u"");
    info.Attributes = setup.attributes;
    info.Priority = 1;
  });
}

DWORD Level4(const StoredPrinter& printer, LPBYTE out, DWORD size, LPDWORD needed) {
  return Answer<PRINTER_INFO_4W>(out, size, needed, [&](Builder& builder, PRINTER_INFO_4W& info) {
    info.pPrinterName = builder.Text(printer.setup.name);
    info.Attributes = printer.setup.attributes | PRINTER_ATTRIBUTE_LOCAL;
  });
}

DWORD Level5(const StoredPrinter& printer, LPBYTE out, DWORD size, LPDWORD needed) {
  return Answer<PRINTER_INFO_5W>(out, size, needed, [&](Builder& builder, PRINTER_INFO_5W& info) {
    info.pPrinterName = builder.Text(printer.setup.name);
    info.pPortName = builder.Text(printer.setup.portName);
    info.Attributes = printer.setup.attributes;
    info.DeviceNotSelectedTimeout = 15000;
    info.TransmissionRetryTimeout = 45000;
  });
}

DWORD DriverLevel3(const StoredPrinter& printer, LPBYTE out, DWORD size, LPDWORD needed) {
  const std::u16string folder = Machine::Current().driverDirectory() + u"\\3\\";
  const auto place = [&folder](const std::u16string& file) {
    const bool bare = !file.empty() && file.find(u'\\') == std::u16string::npos;
    return bare ? folder + file : file;
  };
  const PrinterSetup& setup = printer.setup;
  return Answer<DRIVER_INFO_3W>(out, size, needed, [&](Builder& builder, DRIVER_INFO_3W& info) {
    info.cVersion = 3;
    info.pName = builder.Text(setup.driverName);
    info.pEnvironment = builder.Text(kEnvironment);
    info.pDriverPath = builder.Text(folder + u"QM610rDRV2.DLL");
    info.pDataFile = builder.TextOrNull(place(setup.dataFile));
    info.pConfigFile = builder.Text(folder + u"QM610rDRV1.DLL");
    info.pHelpFile = builder.TextOrNull(place(setup.helpFile));
    info.pDefaultDataType = builder.Text(u"RAW");
  });
}

bool IsOwnEnvironment(std::u16string_view environment) {
  return environment.empty() || EqualIgnoringCase(environment, kEnvironment);
}

// What a call with a printer handle answers, by a function that fills its level.
template <typename Fill>
BOOL Ask(HANDLE handle, LPBYTE out, DWORD size, LPDWORD needed, const Fill& fill) {
  Machine& machine = Machine::Current();
  DWORD error = ERROR_SUCCESS;
  const auto printer = machine.impl().printerHandles.Find(handle);
  if (machine.faults.Strike(Fault::kSpooler)) {
    error = RPC_S_SERVER_UNAVAILABLE;
  } else if (printer == nullptr) {
    error = ERROR_INVALID_HANDLE;
  } else if (needed == nullptr || (out == nullptr && size > 0)) {
    error = ERROR_INVALID_PARAMETER;
  } else {
    *needed = 0;
    try {
      const auto stored = machine.impl().store.FindPrinter(printer->printer);
      error = stored ? fill(*stored) : ERROR_PRINTER_DELETED;
    } catch (const std::exception&) {
      error = ERROR_GEN_FAILURE;
    }
  }
  if (error == ERROR_SUCCESS) return TRUE;
  SetLastError(error);
  return FALSE;
}

}  // namespace

BOOL WINAPI GetPrinterW(HANDLE printer, DWORD level, LPBYTE out, DWORD size, LPDWORD needed) {
  return Ask(printer, out, size, needed, [&](const StoredPrinter& stored) -> DWORD {
    switch (level) {
      case 1:
        return Level1(stored, out, size, needed);
      case 2:
        return Level2(stored, out, size, needed);
      case 4:
        return Level4(stored, out, size, needed);
      case 5:
        return Level5(stored, out, size, needed);
      default:
        return ERROR_INVALID_LEVEL;
    }
  });
}

BOOL WINAPI GetPrinterDriverW(HANDLE printer, LPWSTR environment, DWORD level, LPBYTE out,
                              DWORD size, LPDWORD needed) {
  return Ask(printer, out, size, needed, [&](const StoredPrinter& stored) -> DWORD {
    if (!IsOwnEnvironment(View(environment))) return ERROR_INVALID_ENVIRONMENT;
    if (level != 3) return ERROR_INVALID_LEVEL;
    return DriverLevel3(stored, out, size, needed);
  });
}

BOOL WINAPI GetPrinterDriverDirectoryW(LPWSTR, LPWSTR environment, DWORD level, LPBYTE out,
                                       DWORD size, LPDWORD needed) {
  Machine& machine = Machine::Current();
  const std::u16string directory = machine.driverDirectory();
  const auto bytes = static_cast<DWORD>((directory.size() + 1) * sizeof(WCHAR));
  DWORD error = ERROR_SUCCESS;
  if (machine.faults.Strike(Fault::kSpooler)) {
    error = RPC_S_SERVER_UNAVAILABLE;
  } else if (level != 1) {
    error = ERROR_INVALID_LEVEL;
  } else if (needed == nullptr || (out == nullptr && size > 0)) {
    error = ERROR_INVALID_PARAMETER;
  } else if (!IsOwnEnvironment(View(environment))) {
    error = ERROR_INVALID_ENVIRONMENT;
  } else {
    *needed = bytes;
    if (bytes > size) error = ERROR_INSUFFICIENT_BUFFER;
  }
  if (error != ERROR_SUCCESS) {
    SetLastError(error);
    return FALSE;
  }
  std::memcpy(out, directory.c_str(), bytes);
  return TRUE;
}
