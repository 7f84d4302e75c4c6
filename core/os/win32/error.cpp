// The last system error and its text.
#include "os/os.h"

#include "os/win32/win.h"

#include <cstring>

namespace zel::os {

uint32_t LastError() { return ::GetLastError(); }

void SetLastError(uint32_t code) { ::SetLastError(code); }

int ErrorText(uint32_t code, char *buf, int cap) {
  SavedLastError saved;
  char *text = nullptr;
  DWORD length = FormatMessageA(
      FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
      nullptr, code, MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT), reinterpret_cast<LPSTR>(&text), 0,
      nullptr);
  if (cap > 0) {
    int n = static_cast<int>(length) < cap - 1 ? static_cast<int>(length) : cap - 1;
    if (n > 0) std::memcpy(buf, text, static_cast<size_t>(n));
    buf[n > 0 ? n : 0] = 0;
  }
  if (text != nullptr) LocalFree(text);
  return static_cast<int>(length);
}

}  // namespace zel::os
