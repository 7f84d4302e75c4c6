// The allocation functions that never return null.
#include <zel/mem/allocator.h>

#include <cstdlib>

namespace zel {

void *MallocX(int size) {
  void *block = GAlloc(size);
  if (block == nullptr) std::abort();  // replaced by ErrorX when errors land
  return block;
}

void *ReallocX(void *block, int size) {
  void *resized = GRealloc(block, size);
  if (resized == nullptr) std::abort();  // replaced by ErrorX when errors land
  return resized;
}

void FreeX(void *block) { GFree(block); }

}  // namespace zel
