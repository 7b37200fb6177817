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

namespace fs = std::filesystem;

constexpr int kCreate = O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC;
constexpr std::chrono::seconds kReaderTime{4};  // until a pipe's reader has come and reads

// Where a record for a path is written.
struct Target {
  fs::path file;     // a link keeps naming the file that is replaced
  fs::path written;  // beside the file, renamed to it
  bool replaces;     // a device or a pipe is written to as it is
};

Target FindTarget(const fs::path& path) {
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  Target target = {path, {}, !fs::exists(status) || fs::is_regular_file(status)};
  if (fs::is_regular_file(status)) target.file = fs::canonical(path, error);
  target.written = target.file;
  target.written += "." + std::to_string(getpid()) + ".new";
  return target;
}

// Opens a file and writes a record to it; false with errno when that fails.
bool Write(const fs::path& path, int flags, const Record& record) {
  const auto end = std::chrono::steady_clock::now() + kReaderTime;
  const auto waits = [&end](int error) {
    if (errno != error || std::chrono::steady_clock::now() >= end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    return true;
  };
  int file = -1;
  do {
    file = open(path.c_str(), flags, 0666);
  } while (file < 0 && waits(ENXIO));
  if (file < 0) return false;
  std::size_t written = 0;
  ssize_t count = 0;
  do {
    count = write(file, record.data() + written, record.size() - written);
    if (count > 0) written += static_cast<std::size_t>(count);
  } while (written < record.size() && (count > 0 || waits(EAGAIN)));
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

[[noreturn]] void Fail(const fs::path& path) {
  throw Failure{kFailed,
                path.string() + " cannot be written: " +
                    (errno == ENXIO ? "nobody reads it" : std::strerror(errno)),
                path.string() + "に書き込めません。" + ReasonInJapanese(errno)};
}

[[noreturn]] void Refuse(const std::string& path, const std::string& why) {
  throw Failure{kFailed, path + " holds no settings record: " + why};
}

}  // namespace

std::size_t PublicSize(const Record& record) { return Word(record, offsetof(DEVMODEW, dmSize)); }

std::size_t RecordExtent(const Record& record) { return std::min(record.size(), Claimed(record)); }

Record ReadRecordFile(const std::filesystem::path& given) {
  const bool standard = given == "-";
  const std::string path = standard ? "standard input" : given.string();
  std::ifstream opened;
  if (!standard) opened.open(given, std::ios::binary);
  std::istream& file = standard ? std::cin : opened;
  if (!file) throw Failure{kFailed, path + " cannot be read"};
  Record record(kMostRecord + 1);
  file.read(reinterpret_cast<char*>(record.data()), static_cast<std::streamsize>(record.size()));
  if (file.bad()) throw Failure{kFailed, path + " cannot be read"};
  record.resize(static_cast<std::size_t>(file.gcount()));
  const std::string held = std::to_string(record.size()) + " bytes";
  if (record.size() < kLeastRecord)
    Refuse(path, held + ", a record has at least " + std::to_string(kLeastRecord));
  const std::size_t claimed = Claimed(record);
  if (PublicSize(record) < kLeastRecord)
    Refuse(path, "its public part has " + std::to_string(PublicSize(record)) +
                     " bytes and ends before its first field");
  // Anything behind the record's own end is a sign of another kind of file.
  if (record.size() != claimed)
    Refuse(path, "its sizes claim " + std::to_string(claimed) + " bytes, but there are " + held);
  return record;
}

void CheckRecordFile(const fs::path& path) {
  const Target target = FindTarget(path);
  if (!target.replaces) {
    if (access(path.c_str(), W_OK) != 0 || fs::is_directory(path)) Fail(path);
    return;
  }
  const int file = open(target.written.c_str(), kCreate, 0666);
  if (file < 0) Fail(path);
  close(file);
  unlink(target.written.c_str());
}

void WriteRecordFile(const fs::path& path, const Record& record) {
  const Target target = FindTarget(path);
  const bool done = target.replaces ? Write(target.written, kCreate, record) &&
                                          rename(target.written.c_str(), target.file.c_str()) == 0
                                    : Write(path, O_WRONLY | O_NONBLOCK | O_CLOEXEC, record);
  if (done) return;
  const int error = errno;
  if (target.replaces) unlink(target.written.c_str());
  errno = error;
  Fail(path);
}

}  // namespace printhost
