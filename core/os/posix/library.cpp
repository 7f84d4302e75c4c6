// Loading other libraries: dlopen with the library's own symbols bound first, as Windows does.
#include "os/os.h"

#include <dlfcn.h>

#include <cerrno>

namespace zel::os {

namespace {

// A library binds its own symbols first, as on Windows. AddressSanitizer refuses that: it must
// intercept every library's calls into the C runtime, so under it libraries bind as usual.
#if defined(__SANITIZE_ADDRESS__)
constexpr int kOwnSymbolsFirst = 0;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr int kOwnSymbolsFirst = 0;
#else
constexpr int kOwnSymbolsFirst = RTLD_DEEPBIND;
#endif
#else
constexpr int kOwnSymbolsFirst = RTLD_DEEPBIND;
#endif

}  // namespace

void *LoadLibrary(const char *name) {
  void *library = dlopen(name, RTLD_NOW | RTLD_LOCAL | kOwnSymbolsFirst);
  if (library == nullptr) SetLastError(ENOENT);
  return library;
}

void *GetProcAddress(void *library, const char *name) { return dlsym(library, name); }

bool FreeLibrary(void *library) { return dlclose(library) == 0; }

}  // namespace zel::os
