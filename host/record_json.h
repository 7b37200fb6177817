// Records as JSON, field names as in the structures.
#pragma once

#include <nlohmann/json.hpp>
#include <span>

#include "host/record.h"

namespace printhost {

using Json = nlohmann::ordered_json;

// {"public": {dm…}, "private": {…}} of the fields that lie inside the record's own extent;
// "private" is null where the record does not have the driver's form of 220 bytes before it.
Json RecordJson(const Record& record);

// The printer-level part as it is stored: PaperNum, Papers, HeadDensity, Mecha. Null unless there
// are exactly its 3338 bytes.
Json PrinterPartJson(std::span<const std::byte> bytes);

}  // namespace printhost
