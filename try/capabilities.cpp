#include <algorithm>
#include <cstring>

#include "driver/handles.h"
#include "try/answers.h"

namespace kestrel_try {
namespace {

// The output of a capability index, as DeviceCapabilities documents it.
enum class Buffer { kNone, kWords, kDwords, kPoint, kPoints, kNames };

struct Capability {
  const char* name;
  Buffer buffer;
  size_t nameUnits;
};

constexpr size_t kBinName = 24;
constexpr size_t kName = 64;
constexpr size_t kMostEntries = kestrel::kPaperCapacity + 1;

// By index, from 1 (DC_FIELDS) on.
constexpr Capability kCapabilities[] = {
    {"DC_FIELDS", Buffer::kNone, 0},
    {"DC_PAPERS", Buffer::kWords, 0},
    {"DC_PAPERSIZE", Buffer::kPoints, 0},
    {"DC_MINEXTENT", Buffer::kPoint, 0},
    {"DC_MAXEXTENT", Buffer::kPoint, 0},
    {"DC_BINS", Buffer::kWords, 0},
    {"DC_DUPLEX", Buffer::kNone, 0},
    {"DC_SIZE", Buffer::kNone, 0},
    {"DC_EXTRA", Buffer::kNone, 0},
    {"DC_VERSION", Buffer::kNone, 0},
    {"DC_DRIVER", Buffer::kNone, 0},
    {"DC_BINNAMES", Buffer::kNames, kBinName},
    {"DC_ENUMRESOLUTIONS", Buffer::kPoints, 0},
    {"DC_FILEDEPENDENCIES", Buffer::kNames, kName},
    {"DC_TRUETYPE", Buffer::kNone, 0},
    {"DC_PAPERNAMES", Buffer::kNames, kName},
    {"DC_ORIENTATION", Buffer::kNone, 0},
    {"DC_COPIES", Buffer::kNone, 0},
    {"DC_BINADJUST", Buffer::kNone, 0},
    {"DC_EMF_COMPLIANT", Buffer::kNone, 0},
    {"DC_DATATYPE_PRODUCED", Buffer::kNone, 0},
    {"DC_COLLATE", Buffer::kNone, 0},
    {"DC_MANUFACTURER", Buffer::kNone, 0},
    {"DC_MODEL", Buffer::kNone, 0},
    {"DC_PERSONALITY", Buffer::kNames, kName},
    {"DC_PRINTRATE", Buffer::kNone, 0},
    {"DC_PRINTRATEUNIT", Buffer::kNone, 0},
    {"DC_PRINTERMEM", Buffer::kNone, 0},
    {"DC_MEDIAREADY", Buffer::kNames, kName},
    {"DC_STAPLE", Buffer::kNone, 0},
    {"DC_PRINTRATEPPM", Buffer::kNone, 0},
    {"DC_COLORDEVICE", Buffer::kNone, 0},
    {"DC_NUP", Buffer::kDwords, 0},
    {"DC_MEDIATYPENAMES", Buffer::kNames, kName},
    {"DC_MEDIATYPES", Buffer::kDwords, 0},
};
static_assert(sizeof kCapabilities / sizeof *kCapabilities == DC_MEDIATYPES);

template <typename T>
T Entry(const BYTE* bytes, size_t index) {
  T entry;
  std::memcpy(&entry, bytes + index * sizeof(T), sizeof entry);
  return entry;
}

void WriteEntry(Json& json, const Capability& capability, const BYTE* bytes, size_t index) {
  switch (capability.buffer) {
    case Buffer::kWords:
      json.Item(Entry<WORD>(bytes, index));
      break;
    case Buffer::kDwords:
      json.Item(Entry<LONG>(bytes, index));
      break;
    case Buffer::kPoint:
    case Buffer::kPoints: {
      const POINT point = Entry<POINT>(bytes, index);
      json.ItemPair(point.x, point.y);
      break;
    }
    case Buffer::kNames:
      json.ItemText(reinterpret_cast<const WCHAR*>(bytes) + index * capability.nameUnits,
                    capability.nameUnits);
      break;
    case Buffer::kNone:
      break;
  }
}

void WriteOutput(Json& json, const Capability& capability, const BYTE* bytes, LONG result) {
  if (capability.buffer == Buffer::kNone || result <= 0) return;
  const size_t count =
      capability.buffer == Buffer::kPoint ? 1 : std::min(static_cast<size_t>(result), kMostEntries);
  json.OpenMember("output", '[');
  for (size_t i = 0; i < count; ++i) WriteEntry(json, capability, bytes, i);
  json.Close(']');
}

void WriteCapability(const Target& target, Json& json, WORD index, BYTE* bytes) {
  const Capability& capability = kCapabilities[index - 1];
  // The result must not depend on the buffer; a difference is shown.
  const auto query = [&](void* output) {
    return static_cast<LONG>(target.exports.deviceCapabilities(target.printer, target.printerName(),
                                                               index, output, nullptr));
  };
  const LONG size = query(nullptr);
  const LONG result = capability.buffer == Buffer::kNone ? size : query(bytes);
  json.OpenCall("DrvDeviceCapabilities", capability.name);
  json.Member("result", result);
  if (size != result) json.Member("resultWithoutBuffer", size);
  WriteOutput(json, capability, bytes, result);
  json.CloseCall();
}

struct SpoolerQuery {
  const char* what;
  WORD index;
  bool hasBuffer;
  DWORD units;
};
constexpr SpoolerQuery kSpoolerQueries[] = {
    {"DC_PAPERNAMES without a buffer", DC_PAPERNAMES, false, 0},
    {"DC_PAPERNAMES into 63 characters", DC_PAPERNAMES, true, 63},
    {"DC_PAPERNAMES into 64 characters", DC_PAPERNAMES, true, 64},
    {"DC_MEDIAREADY into 1344 characters", DC_MEDIAREADY, true, kMostEntries* kName},
    {"DC_PAPERS", DC_PAPERS, true, kMostEntries* kName},
};

void WriteSpoolerQuery(const Target& target, Json& json, const SpoolerQuery& query, BYTE* bytes) {
  const auto result = static_cast<LONG>(
      target.exports.splDeviceCaps(target.printer, target.printerName(), query.index,
                                   query.hasBuffer ? bytes : nullptr, query.units, nullptr));
  json.OpenCall("DrvSplDeviceCaps", query.what);
  json.Member("result", result);
  if (query.hasBuffer) WriteOutput(json, kCapabilities[query.index - 1], bytes, result);
  json.CloseCall();
}

}  // namespace

bool WriteCapabilities(const Target& target, Json& json) {
  const kestrel::HeapBlock<BYTE> bytes(kMostEntries * kName * sizeof(WCHAR));
  if (!bytes) return false;
  for (WORD index = DC_FIELDS; index <= DC_MEDIATYPES; ++index)
    WriteCapability(target, json, index, bytes.get());
  for (const SpoolerQuery& query : kSpoolerQueries)
    WriteSpoolerQuery(target, json, query, bytes.get());
  return true;
}

}  // namespace kestrel_try
