// The spooler: printer handles, access rights, printer data and information structures.
#include <windows.h>
#include <winspool.h>

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "platform/machine/last_error.h"
#include "platform/machine/machine_impl.h"
#include "platform/machine/text.h"

using namespace platform;

namespace {

constexpr std::u16string_view kEnvironment = u"Windows NT x86";

template <typename Call>
DWORD Serve(const Call& call) {
  Faults& faults = Machine::Current().faults;
  if (faults.ShouldFail(Fault::kSpoolerChange)) faults.ChangeSpooler();
  return Serve(Fault::kSpooler, RPC_S_SERVER_UNAVAILABLE, call);
}
// Serves a call with a printer handle.
template <typename Call>
DWORD Serve(HANDLE handle, const Call& call) {
  return Serve([&](Machine::Impl& impl) -> DWORD {
    const auto printer = impl.printerHandles.Find(handle);
    return printer == nullptr ? ERROR_INVALID_HANDLE : call(impl, *printer);
  });
}

// A caller's output buffer.
struct OutputBuffer {
  LPBYTE out;
  DWORD size;
  LPDWORD needed;
  bool IsValid() const { return needed != nullptr && (out != nullptr || size == 0); }
};

// Builds an information structure as the spooler does: the structure, followed by the texts and
// records that its pointers name. Counts the bytes only when the buffer is missing or too small.
class Builder {
 public:
  Builder(const OutputBuffer& buffer, size_t structure) : buffer_(buffer), used_(structure) {}

  // Each returns the address of the copy; null while counting, and for a member that the structure
  // omits.
  LPWSTR Text(std::u16string_view text) {
    return static_cast<LPWSTR>(Copy(text.data(), text.size() * sizeof(WCHAR), sizeof(WCHAR)));
  }
  // Returns the path of a file in a folder, or the name itself when it has a folder.
  LPWSTR File(std::u16string folder, std::u16string_view name) {
    if (name.empty()) return nullptr;
    return Text(name.find(u'\\') == name.npos ? folder.append(name) : std::u16string(name));
  }
  LPDEVMODEW Record(const std::vector<std::byte>& record) {
    return record.empty() ? nullptr
                          : static_cast<LPDEVMODEW>(
                                Copy(record.data(), record.size(), alignof(std::max_align_t)));
  }
  // Fault::kSpoolerChange makes every structure longer, as a longer comment would.
  DWORD Needed() const {
    constexpr int kGrowth = 64;
    const int changes = Machine::Current().faults.Failures(Fault::kSpoolerChange);
    return static_cast<DWORD>(used_) + static_cast<DWORD>(kGrowth * changes);
  }

