// The registry below HKEY_LOCAL_MACHINE. Its keys and values are in the store.
#include <winbase.h>

#include <algorithm>
#include <cstring>
#include <optional>

#include "platform/machine/machine_impl.h"
#include "platform/machine/text.h"

using namespace platform;

namespace {

constexpr REGSAM kReading = KEY_QUERY_VALUE | KEY_ENUMERATE_SUB_KEYS | KEY_NOTIFY | GENERIC_READ;
constexpr REGSAM kWriting = KEY_SET_VALUE | KEY_CREATE_SUB_KEY | KEY_CREATE_LINK | GENERIC_WRITE;
constexpr WCHAR kKeys[] = u"KEYS";

// Returns a key without empty parts: "A\\B" and "\A\B\" name the key "A\B".
std::u16string NormalKey(std::u16string_view key) {
  std::u16string normal;
  for (const char16_t c : key) {
    if (c == u'\\' && (normal.empty() || normal.back() == u'\\')) continue;
    normal.push_back(c);
  }
  if (!normal.empty() && normal.back() == u'\\') normal.pop_back();
  return normal;
}

// Returns the store path of the values of a key.
std::u16string ValuesPath(std::u16string_view key) { return u"REGISTRY\\" + NormalKey(key); }

bool HasKey(Store& store, const std::u16string& key) {
  return key.empty() || store.Get(kKeys, key).has_value();
}

// Stores a key and all keys above it.
void CreateKey(Store& store, const std::u16string& key) {
  store.Transaction([&] {
    for (size_t end = 0; end != std::u16string::npos;) {
      end = key.find(u'\\', end + 1);
      const std::u16string name = key.substr(0, end);
      if (!store.Get(kKeys, name)) store.Put(kKeys, name, {});
    }
  });
}

// Returns a key and its subkeys, all keys when it is empty: folded names, with the original names.
std::map<std::u16string, std::u16string> KeysFrom(Store& store, std::u16string_view key) {
  const std::u16string start = FoldCase(NormalKey(key));
  std::map<std::u16string, std::u16string> keys;
  for (const auto& [folded, row] : store.All(kKeys)) {
    if (start.empty() || folded == start || folded.starts_with(start + u'\\')) {
      keys[folded] = row.name;
    }
  }
  return keys;
}

template <typename Call>
LSTATUS Serve(const Call& call) {
  return static_cast<LSTATUS>(Serve(Fault::kRegistry, ERROR_NOT_ENOUGH_MEMORY, call));
}
// Serves a call that needs one of some access rights on an open key.
template <typename Call>
LSTATUS OnKey(HKEY key, REGSAM rights, const Call& call) {
  return Serve([&](Machine::Impl& impl) -> DWORD {
    const auto open = impl.registryHandles.Find(key);
    if (open == nullptr) return ERROR_INVALID_HANDLE;
    if ((open->access & rights) == 0) return ERROR_ACCESS_DENIED;
    return call(open->key);
  });
}

// Opens a key below HKEY_LOCAL_MACHINE, the only root that is supported; with `create`, creates it
// when it does not exist.
LSTATUS Open(HKEY root, LPCWSTR subKey, REGSAM access, bool create, PHKEY result) {
  if (result == nullptr) return ERROR_INVALID_PARAMETER;
  if (root != HKEY_LOCAL_MACHINE) return ERROR_INVALID_HANDLE;
  return Serve([&](Machine::Impl& impl) -> DWORD {
    const std::u16string path = NormalKey(View(subKey));
    const bool exists = HasKey(impl.store, path);
    if (!exists && !create) return ERROR_FILE_NOT_FOUND;
    const MachineSettings settings = impl.ReadState()->settings;
    const bool reads = (access & kReading) != 0, writes = !exists || (access & kWriting) != 0;
    if ((reads && !settings.registryReadable) || (writes && !settings.registryWritable)) {
      return ERROR_ACCESS_DENIED;
    }
    if (!exists) CreateKey(impl.store, path);
    *result = impl.registryHandles.Add({path, access});
    return ERROR_SUCCESS;
  });
}

}  // namespace

