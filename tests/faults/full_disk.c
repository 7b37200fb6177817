// Preloaded into printhost: the disk is full from the FULL_FROM-th write to a file on.
// FULL_MARK is made when a write fails.
#define _GNU_SOURCE
#include <errno.h>
#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

static long Write(long call, int fd, const void* bytes, size_t size, off_t at) {
  static long calls;
  const char *from = getenv("FULL_FROM"), *mark = getenv("FULL_MARK");
  struct stat file;
  const int counts = fstat(fd, &file) == 0 && S_ISREG(file.st_mode);
  if (!counts || ++calls < atol(from))
    return syscall(call, fd, bytes, size, at);
  if (mark) close(open(mark, O_CREAT | O_WRONLY, 0600));
  errno = ENOSPC;
  return -1;
}
ssize_t write(int fd, const void* b, size_t n) { return Write(SYS_write, fd, b, n, 0); }
ssize_t writev(int fd, const struct iovec* v, int n) { return Write(SYS_writev, fd, v, n, 0); }
ssize_t pwrite(int fd, const void* b, size_t n, off_t at) {
  return Write(SYS_pwrite64, fd, b, n, at);
}
ssize_t pwrite64(int fd, const void* b, size_t n, off_t at) { return pwrite(fd, b, n, at); }
