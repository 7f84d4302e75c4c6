// Scheduler: the event loop of one thread. It calls clients (DelayClient) on its thread as soon as
// possible or after a delay, and carries plain calls from any thread onto its thread.
//
//   safeptr<Scheduler> s = CreateScheduler("worker", nullptr, true, nullptr);
//   // on the thread that will run it:
//   SetThreadLocalScheduler(s.get());
//   s->Run();                     // until the Scheduler is stopped or deactivated
//   // from any thread:
//   client.Schedule(s.get(), 0.5f);
//   s->QueueCall(&Routine, arg);
//
// The queue is one binary heap ordered by due time (GetAbsTimer seconds), clients with equal due
// times in the order they were queued. A thread wakes in one of two ways. In the default mode it
// sleeps in alertable waits: wake-ups arrive as asynchronous procedure calls (APCs), delays as
// waitable timers. In window mode it runs the application's own event loop: on Windows a message
// loop, which a hidden window receives the Scheduler's messages through; on Linux any loop that
// watches WindowModeDescriptor() and calls DispatchWindowMode() (see there).
//
// Every Scheduler is also a tracked object of kind "Thread": deactivating it stops its loop. The
// global Scheduler, named "root", is made by the library as it loads, on the loading thread (the
// user-interface thread), and is the root of the tracked objects; it runs when the application
// runs it (Run, or a message loop in window mode).
#pragma once

#include <zel/sched/delay_client.h>
#include <zel/sched/tracked_obj.h>
#include <zel/text/cstring.h>
#include <zel/thread/critsect.h>
#include <zel/thread/nr_critsect.h>
#include <zel/time/nano_time.h>
#include <zel/time/unix_time.h>

#include <atomic>
#include <cstdint>
#include <exception>

namespace zel {

class SchedulerQueue;
struct SchedulerWindow;

// What a Scheduler was made for, told when the Scheduler goes away. Given at creation, not owned.
class ZEL_API SchedulerHost {
 public:
  virtual ~SchedulerHost();
  // Called from the Scheduler's destructor.
  virtual void OnSchedulerDying(Scheduler *scheduler) = 0;
};

// A plain call carried to the Scheduler's thread: routine(argument). Its calling convention is
// that of an APC routine.
using SchedulerCall = void(ZEL_CALLBACK *)(uintptr_t argument);

// The event loop of one thread. Schedule, Deschedule, QueueCall and the queries may be called from
// any thread at any time, also before the Scheduler is attached to its thread; clients and plain
// calls always run on that thread, one at a time, and only from an alertable wait, a timer
// completion or the window mode's dispatch. The Scheduler's lock is never held while a client
// runs.
class ZEL_API Scheduler : public TrackedObj {
 public:
  // The current UnixTime, NanoTime::CurrentSecs() and NanoTime.
  virtual UnixTime GetUnixTime();
  virtual double GetCurrentSecs();
  virtual NanoTime GetNanoTime();

  // Queues `client` to run as soon as possible: Schedule(client, 0).
  virtual void Schedule(DelayClient *client);
  // Queues or re-queues `client` to run after `delay` seconds (0 or less, or NaN: as soon as
  // possible), taking it out of another Scheduler's queue first. A queued client keeps its due
  // time when that is earlier: rescheduling never postpones a queued client (intended). A client
  // already queued here with the same delay stays as it is.
  virtual void Schedule(DelayClient *client, float delay);
  // Takes `client` out of the queue, if it is queued here; its Scheduler becomes null. Called
  // from another thread while the client's callback runs, it waits (yielding) until the callback
  // has returned (intended): afterwards the callback is not running.
  virtual void Deschedule(DelayClient *client);

  ~Scheduler() override;

  // This object as a tracked object.
  virtual TrackedObj *AsTrackedObj();

