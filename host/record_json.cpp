#include "host/record_json.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "driver/record_fields.h"
#include "host/utf8.h"

namespace printhost {
namespace {

using kestrel::PaperInfo;
using kestrel::PrinterSettingsPart;
using kestrel::PrivateDevMode;
using kestrel::RecordField;

template <typename Number>
Number Read(const std::byte* at) {
  Number number;
  std::memcpy(&number, at, sizeof number);
  return number;
}

Json Value(const RecordField& field, const std::byte* at) {
  switch (field.kind) {
    case kestrel::FieldKind::kSigned16:
      return Read<int16_t>(at);
    case kestrel::FieldKind::kUnsigned16:
      return Read<uint16_t>(at);
    case kestrel::FieldKind::kUnsigned32:
      return Read<uint32_t>(at);
    case kestrel::FieldKind::kText:
      break;
  }
  std::u16string text(field.size / sizeof(char16_t), u'\0');
  std::memcpy(text.data(), at, field.size);
  return ToUtf8(std::u16string_view(text).substr(0, text.find(u'\0')));
}

// The fields that lie whole inside the bytes given.
Json Fields(std::span<const RecordField> fields, std::span<const std::byte> bytes) {
  Json json = Json::object();
  for (const RecordField& field : fields) {
    if (field.offset + field.size <= bytes.size())
      json[field.name] = Value(field, bytes.data() + field.offset);
  }
  return json;
}

std::span<const std::byte> Inside(std::span<const std::byte> bytes, std::size_t offset,
                                  std::size_t size) {
  if (offset >= bytes.size()) return {};
  return bytes.subspan(offset, std::min(size, bytes.size() - offset));
}

}  // namespace

Json RecordJson(const Record& record) {
  const std::span<const std::byte> bytes = std::span(record).first(RecordExtent(record));
  const std::size_t publicSize = std::min(PublicSize(record), bytes.size());
  Json json = {{"public", Fields(kestrel::kPublicRecordFields, bytes.first(publicSize))},
               {"private", nullptr}};
  const auto own = bytes.subspan(publicSize);
  if (publicSize != kestrel::kPublicSize || own.empty()) return json;
  Json& fields = json["private"] = Fields(kestrel::kPrivateRecordFields, own);
  fields["FreePaper"] = Fields(kestrel::kPaperRecordFields,
                               Inside(own, offsetof(PrivateDevMode, FreePaper), sizeof(PaperInfo)));
  fields["ColorAdjust"] =
      Fields(kestrel::kColorRecordFields,
             Inside(own, offsetof(PrivateDevMode, ColorAdjust), sizeof(COLORADJUSTMENT)));
  return json;
}

Json PrinterPartJson(std::span<const std::byte> bytes) {
  if (bytes.size() != kestrel::kPrinterPartSize) return nullptr;
  const int stored = Read<int16_t>(bytes.data() + offsetof(PrinterSettingsPart, PaperNum));
  Json papers = Json::array();
  for (int i = 0; i < std::min(stored, kestrel::kPaperCapacity); ++i) {
    const std::size_t offset =
        offsetof(PrinterSettingsPart, Papers) + static_cast<std::size_t>(i) * sizeof(PaperInfo);
    papers.push_back(Fields(kestrel::kPaperRecordFields, bytes.subspan(offset, sizeof(PaperInfo))));
  }
  return {
      {"PaperNum", stored},
      {"Papers", papers},
      {"HeadDensity", Read<uint16_t>(bytes.data() + offsetof(PrinterSettingsPart, HeadDensity))},
      {"Mecha", Read<uint16_t>(bytes.data() + offsetof(PrinterSettingsPart, Mecha))}};
}

}  // namespace printhost
