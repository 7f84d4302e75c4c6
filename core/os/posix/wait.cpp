// The wait functions and the dispatcher's side of signals: a wait that cannot be satisfied at once
// links a wait block to its objects and sleeps; a signal satisfies linked waits (see objects.h).
#include "os/posix/objects.h"

#include <algorithm>
#include <chrono>
#include <climits>

namespace zel::os {

using namespace posix;

namespace posix {

bool Signalled(const Object *o) {
  switch (o->kind) {
    case Kind::kEvent: return static_cast<const Event *>(o)->signalled;
    case Kind::kSemaphore: return static_cast<const Semaphore *>(o)->count > 0;
    case Kind::kTimer: return static_cast<const Timer *>(o)->signalled;
    case Kind::kThread: return static_cast<const ThreadRecord *>(o)->ended;
  }
  return false;
}

namespace {

void Consume(Object *o) {
  switch (o->kind) {
    case Kind::kEvent: {
      auto *e = static_cast<Event *>(o);
      if (!e->manual_reset) e->signalled = false;
      break;
    }
    case Kind::kSemaphore: --static_cast<Semaphore *>(o)->count; break;
    case Kind::kTimer: {
      auto *t = static_cast<Timer *>(o);
      if (!t->manual_reset) t->signalled = false;
      break;
    }
    case Kind::kThread: break;
  }
}

// Satisfies the wait when its objects allow it: consumes them and records the result.
bool TrySatisfy(WaitBlock &b) {
  if (b.wait_all && b.count > 0) {
    for (int i = 0; i < b.count; ++i)
      if (!Signalled(b.objects[i])) return false;
    for (int i = 0; i < b.count; ++i) Consume(b.objects[i]);
    b.result = 0;
    return true;
  }
  for (int i = 0; i < b.count; ++i) {
    if (Signalled(b.objects[i])) {
      Consume(b.objects[i]);
      b.result = i;
      return true;
    }
  }
  return false;
}

void Link(WaitBlock &b) {
  for (int i = 0; i < b.count; ++i) {
    Object *o = b.objects[i];
    WaitLink &link = b.links[i];
    link.block = &b;
    link.next = nullptr;
    link.prev = o->last_waiter;
    if (o->last_waiter != nullptr)
      o->last_waiter->next = &link;
    else
      o->waiters = &link;
    o->last_waiter = &link;
  }
}

void Unlink(WaitBlock &b) {
  for (int i = 0; i < b.count; ++i) {
    Object *o = b.objects[i];
    WaitLink &link = b.links[i];
    (link.prev != nullptr ? link.prev->next : o->waiters) = link.next;
    (link.next != nullptr ? link.next->prev : o->last_waiter) = link.prev;
    link.prev = link.next = nullptr;
  }
}

}  // namespace

void SatisfyWaits(Object *o) {
  // Each satisfied wait leaves every list it was in, so the walk starts over after one.
  bool satisfied = true;
  while (satisfied && Signalled(o)) {
    satisfied = false;
    for (WaitLink *link = o->waiters; link != nullptr; link = link->next) {
      WaitBlock &b = *link->block;
      if (TrySatisfy(b)) {
        Unlink(b);
        Notify(b.thread);
        satisfied = true;
        break;
      }
    }
  }
}

void NotifyWaiters(Object *o) {
  for (WaitLink *link = o->waiters; link != nullptr; link = link->next) Notify(link->block->thread);
}

}  // namespace posix

namespace {

constexpr int64_t kNever = INT64_MAX;

bool HasApcs(ThreadRecord *self) {
  std::lock_guard lock(self->mutex);
  return self->apc_count > 0;
}

// Runs the calling thread's APCs in queue order, those queued meanwhile included.
void RunApcs(ThreadRecord *self) {
  for (;;) {
    Apc apc;
    {
      std::lock_guard lock(self->mutex);
      if (self->apc_count == 0) return;
      apc = self->apcs[self->apc_head];
      self->apc_head = (self->apc_head + 1) % self->apc_capacity;
      --self->apc_count;
    }
    if (apc.routine != nullptr)
      apc.routine(apc.arg);
    else
      apc.timer_routine(apc.timer_arg, static_cast<uint32_t>(apc.fired_at),
                        static_cast<uint32_t>(static_cast<uint64_t>(apc.fired_at) >> 32));
  }
}

// Brings the timers of the wait, and with `alertable` the calling thread's routine timers, up to
// date; returns the next due time among them, or `wake_at` when that is sooner.
int64_t AdvanceTimers(WaitBlock &b, bool alertable, int64_t now, int64_t wake_at) {
  for (int i = 0; i < b.count; ++i) {
    if (b.objects[i]->kind != Kind::kTimer) continue;
    auto *t = static_cast<Timer *>(b.objects[i]);
    AdvanceTimer(t, now);
    if (t->armed) wake_at = std::min(wake_at, t->due_ns);
  }
  if (alertable) {
    for (Timer *t = b.thread->routine_timers; t != nullptr; t = t->owner_next) {
      AdvanceTimer(t, now);
      if (t->armed) wake_at = std::min(wake_at, t->due_ns);
    }
  }
  return wake_at;
}

uint32_t WaitCore(int count, Object *const *objects, bool wait_all, uint32_t ms, bool alertable) {
  WaitBlock b;
  b.thread = CurrentThread();
  b.count = count;
  b.objects = objects;
  b.wait_all = wait_all;
  const int64_t deadline = ms == kInfinite ? kNever : PerfCounter() + int64_t{ms} * 1000000;
  bool linked = false;

  for (;;) {
    const int64_t now = PerfCounter();
    int64_t wake_at;
    uint64_t seen;
    bool run_apcs = false;
    {
      std::lock_guard lock(DispatcherLock());
      // Applying a timer's expiry may satisfy this very wait.
      wake_at = AdvanceTimers(b, alertable, now, deadline);
      // Once linked, a signal satisfies the wait itself; before, the wait looks for itself.
      if (!linked && b.result < 0) TrySatisfy(b);
      if (b.result >= 0) return kWaitObject0 + static_cast<uint32_t>(b.result);
      run_apcs = alertable && HasApcs(b.thread);
      if (run_apcs || now >= deadline) {
        if (linked) Unlink(b);
      } else if (!linked) {
        Link(b);  // under the same lock as the test: no signal can fall in between
        linked = true;
      }
      seen = b.thread->wakes.load(std::memory_order_relaxed);
    }
    if (run_apcs) {
      RunApcs(b.thread);
      return kWaitIoCompletion;
    }
    if (now >= deadline) return kWaitTimeout;

    ThreadRecord *self = b.thread;
    std::unique_lock lock(self->mutex);
    while (self->wakes.load(std::memory_order_relaxed) == seen &&
           !(alertable && self->apc_count > 0)) {
      if (wake_at == kNever) {
        self->wake.wait(lock);
      } else {
        auto until = std::chrono::steady_clock::time_point(std::chrono::nanoseconds(wake_at));
        if (self->wake.wait_until(lock, until) == std::cv_status::timeout) break;
      }
    }
  }
}

// Takes references on every handle; false, with nothing held and the last error set, when one is
// not a handle.
bool AcquireAll(int count, const Handle *handles, Object **objects) {
  for (int i = 0; i < count; ++i) {
    objects[i] = AcquireAny(handles[i]);
    if (objects[i] == nullptr) {
      while (i-- > 0) Release(objects[i]);
      return false;
    }
  }
  return true;
}

}  // namespace

uint32_t WaitOne(Handle h, uint32_t ms, bool alertable) {
  Object *o = AcquireAny(h);
  if (o == nullptr) return kWaitFailed;
  uint32_t result = WaitCore(1, &o, false, ms, alertable);
  Release(o);
  return result;
}

uint32_t WaitMany(int count, const Handle *handles, bool wait_all, uint32_t ms, bool alertable) {
  Object *objects[kMaxWaitObjects];
  if (count < 1 || count > kMaxWaitObjects) {
    SetLastError(EINVAL);
    return kWaitFailed;
  }
  if (!AcquireAll(count, handles, objects)) return kWaitFailed;
  bool duplicate = false;
  for (int i = 0; i < count && wait_all; ++i)
    for (int j = 0; j < i; ++j) duplicate |= objects[i] == objects[j];
  uint32_t result = kWaitFailed;
  if (duplicate)
    SetLastError(EINVAL);  // as Windows: wait-all refuses a handle given twice
  else
    result = WaitCore(count, objects, wait_all, ms, alertable);
  for (int i = 0; i < count; ++i) Release(objects[i]);
  return result;
}

uint32_t SleepEx(uint32_t ms, bool alertable) {
  uint32_t result = WaitCore(0, nullptr, false, ms, alertable);
  return result == kWaitTimeout ? 0 : result;
}

}  // namespace zel::os