  // One dispatch pass, on the Scheduler's thread: calls the clients due before the pass's start +
  // 1 ms, at most 101 of them (intended: the thread returns to its wait), in due order; a client
  // whose callback returns true is queued again after its delay, but not within this pass. A
  // nested call (from a client's alertable wait) does nothing, as does a call after the Scheduler
  // stopped. An exception from a callback leaves the pass, with the lock released and the
  // Scheduler ready for the next pass.
  virtual void RunDueClients();

  // The waitable timer the loop waits on (armed from other threads), and the handle of the
  // Scheduler's thread (null before AttachToThread).
  virtual void *GetTimerHandle();
  virtual void *GetThreadHandle();
  // Seconds from now to the first due time; 3.4028234663852886e38 (the largest finite float, as
  // a double; intended) when the queue is empty.
  virtual double GetTimeToNextClient();
  // Registers the counter "<prefix> clients", the number of queued clients, with the counter
  // registry; the Scheduler removes it when it goes.
  virtual void AddCounters(const cstring &prefix);
  // The id of the Scheduler's thread; 0xFFFFFFFF before AttachToThread.
  virtual uint32_t GetThreadID();

  // The loop of a thread without a message loop: leaves window mode, then waits alertably until
  // the Scheduler stops, running due clients when its timer expires and plain calls and wake-ups
  // as they arrive. An exception escaping a client or a plain call ends the loop: its text is
  // logged (when the log has a listener) with "\r\n" appended, and Run returns. Outside Run, such
  // an exception is logged the same way where the system called the Scheduler (a wake-up during
  // another alertable wait, a window message), and the thread goes on.
  virtual void Run();
  // Runs routine(argument) on the Scheduler's thread, in order with the other plain calls. A
  // routine that throws is reported as a client's exception is (see Run), and the calls that
  // arrived with it and were to run after it are dropped. Before AttachToThread the call waits for
  // the thread. Once the
  // Scheduler has stopped, a call is dropped instead, also one made before the stop that has not
  // run yet, and "<name>: Deactivating, APC ignored" is logged (when the log has a listener).
  virtual void QueueCall(SchedulerCall routine, uintptr_t argument);
  // Switches window mode on or off and re-arms the wake-up. On Windows window mode makes a hidden
  // window (class "static", 1 by 1 pixel, no parent) whose messages WM_USER (a plain call),
  // WM_USER + 1 (a wake-up) and timer 1 the application's message loop delivers; on Linux it opens
  // the descriptor of WindowModeDescriptor. False when the window or descriptor cannot be made.
  virtual bool SetUseWindow(bool on);
  // True once deactivation has been asked for (the tracked target state is 0).
  virtual bool StopRequested();
  // Stops the loop from any thread: sets the stop flag and the tracked state 0, and wakes the
  // loop, so that Run returns.
  virtual void Stop();
  virtual bool UsesWindow();
  // Binds the Scheduler to the calling thread, whose id `thread_id` is: duplicates the thread's
  // handle (throws ErrorX "Scheduler failed miserably" when it cannot), queues the pending plain
  // calls in order, and arms the wake-up. In the default mode a Scheduler without a name is named
  // after the thread id.
  virtual void AttachToThread(uint32_t thread_id);
  // GetAbsTimer(): the queue's clock.
  virtual double GetAbsTime();

  // --- Window mode on Linux ---
  //
  // The descriptor an application's event loop (poll, epoll, GLib, Qt) watches: it becomes
  // readable when the Scheduler has work; the loop then calls DispatchWindowMode on the
  // Scheduler's thread. WindowModeTimeout is how long the loop may sleep before calling it
  // regardless: milliseconds to the first due time, -1 when the queue is empty. On Windows the
  // descriptor is the event a message loop may also wait on (MsgWaitForMultipleObjects), and -1
  // when window mode is off.
  intptr_t WindowModeDescriptor();
  int WindowModeTimeout();
  // Runs the posted plain calls, then the due clients; what the hidden window's messages do on
  // Windows.
  void DispatchWindowMode();

  // The number of dispatch passes that found the Scheduler awake (for tests of idleness).
  int64_t PassCount() const { return passes_.load(std::memory_order_relaxed); }
  // The number of queued clients.
  int ClientCount();

