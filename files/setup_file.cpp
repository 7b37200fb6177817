#include "files/setup_file.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "driver/default_settings.h"
#include "driver/halftone_info.h"
#include "driver/text.h"
#include "files/settings_keys.h"

namespace kestrel {

namespace {

// The platform searches a bare name in the Windows directory.
constexpr WCHAR kSetupFile[] = TEXT("SetupKit_QM6_1R.INI");
constexpr size_t kReadLength = 200;   // units, terminator included
constexpr size_t kValueLength = 100;  // units of a value, terminator included

// The value of a key that the file lacks.
struct DefaultText {
  const char* key;
  const WCHAR* text;
};
constexpr DefaultText kDefaultTexts[] = {
    {"Copies", TEXT("1")},    {"PrintSpeed", TEXT("1")},    {"Dither", TEXT("2")},
    {"ColorText", TEXT("1")}, {"CompulsorySet", TEXT("0")}, {"SYNC", TEXT("0")},
    {"Position", TEXT("0")},
};

const WCHAR* FindDefaultText(const char* key) {
  for (const DefaultText& row : kDefaultTexts)
    if (std::strcmp(row.key, key) == 0) return row.text;
  return TEXT("");
}

// Reads the value of a key, truncated to kValueLength. Returns false when it is empty.
bool ReadValue(const WCHAR* section, const char* key, WCHAR (&value)[kReadLength]) {
  WCHAR wideKey[64];
  std::copy_n(key, std::strlen(key) + 1, wideKey);
  GetPrivateProfileStringW(section, wideKey, FindDefaultText(key), value, DWORD{kReadLength},
                           kSetupFile);
  value[kValueLength - 1] = 0;
  return value[0] != 0;
}

// Parses the text of a value, which it may modify, and stores the result in a field.
using StoreText = void (*)(void* field, WCHAR* text);

template <typename T>
void StoreNumber(void* field, WCHAR* text) {
  const T value = static_cast<T>(IntegerFromText(text));
  std::memcpy(field, &value, sizeof value);
}

// The text is "x,y,Y"; a single number is Y, two numbers are x and Y.
void StoreTriple(void* field, WCHAR* text) {
  CIECHROMA triple;
  std::memcpy(&triple, field, sizeof triple);
  for (LONG* member : {&triple.x, &triple.y}) {
    WCHAR* comma = std::find(text, text + TextLength(text), WCHAR{','});
    if (*comma == 0) break;
    *comma = 0;
    *member = IntegerFromText(text);
    text = comma + 1;
  }
  triple.Y = IntegerFromText(text);
  std::memcpy(field, &triple, sizeof triple);
}

void StorePaperName(void* field, WCHAR* text) {
  WCHAR name[kPaperNameLength] = {};
  CopyText(name, text);
  std::memcpy(field, name, sizeof name);
}

// Reads a key into its field. Returns false without changing the field when the value is empty.
bool ImportKey(const WCHAR* section, const SettingsKey& key, void* record, StoreText store) {
  WCHAR text[kReadLength];
  if (!ReadValue(section, key.name, text)) return false;
  store(FieldOf(record, key), text);
  return true;
}

void ImportKeys(const WCHAR* section, SettingsKeys keys, void* record,
                StoreText store = StoreNumber<int16_t>) {
  for (const SettingsKey& key : keys) ImportKey(section, key, record, store);
}

void ImportPaper(const WCHAR* section, PaperInfo& paper) {
  ImportKey(section, {"PaperName", offsetof(PaperInfo, PaperName)}, &paper, StorePaperName);
  ImportKeys(section, PaperKeys(), &paper);
}

void ImportPapers(PrinterSettingsPart& printer) {
  for (int i = 0; i < printer.PaperNum; ++i) {
    WCHAR section[] = TEXT("PAPER00");
    section[5] = static_cast<WCHAR>('0' + i / 10);
    section[6] = static_cast<WCHAR>('0' + i % 10);
    ImportPaper(section, printer.Papers[i]);
  }
}

void ImportHalftone(DriverSettingsBlock& block) {
  DEVHTINFO info = HalftoneInfo(block);
  ImportKeys(kHalftoneSection, HalftoneKeys(), &info, StoreNumber<LONG>);
  ImportKeys(kHalftoneSection, ChromaticityKeys(), &info, StoreTriple);
  ImportKeys(kHalftoneSection, HalftoneGammaKeys(), &info, StoreNumber<LONG>);
  SetHalftoneInfo(block, info);
}

// The set-up tool writes the prefix of one key twice, unlike the backup file.
void ImportColorAdjustment(COLORADJUSTMENT& adjustment) {
  for (SettingsKey key : ColorAdjustKeys()) {
    if (key.offset == offsetof(COLORADJUSTMENT, caIlluminantIndex))
      key.name = "ColorAdjust.ColorAdjust.IlluminantIndex";
    ImportKey(kHalftoneSection, key, &adjustment, StoreNumber<int16_t>);
  }
}

// Position is 1 when its value is present but empty; other fields do not change then.
void ImportPosition(PrivateDevMode& settings) {
  if (!ImportKey(kDriverSection, kPositionKey, &settings, StoreNumber<int16_t>))
    settings.Position = 1;
}

// Returns the number of papers, or -1 when the file is missing or invalid. A count below 0 or above
// the capacity is invalid.
int ReadPaperCount() {
  WCHAR text[kReadLength];
  if (!ReadValue(kVersionSection, "DriverName", text)) return -1;
  if (!ReadValue(kPaperNumSection, "PaperNum", text)) return -1;
  const LONG count = IntegerFromText(text);
  return count <= kPaperCapacity ? std::max<LONG>(count, -1) : -1;
}

}  // namespace

bool ImportSetupFile(DriverSettingsBlock& block, HANDLE printer, const WCHAR* name) {
  const int papers = ReadPaperCount();
  if (papers < 0) return false;
  PrivateDevMode& settings = block.Record.Private;
  block.Printer.PaperNum = static_cast<int16_t>(papers);
  ImportPapers(block.Printer);
  ImportKeys(kDeviceSection, DeviceKeys(), &block.Printer);
  ImportHalftone(block);
  ImportColorAdjustment(settings.ColorAdjust);
  ImportKeys(kDriverSection, RequiredDriverKeys(), &settings);
  ImportKey(kDriverSection, kCompulsoryKey, &settings, StoreNumber<int16_t>);
  ImportPaper(kFreePaperSection, settings.FreePaper);
  ImportKey(kSyncSection, {"SYNC", offsetof(PrivateDevMode, nTSMode)}, &settings,
            StoreNumber<int16_t>);
  ImportPosition(settings);
  std::fill(std::begin(settings.Reserved1), std::end(settings.Reserved1), int16_t{0});
  FillPublicFields(block, printer, name);
  return true;
}

}  // namespace kestrel
