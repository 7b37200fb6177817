// The registry below HKEY_LOCAL_MACHINE.
#include <algorithm>
#include <cstring>
#include <optional>

#include "platform/system/machine_impl.h"
#include "platform/system/text.h"

using namespace platform;

namespace {

constexpr REGSAM kReading = KEY_QUERY_VALUE | KEY_ENUMERATE_SUB_KEYS | KEY_NOTIFY | GENERIC_READ;
constexpr REGSAM kWriting = KEY_SET_VALUE | KEY_CREATE_SUB_KEY | KEY_CREATE_LINK | GENERIC_WRITE;

// Runs a call: the fault switch first, then the database, whose failure is a general one.
template <typename Call>
LSTATUS Guarded(const Call& call) {
  Machine& machine = Machine::Current();
  if (machine.faults.Strike(Fault::kRegistry)) return ERROR_NOT_ENOUGH_MEMORY;
  try {
    return static_cast<LSTATUS>(call(machine));
  } catch (const std::exception&) {
    return ERROR_GEN_FAILURE;
  }
}

// The path of a key below an open one; nothing for a handle that is none.
std::optional<std::u16string> PathOf(Machine& machine, HKEY key, std::u16string_view subKey) {
  std::u16string path;
  if (key != HKEY_LOCAL_MACHINE) {
    const auto open = machine.impl().registryHandles.Find(key);
    if (open == nullptr) return std::nullopt;
    path = open->key + u'\\';
  }
  return NormalKey(path.append(subKey));
}

bool Allowed(const Facts& facts, REGSAM access) {
  return (facts.registryReadable || (access & kReading) == 0) &&
         (facts.registryWritable || (access & kWriting) == 0);
}

DWORD Query(Machine& machine, HKEY key, std::u16string_view value, LPDWORD type, LPBYTE data,
            LPDWORD size) {
  const auto open = machine.impl().registryHandles.Find(key);
  if (open == nullptr) return ERROR_INVALID_HANDLE;
  if (data != nullptr && size == nullptr) return ERROR_INVALID_PARAMETER;
  if ((open->access & (KEY_QUERY_VALUE | GENERIC_READ)) == 0) return ERROR_ACCESS_DENIED;
  const auto found = machine.impl().store.Registry(open->key, value);
  if (!found) return ERROR_FILE_NOT_FOUND;
  if (type != nullptr) *type = found->type;
  if (size == nullptr) return ERROR_SUCCESS;
  const DWORD room = *size;
  *size = static_cast<DWORD>(found->bytes.size());
  if (data == nullptr) return ERROR_SUCCESS;
  if (found->bytes.size() > room) return ERROR_MORE_DATA;
  if (!found->bytes.empty()) std::memcpy(data, found->bytes.data(), found->bytes.size());
  return ERROR_SUCCESS;
}

DWORD Set(Machine& machine, HKEY key, std::u16string_view value, DWORD type, const BYTE* data,
          DWORD size) {
  const auto open = machine.impl().registryHandles.Find(key);
  if (open == nullptr) return ERROR_INVALID_HANDLE;
  if (data == nullptr && size > 0) return ERROR_INVALID_PARAMETER;
  if ((open->access & (KEY_SET_VALUE | GENERIC_WRITE)) == 0) return ERROR_ACCESS_DENIED;
  DataValue kept{type, std::vector<std::byte>(size)};
  if (size > 0) std::memcpy(kept.bytes.data(), data, size);
  machine.impl().store.SetRegistry(open->key, value, kept);
  return ERROR_SUCCESS;
}

}  // namespace

LSTATUS WINAPI RegOpenKeyExW(HKEY key, LPCWSTR subKey, DWORD, REGSAM access, PHKEY result) {
  if (result == nullptr) return ERROR_INVALID_PARAMETER;
  *result = nullptr;
  return Guarded([&](Machine& machine) -> DWORD {
    const auto path = PathOf(machine, key, View(subKey));
    if (!path) return ERROR_INVALID_HANDLE;
    if (!machine.impl().store.HasKey(*path)) return ERROR_FILE_NOT_FOUND;
    if (!Allowed(machine.impl().store.ReadFacts(), access)) return ERROR_ACCESS_DENIED;
    *result = machine.impl().registryHandles.Add({*path, access});
    return ERROR_SUCCESS;
  });
}

LSTATUS WINAPI RegCreateKeyExW(HKEY key, LPCWSTR subKey, DWORD, LPWSTR, DWORD, REGSAM access,
                               const LPSECURITY_ATTRIBUTES, PHKEY result, LPDWORD disposition) {
  if (result == nullptr) return ERROR_INVALID_PARAMETER;
  *result = nullptr;
  return Guarded([&](Machine& machine) -> DWORD {
    const auto path = PathOf(machine, key, View(subKey));
    if (!path) return ERROR_INVALID_HANDLE;
    Store& store = machine.impl().store;
    const bool exists = store.HasKey(*path);
    if (!Allowed(store.ReadFacts(), exists ? access : access | KEY_CREATE_SUB_KEY)) {
      return ERROR_ACCESS_DENIED;
    }
    if (!exists) store.CreateKey(*path);
    if (disposition != nullptr) {
      *disposition = exists ? REG_OPENED_EXISTING_KEY : REG_CREATED_NEW_KEY;
    }
    *result = machine.impl().registryHandles.Add({*path, access});
    return ERROR_SUCCESS;
  });
}

LSTATUS WINAPI RegQueryValueExW(HKEY key, LPCWSTR value, LPDWORD, LPDWORD type, LPBYTE data,
                                LPDWORD size) {
  return Guarded(
      [&](Machine& machine) { return Query(machine, key, View(value), type, data, size); });
}

LSTATUS WINAPI RegSetValueExW(HKEY key, LPCWSTR value, DWORD, DWORD type, const BYTE* data,
                              DWORD size) {
  return Guarded(
      [&](Machine& machine) { return Set(machine, key, View(value), type, data, size); });
}

LSTATUS WINAPI RegCloseKey(HKEY key) {
  if (key == HKEY_LOCAL_MACHINE) return ERROR_SUCCESS;
  return Machine::Current().impl().registryHandles.Remove(key) ? ERROR_SUCCESS
                                                               : ERROR_INVALID_HANDLE;
}
