// Security identifiers and the calling token.
#include <cstdlib>
#include <cstring>

#include "platform/machine.h"

using namespace platform;

namespace {

constexpr BYTE kMaximum = 8;
constexpr BYTE kNtAuthority[6] = SECURITY_NT_AUTHORITY;

struct Sid {
  BYTE revision;
  BYTE count;
  BYTE authority[6];
  DWORD parts[kMaximum];
};

bool IsBuiltInGroup(const Sid& sid, DWORD group) {
  return std::memcmp(sid.authority, kNtAuthority, sizeof(kNtAuthority)) == 0 && sid.count == 2 &&
         sid.parts[0] == SECURITY_BUILTIN_DOMAIN_RID && sid.parts[1] == group;
}

}  // namespace

BOOL WINAPI AllocateAndInitializeSid(PSID_IDENTIFIER_AUTHORITY authority, BYTE count, DWORD part0,
                                     DWORD part1, DWORD part2, DWORD part3, DWORD part4,
                                     DWORD part5, DWORD part6, DWORD part7, PSID* out) {
  if (authority == nullptr || out == nullptr || count > kMaximum) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return FALSE;
  }
  auto* sid = static_cast<Sid*>(HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, sizeof(Sid)));
  if (sid == nullptr) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return FALSE;
  }
  sid->revision = 1;
  sid->count = count;
  std::memcpy(sid->authority, authority->Value, sizeof(sid->authority));
  const DWORD parts[kMaximum] = {part0, part1, part2, part3, part4, part5, part6, part7};
  std::memcpy(sid->parts, parts, count * sizeof(DWORD));
  *out = sid;
  return TRUE;
}

BOOL WINAPI CheckTokenMembership(HANDLE, PSID sid, PBOOL isMember) {
  if (sid == nullptr || isMember == nullptr) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return FALSE;
  }
  const auto& group = *static_cast<const Sid*>(sid);
  *isMember =
      IsBuiltInGroup(group, DOMAIN_ALIAS_RID_USERS) ||
      (IsBuiltInGroup(group, DOMAIN_ALIAS_RID_ADMINS) && Machine::Current().administrator());
  return TRUE;
}

PVOID WINAPI FreeSid(PSID sid) {
  HeapFree(GetProcessHeap(), 0, sid);
  return nullptr;
}
