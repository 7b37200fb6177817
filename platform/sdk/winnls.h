// Code pages.
#pragma once

#include <windef.h>

constexpr UINT CP_ACP = 0;
constexpr UINT CP_UTF8 = 65001;

constexpr DWORD WC_NO_BEST_FIT_CHARS = 0x00000400;

extern "C" {
int WINAPI WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR text, int units, LPSTR out,
                               int size, LPCSTR defaultCharacter, LPBOOL usedDefault);
int WINAPI MultiByteToWideChar(UINT codePage, DWORD flags, LPCSTR text, int bytes, LPWSTR out,
                               int size);
BOOL WINAPI IsDBCSLeadByteEx(UINT codePage, BYTE byte);
}
