#include "host/record.h"

#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <string>

#include "host/failure.h"

namespace printhost {
namespace {

// The part of a DEVMODEW up to and with dmFields; a shorter record says nothing.
constexpr std::size_t kLeastRecord = 76;
static_assert(offsetof(DEVMODEW, dmFields) + sizeof(DWORD) == kLeastRecord);
constexpr std::size_t kMostRecord = 2 * std::size_t{0xFFFF};

std::size_t Word(const Record& record, std::size_t offset) {
  WORD word = 0;
  std::memcpy(&word, record.data() + offset, sizeof word);
  return word;
}

std::size_t Claimed(const Record& record) {
  return PublicSize(record) + Word(record, offsetof(DEVMODEW, dmDriverExtra));
}

[[noreturn]] void Refuse(const std::filesystem::path& path, const std::string& why) {
  throw Failure{kFailed, path.string() + " holds no settings record: " + why};
}

}  // namespace

std::size_t PublicSize(const Record& record) { return Word(record, offsetof(DEVMODEW, dmSize)); }

std::size_t RecordExtent(const Record& record) { return std::min(record.size(), Claimed(record)); }

Record ReadRecordFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw Failure{kFailed, path.string() + " cannot be read"};
  Record record(kMostRecord + 1);
  file.read(reinterpret_cast<char*>(record.data()), static_cast<std::streamsize>(record.size()));
  if (file.bad()) throw Failure{kFailed, path.string() + " cannot be read"};
  record.resize(static_cast<std::size_t>(file.gcount()));
  const std::string held = std::to_string(record.size()) + " bytes";
  if (record.size() < kLeastRecord)
    Refuse(path, held + ", a record has at least " + std::to_string(kLeastRecord));
  const std::size_t claimed = Claimed(record);
  if (PublicSize(record) < kLeastRecord)
    Refuse(path, "its public part has " + std::to_string(PublicSize(record)) +
                     " bytes and ends before its first field");
  if (record.size() < claimed)
    Refuse(path, "it says that it has " + std::to_string(claimed) + " bytes, the file has " + held);
  // Padding behind a record of a known form is let pass, any other mismatch is no record.
  if (record.size() > claimed && PublicSize(record) > sizeof(DEVMODEW))
    Refuse(path, "it says that it has " + std::to_string(claimed) + " bytes, the file has " + held);
  record.resize(claimed);
  return record;
}

void WriteRecordFile(const std::filesystem::path& path, const Record& record) {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(path, error);
  // A device or a pipe is written to; a link keeps naming the file that is replaced.
  const bool replaces = !exists(status) || is_regular_file(status);
  std::filesystem::path written = path;
  if (is_regular_file(status)) written = std::filesystem::canonical(path, error);
  const std::filesystem::path target = written;
  if (replaces) written += "." + std::to_string(getpid()) + ".new";
  error.clear();
  std::ofstream file(written, std::ios::binary | std::ios::trunc);
  file.write(reinterpret_cast<const char*>(record.data()),
             static_cast<std::streamsize>(record.size()));
  file.close();
  if (file && replaces) std::filesystem::rename(written, target, error);
  if (file && !error) return;
  std::error_code ignored;
  if (replaces) std::filesystem::remove(written, ignored);
  throw Failure{kFailed, path.string() + " cannot be written"};
}

}  // namespace printhost
