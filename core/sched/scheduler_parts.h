// The Scheduler's inner parts, shared by its source files: the queue of clients, the plain calls
// waiting for its thread, the window mode's channel and the threads' Schedulers.
#pragma once

#include <zel/mem/tary.h>
#include <zel/sched/scheduler.h>

#include "sched/scheduler_queue.h"

namespace zel {

// A plain call waiting for the Scheduler's thread.
struct PendingCall {
  SchedulerCall routine;
  uintptr_t argument;
};
struct Scheduler::PendingCalls : TAry<PendingCall> {};

// The Scheduler's own entry points for its parts.
class SchedulerAccess {
 public:
  // A wake-up or timer message of window mode, on the Scheduler's thread.
  static void WakeFromWindow(Scheduler *s) {
    Scheduler::Contain(
        [](Scheduler *self) {
          if (self->dispatching_ == 0) self->RunDueClients();
        },
        s);
  }
  // A plain call carried by a window message, on the Scheduler's thread.
  static void CallFromWindow(SchedulerCall routine, uintptr_t argument) {
    try {
      routine(argument);
    } catch (...) {
      Scheduler::ReportFailure(std::current_exception());
    }
  }
  // Logs what escaped a thread's work, as Run logs what escapes a client.
  static void ReportFailure(std::exception_ptr failure) { Scheduler::ReportFailure(failure); }
  // The host goes before the Scheduler: it is told nothing more.
  static void ForgetHost(Scheduler *s) { s->host_ = nullptr; }
  // Makes a Scheduler active (tracked state 1): a WorkThread's, as its thread starts.
  static void Activate(Scheduler *s) { s->SetState(TrackedObj::kActive); }
  // The global Scheduler: named "root", active, the root of the tracked objects.
  static Scheduler *MakeRoot() { return new Scheduler("root", nullptr, true, nullptr); }
};

// --- Window mode: the channel of a hidden window (Windows) or of an application's loop (Linux) ---

// Opens the channel on the calling thread for `owner`; null when it cannot.
SchedulerWindow *OpenSchedulerWindow(Scheduler *owner);
// Closes it; null is ignored.
void CloseSchedulerWindow(SchedulerWindow *window);
// Carries a plain call / a wake-up to the Scheduler's thread. Any thread.
void PostWindowCall(SchedulerWindow *window, SchedulerCall routine, uintptr_t argument);
void PostWindowWake(SchedulerWindow *window);
// Sets the window's timer to `ms` milliseconds.
void SetWindowTimer(SchedulerWindow *window, uint32_t ms);
// The descriptor an application's loop watches (Linux); -1 on Windows.
intptr_t WindowDescriptor(SchedulerWindow *window);
// Hands the calls waiting in the channel to the Scheduler (Linux); nothing on Windows, whose
// message loop delivers them.
void DispatchWindow(SchedulerWindow *window);

// --- The threads' Schedulers ---

// Clears the calling thread's Scheduler when it is `scheduler`, which is going away.
void ForgetThreadLocalScheduler(Scheduler *scheduler);

}  // namespace zel
