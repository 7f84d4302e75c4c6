// The library's load on Linux: an ELF constructor stands for the process-attach notification.
#include "os/os.h"

#include <dlfcn.h>

namespace zel::os {

void *ThisModule() {
  Dl_info info;
  if (dladdr(reinterpret_cast<void *>(&ThisModule), &info) == 0) return nullptr;
  return info.dli_fbase;
}

namespace {
__attribute__((constructor)) void OnLoad() { ModuleAttached(ThisModule()); }
}  // namespace

}  // namespace zel::os