 private:
  // Copies bytes and appends two zero bytes.
  void* Copy(const void* data, size_t bytes, size_t alignment) {
    used_ = (used_ + alignment - 1) / alignment * alignment;
    const size_t at = used_;
    used_ += bytes + sizeof(WCHAR);
    if (buffer_.out == nullptr || used_ > buffer_.size) return nullptr;
    if (bytes > 0) std::memcpy(buffer_.out + at, data, bytes);
    std::memset(buffer_.out + at + bytes, 0, sizeof(WCHAR));
    return buffer_.out + at;
  }
  OutputBuffer buffer_;
  size_t used_;
};

// Returns the default record; empty when it is shorter than the sizes it declares, because a caller
// reads as many bytes as those.
std::vector<std::byte> CompleteRecord(std::u16string_view printer) {
  constexpr size_t kSizesEnd = offsetof(DEVMODEW, dmDriverExtra) + sizeof(WORD);
  std::vector<std::byte> record = Machine::Current().DefaultRecord(printer);
  if (record.size() < kSizesEnd) return {};
  WORD size = 0, extra = 0;
  std::memcpy(&size, record.data() + offsetof(DEVMODEW, dmSize), sizeof(size));
  std::memcpy(&extra, record.data() + offsetof(DEVMODEW, dmDriverExtra), sizeof(extra));
  if (size < kSizesEnd || size_t{size} + extra > record.size()) return {};
  return record;
}

void Fill(Builder& builder, PRINTER_INFO_1W& info, const PrinterSetup& setup) {
  constexpr DWORD kPrinterIcon = 0x00800000;  // PRINTER_ENUM_ICON8
  info.Flags = kPrinterIcon;
  info.pDescription = builder.Text(setup.name + u"," + setup.driverName + u",");
  info.pName = builder.Text(setup.name);
  info.pComment = builder.Text(u"");
}

void Fill(Builder& builder, PRINTER_INFO_2W& info, const PrinterSetup& setup) {
  info.pPrinterName = builder.Text(setup.name);
  info.pShareName = builder.Text(u"");
  info.pPortName = builder.Text(setup.portName);
  info.pDriverName = builder.Text(setup.driverName);
  info.pComment = builder.Text(u"");
  info.pLocation = builder.Text(u"");
  info.pDevMode = builder.Record(CompleteRecord(setup.name));
  info.pSepFile = builder.Text(u"");
  info.pPrintProcessor = builder.Text(setup.printProcessor);
  info.pDatatype = builder.Text(u"RAW");
  info.pParameters = builder.Text(u"");
  info.Attributes = setup.attributes;
  info.Priority = 1;
}

void Fill(Builder& builder, PRINTER_INFO_4W& info, const PrinterSetup& setup) {
  info.pPrinterName = builder.Text(setup.name);
  info.Attributes = setup.attributes | PRINTER_ATTRIBUTE_LOCAL;
}

void Fill(Builder& builder, PRINTER_INFO_5W& info, const PrinterSetup& setup) {
  info.pPrinterName = builder.Text(setup.name);
  info.pPortName = builder.Text(setup.portName);
  info.Attributes = setup.attributes;
  info.DeviceNotSelectedTimeout = 15000;
  info.TransmissionRetryTimeout = 45000;
}

void Fill(Builder& builder, DRIVER_INFO_3W& info, const PrinterSetup& setup) {
  const std::u16string folder = Machine::Current().driverDirectory() + u"\\3\\";
  info.cVersion = 3;
  info.pName = builder.Text(setup.driverName);
  info.pEnvironment = builder.Text(kEnvironment);
  info.pDriverPath = builder.File(folder, u"QM610rDRV2.DLL");
  info.pDataFile = builder.File(folder, setup.dataFile);
  info.pConfigFile = builder.File(folder, u"QM610rDRV1.DLL");
  info.pHelpFile = builder.File(folder, setup.helpFile);
  info.pDefaultDataType = builder.Text(u"RAW");
}

// Fills a structure and copies it to the buffer when all of it fits.
template <typename Info>
DWORD WriteInfo(const OutputBuffer& buffer, const PrinterSetup& setup) {
  Builder builder(buffer, sizeof(Info));
  Info info = {};
  Fill(builder, info, setup);
  *buffer.needed = builder.Needed();
  if (buffer.out == nullptr || builder.Needed() > buffer.size) return ERROR_INSUFFICIENT_BUFFER;
  std::memcpy(buffer.out, &info, sizeof(info));
  return ERROR_SUCCESS;
}

// Serves a query of a printer; `level` fills the structure.
template <typename Level>
BOOL QueryPrinter(HANDLE handle, const OutputBuffer& buffer, const Level& level) {
  return Succeeds(Serve(handle, [&](Machine::Impl& impl, const PrinterHandle& open) -> DWORD {
    if (!buffer.IsValid()) return ERROR_INVALID_PARAMETER;
    if (open.IsServer()) return ERROR_INVALID_HANDLE;
    const auto printer = impl.FindPrinter(open);
    return printer ? level(printer->setup) : ERROR_PRINTER_DELETED;
  }));
}

bool IsOwnEnvironment(std::u16string_view environment) {
  return environment.empty() || EqualIgnoringCase(environment, kEnvironment);
}

}  // namespace

BOOL WINAPI OpenPrinterW(LPWSTR name, HANDLE* printer, LPPRINTER_DEFAULTSW defaults) {
  if (printer == nullptr) return Fail(ERROR_INVALID_PARAMETER);
  *printer = nullptr;
  return Succeeds(Serve([&](Machine::Impl& impl) -> DWORD {
    if (View(name).empty()) {
      *printer = impl.printerHandles.Add({});  // the print server
      return ERROR_SUCCESS;
    }
    const auto found = impl.FindPrinter(View(name));
    if (!found) return ERROR_INVALID_PRINTER_NAME;
    const ACCESS_MASK requested = defaults == nullptr ? 0 : defaults->DesiredAccess;
    const ACCESS_MASK access = requested == 0 ? PRINTER_ACCESS_USE : requested;
    if ((access & PRINTER_ACCESS_ADMINISTER) != 0 && !found->setup.administer) {
      return ERROR_ACCESS_DENIED;
    }
    *printer = impl.printerHandles.Add({found->setup.name, found->id, access});
    return ERROR_SUCCESS;
  }));
}

