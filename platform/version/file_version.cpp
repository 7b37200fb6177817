// Version resources of files.
#include <winver.h>

#include <cstddef>
#include <cstring>
#include <string>

#include "platform/loader/resource_table.h"
#include "platform/machine/last_error.h"
#include "platform/machine/machine.h"
#include "platform/machine/text.h"

namespace platform {
namespace {

// The root block of the resource as a file stores it, aligned to four bytes.
struct VersionBlock {
  WORD length;
  WORD valueLength;
  WORD type;
  WCHAR key[16];
  WORD padding;
  VS_FIXEDFILEINFO fixed;
};
static_assert(offsetof(VersionBlock, fixed) == 40);
constexpr VersionBlock kEmpty = {
    sizeof(VersionBlock), sizeof(VS_FIXEDFILEINFO), 0, u"VS_VERSION_INFO", 0, {}};

// The entries of a .res file: an empty one, and the version.
struct EntryHeader {
  DWORD dataSize;
  DWORD headerSize = 32;
  WORD type[2] = {0xFFFF, 0};
  WORD name[2] = {0xFFFF, 0};
  DWORD languageAndVersion[4] = {};
};
constexpr WORD kVersionId = 1;
struct VersionFile {
  EntryHeader empty = {0};
  EntryHeader header = {sizeof(VersionBlock), 32, {0xFFFF, kResourceVersion}, {0xFFFF, kVersionId}};
  VersionBlock block = kEmpty;
};

// Returns true when `size` bytes hold a version resource.
bool IsVersion(const void* data, size_t size) {
  VersionBlock block;
  if (data == nullptr || size < sizeof(block)) return false;
  std::memcpy(&block, data, sizeof(block));
  return block.length <= size && block.length >= sizeof(block) &&
         block.valueLength == kEmpty.valueLength &&
         std::memcmp(block.key, kEmpty.key, sizeof(block.key)) == 0;
}

// Returns the version resource of a file; empty when it has none.
std::string VersionOf(LPCWSTR fileName) {
  Machine& machine = Machine::Current();
  if (fileName == nullptr || machine.faults.ShouldFail(Fault::kFile)) return {};
  const ResourceTable table(machine.HostPath(fileName));
  const Resource* found = table.Find({kResourceVersion, {}}, {kVersionId, {}});
  if (found == nullptr || !IsVersion(found->data.data(), found->data.size())) return {};
  return {reinterpret_cast<const char*>(found->data.data()), found->data.size()};
}

}  // namespace

void Machine::WriteVersionedFile(std::u16string_view windowsPath, DWORD versionMs,
                                 DWORD versionLs) {
  VersionFile file;
  VS_FIXEDFILEINFO& fixed = file.block.fixed;
  fixed.dwSignature = VS_FFI_SIGNATURE;
  fixed.dwStrucVersion = VS_FFI_STRUCVERSION;
  fixed.dwFileVersionMS = fixed.dwProductVersionMS = versionMs;
  fixed.dwFileVersionLS = fixed.dwProductVersionLS = versionLs;
  WriteFile(windowsPath, {reinterpret_cast<const char*>(&file), sizeof(file)});
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
  version.copy(static_cast<char*>(data), size);
  return TRUE;
}

BOOL WINAPI VerQueryValueW(LPCVOID block, LPCWSTR subBlock, LPVOID* value, UINT* size) {
  if (block == nullptr || value == nullptr || size == nullptr) return Fail(ERROR_INVALID_PARAMETER);
  *value = nullptr;
  *size = 0;
  if (View(subBlock) != u"\\") return Fail(ERROR_RESOURCE_TYPE_NOT_FOUND);
  WORD length;
  std::memcpy(&length, block, sizeof(length));
  if (!IsVersion(block, length)) return Fail(ERROR_INVALID_DATA);
  *value = static_cast<std::byte*>(const_cast<LPVOID>(block)) + offsetof(VersionBlock, fixed);
  *size = sizeof(VS_FIXEDFILEINFO);
  return TRUE;
}
