// Handles, references and wake-ups of the Linux waitable objects.
#include "os/posix/objects.h"

#include <cerrno>
#include <cstring>
#include <new>

namespace zel::os::posix {

namespace {
constinit std::mutex g_dispatcher;

void Destroy(Object *o) {
  o->magic = 0;
  o->~Object();
  HeapFree(o);
}
}  // namespace

std::mutex &DispatcherLock() { return g_dispatcher; }

ThreadRecord::~ThreadRecord() { HeapFree(apcs); }

Object *Acquire(Handle h, Kind kind) {
  Object *o = AcquireAny(h);
  if (o != nullptr && o->kind != kind) {
    Release(o);
    SetLastError(EBADF);
    return nullptr;
  }
  return o;
}

Object *AcquireAny(Handle h) {
  Object *o = nullptr;
  if (h == kCurrentThread) {
    o = CurrentThread();
  } else if (IsHandle(h)) {
    o = static_cast<Object *>(h);
    if (o->magic != Object::kLive) o = nullptr;
  }
  if (o == nullptr) {
    SetLastError(EBADF);
    return nullptr;
  }
  AddRef(o);
  return o;
}

void AddRef(Object *o) { o->refs.fetch_add(1, std::memory_order_relaxed); }

void Release(Object *o) {
  if (o->refs.fetch_sub(1, std::memory_order_acq_rel) == 1) Destroy(o);
}

void Notify(ThreadRecord *thread) {
  {
    std::lock_guard lock(thread->mutex);
    thread->wakes.fetch_add(1, std::memory_order_relaxed);
  }
  thread->wake.notify_one();
}

bool PushApc(ThreadRecord *thread, const Apc &apc) {
  {
    std::lock_guard lock(thread->mutex);
    if (thread->apcs_closed) return false;
    if (thread->apc_count == thread->apc_capacity) {
      int capacity = thread->apc_capacity ? thread->apc_capacity * 2 : 16;
      auto *ring = static_cast<Apc *>(HeapAlloc(sizeof(Apc) * static_cast<size_t>(capacity)));
      if (ring == nullptr) return false;
      for (int i = 0; i < thread->apc_count; ++i)
        ring[i] = thread->apcs[(thread->apc_head + i) % thread->apc_capacity];
      HeapFree(thread->apcs);
      thread->apcs = ring;
      thread->apc_capacity = capacity;
      thread->apc_head = 0;
    }
    thread->apcs[(thread->apc_head + thread->apc_count) % thread->apc_capacity] = apc;
    ++thread->apc_count;
    thread->wakes.fetch_add(1, std::memory_order_relaxed);
  }
  thread->wake.notify_one();
  return true;
}

}  // namespace zel::os::posix

namespace zel::os {

bool CloseHandle(Handle h) {
  posix::Object *o = IsHandle(h) && h != kCurrentThread ? static_cast<posix::Object *>(h) : nullptr;
  if (o == nullptr || o->magic != posix::Object::kLive) {
    SetLastError(EBADF);
    return false;
  }
  if (o->kind == posix::Kind::kTimer) {
    // Closing a timer cancels it: only one handle ever names a timer.
    std::lock_guard lock(posix::DispatcherLock());
    auto *t = static_cast<posix::Timer *>(o);
    t->armed = false;
    posix::UnlinkFromOwner(t);
  }
  posix::Release(o);
  return true;
}

}  // namespace zel::os
