// The last system error is errno; its text is strerror's.
#include "os/os.h"

#include <cerrno>
#include <cstring>

namespace zel::os {

uint32_t LastError() { return static_cast<uint32_t>(errno); }

void SetLastError(uint32_t code) { errno = static_cast<int>(code); }

int ErrorText(uint32_t code, char *buf, int cap) {
  SavedLastError saved;
  // A code the C library has no text of its own for (it would answer "Unknown error N") has no
  // name either: it is unknown, as it is to FormatMessageA.
  if (strerrorname_np(static_cast<int>(code)) == nullptr) {
    if (cap > 0) buf[0] = 0;
    return 0;
  }
  char scratch[256];
  // The GNU strerror_r returns the text, which may or may not be in `scratch`.
  const char *text = strerror_r(static_cast<int>(code), scratch, sizeof scratch);
  int length = static_cast<int>(std::strlen(text));
  if (cap > 0) {
    int n = length < cap - 1 ? length : cap - 1;
    std::memcpy(buf, text, static_cast<size_t>(n));
    buf[n] = 0;
  }
  return length;
}

}  // namespace zel::os
