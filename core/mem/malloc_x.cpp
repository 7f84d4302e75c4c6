// The throwing forms of the allocator's operations.
#include <zel/diag/error.h>
#include <zel/mem/allocator.h>
#include <zel/text/thread_local_string.h>

namespace zel {

namespace {

[[noreturn]] void Fail(const char *what, int size) {
  ThreadLocalString message;
  *message << what << " (" << size << ") failed";
  ThrowErrorX(*message);
}

}  // namespace

void *MallocX(int size) {
  void *block = GAlloc(size);
  if (block == nullptr) Fail("Malloc", size);
  return block;
}

void *ReallocX(void *block, int size) {
  void *moved = GRealloc(block, size);
  if (moved == nullptr) Fail("Realloc", size);
  return moved;
}

void FreeX(void *block) { GFree(block); }

}  // namespace zel
