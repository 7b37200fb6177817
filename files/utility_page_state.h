// What the utility page keeps in the session: the two names of backup files.
#pragma once

#include <windows.h>

namespace kestrel {

constexpr int kBackupNameLength = 260;      // units in the session, terminator included
constexpr DWORD kBackupNameDataSize = 260;  // bytes of a name that cross to printer data

struct UtilityPageState {
  WCHAR readName[kBackupNameLength];
  WCHAR writeName[kBackupNameLength];
};

}  // namespace kestrel
