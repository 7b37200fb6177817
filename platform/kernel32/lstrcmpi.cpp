#include <windows.h>

#include "platform/machine/text.h"

int WINAPI lstrcmpiW(LPCWSTR a, LPCWSTR b) {
  const int order =
      platform::FoldCase(platform::View(a)).compare(platform::FoldCase(platform::View(b)));
  return order < 0 ? -1 : order > 0 ? 1 : 0;
}
