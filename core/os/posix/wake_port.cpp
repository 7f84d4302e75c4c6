// The external-loop wake-up: an eventfd.
#include "os/os.h"

#include <sys/eventfd.h>
#include <unistd.h>

namespace zel::os {

bool WakePort::Open() {
  Close();
  int fd = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  if (fd < 0) return false;
  native_ = fd;
  return true;
}

void WakePort::Close() {
  if (native_ != -1) close(static_cast<int>(native_));
  native_ = -1;
}

void WakePort::Signal() {
  uint64_t one = 1;
  // A full counter is still readable, which is all a signal needs.
  [[maybe_unused]] ssize_t n = write(static_cast<int>(native_), &one, sizeof one);
}

bool WakePort::Drain() {
  uint64_t count = 0;
  return read(static_cast<int>(native_), &count, sizeof count) == sizeof count;
}

}  // namespace zel::os
