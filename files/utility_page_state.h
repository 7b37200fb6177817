// The session data of the utility page: the names of the two backup files.
#pragma once

#include <windows.h>

namespace kestrel {

constexpr int kBackupNameLength = 260;      // UTF-16 units, terminator included
constexpr DWORD kBackupNameDataSize = 260;  // bytes of the printer data value: the first 130 units

struct UtilityPageState {
  WCHAR readName[kBackupNameLength];
  WCHAR writeName[kBackupNameLength];
};

}  // namespace kestrel
