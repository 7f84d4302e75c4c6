// Reading, writing, positioning and flushing open files.
#include "os/posix/file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace zel::os {

namespace {

// Moves all `n` bytes through `move` (read or write), as ReadFile and WriteFile do, or up to the
// end of the file: `*done` counts them. False, with errno set, on failure.
template <typename Buffer, typename Move>
bool MoveAll(Handle h, Buffer *buf, int n, int *done, Move move) {
  *done = 0;
  posix::File *file = posix::FileOf(h);
  if (file == nullptr) return false;
  while (*done < n) {
    const ssize_t moved = move(file->fd, buf + *done, static_cast<size_t>(n - *done));
    if (moved < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    if (moved == 0) break;
    *done += static_cast<int>(moved);
  }
  return true;
}

}  // namespace

bool ReadFile(Handle h, void *buf, int n, int *done) {
  return MoveAll(h, static_cast<char *>(buf), n, done, ::read);
}

bool WriteFile(Handle h, const void *buf, int n, int *done) {
  return MoveAll(h, static_cast<const char *>(buf), n, done, ::write);
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
