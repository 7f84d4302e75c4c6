// The per-thread pools of scratch strings.
#include <zel/mem/allocator.h>
#include <zel/mem/tary.h>
#include <zel/text/thread_local_string.h>
#include <zel/thread/exit_hooks.h>

#include "os/os.h"

#include <new>

namespace zel {

namespace {

struct Pool {
  TAry<cstring *> spares;

  ~Pool() {
    for (cstring *s : spares) {
      s->~cstring();
      FreeX(s);
    }
  }
};

uint32_t Slot() {
  static const uint32_t slot = os::TlsAlloc();
  return slot;
}

// At the thread's end: forget the pool, then free it and its strings.
void FreePool(void *pool) {
  os::TlsSet(Slot(), nullptr);
  static_cast<Pool *>(pool)->~Pool();
  FreeX(pool);
}

Pool &ThisThreadsPool() {
  auto *pool = static_cast<Pool *>(os::TlsGet(Slot()));
  if (pool == nullptr) {
    pool = new (MallocX(sizeof(Pool))) Pool();
    os::TlsSet(Slot(), pool);
    AddThreadExitHook(Hook0V(FreePool, pool));
  }
  return *pool;
}

}  // namespace

ThreadLocalString::ThreadLocalString() {
  Pool &pool = ThisThreadsPool();
  if (pool.spares.Count() > 0) {
    string_ = pool.spares.Last();
    pool.spares.RemoveAt(pool.spares.Count() - 1);
  } else {
    string_ = new (MallocX(sizeof(cstring))) cstring();
  }
}

ThreadLocalString::~ThreadLocalString() {
  Pool &pool = ThisThreadsPool();
  if (pool.spares.Count() < kLimit) {
    string_->Flush();
    pool.spares.Add(string_);
  } else {
    string_->~cstring();
    FreeX(string_);
  }
}

}  // namespace zel
