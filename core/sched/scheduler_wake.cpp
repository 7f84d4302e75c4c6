// Scheduler: waking its thread (APCs, waitable timers, window mode), its loop, plain calls, and
// binding it to a thread.
#include <zel/diag/error.h>
#include <zel/diag/log.h>
#include <zel/sched/scheduler.h>
#include <zel/text/thread_local_string.h>

#include "os/os.h"
#include "sched/scheduler_parts.h"

#include <cmath>

namespace zel {

namespace {

constexpr uint32_t kHourMs = 3600000;

bool LogListens() { return LogCategory::n_global_clients.load(std::memory_order_relaxed) >= 1; }

}  // namespace

// --- Arming ---

void Scheduler::Arm(double reference) {
  uint32_t wait_ms = kHourMs;
  if (const DelayClient *head = queue_->Head()) {
    const double wait = head->due_ - reference;
    if (!(head->delay_ > 0) || !(wait > 0)) {
      WakeNow();
      return;
    }
    if (wait < 3600) wait_ms = static_cast<uint32_t>(std::floor(wait * 1000));
  }
  ArmTimer(wait_ms);
}

void Scheduler::WakeNow() {
  if (use_window_) {
    PostWindowWake(window_);
  } else if (thread_handle_ != nullptr && os::AtomicIncrement(wake_pending_) == 1) {
    // Wake-ups coalesce: only the request that makes the count 1 queues an APC.
    os::QueueApc(&Scheduler::WakeApc, thread_handle_, reinterpret_cast<uintptr_t>(this));
  }
}

void Scheduler::ArmTimer(uint32_t ms) {
  if (use_window_) SetWindowTimer(window_, ms);
  const int64_t due = -int64_t{ms} * 10000;
  if (os::CurrentThreadId() == thread_id_)
    os::SetWaitableTimer(own_timer_, due, 0, &Scheduler::TimerRoutine, this);
  else
    os::SetWaitableTimer(foreign_timer_, due, 0, nullptr, nullptr);
}

void ZEL_CALLBACK Scheduler::WakeApc(uintptr_t self) {
  auto *s = reinterpret_cast<Scheduler *>(self);
  os::AtomicExchange(s->wake_pending_, 0);
  if (s->dispatching_ == 0) s->RunDueClients();
}

void ZEL_CALLBACK Scheduler::TimerRoutine(void *self, uint32_t, uint32_t) {
  auto *s = static_cast<Scheduler *>(self);
  if (s->dispatching_ == 0) s->RunDueClients();
}

// --- The loop and plain calls ---

void Scheduler::Run() {
  SetUseWindow(false);
  try {
    while (!stop_.load(std::memory_order_acquire)) {
      const uint32_t woke = os::WaitOne(foreign_timer_, os::kInfinite, true);
      if (woke == os::kWaitObject0) RunDueClients();
      if (woke == os::kWaitFailed) break;
    }
  } catch (const ExceptionBase &e) {
    if (LogListens()) {
      ThreadLocalString line;
      e.Print(*line);
      *line << "\r\n";
      PrintLog(*line);
    }
  }
}

void Scheduler::QueueCall(SchedulerCall routine, uintptr_t argument) {
  CritSectLock hold(lock_);
  if (use_window_) {
    PostWindowCall(window_, routine, argument);
  } else if (stop_.load(std::memory_order_acquire)) {
    LogDroppedCall();
  } else {
    // Calls wait in one queue, which one APC empties: the first call into an empty queue queues
    // it (or AttachToThread does, for calls made before the Scheduler had a thread).
    const bool first = calls_->empty();
    calls_->Add(PendingCall{routine, argument});
    if (first && thread_handle_ != nullptr)
      os::QueueApc(&Scheduler::CallsApc, thread_handle_, reinterpret_cast<uintptr_t>(this));
  }
}

void ZEL_CALLBACK Scheduler::CallsApc(uintptr_t self) {
  auto *s = reinterpret_cast<Scheduler *>(self);
  PendingCalls batch;
  {
    CritSectLock hold(s->lock_);
    batch.Swap(*s->calls_);
  }
  int next = 0;
  try {
    for (; next < batch.Count(); ++next) {
      // A stop drops what has not run yet, as it does later calls.
      if (s->stop_.load(std::memory_order_acquire)) {
        s->LogDroppedCall();
      } else {
        batch[next].routine(batch[next].argument);
      }
    }
  } catch (...) {
    batch.Flush();  // the calls after a throwing one are dropped with it
    throw;
  }
  // The batch's buffer serves the next calls, unless new ones have made a bigger one meanwhile.
  batch.Flush();
  CritSectLock hold(s->lock_);
  if (s->calls_->empty() && s->calls_->Capacity() < batch.Capacity()) s->calls_->Swap(batch);
}

void Scheduler::LogDroppedCall() {
  if (!LogListens()) return;
  ThreadLocalString line;
  *line << GetName() << ": Deactivating, APC ignored\r\n";
  PrintLog(*line);
}

void Scheduler::AttachToThread(uint32_t thread_id) {
  bool name_it = false;
  {
    CritSectLock hold(lock_);
    if (thread_handle_ != nullptr) os::CloseHandle(thread_handle_);
    thread_handle_ = os::DuplicateCurrentThread();
    if (thread_handle_ == nullptr) ThrowErrorX("Scheduler failed miserably");
    thread_id_ = thread_id;
    if (!calls_->empty())
      os::QueueApc(&Scheduler::CallsApc, thread_handle_, reinterpret_cast<uintptr_t>(this));
    Arm(GetAbsTimer());
    name_it = !use_window_;
  }
  if (name_it && GetName().empty()) {
    cstring id;
    id << thread_id;
    SetName(id, "Thread");
  }
}

bool Scheduler::SetUseWindow(bool on) {
  CritSectLock hold(lock_);
  CloseSchedulerWindow(window_);
  window_ = nullptr;
  if (on) window_ = OpenSchedulerWindow(this);
  use_window_ = window_ != nullptr;
  Arm(GetAbsTimer());
  return use_window_ == on;
}

// --- Window mode's dispatch ---

intptr_t Scheduler::WindowModeDescriptor() {
  CritSectLock hold(lock_);
  return window_ != nullptr ? WindowDescriptor(window_) : -1;
}

int Scheduler::WindowModeTimeout() {
  const double wait = GetTimeToNextClient();
  if (wait > 3600) return -1;
  return wait <= 0 ? 0 : static_cast<int>(std::ceil(wait * 1000));
}

void Scheduler::DispatchWindowMode() {
  SchedulerWindow *window;
  {
    CritSectLock hold(lock_);
    window = window_;
  }
  if (window != nullptr) DispatchWindow(window);
  if (dispatching_ == 0) RunDueClients();
}

// --- Stopping ---

bool Scheduler::StopRequested() { return GetTargetState() == kInactive; }

void Scheduler::Stop() {
  {
    CritSectLock hold(lock_);
    stop_.store(true, std::memory_order_release);
    WakeNow();
  }
  SetState(kInactive);
}

void Scheduler::Deactivate() {
  if (UsesWindow()) os::PostQuitMessage(0);
  Stop();
}

void Scheduler::OnDeactivateRequested() {
  CritSectLock hold(lock_);
  WakeNow();
}

}  // namespace zel
