// Scheduler: waking its thread (APCs, waitable timers, window mode), its loop, plain calls, and
// binding it to a thread.
#include <zel/diag/error.h>
#include <zel/diag/log.h>
#include <zel/sched/scheduler.h>
#include <zel/text/thread_local_string.h>

#include "os/os.h"
#include "sched/scheduler_parts.h"

#include <cmath>
#include <exception>
#include <utility>

namespace zel {

namespace {

constexpr uint32_t kHourMs = 3600000;

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

// The operating system calls APCs and timer routines from inside its waits; no exception may
// unwind through those. One that escapes a client is kept for Run to report as it returns, or
// reported at once when the thread is not in Run.
void Scheduler::Contain(void (*work)(Scheduler *), Scheduler *s) {
  try {
    work(s);
  } catch (...) {
    if (s->in_run_)
      s->failure_ = std::current_exception();
    else
      ReportFailure(std::current_exception());
  }
}

void Scheduler::ReportFailure(std::exception_ptr failure) {
  if (LogCategory::n_global_clients < 1) return;
  ThreadLocalString line;
  try {
    std::rethrow_exception(failure);
  } catch (const ExceptionBase &e) {
    e.Print(*line);
  } catch (const std::exception &e) {
    *line << e.what();
  } catch (...) {
    *line << "Unknown Error";
  }
  *line << "\r\n";
  PrintLog(*line);
}

void ZEL_CALLBACK Scheduler::WakeApc(uintptr_t self) {
  Contain(
      [](Scheduler *s) {
        os::AtomicExchange(s->wake_pending_, 0);
        if (s->dispatching_ == 0) s->RunDueClients();
      },
      reinterpret_cast<Scheduler *>(self));
}

void ZEL_CALLBACK Scheduler::TimerRoutine(void *self, uint32_t, uint32_t) {
  Contain(
      [](Scheduler *s) {
        if (s->dispatching_ == 0) s->RunDueClients();
      },
      static_cast<Scheduler *>(self));
}

// --- The loop and plain calls ---

void Scheduler::Run() {
  SetUseWindow(false);
  in_run_ = true;
  try {
    while (!stop_.load(std::memory_order_acquire) && failure_ == nullptr) {
      const uint32_t woke = os::WaitOne(foreign_timer_, os::kInfinite, true);
      if (woke == os::kWaitObject0) RunDueClients();
      if (woke == os::kWaitFailed) break;
    }
  } catch (...) {
    failure_ = std::current_exception();
  }
  in_run_ = false;
  if (failure_ != nullptr) ReportFailure(std::exchange(failure_, nullptr));
}

void Scheduler::QueueCall(SchedulerCall routine, uintptr_t argument) {
  if (use_window_.load(std::memory_order_acquire)) {
    CritSectLock hold(lock_);
    if (use_window_.load(std::memory_order_relaxed)) {
      PostWindowCall(window_, routine, argument);
      return;
    }
  }
  if (stop_.load(std::memory_order_acquire)) {
    LogDroppedCall();
    return;
  }
  // Calls wait in one queue, behind a lock of their own, which one APC empties: only a call that
  // finds no such APC on its way queues one (or AttachToThread does, for calls made before the
  // Scheduler had a thread).
  NRCritSectLock hold(calls_lock_);
  calls_->Add(PendingCall{routine, argument});
  if (!calls_queued_ && calls_thread_ != nullptr) {
    calls_queued_ = true;
    os::QueueApc(&Scheduler::CallsApc, calls_thread_, reinterpret_cast<uintptr_t>(this));
  }
}

void ZEL_CALLBACK Scheduler::CallsApc(uintptr_t self) {
  Contain(&Scheduler::RunCalls, reinterpret_cast<Scheduler *>(self));
}

void Scheduler::RunCalls(Scheduler *s) {
  PendingCalls batch;
  {
    NRCritSectLock hold(s->calls_lock_);
    batch.Swap(*s->calls_);
  }
  try {
    for (const PendingCall &call : batch) {
      // A stop drops what has not run yet, as it does later calls.
      if (s->stop_.load(std::memory_order_acquire))
        s->LogDroppedCall();
      else
        call.routine(call.argument);
    }
  } catch (...) {
    // The calls after a throwing one are dropped with it; the next call queues a new APC.
    NRCritSectLock hold(s->calls_lock_);
    s->calls_queued_ = false;
    throw;
  }
  batch.Flush();
  NRCritSectLock hold(s->calls_lock_);
  if (s->calls_->empty()) {
    s->calls_queued_ = false;
    // The batch's buffer serves the next calls, unless they have made a bigger one.
    if (s->calls_->Capacity() < batch.Capacity()) s->calls_->Swap(batch);
  } else {
    // Calls that came meanwhile get an APC of their own, behind the wake-ups and timers that
    // arrived with them: a stream of calls does not starve the clients.
    os::QueueApc(&Scheduler::CallsApc, s->calls_thread_, reinterpret_cast<uintptr_t>(s));
  }
}

void Scheduler::LogDroppedCall() {
  if (LogCategory::n_global_clients < 1) return;
  ThreadLocalString line;
  *line << GetName() << ": Deactivating, APC ignored\r\n";
  PrintLog(*line);
}

void Scheduler::AttachToThread(uint32_t thread_id) {
  bool name_it = false;
  {
    CritSectLock hold(lock_);
    void *const old_handle = thread_handle_;
    thread_handle_ = os::DuplicateCurrentThread();
    if (thread_handle_ == nullptr) {
      thread_handle_ = old_handle;
      ThrowErrorX("Scheduler failed miserably");
    }
    thread_id_ = thread_id;
    {
      NRCritSectLock calls(calls_lock_);
      calls_thread_ = thread_handle_;
      calls_queued_ = !calls_->empty();
      if (calls_queued_)
        os::QueueApc(&Scheduler::CallsApc, calls_thread_, reinterpret_cast<uintptr_t>(this));
    }
    if (old_handle != nullptr) os::CloseHandle(old_handle);  // no call uses it any more
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
