// Scheduler: the queue of clients, scheduling, descheduling and the dispatch pass.
#include <zel/diag/counters.h>
#include <zel/sched/scheduler.h>
#include <zel/time/unix_time.h>

#include "os/os.h"
#include "sched/scheduler_parts.h"

#include <cmath>

namespace zel {

SchedulerHost::~SchedulerHost() = default;

Scheduler::Scheduler(const strptr &name, TrackedObj *owner, bool active, SchedulerHost *host)
    : TrackedObj(name, "Thread", owner, active, this),
      queue_(new (MallocX(sizeof(SchedulerQueue))) SchedulerQueue()),
      foreign_timer_(os::CreateWaitableTimer(false)),
      own_timer_(os::CreateWaitableTimer(false)),
      host_(host),
      calls_(new (MallocX(sizeof(PendingCalls))) PendingCalls()) {
  AddDependency(owner);
}

Scheduler::~Scheduler() {
  if (host_ != nullptr) host_->OnSchedulerDying(this);
  RemoveCounters(this);
  {
    CritSectLock hold(lock_);
    queue_->Drain([](DelayClient *c) { c->scheduler_.store(nullptr); });
    CloseSchedulerWindow(window_);
    window_ = nullptr;
  }
  ForgetThreadLocalScheduler(this);
  os::CloseHandle(foreign_timer_);
  os::CloseHandle(own_timer_);
  if (thread_handle_ != nullptr) os::CloseHandle(thread_handle_);
  queue_->~SchedulerQueue();
  FreeX(queue_);
  calls_->~PendingCalls();
  FreeX(calls_);
}

UnixTime Scheduler::GetUnixTime() { return UnixTime::Current(); }
double Scheduler::GetCurrentSecs() { return NanoTime::CurrentSecs(); }
NanoTime Scheduler::GetNanoTime() { return NanoTime::Current(); }
double Scheduler::GetAbsTime() { return GetAbsTimer(); }
TrackedObj *Scheduler::AsTrackedObj() { return this; }
void *Scheduler::GetTimerHandle() { return foreign_timer_; }

void *Scheduler::GetThreadHandle() {
  CritSectLock hold(lock_);
  return thread_handle_;
}

uint32_t Scheduler::GetThreadID() {
  CritSectLock hold(lock_);
  return thread_id_;
}

bool Scheduler::UsesWindow() {
  CritSectLock hold(lock_);
  return use_window_;
}

int Scheduler::ClientCount() {
  CritSectLock hold(lock_);
  return queue_->Count();
}

double Scheduler::GetTimeToNextClient() {
  const double now = GetAbsTimer();
  CritSectLock hold(lock_);
  // The largest finite float, kept as a double (intended).
  if (queue_->empty()) return 3.4028234663852886e38;
  return queue_->Head()->due_ - now;
}

void Scheduler::AddCounters(const cstring &prefix) {
  cstring name(prefix, " clients");
  AddIntCounter(
      name,
      [](const void *s) -> int64_t {
        return static_cast<Scheduler *>(const_cast<void *>(s))->ClientCount();
      },
      this);
}

// --- Scheduling ---

void Scheduler::Schedule(DelayClient *client) { Schedule(client, 0); }

void Scheduler::Schedule(DelayClient *client, float delay) {
  const bool at_once = !(delay > 0);  // also for NaN
  for (;;) {
    Scheduler *owner = client->scheduler_.load(std::memory_order_acquire);
    if (owner != nullptr && owner != this) {
      owner->Deschedule(client);
      continue;
    }
    const double now = GetAbsTimer();
    CritSectLock hold(lock_);
    owner = client->scheduler_.load(std::memory_order_relaxed);
    if (owner != nullptr && owner != this) continue;  // another thread took it meanwhile
    const bool queued = client->IsQueued();
    const float stored = at_once ? 0.0f : delay;
    if (owner == this && queued && client->delay_ == stored) return;
    client->scheduler_.store(this, std::memory_order_release);
    client->delay_ = stored;
    double due = at_once ? now : now + delay;
    // A queued client keeps an earlier due time: rescheduling never postpones it (intended).
    if (queued && client->due_ <= due) due = client->due_;
    if (!queued || due != client->due_) queue_->Place(client, due);
    if (dispatching_ != 0 || queue_->Head() != client) return;
    if (at_once)
      WakeNow();
    else
      Arm(now);
    return;
  }
}

void Scheduler::Deschedule(DelayClient *client) {
  lock_.Enter();
  if (os::CurrentThreadId() != dispatch_thread_) {
    // The client's callback is running on the thread of the pass: wait until it has returned.
    while (current_client_ == client) {
      lock_.Leave();
      os::Yield();
      lock_.Enter();
    }
  }
  if (client->scheduler_.load(std::memory_order_relaxed) == this) {
    const bool was_head = queue_->Head() == client;
    if (client->IsQueued()) queue_->Remove(client);
    client->scheduler_.store(nullptr, std::memory_order_release);
    if (was_head && dispatching_ == 0) Arm(GetAbsTimer());
  }
  lock_.Leave();
}

// --- Dispatching ---

void Scheduler::RunDueClients() {
  CritSectLock hold(lock_);
  if (dispatching_ != 0 || stop_.load(std::memory_order_acquire)) return;
  dispatching_ = 1;
  dispatch_thread_ = os::CurrentThreadId();
  passes_.fetch_add(1, std::memory_order_relaxed);
  pass_time_ = GetAbsTimer();
  const double limit = pass_time_ + 0.001;
  const int32_t last_call = call_count_ + 100;  // at most 101 calls a pass (intended)
  try {
    while (!queue_->empty() && queue_->Head()->due_ < limit && call_count_ <= last_call &&
           !stop_.load(std::memory_order_relaxed)) {
      DelayClient *client = queue_->PopHead();
      current_client_ = client;
      ++call_count_;
      lock_.Leave();
      bool again;
      try {
        again = client->Callback();
      } catch (...) {
        lock_.Enter();
        throw;
      }
      lock_.Enter();
      // After a false result the client may be gone: it is not touched again.
      if (!again) continue;
      Scheduler *owner = client->scheduler_.load(std::memory_order_relaxed);
      if (owner != nullptr && owner != this) continue;  // its callback moved it elsewhere
      // Due after its delay, never within this pass, unless it was queued earlier meanwhile.
      double due = pass_time_ + client->delay_;
      if (due < limit) due = limit;
      if (client->IsQueued() && client->due_ < due) due = client->due_;
      client->scheduler_.store(this, std::memory_order_release);
      queue_->Place(client, due);
    }
  } catch (...) {
    current_client_ = nullptr;
    dispatching_ = 0;
    throw;
  }
  current_client_ = nullptr;
  if (!stop_.load(std::memory_order_relaxed)) Arm(pass_time_);
  dispatching_ = 0;
}

}  // namespace zel
