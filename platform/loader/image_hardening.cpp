// Parses the load configuration and the debug directory of an image.
#include <algorithm>

#include "platform/loader/image_file.h"

namespace platform {
namespace {

// IMAGE_LOAD_CONFIG_DIRECTORY32 and IMAGE_LOAD_CONFIG_DIRECTORY64, with the members that are read.
struct LoadConfiguration32 {
  DWORD size, unused1[12];
  WORD version, dependentLoadFlags;
  DWORD editList, securityCookie, handlerTable, handlerCount;
  DWORD guardCheck, guardDispatch, functionTable, functionCount, guardFlags;
  DWORD codeIntegrity[3], importTable, importCount;
};
static_assert(sizeof(LoadConfiguration32) == 112);
struct LoadConfiguration64 {
  DWORD size, unused1[18];
  WORD version, dependentLoadFlags;
  ULONGLONG editList, securityCookie, handlerTable, handlerCount;
  ULONGLONG guardCheck, guardDispatch, functionTable, functionCount;
  DWORD guardFlags, codeIntegrity[3];
  ULONGLONG importTable, importCount;
};
static_assert(sizeof(LoadConfiguration64) == 176);

// IMAGE_GUARD_CF_INSTRUMENTED, IMAGE_GUARD_CF_FUNCTION_TABLE_PRESENT; the four highest bits are the
// number of bytes that follow each address of a table.
constexpr DWORD kInstrumented = 0x100, kHasFunctionTable = 0x400;
constexpr unsigned kStrideShift = 28;

struct DebugEntry {
  DWORD characteristics, timeStamp, version, type, size, address, fileOffset;
};
static_assert(sizeof(DebugEntry) == 28);
constexpr DWORD kCodeView = 2, kExtendedCharacteristics = 20;
constexpr DWORD kShadowStackCompatible = 1;  // IMAGE_DLLCHARACTERISTICS_EX_CET_COMPAT
constexpr unsigned kMostDebugEntries = 64;

struct CodeViewHeader {
  DWORD signature;
  BYTE guid[16];
  DWORD age;
};
constexpr DWORD kCodeViewSignature = 0x53445352;  // "RSDS"

}  // namespace

// Converts an absolute address, valid at the preferred base, to an offset; 0 stays 0.
uint32_t ImageFile::FromBase(uint64_t address, uint64_t length, bool written) const {
  if (address == 0) return 0;
  const ImageSection* section = SectionOf(address - base, length);
  Require(section != nullptr && (!written || section->writable),
          "its load configuration points outside its sections");
  return static_cast<uint32_t>(address - base);
}

// Reads a table of offsets, each of them in a section and in ascending order.
std::vector<uint32_t> ImageFile::ReadTable(uint64_t address, uint64_t count, uint64_t stride) {
  if (count == 0) return {};
  Require(count <= size, "its load configuration points outside its sections");
  const uint32_t table = FromBase(address, count * stride, false);
  std::vector<uint32_t> entries;
  for (uint64_t i = 0; i < count; ++i) {
    const auto entry = Read<DWORD>(table + i * stride);
    Require(entries.empty() || entry > entries.back(), "a table of its guard is not in order");
    Require(SectionOf(entry, 1) != nullptr, "a table of its guard leads outside its sections");
    entries.push_back(entry);
  }
  return entries;
}

// The first word of the structure is its size. Members that an older structure lacks are 0.
void ImageFile::ReadLoadConfiguration(Directory directory) {
  if (directory.size == 0) return;
  const auto length = Read<DWORD>(directory.address);
  LoadConfiguration64 config = {};
  if (wide) {
    const Bytes bytes = At(directory.address, std::min<uint64_t>(length, sizeof(config)));
    std::memcpy(&config, bytes.data(), bytes.size());
  } else {
    LoadConfiguration32 narrow = {};
    const Bytes bytes = At(directory.address, std::min<uint64_t>(length, sizeof(narrow)));
    std::memcpy(&narrow, bytes.data(), bytes.size());
    config.dependentLoadFlags = narrow.dependentLoadFlags;
    config.securityCookie = narrow.securityCookie;
    config.guardCheck = narrow.guardCheck;
    config.guardDispatch = narrow.guardDispatch;
    config.functionTable = narrow.functionTable;
    config.functionCount = narrow.functionCount;
    config.guardFlags = narrow.guardFlags;
    config.importTable = narrow.importTable;
    config.importCount = narrow.importCount;
  }
  const size_t width = wide ? sizeof(uint64_t) : sizeof(DWORD);
  ImageLoadConfiguration& read = loadConfiguration.emplace();
  read.dependentLoadFlags = config.dependentLoadFlags;
  read.securityCookie = FromBase(config.securityCookie, width, true);
  read.guardCheck = FromBase(config.guardCheck, width, false);
  read.guardDispatch = FromBase(config.guardDispatch, width, false);
  const uint64_t stride = sizeof(DWORD) + (config.guardFlags >> kStrideShift);
  ReadTable(config.importTable, config.importCount, stride);
  std::vector<uint32_t> targets = ReadTable(config.functionTable, config.functionCount, stride);
  for (const uint32_t target : targets) {
    Require(SectionOf(target, 1)->executable, "a call target of its guard lies outside its code");
  }
  constexpr DWORD kWanted = kInstrumented | kHasFunctionTable;
  if ((dllCharacteristics & kGuardCf) != 0 && (config.guardFlags & kWanted) == kWanted) {
    read.callTargets = std::move(targets);
  }
}

void ImageFile::ReadDebugDirectory(Directory directory) {
  const DWORD count = static_cast<DWORD>(directory.size / sizeof(DebugEntry));
  Require(count <= kMostDebugEntries, "its debug directory is damaged");
  for (DWORD i = 0; i < count; ++i) {
    const auto entry = Read<DebugEntry>(uint64_t{directory.address} + i * sizeof(DebugEntry));
    if (entry.type == kExtendedCharacteristics && entry.size >= sizeof(DWORD)) {
      hasShadowStacks = (Read<DWORD>(entry.address) & kShadowStackCompatible) != 0;
    }
    if (entry.type != kCodeView || entry.size <= sizeof(CodeViewHeader)) continue;
    const auto header = Read<CodeViewHeader>(entry.address);
    if (header.signature != kCodeViewSignature) continue;
    ImageSymbols& read = symbols.emplace();
    std::ranges::copy(header.guid, read.guid.begin());
    read.age = header.age;
    read.file = ReadText(uint64_t{entry.address} + sizeof(CodeViewHeader));
  }
}

}  // namespace platform
