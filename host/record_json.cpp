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
Number ReadNumber(const std::byte* at) {
  Number number;
  std::memcpy(&number, at, sizeof number);
  return number;
}

Json FieldJson(const RecordField& field, const std::byte* at) {
  switch (field.kind) {
    case kestrel::FieldKind::kSigned16:
      return ReadNumber<int16_t>(at);
    case kestrel::FieldKind::kUnsigned16:
      return ReadNumber<uint16_t>(at);
    case kestrel::FieldKind::kUnsigned32:
      return ReadNumber<uint32_t>(at);
    case kestrel::FieldKind::kText:
      break;
  }
  std::u16string text(field.size / sizeof(char16_t), u'\0');
  std::memcpy(text.data(), at, field.size);
  return ToUtf8(std::u16string_view(text).substr(0, text.find(u'\0')));
}

// Returns the fields that are completely inside the bytes.
Json FieldsJson(std::span<const RecordField> fields, std::span<const std::byte> bytes) {
  Json json = Json::object();
  for (const RecordField& field : fields) {
    if (field.offset + field.size <= bytes.size())
      json[field.name] = FieldJson(field, bytes.data() + field.offset);
  }
  return json;
}

// Returns the bytes from an offset on, at most size; empty past the end.
std::span<const std::byte> Slice(std::span<const std::byte> bytes, std::size_t offset,
                                 std::size_t size) {
  if (offset >= bytes.size()) return {};
  return bytes.subspan(offset, std::min(size, bytes.size() - offset));
}

}  // namespace

Json RecordJson(const Record& record) {
  const std::span<const std::byte> bytes = std::span(record).first(RecordExtent(record));
  const std::size_t publicSize = std::min(PublicSize(record), bytes.size());
  Json json = {{"public", FieldsJson(kestrel::kPublicRecordFields, bytes.first(publicSize))},
               {"private", nullptr}};
  const auto privatePart = bytes.subspan(publicSize);
  if (publicSize != kestrel::kPublicSize || privatePart.empty()) return json;
  Json& fields = json["private"] = FieldsJson(kestrel::kPrivateRecordFields, privatePart);
  fields["FreePaper"] =
      FieldsJson(kestrel::kPaperRecordFields,
                 Slice(privatePart, offsetof(PrivateDevMode, FreePaper), sizeof(PaperInfo)));
  fields["ColorAdjust"] = FieldsJson(
      kestrel::kColorRecordFields,
      Slice(privatePart, offsetof(PrivateDevMode, ColorAdjust), sizeof(COLORADJUSTMENT)));
  return json;
}

Json PrinterPartJson(std::span<const std::byte> bytes) {
  if (bytes.size() != kestrel::kPrinterPartSize) return nullptr;
  const int stored = ReadNumber<int16_t>(bytes.data() + offsetof(PrinterSettingsPart, PaperNum));
  Json papers = Json::array();
  for (int i = 0; i < std::min(stored, kestrel::kPaperCapacity); ++i) {
    const std::size_t offset =
        offsetof(PrinterSettingsPart, Papers) + static_cast<std::size_t>(i) * sizeof(PaperInfo);
    papers.push_back(
        FieldsJson(kestrel::kPaperRecordFields, bytes.subspan(offset, sizeof(PaperInfo))));
  }
  return {{"PaperNum", stored},
          {"Papers", papers},
          {"HeadDensity",
           ReadNumber<uint16_t>(bytes.data() + offsetof(PrinterSettingsPart, HeadDensity))},
          {"Mecha", ReadNumber<uint16_t>(bytes.data() + offsetof(PrinterSettingsPart, Mecha))}};
}

}  // namespace printhost
