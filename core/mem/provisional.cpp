// TEMPORARY until the arena allocator is merged: the process heap with a size header.
#include <zel/mem/allocator.h>

#include "os/os.h"

namespace zel {

void *GAlloc(int size) {
  if (size < 0) return nullptr;
  auto *p = static_cast<int64_t *>(os::HeapAlloc(static_cast<size_t>(size) + 8));
  if (p == nullptr) return nullptr;
  *p = size;
  return p + 1;
}

void GFree(void *block) {
  if (block) os::HeapFree(static_cast<int64_t *>(block) - 1);
}

void *GRealloc(void *block, int size) {
  if (block == nullptr) return GAlloc(size);
  if (size < 0) return nullptr;
  auto *p = static_cast<int64_t *>(os::HeapRealloc(static_cast<int64_t *>(block) - 1, size + 8));
  if (p == nullptr) return nullptr;
  *p = size;
  return p + 1;
}

}  // namespace zel
