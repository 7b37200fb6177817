#include "files/setup_file.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <span>

#include "driver/default_settings.h"
#include "driver/text.h"
#include "files/backup_fields.h"

namespace kestrel {

namespace {

// A bare name: the platform looks for it in the Windows directory.
constexpr WCHAR kSetupFile[] = TEXT("SetupKit_QM6_1R.INI");
constexpr size_t kReadLength = 200;
constexpr size_t kValueLength = 100;  // units with the terminator

struct DefaultText {
  const char* key;
  const WCHAR* text;
};
constexpr DefaultText kDefaultTexts[] = {
    {"Copies", TEXT("1")},    {"PrintSpeed", TEXT("1")},    {"Dither", TEXT("2")},
    {"ColorText", TEXT("1")}, {"CompulsorySet", TEXT("0")}, {"SYNC", TEXT("0")},
    {"Position", TEXT("0")},
};

const WCHAR* DefaultTextOf(const char* key) {
  for (const DefaultText& row : kDefaultTexts)
    if (std::strcmp(row.key, key) == 0) return row.text;
  return TEXT("");
}

// The value of a key, cut to its length limit; false when there is no text.
bool ReadValue(const WCHAR* section, const char* key, WCHAR (&value)[kReadLength]) {
  WCHAR wideKey[64];
  std::copy_n(key, std::strlen(key) + 1, wideKey);
  const DWORD copied = GetPrivateProfileStringW(section, wideKey, DefaultTextOf(key), value,
                                                DWORD{kReadLength}, kSetupFile);
  value[kValueLength - 1] = 0;
  return copied != 0 && value[0] != 0;
}

template <typename T>
void Store(BYTE* field, LONG number) {
  const T value = static_cast<T>(number);
  std::memcpy(field, &value, sizeof value);
}

// "x,y,Y": a single number is Y, two are x and Y.
void StoreTriple(BYTE* field, WCHAR* text) {
  constexpr size_t kMember = sizeof(LONG);
  static_assert(offsetof(CIECHROMA, y) == kMember && offsetof(CIECHROMA, Y) == 2 * kMember);
  for (size_t member = 0; member < 2; ++member) {
    WCHAR* comma = std::find(text, text + TextLength(text), WCHAR{','});
    if (*comma == 0) break;
    *comma = 0;
    Store<LONG>(field + member * kMember, IntegerFromText(text));
    text = comma + 1;
  }
  Store<LONG>(field + 2 * kMember, IntegerFromText(text));
}

void StoreName(BYTE* field, const WCHAR* text) {
  WCHAR name[kPaperNameLength] = {};
  CopyText(name, text);
  std::memcpy(field, name, sizeof name);
}

// Reads one key into the field at its offset from base. Without a text the field stays.
bool ImportKey(const WCHAR* section, const FieldKey& key, void* base) {
  WCHAR text[kReadLength];
  if (!ReadValue(section, key.key, text)) return false;
  BYTE* field = static_cast<BYTE*>(base) + key.offset;
  switch (key.type) {
    case FieldType::kInt16:
      Store<int16_t>(field, IntegerFromText(text));
      break;
    case FieldType::kInt32:
      Store<LONG>(field, IntegerFromText(text));
      break;
    case FieldType::kTriple:
      StoreTriple(field, text);
      break;
    case FieldType::kName:
      StoreName(field, text);
      break;
  }
  return true;
}

void ImportKeys(const WCHAR* section, std::span<const FieldKey> keys, void* base) {
  for (const FieldKey& key : keys) ImportKey(section, key, base);
}

void ImportPapers(PrinterSettingsPart& printer) {
  for (int i = 0; i < printer.PaperNum; ++i) {
    WCHAR section[] = TEXT("PAPER00");
    section[5] = static_cast<WCHAR>('0' + i / 10);
    section[6] = static_cast<WCHAR>('0' + i % 10);
    ImportKeys(section, kPaperKeys, &printer.Papers[i]);
  }
}

// The set-up tool writes the prefix of this one key twice.
void ImportColorAdjustment(DriverSettingsBlock& block) {
  FieldKey illuminant = kColorAdjustKeys[kIlluminantKey];
  illuminant.key = "ColorAdjust.ColorAdjust.IlluminantIndex";
  for (const FieldKey& key : kColorAdjustKeys)
    ImportKey(kHalftoneSection, &key == &kColorAdjustKeys[kIlluminantKey] ? illuminant : key,
              &block);
}

// The number of papers, or -1 for a file that is refused. A negative count is refused like one
// above the capacity.
int PaperCountInFile() {
  WCHAR text[kReadLength];
  if (!ReadValue(kVersionSection, "DriverName", text)) return -1;
  if (!ReadValue(kPaperCountSection, kPaperCountKey.key, text)) return -1;
  bool fits = false;
  const LONG count = IntegerFromText(text, &fits);
  return fits && count <= kPaperCapacity ? std::max<LONG>(count, -1) : -1;
}

}  // namespace

bool ImportSetupFile(DriverSettingsBlock& block, HANDLE printer, const WCHAR* name) {
  const int papers = PaperCountInFile();
  if (papers < 0) return false;
  PrivateDevMode& settings = block.Record.Private;
  block.Printer.PaperNum = static_cast<int16_t>(papers);
  ImportPapers(block.Printer);
  ImportKeys(kDeviceSection, kDeviceKeys, &block);
  ImportKeys(kHalftoneSection, kHalftoneInfoKeys, &block);
  ImportColorAdjustment(block);
  ImportKeys(kDriverSection, kDriverKeys, &block);
  ImportKey(kDriverSection, kCompulsoryKey, &block);
  ImportKeys(kFreePaperSection, kPaperKeys, &settings.FreePaper);
  ImportKey(kSyncSection, kSyncKey, &block);
  if (!ImportKey(kDriverSection, kPositionKey, &block)) settings.Position = 1;
  std::fill(std::begin(settings.Reserved1), std::end(settings.Reserved1), int16_t{0});
  FillPublicFields(block, printer, name);
  return true;
}

}  // namespace kestrel
