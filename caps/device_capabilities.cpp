#include <windows.h>
#include <winddiui.h>

#include <algorithm>
#include <cstring>
#include <iterator>

#include "driver/device_tables.h"
#include "driver/handles.h"
#include "driver/resolve_settings.h"
#include "driver/text.h"
#include "paper/paper_records.h"
#include "paper/paper_table.h"

using namespace kestrel;

namespace {

constexpr DWORD kUnsupported = static_cast<DWORD>(-1);
constexpr size_t kNameSlot = 64;     // units of a paper or media name
constexpr size_t kBinNameSlot = 24;  // units of a bin name

// Extents in tenths of a millimetre.
constexpr POINT kMinimumExtent = {kLabelWidths.minimum, kLabelLengths.minimum};
constexpr POINT kMaximumExtent = {kLabelWidths.maximum, kLabelLengths.maximum};

// Writes elements of fixed size one after another. Writes nothing when there is no buffer. The
// caller's buffer may have any alignment.
class Elements {
 public:
  explicit Elements(void* output) : next_(static_cast<BYTE*>(output)) {}

  template <typename T>
  void Put(const T& element) {
    if (next_ == nullptr) return;
    std::memcpy(next_, &element, sizeof element);
    next_ += sizeof element;
  }
  template <size_t Slot>
  void PutName(const WCHAR* name) {
    WCHAR slot[Slot] = {};
    CopyText(slot, name);
    Put(slot);
  }

 private:
  BYTE* next_;
};

DWORD PaperIds(const DriverSettingsBlock& block, Elements output) {
  const int count = PaperEntryCount(block);
  for (int entry = 0; entry < count; ++entry) output.Put(PaperEntryId(block, entry));
  return static_cast<DWORD>(count);
}

DWORD PaperSizes(const DriverSettingsBlock& block, Elements output) {
  const int count = PaperEntryCount(block);
  for (int entry = 0; entry < count; ++entry)
    output.Put(PaperSizeTenths(PaperOfEntry(block, entry)));
  return static_cast<DWORD>(count);
}

DWORD PaperNames(const DriverSettingsBlock& block, int limit, Elements output) {
  const int count = std::min(limit, PaperEntryCount(block));
  for (int entry = 0; entry < count; ++entry) {
    WCHAR slot[kNameSlot] = {};
    PaperEntryName(block, entry, slot, kNameSlot);
    output.Put(slot);
  }
  return static_cast<DWORD>(count);
}

DWORD Extent(const POINT& extent, Elements output) {
  output.Put(extent);
  return static_cast<DWORD>(
      MAKELONG(static_cast<DWORD_PTR>(extent.x), static_cast<DWORD_PTR>(extent.y)));
}

DWORD BinIds(Elements output) {
  for (const Bin& bin : BinTable) output.Put(bin.id);
  return DWORD{std::size(BinTable)};
}

DWORD BinNames(Elements output) {
  for (const Bin& bin : BinTable) output.PutName<kBinNameSlot>(bin.name);
  return DWORD{std::size(BinTable)};
}

DWORD Resolutions(const DriverSettingsBlock& block, Elements output) {
  const Resolution& resolution = ResolutionOf(block.Printer.HeadDensity);
  output.Put(POINT{resolution.x, resolution.y});  // two LONGs
  return 1;
}

DWORD MediaNames(Elements output) {
  for (const MediaType& media : MediaTypeTable) output.PutName<kNameSlot>(media.name);
  return DWORD{std::size(MediaTypeTable)};
}

DWORD MediaIds(Elements output) {
  for (const MediaType& media : MediaTypeTable) output.Put(media.id);
  return DWORD{std::size(MediaTypeTable)};
}

DWORD QueryCapability(const DriverSettingsBlock& block, WORD capability, Elements output) {
  switch (capability) {
    case DC_FIELDS:
      return block.Record.Public.dmFields;
    case DC_PAPERS:
      return PaperIds(block, output);
    case DC_PAPERSIZE:
      return PaperSizes(block, output);
    case DC_MINEXTENT:
      return Extent(kMinimumExtent, output);
    case DC_MAXEXTENT:
      return Extent(kMaximumExtent, output);
    case DC_BINS:
      return BinIds(output);
    case DC_SIZE:
      return block.Record.Public.dmSize;
    case DC_EXTRA:
      return block.Record.Public.dmDriverExtra;
    case DC_VERSION:
      return block.Record.Public.dmSpecVersion;
    case DC_DRIVER:
      return block.Record.Public.dmDriverVersion;
    case DC_BINNAMES:
      return BinNames(output);
    case DC_ENUMRESOLUTIONS:
      return Resolutions(block, output);
    case DC_TRUETYPE:
      return DCTT_BITMAP;
    case DC_PAPERNAMES:
    case DC_MEDIAREADY:
      return PaperNames(block, kPaperCapacity + 1, output);
    case DC_ORIENTATION:
      return 90;
    case DC_COPIES:
      return 32767;
    case DC_EMF_COMPLIANT:
      return 1;
    case DC_MEDIATYPENAMES:
      return MediaNames(output);
    case DC_MEDIATYPES:
      return MediaIds(output);
    case DC_DUPLEX:
    case DC_FILEDEPENDENCIES:
    case DC_COLLATE:
    case DC_STAPLE:
    case DC_COLORDEVICE:
      return 0;
    default:
      return kUnsupported;
  }
}

// Returns the printer's settings merged with the caller's record; empty when out of memory.
HeapBlock<DriverSettingsBlock> ResolvedBlock(HANDLE printer, const WCHAR* name,
                                             const DEVMODEW* record) {
  auto block = HeapBlock<DriverSettingsBlock>::One();
  if (block) ResolveBlock(*block, RecordView(record), printer, name);
  return block;
}

}  // namespace

extern "C" DWORD WINAPI DrvDeviceCapabilities(HANDLE hPrinter, LPWSTR pDeviceName, WORD wCapability,
                                              PVOID pOutput, DEVMODEW* pdm) {
  const auto block = ResolvedBlock(hPrinter, pDeviceName, pdm);
  return block ? QueryCapability(*block, wCapability, Elements(pOutput)) : kUnsupported;
}

extern "C" DWORD WINAPI DrvSplDeviceCaps(HANDLE hPrinter, LPWSTR pDeviceName, WORD wCapability,
                                         PVOID pOutput, DWORD cchBuf, DEVMODEW* pdm) {
  const auto block = ResolvedBlock(hPrinter, pDeviceName, pdm);
  if (!block || (wCapability != DC_PAPERNAMES && wCapability != DC_MEDIAREADY)) return kUnsupported;
  if (pOutput == nullptr) return static_cast<DWORD>(PaperEntryCount(*block));
  const int slots = static_cast<int>(std::min<std::size_t>(cchBuf / kNameSlot, kPaperCapacity + 1));
  return slots == 0 ? kUnsupported : PaperNames(*block, slots, Elements(pOutput));
}
