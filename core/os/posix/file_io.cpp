// Reading, writing, positioning and flushing open files.
#include "os/posix/file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace zel::os {

bool ReadFile(Handle h, void *buf, int n, int *done) {
  *done = 0;
  posix::File *file = posix::FileOf(h);
  if (file == nullptr) return false;
  auto *next = static_cast<char *>(buf);
  // A file delivers all that is asked for up to its end, as ReadFile does.
  while (*done < n) {
    ssize_t got = read(file->fd, next + *done, static_cast<size_t>(n - *done));
    if (got < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    if (got == 0) break;
    *done += static_cast<int>(got);
  }
  return true;
}

bool WriteFile(Handle h, const void *buf, int n, int *done) {
  *done = 0;
  posix::File *file = posix::FileOf(h);
  if (file == nullptr) return false;
  const auto *next = static_cast<const char *>(buf);
  while (*done < n) {
    ssize_t put = write(file->fd, next + *done, static_cast<size_t>(n - *done));
    if (put < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    if (put == 0) break;
    *done += static_cast<int>(put);
  }
  return true;
}

bool SeekFile(Handle h, int64_t distance, int origin, int64_t *position) {
  posix::File *file = posix::FileOf(h);
  if (file == nullptr) return false;
  static_assert(SEEK_SET == kFileBegin && SEEK_CUR == kFileCurrent && SEEK_END == kFileEnd);
  off64_t at = lseek64(file->fd, distance, origin);
  if (at < 0) return false;
  if (position != nullptr) *position = at;
  return true;
}

int64_t FileSize(Handle h) {
  posix::File *file = posix::FileOf(h);
  struct stat64 status;
  if (file == nullptr || fstat64(file->fd, &status) != 0) return -1;
  return status.st_size;
}

bool FlushFile(Handle h) {
  posix::File *file = posix::FileOf(h);
  if (file == nullptr) return false;
  // FlushFileBuffers needs write access.
  if ((file->access & kGenericWrite) == 0) {
    errno = EBADF;
    return false;
  }
  return fsync(file->fd) == 0;
}

}  // namespace zel::os
