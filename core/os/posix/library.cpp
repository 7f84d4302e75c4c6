// Loading other libraries: dlopen with the library's own symbols bound first, as Windows does.
#include "os/os.h"

#include <dlfcn.h>

#include <cerrno>

namespace zel::os {

namespace {

// A library binds its own symbols first, as on Windows. The sanitizers refuse that: they must
// intercept every library's calls into the C runtime, so under them libraries bind as usual.
#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define ZEL_SANITIZED
#endif
#elif defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define ZEL_SANITIZED
#endif
#if defined(ZEL_SANITIZED)
constexpr int kOwnSymbolsFirst = 0;
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
