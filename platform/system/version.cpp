// The system's version.
#include <array>
#include <cstring>
#include <optional>
#include <string>

#include "platform/machine.h"
#include "platform/system/text.h"

using namespace platform;

namespace {

constexpr int kConditionBits = 3;

// The last build of each version.
DWORD BuildOf(const OsVersion& os) {
  struct Row {
    DWORD major, minor, build;
  };
  constexpr Row kBuilds[] = {{3, 51, 1057}, {4, 0, 1381},  {5, 0, 2195}, {5, 1, 2600},
                             {5, 2, 3790},  {6, 0, 6003},  {6, 1, 7601}, {6, 2, 9200},
                             {6, 3, 9600},  {10, 0, 19045}};
  for (const Row& row : kBuilds) {
    if (row.major == os.major && row.minor == os.minor) return row.build;
  }
  return 0;
}

void AppendNumber(std::u16string& text, DWORD number) {
  for (const char digit : std::to_string(number)) text.push_back(static_cast<WCHAR>(digit));
}

// Whether a number of the system stands to the asked one as the condition says.
bool Holds(BYTE condition, DWORD system, DWORD asked) {
  switch (condition) {
    case VER_EQUAL:
      return system == asked;
    case VER_GREATER:
      return system > asked;
    case VER_GREATER_EQUAL:
      return system >= asked;
    case VER_LESS:
      return system < asked;
    case VER_LESS_EQUAL:
      return system <= asked;
    default:
      return false;
  }
}

// VerifyVersionInfo: major, minor and service pack are one number in parts; the first part that
// differs decides, by the condition of the first part that is asked for. The further flags are
// conditions of their own.
bool Matches(const OsVersion& os, const OSVERSIONINFOEXW& asked, DWORD types, DWORDLONG mask) {
  const auto condition = [mask](int bit) {
    return static_cast<BYTE>((mask >> (bit * kConditionBits)) & 7);
  };
  struct PartOfVersion {
    DWORD type;
    int bit;
    DWORD system, asked;
  };
  const PartOfVersion parts[] = {
      {VER_MAJORVERSION, 1, os.major, asked.dwMajorVersion},
      {VER_MINORVERSION, 0, os.minor, asked.dwMinorVersion},
      {VER_SERVICEPACKMAJOR, 5, os.servicePack, asked.wServicePackMajor},
      {VER_SERVICEPACKMINOR, 4, 0, asked.wServicePackMinor},
  };
  std::optional<BYTE> leading;
  bool equal = true;
  for (const PartOfVersion& part : parts) {
    if ((types & part.type) == 0) continue;
    if (!leading) leading = condition(part.bit);
    if (part.system == part.asked) continue;
    if (!Holds(*leading, part.system, part.asked)) return false;
    equal = false;
    break;
  }
  if (leading && equal && !Holds(*leading, 0, 0)) return false;
  const PartOfVersion alone[] = {
      {VER_BUILDNUMBER, 2, BuildOf(os), asked.dwBuildNumber},
      {VER_PLATFORMID, 3, os.platformId, asked.dwPlatformId},
      {VER_PRODUCT_TYPE, 7, os.productType, asked.wProductType},
  };
  for (const PartOfVersion& part : alone) {
    if ((types & part.type) != 0 && !Holds(condition(part.bit), part.system, part.asked)) {
      return false;
    }
  }
  return true;
}

// The extended structure came with the sixth service pack of NT 4.0.
bool KnowsMore(const OsVersion& os) {
  constexpr DWORD kFirstServicePack = 6;
  return os.platformId == VER_PLATFORM_WIN32_NT &&
         (os.major > 4 || (os.major == 4 && os.servicePack >= kFirstServicePack));
}

BOOL Fail(DWORD error) {
  SetLastError(error);
  return FALSE;
}

}  // namespace

ULONGLONG WINAPI VerSetConditionMask(ULONGLONG mask, DWORD typeMask, BYTE condition) {
  // The highest type named takes the condition.
  for (int bit = 7; bit >= 0; --bit) {
    if ((typeMask & (1u << bit)) != 0) {
      return mask | (static_cast<ULONGLONG>(condition & 7) << (bit * kConditionBits));
    }
  }
  return mask;
}

BOOL WINAPI VerifyVersionInfoW(LPOSVERSIONINFOEXW version, DWORD typeMask, DWORDLONG conditions) {
  const OsVersion os = Machine::Current().os();
  if (version == nullptr || typeMask == 0 || conditions == 0) return Fail(ERROR_INVALID_PARAMETER);
  if (!os.verifies || !Matches(os, *version, typeMask, conditions)) {
    return Fail(ERROR_OLD_WIN_VERSION);
  }
  return TRUE;
}

BOOL WINAPI GetVersionExW(LPOSVERSIONINFOW version) {
  const OsVersion os = Machine::Current().os();
  const bool known = version != nullptr &&
                     (version->dwOSVersionInfoSize == sizeof(OSVERSIONINFOW) ||
                      (version->dwOSVersionInfoSize == sizeof(OSVERSIONINFOEXW) && KnowsMore(os)));
  if (!known) return Fail(ERROR_INSUFFICIENT_BUFFER);
  OSVERSIONINFOEXW answer = {};
  answer.dwOSVersionInfoSize = version->dwOSVersionInfoSize;
  answer.dwMajorVersion = os.major;
  answer.dwMinorVersion = os.minor;
  answer.dwBuildNumber = BuildOf(os);
  answer.dwPlatformId = os.platformId;
  if (os.servicePack > 0) {
    std::u16string pack = u"Service Pack ";
    AppendNumber(pack, os.servicePack);
    CopyTerminated(pack, answer.szCSDVersion, std::size(answer.szCSDVersion));
  }
  answer.wServicePackMajor = static_cast<WORD>(os.servicePack);
  answer.wProductType = os.productType;
  std::memcpy(static_cast<void*>(version), &answer, version->dwOSVersionInfoSize);
  return TRUE;
}
