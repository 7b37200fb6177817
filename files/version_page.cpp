// The version page: product picture, package version, and the versions of the companion modules.
#include <windows.h>
#include <shellapi.h>
#include <winver.h>

#include "driver/drawing.h"
#include "driver/text.h"
#include "resources/resource.h"
#include "sheets/page_handlers.h"
#include "sheets/page_procs.h"

namespace kestrel {
namespace {

constexpr WCHAR kProductLine[] = TEXT("Kestrel(QM610r) Printer Driver for Windows (x86)");
constexpr WCHAR kPackageVersion[] = TEXT("14.0.1.20");
constexpr WCHAR kLegalNotice[] = TEXT(
    "Copyright (C) VELA Corporation. All rights reserved.\n"
    "QM610r and Kestrel are names of products of VELA Corporation.");
constexpr WCHAR kSupportAddress[] = TEXT("https://www.vela.example/support/qm610r/");
constexpr int kTextLength = 128;

// A companion module and the static control that shows its version.
struct ModuleVersion {
  WCHAR file[24];
  int control;
};

constexpr ModuleVersion ModuleVersionTable[] = {
    {TEXT("QM6_1rLMNT.DLL"), IDC_VERSION_LANGUAGE_MONITOR},
    {TEXT("QM6_1rPM_UI.DLL"), IDC_VERSION_USER_INTERFACE},
    {TEXT("QM6_1rPMCOM.DLL"), IDC_VERSION_COM_PORT_MONITOR},
    {TEXT("QM6_1rPMLAN.DLL"), IDC_VERSION_LAN_PORT_MONITOR},
};

// Formats the file version of a module as "3.1.0.255". Returns false when the file or its version
// resource is missing.
bool ReadFileVersion(const WCHAR* path, WCHAR (&out)[kTextLength]) {
  DWORD ignored = 0;
  const DWORD size = GetFileVersionInfoSizeW(path, &ignored);
  if (size == 0) return false;
  const HeapBlock<BYTE> data(size);
  if (!data || !GetFileVersionInfoW(path, 0, size, data.get())) return false;
  void* value = nullptr;
  UINT length = 0;
  if (!VerQueryValueW(data.get(), TEXT("\\"), &value, &length) || value == nullptr ||
      length < sizeof(VS_FIXEDFILEINFO))
    return false;
  const auto& version = *static_cast<const VS_FIXEDFILEINFO*>(value);
  wsprintfW(out, TEXT("%d.%d.%d.%d"), HIWORD(version.dwFileVersionMS),
            LOWORD(version.dwFileVersionMS), HIWORD(version.dwFileVersionLS),
            LOWORD(version.dwFileVersionLS));
  return true;
}

void ShowModuleVersions(HWND page) {
  WCHAR directory[MAX_PATH] = {};
  if (GetSystemDirectoryW(directory, MAX_PATH) == 0) return;
  AppendText(directory, TEXT("\\"));
  for (const ModuleVersion& module : ModuleVersionTable) {
    WCHAR path[MAX_PATH];
    CopyText(path, directory);
    AppendText(path, module.file);
    WCHAR version[kTextLength];
    if (ReadFileVersion(path, version)) SetDlgItemTextW(page, module.control, version);
  }
}

void FillPage(HWND page, DriverUiData&) {
  WCHAR product[kTextLength];
  wsprintfW(product, TEXT("%s\nVersion %s"), kProductLine, kPackageVersion);
  SetDlgItemTextW(page, IDC_VERSION_PRODUCT, product);
  SetDlgItemTextW(page, IDC_VERSION_NOTICE, kLegalNotice);
  ShowModuleVersions(page);
}

void DrawProduct(const DRAWITEMSTRUCT& item) {
  if (item.CtlID != IDC_VERSION_PICTURE || !(item.itemAction & ODA_DRAWENTIRE)) return;
  RECT client;
  if (!GetClientRect(item.hwndItem, &client)) return;
  const Picture picture(item.hDC, IDB_PRODUCT);
  if (!picture) return;
  BitBlt(item.hDC, (client.right - picture.width()) / 2, (client.bottom - picture.height()) / 2,
         picture.width(), picture.height(), picture.dc(), 0, 0, SRCCOPY);
}

void OnCommand(HWND, DriverUiData&, int control, int notification) {
  if (control != IDC_VERSION_WEBSITE || notification != BN_CLICKED) return;
  ShellExecuteW(nullptr, TEXT("open"), kSupportAddress, nullptr, nullptr, SW_SHOW);
}

INT_PTR OnOther(HWND page, DriverUiData&, UINT message, WPARAM, LPARAM lParam) {
  switch (message) {
    case WM_DRAWITEM:
      DrawProduct(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
      return TRUE;
    case WM_CLOSE:
      EndDialog(page, 1);
      return TRUE;
    default:
      return FALSE;
  }
}

constexpr PageHandlers kPage = {.create = FillPage, .command = OnCommand, .other = OnOther};

}  // namespace

INT_PTR CALLBACK VersionPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
  return HandlePageMessage(kPage, page, message, wParam, lParam);
}

}  // namespace kestrel
