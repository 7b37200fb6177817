// Version resources of files.
#include <cstring>
#include <optional>
#include <string>

#include "platform/machine.h"
#include "platform/system/resources.h"
#include "platform/system/text.h"

namespace platform {
namespace {

constexpr WORD kVersionId = 1;
constexpr std::u16string_view kRootKey = u"VS_VERSION_INFO";
// The root block: its size, the size of its value, its kind, its key; then the fixed part at a
// multiple of four bytes.
constexpr size_t kFixedAt = 3 * sizeof(WORD) + (kRootKey.size() + 1) * sizeof(WCHAR) + 2;
static_assert(kFixedAt == 40);

struct RootHeader {
  WORD length;
  WORD valueLength;
  WORD type;
};

// Where the fixed part lies in a version resource of at most size bytes; nothing when it is none.
const VS_FIXEDFILEINFO* FixedPart(const void* block, size_t size) {
  RootHeader header;
  if (block == nullptr || size < kFixedAt + sizeof(VS_FIXEDFILEINFO)) return nullptr;
  std::memcpy(&header, block, sizeof(header));
  const auto* bytes = static_cast<const std::byte*>(block);
  const bool named =
      std::memcmp(bytes + sizeof(header), kRootKey.data(), kRootKey.size() * sizeof(WCHAR)) == 0;
  if (!named || header.length > size || header.length < kFixedAt + sizeof(VS_FIXEDFILEINFO) ||
      header.valueLength != sizeof(VS_FIXEDFILEINFO)) {
    return nullptr;
  }
  const void* fixed = bytes + kFixedAt;
  return static_cast<const VS_FIXEDFILEINFO*>(fixed);
}

// The version resource of a file; empty when it has none.
std::string VersionOf(LPCWSTR fileName) {
  Machine& machine = Machine::Current();
  if (fileName == nullptr || machine.faults.Strike(Fault::kFile)) return {};
  const ResourceTable table(machine.HostPath(fileName));
  const Resource* found =
      table.Find({kResourceVersion, std::u16string()}, {kVersionId, std::u16string()});
  if (found == nullptr || FixedPart(found->data.data(), found->data.size()) == nullptr) return {};
  return {reinterpret_cast<const char*>(found->data.data()), found->data.size()};
}

template <typename T>
void Put(std::string& out, const T& value) {
  out.append(reinterpret_cast<const char*>(&value), sizeof(value));
}

// A resource file's entry with numbers for type and name.
std::string ResourceEntry(WORD type, WORD name, const std::string& data) {
  constexpr DWORD kHeaderSize = 32;
  std::string entry;
  Put(entry, static_cast<DWORD>(data.size()));
  Put(entry, kHeaderSize);
  for (const WORD id : {type, name}) {
    Put(entry, WORD{0xFFFF});
    Put(entry, id);
  }
  entry.resize(kHeaderSize);
  entry += data;
  entry.resize((entry.size() + 3) / 4 * 4);
  return entry;
}

BOOL Fail(DWORD error) {
  SetLastError(error);
  return FALSE;
}

}  // namespace

void Machine::WriteVersionedFile(std::u16string_view windowsPath, DWORD versionMs,
                                 DWORD versionLs) {
  VS_FIXEDFILEINFO fixed = {};
  fixed.dwSignature = VS_FFI_SIGNATURE;
  fixed.dwStrucVersion = VS_FFI_STRUCVERSION;
  fixed.dwFileVersionMS = fixed.dwProductVersionMS = versionMs;
  fixed.dwFileVersionLS = fixed.dwProductVersionLS = versionLs;
  std::string block;
  Put(block, RootHeader{kFixedAt + sizeof(fixed), sizeof(fixed), 0});
  block.append(reinterpret_cast<const char*>(kRootKey.data()), kRootKey.size() * sizeof(WCHAR));
  block.resize(kFixedAt);
  Put(block, fixed);
  WriteFile(windowsPath,
            ResourceEntry(0, 0, {}) + ResourceEntry(kResourceVersion, kVersionId, block));
}

}  // namespace platform

using namespace platform;

DWORD WINAPI GetFileVersionInfoSizeW(LPCWSTR fileName, LPDWORD handle) {
  if (handle != nullptr) *handle = 0;
  const size_t size = VersionOf(fileName).size();
  if (size == 0) SetLastError(ERROR_RESOURCE_TYPE_NOT_FOUND);
  return static_cast<DWORD>(size);
}

BOOL WINAPI GetFileVersionInfoW(LPCWSTR fileName, DWORD, DWORD size, LPVOID data) {
  const std::string version = VersionOf(fileName);
  if (version.empty()) return Fail(ERROR_RESOURCE_TYPE_NOT_FOUND);
  if (data == nullptr || size < version.size()) return Fail(ERROR_INSUFFICIENT_BUFFER);
  std::memcpy(data, version.data(), version.size());
  return TRUE;
}

BOOL WINAPI VerQueryValueW(LPCVOID block, LPCWSTR subBlock, LPVOID* value, UINT* size) {
  if (block == nullptr || value == nullptr || size == nullptr) return Fail(ERROR_INVALID_PARAMETER);
  *value = nullptr;
  *size = 0;
  if (View(subBlock) != u"\\") return Fail(ERROR_RESOURCE_TYPE_NOT_FOUND);
  RootHeader header;
  std::memcpy(&header, block, sizeof(header));
  const VS_FIXEDFILEINFO* fixed = FixedPart(block, header.length);
  if (fixed == nullptr) return Fail(ERROR_INVALID_DATA);
  *value = const_cast<VS_FIXEDFILEINFO*>(fixed);
  *size = sizeof(*fixed);
  return TRUE;
}
