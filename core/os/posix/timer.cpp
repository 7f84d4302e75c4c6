// Waitable timers, evaluated lazily by the threads that look at them (see objects.h).
#include "os/posix/objects.h"

namespace zel::os {

using posix::DispatcherLock;
using posix::Kind;
using posix::Timer;

namespace posix {

void UnlinkFromOwner(Timer *t) {
  if (t->owner == nullptr) return;
  if (t->owner_prev != nullptr)
    t->owner_prev->owner_next = t->owner_next;
  else
    t->owner->routine_timers = t->owner_next;
  if (t->owner_next != nullptr) t->owner_next->owner_prev = t->owner_prev;
  t->owner = nullptr;
  t->owner_prev = t->owner_next = nullptr;
}

void AdvanceTimer(Timer *t, int64_t now_ns) {
  if (!t->armed || now_ns < t->due_ns) return;
  t->signalled = true;
  if (t->owner != nullptr)
    PushApc(t->owner, Apc{nullptr, 0, t->routine, t->routine_arg, SystemTime100ns()});
  if (t->period_ns > 0)
    t->due_ns += ((now_ns - t->due_ns) / t->period_ns + 1) * t->period_ns;
  else
    t->armed = false;
  SatisfyWaits(t);
}

}  // namespace posix

Handle CreateWaitableTimer(bool manual_reset) { return posix::NewObject<Timer>(manual_reset); }

bool SetWaitableTimer(Handle timer, int64_t due, int32_t period_ms, TimerRoutine routine,
                      void *arg) {
  if (period_ms < 0) {
    SetLastError(EINVAL);
    return false;
  }
  auto *t = static_cast<Timer *>(posix::Acquire(timer, Kind::kTimer));
  if (t == nullptr) return false;
  posix::ThreadRecord *self = routine != nullptr ? posix::CurrentThread() : nullptr;
  int64_t now = PerfCounter();
  int64_t delay_100ns = due < 0 ? -due : due - SystemTime100ns();
  {
    std::lock_guard lock(DispatcherLock());
    posix::UnlinkFromOwner(t);
    t->signalled = false;
    t->armed = true;
    t->due_ns = now + (delay_100ns > 0 ? delay_100ns * 100 : 0);
    t->period_ns = int64_t{period_ms} * 1000000;
    t->routine = routine;
    t->routine_arg = arg;
    if (self != nullptr && !self->ended) {
      t->owner = self;
      t->owner_next = self->routine_timers;
      if (self->routine_timers != nullptr) self->routine_timers->owner_prev = t;
      self->routine_timers = t;
    }
    // Threads waiting on the timer sleep until its old due time; let them look again.
    posix::NotifyWaiters(t);
  }
  posix::Release(t);
  return true;
}

bool CancelWaitableTimer(Handle timer) {
  auto *t = static_cast<Timer *>(posix::Acquire(timer, Kind::kTimer));
  if (t == nullptr) return false;
  {
    std::lock_guard lock(DispatcherLock());
    t->armed = false;
    posix::UnlinkFromOwner(t);
  }
  posix::Release(t);
  return true;
}

}  // namespace zel::os
