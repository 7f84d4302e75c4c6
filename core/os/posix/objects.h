// The Linux waitable objects behind os::Handle.
//
// Windows keeps one dispatcher that decides, atomically, which waits an object's signal
// satisfies. This is the same design in user space. Every object's state and every list of its
// waiting threads are guarded by one process-wide dispatcher lock. A thread that has to wait links
// a wait block to each of its objects and sleeps on its own condition variable; whoever signals an
// object satisfies the linked waits there and then (consuming an auto-reset event, a unit of a
// semaphore), records the result in the wait block and wakes its thread. So a wait is satisfied by
// a signal even when the object is reset again before the waiter runs, as on Windows, and a
// wait-all takes all its objects at once. The lock is held only for such state changes.
//
// APCs and thread start-up use a second, per-thread lock (ThreadRecord::mutex), always taken after
// the dispatcher lock when both are needed, so that queueing an APC never touches the dispatcher.
#pragma once

#include "os/os.h"

#include <pthread.h>

#include <cerrno>
#include <condition_variable>
#include <mutex>
#include <new>

namespace zel::os::posix {

enum class Kind : uint32_t { kEvent = 1, kSemaphore, kTimer, kThread };

struct ThreadRecord;
struct WaitBlock;

// One wait block linked into one object's list of waiters, in the order the waits began.
struct WaitLink {
  WaitLink *prev = nullptr;
  WaitLink *next = nullptr;
  WaitBlock *block = nullptr;
};

// What every handle points to. Objects are reference-counted: each handle holds one reference,
// a thread waiting on an object holds one for the wait, and a running thread holds one on its own
// record.
struct Object {
  static constexpr uint32_t kLive = 0x4F4C455A;  // "ZELO"

  explicit Object(Kind k) : kind(k) {}
  virtual ~Object() = default;

  uint32_t magic = kLive;
  const Kind kind;
  std::atomic<int32_t> refs{1};
  WaitLink *waiters = nullptr;  // dispatcher lock
  WaitLink *last_waiter = nullptr;
};

struct Event final : Object {
  Event(bool manual, bool set) : Object(Kind::kEvent), manual_reset(manual), signalled(set) {}
  const bool manual_reset;
  bool signalled;  // dispatcher lock
};

struct Semaphore final : Object {
  Semaphore(int32_t initial, int32_t max)
      : Object(Kind::kSemaphore), count(initial), maximum(max) {}
  int32_t count;  // dispatcher lock
  const int32_t maximum;
};

// A waitable timer. Expiry is applied lazily, by whoever looks at the timer after its due time:
// a thread waiting on it (which sleeps no later than the due time), or the arming thread's
// alertable waits, which also watch the timers it armed with a completion routine. Applying it
// satisfies the waits on the timer as a signal does.
struct Timer final : Object {
  explicit Timer(bool manual) : Object(Kind::kTimer), manual_reset(manual) {}
  const bool manual_reset;
  // All below: dispatcher lock.
  bool signalled = false;
  bool armed = false;
  int64_t due_ns = 0;     // on the PerfCounter clock
  int64_t period_ns = 0;  // 0: one expiry
  TimerRoutine routine = nullptr;
  void *routine_arg = nullptr;
  ThreadRecord *owner = nullptr;  // the arming thread, while a routine is set
  Timer *owner_prev = nullptr;    // in owner->routine_timers
  Timer *owner_next = nullptr;
};

// One queued asynchronous procedure call: a plain APC or a timer's completion routine.
struct Apc {
  ApcRoutine routine;
  uintptr_t arg;
  TimerRoutine timer_routine;
  void *timer_arg;
  int64_t fired_at;  // system time of the expiry, for timer routines
};

// A thread: the waitable object that is signalled when the thread ends, and the state it needs to
// wait and to receive APCs.
struct ThreadRecord final : Object {
  ThreadRecord() : Object(Kind::kThread) {}
  ~ThreadRecord() override;

  // Dispatcher lock.
  bool ended = false;
  Timer *routine_timers = nullptr;

  // `mutex` guards everything below and pairs with `wake`, on which only this thread sleeps.
  std::mutex mutex;
  std::condition_variable wake;
  std::atomic<uint64_t> wakes{0};  // raised (under `mutex`) by every wake-up
  Apc *apcs = nullptr;             // ring buffer
  int apc_capacity = 0;
  int apc_head = 0;
  int apc_count = 0;
  bool apcs_closed = false;  // set when the thread ends: further APCs are refused

  // Start-up handshake and suspension, on `control`.
  std::condition_variable control;
  bool started = false;
  int suspend_count = 0;

  std::atomic<uint32_t> tid{0};
  std::atomic<int> priority{kPriorityNormal};
  ThreadRoutine start_routine = nullptr;
  void *start_arg = nullptr;
};

// The process-wide dispatcher lock.
std::mutex &DispatcherLock();

// Takes a reference on the object behind a handle after checking that it is one of ours (and, in
// the first form, of the given kind); null, with the last error set, otherwise. kCurrentThread
// resolves to the calling thread's record.
Object *Acquire(Handle h, Kind kind);
Object *AcquireAny(Handle h);

// Makes an object on the process heap; null, with the last error set, on failure.
template <typename T, typename... Args>
T *NewObject(Args... args) {
  void *memory = HeapAlloc(sizeof(T));
  if (memory == nullptr) {
    SetLastError(ENOMEM);
    return nullptr;
  }
  return new (memory) T(args...);
}
void AddRef(Object *o);
void Release(Object *o);

// One thread's wait: its objects and, once satisfied, the result. It lives on the waiting thread's
// stack; other threads touch it only under the dispatcher lock, while it is linked.
struct WaitBlock {
  ThreadRecord *thread = nullptr;
  int count = 0;
  Object *const *objects = nullptr;
  bool wait_all = false;
  int result = -1;  // index of the object that satisfied the wait (0 for wait-all)
  WaitLink links[kMaxWaitObjects];
};

// Is `o` signalled now? Dispatcher lock held.
bool Signalled(const Object *o);
// Satisfies, in the order they began, the waits that `o`'s state now allows, and wakes their
// threads. Call after `o` became signalled. Dispatcher lock held.
void SatisfyWaits(Object *o);
// Wakes the threads waiting on `o` so that they look again (the object changed in another way).
// Dispatcher lock held.
void NotifyWaiters(Object *o);
// Wakes `thread` from its sleep. Callable with or without the dispatcher lock.
void Notify(ThreadRecord *thread);

// Appends an APC to `thread`'s queue and wakes it; false when the thread has ended.
bool PushApc(ThreadRecord *thread, const Apc &apc);

// Applies a timer's expiry when `now_ns` has reached its due time. Dispatcher lock held.
void AdvanceTimer(Timer *t, int64_t now_ns);
// Forgets the owner of a timer's completion routine. Dispatcher lock held.
void UnlinkFromOwner(Timer *t);

// The calling thread's record, made on first use.
ThreadRecord *CurrentThread();

// Makes sure ThreadDetaching runs when the calling thread ends.
void WatchThreadExit();

}  // namespace zel::os::posix
