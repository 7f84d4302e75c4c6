// The process heap.
#include "os/os.h"

#include "os/win32/win.h"

namespace zel::os {

void *HeapAlloc(size_t bytes) { return ::HeapAlloc(GetProcessHeap(), 0, bytes ? bytes : 1); }

void *HeapRealloc(void *p, size_t bytes) {
  if (p == nullptr) return HeapAlloc(bytes);
  return ::HeapReAlloc(GetProcessHeap(), 0, p, bytes ? bytes : 1);
}

void HeapFree(void *p) {
  if (p != nullptr) ::HeapFree(GetProcessHeap(), 0, p);
}

}  // namespace zel::os
