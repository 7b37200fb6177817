#include <cstring>
#include <iterator>

#include "driver/record_fields.h"
#include "try/answers.h"

namespace kestrel_try {
namespace {

using kestrel::kPrivateOffset;
using kestrel::kRecordSize;
using kestrel::PrivateDevMode;
using kestrel::RecordField;
using kestrel::SettingsRecord;

// A structure inside the record and how the names of its fields begin.
struct Part {
  const char* prefix;
  size_t offset;
  const RecordField* fields;
  size_t count;
};
constexpr Part kParts[] = {
    {"", 0, kestrel::kPublicRecordFields, std::size(kestrel::kPublicRecordFields)},
    {"", kPrivateOffset, kestrel::kPrivateRecordFields, std::size(kestrel::kPrivateRecordFields)},
    {"FreePaper.", kPrivateOffset + offsetof(PrivateDevMode, FreePaper),
     kestrel::kPaperRecordFields, std::size(kestrel::kPaperRecordFields)},
    {"ColorAdjust.", kPrivateOffset + offsetof(PrivateDevMode, ColorAdjust),
     kestrel::kColorRecordFields, std::size(kestrel::kColorRecordFields)},
};

const BYTE* BytesOf(const SettingsRecord& record) { return reinterpret_cast<const BYTE*>(&record); }

template <typename T>
T Read(const BYTE* bytes) {
  T value;
  std::memcpy(&value, bytes, sizeof value);
  return value;
}

bool SameBytes(const BYTE* one, const BYTE* other, size_t size) {
  for (size_t i = 0; i < size; ++i) {
    if (one[i] != other[i]) return false;
  }
  return true;
}

// Returns true when a record's device name is the printer's name up to its first comma, or as much
// of that as fits.
bool HasPrinterName(const Target& target, const DEVMODEW& record) {
  size_t length = 0;
  for (; length + 1 < std::size(record.dmDeviceName); ++length) {
    const WCHAR unit = target.name[length];
    if (unit == 0 || unit == TEXT(',')) break;
    if (record.dmDeviceName[length] != unit) return false;
  }
  return record.dmDeviceName[length] == 0;
}

void WriteField(const Target& target, Json& json, const Part& part, const RecordField& field,
                const SettingsRecord& record) {
  char name[40] = {};
  size_t length = 0;
  for (const char* from = part.prefix; *from != 0; ++from) name[length++] = *from;
  for (const char* from = field.name; *from != 0 && length + 1 < sizeof name; ++from)
    name[length++] = *from;
  const BYTE* const bytes = BytesOf(record) + part.offset + field.offset;
  switch (field.kind) {
    case kestrel::FieldKind::kSigned16:
      json.Member(name, LONG{Read<int16_t>(bytes)});
      break;
    case kestrel::FieldKind::kUnsigned16:
      json.Member(name, LONG{Read<uint16_t>(bytes)});
      break;
    case kestrel::FieldKind::kUnsigned32:
      json.Member(name, DWORD{Read<uint32_t>(bytes)});
      break;
    case kestrel::FieldKind::kText:
      if (part.offset + field.offset == offsetof(DEVMODEW, dmDeviceName) &&
          HasPrinterName(target, record.Public))
        json.Member(name, "(printer)");
      else
        json.MemberText(name, reinterpret_cast<const WCHAR*>(bytes), field.size / sizeof(WCHAR));
      break;
  }
}

// An application's record: the default record with up to three words changed.
struct Edit {
  size_t offset;
  WORD value;
};
struct Input {
  const char* what;
  WORD publicSize;   // dmSize; what follows the public part moves with it
  WORD privateSize;  // dmDriverExtra
  Edit edits[3];     // offset 0 ends them
};

constexpr size_t kOrientation = offsetof(DEVMODEW, dmOrientation);
constexpr size_t kPaperSize = offsetof(DEVMODEW, dmPaperSize);
constexpr size_t kCopies = offsetof(DEVMODEW, dmCopies);
constexpr size_t kVersion = offsetof(DEVMODEW, dmDriverVersion);
constexpr size_t kSpeed = kPrivateOffset + offsetof(PrivateDevMode, nPrintSpeed);
constexpr size_t kSensor = kPrivateOffset + offsetof(PrivateDevMode, nSensor);
constexpr size_t kVertBase = kPrivateOffset + offsetof(PrivateDevMode, nVertBase);
constexpr size_t kDither = kPrivateOffset + offsetof(PrivateDevMode, Dither);
constexpr size_t kSignature = kPrivateOffset + offsetof(PrivateDevMode, Signature);

constexpr Input kInputs[] = {
    {"the default record", 220, 232, {}},
    {"dmOrientation 2", 220, 232, {{kOrientation, 2}}},
    {"dmOrientation 3", 220, 232, {{kOrientation, 3}}},
    {"dmPaperSize 256", 220, 232, {{kPaperSize, 256}}},
    {"dmPaperSize 9", 220, 232, {{kPaperSize, 9}}},
    {"dmCopies 257", 220, 232, {{kCopies, 257}}},
    {"dmCopies 0", 220, 232, {{kCopies, 0}}},
    {"nPrintSpeed 2, nSensor 1, nVertBase -5",
     220,
     232,
     {{kSpeed, 2}, {kSensor, 1}, {kVertBase, 0xFFFB}}},
    {"Dither 3", 220, 232, {{kDither, 3}}},
    {"another signature, nPrintSpeed 2, dmCopies 2",
     220,
     232,
     {{kSignature, 0}, {kSpeed, 2}, {kCopies, 2}}},
    {"another driver version, nPrintSpeed 2, dmCopies 2",
     220,
     232,
     {{kVersion, 0x0D00}, {kSpeed, 2}, {kCopies, 2}}},
    {"the public part alone, dmOrientation 2", 220, 0, {{kOrientation, 2}}},
    {"an older form of 156 and 20 bytes", 156, 20, {}},
    {"dmSize 72, dmCopies 2", 72, 0, {{kCopies, 2}}},
};

void MakeInput(const SettingsRecord& defaults, const Input& input, SettingsRecord& record) {
  record = defaults;
  BYTE* const bytes = reinterpret_cast<BYTE*>(&record);
  for (const Edit& edit : input.edits) {
    if (edit.offset != 0) std::memcpy(bytes + edit.offset, &edit.value, sizeof edit.value);
  }
  record.Public.dmSize = input.publicSize;
  record.Public.dmDriverExtra = input.privateSize;
}

// Writes a record of the module's own sizes as its differences from the default record, and any
// other record as its sizes and whether it equals the input.
void WriteMerged(const Target& target, Json& json, const SettingsRecord& record,
                 const SettingsRecord& input, const SettingsRecord& defaults) {
  const size_t size = size_t{record.Public.dmSize} + record.Public.dmDriverExtra;
  if (size == kRecordSize) {
    WriteRecord(target, json, "changed", record, &defaults);
    return;
  }
  json.Member("dmSize", LONG{record.Public.dmSize});
  json.Member("dmDriverExtra", LONG{record.Public.dmDriverExtra});
  const bool same = size < kRecordSize && SameBytes(BytesOf(record), BytesOf(input), size);
  json.Member("sameAsInput", LONG{same});
}

struct Records {
  SettingsRecord defaults;
  SettingsRecord input;
  SettingsRecord output;
};

void WriteDefaults(const Target& target, Json& json, Records& records) {
  const LONG result = target.exports.documentProperties(
      nullptr, target.printer, target.printerName(), &records.defaults.Public, nullptr, DM_COPY);
  json.OpenCall("DrvDocumentProperties", "DM_COPY");
  json.Member("result", result);
  WriteRecord(target, json, "record", records.defaults, nullptr);
  // The bytes after the device name include the reserved words, which have no field name.
  constexpr size_t kName = sizeof records.defaults.Public.dmDeviceName;
  json.MemberBytes("bytesFrom64", BytesOf(records.defaults) + kName, kRecordSize - kName);
  json.CloseCall();
}

void WriteMerge(const Target& target, Json& json, const Input& input, Records& records) {
  MakeInput(records.defaults, input, records.input);
  records.output = {};
  const LONG result = target.exports.documentProperties(
      nullptr, target.printer, target.printerName(), &records.output.Public, &records.input.Public,
      DM_COPY | DM_IN_BUFFER);
  json.OpenCall("DrvDocumentProperties DM_COPY | DM_IN_BUFFER", input.what);
  json.Member("result", result);
  WriteMerged(target, json, records.output, records.input, records.defaults);
  json.CloseCall();
}

struct Conversion {
  const char* what;
  DWORD mode;
  bool hasInput;
  bool hasOutput;
  LONG size;  // -1: no pointer to a size
};
constexpr LONG kNoSize = -1;
constexpr Conversion kConversions[] = {
    {"CDM_CONVERT", CDM_CONVERT, true, true, 452},
    {"CDM_CONVERT into 451 bytes", CDM_CONVERT, true, true, 451},
    {"CDM_CONVERT without input", CDM_CONVERT, false, true, 452},
    {"CDM_CONVERT without output", CDM_CONVERT, true, false, 452},
    {"CDM_CONVERT without a size", CDM_CONVERT, true, true, kNoSize},
    {"CDM_CONVERT351", CDM_CONVERT351, true, true, 452},
    {"CDM_DRIVER_DEFAULT", CDM_DRIVER_DEFAULT, false, true, 452},
    {"CDM_DRIVER_DEFAULT without output", CDM_DRIVER_DEFAULT, false, false, 452},
    {"mode 0", 0, true, true, 452},
};

void WriteConversion(const Target& target, Json& json, const Conversion& conversion,
                     Records& records) {
  MakeInput(records.defaults, {nullptr, 220, 232, {{kOrientation, 2}}}, records.input);
  records.output = {};
  LONG size = conversion.size;
  SetLastError(ERROR_SUCCESS);
  const BOOL result = target.exports.convertDevMode(
      target.printerName(), conversion.hasInput ? &records.input.Public : nullptr,
      conversion.hasOutput ? &records.output.Public : nullptr, size == kNoSize ? nullptr : &size,
      conversion.mode);
  const DWORD error = GetLastError();
  json.OpenCall("DrvConvertDevMode", conversion.what);
  json.Member("result", LONG{result});
  if (!result) json.Member("error", error);
  if (size != kNoSize) json.Member("size", size);
  if (result) WriteMerged(target, json, records.output, records.input, records.defaults);
  json.CloseCall();
}

// DrvDocumentPropertySheets without a sheet library resolves the settings as well.
void WriteSheetsWithoutLibrary(const Target& target, Json& json, Records& records) {
  DOCUMENTPROPERTYHEADER header = {};
  header.cbSize = sizeof header;
  header.hPrinter = target.printer;
  header.pszPrinterName = target.printerName();
  header.pdmOut = &records.output.Public;
  header.fMode = DM_COPY;
  records.output = {};
  const LONG result =
      target.exports.documentPropertySheets(nullptr, reinterpret_cast<LPARAM>(&header));
  json.OpenCall("DrvDocumentPropertySheets", "without a sheet, DM_COPY");
  json.Member("result", result);
  json.Member("cbOut", header.cbOut);
  WriteMerged(target, json, records.output, records.input, records.defaults);
  json.CloseCall();
}

}  // namespace

void WriteRecord(const Target& target, Json& json, const char* member, const SettingsRecord& record,
                 const SettingsRecord* other) {
  json.OpenMember(member, '{');
  for (const Part& part : kParts) {
    for (size_t i = 0; i < part.count; ++i) {
      const RecordField& field = part.fields[i];
      const size_t offset = part.offset + field.offset;
      if (other == nullptr ||
          !SameBytes(BytesOf(record) + offset, BytesOf(*other) + offset, field.size))
        WriteField(target, json, part, field, record);
    }
  }
  json.Close('}');
}

bool WriteRecords(const Target& target, Json& json) {
  const auto records = kestrel::HeapBlock<Records>::One();
  if (!records) return false;
  WriteDefaults(target, json, *records);
  for (const Input& input : kInputs) WriteMerge(target, json, input, *records);
  for (const Conversion& conversion : kConversions)
    WriteConversion(target, json, conversion, *records);
  WriteSheetsWithoutLibrary(target, json, *records);
  return true;
}

}  // namespace kestrel_try
