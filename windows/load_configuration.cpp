// The load configuration of an image (IMAGE_LOAD_CONFIG_DIRECTORY): where the system's loader finds
// the security cookie, the tables of Control Flow Guard and the flags for loading libraries.
#include <cstddef>
#include <cstdint>

namespace {

// What an indirect call does on a system that has no Control Flow Guard. The loader of one that has
// it replaces the pointers to these functions.
#if defined(__x86_64__)
// The target is in rax.
__attribute__((naked)) void DispatchUnchecked() { __asm__("jmp *%rax"); }
#endif
// The target is in ecx (x86), rcx (x64) or x15 (ARM64); every argument register stays as it is.
__attribute__((naked)) void CheckNothing() { __asm__("ret"); }

}  // namespace

extern "C" {

extern uintptr_t __security_cookie;

// Compiled code calls through these.
using GuardFunction = void (*)();
extern const GuardFunction __guard_check_icall_fptr = CheckNothing;
#if defined(__x86_64__)
extern const GuardFunction __guard_dispatch_icall_fptr = DispatchUnchecked;
#endif

// Made by the linker. The counts and the flags are addresses that stand for a number.
extern const char __guard_fids_table, __guard_fids_count, __guard_flags;
extern const char __guard_iat_table, __guard_iat_count;

#if defined(__i386__)
// An absolute symbol with the number of bytes of the load configuration after its first 64.
extern const char load_configuration_rest[];
#endif

}  // extern "C"

namespace {

constexpr uint16_t kLoadLibrarySearchSystem32 = 0x0800;  // LOAD_LIBRARY_SEARCH_SYSTEM32

// Members that stay 0 on this side of the table of Control Flow Guard have no name.
struct LoadConfiguration {
#if defined(__i386__)
  // Windows XP wants 64 as the directory's size, newer systems the structure's own size here. The
  // linker copies this word into the directory before it adds the symbol's value.
  const char* Size;
  uint32_t unused1[12];  // to CSDVersion, which shares the last word
#else
  uint32_t Size;
  uint32_t unused1[18];
#endif
  uint16_t CSDVersion;
  uint16_t DependentLoadFlags;
  const void* EditList;
  const uintptr_t* SecurityCookie;
  const void* SEHandlerTable;
  uintptr_t SEHandlerCount;
  const GuardFunction* GuardCFCheckFunctionPointer;
  const GuardFunction* GuardCFDispatchFunctionPointer;
  const char* GuardCFFunctionTable;
  const char* GuardCFFunctionCount;
  // 32 bits wide; on 64-bit machines the upper half of this word is the beginning of CodeIntegrity.
  const char* GuardFlags;
  uint32_t unused2[sizeof(void*) == 4 ? 3 : 2];
  const char* GuardAddressTakenIatEntryTable;
  const char* GuardAddressTakenIatEntryCount;
};

}  // namespace

extern "C" {

extern const LoadConfiguration _load_config_used = {
#if defined(__i386__)
    .Size = &load_configuration_rest[64],
#else
    .Size = sizeof(LoadConfiguration),
#endif
    .DependentLoadFlags = kLoadLibrarySearchSystem32,
    .SecurityCookie = &__security_cookie,
    .GuardCFCheckFunctionPointer = &__guard_check_icall_fptr,
#if defined(__x86_64__)
    .GuardCFDispatchFunctionPointer = &__guard_dispatch_icall_fptr,
#endif
    .GuardCFFunctionTable = &__guard_fids_table,
    .GuardCFFunctionCount = &__guard_fids_count,
    .GuardFlags = &__guard_flags,
    .GuardAddressTakenIatEntryTable = &__guard_iat_table,
    .GuardAddressTakenIatEntryCount = &__guard_iat_count,
};

}  // extern "C"

#if defined(__i386__)
static_assert(sizeof(LoadConfiguration) == 112);
static_assert(offsetof(LoadConfiguration, DependentLoadFlags) == 54);
static_assert(offsetof(LoadConfiguration, SecurityCookie) == 60);
static_assert(offsetof(LoadConfiguration, GuardFlags) == 88);
static_assert(offsetof(LoadConfiguration, GuardAddressTakenIatEntryTable) == 104);
#else
static_assert(sizeof(LoadConfiguration) == 176);
static_assert(offsetof(LoadConfiguration, DependentLoadFlags) == 78);
static_assert(offsetof(LoadConfiguration, SecurityCookie) == 88);
static_assert(offsetof(LoadConfiguration, GuardFlags) == 144);
static_assert(offsetof(LoadConfiguration, GuardAddressTakenIatEntryTable) == 160);
#endif
