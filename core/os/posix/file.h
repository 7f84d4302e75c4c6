// The record behind a Linux file handle.
#pragma once

#include "os/os.h"

#include <sys/types.h>

namespace zel::os::posix {

// An open descriptor with what its open asked for, linked into the process's list of open files
// that share modes are checked against.
struct File {
  static constexpr uint32_t kLive = 0x4C494650;  // "PFIL"

  uint32_t magic = kLive;
  int fd = -1;
  dev_t device = 0;
  ino_t inode = 0;
  uint32_t access = 0;  // kGenericRead | kGenericWrite
  uint32_t share = 0;   // kShareRead | kShareWrite | kShareDelete
  File *prev = nullptr;
  File *next = nullptr;
};

// The record of a file handle, or null (errno EBADF) when `h` is not an open file handle.
File *FileOf(Handle h);

}  // namespace zel::os::posix
