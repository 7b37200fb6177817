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

// Where the condition of the highest of some types lies in a mask of conditions.
int ShiftOf(DWORD types) { return (std::bit_width(types & 0xFF) - 1) * kConditionBits; }

// Only "equal" and "at least" are known.
template <typename Number>
bool Holds(ULONGLONG condition, const Number& system, const Number& asked) {
  return (condition & 7) == VER_GREATER_EQUAL ? system >= asked
                                              : (condition & 7) == VER_EQUAL && system == asked;
}

// The extended structure came with the sixth service pack of NT 4.0.
bool KnowsMore(const OsVersion& os) {
  constexpr DWORD kFirstServicePack = 6;
  return os.platformId == VER_PLATFORM_WIN32_NT &&
         (os.major > 4 || (os.major == 4 && os.servicePack >= kFirstServicePack));
}

}  // namespace

ULONGLONG WINAPI VerSetConditionMask(ULONGLONG mask, DWORD typeMask, BYTE condition) {
  if ((typeMask & 0xFF) == 0) return mask;
  return mask | (static_cast<ULONGLONG>(condition & 7) << ShiftOf(typeMask));
}

// What the module asks for: major, minor and service pack as one number in parts, by the condition
// of the first, or the product type.
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
  const bool known = version != nullptr &&
                     (version->dwOSVersionInfoSize == sizeof(OSVERSIONINFOW) ||
                      (version->dwOSVersionInfoSize == sizeof(OSVERSIONINFOEXW) && KnowsMore(os)));
  if (!known) return Fail(ERROR_INSUFFICIENT_BUFFER);
  OSVERSIONINFOEXW answer = {};
  answer.dwOSVersionInfoSize = version->dwOSVersionInfoSize;
  answer.dwMajorVersion = os.major;
  answer.dwMinorVersion = os.minor;
  answer.dwPlatformId = os.platformId;
  if (os.servicePack > 0) {
    CopyTerminated(u"Service Pack " + ToUtf16(std::to_string(os.servicePack)), answer.szCSDVersion,
                   std::size(answer.szCSDVersion));
  }
  answer.wServicePackMajor = static_cast<WORD>(os.servicePack);
  answer.wProductType = os.productType;
  std::memcpy(static_cast<void*>(version), &answer, version->dwOSVersionInfoSize);
  return TRUE;
}