  // The deactivation hook: window mode posts a quit message to the thread's message loop; in
  // every mode the Scheduler stops (see Stop).
  void Deactivate() override;
  // Wakes the loop, so that it notices the request.
  void OnDeactivateRequested() override;

  SchedulerHost *GetHost() const { return host_; }

 private:
  friend safeptr<Scheduler> CreateScheduler(const strptr &, TrackedObj *, bool, SchedulerHost *);
  friend class DelayClient;
  friend class SchedulerAccess;

  Scheduler(const strptr &name, TrackedObj *owner, bool active, SchedulerHost *host);

  // Arms the wake-up for the queue's head, `reference` being now. Lock held.
  void Arm(double reference);
  // Wakes the thread at once. Lock held.
  void WakeNow();
  // Arms a timer for `ms` milliseconds. Lock held.
  void ArmTimer(uint32_t ms);
  // The client's part of Schedule once it belongs here: its place in the heap, and the wake-up.
  void Place(DelayClient *client, double due);

  // Logs "<name>: Deactivating, APC ignored" for a call dropped after the stop.
  void LogDroppedCall();
  // Runs `work` as the operating system's callbacks do, keeping what it throws (see there).
  static void Contain(void (*work)(Scheduler *), Scheduler *s);
  // Logs an exception's text and "\r\n", when the log has a listener.
  static void ReportFailure(std::exception_ptr failure);
  // Runs the plain calls waiting in the queue, in order.
  static void RunCalls(Scheduler *s);

  static void ZEL_CALLBACK WakeApc(uintptr_t self);
  static void ZEL_CALLBACK CallsApc(uintptr_t self);
  static void ZEL_CALLBACK TimerRoutine(void *self, uint32_t, uint32_t);

  uint32_t thread_id_ = 0xFFFFFFFF;
  std::atomic<bool> use_window_{false};
  SchedulerQueue *queue_;
  int32_t dispatching_ = 0;
  int32_t wake_pending_ = 0;
  int32_t call_count_ = 0;
  CritSect lock_;
  DelayClient *current_client_ = nullptr;
  uint32_t dispatch_thread_ = 0;  // the thread of the last pass (the Scheduler's, in a loop)
  void *foreign_timer_;
  void *thread_handle_ = nullptr;
  void *own_timer_;
  double pass_time_ = 0;
  SchedulerWindow *window_ = nullptr;
  SchedulerHost *host_;
  std::atomic<bool> stop_{false};
  struct PendingCalls;
  // The plain calls on their way to the thread, behind a lock of their own.
  NRCritSect calls_lock_;
  PendingCalls *calls_;           // calls_lock_
  bool calls_queued_ = false;     // calls_lock_: an APC that empties calls_ is on its way
  void *calls_thread_ = nullptr;  // calls_lock_: the thread handle that APC goes to
  std::atomic<int64_t> passes_{0};
  // The Scheduler's thread only: whether it is in Run, and what escaped a client meanwhile.
  bool in_run_ = false;
  std::exception_ptr failure_;
};

// Makes a Scheduler named `name`, of kind "Thread", that depends on `owner` (the root when null),
// active when `active`, its own tracked objects' Scheduler, with `host` kept for it. Not attached
// to a thread yet. An empty pointer when memory runs out.
ZEL_API safeptr<Scheduler> CreateScheduler(const strptr &name, TrackedObj *owner, bool active,
                                           SchedulerHost *host);

// Attaches `scheduler` to the calling thread and makes it the thread's Scheduler until the thread
// ends.
ZEL_API void SetThreadLocalScheduler(Scheduler *scheduler);
// The calling thread's Scheduler, or null.
ZEL_API Scheduler *GetThreadLocalScheduler();
// The global Scheduler: the user-interface thread's, the root of the tracked objects.
ZEL_API Scheduler *GetGlobalScheduler();

}  // namespace zel
