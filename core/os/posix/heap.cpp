// The process heap: the C library's allocator.
#include "os/os.h"

#include <cstdlib>

namespace zel::os {

void *HeapAlloc(size_t bytes) { return std::malloc(bytes ? bytes : 1); }

void *HeapRealloc(void *p, size_t bytes) { return std::realloc(p, bytes ? bytes : 1); }

void HeapFree(void *p) { std::free(p); }

}  // namespace zel::os
