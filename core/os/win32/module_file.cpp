// The path of a loaded module.
#include "os/os.h"
#include "os/win32/win.h"

namespace zel::os {

int ModuleFileName(void *module, char *buf, int cap) {
  if (cap <= 0) return 0;
  DWORD n = GetModuleFileNameA(static_cast<HMODULE>(module), buf, static_cast<DWORD>(cap));
  // A path that does not fit comes back cut to the buffer's size.
  return n == 0 || n >= static_cast<DWORD>(cap) ? 0 : static_cast<int>(n);
}

}  // namespace zel::os
