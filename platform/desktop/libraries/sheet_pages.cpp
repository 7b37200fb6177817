// Pages of property sheets: making and destroying them.
#include <cstring>
#include <memory>
#include <unordered_map>

#include "platform/desktop/libraries/sheet.h"
#include "platform/machine.h"
#include "platform/system/resources.h"

namespace platform {
namespace {

std::unordered_map<HPROPSHEETPAGE, std::unique_ptr<_PSP>>& Pages() {
  static std::unordered_map<HPROPSHEETPAGE, std::unique_ptr<_PSP>> pages;
  return pages;
}

// The tab bears the page's title when it has one, else its template's caption.
bool ReadShape(_PSP& made) {
  const PROPSHEETPAGEW& page = made.page();
  if ((page.dwFlags & PSP_DLGINDIRECT) || !IS_INTRESOURCE(page.pszTemplate)) return false;
  const WORD id = LOWORD(reinterpret_cast<ULONG_PTR>(page.pszTemplate));
  const auto data = FindResourceBytes(page.hInstance, kResourceDialog, id);
  TemplateInfo info;
  if (!ReadTemplateInfo(data.data(), data.size(), info)) return false;
  made.title = info.caption;
  made.width = info.width;
  made.height = info.height;
  if ((page.dwFlags & PSP_USETITLE) && page.pszTitle) {
    WCHAR text[128] = {};
    if (!IS_INTRESOURCE(page.pszTitle))
      made.title = page.pszTitle;
    else if (LoadStringW(page.hInstance, LOWORD(reinterpret_cast<ULONG_PTR>(page.pszTitle)), text,
                         128) > 0)
      made.title = text;
  }
  return true;
}

}  // namespace

int LivePropertySheetPages() { return static_cast<int>(Pages().size()); }

bool IsPropertySheetPage(HPROPSHEETPAGE page) { return Pages().count(page) != 0; }

}  // namespace platform

using namespace platform;

// A page whose template is missing is made all the same; it fails when a sheet wants to show it.
HPROPSHEETPAGE WINAPI CreatePropertySheetPageW(LPCPROPSHEETPAGEW page) {
  if (!page || page->dwSize < sizeof(PROPSHEETPAGEW)) return nullptr;
  if (Machine::Current().faults.Strike(Fault::kWindow)) return nullptr;
  auto made = std::make_unique<_PSP>();
  made->block.resize(page->dwSize);
  std::memcpy(made->block.data(), page, page->dwSize);
  ReadShape(*made);
  const HPROPSHEETPAGE handle = made.get();
  Pages().emplace(handle, std::move(made));
  return handle;
}

BOOL WINAPI DestroyPropertySheetPage(HPROPSHEETPAGE page) {
  const auto found = Pages().find(page);
  if (found == Pages().end()) return FALSE;
  if (found->second->window) DestroyWindow(found->second->window);
  Pages().erase(page);
  return TRUE;
}
