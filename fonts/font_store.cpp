#include "fonts/font_store.h"

#include <algorithm>
#include <cstring>

#include "driver/handles.h"
#include "driver/printer_access.h"

namespace kestrel {
namespace {

constexpr WCHAR kNumberValue[] = TEXT("CreateFont Number");
constexpr WCHAR kDataValue[] = TEXT("CreateFont Data");

// Returns the record count of "CreateFont Number"; 0 when the value is missing or invalid.
DWORD ReadRecordCount(HANDLE printer) {
  FontNumber number = {};
  DWORD size = 0;
  if (!ReadPrinterData(printer, kNumberValue, &number, sizeof(number), &size)) return 0;
  if (size != sizeof(number) || number.Version != kFontDataVersion) return 0;
  return number.Total;
}

// The result of one attempt to read "CreateFont Data".
struct StoredRecords {
  HeapBlock<FontRecord> records;
  DWORD count = 0;      // complete records among the bytes that were read
  bool matches = true;  // the data has the size that "CreateFont Number" specifies
};

// A save writes the number before the data. A reader in between finds the two values of different
// saves and has to read both again.
constexpr int kReadAttempts = 3;

StoredRecords ReadRecords(HANDLE printer) {
  StoredRecords stored;
  const DWORD expected = ReadRecordCount(printer) * static_cast<DWORD>(sizeof(FontRecord));
  if (expected == 0) return stored;
  stored.records = HeapBlock<FontRecord>(expected);
  if (!stored.records) return stored;
  DWORD size = 0;
  const bool read = ReadPrinterData(printer, kDataValue, stored.records.get(), expected, &size);
  stored.matches = read && size == expected;
  if (read) stored.count = std::min(size, expected) / DWORD{sizeof(FontRecord)};
  return stored;
}

// Appends the stored records to the list of their kind, in stored order. Drops records of an
// unknown kind and those beyond the capacity.
void AppendRecords(FontStore& store, const FontRecord* records, DWORD count) {
  for (DWORD i = 0; i < count; ++i) {
    const FontRecord& record = records[i];
    if (record.FontKind == kDecorativeFont && store.DecoFontNum < kFontCapacity) {
      store.DecoFonts[store.DecoFontNum++] = record;
    } else if (record.FontKind == kBarcodeFont && store.BarFontNum < kFontCapacity) {
      store.BarFonts[store.BarFontNum++] = record;
    }
  }
}

// Returns the number of decorative fonts that fit beside all barcode fonts within the limit.
int CountSavedDecoFonts(const FontStore& store) {
  const int bar = std::clamp<int>(store.BarFontNum, 0, kFontCapacity);
  return std::clamp<int>(store.DecoFontNum, 0, kFontCapacity - bar);
}

}  // namespace

bool LoadFontStore(FontStore& store, HANDLE printer, HANDLE heap) {
  store = {};
  constexpr SIZE_T kListSize = kFontCapacity * sizeof(FontRecord);
  store.DecoFonts = static_cast<FontRecord*>(HeapAlloc(heap, HEAP_ZERO_MEMORY, kListSize));
  store.BarFonts = static_cast<FontRecord*>(HeapAlloc(heap, HEAP_ZERO_MEMORY, kListSize));
  if (store.DecoFonts == nullptr || store.BarFonts == nullptr) {
    FreeFontStore(store, heap);
    return false;
  }
  store.Loaded = true;

  StoredRecords stored = ReadRecords(printer);
  for (int i = 1; i < kReadAttempts && !stored.matches; ++i) stored = ReadRecords(printer);
  AppendRecords(store, stored.records.get(), stored.count);
  return true;
}

void FreeFontStore(FontStore& store, HANDLE heap) {
  if (store.DecoFonts != nullptr) HeapFree(heap, 0, store.DecoFonts);
  if (store.BarFonts != nullptr) HeapFree(heap, 0, store.BarFonts);
  store = {};
}

bool SaveFontStore(HANDLE printer, const FontStore& store) {
  if (!store.Loaded) return false;
  const size_t bar = static_cast<size_t>(std::clamp<int>(store.BarFontNum, 0, kFontCapacity));
  const size_t deco = static_cast<size_t>(CountSavedDecoFonts(store));
  const size_t total = deco + bar;
  const HeapBlock<FontRecord> records(kFontCapacity * sizeof(FontRecord));
  if (!records) {
    if (total != 0) return false;
    const uint16_t none = 0;
    WritePrinterData(printer, kNumberValue, REG_BINARY, &none, sizeof(none));
    WritePrinterData(printer, kDataValue, REG_BINARY, &none, 0);
    return true;
  }
  std::memcpy(records.get(), store.DecoFonts, deco * sizeof(FontRecord));
  std::memcpy(records.get() + deco, store.BarFonts, bar * sizeof(FontRecord));
  const FontNumber number = {static_cast<uint16_t>(total), kFontDataVersion, 0};
  WritePrinterData(printer, kNumberValue, REG_BINARY, &number, sizeof(number));
  WritePrinterData(printer, kDataValue, REG_BINARY, records.get(),
                   static_cast<DWORD>(total * sizeof(FontRecord)));
  return true;
}

FontRecord CopyForEditing(const FontRecord& record) {
  constexpr int kLast = kFontNameLength - 1;
  FontRecord copy = record;
  copy.FontName[kLast] = 0;
  if (copy.FontKind == kBarcodeFont) {
    copy.Bar.BarFontName[kLast] = 0;
  } else {
    copy.Deco.DecoFontName[kLast] = 0;
    copy.Deco.ResiFontName[kLast] = 0;
  }
  return copy;
}

bool CanRegisterMore(const FontStore& store) {
  return store.DecoFontNum + store.BarFontNum < kFontCapacity;
}

}  // namespace kestrel
