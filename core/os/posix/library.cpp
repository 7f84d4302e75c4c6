// Loading other libraries: dlopen with the library's own symbols bound first, as Windows does.
#include "os/os.h"

#include <dlfcn.h>

#include <cerrno>

namespace zel::os {

void *LoadLibrary(const char *name) {
  void *library = dlopen(name, RTLD_NOW | RTLD_LOCAL | RTLD_DEEPBIND);
  if (library == nullptr) SetLastError(ENOENT);
  return library;
}

void *GetProcAddress(void *library, const char *name) { return dlsym(library, name); }

bool FreeLibrary(void *library) { return dlclose(library) == 0; }

}  // namespace zel::os
