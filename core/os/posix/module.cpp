// The library's module on Linux: the shared object (or executable) that holds this code.
#include "os/os.h"

#include <dlfcn.h>

namespace zel::os {

void *ThisModule() {
  static void *const base = [] {
    Dl_info info;
    return dladdr(reinterpret_cast<void *>(&ThisModule), &info) != 0 ? info.dli_fbase : nullptr;
  }();
  return base;
}

}  // namespace zel::os
