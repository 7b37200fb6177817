// The system's version.
#include <bit>
#include <cstring>
#include <string>
#include <tuple>

#include "platform/machine/last_error.h"
#include "platform/machine/machine.h"
#include "platform/machine/text.h"

using namespace platform;

namespace {

constexpr int kConditionBits = 3;

// Returns the position in a condition mask of the highest type in a type mask.
int ShiftOf(DWORD types) { return (std::bit_width(types & 0xFF) - 1) * kConditionBits; }

// Supports only "equal" and "at least".
template <typename Number>
bool Holds(ULONGLONG condition, const Number& system, const Number& required) {
  return (condition & 7) == VER_GREATER_EQUAL ? system >= required
                                              : (condition & 7) == VER_EQUAL && system == required;
}

// The extended structure came with service pack 6 of NT 4.0.
bool HasExtendedInfo(const OsVersion& os) {
  constexpr DWORD kFirstServicePack = 6;
  return os.platformId == VER_PLATFORM_WIN32_NT &&
         (os.major > 4 || (os.major == 4 && os.servicePack >= kFirstServicePack));
}

}  // namespace

ULONGLONG WINAPI VerSetConditionMask(ULONGLONG mask, DWORD typeMask, BYTE condition) {
  if ((typeMask & 0xFF) == 0) return mask;
  return mask | (static_cast<ULONGLONG>(condition & 7) << ShiftOf(typeMask));
}

// Supports the queries of the module: major version, minor version and service pack compared as one
// number, by the first condition; or the product type.
BOOL WINAPI VerifyVersionInfoW(LPOSVERSIONINFOEXW version, DWORD typeMask, DWORDLONG conditions) {
  constexpr DWORD kParts = VER_MAJORVERSION | VER_MINORVERSION | VER_SERVICEPACKMAJOR;
  if (version == nullptr || conditions == 0) return Fail(ERROR_INVALID_PARAMETER);
  const OsVersion os = Machine::Current().os();
  bool matches = false;
  if (typeMask == kParts) {
    matches = Holds(conditions >> ShiftOf(VER_MAJORVERSION),
                    std::tuple(os.major, os.minor, os.servicePack),
                    std::tuple(version->dwMajorVersion, version->dwMinorVersion,
                               DWORD{version->wServicePackMajor}));
  } else if (typeMask == VER_PRODUCT_TYPE) {
    matches = Holds(conditions >> ShiftOf(typeMask), os.productType, version->wProductType);
  }
  return matches && os.verifies ? TRUE : Fail(ERROR_OLD_WIN_VERSION);
}

BOOL WINAPI GetVersionExW(LPOSVERSIONINFOW version) {
  const OsVersion os = Machine::Current().os();
  const bool valid =
      version != nullptr &&
      (version->dwOSVersionInfoSize == sizeof(OSVERSIONINFOW) ||
       (version->dwOSVersionInfoSize == sizeof(OSVERSIONINFOEXW) && HasExtendedInfo(os)));
  if (!valid) return Fail(ERROR_INSUFFICIENT_BUFFER);
  OSVERSIONINFOEXW result = {};
  result.dwOSVersionInfoSize = version->dwOSVersionInfoSize;
  result.dwMajorVersion = os.major;
  result.dwMinorVersion = os.minor;
  result.dwPlatformId = os.platformId;
  if (os.servicePack > 0) {
    CopyTerminated(u"Service Pack " + ToUtf16(std::to_string(os.servicePack)), result.szCSDVersion,
                   std::size(result.szCSDVersion));
  }
  result.wServicePackMajor = static_cast<WORD>(os.servicePack);
  result.wProductType = os.productType;
  std::memcpy(static_cast<void*>(version), &result, version->dwOSVersionInfoSize);
  return TRUE;
}
