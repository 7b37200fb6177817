#include "sheets/page_list.h"

#include <iterator>

#include "resources/resource.h"
#include "sheets/page_procs.h"

namespace kestrel {
namespace {

struct ListedPage {
  WORD templateId;
  DLGPROC procedure;
  bool inPrinterSheet;
};

constexpr ListedPage kPages[] = {
    {IDD_VERSION, VersionPageProc, true},         {IDD_PAPER, PaperPageProc, false},
    {IDD_OPERATION, OperationPageProc, false},    {IDD_DEVICE, DevicePageProc, false},
    {IDD_CREATE_FONT, CreateFontPageProc, false}, {IDD_UTILITY, UtilityPageProc, false},
};
static_assert(std::size(kPages) <= kPageCapacity);

}  // namespace

void BuildPageList(DriverUiData& session, SessionMode mode) {
  session.pageCount = 0;
  for (const ListedPage& page : kPages) {
    if (mode == kPrinterSession && !page.inPrinterSheet) continue;
    PageEntry& entry = session.pages[session.pageCount++];
    entry.kind = kPageDialog;
    entry.procedure = page.procedure;
    entry.templateId = page.templateId;
  }
  session.flags |= kMayStorePrinterPart;
}

}  // namespace kestrel
