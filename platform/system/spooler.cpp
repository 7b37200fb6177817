// Printers as the spooler serves them: handles, rights and printer data.
#include <windows.h>
#include <winspool.h>

#include <algorithm>
#include <cstring>

#include "platform/system/machine_impl.h"
#include "platform/system/text.h"

using namespace platform;

namespace {

Store& StoreOf(Machine& machine) { return machine.impl().store; }

// Runs a call on the database; a failure of the database is a general failure of the spooler.
template <typename Call>
DWORD Guarded(const Call& call) {
  try {
    return call();
  } catch (const std::exception&) {
    return ERROR_GEN_FAILURE;
  }
}

BOOL Answer(DWORD error) {
  if (error == ERROR_SUCCESS) return TRUE;
  SetLastError(error);
  return FALSE;
}

DWORD Open(std::u16string_view name, const PRINTER_DEFAULTSW* defaults, HANDLE* printer) {
  Machine& machine = Machine::Current();
  if (machine.faults.Strike(Fault::kSpooler)) return RPC_S_SERVER_UNAVAILABLE;
  const auto found = StoreOf(machine).FindPrinter(name);
  if (!found) return ERROR_INVALID_PRINTER_NAME;
  const ACCESS_MASK access = defaults == nullptr || defaults->DesiredAccess == 0
                                 ? PRINTER_ACCESS_USE
                                 : defaults->DesiredAccess;
  if ((access & PRINTER_ACCESS_ADMINISTER) != 0 && !found->setup.administer) {
    return ERROR_ACCESS_DENIED;
  }
  *printer = machine.impl().printerHandles.Add({found->id, access});
  return ERROR_SUCCESS;
}

DWORD GetData(HANDLE printer, LPCWSTR value, LPDWORD type, LPBYTE out, DWORD size, LPDWORD needed) {
  Machine& machine = Machine::Current();
  if (machine.faults.Strike(Fault::kSpooler)) return RPC_S_SERVER_UNAVAILABLE;
  const auto handle = machine.impl().printerHandles.Find(printer);
  if (handle == nullptr) return ERROR_INVALID_HANDLE;
  if (value == nullptr || needed == nullptr || (out == nullptr && size > 0)) {
    return ERROR_INVALID_PARAMETER;
  }
  const auto data = StoreOf(machine).Data(handle->printer, value);
  if (!data) return ERROR_FILE_NOT_FOUND;
  *needed = static_cast<DWORD>(data->bytes.size());
  if (type != nullptr) *type = data->type;
  if (data->bytes.size() > size) return ERROR_MORE_DATA;
  if (!data->bytes.empty()) std::memcpy(out, data->bytes.data(), data->bytes.size());
  return ERROR_SUCCESS;
}

DWORD SetData(HANDLE printer, LPCWSTR value, DWORD type, const BYTE* data, DWORD size) {
  Machine& machine = Machine::Current();
  if (machine.faults.Strike(Fault::kSpooler)) return RPC_S_SERVER_UNAVAILABLE;
  const auto handle = machine.impl().printerHandles.Find(printer);
  if (handle == nullptr) return ERROR_INVALID_HANDLE;
  if (value == nullptr || (data == nullptr && size > 0)) return ERROR_INVALID_PARAMETER;
  if ((handle->access & PRINTER_ACCESS_ADMINISTER) == 0) return ERROR_ACCESS_DENIED;
  DataValue kept{type, std::vector<std::byte>(size)};
  if (size > 0) std::memcpy(kept.bytes.data(), data, size);
  switch (StoreOf(machine).SetData(handle->printer, value, kept, true)) {
    case Store::Write::kDone:
      return ERROR_SUCCESS;
    case Store::Write::kDenied:
      return ERROR_ACCESS_DENIED;
    default:
      return ERROR_PRINTER_DELETED;
  }
}

}  // namespace

BOOL WINAPI OpenPrinterW(LPWSTR name, HANDLE* printer, LPPRINTER_DEFAULTSW defaults) {
  if (printer == nullptr) return Answer(ERROR_INVALID_PARAMETER);
  *printer = nullptr;
  return Answer(Guarded([&] { return Open(View(name), defaults, printer); }));
}

BOOL WINAPI ClosePrinter(HANDLE printer) {
  return Answer(Machine::Current().impl().printerHandles.Remove(printer) ? ERROR_SUCCESS
                                                                         : ERROR_INVALID_HANDLE);
}

DWORD WINAPI GetPrinterDataW(HANDLE printer, LPWSTR value, LPDWORD type, LPBYTE out, DWORD size,
                             LPDWORD needed) {
  if (needed != nullptr) *needed = 0;
  return Guarded([&] { return GetData(printer, value, type, out, size, needed); });
}

DWORD WINAPI SetPrinterDataW(HANDLE printer, LPWSTR value, DWORD type, LPBYTE data, DWORD size) {
  return Guarded([&] { return SetData(printer, value, type, data, size); });
}