BOOL WINAPI ClosePrinter(HANDLE printer) {
  const bool closed = Machine::Current().impl().printerHandles.Remove(printer);
  return Succeeds(closed ? ERROR_SUCCESS : ERROR_INVALID_HANDLE);
}

BOOL WINAPI GetPrinterW(HANDLE printer, DWORD level, LPBYTE out, DWORD size, LPDWORD needed) {
  const OutputBuffer buffer = {out, size, needed};
  return QueryPrinter(printer, buffer, [&](const PrinterSetup& setup) -> DWORD {
    switch (level) {
      case 1:
        return WriteInfo<PRINTER_INFO_1W>(buffer, setup);
      case 2:
        return WriteInfo<PRINTER_INFO_2W>(buffer, setup);
      case 4:
        return WriteInfo<PRINTER_INFO_4W>(buffer, setup);
      case 5:
        return WriteInfo<PRINTER_INFO_5W>(buffer, setup);
      default:
        return ERROR_INVALID_LEVEL;
    }
  });
}

BOOL WINAPI GetPrinterDriverW(HANDLE printer, LPWSTR environment, DWORD level, LPBYTE out,
                              DWORD size, LPDWORD needed) {
  const OutputBuffer buffer = {out, size, needed};
  return QueryPrinter(printer, buffer, [&](const PrinterSetup& setup) -> DWORD {
    if (!IsOwnEnvironment(View(environment))) return ERROR_INVALID_ENVIRONMENT;
    return level == 3 ? WriteInfo<DRIVER_INFO_3W>(buffer, setup) : ERROR_INVALID_LEVEL;
  });
}

BOOL WINAPI GetPrinterDriverDirectoryW(LPWSTR, LPWSTR environment, DWORD level, LPBYTE out,
                                       DWORD size, LPDWORD needed) {
  return Succeeds(Serve([&](Machine::Impl&) -> DWORD {
    if (level != 1) return ERROR_INVALID_LEVEL;
    if (!OutputBuffer{out, size, needed}.IsValid()) return ERROR_INVALID_PARAMETER;
    if (!IsOwnEnvironment(View(environment))) return ERROR_INVALID_ENVIRONMENT;
    const std::u16string directory = Machine::Current().driverDirectory();
    *needed = static_cast<DWORD>((directory.size() + 1) * sizeof(WCHAR));
    if (*needed > size) return ERROR_INSUFFICIENT_BUFFER;
    std::memcpy(out, directory.c_str(), *needed);
    return ERROR_SUCCESS;
  }));
}

DWORD WINAPI GetPrinterDataW(HANDLE printer, LPWSTR value, LPDWORD type, LPBYTE out, DWORD size,
                             LPDWORD needed) {
  return Serve(printer, [&](Machine::Impl& impl, const PrinterHandle& open) -> DWORD {
    if (value == nullptr || !OutputBuffer{out, size, needed}.IsValid())
      return ERROR_INVALID_PARAMETER;
    if (open.IsServer()) return ERROR_INVALID_PARAMETER;  // the server has no printer data
    const auto data = impl.store.Get(DataPath(open.id), value);
    if (!data) return ERROR_FILE_NOT_FOUND;
    *needed = static_cast<DWORD>(data->bytes.size());
    if (type != nullptr) *type = data->type;
    if (*needed > size) return ERROR_MORE_DATA;
    std::copy_n(reinterpret_cast<const BYTE*>(data->bytes.data()), *needed, out);
    return ERROR_SUCCESS;
  });
}

DWORD WINAPI SetPrinterDataW(HANDLE printer, LPWSTR value, DWORD type, LPBYTE data, DWORD size) {
  return Serve(printer, [&](Machine::Impl& impl, const PrinterHandle& open) -> DWORD {
    if (value == nullptr || (data == nullptr && size > 0)) return ERROR_INVALID_PARAMETER;
    if (open.IsServer()) return ERROR_INVALID_PARAMETER;
    if ((open.access & PRINTER_ACCESS_ADMINISTER) == 0) return ERROR_ACCESS_DENIED;
    DWORD error = ERROR_PRINTER_DELETED;
    impl.store.Transaction([&] {
      const auto found = impl.FindPrinter(open);
      if (!found) return;
      error = found->setup.writable ? ERROR_SUCCESS : ERROR_ACCESS_DENIED;
      const auto* bytes = reinterpret_cast<const std::byte*>(data);
      if (error == ERROR_SUCCESS) {
        impl.store.Put(DataPath(open.id), value, {type, {bytes, bytes + size}});
      }
    });
    return error;
  });
}