namespace platform {

std::u16string PrinterKey(std::u16string_view name) {
  std::u16string key(name);
  std::replace(key.begin(), key.end(), u'\\', u',');
  return u"SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\" + key;
}

void Machine::SetRegistry(std::u16string_view key, std::u16string_view value, DataValue data) {
  Transaction([&] {
    CreateKey(impl_->store, NormalKey(key));
    impl_->store.Put(ValuesPath(key), value, std::move(data));
  });
}

std::optional<DataValue> Machine::Registry(std::u16string_view key,
                                           std::u16string_view value) const {
  return impl_->store.Get(ValuesPath(key), value);
}

std::map<std::u16string, DataValue> Machine::AllRegistry(std::u16string_view key) const {
  std::map<std::u16string, DataValue> all;
  for (const auto& [folded, name] : KeysFrom(impl_->store, key)) {
    for (const auto& [value, row] : impl_->store.All(ValuesPath(folded))) {
      all[name + u'\\' + row.name] = row.data;
    }
  }
  return all;
}

void Machine::RemoveRegistryKey(std::u16string_view key) {
  Transaction([&] {
    for (const auto& [folded, name] : KeysFrom(impl_->store, key)) {
      impl_->store.RemoveAll(ValuesPath(folded));
      impl_->store.Remove(kKeys, folded);
    }
  });
}

void Machine::SetRegistryAccess(bool readable, bool writable) {
  impl_->ChangeSettings([=](MachineSettings& settings) {
    settings.registryReadable = readable;
    settings.registryWritable = writable;
  });
}

}  // namespace platform

LSTATUS WINAPI RegOpenKeyExW(HKEY key, LPCWSTR subKey, DWORD, REGSAM access, PHKEY result) {
  return Open(key, subKey, access, false, result);
}

LSTATUS WINAPI RegCreateKeyExW(HKEY key, LPCWSTR subKey, DWORD, LPWSTR, DWORD, REGSAM access,
                               const LPSECURITY_ATTRIBUTES, PHKEY result, LPDWORD) {
  return Open(key, subKey, access, true, result);
}

LSTATUS WINAPI RegQueryValueExW(HKEY key, LPCWSTR value, LPDWORD, LPDWORD type, LPBYTE data,
                                LPDWORD size) {
  return OnKey(key, KEY_QUERY_VALUE | GENERIC_READ, [&](const std::u16string& name) -> DWORD {
    if (data != nullptr && size == nullptr) return ERROR_INVALID_PARAMETER;
    const auto found = Machine::Current().Registry(name, View(value));
    if (!found) return ERROR_FILE_NOT_FOUND;
    if (type != nullptr) *type = found->type;
    if (size == nullptr) return ERROR_SUCCESS;
    const DWORD capacity = *size;
    *size = static_cast<DWORD>(found->bytes.size());
    if (data == nullptr) return ERROR_SUCCESS;
    if (*size > capacity) return ERROR_MORE_DATA;
    std::copy_n(reinterpret_cast<const BYTE*>(found->bytes.data()), *size, data);
    return ERROR_SUCCESS;
  });
}

LSTATUS WINAPI RegSetValueExW(HKEY key, LPCWSTR value, DWORD, DWORD type, const BYTE* data,
                              DWORD size) {
  return OnKey(key, KEY_SET_VALUE | GENERIC_WRITE, [&](const std::u16string& name) -> DWORD {
    if (data == nullptr && size > 0) return ERROR_INVALID_PARAMETER;
    const auto* bytes = reinterpret_cast<const std::byte*>(data);
    Machine::Current().SetRegistry(name, View(value), {type, {bytes, bytes + size}});
    return ERROR_SUCCESS;
  });
}

LSTATUS WINAPI RegDeleteValueW(HKEY key, LPCWSTR value) {
  return OnKey(key, KEY_SET_VALUE | GENERIC_WRITE, [&](const std::u16string& name) -> DWORD {
    const bool removed = Machine::Current().impl().store.Remove(ValuesPath(name), View(value));
    return removed ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
  });
}

LSTATUS WINAPI RegCloseKey(HKEY key) {
  if (key == HKEY_LOCAL_MACHINE) return ERROR_SUCCESS;
  return Machine::Current().impl().registryHandles.Remove(key) ? ERROR_SUCCESS
                                                               : ERROR_INVALID_HANDLE;
}
