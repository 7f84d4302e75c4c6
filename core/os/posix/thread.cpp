// Threads: identity, start-up (suspended or not), priorities, APCs, and the end of a thread.
#include "os/posix/objects.h"

#include <sched.h>
#include <sys/resource.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>

namespace zel::os {

using posix::DispatcherLock;
using posix::ThreadRecord;

namespace {

// Both trivially destructible, so valid during the whole life of the thread.
thread_local ThreadRecord *t_record = nullptr;
thread_local uint32_t t_tid = 0;
thread_local bool t_detach = false;
// The main thread's record, which lives until the process ends (static destructors may wait).
ThreadRecord *g_main_record = nullptr;

bool IsMainThread() { return CurrentThreadId() == static_cast<uint32_t>(getpid()); }

// Refuses further APCs, then signals the thread's handle; drops the thread's own reference.
void EndRecord(ThreadRecord *r) {
  {
    std::lock_guard lock(r->mutex);
    r->apcs_closed = true;
    r->apc_count = 0;
  }
  {
    std::lock_guard lock(DispatcherLock());
    r->ended = true;
    while (r->routine_timers != nullptr) posix::UnlinkFromOwner(r->routine_timers);
    posix::SatisfyWaits(r);
  }
  posix::Release(r);
}

// Its destructor is the thread's end as the library sees it. It is made on first use in the
// thread, so it outlives the thread_local objects made after that.
struct ExitGuard {
  bool armed = false;
  ~ExitGuard() {
    // The thread that ends the process gets no detach, as on Windows, and its record stays.
    if (IsMainThread()) return;
    if (t_detach) ThreadDetaching();
    if (t_record != nullptr) EndRecord(t_record);
    t_record = nullptr;
  }
};
thread_local ExitGuard t_exit_guard;

void *Trampoline(void *p) {
  auto *r = static_cast<ThreadRecord *>(p);
  t_record = r;
  t_detach = true;
  t_exit_guard.armed = true;
  r->tid = CurrentThreadId();
  {
    std::unique_lock lock(r->mutex);
    r->started = true;
    r->control.notify_all();
    r->control.wait(lock, [r] { return r->suspend_count == 0; });
  }
  ThreadAttached();
  r->start_routine(r->start_arg);
  return nullptr;
}

// The nice value that stands for a Windows priority.
int NiceFor(int priority) {
  switch (priority) {
    case kPriorityIdle: return 19;
    case kPriorityLowest: return 10;
    case kPriorityBelowNormal: return 5;
    case kPriorityAboveNormal: return -5;
    case kPriorityHighest: return -10;
    case kPriorityTimeCritical: return -20;
    default: return 0;
  }
}

}  // namespace

namespace posix {

ThreadRecord *CurrentThread() {
  if (t_record == nullptr) {
    // A thread the library did not start: its record is made on first need. Allocation failure
    // here leaves nothing to wait with, and there is no way to go on.
    t_record = NewObject<ThreadRecord>();
    if (t_record == nullptr) std::abort();
    t_record->tid = CurrentThreadId();
    t_record->started = true;
    t_exit_guard.armed = true;
    if (IsMainThread()) g_main_record = t_record;
  }
  return t_record;
}

void WatchThreadExit() {
  t_detach = true;
  t_exit_guard.armed = true;
}

}  // namespace posix

uint32_t CurrentThreadId() {
  if (t_tid == 0) t_tid = static_cast<uint32_t>(gettid());
  return t_tid;
}

void Yield() { sched_yield(); }

int ProcessorCount() {
  long n = sysconf(_SC_NPROCESSORS_ONLN);
  return n < 1 ? 1 : static_cast<int>(n);
}

void Sleep(uint32_t ms) {
  timespec ts{static_cast<time_t>(ms / 1000), static_cast<long>(ms % 1000) * 1000000};
  while (nanosleep(&ts, &ts) != 0 && errno == EINTR) {
  }
}

Handle CreateThread(ThreadRoutine routine, void *arg, uint32_t stack_size, bool suspended,
                    uint32_t *thread_id) {
  ThreadRecord *r = posix::NewObject<ThreadRecord>();
  if (r == nullptr) return nullptr;
  r->refs = 2;  // the handle, and the thread itself until it ends
  r->start_routine = routine;
  r->start_arg = arg;
  r->suspend_count = suspended ? 1 : 0;

  pthread_attr_t attr;
  pthread_attr_init(&attr);
  pthread_attr_setdetachstate(&attr, PTHREAD_CREATE_DETACHED);
  if (stack_size != 0) {
    // Windows reserves stacks in 64 KiB steps; so does this.
    size_t size = std::max<size_t>(stack_size, 65536);
    pthread_attr_setstacksize(&attr, (size + 65535) & ~size_t{65535});
  }
  pthread_t thread;
  int error = pthread_create(&thread, &attr, Trampoline, r);
  pthread_attr_destroy(&attr);
  if (error != 0) {
    r->refs = 1;
    posix::Release(r);
    SetLastError(static_cast<uint32_t>(error));
    return nullptr;
  }
  {
    std::unique_lock lock(r->mutex);
    r->control.wait(lock, [r] { return r->started; });
  }
  if (thread_id != nullptr) *thread_id = r->tid;
  return r;
}

uint32_t ResumeThread(Handle thread) {
  auto *r = static_cast<ThreadRecord *>(posix::Acquire(thread, posix::Kind::kThread));
  if (r == nullptr) return 0xFFFFFFFF;
  uint32_t previous;
  {
    std::lock_guard lock(r->mutex);
    previous = static_cast<uint32_t>(r->suspend_count);
    if (r->suspend_count > 0 && --r->suspend_count == 0) r->control.notify_all();
  }
  posix::Release(r);
  return previous;
}

bool SetThreadPriority(Handle thread, int priority) {
  if (priority != kPriorityIdle && priority != kPriorityTimeCritical &&
      (priority < kPriorityLowest || priority > kPriorityHighest)) {
    SetLastError(EINVAL);
    return false;
  }
  auto *r = static_cast<ThreadRecord *>(posix::Acquire(thread, posix::Kind::kThread));
  if (r == nullptr) return false;
  r->priority = priority;
  {
    // Best effort: raising a thread's priority needs privilege, which most processes lack.
    SavedLastError saved;
    setpriority(PRIO_PROCESS, static_cast<id_t>(r->tid.load()), NiceFor(priority));
  }
  posix::Release(r);
  return true;
}

int GetThreadPriority(Handle thread) {
  auto *r = static_cast<ThreadRecord *>(posix::Acquire(thread, posix::Kind::kThread));
  if (r == nullptr) return kPriorityError;
  int priority = r->priority;
  posix::Release(r);
  return priority;
}

Handle DuplicateCurrentThread() {
  ThreadRecord *r = posix::CurrentThread();
  posix::AddRef(r);
  return r;
}

bool QueueApc(ApcRoutine routine, Handle thread, uintptr_t arg) {
  auto *r = static_cast<ThreadRecord *>(posix::Acquire(thread, posix::Kind::kThread));
  if (r == nullptr) return false;
  bool queued = posix::PushApc(r, posix::Apc{routine, arg, nullptr, nullptr, 0});
  posix::Release(r);
  if (!queued) SetLastError(ESRCH);
  return queued;
}

}  // namespace zel::os
