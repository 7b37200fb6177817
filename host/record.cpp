#include "host/record.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <string>
#include <thread>

#include "host/failure.h"

namespace printhost {
namespace {

// A record has to contain dmFields, which says which other fields are valid.
constexpr std::size_t kMinRecordSize = 76;
static_assert(offsetof(DEVMODEW, dmFields) + sizeof(DWORD) == kMinRecordSize);
constexpr std::size_t kMaxRecordSize = 2 * std::size_t{0xFFFF};

std::size_t ReadWord(const Record& record, std::size_t offset) {
  WORD word = 0;
  std::memcpy(&word, record.data() + offset, sizeof word);
  return word;
}

std::size_t StatedSize(const Record& record) {
  return PublicSize(record) + ReadWord(record, offsetof(DEVMODEW, dmDriverExtra));
}

namespace fs = std::filesystem;

constexpr int kCreate = O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC;
constexpr std::chrono::seconds kPipeReaderTimeout{4};

// How a record is written to a path.
struct Target {
  fs::path file;       // the file to replace: the path, or where it links to
  fs::path temporary;  // beside the file; renamed to it when complete
  bool isFile;         // false for a device or pipe, which is written directly
};

Target FindTarget(const fs::path& path) {
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  Target target = {path, {}, !fs::exists(status) || fs::is_regular_file(status)};
  if (fs::is_regular_file(status)) target.file = fs::canonical(path, error);
  target.temporary = target.file;
  target.temporary += "." + std::to_string(getpid()) + ".new";
  return target;
}

// Opens a file and writes a record to it. Returns false and sets errno when that fails.
bool Write(const fs::path& path, int flags, const Record& record) {
  const auto end = std::chrono::steady_clock::now() + kPipeReaderTimeout;
  // Sleeps and returns true when errno is this error and the time is not up.
  const auto shouldRetry = [&end](int error) {
    if (errno != error || std::chrono::steady_clock::now() >= end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    return true;
  };
  int file = -1;
  do {
    file = open(path.c_str(), flags, 0666);
  } while (file < 0 && shouldRetry(ENXIO));
  if (file < 0) return false;
  std::size_t written = 0;
  ssize_t count = 0;
  do {
    count = write(file, record.data() + written, record.size() - written);
    if (count > 0) written += static_cast<std::size_t>(count);
  } while (written < record.size() && (count > 0 || shouldRetry(EAGAIN)));
  const int error = errno;
  if (close(file) != 0) return false;
  errno = error;
  return written == record.size();
}

const char* ReasonInJapanese(int error) {
  switch (error) {
    case ENXIO:
      return "読み取るプログラムがありません。";
    case ENOENT:
    case ENOTDIR:
      return "そのフォルダはありません。";
    case EACCES:
    case EPERM:
    case EROFS:
      return "書き込みが許可されていません。";
    case ENOSPC:
    case EDQUOT:
      return "ディスクの空き容量がありません。";
    default:
      return "別のファイルを指定してください。";
  }
}

[[noreturn]] void ThrowWriteError(const fs::path& path) {
  throw Failure{kFailed,
                path.string() + " cannot be written: " +
                    (errno == ENXIO ? "nobody reads it" : std::strerror(errno)),
                path.string() + "に書き込めません。" + ReasonInJapanese(errno)};
}

[[noreturn]] void ThrowNotARecord(const std::string& path, const std::string& why) {
  throw Failure{kFailed, path + " holds no settings record: " + why};
}

}  // namespace

std::size_t PublicSize(const Record& record) {
  return ReadWord(record, offsetof(DEVMODEW, dmSize));
}

std::size_t RecordExtent(const Record& record) {
  return std::min(record.size(), StatedSize(record));
}

Record ReadRecordFile(const std::filesystem::path& path) {
  const bool isStandardInput = path == "-";
  const std::string name = isStandardInput ? "standard input" : path.string();
  std::ifstream opened;
  if (!isStandardInput) opened.open(path, std::ios::binary);
  std::istream& file = isStandardInput ? std::cin : opened;
  if (!file) throw Failure{kFailed, name + " cannot be read"};
  Record record(kMaxRecordSize + 1);
  file.read(reinterpret_cast<char*>(record.data()), static_cast<std::streamsize>(record.size()));
  if (file.bad()) throw Failure{kFailed, name + " cannot be read"};
  record.resize(static_cast<std::size_t>(file.gcount()));
  const std::string bytesRead = std::to_string(record.size()) + " bytes";
  if (record.size() < kMinRecordSize)
    ThrowNotARecord(name, bytesRead + ", a record has at least " + std::to_string(kMinRecordSize));
  const std::size_t stated = StatedSize(record);
  if (PublicSize(record) < kMinRecordSize)
    ThrowNotARecord(name, "its public part has " + std::to_string(PublicSize(record)) +
                              " bytes and ends before its first field");
  // More bytes than the record's size mean another kind of file.
  if (record.size() != stated)
    ThrowNotARecord(
        name, "its sizes claim " + std::to_string(stated) + " bytes, but there are " + bytesRead);
  return record;
}

void CheckRecordFile(const fs::path& path) {
  const Target target = FindTarget(path);
  if (!target.isFile) {
    if (access(path.c_str(), W_OK) != 0) ThrowWriteError(path);
    errno = EISDIR;
    if (fs::is_directory(path)) ThrowWriteError(path);
    return;
  }
  const int file = open(target.temporary.c_str(), kCreate, 0666);
  if (file < 0) ThrowWriteError(path);
  close(file);
  unlink(target.temporary.c_str());
}

void WriteRecordFile(const fs::path& path, const Record& record) {
  const Target target = FindTarget(path);
  const bool done = target.isFile ? Write(target.temporary, kCreate, record) &&
                                        rename(target.temporary.c_str(), target.file.c_str()) == 0
                                  : Write(path, O_WRONLY | O_NONBLOCK | O_CLOEXEC, record);
  if (done) return;
  const int error = errno;
  if (target.isFile) unlink(target.temporary.c_str());
  errno = error;
  ThrowWriteError(path);
}

}  // namespace printhost
