// Opening and closing files, with the share modes of Windows among the handles of this process.
#include "os/posix/file.h"
#include "os/posix/native_path.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <mutex>
#include <new>

namespace zel::os {

namespace posix {

namespace {

std::mutex g_files_lock;
File *g_files = nullptr;  // every open file; g_files_lock

// Does `a` allow what `b` asks for, and `b` what `a` asks for?
bool SharesWith(const File &a, const File &b) {
  auto allows = [](const File &holder, const File &asker) {
    return ((asker.access & kGenericRead) == 0 || (holder.share & kShareRead) != 0) &&
           ((asker.access & kGenericWrite) == 0 || (holder.share & kShareWrite) != 0);
  };
  return allows(a, b) && allows(b, a);
}

// Links `file` into the list unless an open handle of the same file conflicts with it.
bool Register(File *file) {
  std::lock_guard<std::mutex> hold(g_files_lock);
  for (const File *other = g_files; other != nullptr; other = other->next) {
    if (other->device == file->device && other->inode == file->inode &&
        !SharesWith(*other, *file))
      return false;
  }
  file->next = g_files;
  if (g_files != nullptr) g_files->prev = file;
  g_files = file;
  return true;
}

void Unregister(File *file) {
  std::lock_guard<std::mutex> hold(g_files_lock);
  (file->prev != nullptr ? file->prev->next : g_files) = file->next;
  if (file->next != nullptr) file->next->prev = file->prev;
}

// Closes the descriptor and frees the record, keeping errno.
void Discard(File *file) {
  int error = errno;
  close(file->fd);
  file->magic = 0;
  file->~File();
  HeapFree(file);
  errno = error;
}

int OpenFlags(uint32_t access, uint32_t disposition) {
  int flags = O_CLOEXEC;
  if ((access & kGenericWrite) != 0)
    flags |= (access & kGenericRead) != 0 ? O_RDWR : O_WRONLY;
  else
    flags |= O_RDONLY;
  if (disposition == kCreateNew) flags |= O_CREAT | O_EXCL;
  if (disposition == kCreateAlways || disposition == kOpenAlways) flags |= O_CREAT;
  return flags;
}

}  // namespace

File *FileOf(Handle h) {
  auto *file = static_cast<File *>(h);
  if (file == nullptr || h == kInvalidHandle || file->magic != File::kLive) {
    errno = EBADF;
    return nullptr;
  }
  return file;
}

}  // namespace posix

Handle OpenFile(const char *path, uint32_t access, uint32_t share, uint32_t disposition,
                uint32_t flags) {
  using posix::File;
  if (disposition < kCreateNew || disposition > kTruncateExisting) {
    errno = EINVAL;
    return nullptr;
  }
  posix::NativePath native(path);
  if (!native.Fits()) return nullptr;
  int fd;
  do {
    fd = open64(native.c_str(), posix::OpenFlags(access, disposition), 0666);
  } while (fd < 0 && errno == EINTR);
  if (fd < 0) return nullptr;

  void *memory = HeapAlloc(sizeof(File));
  if (memory == nullptr) {
    close(fd);
    errno = ENOMEM;
    return nullptr;
  }
  auto *file = new (memory) File;
  file->fd = fd;
  file->access = access & (kGenericRead | kGenericWrite);
  file->share = share;
  struct stat64 status;
  if (fstat64(fd, &status) != 0) {
    posix::Discard(file);
    return nullptr;
  }
  // CreateFileA does not open directories.
  if (S_ISDIR(status.st_mode)) {
    errno = EISDIR;
    posix::Discard(file);
    return nullptr;
  }
  file->device = status.st_dev;
  file->inode = status.st_ino;
  // Sharing is settled before anything is emptied: a refused open changes nothing.
  if (!posix::Register(file)) {
    errno = EBUSY;
    posix::Discard(file);
    return nullptr;
  }
  // Devices (/dev/full, /dev/null) are opened as they are, as Windows opens NUL.
  if ((disposition == kCreateAlways || disposition == kTruncateExisting) &&
      S_ISREG(status.st_mode) && ftruncate64(fd, 0) != 0) {
    posix::Unregister(file);
    posix::Discard(file);
    return nullptr;
  }
  if ((flags & kFlagSequentialScan) != 0) posix_fadvise64(fd, 0, 0, POSIX_FADV_SEQUENTIAL);
  if ((flags & kFlagRandomAccess) != 0) posix_fadvise64(fd, 0, 0, POSIX_FADV_RANDOM);
  return file;
}

bool CloseFile(Handle h) {
  posix::File *file = posix::FileOf(h);
  if (file == nullptr) return false;
  posix::Unregister(file);
  posix::Discard(file);
  return true;
}

}  // namespace zel::os
