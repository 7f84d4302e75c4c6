// Loading other libraries.
#include "os/os.h"
#include "os/win32/win.h"

namespace zel::os {

void *LoadLibrary(const char *name) { return LoadLibraryA(name); }

void *GetProcAddress(void *library, const char *name) {
  return reinterpret_cast<void *>(::GetProcAddress(static_cast<HMODULE>(library), name));
}

bool FreeLibrary(void *library) { return ::FreeLibrary(static_cast<HMODULE>(library)) != 0; }

}  // namespace zel::os
