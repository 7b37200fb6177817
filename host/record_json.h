// Records as JSON, with the field names of the structures.
#pragma once

#include <nlohmann/json.hpp>
#include <span>

#include "host/record.h"

namespace printhost {

using Json = nlohmann::ordered_json;

// Returns {"public": {dm…}, "private": {…}} with the fields inside RecordExtent. "private" is null
// unless dmSize is the driver's own, 220 bytes.
Json RecordJson(const Record& record);

// Returns PaperNum, Papers, HeadDensity and Mecha of the stored printer part; null unless it has
// exactly 3338 bytes.
Json PrinterPartJson(std::span<const std::byte> bytes);

}  // namespace printhost
