// The common file dialogs, found at run time in "comdlg32.dll".
#pragma once

#ifndef _WINDOWS_
#error "<windows.h> comes before this header, as on Windows"
#endif

struct OPENFILENAMEW {
  DWORD lStructSize;
  HWND hwndOwner;
  HINSTANCE hInstance;
  LPCWSTR lpstrFilter;
  LPWSTR lpstrCustomFilter;
  DWORD nMaxCustFilter;
  DWORD nFilterIndex;
  LPWSTR lpstrFile;
  DWORD nMaxFile;
  LPWSTR lpstrFileTitle;
  DWORD nMaxFileTitle;
  LPCWSTR lpstrInitialDir;
  LPCWSTR lpstrTitle;
  DWORD Flags;
  WORD nFileOffset;
  WORD nFileExtension;
  LPCWSTR lpstrDefExt;
  LPARAM lCustData;
  UINT_PTR(CALLBACK* lpfnHook)(HWND, UINT, WPARAM, LPARAM);
  LPCWSTR lpTemplateName;
  void* pvReserved;
  DWORD dwReserved;
  DWORD FlagsEx;
};
using LPOPENFILENAMEW = OPENFILENAMEW*;
static_assert(HasDocumentedSize<OPENFILENAMEW>(88, 152));

constexpr DWORD OFN_OVERWRITEPROMPT = 0x00000002;
constexpr DWORD OFN_HIDEREADONLY = 0x00000004;
constexpr DWORD OFN_PATHMUSTEXIST = 0x00000800;
constexpr DWORD OFN_FILEMUSTEXIST = 0x00001000;
constexpr DWORD OFN_LONGNAMES = 0x00200000;

extern "C" {
BOOL WINAPI GetOpenFileNameW(LPOPENFILENAMEW file);
BOOL WINAPI GetSaveFileNameW(LPOPENFILENAMEW file);
// 0: the title was copied; above 0: the buffer size it needs; below 0: no valid file name.
SHORT WINAPI GetFileTitleW(LPCWSTR path, LPWSTR title, WORD size);
}
