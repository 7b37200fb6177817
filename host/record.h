// Settings records in files and in memory. A record's length is its own word, dmSize +
// dmDriverExtra, so every way in checks that word against the bytes that are there.
#pragma once

#include <windows.h>

#include <cstddef>
#include <filesystem>
#include <vector>

namespace printhost {

using Record = std::vector<std::byte>;

// dmSize + dmDriverExtra of a record of at least 76 bytes, never more than the bytes given.
std::size_t RecordExtent(const Record& record);
// dmSize of a record of at least 76 bytes.
std::size_t PublicSize(const Record& record);

// The record in a file, exactly as long as it says; "-" is standard input. Throws Failure when the
// file cannot be read or does not hold a record.
Record ReadRecordFile(const std::filesystem::path& path);

// Whether a record could be written to a path as things stand; throws Failure when not. Leaves the
// path as it is.
void CheckRecordFile(const std::filesystem::path& path);

// Replaces a file by a record, whole or not at all; writes it to what is no file (a device, a
// pipe). Waits a few seconds for the reader of a named pipe. Throws Failure when it cannot be
// written.
void WriteRecordFile(const std::filesystem::path& path, const Record& record);

inline DEVMODEW* AsDevMode(Record& record) { return reinterpret_cast<DEVMODEW*>(record.data()); }

}  // namespace printhost
