// Security identifiers and the calling token.
#include <algorithm>
#include <iterator>

#include "platform/machine/last_error.h"
#include "platform/machine/machine.h"

using namespace platform;

namespace {

// The only property of an identifier that matters here: its built-in group; 0 for any other
// identifier.
struct Sid {
  DWORD builtInGroup;
};

}  // namespace

BOOL WINAPI AllocateAndInitializeSid(PSID_IDENTIFIER_AUTHORITY authority, BYTE count, DWORD part0,
                                     DWORD part1, DWORD, DWORD, DWORD, DWORD, DWORD, DWORD,
                                     PSID* out) {
  if (authority == nullptr || out == nullptr) return Fail(ERROR_INVALID_PARAMETER);
  auto* sid = static_cast<Sid*>(HeapAlloc(GetProcessHeap(), 0, sizeof(Sid)));
  if (sid == nullptr) return Fail(ERROR_NOT_ENOUGH_MEMORY);
  constexpr SID_IDENTIFIER_AUTHORITY kNt = {SECURITY_NT_AUTHORITY};
  const bool builtIn = std::equal(std::begin(kNt.Value), std::end(kNt.Value), authority->Value) &&
                       count == 2 && part0 == SECURITY_BUILTIN_DOMAIN_RID;
  sid->builtInGroup = builtIn ? part1 : 0;
  *out = sid;
  return TRUE;
}

BOOL WINAPI CheckTokenMembership(HANDLE, PSID sid, PBOOL isMember) {
  if (sid == nullptr || isMember == nullptr) return Fail(ERROR_INVALID_PARAMETER);
  const DWORD group = static_cast<const Sid*>(sid)->builtInGroup;
  *isMember = group == DOMAIN_ALIAS_RID_USERS ||
              (group == DOMAIN_ALIAS_RID_ADMINS && Machine::Current().administrator());
  return TRUE;
}

PVOID WINAPI FreeSid(PSID sid) {
  HeapFree(GetProcessHeap(), 0, sid);
  return nullptr;
}
