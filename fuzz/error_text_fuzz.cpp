// Any code and buffer size: the system's error text comes back terminated, truncated to the
// buffer, with its full length reported, and the last error untouched.
#include "os/os.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  if (size < 5) return 0;
  uint32_t code;
  std::memcpy(&code, data, sizeof code);
  int cap = data[4];
  char buf[256];
  std::memset(buf, 'x', sizeof buf);
  zel::os::SetLastError(12345);
  int length = zel::os::ErrorText(code, buf, cap);
  if (zel::os::LastError() != 12345 || length < 0) std::abort();
  if (cap > 0) {
    size_t stored = std::strlen(buf);
    if (stored >= static_cast<size_t>(cap) || stored > static_cast<size_t>(length)) std::abort();
  }
  return 0;
}
