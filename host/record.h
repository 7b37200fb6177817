// Settings records in memory and in files. A record states its own size, dmSize + dmDriverExtra,
// which is not trusted: every reader compares it with the number of bytes.
#pragma once

#include <windows.h>

#include <cstddef>
#include <filesystem>
#include <vector>

namespace printhost {

using Record = std::vector<std::byte>;

// Returns dmSize + dmDriverExtra, at most the number of bytes. The record has at least 76 bytes.
std::size_t RecordExtent(const Record& record);
// Returns dmSize. The record has at least 76 bytes.
std::size_t PublicSize(const Record& record);

// Reads the record in a file; "-" is standard input. Throws Failure when the file cannot be read or
// does not hold exactly one record.
Record ReadRecordFile(const std::filesystem::path& path);

// Throws Failure when WriteRecordFile would fail for this path. Does not change the file.
void CheckRecordFile(const std::filesystem::path& path);

// Replaces a file by a record, completely or not at all. A device or pipe is written directly;
// for the reader of a named pipe it waits a few seconds. Throws Failure.
void WriteRecordFile(const std::filesystem::path& path, const Record& record);

inline DEVMODEW* AsDevMode(Record& record) { return reinterpret_cast<DEVMODEW*>(record.data()); }

}  // namespace printhost
