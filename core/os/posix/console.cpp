// Debugger output, the console and the executable's path.
#include "os/os.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace zel::os {

namespace {

bool WriteAll(int fd, const char *text, size_t length) {
  while (length > 0) {
    ssize_t n = write(fd, text, length);
    if (n < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    text += n;
    length -= static_cast<size_t>(n);
  }
  return true;
}

// Where debugger output goes, decided once from ZEL_DEBUG_OUTPUT; -1 drops it.
int DebugOutputFd() {
  static const int fd = [] {
    const char *target = std::getenv("ZEL_DEBUG_OUTPUT");
    if (target == nullptr || *target == 0) return -1;
    if (std::strcmp(target, "stderr") == 0) return 2;
    return open(target, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
  }();
  return fd;
}

}  // namespace

void DebugOutput(const char *text) {
  SavedLastError saved;
  int fd = DebugOutputFd();
  if (fd >= 0) WriteAll(fd, text, std::strlen(text));
}

bool ConsoleWrite(const char *text, int length) {
  return length <= 0 || WriteAll(1, text, static_cast<size_t>(length));
}

bool ConsoleIsTerminal() { return isatty(1) != 0; }

int ExecutablePath(char *buf, int cap) {
  char path[4096];
  ssize_t n = readlink("/proc/self/exe", path, sizeof path);
  if (n <= 0 || n == static_cast<ssize_t>(sizeof path)) return 0;
  int length = static_cast<int>(n);
  if (cap > 0) {
    int copied = length < cap - 1 ? length : cap - 1;
    std::memcpy(buf, path, static_cast<size_t>(copied));
    buf[copied] = 0;
  }
  return length;
}

}  // namespace zel::os
